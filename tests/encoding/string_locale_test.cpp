// The _C functions as far as the runtime's locale serves them, in double-byte locales and in others.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/guarded_text.h"
#include "tests/support/mbstring.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;
using rqtest::IndexOf;
using rqtest::TestLocale;

// In Shift-JIS: a, then 83 5C, whose trail byte is a backslash, then b, then 82 A0.
constexpr char kSjis[] =
    "a\x83\x5C"
    "b\x82\xA0";

struct LeadCase {
  const char* locale;
  unsigned lead, notLead;
};

TEST(LeadByte, IsTheBeginningOfACharacterOfTwoBytes) {
  const LeadCase cases[] = {
      {"ja_JP.SJIS", 0x81, 0xB1},  // half-width katakana are single bytes
      {"ja_JP.SJIS", 0x9F, 0xA0}, {"ja_JP.SJIS", 0xE0, 0xDF}, {"zh_CN.GBK", 0x81, 0x80},
      {"zh_CN.GBK", 0xFE, 0xFF},  {"zh_TW.BIG5", 0xA4, 0x41}, {"ko_KR.EUC-KR", 0xB0, 0x7F},
  };
  for (const LeadCase& c : cases) {
    SCOPED_TRACE(c.locale);
    const TestLocale locale(c.locale);
    ASSERT_TRUE(locale.IsSet());
    EXPECT_EQ(QULTMBIsLeadByte_C(c.lead), 1);
    EXPECT_EQ(QULTMBIsLeadByte_C(c.notLead), 0);
  }
}

TEST(LeadByte, IsNoneOfAscii) {
  for (const char* name : {"ja_JP.SJIS", "zh_CN.GBK", "zh_TW.BIG5", "ko_KR.EUC-KR"}) {
    const TestLocale locale(name);
    ASSERT_TRUE(locale.IsSet());
    for (unsigned c = 0; c < 0x80; ++c) EXPECT_EQ(QULTMBIsLeadByte_C(c), 0) << name << " " << c;
  }
}

TEST(LeadByte, IsNothingThatIsNoByte) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  EXPECT_EQ(QULTMBIsLeadByte_C(0x181), 0);
  EXPECT_EQ(QULTMBIsLeadByte_C(0xFFFFFF81U), 0);
}

TEST(LeadByte, IsUnknownToLocalesWithLongerOrShorterCharacters) {
  for (const char* name : {"C", "C.UTF-8", "de_DE.UTF-8"}) {
    const TestLocale locale(name);
    ASSERT_TRUE(locale.IsSet()) << name;
    for (unsigned c = 0; c < 0x100; ++c) EXPECT_EQ(QULTMBIsLeadByte_C(c), 0) << name << " " << c;
    EXPECT_EQ(QULTMBmbclen_C("\xE2\x82\xAC"), 1U);
    EXPECT_EQ(QULTMBFindStart_C("\xE2\x82\xAC", 2), 2U);
  }
}

TEST(LocaleLength, IsTwoForALeadByteBeforeAnythingButTheTerminator) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  EXPECT_EQ(QULTMBmbclen_C("\x83\x5C"), 2U);
  EXPECT_EQ(QULTMBmbclen_C("\x83 "), 2U) << "the trail byte is not looked at";
  EXPECT_EQ(QULTMBmbclen_C("\x83"), 1U);
  EXPECT_EQ(QULTMBmbclen_C("\xB1\xB2"), 1U);
  EXPECT_EQ(QULTMBmbclen_C("a"), 1U);
  EXPECT_EQ(QULTMBmbclen_C(""), 1U);
  const char* const s = kSjis;
  EXPECT_EQ(QULTMBstrinc_C(s), s + 1);
  EXPECT_EQ(QULTMBstrinc_C(s + 1), s + 3);
}

TEST(LocaleLength, IsThatOfTheRuntime) {
  for (const char* name : {"C", "de_DE.UTF-8", "ja_JP.SJIS"}) {
    const TestLocale locale(name);
    ASSERT_TRUE(locale.IsSet());
    for (const char* s : {"", "a", "\x83\x5C", "\x83", "\xE2\x82\xAC", "\xE2\x82", "\xFF"})
      for (std::size_t n = 0; n <= std::strlen(s); ++n) EXPECT_EQ(QULTMBmblen_C(s, n), std::mblen(s, n)) << name << n;
    EXPECT_EQ(QULTMBmblen_C(nullptr, 3), std::mblen(nullptr, 3));
  }
}

TEST(LocaleSearch, PassesOverTrailBytes) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const char* const s = kSjis;
  EXPECT_EQ(QULTMBstrchr_C(s, 0x5C), nullptr);
  EXPECT_EQ(QULTMBstrrchr_C(s, 0x5C), nullptr);
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 'b'), s), 3U);
  const char* const twice = "\\\x83\\\\\x83\\";
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(twice, 0x5C), twice), 0U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_C(twice, 0x5C), twice), 3U);
}

