// The _8 functions on all code points, and on all short sequences of bytes, against a slow table.

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/guarded_text.h"
#include "tests/support/mbstring.h"

namespace {

using namespace RQMEM_NAMESPACE;
namespace slow = rqtest::slow;

constexpr std::int64_t kLastCodePoint = 0x10FFFF;

// Calls check(code point, its bytes) for every code point but zero, whose byte ends a text; surrogates included.
template <class Check>
void ForEachCodePoint(const Check& check) {
  for (std::int64_t c = 1; c <= kLastCodePoint && !testing::Test::HasFailure(); ++c) check(c, rqtest::Utf8(c));
}

bool IsSurrogate(std::int64_t c) { return c >= 0xD800 && c <= 0xDFFF; }

bool IsAcceptable(std::int64_t c) { return !IsSurrogate(c) && !slow::IsNoncharacter(c); }

TEST(Utf8EveryCodePoint, HasItsLength) {
  ForEachCodePoint([](std::int64_t c, const std::string& bytes) {
    const std::string text = bytes + "\x80";
    ASSERT_EQ(QULTMBmbclen_8(text.c_str()), bytes.size()) << c;
    ASSERT_EQ(QULTMBstrinc_8(text.c_str()), text.c_str() + bytes.size()) << c;
    const int expected = IsSurrogate(c) ? -1 : static_cast<int>(bytes.size());
    for (std::size_t n = bytes.size(); n <= bytes.size() + 1; ++n)
      ASSERT_EQ(QULTMBmblen_8(text.c_str(), n), expected) << c;
    for (std::size_t n = 1; n < bytes.size(); ++n) ASSERT_EQ(QULTMBmblen_8(text.c_str(), n), -1) << c << " in " << n;
  });
}

TEST(Utf8EveryCodePoint, IsFoundAmongOthers) {
  ForEachCodePoint([](std::int64_t c, const std::string& bytes) {
    const std::string other = rqtest::Utf8(c == kLastCodePoint ? 1 : c + 1);
    const std::string text = other + bytes + other + bytes + other;
    const char* const s = text.c_str();
    const auto code = static_cast<unsigned>(c);
    ASSERT_EQ(QULTMBstrchr_8(s, code), s + other.size()) << c;
    ASSERT_EQ(QULTMBstrrchr_8(s, code), s + 2 * other.size() + bytes.size()) << c;
    ASSERT_EQ(QULTMBstrcspn_8(s, bytes.c_str()), other.size()) << c;
    ASSERT_EQ(QULTMBstrchr_8(other.c_str(), code), nullptr) << c;
    ASSERT_EQ(QULTMBstrrchr_8(other.c_str(), code), nullptr) << c;
    ASSERT_EQ(QULTMBstrcspn_8(other.c_str(), bytes.c_str()), other.size()) << c;
  });
}

TEST(Utf8EveryCodePoint, EndsACopyOnlyWholeAndAcceptable) {
  ForEachCodePoint([](std::int64_t c, const std::string& bytes) {
    const std::string text = "a" + bytes;
    for (std::size_t n = 1; n <= text.size() + 1; ++n) {
      std::string buffer(n, '#');
      QULTMBstrncpy_8(buffer.data(), text.c_str(), n);
      const std::string copied = n >= text.size() && IsAcceptable(c) ? text : "a";
      ASSERT_EQ(buffer, copied + std::string(n - copied.size(), '\0')) << c << " in " << n;
    }
  });
}

TEST(Utf8EveryCodePoint, IsSteppedOverBackwards) {
  ForEachCodePoint([](std::int64_t c, const std::string& bytes) {
    const std::string text = "\xC3\xA9" + bytes + "\x80";
    const char* const s = text.c_str();
    const std::size_t end = 2 + bytes.size();
    const std::size_t previous = IsAcceptable(c) ? 2 : end - 1;
    ASSERT_EQ(QULTMBPreviousIndex_8(s, end), previous) << c;
    ASSERT_EQ(QULTMBAnsiPrev_8(s, s + end), s + previous) << c;
  });
}

TEST(Utf8EveryCodePoint, EqualsItsLowerCaseAndNotItsNeighbour) {
  ForEachCodePoint([](std::int64_t c, const std::string& bytes) {
    const std::string lower = rqtest::Utf8(slow::Lower(c));
    int status = 77;
    ASSERT_EQ(QULTMBqstricmp_8(bytes.c_str(), -1, lower.c_str(), -1, &status), 1) << c;
    ASSERT_EQ(status, IsSurrogate(c) ? 3 : 0) << c;
    ASSERT_EQ(QULTMBstrnicmp_8(bytes.c_str(), lower.c_str(), 4), 0) << c;
    const std::int64_t other = c == kLastCodePoint ? 1 : c + 1;
    const bool same = slow::Lower(c) == slow::Lower(other);
    ASSERT_EQ(QULTMBqstricmp_8(bytes.c_str(), -1, rqtest::Utf8(other).c_str(), -1, nullptr), same ? 1 : 0) << c;
  });
}

// What a function gives for the bytes, and what the slow table says.
bool HasSlowLengths(const char* s, std::size_t size) {
  const std::string_view text(s, size);
  if (QULTMBmbclen_8(s) != slow::MbcLen8(text)) return false;
  for (std::size_t n = 2; n <= 4; ++n)
    if (QULTMBmblen_8(s, n) != slow::MbLen8(text, n)) return false;
  return true;
}

TEST(Utf8EveryShortText, HasTheLengthsOfTheSlowTable) {
  std::array<char, 5> text{};
  for (int a = 1; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      for (int c = 0; c < (b == 0 ? 1 : 256); ++c) {
        text = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c), 0, 0};
        ASSERT_TRUE(HasSlowLengths(text.data(), std::strlen(text.data()))) << a << " " << b << " " << c;
        if (a < 0xC0 || c == 0) continue;
        text[3] = '\x80';
        ASSERT_TRUE(HasSlowLengths(text.data(), 4)) << a << " " << b << " " << c << " 128";
      }
    }
  }
}

