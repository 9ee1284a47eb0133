// The multibyte string functions on random texts against their rules done slowly.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/guarded_text.h"
#include "tests/support/mbstring.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;
namespace slow = rqtest::slow;
using rqtest::GuardedText;
using rqtest::IndexOf;
using rqtest::RandomText;

constexpr int kRounds = 3000;

const std::vector<std::string>& Utf8Pieces() {
  static const std::vector<std::string> pieces = {"a",
                                                  "A",
                                                  "z",
                                                  "Z",
                                                  "/",
                                                  "\xC3\xA9",
                                                  "\xC3\x89",
                                                  "\xE2\x82\xAC",
                                                  "\xE2\x84\xAA",
                                                  "k",
                                                  "\xF0\x9F\x98\x80",
                                                  "\xF0\x90\x90\x80",
                                                  "\xF0\x90\x90\xA8",
                                                  "\xEF\xBF\xBE",
                                                  "\xEF\xB7\x90",
                                                  "\xED\xA0\x80",
                                                  "\x80",
                                                  "\xBF",
                                                  "\xC0",
                                                  "\xE2",
                                                  "\xE2\x82",
                                                  "\xF0\x9F",
                                                  "\xF0\x9F\x98",
                                                  "\xFF"};
  return pieces;
}

const std::vector<unsigned> kSought = {0, 'a', '/', 0x80, 0xE9, 0x20AC, 0x1F600, 0xFFFE, 0xD800};

std::string Show(const std::string& text) { return testing::PrintToString(text); }

template <class Copy>
std::string CopyInto(const Copy& copy, const char* s, std::size_t n) {
  std::string buffer(n, '#');
  copy(buffer.data(), s, n);
  return buffer;
}

TEST(Utf8RandomText, IsSearchedAsBySlowRules) {
  std::mt19937 random(1);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string text = RandomText(random, Utf8Pieces(), 12);
    const std::string reject = RandomText(random, Utf8Pieces(), 3);
    const GuardedText guarded(text);
    const GuardedText guardedReject(reject);
    const char* const s = guarded.Get();
    for (const unsigned c : kSought) {
      EXPECT_EQ(IndexOf(QULTMBstrchr_8(s, c), s), slow::StrChr8(text, c)) << Show(text) << " " << c;
      EXPECT_EQ(IndexOf(QULTMBstrrchr_8(s, c), s), slow::StrRChr8(text, c)) << Show(text) << " " << c;
    }
    EXPECT_EQ(QULTMBstrcspn_8(s, guardedReject.Get()), slow::StrCSpn8(text, reject)) << Show(text) << Show(reject);
  }
}

TEST(Utf8RandomText, IsCutAndSteppedAsBySlowRulesAtEveryPlace) {
  std::mt19937 random(2);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string text = RandomText(random, Utf8Pieces(), 12);
    const GuardedText guarded(text);
    const GuardedText guardedBefore(text, GuardedText::Side::kBefore);
    const char* const s = guarded.Get();
    for (std::size_t i = 0; i <= text.size() + 2; ++i)
      EXPECT_EQ(CopyInto(QULTMBstrncpy_8, s, i), slow::StrNCpy8(text, i)) << Show(text) << " " << i;
    for (std::size_t i = 0; i <= text.size(); ++i) {
      EXPECT_EQ(QULTMBmbclen_8(s + i), slow::MbcLen8(std::string_view(text).substr(i))) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBmblen_8(s + i, 4), slow::MbLen8(std::string_view(text).substr(i), 4)) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBPreviousIndex_8(guardedBefore.Get(), i), slow::PreviousIndex8(text, i)) << Show(text) << " " << i;
    }
  }
}

