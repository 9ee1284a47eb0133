// Random texts, every buffer size, every pair of encodings: what the slow reference gives.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <vector>

#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"
#include "tests/support/reference_transcode.h"

namespace {

using namespace RQMEM_NAMESPACE;
using rqtest::Converted;

// Compares one conversion with the reference, into buffers of all sizes from 1 to beyond the whole result.
template <class To, class From, class Convert, class Reference>
void CheckAllSizes(const std::basic_string<From>& source, Convert convert, Reference reference) {
  const rqtest::OfCapacity<To> expectedOf = reference(source);
  const std::size_t whole = expectedOf(rqtest::kUnlimited).text.size();
  for (const bool terminated : {false, true}) {
    if (terminated && source.find(From{0}) != source.npos) continue;
    for (std::size_t size = 1; size <= whole + 3; ++size) {
      const Converted<To> expected = expectedOf(size - (terminated ? 1 : 0));
      std::basic_string<To> buffer(size + 8, To{'#'});
      int status = -1;
      const int length = terminated ? -1 : static_cast<int>(source.size());
      const int count = convert(buffer.data(), static_cast<int>(size), source.c_str(), length, &status);
      ASSERT_EQ(status, expected.Status()) << "size " << size << (terminated ? " terminated" : "");
      ASSERT_EQ(count, static_cast<int>(expected.text.size())) << "size " << size << (terminated ? " terminated" : "");
      // What is behind the terminator may be anything: ICU writes there.
      const std::size_t kept = terminated && !expected.cut ? expected.text.size() + 1 : size;
      const auto wanted = rqtest::ReferenceBuffer(expected, terminated, size);
      ASSERT_TRUE(std::equal(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(kept), wanted.begin()))
          << "size " << size << (terminated ? " terminated" : "");
      ASSERT_TRUE(buffer.substr(size) == std::basic_string<To>(8, To{'#'})) << "behind size " << size;
    }
  }
}

// A random text of characters from different corners, some of them none.
template <class Unit>
class RandomText {
 public:
  explicit RandomText(unsigned seed) : random_(seed) {}

  std::basic_string<Unit> operator()(std::size_t longest, bool wellFormed) {
    static const std::vector<char32_t> kPoints = {
        U'a',      U'b',      U'~',      U' ',      U'\n',     U'\u00e9',     U'\u00df',     U'\u20ac', U'\u3042',
        U'\u30a2', U'\u4e2d', U'\uac00', U'\u00a5', U'\uff5e', U'\U0001f600', U'\U00020000', U'\u0451', U'\u05d0'};
    std::basic_string<Unit> text;
    for (std::size_t count = random_() % (longest + 1); count > 0; --count) {
      if (random_() % 3 == 0)
        rqtest::Append(text, 'a' + static_cast<int>(random_() % 26));
      else if (!wellFormed && random_() % 8 == 0)
        text += Illegal();
      else
        rqtest::Append(text, static_cast<std::int64_t>(kPoints[random_() % kPoints.size()]));
    }
    return text;
  }

  std::string Bytes(std::size_t longest) {
    std::string bytes;
    for (std::size_t count = random_() % (longest + 1); count > 0; --count)
      bytes += static_cast<char>(random_() % 2 == 0 ? 0x80 + random_() % 0x80 : 0x20 + random_() % 0x60);
    return bytes;
  }

 private:
  Unit Illegal() {
    if constexpr (sizeof(Unit) == 1) return static_cast<Unit>(0x80 + random_() % 0x80);
    if constexpr (sizeof(Unit) == 4)
      if (random_() % 3 == 0) return static_cast<Unit>(random_() % 2 == 0 ? 0x110000 : 0x1F600);
    return static_cast<Unit>(0xD800 + random_() % 0x800);
  }

  std::mt19937 random_;
};

class PagesTest : public testing::TestWithParam<const char*> {
 protected:
  PagesTest() : converter_(QULTMBConverterNew_8(GetParam())) {
    UErrorCode error = U_ZERO_ERROR;
    reference_ = rqtest::OpenReference(ucnv_getName(static_cast<UConverter*>(converter_.Get()), &error));
  }

  // ICU writes halves of surrogate pairs as UTF-7, so that the reference cannot stand one for the other.
  static bool KnowsIllegal() { return std::string(GetParam()) != "UTF-7"; }

