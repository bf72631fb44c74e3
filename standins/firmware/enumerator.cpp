#include "enumerator.h"

#include "script.h"

namespace Standin::Firmware {

Enumerator::~Enumerator() { TheScript().End("enumerator"); }

STDMETHODIMP Enumerator::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IEnumWbemClassObject) return E_NOINTERFACE;
  *object = static_cast<IEnumWbemClassObject*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP Enumerator::Next(LONG timeout, ULONG count, IWbemClassObject** objects,
                              ULONG* returned) {
  *objects = nullptr;
  *returned = 0;
  const std::string detail = std::to_string(timeout) + " " + std::to_string(count);
  if (const auto result = TheScript().Enter("Next(" + className_ + ")", detail)) return *result;
  if (next_ == objects_.size()) return static_cast<HRESULT>(WBEM_S_FALSE);
  *objects = objects_[next_++].release();
  *returned = 1;
  return S_OK;
}

}  // namespace Standin::Firmware