TEST(LocaleSearch, LooksForTheLowByteAtTheBeginningOfACharacter) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const char* const s = kSjis;
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0x82), s), 4U);
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0xFFFFFF82U), s), 4U);
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0x0161), s), 0U);
  EXPECT_EQ(QULTMBstrchr_C(s, 0xA0), nullptr);
}

TEST(LocaleSearch, GoesOnBehindTheFirstByteOfAMatchWhenItLooksForTheLast) {
  const TestLocale locale("zh_CN.GBK");
  ASSERT_TRUE(locale.IsSet());
  const char* const s =
      "\xB0\xB0"
      "a";
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0xB0), s), 0U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_C(s, 0xB0), s), 1U);
}

TEST(LocaleSearch, TakesBytesOfNoCharacterOneByOne) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const char* const s = "\x83\x20\xFF/";
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0x20), s), 1U);
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, '/'), s), 3U);
}

TEST(LocaleSearch, FindsTheTerminatorForZeroAlone) {
  const char* const s = "abc";
  const char* const empty = "";
  EXPECT_EQ(QULTMBstrchr_C(s, 0), s + 3);
  EXPECT_EQ(QULTMBstrrchr_C(s, 0), s + 3);
  EXPECT_EQ(QULTMBstrchr_C(empty, 0), empty);
  EXPECT_EQ(QULTMBstrrchr_C(empty, 0), empty);
  EXPECT_EQ(QULTMBstrchr_C(s, 0x100), nullptr) << "a low byte of zero stands nowhere";
  EXPECT_EQ(QULTMBstrrchr_C(s, 0x100), nullptr);
  EXPECT_EQ(QULTMBstrchr_C(empty, 'a'), nullptr);
  EXPECT_EQ(QULTMBstrrchr_C(empty, 'a'), nullptr);
}

TEST(LocaleSearch, ServesLocalesWithLongerCharacters) {
  const TestLocale locale("de_DE.UTF-8");
  ASSERT_TRUE(locale.IsSet());
  const char* const s = "\xE2\x82\xAC\xC3\xA9";
  EXPECT_EQ(QULTMBstrchr_C(s, 0xAC), nullptr);
  EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, 0xC3), s), 3U);
}

TEST(LocaleSpan, EndsAtTheFirstRejectedCharacter) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  EXPECT_EQ(QULTMBstrcspn_C(kSjis, "\\"), 6U) << "a trail byte is no character";
  EXPECT_EQ(QULTMBstrcspn_C(kSjis, "\x83\x5C"), 1U);
  EXPECT_EQ(QULTMBstrcspn_C(kSjis, "x\x82\xA0"), 4U);
  EXPECT_EQ(QULTMBstrcspn_C(kSjis, "\x82\xA2"), 6U) << "both bytes count";
  EXPECT_EQ(QULTMBstrcspn_C(kSjis, ""), 6U);
  EXPECT_EQ(QULTMBstrcspn_C("", "a"), 0U);
  EXPECT_EQ(QULTMBstrcspn_C("a\xFF", "\xFF"), 1U) << "a byte of no character is found like one";
  EXPECT_EQ(QULTMBstrcspn_C("a\x83", "\x83"), 1U);
  EXPECT_EQ(QULTMBstrcspn_C("\x83\x5C", "\x83"), 2U);
}

struct CopyCase {
  const char* what;
  std::string text;
  std::size_t size;
  std::string expected;
};

TEST(LocaleCopy, KeepsWholeCharactersAndIsFilledWithZeroBytes) {
  using namespace std::string_literals;
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const CopyCase cases[] = {
      {"a character that does not fit is left out", "a\x83\x5C", 2, "a\0"s},
      {"a character that just fits is copied, without terminator", "a\x83\x5C", 3, "a\x83\x5C"},
      {"a text that fits is followed by zero bytes", "a\x83\x5C", 5, "a\x83\x5C\0\0"s},
      {"an empty text", "", 3, "\0\0\0"s},
      {"nothing fits", "\x83\x5C", 1, "\0"s},
      {"a lead byte at the end of the text begins nothing", "a\x83", 4, "a\0\0\0"s},
      {"a trail byte that looks like a lead byte",
       "\x83\x83"
       "a",
       2, "\x83\x83"},
      {"an odd number of them", "\x83\x83\x83\x83", 3, "\x83\x83\0"s},
      {"bytes of no character stay", "\xFF\x83 ", 3, "\xFF\x83 "},
      {"single bytes beyond ASCII", "\xB1\xB2", 1, "\xB1"},
  };
  for (const CopyCase& c : cases) {
    std::string buffer(c.size + 1, '#');
    EXPECT_EQ(QULTMBstrncpy_C(buffer.data(), c.text.c_str(), c.size), buffer.data());
    EXPECT_EQ(buffer, c.expected + "#") << c.what;
  }
}

