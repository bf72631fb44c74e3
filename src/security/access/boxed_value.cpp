#include "security/access/boxed_value.h"

#include "abi/value_shapes.h"
#include "platform/winrt/calls.h"
#include "security/access/number_text.h"

namespace Zq::Gantry::Security {

using namespace Platform::WinRt;

std::wstring ReadBoxedString(IInspectable& value) {
  return FetchText(*FetchInterface<IStringReference>(value).get(), &IStringReference::get_Value);
}

double ReadBoxedDouble(IInspectable& value) {
  return FetchValue(*FetchInterface<IDoubleReference>(value).get(), &IDoubleReference::get_Value);
}

std::wstring ReadBoxedText(IInspectable& value) {
  switch (FetchValue(*FetchInterface<IPropertyValue>(value).get(), &IPropertyValue::get_Type)) {
    case PropertyType_String:
      return ReadBoxedString(value);
    case PropertyType_Double:
      return ShortestNumberText(ReadBoxedDouble(value));
    case PropertyType_Boolean: {
      const auto truth = FetchInterface<IBooleanReference>(value);
      return FetchValue(*truth.get(), &IBooleanReference::get_Value) ? L"true" : L"false";
    }
    default:
      throw CallFailure(E_INVALIDARG);
  }
}

}  // namespace Zq::Gantry::Security
