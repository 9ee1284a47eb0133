// The _C functions as far as the default converter serves them.

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <climits>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMString.h"
#include "tests/support/guarded_text.h"
#include "tests/support/mbstring.h"

namespace {

using namespace RQMEM_NAMESPACE;
namespace slow = rqtest::slow;
using rqtest::GuardedText;

std::string Show(const std::string& text) { return testing::PrintToString(text); }

struct Character {
  int length;
  int codePoint;
  bool operator==(const Character&) const = default;
};

Character Get(const std::string& text, int offset, int end) {
  const GuardedText guarded(text);
  Character character = {0, 77};
  character.length = QULTMBU32Get_C(&character.codePoint, guarded.Get(), offset, end);
  return character;
}

TEST(CodePointReader, MakesTheDefaultConverterOnce) {
  // Each test is a process of its own under ctest; where it is not, the converter may be there already.
  const int before = QULTMBDefaultConverterID();
  EXPECT_EQ(Get("", 0, 0), (Character{0, 0}));
  EXPECT_EQ(QULTMBDefaultConverterID(), before) << "nothing to read needs no converter";
  EXPECT_EQ(Get("a", 0, 1), (Character{1, 'a'}));
  const int after = QULTMBDefaultConverterID();
  EXPECT_GE(after, 1);
  EXPECT_LE(after, before + 1);
  EXPECT_EQ(Get("b", 0, 1), (Character{1, 'b'}));
  EXPECT_EQ(QULTMBDefaultConverterID(), after);
}

TEST(CodePointReader, ReadsOneCharacterOfUtf8) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("UTF-8"));
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(Get(text, 0, -1), (Character{1, 'a'}));
  EXPECT_EQ(Get(text, 1, -1), (Character{2, 0xE9}));
  EXPECT_EQ(Get(text, 3, -1), (Character{3, 0x20AC}));
  EXPECT_EQ(Get(text, 6, -1), (Character{4, 0x1F600}));
  EXPECT_EQ(Get(text, 6, 10), (Character{4, 0x1F600}));
  EXPECT_EQ(Get(text, 6, INT_MIN), (Character{4, 0x1F600}));
}

TEST(CodePointReader, ReadsNothingAtTheEndOrAZeroByte) {
  EXPECT_EQ(Get("abc", 1, 1), (Character{0, 0}));
  EXPECT_EQ(Get("abc", 2, 1), (Character{0, 0}));
  EXPECT_EQ(Get("abc", 3, -1), (Character{0, 0}));
  EXPECT_EQ(Get("abc", 3, 4), (Character{0, 0}));
  EXPECT_EQ(Get("", 0, -1), (Character{0, 0}));
}

TEST(CodePointReader, RefusesMalformedBytesWhateverFollows) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("UTF-8"));
  for (const char* bad : {"\x80", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"}) {
    EXPECT_EQ(Get(bad, 0, -1), (Character{-1, 0})) << Show(bad);
    EXPECT_EQ(Get(bad + std::string("and a good deal of text"), 0, -1), (Character{-1, 0})) << Show(bad);
  }
  EXPECT_EQ(Get("\xE2\x82\xAC", 0, 2), (Character{-1, 0})) << "cut by the end";
}

TEST(CodePointReader, ReadsTheDefaultConvertersCodePage) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  EXPECT_EQ(Get("\x82\xA0z", 0, -1), (Character{2, 0x3042}));
  EXPECT_EQ(Get("\xB1z", 0, -1), (Character{1, 0xFF71}));
  EXPECT_EQ(Get("\x82", 0, -1), (Character{-1, 0}));
  EXPECT_EQ(Get("\x82\xA0", 0, 1), (Character{-1, 0}));
  EXPECT_EQ(Get("\x81\xADz", 0, -1), (Character{-1, 0})) << "unassigned";
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  EXPECT_EQ(Get("\x80", 0, -1), (Character{1, 0x20AC}));
  ASSERT_TRUE(QULTMBSetDefaultConverter("gb18030"));
  EXPECT_EQ(Get("\x94\x39\xFC\x36z", 0, -1), (Character{4, 0x1F600}));
}

TEST(CodePointReader, CountsShiftSequencesToTheCharacter) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("ISO-2022-JP"));
  EXPECT_EQ(Get("\x1B$B$\"\x1B(B", 0, -1), (Character{5, 0x3042}));
  EXPECT_EQ(Get("\x1B(B", 0, -1), (Character{-1, 0})) << "no character comes";
}

