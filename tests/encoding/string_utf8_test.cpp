// The _8 functions, rule by rule.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/mbstring.h"

namespace {

using namespace RQMEM_NAMESPACE;
using rqtest::IndexOf;

constexpr char kEuro[] = "\xE2\x82\xAC";
constexpr char kSmiley[] = "\xF0\x9F\x98\x80";

struct LengthCase {
  const char* text;
  std::size_t announced;
  int wellFormed;
};

TEST(Utf8Length, IsAnnouncedByTheFirstByteAndTrueForWellFormedSequencesAlone) {
  const LengthCase cases[] = {
      {"", 1, 0},
      {"a", 1, 1},
      {"\x7F", 1, 1},
      {"\x80", 1, -1},
      {"\xBF\x80", 1, -1},
      {"\xC0\x80", 1, -1},
      {"\xC1\xBF", 1, -1},
      {"\xC2\x80", 2, 2},
      {"\xC2", 1, -1},
      {"\xC2\x41", 2, -1},
      {"\xDF\xBF", 2, 2},
      {"\xE0\x80\x80", 3, -1},  // overlong
      {"\xE0\xA0\x80", 3, 3},
      {"\xE2", 1, -1},
      {"\xE2\x82", 2, -1},
      {kEuro, 3, 3},
      {"\xE2 a", 3, -1},
      {"\xED\x9F\xBF", 3, 3},
      {"\xED\xA0\x80", 3, -1},      // a surrogate
      {"\xEF\xBF\xBE", 3, 3},       // a noncharacter is well-formed
      {"\xF0\x8F\xBF\xBF", 4, -1},  // overlong
      {"\xF0\x90\x80\x80", 4, 4},
      {"\xF0\x9F\x98", 3, -1},
      {kSmiley, 4, 4},
      {"\xF4\x8F\xBF\xBF", 4, 4},
      {"\xF4\x90\x80\x80", 4, -1},  // behind the last code point
      {"\xF5\x80\x80\x80", 1, -1},
      {"\xFF", 1, -1},
  };
  for (const LengthCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::string(c.text)));
    EXPECT_EQ(QULTMBmbclen_8(c.text), c.announced);
    EXPECT_EQ(QULTMBstrinc_8(c.text), c.text + c.announced);
    EXPECT_EQ(QULTMBmblen_8(c.text, std::strlen(c.text)), c.wellFormed);
    EXPECT_EQ(QULTMBmblen_8(c.text, SIZE_MAX), c.wellFormed);
  }
}

TEST(Utf8Length, IsZeroForNoTextAndForNoBytes) {
  EXPECT_EQ(QULTMBmblen_8(nullptr, 3), 0);
  EXPECT_EQ(QULTMBmblen_8(nullptr, 0), 0);
  EXPECT_EQ(QULTMBmblen_8(kEuro, 0), 0);
  EXPECT_EQ(QULTMBmblen_8("\x80", 0), 0);
  EXPECT_EQ(QULTMBmblen_8("", 5), 0);
}

TEST(Utf8Length, IsMinusOneWhereTheSequenceIsLongerThanTheLimit) {
  EXPECT_EQ(QULTMBmblen_8("\xC3\xA9", 1), -1);
  EXPECT_EQ(QULTMBmblen_8(kEuro, 1), -1);
  EXPECT_EQ(QULTMBmblen_8(kEuro, 2), -1);
  EXPECT_EQ(QULTMBmblen_8(kSmiley, 3), -1);
}

TEST(Utf8Search, FindsTheFirstAndTheLastCharacterOfACodePoint) {
  const std::string text = std::string("a") + kEuro + "b" + kSmiley + kEuro + "c";
  const char* const s = text.c_str();
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(s, 0x20AC), s), 1U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_8(s, 0x20AC), s), 9U);
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(s, 0x1F600), s), 5U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_8(s, 0x1F600), s), 5U);
  EXPECT_EQ(QULTMBstrchr_8(s, 0x20AD), nullptr);
  EXPECT_EQ(QULTMBstrrchr_8(s, 0x20AD), nullptr);
}