TEST(LocaleCopy, DoesNothingWithoutTextDestinationOrPlace) {
  char buffer[] = "##";
  EXPECT_EQ(QULTMBstrncpy_C(buffer, nullptr, 1), buffer);
  EXPECT_EQ(QULTMBstrncpy_C(buffer, "abc", 0), buffer);
  EXPECT_EQ(QULTMBstrncpy_C(nullptr, "abc", 1), nullptr);
  EXPECT_STREQ(buffer, "##");
}

TEST(LocaleCopy, CutsATextInItsPlace) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  char text[] = "a\x83\x5C";
  QULTMBstrncpy_C(text, text, 2);
  EXPECT_EQ(std::string(text, 3), std::string("a\0\x5C", 3));
}

TEST(LocaleStart, IsThatOfTheCharacterThatHoldsTheByte) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const std::size_t expected[] = {0, 1, 1, 3, 4, 4, 6, 6};
  for (std::size_t i = 0; i < std::size(expected); ++i) EXPECT_EQ(QULTMBFindStart_C(kSjis, i), expected[i]) << i;
  EXPECT_EQ(QULTMBFindStart_C(kSjis, SIZE_MAX), 6U);
  const char* const leads = "\x83\x83\x83\x83\x83";
  const std::size_t pairs[] = {0, 0, 2, 2, 4, 5};
  for (std::size_t i = 0; i < std::size(pairs); ++i) EXPECT_EQ(QULTMBFindStart_C(leads, i), pairs[i]) << i;
}

TEST(LocaleStart, IsTheEndOfAnEmptyTextAndZeroOfNone) {
  EXPECT_EQ(QULTMBFindStart_C("", 0), 0U);
  EXPECT_EQ(QULTMBFindStart_C("", 3), 0U);
  EXPECT_EQ(QULTMBFindStart_C(nullptr, 3), 0U);
}

TEST(LocalePrevious, IsTheStartOfTheCharacterBefore) {
  const TestLocale locale("ja_JP.SJIS");
  ASSERT_TRUE(locale.IsSet());
  const char* const s = kSjis;
  EXPECT_EQ(QULTMBAnsiPrev_C(s, s + 1), s);
  EXPECT_EQ(QULTMBAnsiPrev_C(s, s + 3), s + 1);
  EXPECT_EQ(QULTMBAnsiPrev_C(s, s + 4), s + 3);
  EXPECT_EQ(QULTMBAnsiPrev_C(s, s + 6), s + 4);
  EXPECT_EQ(QULTMBAnsiPrev_C(s, s), s);
  EXPECT_EQ(QULTMBAnsiPrev_C(s, nullptr), nullptr);
  EXPECT_EQ(QULTMBAnsiPrev_C(nullptr, nullptr), nullptr);
}

// All pairs of bytes before the end of the memory, among them every lead byte before the terminator.
TEST(LocaleEveryPair, IsReadNoFurtherThanItsTerminator) {
  for (const char* name : {"de_DE.UTF-8", "ja_JP.SJIS", "zh_CN.GBK", "zh_TW.BIG5", "ko_KR.EUC-KR"}) {
    const TestLocale locale(name);
    ASSERT_TRUE(locale.IsSet());
    for (int last = 1; last < 256; ++last) {
      const rqtest::GuardedText text(std::string{'a', static_cast<char>(last)});
      const char* const s = text.Get();
      EXPECT_EQ(QULTMBstrchr_C(s, 1), last == 1 ? s + 1 : nullptr);
      EXPECT_EQ(QULTMBstrrchr_C(s, 1), last == 1 ? s + 1 : nullptr);
      EXPECT_EQ(QULTMBstrcspn_C(s, "\x01"), last == 1 ? 1U : 2U);
      EXPECT_EQ(QULTMBstrcspn_C("\x01", s), last == 1 ? 0U : 1U);
      EXPECT_EQ(QULTMBmbclen_C(s + 1), 1U);
      EXPECT_EQ(QULTMBFindStart_C(s, 10), 2U);
      EXPECT_EQ(QULTMBAnsiPrev_C(s, s + 2), s + 1);
      char buffer[10];
      EXPECT_EQ(QULTMBstrncpy_C(buffer, s, sizeof buffer), buffer);
    }
  }
}

// Every pair of bytes in every double-byte locale: a copy of one byte never keeps half of a character.
TEST(LocaleEveryPair, IsCopiedWholeOrNotAtAll) {
  for (const char* name : {"ja_JP.SJIS", "zh_CN.GBK", "zh_TW.BIG5", "ko_KR.EUC-KR"}) {
    const TestLocale locale(name);
    ASSERT_TRUE(locale.IsSet());
    for (unsigned first = 1; first < 256; ++first) {
      for (unsigned second = 1; second < 256; ++second) {
        const std::string text = {static_cast<char>(first), static_cast<char>(second)};
        for (std::size_t n = 1; n <= 3; ++n) {
          std::string buffer(n, '#');
          QULTMBstrncpy_C(buffer.data(), text.c_str(), n);
          ASSERT_EQ(buffer, rqtest::slow::StrNCpyC(text, n)) << name << " " << first << " " << second << " " << n;
        }
      }
    }
  }
}

}  // namespace
