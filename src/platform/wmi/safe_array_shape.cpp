#include "platform/wmi/safe_array_shape.h"

namespace Zq::Gantry::Server::Shared::WMI {

bool IsVectorOf(SAFEARRAY* array, VARTYPE elementType, UINT elementBytes) {
  VARTYPE type = VT_EMPTY;
  return array != nullptr && SafeArrayGetDim(array) == 1 &&
         SafeArrayGetElemsize(array) == elementBytes &&
         SUCCEEDED(SafeArrayGetVartype(array, &type)) && type == elementType;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
