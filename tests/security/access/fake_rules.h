#pragma once

#include <windows.h>

#include <winstring.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "runtime_object.h"
#include "security/access/rule_validators.h"
#include "security/access/unused_operations.h"

// Nodes and boxed values of the tests' own, which implement the interfaces of Windows.
namespace TestSupport {

using Standin::Packages::RuntimeObject;
using Zq::Gantry::Security::ValueReference;
using Zq::Gantry::Security::XmlNodeReference;

/// What the objects were asked, in order, and the calls that fail.
struct RuleCalls {
  std::vector<std::string> made;
  std::map<std::string, HRESULT> failures;
  std::vector<std::string> givingNothing;  ///< calls that succeed without an object

  HRESULT ResultOf(const std::string& call);
  bool GivesNothing(const std::string& call) const;
};

/// A node with inner text and attributes.
struct NodeContent {
  std::wstring innerText;
  std::map<std::wstring, std::wstring> attributes;
  bool hasAttributeMap = true;
};

XmlNodeReference MakeNode(RuleCalls& calls, NodeContent content);

/// A node whose inner text cannot even be asked for.
XmlNodeReference MakeNodeWithoutText(RuleCalls& calls);

ValueReference Box(RuleCalls& calls, const std::wstring& text);
ValueReference Box(RuleCalls& calls, const wchar_t* text);
ValueReference Box(RuleCalls& calls, double number);
ValueReference Box(RuleCalls& calls, bool truth);
/// A whole number of 32 bits, which no rule reads.
ValueReference BoxInt32(RuleCalls& calls);
/// No boxed value at all, but an object.
ValueReference MakePlainObject(RuleCalls& calls);

}  // namespace TestSupport
