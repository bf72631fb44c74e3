#include "security/access/rule_node.h"

#include "platform/winrt/calls.h"

namespace Zq::Gantry::Security {

using namespace Platform::WinRt;
using Platform::UniqueInterface;

std::wstring ReadInnerText(IXmlNode* node) {
  if (node == nullptr) throw CallFailure(E_POINTER);
  return FetchText(*FetchInterface<IXmlNodeSerializer>(*node).get(),
                   &IXmlNodeSerializer::get_InnerText);
}

std::optional<std::wstring> TryReadAttribute(IXmlNode& node, const wchar_t* name) {
  // Both calls succeed without an object where there is nothing to hand out.
  UniqueInterface<IXmlNamedNodeMap> attributes;
  ThrowIfFailed(node.get_Attributes(attributes.out()));
  if (!attributes) return std::nullopt;

  UniqueInterface<IXmlNode> attribute;
  ThrowIfFailed(attributes.get()->GetNamedItem(MakeHString(name).get(), attribute.out()));
  if (!attribute) return std::nullopt;
  return FetchText(*FetchInterface<IXmlAttribute>(*attribute.get()).get(),
                   &IXmlAttribute::get_Value);
}

}  // namespace Zq::Gantry::Security