TEST(CodePointReader, LeavesTheDefaultConverterAsItIs) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("ISO-2022-JP"));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Get("\x1B$B$\"", 0, -1), (Character{5, 0x3042}));
    EXPECT_EQ(Get("$", 0, -1), (Character{1, '$'})) << "the shift of the text before does not last";
  }
}

TEST(CodePointReader, ReadsEveryCodePointOfUtf8) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("UTF-8"));
  for (std::int64_t c = 1; c <= 0x10FFFF && !HasFailure(); c += c < 0x11000 ? 1 : 61) {
    const std::string bytes = rqtest::Utf8(c);
    const std::string text = bytes + "\xC3\xA9";
    const bool isSurrogate = c >= 0xD800 && c <= 0xDFFF;
    int codePoint = 77;
    EXPECT_EQ(QULTMBU32Get_C(&codePoint, text.c_str(), 0, -1), isSurrogate ? -1 : static_cast<int>(bytes.size())) << c;
    EXPECT_EQ(codePoint, isSurrogate ? 0 : c);
  }
}

struct CompareCase {
  const char* what;
  const char* encoding;
  std::string a, b;
  int equal, status;
};

TEST(ConverterCaseless, ComparesCharactersOfTheCodePageAfterSimpleLowerCasing) {
  const CompareCase cases[] = {
      {"nothing", "932", "", "", 1, 0},
      {"ASCII", "932", "aBc", "AbC", 1, 0},
      {"full-width letters", "932", "\x82\x60", "\x82\x81", 1, 0},
      {"a trail byte has no case", "932", "\x83\x41", "\x83\x61", 0, 0},
      {"a prefix", "932", "ab", "a", 0, 0},
      {"a prefix on the other side", "932", "\x82\xA0", "\x82\xA0z", 0, 0},
      {"letters with accents", "1252", "\xC9t\xE9", "\xE9T\xC9", 1, 0},
      {"other letters", "1252", "\xE9", "\xE8", 0, 0},
      {"Cyrillic", "1251", "\xCF\xF0", "\xEF\xD0", 1, 0},
      {"the same malformed byte", "932", "A\xFF", "a\xFF", 1, 3},
      {"other malformed bytes", "932", "\xFF", "\x80\xFE", 0, 3},
      {"a cut character", "932", "a\x82", "A\x82", 1, 3},
      {"a cut character and another", "932", "a\x82", "A\x83", 0, 3},
      {"the bytes of an unassigned character have no case", "932", "\x86\x41", "\x86\x61", 0, 3},
      {"the same unassigned character", "932", "\x86\x41z", "\x86\x41Z", 1, 3},
      {"unassigned is not a question mark", "932", "\x86\x41", "?", 0, 3},
      {"nor the character of its number", "ISO-8859-3", "\xA5", "\xA5", 1, 3},
      {"beyond the basic plane", "gb18030", "\x90\x30\xE7\x34", "\x90\x30\xEB\x34", 1, 0},
      {"EBCDIC", "IBM037", "\xC1\x82", "\x81\xC2", 1, 0},
      {"EBCDIC, bytes that would be letters", "IBM037", "A", "a", 0, 0},
      {"shift states", "ISO-2022-JP", "\x1B$B$\"\x1B(BA", "\x1B$B$\"\x1B(Ba", 1, 0},
      {"another way to the same characters", "ISO-2022-JP", "\x1B(BA", "a", 1, 0},
      {"malformed behind the first difference is not met", "932", "a\xFF", "b\xFF", 0, 0},
      {"UTF-8", "65001", "\xC3\x89", "\xC3\xA9", 1, 0},
      {"UTF-8, malformed", "65001", "\xE2\x82", "\xE2\x82", 1, 3},
  };
  for (const CompareCase& c : cases) {
    SCOPED_TRACE(c.what);
    ASSERT_TRUE(QULTMBSetDefaultConverter(c.encoding)) << c.encoding;
    const GuardedText a(c.a);
    const GuardedText b(c.b);
    int status = 77;
    EXPECT_EQ(QULTMBqstricmp_C(a.Get(), -1, b.Get(), -1, &status), c.equal);
    EXPECT_EQ(status, c.status);
    const auto lengthA = static_cast<int>(c.a.size());
    const auto lengthB = static_cast<int>(c.b.size());
    EXPECT_EQ(QULTMBqstricmp_C(a.Get(), lengthA, b.Get(), lengthB, nullptr), c.equal);
    EXPECT_EQ(QULTMBstrnicmp_C(a.Get(), b.Get(), std::max(c.a.size(), c.b.size())) == 0, c.equal == 1);
    EXPECT_EQ(QULTMBstrnicmp_C(a.Get(), b.Get(), SIZE_MAX) == 0, c.equal == 1);
  }
}

