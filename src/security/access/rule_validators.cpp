#include "security/access/rule_validators.h"

#include <new>
#include <optional>
#include <string>

#include "platform/winrt/calls.h"
#include "security/access/rule_inputs.h"
#include "security/access/rule_judges.h"
#include "security/trust/util_helper.h"

namespace Zq::Gantry::Security {

namespace {

/// The result of `judge`; false if a call of the runtime failed. Throws bad_alloc if the call ran
/// out of memory.
template <typename Judge>
bool Decide(Judge judge) {
  try {
    return judge();
  } catch (const Platform::WinRt::CallFailure& failure) {
    if (failure.Result() == E_OUTOFMEMORY) throw std::bad_alloc();
    return false;
  }
}

/// For all judges that read a text: the rule is read first, then the value.
template <typename Judge, typename Reader>
bool DecideOnText(const XmlNodeReference& node, const ValueReference& value, Reader read,
                  Judge judge) {
  if (!value) return false;
  return Decide([&] {
    const std::wstring rule = ReadInnerText(node.get());
    return judge(rule, read(*value));
  });
}

bool JudgeRegex(const XmlNodeReference& node, const ValueReference& value) {
  return DecideOnText(node, value, ReadBoxedString, PassesRegex);
}

bool JudgeContained(const XmlNodeReference& node, const ValueReference& value) {
  return DecideOnText(node, value, ReadBoxedText, IsContainedInList);
}

bool JudgeBeginning(const XmlNodeReference& node, const ValueReference& value) {
  return DecideOnText(node, value, ReadBoxedString, BeginsWithFromList);
}

std::wstring ExpandPath(const std::wstring& path) {
  return Server::Services::UtilHelper::GetFullExpandedPath(path.c_str(), /*component=*/L"");
}

bool JudgeExpandedBeginning(const XmlNodeReference& node, const ValueReference& value) {
  return DecideOnText(node, value, ReadBoxedString,
                      [](const std::wstring& list, const std::wstring& text) {
                        return BeginsWithFromExpandedList(list, text, ExpandPath);
                      });
}

bool JudgeNumericRange(const XmlNodeReference& node, const ValueReference& value) {
  if (!value) return false;
  // Kept on purpose: only this judge accepts a null node, as a rule without limits (test
  // NumericRangeRule.AcceptsEveryNonNullValueForANullNode).
  if (!node) return true;
  return Decide([&] {
    return LiesInNumericRange(ReadBoxedDouble(*value), [&node](const wchar_t* name) {
      return TryReadAttribute(*node, name);
    });
  });
}

bool JudgeNone(const XmlNodeReference&, const ValueReference&) { return true; }

}  // namespace

const std::map<RuntimeText, RuleJudge> RuleValidators{
    {L"regex", JudgeRegex},
    {L"contained_in_list", JudgeContained},
    {L"begins_with_from_list", JudgeBeginning},
    {L"begins_with_from_list_with_env_vars", JudgeExpandedBeginning},
    {L"numeric_range", JudgeNumericRange},
    {L"none", JudgeNone},
};

}  // namespace Zq::Gantry::Security
