// Files whose signatures are under attack. The library decides by the answers of the system: by
// those that Windows documents, recorded beside each file and given back by fakes, and by those of
// the system that runs the test.

#include "security/attacks/attacked_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;

namespace {

// Answers that refuse a signature: those next to the ones that list it, and others that systems
// give for files like these.
constexpr DWORD kRefusals[] = {
    1,          2,          0x7A,       0x80090006, 0x80091007, 0x80092003, 0x80092026, 0x80093102,
    0x8009310B, 0x80096004, 0x80096010, 0x80096019, 0x800B0001, 0x800B0003, 0x800B0004, 0x800B0100,
    0x800B0102, 0x800B0108, 0x800B010A, 0x800B010C, 0x800B0110, 0x800B0111, 0x7FFFFFFF, 0xFFFFFFFF};

template <typename Condition>
std::vector<AttackedFile> FilesWith(Condition holds) {
  std::vector<AttackedFile> files;
  std::ranges::copy_if(AttackedFiles(), std::back_inserter(files), holds);
  return files;
}

bool MayBeAsked(const AttackedFile& file) { return file.unasked.empty(); }

bool IsRefused(const RecordedSignature& signature) {
  return !IsListedResult(static_cast<std::uint32_t>(signature.answer));
}

// The other signature decides, or none.
bool HasTwoSignaturesAndOneIsRefused(const AttackedFile& file) {
  return file.signatures.size() == 2 && std::ranges::any_of(file.signatures, IsRefused);
}

std::string LabelOf(const testing::TestParamInfo<AttackedFile>& info) {
  std::string label = info.param.name.substr(0, info.param.name.find('.'));
  std::ranges::replace(label, '-', '_');
  return label;
}

class DecisionByRecord : public testing::TestWithParam<AttackedFile> {};
class DecisionOnTwoSignatures : public testing::TestWithParam<AttackedFile> {};
class DecisionByThisSystem : public testing::TestWithParam<AttackedFile> {};

std::string HexText(LONG answer) {
  std::ostringstream text;
  text << "0x" << std::hex << static_cast<DWORD>(answer);
  return text.str();
}

template <typename Answers, typename Function>
std::string Joined(const Answers& answers, Function answerOf) {
  std::string text;
  for (const auto& one : answers) text += (text.empty() ? "" : ", ") + HexText(answerOf(one));
  return text.empty() ? "no signature" : text;
}

std::string AnswersOfThisSystem(const AttackedFile& file) {
  if (!file.unasked.empty()) return "not asked: " + file.unasked;
  const std::string answers =
      Joined(JudgeBySystem(file).answers, [](LONG answer) { return answer; });
  return file.unlike.empty() ? answers : answers + "; " + file.unlike;
}

std::string InWords(const Decisions& decisions) {
  return std::string(decisions.isTrusted ? "trusted" : "refused") +
         (decisions.isDropbox ? ", Dropbox" : "");
}

std::string TableRow(const AttackedFile& file) {
  const std::string recorded =
      Joined(file.signatures, [](const RecordedSignature& one) { return one.answer; });
  return "| " + file.name + " | " + file.done + " | " + recorded + " | " +
         AnswersOfThisSystem(file) + " | " + InWords(DecideByRecord(file)) + " | " +
         InWords({file.isTrusted, file.isDropbox}) + " |\n";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Of, DecisionByRecord, testing::ValuesIn(AttackedFiles()), LabelOf);
INSTANTIATE_TEST_SUITE_P(Of, DecisionOnTwoSignatures,
                         testing::ValuesIn(FilesWith(HasTwoSignaturesAndOneIsRefused)), LabelOf);
INSTANTIATE_TEST_SUITE_P(Of, DecisionByThisSystem, testing::ValuesIn(FilesWith(MayBeAsked)),
                         LabelOf);

TEST(AttackedFiles, AreMoreThanAHundredAndEachIsThere) {
  EXPECT_GT(AttackedFiles().size(), 100u);
  EXPECT_GT(FilesWith(MayBeAsked).size(), 100u);
  // Each of the other four states beside a broken signature on either side, and two broken ones.
  EXPECT_EQ(FilesWith(HasTwoSignaturesAndOneIsRefused).size(), 9u);
  std::set<std::string> names;
  for (const AttackedFile& file : AttackedFiles()) {
    EXPECT_TRUE(FileExists(AttackedPath(file.name))) << file;
    names.insert(file.name);
  }
  EXPECT_EQ(names.size(), AttackedFiles().size());
  EXPECT_EQ(ListedKey().front().size(), 809u);
}

TEST_P(DecisionByRecord, IsTheExpectedOne) {
  EXPECT_EQ(DecideByRecord(GetParam()), (Decisions{GetParam().isTrusted, GetParam().isDropbox}));
}

TEST_P(DecisionOnTwoSignatures, IsTheSameForEveryAnswerThatRefusesASignature) {
  for (const DWORD refusal : kRefusals) {
    EXPECT_EQ(DecideByRecord(GetParam(), static_cast<LONG>(refusal)),
              (Decisions{GetParam().isTrusted, GetParam().isDropbox}))
        << std::hex << refusal;
  }
}

// The outer signature only: some systems verify it in the place of each nested one.
TEST_P(DecisionByThisSystem, FollowsFromTheBytesOfTheFile) {
  const AttackedFile& file = GetParam();
  const SystemJudgement judgement = JudgeBySystem(file);
  ASSERT_FALSE(judgement.answers.empty());
  if (!file.unlike.empty()) return;

  const bool isIntact = IsListedResult(static_cast<std::uint32_t>(judgement.answers.front()));
  if (file.signatures.size() < 2) {
    EXPECT_EQ(judgement.isTrusted, file.isTrusted);
  } else {
    EXPECT_EQ(isIntact, !IsAboutTheBytes(file.signatures.front().answer));
  }
  if (!isIntact) return;
  EXPECT_EQ(judgement.answers.size(), file.signatures.size());
  if (judgement.signatures.empty()) return;
  EXPECT_EQ(judgement.signatures.front().publicKey, file.signatures.front().key);
}

// tools/signature-attacks prints it.
TEST(AttackedFiles, AreListedInATable) {
  std::string table =
      "| file | what was done | documented answer | answer of this system | decided | expected |\n"
      "|---|---|---|---|---|---|\n";
  for (const AttackedFile& file : AttackedFiles()) table += TableRow(file);
  WriteWholeFile(AttackedPath("decisions.md"), table);
  EXPECT_EQ(std::ranges::count(table, '\n'), std::ssize(AttackedFiles()) + 2);
}
