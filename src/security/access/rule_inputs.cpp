#include "security/access/rule_inputs.h"

#include "abi/value_shapes.h"
#include "platform/winrt/calls.h"
#include "security/access/rule_judges.h"

namespace Zq::Gantry::Security {

using namespace Platform::WinRt;
using Platform::UniqueInterface;

std::wstring ReadInnerText(IXmlNode* node) {
  if (node == nullptr) throw CallFailure(E_POINTER);
  return FetchText(*FetchInterface<IXmlNodeSerializer>(*node).get(),
                   &IXmlNodeSerializer::get_InnerText);
}

std::optional<std::wstring> TryReadAttribute(IXmlNode& node, const wchar_t* name) {
  // Both calls succeed without an object if there is none.
  UniqueInterface<IXmlNamedNodeMap> attributes;
  ThrowIfFailed(node.get_Attributes(attributes.out()));
  if (!attributes) return std::nullopt;

  UniqueInterface<IXmlNode> attribute;
  ThrowIfFailed(attributes.get()->GetNamedItem(MakeHString(name).get(), attribute.out()));
  if (!attribute) return std::nullopt;
  return FetchText(*FetchInterface<IXmlAttribute>(*attribute.get()).get(),
                   &IXmlAttribute::get_Value);
}

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
