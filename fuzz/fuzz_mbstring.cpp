// Multibyte strings: stepping, searching, cutting and comparing give what the rules done slowly give, and nothing is
// read outside the text. The first byte of an input chooses a locale and an encoding, the second where the rest is
// divided into two texts. Long inputs are passed over: the slow rules take the square of their length.

#include <locale.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/guarded_text.h"
#include "tests/support/mbstring.h"
#include "tests/support/reference_mbstring.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;
namespace slow = rqtest::slow;
using rqtest::GuardedText;
using rqtest::IndexOf;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;

constexpr std::array<const char*, 6> kLocales = {"C",         "de_DE.UTF-8", "ja_JP.SJIS",
                                                 "zh_CN.GBK", "zh_TW.BIG5",  "ko_KR.EUC-KR"};
constexpr std::array<const char*, 9> kEncodings = {"65001",   "932",         "936", "949",     "950",
                                                   "gb18030", "ISO-2022-JP", "37",  "UTF-16BE"};
constexpr std::array<unsigned, 9> kSought = {0, 'a', '/', 0x5C, 0x82, 0xE9, 0x20AC, 0xFFFE, 0x1F600};

struct Close {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// The locales that the build made, kept as long as the process lives. They are copies of the global one: newlocale
// leaks where LOCPATH is set.
const std::array<locale_t, kLocales.size()>& Locales() {
  static const auto locales = [] {
    std::array<locale_t, kLocales.size()> made{};
    for (std::size_t i = 0; i < made.size(); ++i) {
      const rqtest::TestLocale locale(kLocales[i]);
      Check(locale.IsSet(), "the build has made the locale");
      made[i] = duplocale(LC_GLOBAL_LOCALE);
    }
    return made;
  }();
  return locales;
}

using Copy = char* (*)(char*, const char*, std::size_t);

std::string Copied(Copy copy, const char* s, std::size_t n) {
  std::string buffer(n, '#');
  copy(buffer.data(), s, n);
  return buffer;
}

// The code points that are looked for: some that are frequent, and one of the text's own.
std::array<unsigned, kSought.size() + 1> SoughtIn(const std::string& text) {
  std::array<unsigned, kSought.size() + 1> sought{};
  std::copy(kSought.begin(), kSought.end(), sought.begin());
  const auto pieces = slow::ByLead8(text);
  if (!pieces.empty()) sought.back() = static_cast<unsigned>(slow::CodePoint(pieces[pieces.size() / 2].bytes));
  return sought;
}

void CheckUtf8Searches(const std::string& text, const char* s, const std::string& reject, const char* rejected) {
  for (const unsigned c : SoughtIn(text)) {
    Check(IndexOf(QULTMBstrchr_8(s, c), s) == slow::StrChr8(text, c), "the first of a character in UTF-8");
    Check(IndexOf(QULTMBstrrchr_8(s, c), s) == slow::StrRChr8(text, c), "the last of a character in UTF-8");
  }
  Check(QULTMBstrcspn_8(s, rejected) == slow::StrCSpn8(text, reject), "the span of UTF-8");
}

void CheckUtf8Steps(const std::string& text, const char* s) {
  for (std::size_t i = 0; i <= text.size(); ++i) {
    const std::string_view rest = std::string_view(text).substr(i);
    Check(QULTMBmbclen_8(s + i) == slow::MbcLen8(rest), "the announced length");
    for (std::size_t n = 0; n <= 4; ++n) Check(QULTMBmblen_8(s + i, n) == slow::MbLen8(rest, n), "the true length");
    Check(QULTMBPreviousIndex_8(s, i) == slow::PreviousIndex8(text, i), "the step back");
    CheckEqual(Copied(QULTMBstrncpy_8, s, i), slow::StrNCpy8(text, i), "UTF-8 is cut");
  }
  CheckEqual(Copied(QULTMBstrncpy_8, s, text.size() + 3), slow::StrNCpy8(text, text.size() + 3), "UTF-8 is padded");
}

using Equal = int (*)(const char*, int, const char*, int, int*);
using Order = int (*)(const char*, const char*, std::size_t);

void CheckComparison(Equal equal, Order order, const char* a, const char* b, std::size_t n,
                     const slow::Comparison& expected) {
  slow::Comparison actual{};
  actual.equal = equal(a, static_cast<int>(n), b, static_cast<int>(n), &actual.status);
  Check(actual == expected, "texts compare as their characters do");
  const int forwards = order(a, b, n);
  const int backwards = order(b, a, n);
  Check((forwards == 0) == (expected.equal == 1), "both comparisons agree");
  Check((forwards < 0) == (backwards > 0) && (forwards > 0) == (backwards < 0), "the order has two sides");
}

void CheckLocale(const std::string& text, const char* s, const std::string& reject, const char* rejected) {
  for (const unsigned c : {0U, 0x61U, 0x5CU, 0x82U, 0xB0U, 0x161U, 0x100U}) {
    Check(IndexOf(QULTMBstrchr_C(s, c), s) == slow::StrChrC(text, c), "the first of a byte in the locale");
    Check(IndexOf(QULTMBstrrchr_C(s, c), s) == slow::StrRChrC(text, c), "the last of a byte in the locale");
  }
  Check(QULTMBstrcspn_C(s, rejected) == slow::StrCSpnC(text, reject), "the span in the locale");
  for (std::size_t i = 0; i <= text.size() + 2; ++i) {
    Check(QULTMBFindStart_C(s, i) == slow::FindStartC(text, i), "the start of a character in the locale");
    CheckEqual(Copied(QULTMBstrncpy_C, s, i), slow::StrNCpyC(text, i), "a text of the locale is cut");
  }
}

void CheckConverter(const char* encoding, const std::string& a, const char* guardedA, const std::string& b,
                    const char* guardedB) {
  Check(QULTMBSetDefaultConverter(encoding), "the encoding is served");
  const std::unique_ptr<UConverter, Close> converter(static_cast<UConverter*>(QULTMBConverterNew_C(nullptr)));
  for (const std::size_t n : {std::max(a.size(), b.size()), a.size() / 2}) {
    const auto expected = slow::Compare(slow::FoldConverted(converter.get(), a.substr(0, n)),
                                        slow::FoldConverted(converter.get(), b.substr(0, n)));
    CheckComparison(QULTMBqstricmp_C, QULTMBstrnicmp_C, guardedA, guardedB, n, expected);
  }
  int codePoint = 77;
  const int length = QULTMBU32Get_C(&codePoint, guardedA, 0, -1);
  Check(length >= -1 && length <= static_cast<int>(a.size()), "a character ends in its text");
  Check(length > 0 || codePoint == 0, "no character, no code point");
}

std::string UpToZero(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2 || size > 600) return 0;
  const std::string bytes = rqxml_fuzz::AsText(data + 2, size - 2);
  const std::size_t middle = data[1] % (bytes.size() + 1);
  const std::string a = UpToZero(bytes.substr(0, middle));
  const std::string b = UpToZero(bytes.substr(middle));
  const GuardedText guardedA(a);
  const GuardedText guardedB(b);

  CheckUtf8Searches(a, guardedA.Get(), b, guardedB.Get());
  CheckUtf8Steps(a, guardedA.Get());
  const GuardedText behindGuard(a, GuardedText::Side::kBefore);
  CheckUtf8Steps(a, behindGuard.Get());
  for (std::size_t n = 0; n <= std::max(a.size(), b.size()); ++n) {
    const auto expected = slow::Compare(slow::Fold8(a.substr(0, n)), slow::Fold8(b.substr(0, n)));
    CheckComparison(QULTMBqstricmp_8, QULTMBstrnicmp_8, guardedA.Get(), guardedB.Get(), n, expected);
  }

  uselocale(Locales()[data[0] % kLocales.size()]);
  CheckLocale(b, guardedB.Get(), a, guardedA.Get());
  CheckConverter(kEncodings[data[0] / kLocales.size() % kEncodings.size()], a, guardedA.Get(), b, guardedB.Get());
  return 0;
}
