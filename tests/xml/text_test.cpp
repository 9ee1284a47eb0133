#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/platform.h"
#include "tests/support/reference_transcoder.h"

namespace {

using RQXPrsUtil::ToUTF16;
using RQXPrsUtil::ToUTF8;
using RQXPrsUtil::XStrEqualsUTF8Str;

class Texts : public rqtest::WithPlatform {
 protected:
  /// Compares both functions with the library's own conversion, and the comparison with texts near the right one.
  ::testing::AssertionResult AgreesWithTheLibrary(const std::string& bytes) const {
    const std::u16string expected = reference_.FromUtf8(bytes);
    std::vector<XMLCh> terminated(expected.begin(), expected.end());
    terminated.push_back(0);
    const auto fail = [&](const char* what) {
      return ::testing::AssertionFailure() << what << " of " << ::testing::PrintToString(bytes);
    };
    if (ToUTF16(bytes.c_str()) != terminated) return fail("ToUTF16");
    if (!XStrEqualsUTF8Str(expected.c_str(), bytes.c_str())) return fail("equality");
    if (XStrEqualsUTF8Str(nullptr, bytes.c_str()) != expected.empty()) return fail("comparison with null");
    if (XStrEqualsUTF8Str(u"", bytes.c_str()) != expected.empty()) return fail("comparison with nothing");
    if (XStrEqualsUTF8Str((expected + u"x").c_str(), bytes.c_str())) return fail("comparison with a longer text");
    if (expected.empty()) {
      std::u16string units;
      for (const char byte : bytes) units += static_cast<char16_t>(static_cast<unsigned char>(byte));
      if (units != expected && XStrEqualsUTF8Str(units.c_str(), bytes.c_str())) return fail("comparison with bytes");
      if (XStrEqualsUTF8Str(u"\uFFFD", bytes.c_str())) return fail("comparison with a replacement");
      return ::testing::AssertionSuccess();
    }
    std::u16string other = expected;
    other.pop_back();
    if (XStrEqualsUTF8Str(other.c_str(), bytes.c_str())) return fail("comparison with a shorter text");
    other = expected;
    other.back() = static_cast<char16_t>(other.back() ^ 1U);
    if (XStrEqualsUTF8Str(other.c_str(), bytes.c_str())) return fail("comparison with another end");
    other = expected;
    other.front() = static_cast<char16_t>(other.front() ^ 0x100U);
    if (XStrEqualsUTF8Str(other.c_str(), bytes.c_str())) return fail("comparison with another beginning");
    return ::testing::AssertionSuccess();
  }

  rqtest::ReferenceTranscoder reference_;
};

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes += static_cast<char>(value);
  return bytes;
}

TEST_F(Texts, NullIsAnEmptyText) {
  EXPECT_EQ(ToUTF8(nullptr), "");
  EXPECT_TRUE(XStrEqualsUTF8Str(nullptr, ""));
  EXPECT_FALSE(XStrEqualsUTF8Str(nullptr, "a"));
}

TEST_F(Texts, EmptyTextIsOneZeroUnit) {
  EXPECT_EQ(ToUTF16(""), std::vector<XMLCh>{0});
  EXPECT_EQ(ToUTF8(u""), "");
}

TEST_F(Texts, ComparisonIsExact) {
  EXPECT_TRUE(XStrEqualsUTF8Str(u"abc", "abc"));
  for (const char* const other : {"ab", "abcd", "Abc", "abd", "", " abc"}) {
    EXPECT_FALSE(XStrEqualsUTF8Str(u"abc", other)) << other;
  }
  EXPECT_FALSE(XStrEqualsUTF8Str(u"\u00E4", "a\xCC\x88"));
}

TEST_F(Texts, MalformedUtf8EqualsTheEmptyTextOnly) {
  for (const char* const bytes : {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "ab\xFF",
                                  "\xFF"
                                  "ab",
                                  "ab\xE2\x82"}) {
    EXPECT_TRUE(XStrEqualsUTF8Str(u"", bytes));
    EXPECT_TRUE(XStrEqualsUTF8Str(nullptr, bytes));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"ab", bytes));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"a", bytes));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"\uFFFD", bytes));
  }
}

TEST_F(Texts, MalformedBytesBehindTheFirstDifferenceStillCount) {
  EXPECT_FALSE(XStrEqualsUTF8Str(u"x", "abc\xFF"));
  EXPECT_TRUE(XStrEqualsUTF8Str(u"", (std::string(5000, 'a') + "\xFF").c_str()));
}

TEST_F(Texts, EveryStringOfOneAndTwoBytesConvertsAndComparesAsInTheLibrary) {
  for (int first = 1; first < 256; ++first) {
    ASSERT_TRUE(AgreesWithTheLibrary(Bytes({first})));
    for (int second = 1; second < 256; ++second) ASSERT_TRUE(AgreesWithTheLibrary(Bytes({first, second})));
  }
}