TEST(Utf8Search, DoesNotFindAByteInsideACharacter) {
  EXPECT_EQ(QULTMBstrchr_8(kEuro, 0x82), nullptr);
  EXPECT_EQ(QULTMBstrrchr_8(kEuro, 0xAC), nullptr);
}

TEST(Utf8Search, FindsAsciiAsTheRuntimeDoes) {
  const char* const s = "abcabc";
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(s, 'b'), s), 1U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_8(s, 'b'), s), 4U);
  EXPECT_EQ(QULTMBstrchr_8(s, 'x'), nullptr);
  // Bytes below 80 are found also where a lead byte claims them.
  const char* const claimed = "\xE2/x";
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(claimed, '/'), claimed), 1U);
  EXPECT_EQ(IndexOf(QULTMBstrrchr_8(claimed, '/'), claimed), 1U);
}

TEST(Utf8Search, FindsTheTerminatorForZero) {
  const char* const s = "abc";
  EXPECT_EQ(QULTMBstrchr_8(s, 0), s + 3);
  EXPECT_EQ(QULTMBstrrchr_8(s, 0), s + 3);
  const char* const empty = "";
  EXPECT_EQ(QULTMBstrchr_8(empty, 0), empty);
  EXPECT_EQ(QULTMBstrrchr_8(empty, 0), empty);
}

TEST(Utf8Search, FindsNothingInAnEmptyText) {
  EXPECT_EQ(QULTMBstrchr_8("", 0x20AC), nullptr);
  EXPECT_EQ(QULTMBstrrchr_8("", 0x20AC), nullptr);
  EXPECT_EQ(QULTMBstrchr_8("", 'a'), nullptr);
}

TEST(Utf8Search, DividesByFirstBytesAloneAndValidatesNothing) {
  const char* const stray = "\x82\x83";
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(stray, 0x83), stray), 1U) << "a stray byte stands for itself";
  const char* const claimed = "\xE2\x61\x62\xC3\xA9";  // E2 takes a and b, and makes (2 << 12) | (21 << 6) | 22 of them
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(claimed, 0x2862), claimed), 0U);
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(claimed, 0xE9), claimed), 3U);
  const char* const five = "\xF8\x88\x80\x80\x80";  // four bytes, and one that stands for itself
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(five, 0x80), five), 4U);
  const char* const beyond = "\xF7\xBF\xBF\xBF";
  EXPECT_EQ(IndexOf(QULTMBstrchr_8(beyond, 0x1FFFFF), beyond), 0U);
}

TEST(Utf8Search, FindsNoCharacterThatTheTerminatorCuts) {
  const char text[] = "\xE2\x82\0\xAC\xC3\xA9";
  EXPECT_EQ(QULTMBstrchr_8(text, 0x20AC), nullptr);
  EXPECT_EQ(QULTMBstrchr_8(text, 0x2080), nullptr) << "nor one with the terminator as its last byte";
  EXPECT_EQ(QULTMBstrchr_8(text, 0xE9), nullptr);
  EXPECT_EQ(QULTMBstrrchr_8(text, 0xE9), nullptr);
  EXPECT_EQ(QULTMBstrchr_8(text, UINT_MAX), nullptr);
  EXPECT_EQ(QULTMBstrrchr_8(text, UINT_MAX), nullptr);
}

TEST(Utf8Span, EndsAtTheFirstRejectedCharacter) {
  const std::string text = std::string("ab") + kEuro + kSmiley + "c";
  EXPECT_EQ(QULTMBstrcspn_8(text.c_str(), "c"), 9U);
  EXPECT_EQ(QULTMBstrcspn_8(text.c_str(), kSmiley), 5U);
  EXPECT_EQ(QULTMBstrcspn_8(text.c_str(), (std::string("c") + kSmiley + kEuro).c_str()), 2U);
  EXPECT_EQ(QULTMBstrcspn_8(text.c_str(), "a"), 0U);
}

TEST(Utf8Span, IsTheWholeTextWhereNothingIsRejected) {
  EXPECT_EQ(QULTMBstrcspn_8(kEuro, ""), 3U);
  EXPECT_EQ(QULTMBstrcspn_8(kEuro, "xyz"), 3U);
  EXPECT_EQ(QULTMBstrcspn_8("", "xyz"), 0U);
  EXPECT_EQ(QULTMBstrcspn_8("", ""), 0U);
}

