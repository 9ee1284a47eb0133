// The _A functions: the _8 ones in UTF-8 mode, else the _C ones.

#include <gtest/gtest.h>

#include <string>

#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/mbstring.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;
using rqtest::IndexOf;

// UTF-8 for two Hangul syllables and a character; in Shift-JIS other characters, with a 5C that is a trail byte there.
constexpr char kText[] =
    "\xE3\x82\xA2\x83\x5C"
    "a";

std::string Copied(char* (*copy)(char*, const char*, std::size_t), const char* s, std::size_t n) {
  std::string buffer(n, '#');
  copy(buffer.data(), s, n);
  return buffer;
}

class Generic : public testing::Test {
 protected:
  void TearDown() override { SetUTF8mode(1); }

  rqtest::TestLocale fLocale{"ja_JP.SJIS"};
};

TEST_F(Generic, IsUtf8InUtf8Mode) {
  ASSERT_TRUE(fLocale.IsSet());
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  SetUTF8mode(1);
  const char* const s = kText;
  EXPECT_EQ(IndexOf(QULTMBstrchr_A(s, 0x30A2), s), 0U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_A(s, 0x5C), s), 4U);
  EXPECT_EQ(QULTMBstrcspn_A(s, "\\"), 4U);
  EXPECT_EQ(Copied(QULTMBstrncpy_A, s, 2), std::string(2, '\0'));
  EXPECT_EQ(QULTMBstrinc_A(s), s + 3);
  EXPECT_EQ(QULTMBAnsiPrev_A(s, s + 3), s);
  EXPECT_EQ(QULTMBAnsiPrev_A(s, s + 5), s + 4);
  int status = 77;
  EXPECT_EQ(QULTMBqstricmp_A("\xC3\x89", -1, "\xC3\xA9", -1, &status), 1);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(QULTMBstrnicmp_A("\xC3\x89", "\xC3\xA9", 2), 0);
}

TEST_F(Generic, IsTheLocaleAndTheDefaultConverterOutsideUtf8Mode) {
  ASSERT_TRUE(fLocale.IsSet());
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  SetUTF8mode(0);
  const char* const s = kText;
  EXPECT_EQ(QULTMBstrchr_A(s, 0x30A2), s + 2) << "the byte A2";
  EXPECT_EQ(QULTMBstrrchr_A(s, 0x5C), nullptr);
  EXPECT_EQ(QULTMBstrcspn_A(s, "\\"), 6U);
  EXPECT_EQ(Copied(QULTMBstrncpy_A, s, 2), std::string(s, 2));
  EXPECT_EQ(Copied(QULTMBstrncpy_A, s, 4), std::string("\xE3\x82\xA2\0", 4));
  EXPECT_EQ(QULTMBstrinc_A(s), s + 2);
  int status = 77;
  EXPECT_EQ(QULTMBqstricmp_A("\x82\x60", -1, "\x82\x81", -1, &status), 1);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(QULTMBstrnicmp_A("\x82\x60", "\x82\x81", 2), 0);
  EXPECT_EQ(QULTMBqstricmp_A("\x83\x41", -1, "\x83\x61", -1, nullptr), 0);
}

TEST_F(Generic, StepsBackByCharacterStartsOutsideUtf8Mode) {
  ASSERT_TRUE(fLocale.IsSet());
  SetUTF8mode(0);
  const char* const s = kText;
  const std::size_t starts[] = {0, 0, 0, 2, 3, 3, 5};
  for (std::size_t i = 0; i < std::size(starts); ++i) EXPECT_EQ(QULTMBAnsiPrev_A(s, s + i), s + starts[i]) << i;
}

TEST_F(Generic, LeavesNullPointersAsTheyAreInBothModes) {
  for (const int mode : {0, 1}) {
    SetUTF8mode(mode);
    EXPECT_EQ(QULTMBAnsiPrev_A("abc", nullptr), nullptr);
    EXPECT_EQ(QULTMBstrncpy_A(nullptr, "abc", 3), nullptr);
  }
  char buffer[] = "#";
  SetUTF8mode(0);
  QULTMBstrncpy_A(buffer, nullptr, 1);
  EXPECT_EQ(buffer[0], '#') << "no text, nothing done";
  SetUTF8mode(1);
  QULTMBstrncpy_A(buffer, nullptr, 1);
  EXPECT_EQ(buffer[0], '\0') << "no text counts as an empty one";
}

TEST_F(Generic, TakesAnyModeButZeroForUtf8) {
  ASSERT_TRUE(fLocale.IsSet());
  SetUTF8mode(-5);
  EXPECT_EQ(QULTMBstrinc_A(kText), kText + 3);
}

}  // namespace
