#include "security/pattern/random_expressions.h"

#include <utility>

namespace TestSupport {

namespace {

/// With nested repetitions the standard library's matcher takes exponential time.
constexpr int kMostQuantifiers = 4;
constexpr int kDeepest = 3;

}  // namespace

std::size_t RandomSequence::Below(std::size_t limit) {
  state_ += 0x9E3779B97F4A7C15ULL;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return static_cast<std::size_t>(z % limit);
}

RandomExpressions::RandomExpressions(std::uint64_t seed, std::wstring others)
    : random_(seed), others_(std::move(others)) {}

RandomCase RandomExpressions::Next(std::size_t texts) {
  groups_ = 0;
  quantifiers_ = kMostQuantifiers;
  RandomCase next{Alternatives(0), {}};
  if (random_.Below(10) < 3) next.expression = Damaged(std::move(next.expression));
  for (; texts > 0; --texts) next.texts.push_back(Text());
  return next;
}

std::wstring RandomExpressions::OneOf(const std::vector<std::wstring_view>& choices) {
  return std::wstring(choices[random_.Below(choices.size())]);
}

std::wstring RandomExpressions::Alternatives(int depth) {
  std::wstring text;
  do {
    if (!text.empty()) text += L'|';
    for (std::size_t terms = random_.Below(4); terms > 0; --terms) text += Term(depth);
  } while (random_.IsOneIn(4));
  return text;
}

std::wstring RandomExpressions::Term(int depth) {
  if (random_.IsOneIn(12)) return OneOf({L"^", L"$", L"\\b", L"\\B"});
  if (depth < kDeepest && random_.IsOneIn(14)) {
    return OneOf({L"(?=", L"(?!"}) + Alternatives(depth + 1) + L")";
  }
  return Atom(depth) + Quantifier();
}

std::wstring RandomExpressions::Atom(int depth) {
  const std::size_t kind = random_.Below(20);
  if (depth < kDeepest && kind < 4) {
    const std::wstring begin = OneOf({L"(", L"(", L"(?:"});
    if (begin == L"(") ++groups_;
    return begin + Alternatives(depth + 1) + L")";
  }
  if (kind < 7) return Class();
  if (kind < 8) return L".";
  if (kind < 9) return OneOf({L"\\d", L"\\D", L"\\w", L"\\W", L"\\s", L"\\S"});
  if (kind < 10 && groups_ > 0) {
    return L"\\" + std::to_wstring(1 + random_.Below(static_cast<std::size_t>(groups_)));
  }
  if (kind < 11) {
    return OneOf({L"\\n", L"\\r", L"\\t", L"\\0",  L"\\x61", L"\\u0062", L"\\cJ", L"\\cj",
                  L"\\.", L"\\-", L"\\_", L"\\K",  L"\\Q",   L"\\E",     L"\\A",  L"\\z",
                  L"\\p", L"\\R", L"\\a", L"\\\\", L"]",     L"}"});
  }
  return Character();
}

std::wstring RandomExpressions::Character() {
  if (random_.IsOneIn(25)) return std::wstring(1, others_[random_.Below(others_.size())]);
  return OneOf({L"a", L"a", L"a", L"b", L"b", L"A", L"1", L"_", L" ", L"-", L"\n"});
}

std::wstring RandomExpressions::Class() {
  std::wstring text = OneOf({L"[", L"[", L"[^"});
  for (std::size_t parts = random_.Below(4); parts > 0; --parts) text += ClassPart();
  return text + L"]";
}

std::wstring RandomExpressions::ClassPart() {
  switch (random_.Below(8)) {
    case 0:
      return OneOf({L"a-b", L"+--", L"1-a", L"A-_", L"-", L"--a", L"\\n-a", L"[.a.]-b"});
    case 1:
      return OneOf({L"[:alpha:]", L"[:digit:]", L"[:space:]", L"[:w:]", L"[:punct:]", L"[:upper:]",
                    L"[:Lower:]", L"[:cntrl:]", L"[:graph:]", L"[:print:]", L"[:blank:]",
                    L"[:xdigit:]", L"[:alnum:]", L"[:d:]", L"[:s:]"});
    case 2:
      return OneOf({L"[=a=]", L"[=B=]", L"[.a.]", L"[.hyphen.]", L"[.-.]", L"[.NUL.]", L"[=one=]",
                    L"[.underscore.]", L"[.A.]", L"[=1=]"});
    case 3:
      return OneOf({L"\\d", L"\\D", L"\\w", L"\\W", L"\\s", L"\\S"});
    case 4:
      return OneOf({L"\\b", L"\\-", L"\\]", L"\\x61", L"\\u000A", L"\\cA", L"\\0", L"[", L"^", L".",
                    L"$", L"|", L"("});
    default:
      return Character();
  }
}

std::wstring RandomExpressions::Quantifier() {
  if (quantifiers_ == 0 || !random_.IsOneIn(3)) return {};
  --quantifiers_;
  std::wstring text = OneOf({L"*", L"+", L"?", L"{2}", L"{1,2}", L"{0,3}", L"{1,}", L"{0}"});
  if (random_.IsOneIn(4)) text += L'?';
  return text;
}

std::wstring RandomExpressions::Damaged(std::wstring expression) {
  constexpr std::wstring_view kInsertions = L"()[]{}*+?|^$\\.:=!-,012axucdwsbBQEKpkgGRXNhAzZ<>P'";
  for (std::size_t changes = 1 + random_.Below(2); changes > 0; --changes) {
    const std::size_t place = random_.Below(expression.size() + 1);
    if (place < expression.size() && random_.IsOneIn(3)) expression.erase(place, 1);
    if (random_.IsOneIn(4)) continue;
    expression.insert(place, 1, kInsertions[random_.Below(kInsertions.size())]);
  }
  return expression;
}

std::wstring RandomExpressions::Text() {
  std::wstring text;
  for (std::size_t length = random_.Below(7); length > 0; --length) {
    if (random_.IsOneIn(3)) {
      text += Character();
    } else {
      text += random_.IsOneIn(3) ? L'b' : L'a';
    }
  }
  return text;
}

}  // namespace TestSupport