TEST(Utf8Span, ComparesCharactersAndNotBytes) {
  // E2 82 AC and E2 82 AD share two bytes; U+20AC and U+10AC share the low byte.
  EXPECT_EQ(QULTMBstrcspn_8("\xE2\x82\xAD"
                            "x",
                            kEuro),
            4U);
  EXPECT_EQ(QULTMBstrcspn_8("\xE1\x82\xAC"
                            "x",
                            kEuro),
            4U);
  EXPECT_EQ(QULTMBstrcspn_8(kEuro, "\xC2\x82"), 3U);
}

TEST(Utf8Span, PassesOverWhatTheTerminatorCuts) {
  EXPECT_EQ(QULTMBstrcspn_8("a\xE2\x82", kEuro), 3U);
  EXPECT_EQ(QULTMBstrcspn_8(kEuro, "\xE2\x82"), 3U);
  EXPECT_EQ(QULTMBstrcspn_8("a\xE2\x82", "\xE2\x82"), 3U);
}

struct CopyCase {
  const char* what;
  std::string text;
  std::size_t size;
  std::string expected;
};

TEST(Utf8Copy, EndsWithAnAcceptableCharacterAndIsFilledWithZeroBytes) {
  using namespace std::string_literals;
  const CopyCase cases[] = {
      {"a character that does not fit is left out", "a\xC3\xA9", 2, "a\0"s},
      {"a character that just fits is copied, without terminator", "a\xC3\xA9", 3, "a\xC3\xA9"},
      {"a text that fits is followed by zero bytes", "a\xC3\xA9", 6, "a\xC3\xA9\0\0\0"s},
      {"an empty text", "", 3, "\0\0\0"s},
      {"nothing fits", kSmiley, 3, "\0\0\0"s},
      {"a cut sequence at the end of the text", "a\xE2\x82", 5, "a\0\0\0\0"s},
      {"stray bytes at the end", "a\x80\x80\x80\x80\x80\x80", 7, "a\0\0\0\0\0\0"s},
      {"a byte that is never used", "ab\xFF", 3, "ab\0"s},
      {"an overlong form", "a\xC0\x80", 3, "a\0\0"s},
      {"a surrogate", "a\xED\xA0\x80", 4, "a\0\0\0"s},
      {"a noncharacter of the Arabic block", "a\xEF\xB7\x90", 4, "a\0\0\0"s},
      {"the last noncharacter of that block", "a\xEF\xB7\xAF", 4, "a\0\0\0"s},
      {"its neighbours are characters", "a\xEF\xB7\xB0", 4, "a\xEF\xB7\xB0"},
      {"U+FFFE", "a\xEF\xBF\xBE", 4, "a\0\0\0"s},
      {"U+10FFFF", "a\xF4\x8F\xBF\xBF", 5, "a\0\0\0\0"s},
      {"one after the other is dropped", "a\xEF\xBF\xBF\xED\xA0\x80\xE2\x82", 9, "a\0\0\0\0\0\0\0\0"s},
      {"what is not at the end stays", "\xFF\x80\xEF\xBF\xBFz", 6, "\xFF\x80\xEF\xBF\xBFz"},
      {"all of it is dropped", "\xEF\xBF\xBF\x80", 4, "\0\0\0\0"s},
  };
  for (const CopyCase& c : cases) {
    std::string buffer(c.size + 1, '#');
    EXPECT_EQ(QULTMBstrncpy_8(buffer.data(), c.text.c_str(), c.size), buffer.data());
    EXPECT_EQ(buffer, c.expected + "#") << c.what;
  }
}

TEST(Utf8Copy, TakesANullTextForAnEmptyOne) {
  char buffer[] = "####";
  EXPECT_EQ(QULTMBstrncpy_8(buffer, nullptr, 3), buffer);
  EXPECT_EQ(std::string(buffer, 4), std::string("\0\0\0#", 4));
}