// All texts of two bytes with a few endings, and for each lead byte those of three with bytes at the ends of ranges.
template <class Check>
void ForEachShortText(const Check& check) {
  for (int a = 1; a < 256; ++a) {
    for (int b = 0; b < 256 && !testing::Test::HasFailure(); ++b) {
      std::string prefix = {static_cast<char>(a)};
      if (b != 0) prefix += static_cast<char>(b);
      for (const char* ending : {"", "\x80", "\xBF\x80", "a"}) check(prefix + ending);
      if (a < 0xC0 || b < 0x80) continue;
      for (const char* third : {"\x7F", "\x8F", "\x9F", "\xA0", "\xBF", "\xC2", "\xE2", "\xF4"})
        for (const char* ending : {"", "\xBF"}) check(prefix + third + ending);
    }
  }
}

TEST(Utf8EveryShortText, IsSteppedAndCutAsBySlowRules) {
  std::string buffer;
  ForEachShortText([&buffer](const std::string& text) {
    for (std::size_t i = 0; i <= text.size(); ++i) {
      ASSERT_EQ(QULTMBPreviousIndex_8(text.c_str(), i), slow::PreviousIndex8(text, i))
          << testing::PrintToString(text) << " " << i;
      buffer.assign(i, '#');
      QULTMBstrncpy_8(buffer.data(), text.c_str(), i);
      ASSERT_EQ(buffer, slow::StrNCpy8(text, i)) << testing::PrintToString(text) << " " << i;
    }
  });
}

TEST(Utf8EveryShortText, IsSearchedAsBySlowRules) {
  ForEachShortText([](const std::string& text) {
    for (const unsigned c : {0U, 0x61U, 0x80U, 0xE9U, 0x7FFU, 0x2080U, 0xFFFFU, 0x10FFFFU}) {
      ASSERT_EQ(rqtest::IndexOf(QULTMBstrchr_8(text.c_str(), c), text.c_str()), slow::StrChr8(text, c))
          << testing::PrintToString(text) << " " << c;
      ASSERT_EQ(rqtest::IndexOf(QULTMBstrrchr_8(text.c_str(), c), text.c_str()), slow::StrRChr8(text, c))
          << testing::PrintToString(text) << " " << c;
    }
  });
}

TEST(Utf8EveryShortText, ComparesAsBySlowRules) {
  ForEachShortText([](const std::string& text) {
    const auto folded = slow::Fold8(text);
    for (const std::string& other : {text, text + "A", std::string("\xC3\x89")}) {
      slow::Comparison actual{};
      actual.equal = QULTMBqstricmp_8(text.c_str(), -1, other.c_str(), -1, &actual.status);
      const slow::Comparison expected = slow::Compare(folded, slow::Fold8(other));
      ASSERT_EQ(actual.equal, expected.equal) << testing::PrintToString(text) << " " << testing::PrintToString(other);
      ASSERT_EQ(actual.status, expected.status) << testing::PrintToString(text) << " " << testing::PrintToString(other);
    }
  });
}

// Every beginning of a sequence before the end of the memory.
TEST(Utf8EveryBeginning, IsReadNoFurtherThanItsTerminator) {
  for (int lead = 1; lead < 256; ++lead) {
    for (const char* more : {"", "\x80", "\x90\x80", "\xA0\x80\x80"}) {
      const rqtest::GuardedText text(static_cast<char>(lead) + std::string(more));
      const char* const s = text.Get();
      const std::size_t size = 1 + std::strlen(more);
      EXPECT_LE(QULTMBmbclen_8(s), size);
      EXPECT_LE(QULTMBmblen_8(s, 100), static_cast<int>(size));
      EXPECT_EQ(QULTMBstrchr_8(s, 0x10FFFE), nullptr);
      EXPECT_EQ(QULTMBstrrchr_8(s, 0x10FFFE), nullptr);
      EXPECT_EQ(QULTMBstrcspn_8(s, "\xF4\x8F\xBF\xBE"), size);
      EXPECT_EQ(QULTMBstrcspn_8("\xF4\x8F\xBF\xBE", s), 4U);
      EXPECT_EQ(QULTMBqstricmp_8(s, -1, s, 100, nullptr), 1);
      EXPECT_EQ(QULTMBstrnicmp_8(s, s, 100), 0);
      char buffer[100];
      EXPECT_EQ(QULTMBstrncpy_8(buffer, s, sizeof buffer), buffer);
    }
  }
}

TEST(Utf8EveryBeginning, IsSteppedBackNoFurtherThanTheText) {
  for (const char* bytes : {"\x80", "\x80\x80", "\xBF\x80\x80", "\x9F\x98\x80", "\x82\xAC", "\xE2", "a"}) {
    const rqtest::GuardedText text(bytes, rqtest::GuardedText::Side::kBefore);
    const std::size_t size = std::strlen(bytes);
    EXPECT_EQ(QULTMBPreviousIndex_8(text.Get(), size), size - 1);
    char buffer[10];
    EXPECT_EQ(QULTMBstrncpy_8(buffer, text.Get(), size), buffer);
  }
}

}  // namespace