  QULTMBConverterHandle converter_;
  rqtest::ReferenceConverter reference_;
};

constexpr int kRounds = 16;
constexpr std::size_t kLongest = 16;

template <class Unit>
void CheckUtf16(unsigned seed) {
  RandomText<Unit> random(seed);
  RandomText<char> randomBytes(seed);
  for (int round = 0; round < 5 * kRounds; ++round) {
    SCOPED_TRACE(round);
    CheckAllSizes<char>(
        random(kLongest, round % 2 == 0), [](auto... arguments) { return QULTMB16to8(arguments...); },
        rqtest::UnicodeOfCapacity<char, Unit>);
    CheckAllSizes<Unit>(
        randomBytes(kLongest * 3, round % 2 == 0), [](auto... arguments) { return QULTMB8to16(arguments...); },
        rqtest::UnicodeOfCapacity<Unit, char>);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(Transcode, BetweenUtf8AndWideTextsIsAsTheReferenceSays) { CheckUtf16<wchar_t>(1); }

TEST(Transcode, BetweenUtf8AndChar16TextsIsAsTheReferenceSays) { CheckUtf16<char16_t>(2); }

// Inner loops go by words and blocks: a character stands at each place of them, near the end of source and target.
TEST(Transcode, CharactersAtEveryPlaceBehindAsciiAreAsTheReferenceSays) {
  for (std::size_t before = 0; before <= 36; ++before)
    for (std::size_t behind = 0; behind <= 20; ++behind)
      for (const char* character : {"\u00e9", "\u3042", "\U0001F600", "\xF0\x9F\x98"}) {
        SCOPED_TRACE(std::to_string(before) + " before " + std::to_string(behind));
        const std::string utf8 = std::string(before, 'a') + character + std::string(behind, 'z');
        CheckAllSizes<wchar_t>(
            utf8, [](auto... arguments) { return QULTMB8to16(arguments...); },
            rqtest::UnicodeOfCapacity<wchar_t, char>);
        const std::u16string utf16 = rqtest::ReferenceUnicode<char16_t>(utf8, 1000).text;
        CheckAllSizes<char>(
            utf16, [](auto... arguments) { return QULTMB16to8(arguments...); },
            rqtest::UnicodeOfCapacity<char, char16_t>);
        if (HasFatalFailure()) return;
      }
}

TEST(Transcode, Utf8OfAllPairsOfBytesIsAsTheReferenceSays) {
  for (unsigned first = 0x7F; first <= 0xFF; ++first)
    for (unsigned second = 0x01; second <= 0xFF; ++second)
      for (const char* rest : {"", "\x80", "\xBF\x80", "z"}) {
        const std::string source = {static_cast<char>(first), static_cast<char>(second)};
        std::wstring actual;
        const int status = QULTMBU8ToU16(actual, source + rest);
        const auto expected = rqtest::ReferenceUnicode<wchar_t>(source + rest, 100);
        ASSERT_EQ(status, expected.Status()) << first << " " << second << " " << rest;
        ASSERT_TRUE(actual == expected.text) << first << " " << second << " " << rest;
      }
}

TEST(Transcode, AllCodePointsGoToUtf8AndBack) {
  for (std::int64_t point = 0; point <= 0x10FFFF; ++point) {
    if (rqtest::IsSurrogate(point)) continue;
    std::string utf8;
    std::wstring utf16;
    rqtest::Append(utf8, point);
    rqtest::Append(utf16, point);
    std::string to8;
    std::wstring to16;
    ASSERT_EQ(QULTMBU16ToU8(to8, utf16), 0) << point;
    ASSERT_EQ(QULTMBU8ToU16(to16, utf8), 0) << point;
    ASSERT_TRUE(to8 == utf8 && to16 == utf16) << point;
  }
}

TEST_P(PagesTest, WideTextsAreWrittenAsTheReferenceSays) {
  RandomText<wchar_t> random(3);
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    CheckAllSizes<char>(
        random(kLongest, round % 2 == 0 || !KnowsIllegal()),
        [&](auto... arguments) { return QULTMB16toCodePage(converter_.Get(), arguments...); },
        [&](const std::wstring& source) { return rqtest::PageOfCapacity(reference_, source); });
  }
}

TEST_P(PagesTest, Char16TextsAreWrittenAsTheReferenceSays) {
  RandomText<char16_t> random(4);
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    CheckAllSizes<char>(
        random(kLongest, round % 2 == 0 || !KnowsIllegal()),
        [&](auto... arguments) { return QULTMB16toCodePage(converter_.Get(), arguments...); },
        [&](const std::u16string& source) { return rqtest::PageOfCapacity(reference_, source); });
  }
}

TEST_P(PagesTest, Utf8TextsAreWrittenAsTheReferenceSays) {
  RandomText<char> random(5);
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    CheckAllSizes<char>(
        random(kLongest, round % 2 == 0),
        [&](auto... arguments) { return QULTMB8toCodePage(converter_.Get(), arguments...); },
        [&](const std::string& source) { return rqtest::PageOfCapacity(reference_, source); });
  }
}