TEST(Utf8Copy, DoesNothingWithoutADestinationOrPlace) {
  EXPECT_EQ(QULTMBstrncpy_8(nullptr, "abc", 3), nullptr);
  char buffer[] = "#";
  EXPECT_EQ(QULTMBstrncpy_8(buffer, "abc", 0), buffer);
  EXPECT_EQ(QULTMBstrncpy_8(buffer, nullptr, 0), buffer);
  EXPECT_EQ(buffer[0], '#');
}

TEST(Utf8Copy, CutsATextInItsPlace) {
  char text[] = "ab\xE2\x82\xAC";
  EXPECT_EQ(QULTMBstrncpy_8(text, text, 4), text);
  EXPECT_EQ(std::string(text, 5), std::string("ab\0\0\xAC", 5));
}

struct CompareCase {
  const char* what;
  std::string a, b;
  int equal, status;
};

TEST(Utf8Caseless, ComparesCharactersAfterSimpleLowerCasing) {
  const CompareCase cases[] = {
      {"nothing", "", "", 1, 0},
      {"the same", "abc", "abc", 1, 0},
      {"ASCII", "aBc-[@`{", "AbC-[@`{", 1, 0},
      {"the character before A has no case", "@", "`", 0, 0},
      {"nor has the one behind Z", "[", "{", 0, 0},
      {"letters with accents", "\xC3\x89t\xC3\xA9", "\xC3\xA9T\xC3\x89", 1, 0},
      {"Greek, both small sigmas are different letters", "\xCE\xA3", "\xCF\x82", 0, 0},
      {"the Kelvin sign is a K of another length", "\xE2\x84\xAA", "k", 1, 0},
      {"a sharp s is not two letters", "\xC3\x9F", "ss", 0, 0},
      {"Deseret, beyond the basic plane", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8", 1, 0},
      {"other characters", "\xE2\x82\xAC", "\xE2\x82\xAD", 0, 0},
      {"a prefix", "abc", "ab", 0, 0},
      {"a prefix on the other side", "ab", "abc", 0, 0},
      {"nothing and something", "", "a", 0, 0},
      {"the same malformed byte",
       "a\xFF"
       "B",
       "A\xFF"
       "b",
       1, 3},
      {"other malformed bytes", "a\xFE", "a\xFF", 0, 3},
      {"a malformed byte and the character of its number", "\xE9", "\xC3\xA9", 0, 3},
      {"malformed on the other side", "\xC3\xA9", "\xE9", 0, 3},
      {"a cut sequence, byte by byte", "\xE2\x82", "\xE2\x82", 1, 3},
      {"surrogates are malformed", "\xED\xA0\x80", "\xED\xA0\x80", 1, 3},
      {"an overlong form is not its character", "\xC1\x81", "A", 0, 3},
      {"noncharacters are characters here", "\xEF\xBF\xBE", "\xEF\xBF\xBE", 1, 0},
      {"malformed behind the first difference is not met", "a\xFF", "b\xFF", 0, 0},
      {"malformed before the first difference is",
       "\xFF"
       "a",
       "\xFF"
       "b",
       0, 3},
  };
  for (const CompareCase& c : cases) {
    SCOPED_TRACE(c.what);
    int status = 77;
    EXPECT_EQ(QULTMBqstricmp_8(c.a.c_str(), -1, c.b.c_str(), -1, &status), c.equal);
    EXPECT_EQ(status, c.status);
    const auto lengthA = static_cast<int>(c.a.size());
    const auto lengthB = static_cast<int>(c.b.size());
    EXPECT_EQ(QULTMBqstricmp_8(c.a.c_str(), lengthA, c.b.c_str(), lengthB, nullptr), c.equal);
    const std::size_t longer = std::max(c.a.size(), c.b.size());
    EXPECT_EQ(QULTMBstrnicmp_8(c.a.c_str(), c.b.c_str(), longer) == 0, c.equal == 1);
    EXPECT_EQ(QULTMBstrnicmp_8(c.a.c_str(), c.b.c_str(), SIZE_MAX) == 0, c.equal == 1);
  }
}

TEST(Utf8Caseless, EndsATextAtItsLengthOrAtAZeroByte) {
  EXPECT_EQ(QULTMBqstricmp_8("abcX", 3, "ABCY", 3, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("abcX", 3, "ABC", -1, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("abc", 2, "ABC", 3, nullptr), 0);
  EXPECT_EQ(QULTMBqstricmp_8("ab\0X", 4, "AB\0Y", 4, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("ab\0X", 4, "AB", 2, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("x", 0, "y", 0, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("x", 0, "", -1, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_8("x", INT_MIN, "X", INT_MIN, nullptr), 1);
  EXPECT_EQ(QULTMBstrnicmp_8("abcX", "ABCY", 3), 0);
  EXPECT_NE(QULTMBstrnicmp_8("abcX", "ABCY", 4), 0);
  EXPECT_EQ(QULTMBstrnicmp_8("ab\0X", "AB\0Y", 4), 0);
  EXPECT_EQ(QULTMBstrnicmp_8("x", "y", 0), 0);
}

TEST(Utf8Caseless, TakesACharacterThatTheLengthCutsForMalformedBytes) {
  int status = 77;
  EXPECT_EQ(QULTMBqstricmp_8(kEuro, 2, "\xE2\x82\xAD", 2, &status), 1);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(QULTMBstrnicmp_8(kEuro, "\xE2\x82\xAD", 2), 0);
  EXPECT_NE(QULTMBstrnicmp_8(kEuro, "\xE2\x82\xAD", 3), 0);
}

TEST(Utf8Caseless, OrdersByLowerCasedCodePointThenMalformedBytesAndTheEndFirst) {
  const char* const ascending[] = {"", "A", "ab", "B", "\xC3\xA9", kEuro, kSmiley, "\x80", "\xFF"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      const int result = QULTMBstrnicmp_8(ascending[i], ascending[j], 10);
      EXPECT_EQ(result < 0, i < j) << i << " " << j;
      EXPECT_EQ(result > 0, i > j) << i << " " << j;
    }
  }
}

struct PreviousCase {
  const char* what;
  std::string text;
  std::size_t previous;
};

TEST(Utf8Previous, IsTheStartOfTheCharacterOrOneByteBack) {
  const PreviousCase cases[] = {
      {"the beginning", "", 0},
      {"a letter", "ab", 1},
      {"two bytes", "a\xC3\xA9", 1},
      {"three bytes", "a\xE2\x82\xAC", 1},
      {"four bytes", "a\xF0\x9F\x98\x80", 1},
      {"a noncharacter", "a\xEF\xBF\xBE", 3},
      {"a surrogate", "a\xED\xA0\x80", 3},
      {"a stray byte", "a\x80", 1},
      {"a stray byte behind a character", "\xC3\xA9\x80", 2},
      {"a cut sequence", "a\xE2\x82", 2},
      {"a cut sequence of four", "a\xF0\x9F\x98", 3},
      {"a lead byte", "a\xE2", 1},
      {"an overlong form", "a\xE0\x80\x80", 3},
      {"stray bytes alone", "\x80\x80\x80\x80\x80", 4},
  };
  for (const PreviousCase& c : cases) {
    const std::string text = c.text + "behind";
    const char* const s = text.c_str();
    EXPECT_EQ(QULTMBPreviousIndex_8(s, c.text.size()), c.previous) << c.what;
    EXPECT_EQ(QULTMBAnsiPrev_8(s, s + c.text.size()), s + c.previous) << c.what;
  }
}

TEST(Utf8Previous, StaysInsideTheTextWhereItBeginsInsideACharacter) {
  const char* const s = "\xE2\x82\xAC";
  EXPECT_EQ(QULTMBPreviousIndex_8(s + 1, 2), 1U);
  EXPECT_EQ(QULTMBAnsiPrev_8(s + 1, s + 3), s + 2);
}

TEST(Utf8Previous, LeavesNullAndTheBeginningAsTheyAre) {
  const char* const s = "abc";
  EXPECT_EQ(QULTMBAnsiPrev_8(s, nullptr), nullptr);
  EXPECT_EQ(QULTMBAnsiPrev_8(nullptr, nullptr), nullptr);
  EXPECT_EQ(QULTMBAnsiPrev_8(s, s), s);
  EXPECT_EQ(QULTMBPreviousIndex_8(s, 0), 0U);
}

}  // namespace
