// The judges of parameters, and the engine alone with an expression that was translated before,
// which is the lower bound of "Rules/Regex".
#include <functional>
#include <memory>
#include <string>
#include <utility>

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include "operation.h"
#include "security/access/rule_judges.h"
#include "security/pattern/pattern.h"
#include "security/pattern/translation.h"

namespace {

using namespace Zq::Gantry::Security;

/// Decisions in one operation, since one alone is too short for the clock. tools/bench divides by
/// it.
constexpr std::size_t kDecisions = 10'000;

const std::wstring kFolders =
    L"C:\\Program Files\\Alder\\,C:\\Program Files\\Birch\\,C:\\Program Files\\Cedar\\,"
    L"C:\\Program Files\\Elm\\,C:\\Program Files\\Hazel\\,C:\\Program Files\\Larch\\,"
    L"C:\\Program Files\\Maple\\,C:\\Program Files\\Rowan\\";
const std::wstring kFile = L"C:\\Program Files\\Rowan\\bin\\tool.exe";
const std::wstring kFileInOtherCase = L"c:\\PROGRAM FILES\\rowan\\bin\\tool.exe";
const std::wstring kColours = L"red,orange,yellow,green,cyan,blue,indigo,violet";
const std::wstring kColour = L"violet";

const std::wstring kClass = L"[a-z0-9]+";
const std::wstring kWord = L"abcdefghijklmnopqrstuvwxyz012345";

/// Whether all decisions are "yes".
template <typename Decide>
bool Repeat(Decide decide) {
  std::size_t passed = 0;
  for (std::size_t i = 0; i < Bench::Sized(kDecisions, 1); ++i) passed += decide();
  return passed == Bench::Sized(kDecisions, 1);
}

PCRE2_SPTR16 UnitsOf(const std::u16string& text) {
  return reinterpret_cast<PCRE2_SPTR16>(text.data());
}

int Continue(pcre2_callout_block_16*, void*) { return 0; }

/// Compiles and matches once, without limits.
bool MatchesInEngine(const std::u16string& expression, const std::u16string& text) {
  static pcre2_match_context_16* const context = [] {
    auto* made = pcre2_match_context_create_16(nullptr);
    pcre2_set_callout_16(made, Continue, nullptr);
    return made;
  }();
  int error = 0;
  PCRE2_SIZE place = 0;
  const std::unique_ptr<pcre2_code_16, decltype(&pcre2_code_free_16)> code(
      pcre2_compile_16(UnitsOf(expression), expression.size(), PCRE2_ANCHORED | PCRE2_ENDANCHORED,
                       &error, &place, nullptr),
      pcre2_code_free_16);
  const std::unique_ptr<pcre2_match_data_16, decltype(&pcre2_match_data_free_16)> data(
      pcre2_match_data_create_16(1, nullptr), pcre2_match_data_free_16);
  return pcre2_match_16(code.get(), UnitsOf(text), text.size(), 0, 0, data.get(), context) >= 0;
}

bool RunEngineAlone() {
  const std::u16string expression = TranslateExpression(CodeUnits(kClass))->expression;
  const std::u16string text = CodeUnits(kWord);
  return Repeat([&] { return MatchesInEngine(expression, text); });
}

void PrepareNothing() {}

const Bench::Registration contained{
    {"Rules/ContainedInList", PrepareNothing,
     [] { return Repeat([] { return IsContainedInList(kColours, kColour); }); }}};
const Bench::Registration beginning{
    {"Rules/BeginsWithFromList", PrepareNothing,
     [] { return Repeat([] { return BeginsWithFromList(kFolders, kFile); }); }}};
const Bench::Registration otherCase{
    {"Rules/BeginsWithFromListInOtherCase", PrepareNothing,
     [] { return Repeat([] { return BeginsWithFromList(kFolders, kFileInOtherCase); }); }}};
const Bench::Registration regex{{"Rules/Regex", PrepareNothing,
                                 [] { return Repeat([] { return PassesRegex(kClass, kWord); }); }}};
const Bench::Registration engine{{"Rules/RegexEngineAlone", PrepareNothing, RunEngineAlone}};

/// A path, and a list of as many one-letter items, followed by the path in another case and as it
/// is.
struct LongInput {
  std::wstring list;
  std::wstring value;
};

LongInput input;

std::function<void()> PrepareInput(std::size_t characters) {
  return [characters] {
    const std::wstring rest = L":\\" + std::wstring(Bench::Sized(characters, 100), L'a');
    if (input.value.size() == 1 + rest.size()) return;
    input = {L"", L'c' + rest};
    for (std::size_t i = 0; i < rest.size(); ++i) input.list += L"x,";
    input.list += L'C' + rest + L',' + input.value;
  };
}

bool JudgeContained() { return IsContainedInList(input.list, input.value); }
bool JudgeBeginning() { return BeginsWithFromList(input.list, input.value); }
bool JudgeExpandedBeginning() {
  const auto expand = [](const std::wstring& path) { return path; };
  return BeginsWithFromExpandedList(input.value, input.value, expand);
}
bool JudgeRegex() { return PassesRegex(L"[^<>]*", input.value); }
bool JudgePath() { return HasPathShape(input.value) && !IsClimbingPath(input.value); }

/// The same judge with 100,000 and 1,000,000 characters.
class ByLength {
 public:
  ByLength(const std::string& judge, bool (*run)())
      : few_({"Rules/" + judge + "ByLength/100000", PrepareInput(100'000), run}),
        many_({"Rules/" + judge + "ByLength/1000000", PrepareInput(1'000'000), run}) {}

 private:
  Bench::Registration few_;
  Bench::Registration many_;
};

const ByLength judges[] = {
    {"ContainedInList", JudgeContained},
    {"BeginsWithFromList", JudgeBeginning},
    {"BeginsWithFromExpandedList", JudgeExpandedBeginning},
    {"Regex", JudgeRegex},
    {"PathGuard", JudgePath},
};

}  // namespace
