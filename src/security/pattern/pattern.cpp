#include "security/pattern/pattern.h"

#define PCRE2_CODE_UNIT_WIDTH 16  // NOLINT(cppcoreguidelines-macro-usage): for the header below
#include <pcre2.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>

#include "security/pattern/match_watch.h"
#include "security/pattern/translation.h"

namespace Zq::Gantry::Security {

namespace {

/// Backtracking points of one match, for an expression without groups.
constexpr std::uint32_t kMostBacktrackingPoints = 10'000'000;
constexpr std::uint32_t kCompileOptions = PCRE2_ANCHORED | PCRE2_ENDANCHORED |
                                          PCRE2_MATCH_UNSET_BACKREF | PCRE2_NEVER_UTF |
                                          PCRE2_NEVER_UCP | PCRE2_NEVER_BACKSLASH_C;

template <auto release>
struct Release {
  template <typename Object>
  void operator()(Object* object) const {
    release(object);
  }
};

using GeneralContext =
    std::unique_ptr<pcre2_general_context_16, Release<pcre2_general_context_free_16>>;
using CompileContext =
    std::unique_ptr<pcre2_compile_context_16, Release<pcre2_compile_context_free_16>>;
using MatchContext = std::unique_ptr<pcre2_match_context_16, Release<pcre2_match_context_free_16>>;
using MatchData = std::unique_ptr<pcre2_match_data_16, Release<pcre2_match_data_free_16>>;
using Code = std::unique_ptr<pcre2_code_16, Release<pcre2_code_free_16>>;

/// Owns the object that PCRE2 made. Null means that memory ran out.
template <typename Owner>
Owner Owned(typename Owner::pointer object) {
  if (object == nullptr) throw std::bad_alloc();
  return Owner(object);
}

void* Allocate(PCRE2_SIZE size, void* /*data*/) { return ::operator new(size, std::nothrow); }
void Deallocate(void* block, void* /*data*/) { ::operator delete(block); }

/// How PCRE2 allocates. One for all threads: no call of PCRE2 changes it.
pcre2_general_context_16* Memory() {
  static const auto memory =
      Owned<GeneralContext>(pcre2_general_context_create_16(Allocate, Deallocate, nullptr));
  return memory.get();
}

/// The settings of every compilation. One for all threads: compiling only reads it.
pcre2_compile_context_16* CompileSettings() {
  static const auto settings = [] {
    auto context = Owned<CompileContext>(pcre2_compile_context_create_16(Memory()));
    pcre2_set_parens_nest_limit_16(context.get(), kDeepestGroups);
    return context;
  }();
  return settings.get();
}

/// A unit of PCRE2 is an unsigned integer of 16 bits, as char16_t is.
PCRE2_SPTR16 UnitsOf(const std::u16string& text) {
  static_assert(sizeof(PCRE2_UCHAR16) == sizeof(char16_t));
  return reinterpret_cast<PCRE2_SPTR16>(text.data());
}

/// 0 for a group that did not match: both of its ends have the same value.
std::size_t CapturedChars(const pcre2_callout_block_16& block, std::size_t group) {
  if (group >= block.capture_top) return 0;
  return block.offset_vector[2 * group + 1] - block.offset_vector[2 * group];
}

int OnWatchPoint(pcre2_callout_block_16* block, void* watch) {
  constexpr auto kReference = static_cast<std::uint32_t>(WatchPoint::kReference);
  const std::uint32_t number = block->callout_number;
  MatchPlace place{static_cast<WatchPoint>(std::min(number, kReference)), block->current_position,
                   block->subject_length};
  if (number >= kReference) place.capturedChars = CapturedChars(*block, number - kReference + 1);
  return static_cast<MatchWatch*>(watch)->MayGoOn(place) ? 0 : PCRE2_ERROR_CALLOUT;
}

/// Fewer points for an expression with groups, since PCRE2 stores the places of all groups with
/// each.
std::uint32_t MostBacktrackingPoints(std::size_t groups) {
  return static_cast<std::uint32_t>(kMostBacktrackingPoints / (1 + groups / 8));
}

/// PCRE2 doubles the block of those points when it is full. It starts at 20 KiB and ends at 40 MiB,
/// so that the old and the new block together take 60 MiB. With many groups it starts with room for
/// ten points, however large they are; both blocks then take twice 30 MiB at most.
std::uint32_t MostMatchKibibytes(std::size_t groups) { return (groups < 100 ? 40 : 30) * 1024; }

}  // namespace

std::u16string CodeUnits(std::wstring_view text) {
  const auto takesTwoUnits = [](std::uint32_t code) { return code > 0xFFFF; };
  if (std::ranges::none_of(text, takesTwoUnits)) return {text.begin(), text.end()};

  std::u16string units;
  units.reserve(text.size());
  for (const wchar_t character : text) {
    const auto code = static_cast<std::uint32_t>(character);
    if (takesTwoUnits(code)) {
      units += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      units += static_cast<char16_t>(code);
    }
  }
  return units;
}

struct Pattern::Compiled {
  std::size_t groups;
  MatchWatch watch;  ///< as it is before a match
  Code code;
};

Pattern::Pattern(std::unique_ptr<const Compiled> compiled) : compiled_(std::move(compiled)) {}
Pattern::Pattern(Pattern&&) noexcept = default;
Pattern& Pattern::operator=(Pattern&&) noexcept = default;
Pattern::~Pattern() = default;

std::optional<Pattern> Pattern::TryCompile(std::wstring_view expression) {
  if (expression.size() > kMostExpressionChars) return std::nullopt;
  const std::optional<Translation> translation = TranslateExpression(CodeUnits(expression));
  if (!translation) return std::nullopt;

  int error = 0;
  PCRE2_SIZE place = 0;
  Code code(pcre2_compile_16(UnitsOf(translation->expression), translation->expression.size(),
                             kCompileOptions, &error, &place, CompileSettings()));
  if (!code && error == PCRE2_ERROR_HEAP_FAILED) throw std::bad_alloc();
  if (!code) return std::nullopt;
  return Pattern(std::unique_ptr<const Compiled>(
      new Compiled{translation->groups, MatchWatch(*translation), std::move(code)}));
}

bool Pattern::Matches(std::wstring_view text) const {
  MatchWatch watch = compiled_->watch;
  if (!watch.MayBegin(text.size())) return false;

  const auto context = Owned<MatchContext>(pcre2_match_context_create_16(Memory()));
  const std::uint32_t mostPoints = MostBacktrackingPoints(compiled_->groups);
  pcre2_set_match_limit_16(context.get(), mostPoints);
  pcre2_set_depth_limit_16(context.get(), mostPoints);
  pcre2_set_heap_limit_16(context.get(), MostMatchKibibytes(compiled_->groups));
  pcre2_set_callout_16(context.get(), OnWatchPoint, &watch);
  const auto data = Owned<MatchData>(pcre2_match_data_create_16(/*ovecsize=*/1, Memory()));

  const std::u16string units = CodeUnits(text);
  const int result =
      pcre2_match_16(compiled_->code.get(), UnitsOf(units), units.size(), /*start_offset=*/0,
                     /*options=*/0, data.get(), context.get());
  if (result == PCRE2_ERROR_NOMEMORY) throw std::bad_alloc();
  return result >= 0;
}

}  // namespace Zq::Gantry::Security