TEST_F(Texts, LongerSequencesWholeCutAndBrokenConvertAndCompareAsInTheLibrary) {
  const int second[] = {0x01, 0x41, 0x7F, 0x80, 0x87, 0x88, 0x8F, 0x90, 0x9F, 0xA0, 0xAF, 0xB0, 0xBF, 0xC0, 0xED, 0xFF};
  const int later[] = {0x41, 0x7F, 0x80, 0xBE, 0xBF, 0xC0, 0xFF};
  for (int first = 0xE0; first < 256; ++first) {
    for (const int b : second) {
      ASSERT_TRUE(AgreesWithTheLibrary(Bytes({'a', first, b})));
      for (const int c : later) {
        ASSERT_TRUE(AgreesWithTheLibrary(Bytes({first, b, c})));
        ASSERT_TRUE(AgreesWithTheLibrary(Bytes({first, b, c, 'z'})));
        for (const int d : later) {
          ASSERT_TRUE(AgreesWithTheLibrary(Bytes({first, b, c, d})));
          ASSERT_TRUE(AgreesWithTheLibrary(Bytes({'a', first, b, c, d, 'z'})));
        }
      }
    }
  }
}

TEST_F(Texts, EveryCodePointConvertsAndComparesAsInTheLibrary) {
  for (int point = 1; point <= 0x10FFFF; point += point < 0x3000 ? 1 : 61) {
    std::string bytes;
    if (point < 0x80) {
      bytes = Bytes({point});
    } else if (point < 0x800) {
      bytes = Bytes({0xC0 | point >> 6, 0x80 | (point & 0x3F)});
    } else if (point < 0x10000) {
      bytes = Bytes({0xE0 | point >> 12, 0x80 | (point >> 6 & 0x3F), 0x80 | (point & 0x3F)});
    } else {
      bytes =
          Bytes({0xF0 | point >> 18, 0x80 | (point >> 12 & 0x3F), 0x80 | (point >> 6 & 0x3F), 0x80 | (point & 0x3F)});
    }
    ASSERT_TRUE(AgreesWithTheLibrary(bytes));
  }
}

TEST_F(Texts, RandomBytesConvertAndCompareAsInTheLibrary) {
  std::mt19937 random(20240229);
  const char* const pieces[] = {"a",    "Z",    "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                "\xC3", "\x80", "\xFF",     "\xED"};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    // Mostly whole characters, so that a good part of the texts is well-formed.
    for (std::size_t i = random() % 8; i > 0; --i) bytes += pieces[random() % (random() % 4 == 0 ? 9 : 5)];
    ASSERT_TRUE(AgreesWithTheLibrary(bytes));
  }
}

TEST_F(Texts, LongTextsConvertAndCompareAsInTheLibrary) {
  for (std::size_t before = 990; before < 1004; ++before) {
    for (const char* const end : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xE2\x82", "\xF0\x9F\x98"}) {
      ASSERT_TRUE(AgreesWithTheLibrary(std::string(before, 'a') + end));
      ASSERT_TRUE(AgreesWithTheLibrary(std::string(before + 3000, 'a') + end + "tail"));
    }
  }
}

TEST_F(Texts, EveryUnitConvertsToUtf8AsInTheLibrary) {
  for (unsigned int unit = 1; unit <= 0xFFFF; ++unit) {
    const std::u16string text = {u'a', static_cast<char16_t>(unit)};
    ASSERT_EQ(ToUTF8(text.c_str()), reference_.ToUtf8(text)) << std::hex << unit;
  }
}

TEST_F(Texts, PairsOfSurrogatesAndTheirPartsConvertToUtf8AsInTheLibrary) {
  const unsigned int units[] = {u'a', 0xD800, 0xD83D, 0xDBFF, 0xDC00, 0xDE00, 0xDFFF, 0xE000, 0xFFFF};
  for (const unsigned int first : units) {
    for (const unsigned int second : units) {
      for (const unsigned int third : units) {
        const std::u16string text = {static_cast<char16_t>(first), static_cast<char16_t>(second),
                                     static_cast<char16_t>(third)};
        ASSERT_EQ(ToUTF8(text.c_str()), reference_.ToUtf8(text)) << std::hex << first << ' ' << second << ' ' << third;
      }
    }
  }
}

TEST_F(Texts, LongTextsConvertToUtf8Whole) {
  for (std::size_t before = 985; before < 1004; ++before) {
    for (const char16_t* const end : {u"\u00E4", u"\u20AC", u"\U0001F600"}) {
      const std::u16string text = std::u16string(before, u'a') + end + u"tail" + std::u16string(4000, u'\u20AC') + end;
      ASSERT_EQ(ToUTF8(text.c_str()), reference_.ToUtf8(text)) << before;
      ASSERT_FALSE(ToUTF8(text.c_str()).empty());
    }
  }
}

}  // namespace
