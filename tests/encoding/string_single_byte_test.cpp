// White-box: the flag that makes every byte a character of the locale.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMLocale.h"
#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;

constexpr char kSjis[] =
    "a\x83\x5C"
    "b\x82\xA0";

class SingleByte : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(fLocale.IsSet());
    locale::gSingleByte = GetParam();
  }
  void TearDown() override {
    locale::gSingleByte = 0;
    SetUTF8mode(1);
  }

  rqtest::TestLocale fLocale{"ja_JP.SJIS"};
};

TEST(SingleByteFlag, IsNotSet) { EXPECT_EQ(locale::gSingleByte, 0); }

TEST_P(SingleByte, MakesEveryByteACharacter) {
  const char* const s = kSjis;
  for (std::size_t i = 0; i < std::strlen(s); ++i) {
    EXPECT_EQ(QULTMBmbclen_C(s + i), 1U);
    EXPECT_EQ(QULTMBstrinc_C(s + i), s + i + 1);
    EXPECT_EQ(QULTMBFindStart_C(s, i), i);
    EXPECT_EQ(QULTMBAnsiPrev_C(s, s + i + 1), s + i);
    EXPECT_EQ(QULTMBIsLeadByte_C(static_cast<unsigned char>(s[i])), 0);
  }
  EXPECT_EQ(QULTMBFindStart_C(s, 6), 6U);
  EXPECT_EQ(QULTMBFindStart_C(s, 7), 6U);
  EXPECT_EQ(QULTMBFindStart_C(nullptr, 7), 0U);
}

TEST_P(SingleByte, LeavesSearchesToTheRuntime) {
  const char* const s = kSjis;
  EXPECT_EQ(QULTMBstrchr_C(s, 0x5C), s + 2);
  EXPECT_EQ(QULTMBstrrchr_C(s, 0xA0), s + 5);
  EXPECT_EQ(QULTMBstrchr_C(s, 0), s + 6);
  EXPECT_EQ(QULTMBstrrchr_C(s, 0), s + 6);
  EXPECT_EQ(QULTMBstrcspn_C(s, "\\"), 2U);
  EXPECT_EQ(QULTMBstrchr_C("", 'a'), nullptr);
}

TEST_P(SingleByte, CopiesAsTheRuntimeDoes) {
  for (std::size_t n = 1; n < 9; ++n) {
    std::string expected(n, '#');
    std::string actual(n, '#');
    std::strncpy(expected.data(), kSjis, n);
    EXPECT_EQ(QULTMBstrncpy_C(actual.data(), kSjis, n), actual.data());
    EXPECT_EQ(actual, expected) << n;
  }
  EXPECT_EQ(QULTMBstrncpy_C(nullptr, kSjis, 3), nullptr);
}

TEST_P(SingleByte, HoldsForEightBitTextOutsideUtf8ModeAlone) {
  SetUTF8mode(0);
  EXPECT_EQ(QULTMBstrchr_A(kSjis, 0x5C), kSjis + 2);
  EXPECT_EQ(QULTMBstrrchr_A(kSjis, 0x5C), kSjis + 2);
  EXPECT_EQ(QULTMBstrinc_A(kSjis + 1), kSjis + 2);
  EXPECT_EQ(QULTMBAnsiPrev_A(kSjis, kSjis + 3), kSjis + 2);
  SetUTF8mode(1);
  const char* const utf8 = "\xC3\xA9";
  EXPECT_EQ(QULTMBstrchr_A(utf8, 0xA9), nullptr);
  EXPECT_EQ(QULTMBstrinc_A(utf8), utf8 + 2);
}

INSTANTIATE_TEST_SUITE_P(AnyValueButZero, SingleByte, testing::Values(1, -1, 5));

}  // namespace