TEST(ConverterCaseless, EndsATextAtItsLengthOrAtAZeroByte) {
  for (const char* encoding : {"932", "UTF-8"}) {
    SCOPED_TRACE(encoding);
    ASSERT_TRUE(QULTMBSetDefaultConverter(encoding));
    EXPECT_EQ(QULTMBqstricmp_C("abcX", 3, "ABCY", 3, nullptr), 1);
    EXPECT_EQ(QULTMBqstricmp_C("abc", 2, "ABC", 3, nullptr), 0);
    EXPECT_EQ(QULTMBqstricmp_C("ab\0X", 4, "AB\0Y", 4, nullptr), 1);
    EXPECT_EQ(QULTMBqstricmp_C("ab\0X", 4, "AB", 2, nullptr), 1);
    EXPECT_EQ(QULTMBqstricmp_C("x", 0, "y", 0, nullptr), 1);
    EXPECT_EQ(QULTMBstrnicmp_C("ab\0X", "AB\0Y", 4), 0);
    EXPECT_NE(QULTMBstrnicmp_C("abcX", "ABCY", 4), 0);
    EXPECT_EQ(QULTMBstrnicmp_C("abcX", "ABCY", 3), 0);
    EXPECT_EQ(QULTMBstrnicmp_C("x", "y", 0), 0);
  }
}

TEST(ConverterCaseless, TakesACharacterThatTheLengthCutsForMalformedBytes) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  int status = 77;
  EXPECT_EQ(QULTMBqstricmp_C("\x82\xA0", 1, "\x82\xA2", 1, &status), 1);
  EXPECT_EQ(status, 3);
  EXPECT_NE(QULTMBstrnicmp_C("\x82\xA0", "\x82\xA2", 2), 0);
}

TEST(ConverterCaseless, TakesACharacterThatIcuDropsAtTheEndForMalformedBytes) {
  const std::tuple<const char*, std::string, std::string> rows[] = {
      {"HZ", "a~{0", "a~{1"},     {"HZ", "a~{0", "a"},       {"HZ", "~{0", ""},
      {"HZ", "a~", "a"},          {"UTF-7", "a+AA", "a"},    {"UTF-7", "a+A", "a"},
      {"UTF-7", "a+", "a"},       {"UTF-7", "a+A", "a+AA"},  {"UTF-7", "a+AG", "a"},
      {"UTF-7", "+AGEA", "+AGE"}, {"UTF-7", "+AGF", "+AGE"}, {"UTF-7", "+AGE-+AGF", "+AGE-+AGE"}};
  for (const auto& [encoding, cut, other] : rows) {
    ASSERT_TRUE(QULTMBSetDefaultConverter(encoding));
    int status = -1;
    EXPECT_EQ(QULTMBqstricmp_C(cut.c_str(), -1, other.c_str(), -1, &status), 0) << encoding << ' ' << cut;
    EXPECT_EQ(status, 3) << encoding << ' ' << cut;
    EXPECT_NE(QULTMBstrnicmp_C(cut.c_str(), other.c_str(), 100), 0) << encoding << ' ' << cut;
    EXPECT_EQ(QULTMBqstricmp_C(cut.c_str(), -1, cut.c_str(), -1, &status), 1) << encoding << ' ' << cut;
  }
  QULTMBSetDefaultConverter("UTF-8");
}

