#pragma once

#include <windows.h>

#include <inspectable.h>

#include <map>

#include "abi/xml_shapes.h"
#include "platform/winrt/runtime_reference.h"
#include "platform/winrt/runtime_text.h"
#include "wattleaf_export.h"

// The rules by which a host judges the parameters of a request. A rule is a kind and a node of an
// XML document with the kind's data; the document is the host's. docs/rules.md describes the kinds
// and the limits. A host looks up the judge of a rule's kind and passes the pointers of its own
// projection, or null:
//
//   const RuleJudge judge = RuleValidators.at(L"regex");
//   const bool passes = judge(XmlNodeReference(node), ValueReference(value));
namespace Zq::Gantry::Security {

/// The node of a rule.
using XmlNodeReference = RuntimeReference<Platform::WinRt::IXmlNode>;
/// A boxed value: a string, a number of 64 bits or a truth value.
using ValueReference = RuntimeReference<IInspectable>;

/// Whether the value passes the rule. False for a value of another type, for a node that cannot be
/// read and for a pattern that is not valid. Nothing is logged but the lines of path expansion.
/// Throws bad_alloc, and out_of_range for a limit beyond 32 bits. From any thread.
using RuleJudge = bool (*)(const XmlNodeReference& node, const ValueReference& value);

/// The judge of each kind, by the name of the kind, whose case matters. A list is the node's inner
/// text, cut at each comma. A null value or node does not pass, except as stated here. Built while
/// the library loads, never changed.
///   "regex"                                inner text: an expression; the string matches it whole
///   "contained_in_list"                    a list; the string, number or truth value is an item
///   "begins_with_from_list"                a list; the string begins with an item, in any case
///   "begins_with_from_list_with_env_vars"  the same after the expansion of both as paths
///   "numeric_range"                        attributes "min", "max"; a null node has neither
///   "none"                                 everything passes, null included
extern WATTLEAF_API const std::map<RuntimeText, RuleJudge> RuleValidators;

}  // namespace Zq::Gantry::Security