TEST_P(PagesTest, BytesAreReadAsTheReferenceSays) {
  RandomText<char> random(6);
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    std::string source = random.Bytes(kLongest);
    if (round % 2 == 0) source = rqtest::ReferenceToPage(reference_, random(kLongest, true), rqtest::kUnlimited).text;
    CheckAllSizes<wchar_t>(
        source, [&](auto... arguments) { return QULTMBCodePageto16(converter_.Get(), arguments...); },
        [&](const std::string& text) { return rqtest::FromPageOfCapacity<wchar_t>(reference_, text); });
    CheckAllSizes<char16_t>(
        source, [&](auto... arguments) { return QULTMBCodePageto16(converter_.Get(), arguments...); },
        [&](const std::string& text) { return rqtest::FromPageOfCapacity<char16_t>(reference_, text); });
    CheckAllSizes<char>(
        source, [&](auto... arguments) { return QULTMBCodePageto8(converter_.Get(), arguments...); },
        [&](const std::string& text) { return rqtest::FromPageOfCapacity<char>(reference_, text); });
  }
}

// Texts beyond every inner buffer, into strings and into buffers cut near the end.
TEST_P(PagesTest, LongTextsAreAsTheReferenceSays) {
  RandomText<char> random(7);
  for (const bool wellFormed : {true, false}) {
    std::string source;
    while (source.size() < 9000) source += random(kLongest, wellFormed);
    const auto expected = rqtest::ReferenceToPage(reference_, source, rqtest::kUnlimited);
    std::string bytes;
    EXPECT_EQ(QULTMBU8ToCodePage(converter_.Get(), bytes, source), expected.Status());
    ASSERT_TRUE(bytes == expected.text);
    const auto back = rqtest::ReferenceFromPage<char>(reference_, bytes, rqtest::kUnlimited);
    std::string utf8;
    EXPECT_EQ(QULTMBCodePageToU8(converter_.Get(), utf8, bytes), back.Status());
    ASSERT_TRUE(utf8 == back.text);
    const auto wide = rqtest::ReferenceFromPage<wchar_t>(reference_, bytes, rqtest::kUnlimited);
    std::wstring utf16;
    EXPECT_EQ(QULTMBCodePageToU16(converter_.Get(), utf16, bytes), wide.Status());
    ASSERT_TRUE(utf16 == wide.text);
    std::string again;
    EXPECT_EQ(QULTMBU16ToCodePage(converter_.Get(), again, utf16),
              rqtest::ReferenceToPage(reference_, utf16, rqtest::kUnlimited).Status());
    ASSERT_TRUE(again == rqtest::WholeInPage(reference_, std::u16string(utf16.begin(), utf16.end())));
  }
}

TEST_P(PagesTest, LongTextsAreCutAtWholeCharacters) {
  RandomText<char> random(8);
  std::string source;
  while (source.size() < 700) source += random(kLongest, true);
  const std::size_t whole = rqtest::ReferenceToPage(reference_, source, rqtest::kUnlimited).text.size();
  for (std::size_t size = whole - 12; size <= whole + 1; ++size) {
    const auto expected = rqtest::ReferenceToPage(reference_, source, size);
    std::string buffer(size, '#');
    int status = -1;
    QULTMB8toCodePage(converter_.Get(), buffer.data(), static_cast<int>(size), source.data(),
                      static_cast<int>(source.size()), &status);
    EXPECT_EQ(status, expected.Status());
    ASSERT_TRUE(buffer == rqtest::ReferenceBuffer(expected, false, size)) << size << " of " << whole;
    const std::string page = rqtest::ReferenceToPage(reference_, source, rqtest::kUnlimited).text;
    const auto back = rqtest::ReferenceFromPage<char>(reference_, page, size);
    std::string utf8(size, '#');
    QULTMBCodePageto8(converter_.Get(), utf8.data(), static_cast<int>(size), page.data(), static_cast<int>(page.size()),
                      &status);
    EXPECT_EQ(status, back.Status());
    ASSERT_TRUE(utf8 == rqtest::ReferenceBuffer(back, false, size)) << size << " of " << whole;
  }
}

INSTANTIATE_TEST_SUITE_P(Encodings, PagesTest,
                         testing::Values("932", "936", "949", "950", "1250", "1251", "1252", "1253", "1254", "1255",
                                         "1256", "1257", "1258", "28591", "65001", "gb18030", "EUC-JP", "EUC-TW",
                                         "ISO-2022-JP", "ISO-2022-KR", "ISO-2022-CN", "HZ-GB-2312", "UTF-16",
                                         "UTF-16LE", "UTF-32", "US-ASCII", "ibm-37", "ibm-930", "UTF-7", "cp437",
                                         "ibm-1363"),
                         [](const auto& page) {
                           std::string name = page.param;
                           for (char& c : name)
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                           return name;
                         });

}  // namespace