TEST(ConverterCaseless, TakesBytesThatIcuDoesNotTellForMalformedOnes) {
  const std::tuple<const char*, std::string, std::string> rows[] = {{"gsm-03.38-2009", "\xE3", "\xE4"},
                                                                    {"gsm-03.38-2009", "x\x80", "x"},
                                                                    {"BOCU-1", "\x24\x32\xC9", "\x24\x32\xC8"},
                                                                    {"BOCU-1", "\x24\x32\xC9", "\x24\x33\xC9"}};
  for (const auto& [encoding, malformed, other] : rows) {
    ASSERT_TRUE(QULTMBSetDefaultConverter(encoding));
    int status = -1;
    EXPECT_EQ(QULTMBqstricmp_C(malformed.c_str(), -1, other.c_str(), -1, &status), 0) << encoding;
    EXPECT_EQ(status, 3) << encoding;
    EXPECT_EQ(QULTMBqstricmp_C(malformed.c_str(), -1, malformed.c_str(), -1, &status), 1) << encoding;
    EXPECT_EQ(status, 3) << encoding;
  }
  ASSERT_TRUE(QULTMBSetDefaultConverter("gsm-03.38-2009"));
  EXPECT_EQ(QULTMBqstricmp_C("\xE3\x42", -1, "\xE3\x62", -1, nullptr), 1);
  EXPECT_EQ(QULTMBqstricmp_C("X\x80", -1, "x\x80", -1, nullptr), 1);
  QULTMBSetDefaultConverter("UTF-8");
}

TEST(ConverterCaseless, TakesHalfASurrogatePairForMalformed) {
  const std::tuple<const char*, std::string, std::string> rows[] = {{"CESU-8", "\xED\xA0\x80z", "\xED\xA0\x81z"},
                                                                    {"CESU-8", "\xED\xB0\x80", "\xED\xB0\x81"},
                                                                    {"UTF-7", "+2AA-z", "+2AE-z"},
                                                                    {"IMAP-mailbox-name", "&2AA-", "&2AE-"}};
  for (const auto& [encoding, half, other] : rows) {
    ASSERT_TRUE(QULTMBSetDefaultConverter(encoding));
    int status = -1;
    EXPECT_EQ(QULTMBqstricmp_C(half.c_str(), -1, half.c_str(), -1, &status), 1) << encoding;
    EXPECT_EQ(status, 3) << encoding;
    EXPECT_EQ(QULTMBqstricmp_C(half.c_str(), -1, other.c_str(), -1, &status), 0) << encoding;
    EXPECT_EQ(status, 3) << encoding;
    int codePoint = -1;
    EXPECT_EQ(QULTMBU32Get_C(&codePoint, half.c_str(), 0, -1), -1) << encoding;
    EXPECT_EQ(codePoint, 0) << encoding;
  }
  QULTMBSetDefaultConverter("UTF-8");
}

TEST(ConverterCaseless, OrdersByLowerCasedCodePointThenMalformedBytesAndTheEndFirst) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  const char* const ascending[] = {"", "A", "ab", "B", "\x82\xA0", "\x82\xA2", "\xB1", "\xFF"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      const int result = QULTMBstrnicmp_C(ascending[i], ascending[j], 10);
      EXPECT_EQ(result < 0, i < j) << i << " " << j;
      EXPECT_EQ(result > 0, i > j) << i << " " << j;
    }
  }
}

TEST(ConverterCaseless, ReadsLongTextsInPiecesThatDoNotShow) {
  for (const char* encoding : {"932", "gb18030", "1252", "ISO-2022-JP", "UTF-16BE"}) {
    ASSERT_TRUE(QULTMBSetDefaultConverter(encoding));
    // The first byte moves the characters of two bytes against the pieces.
    for (std::size_t size = 250; size < 262; ++size) {
      for (const std::string& start : {std::string(), std::string("a")}) {
        std::string text = start;
        while (text.size() < size) text += "\x90\x41";
        std::string other = text;
        SCOPED_TRACE(encoding + std::string(" ") + std::to_string(size));
        EXPECT_EQ(QULTMBstrnicmp_C(text.c_str(), other.c_str(), SIZE_MAX), 0);
        other.back() = 'B';
        EXPECT_NE(QULTMBstrnicmp_C(text.c_str(), other.c_str(), SIZE_MAX), 0);
        EXPECT_NE(QULTMBstrnicmp_C(text.c_str(), (text + "z").c_str(), SIZE_MAX), 0);
      }
    }
  }
}

struct PairCase {
  const char* encoding;
  const char* upper;
  const char* lower;
};

