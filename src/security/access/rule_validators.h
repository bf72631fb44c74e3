#pragma once

#include <windows.h>

#include <inspectable.h>

#include <map>

#include "abi/xml_shapes.h"
#include "platform/winrt/runtime_reference.h"
#include "platform/winrt/runtime_text.h"
#include "wattleaf_export.h"

// The rules by which a host judges the parameters of a request. A rule is a kind and a node of an
// XML document with the kind's data; the document is the host's.
namespace Zq::Gantry::Security {

using XmlNodeReference = RuntimeReference<Platform::WinRt::IXmlNode>;
/// A boxed value: a string, a number of 64 bits or a truth value.
using ValueReference = RuntimeReference<IInspectable>;

/// Whether the value passes the rule. A value of another type, a node that refuses to be read and a
/// pattern that does not compile are no passes. Nothing is logged, apart from the lines of the
/// expansion of paths. Raises bad_alloc, and out_of_range for a limit beyond 32 bits. From any
/// thread.
using RuleJudge = bool (*)(const XmlNodeReference& node, const ValueReference& value);

/// The judge of each kind, by plain character value of its name. A list is the node's inner text,
/// cut at each comma. Where not told otherwise, no null value passes, and no null node.
///   "regex"                                inner text: an expression; the string matches it whole
///   "contained_in_list"                    a list; the string, number or truth value is an item
///   "begins_with_from_list"                a list; the string begins with an item, in any case
///   "begins_with_from_list_with_env_vars"  the same after the expansion of both as paths
///   "numeric_range"                        attributes "min", "max"; a null node has neither
///   "none"                                 everything passes
extern WATTLEAF_API const std::map<RuntimeText, RuleJudge> RuleValidators;

}  // namespace Zq::Gantry::Security