// Another text of the same characters, some in the other case, sometimes with a change.
std::string Variant(std::mt19937& random, std::string text) {
  for (char& byte : text)
    if (random() % 2 == 0 && ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')))
      byte = static_cast<char>(byte ^ 0x20);
  if (!text.empty() && random() % 3 == 0) text[random() % text.size()] = '\xC3';
  if (random() % 4 == 0) text += 'x';
  return text;
}

TEST(Utf8RandomText, ComparesAsBySlowRules) {
  std::mt19937 random(3);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string a = RandomText(random, Utf8Pieces(), 8);
    const std::string b = random() % 3 == 0 ? RandomText(random, Utf8Pieces(), 8) : Variant(random, a);
    const GuardedText guardedA(a);
    const GuardedText guardedB(b);
    for (std::size_t n = 0; n <= std::max(a.size(), b.size()) + 1; ++n) {
      const auto expected = slow::Compare(slow::Fold8(a.substr(0, n)), slow::Fold8(b.substr(0, n)));
      slow::Comparison actual{};
      const auto length = static_cast<int>(n);
      actual.equal = QULTMBqstricmp_8(guardedA.Get(), length, guardedB.Get(), length, &actual.status);
      EXPECT_TRUE(actual == expected) << Show(a) << " " << Show(b) << " " << n;
      const int order = QULTMBstrnicmp_8(guardedA.Get(), guardedB.Get(), n);
      EXPECT_EQ(order == 0, expected.equal == 1) << Show(a) << " " << Show(b) << " " << n;
      EXPECT_EQ(order<0, QULTMBstrnicmp_8(guardedB.Get(), guardedA.Get(), n)> 0) << Show(a) << " " << Show(b);
    }
  }
}

class LocaleRandomText : public testing::TestWithParam<const char*> {
 protected:
  // Random bytes of all kinds that locales tell apart, or characters of UTF-8, which are bytes of all kinds as well.
  static std::string Text(std::mt19937& random, std::size_t most) {
    static const std::vector<std::string> bytes = rqtest::TextsOf("aA\\0~\x80\x81\x9F\xA0\xA1\xB1\xE0\xFC\xFE\xFF");
    return RandomText(random, random() % 3 == 0 ? Utf8Pieces() : bytes, most);
  }
};

TEST_P(LocaleRandomText, IsSearchedAsBySlowRules) {
  const rqtest::TestLocale locale(GetParam());
  ASSERT_TRUE(locale.IsSet());
  std::mt19937 random(4);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string text = Text(random, 6);
    const std::string reject = Text(random, 2);
    const GuardedText guarded(text);
    const GuardedText guardedReject(reject);
    const char* const s = guarded.Get();
    for (const unsigned c : {0U, 0x100U, 0x61U, 0x5CU, 0x81U, 0xB1U, 0xE2U, 0x161U, 0xFFFFFF81U}) {
      EXPECT_EQ(IndexOf(QULTMBstrchr_C(s, c), s), slow::StrChrC(text, c)) << Show(text) << " " << c;
      EXPECT_EQ(IndexOf(QULTMBstrrchr_C(s, c), s), slow::StrRChrC(text, c)) << Show(text) << " " << c;
    }
    EXPECT_EQ(QULTMBstrcspn_C(s, guardedReject.Get()), slow::StrCSpnC(text, reject)) << Show(text) << Show(reject);
  }
}

TEST_P(LocaleRandomText, IsCutAndSteppedAsBySlowRulesAtEveryPlace) {
  const rqtest::TestLocale locale(GetParam());
  ASSERT_TRUE(locale.IsSet());
  std::mt19937 random(5);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string text = Text(random, 6);
    const GuardedText guarded(text);
    const char* const s = guarded.Get();
    for (std::size_t i = 0; i <= text.size() + 2; ++i) {
      EXPECT_EQ(CopyInto(QULTMBstrncpy_C, s, i), slow::StrNCpyC(text, i)) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBFindStart_C(s, i), slow::FindStartC(text, i)) << Show(text) << " " << i;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
      const std::size_t length = slow::IsLead(text, i) && i + 1 < text.size() ? 2 : 1;
      EXPECT_EQ(QULTMBmbclen_C(s + i), length) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBstrinc_C(s + i), s + i + length) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBAnsiPrev_C(s, s + i + 1), s + slow::FindStartC(text, i)) << Show(text) << " " << i;
      EXPECT_EQ(QULTMBmblen_C(s + i, text.size() - i), std::mblen(s + i, text.size() - i)) << Show(text) << " " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Locales, LocaleRandomText,
                         testing::Values("C", "de_DE.UTF-8", "ja_JP.SJIS", "zh_CN.GBK", "zh_TW.BIG5", "ko_KR.EUC-KR"),
                         [](const auto& tested) {
                           std::string name = tested.param;
                           std::erase_if(name, [](char c) { return c == '.' || c == '-' || c == '_'; });
                           return name;
                         });

}  // namespace
