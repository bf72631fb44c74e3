#pragma once

#include <windows.h>

#include <winstring.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "runtime_object.h"
#include "security/access/rule_validators.h"
#include "security/access/unimplemented_interfaces.h"

// Fake XML nodes and boxed values.
namespace TestSupport {

using Standin::Packages::RuntimeObject;
using Zq::Gantry::Security::ValueReference;
using Zq::Gantry::Security::XmlNodeReference;

/// The calls that were made to the objects, in order, and those that fail.
struct RuleCalls {
  std::vector<std::string> made;
  std::map<std::string, HRESULT> failures;
  std::vector<std::string> returningNull;  ///< calls that succeed without an object

  [[nodiscard]] HRESULT ResultOf(const std::string& call);
  [[nodiscard]] bool ReturnsNull(const std::string& call) const;
};

/// A node with inner text and attributes.
struct NodeContent {
  std::wstring innerText;
  std::map<std::wstring, std::wstring> attributes;
  bool hasAttributeMap = true;
};

[[nodiscard]] XmlNodeReference MakeNode(RuleCalls& calls, NodeContent content);

/// A node without IXmlNodeSerializer, and so without inner text.
[[nodiscard]] XmlNodeReference MakeNodeWithoutText(RuleCalls& calls);

[[nodiscard]] ValueReference Box(RuleCalls& calls, const std::wstring& text);
[[nodiscard]] ValueReference Box(RuleCalls& calls, const wchar_t* text);
[[nodiscard]] ValueReference Box(RuleCalls& calls, double number);
[[nodiscard]] ValueReference Box(RuleCalls& calls, bool truth);
/// A boxed 32-bit integer, which no rule reads.
[[nodiscard]] ValueReference BoxInt32(RuleCalls& calls);
/// An object that is no boxed value.
[[nodiscard]] ValueReference MakePlainObject(RuleCalls& calls);

}  // namespace TestSupport