TEST(ConverterCaseless, JoinsThePairsThatPiecesDivide) {
  // U+10400 and U+10428. UTF-7 writes the halves of a pair one after the other, so that a piece may end between them.
  for (const PairCase& c :
       {PairCase{"gb18030", "\x90\x30\xE7\x34", "\x90\x30\xEB\x34"}, PairCase{"UTF-7", "+2AHcAA-", "+2AHcKA-"}}) {
    ASSERT_TRUE(QULTMBSetDefaultConverter(c.encoding));
    for (std::size_t letters = 0; letters < 260; ++letters) {
      std::string upper(letters, 'q');
      std::string lower = upper;
      for (int i = 0; i < 70; ++i) {
        upper += c.upper;
        lower += c.lower;
      }
      EXPECT_EQ(QULTMBstrnicmp_C(upper.c_str(), lower.c_str(), SIZE_MAX), 0) << c.encoding << " " << letters;
    }
  }
}

struct Close {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, Close>;

class ConverterRandomText : public testing::TestWithParam<const char*> {};

TEST_P(ConverterRandomText, ComparesAsCharacterByCharacter) {
  ASSERT_TRUE(QULTMBSetDefaultConverter(GetParam()));
  const Converter converter(static_cast<UConverter*>(QULTMBConverterNew_C(GetParam())));
  ASSERT_NE(converter, nullptr);
  const std::vector<std::string> pieces = rqtest::TextsOf("aA~\x1B(B\x80\x81\x83\x90\xA1\xC3\xE2\xF0\xFF");
  std::mt19937 random(6);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    const std::string a = rqtest::RandomText(random, pieces, round % 10 == 0 ? 300 : 4);
    std::string b = random() % 3 == 0 ? rqtest::RandomText(random, pieces, 4) : a;
    if (!b.empty() && random() % 2 == 0) b[random() % b.size()] ^= 0x20;
    b.resize(b.find('\0') == std::string::npos ? b.size() : b.find('\0'));
    const GuardedText guardedA(a);
    const GuardedText guardedB(b);
    for (const std::size_t n : {a.size(), a.size() / 2, std::size_t{1}, b.size() + 1}) {
      const auto expected = slow::Compare(slow::FoldConverted(converter.get(), a.substr(0, n)),
                                          slow::FoldConverted(converter.get(), b.substr(0, n)));
      const auto length = static_cast<int>(n);
      slow::Comparison actual{};
      actual.equal = QULTMBqstricmp_C(guardedA.Get(), length, guardedB.Get(), length, &actual.status);
      EXPECT_EQ(actual.equal, expected.equal) << Show(a) << " " << Show(b) << " " << n;
      EXPECT_EQ(actual.status, expected.status) << Show(a) << " " << Show(b) << " " << n;
      EXPECT_EQ(QULTMBstrnicmp_C(guardedA.Get(), guardedB.Get(), n) == 0, expected.equal == 1);
    }
  }
}

TEST_P(ConverterRandomText, IsReadAsItsFirstCharacter) {
  ASSERT_TRUE(QULTMBSetDefaultConverter(GetParam()));
  const Converter converter(static_cast<UConverter*>(QULTMBConverterNew_C(GetParam())));
  ASSERT_NE(converter, nullptr);
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  const std::vector<std::string> pieces = rqtest::TextsOf("aA~\x1B(B\x80\x81\x83\x90\xA1\xC3\xE2\xF0\xFF");
  std::mt19937 random(7);
  for (int round = 0; round < 3000 && !HasFailure(); ++round) {
    const std::string text = rqtest::RandomText(random, pieces, 3);
    if (text.empty()) continue;
    ucnv_resetToUnicode(converter.get());
    const char* at = text.data();
    error = U_ZERO_ERROR;
    const UChar32 c = ucnv_getNextUChar(converter.get(), &at, text.data() + text.size(), &error);
    const bool good = U_SUCCESS(error) != 0;
    const Character expected = {good ? static_cast<int>(at - text.data()) : -1, good ? c : 0};
    EXPECT_EQ(Get(text, 0, -1), expected) << Show(text);
  }
}

INSTANTIATE_TEST_SUITE_P(Encodings, ConverterRandomText,
                         testing::Values("UTF-8", "932", "936", "949", "950", "1252", "37", "gb18030", "ISO-2022-JP",
                                         "ISO-2022-KR", "HZ", "EUC-JP", "Big5-HKSCS", "UTF-16BE", "UTF-7"),
                         [](const auto& tested) {
                           std::string name = tested.param;
                           std::erase(name, '-');
                           return name;
                         });

}  // namespace
