// The rules of the conversions into a buffer, one by one.

#include <gtest/gtest.h>

#include <unicode/ucnv.h>

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace {

using namespace RQMEM_NAMESPACE;

class TranscodeBuffer : public testing::Test {
 protected:
  ~TranscodeBuffer() override {
    SetUTF8mode(1);
    QULTMBSetDefaultConverter("UTF-8");
  }

  const QULTMBConverterHandle latin_{QULTMBConverterNew_8("1252")};
  const QULTMBConverterHandle japanese_{QULTMBConverterNew_8("932")};
};

// What a conversion left in a buffer of so many places that held '#', with its count and status.
template <class Unit>
struct Left {
  std::basic_string<Unit> buffer;
  int count;
  int status;
};

template <class Unit>
bool operator==(const Left<Unit>& left, const Left<Unit>& right) {
  return left.buffer == right.buffer && left.count == right.count && left.status == right.status;
}

template <class Unit>
std::ostream& operator<<(std::ostream& out, const Left<Unit>& left) {
  for (const Unit unit : left.buffer) out << std::hex << static_cast<unsigned>(unit) << ' ';
  return out << std::dec << "count " << left.count << " status " << left.status;
}

template <class To, class Convert>
Left<To> LeftBy(int size, Convert convert) {
  Left<To> left{std::basic_string<To>(8, To{'#'}), -1, -1};
  left.count = convert(left.buffer.data(), size, &left.status);
  return left;
}

using namespace std::string_literals;

TEST_F(TranscodeBuffer, GivenLengthPadsWithBlanksAndWritesNoTerminator) {
  const auto narrow = [](char* to, int size, int* status) { return QULTMB16to8(to, size, L"ab", 2, status); };
  EXPECT_EQ(LeftBy<char>(5, narrow), (Left<char>{"ab   ###", 2, 0}));
  const auto wide = [](wchar_t* to, int size, int* status) { return QULTMB8to16(to, size, "ab", 2, status); };
  EXPECT_EQ(LeftBy<wchar_t>(5, wide), (Left<wchar_t>{L"ab   ###", 2, 0}));
  const auto page = [&](char* to, int size, int* status) {
    return QULTMB16toCodePage(latin_.Get(), to, size, L"\u00e9b", 2, status);
  };
  EXPECT_EQ(LeftBy<char>(5, page), (Left<char>{"\xE9"
                                               "b   ###",
                                               2, 0}));
  const auto back = [&](wchar_t* to, int size, int* status) {
    return QULTMBCodePageto16(latin_.Get(), to, size, "\xE9", 1, status);
  };
  EXPECT_EQ(LeftBy<wchar_t>(5, back), (Left<wchar_t>{L"\u00e9    ###", 1, 0}));
}

TEST_F(TranscodeBuffer, GivenLengthThatFillsTheBufferLeavesNothingToPad) {
  const auto narrow = [](char* to, int size, int* status) { return QULTMB16to8(to, size, L"abcde", 5, status); };
  EXPECT_EQ(LeftBy<char>(5, narrow), (Left<char>{"abcde###", 5, 0}));
}

TEST_F(TranscodeBuffer, ZeroTerminatedSourceIsTerminatedAndNotPadded) {
  const auto narrow = [](char* to, int size, int* status) { return QULTMB16to8(to, size, L"ab", -1, status); };
  EXPECT_EQ(LeftBy<char>(5, narrow), (Left<char>{"ab\0#####"s, 2, 0}));
  EXPECT_EQ(LeftBy<char>(3, narrow), (Left<char>{"ab\0#####"s, 2, 0}));
}

TEST_F(TranscodeBuffer, AnyNegativeLengthMeansUpToTheZero) {
  for (const int length : {-1, -2, -1000}) {
    const auto narrow = [&](char* to, int size, int* status) { return QULTMB16to8(to, size, L"ab", length, status); };
    EXPECT_EQ(LeftBy<char>(5, narrow), (Left<char>{"ab\0#####"s, 2, 0}));
    const auto copy = [&](char* to, int size, int* status) { return QULTMB8toGeneric(to, size, "ab", length, status); };
    EXPECT_EQ(LeftBy<char>(5, copy), (Left<char>{"ab\0#####"s, 2, 0}));
  }
}

TEST_F(TranscodeBuffer, ZeroTerminatedAndCutHasBlanksUpToTheTerminator) {
  const auto narrow = [](char* to, int size, int* status) {
    return QULTMB16to8(to, size, L"a\u20ac\u20ac", -1, status);
  };
  EXPECT_EQ(LeftBy<char>(7, narrow), (Left<char>{"a\u20ac  \0#"s, 4, 1}));
  EXPECT_EQ(LeftBy<char>(2, narrow), (Left<char>{"a\0######"s, 1, 1}));
  EXPECT_EQ(LeftBy<char>(1, narrow), (Left<char>{"\0#######"s, 0, 1}));
}

TEST_F(TranscodeBuffer, CharacterOfThreeBytesIsLeftOutWhereTwoAreFree) {
  const auto narrow = [](char* to, int size, int* status) { return QULTMB16to8(to, size, L"ab\u20ac", 3, status); };
  EXPECT_EQ(LeftBy<char>(4, narrow), (Left<char>{"ab  ####", 2, 1}));
  EXPECT_EQ(LeftBy<char>(5, narrow), (Left<char>{"ab\u20ac###", 5, 0}));
}

TEST_F(TranscodeBuffer, HalfASurrogatePairIsLeftOut) {
  const auto wide = [](wchar_t* to, int size, int* status) { return QULTMB8to16(to, size, "a\U0001F600", 5, status); };
  EXPECT_EQ(LeftBy<wchar_t>(2, wide), (Left<wchar_t>{L"a ######", 1, 1}));
  const auto sixteen = [](char16_t* to, int size, int* status) {
    return QULTMB8to16(to, size, "a\U0001F600", 5, status);
  };
  EXPECT_EQ(LeftBy<char16_t>(2, sixteen), (Left<char16_t>{u"a ######", 1, 1}));
  const QULTMBConverterHandle chinese(QULTMBConverterNew_8("gb18030"));
  const auto page = [&](wchar_t* to, int size, int* status) {
    return QULTMBCodePageto16(chinese.Get(), to, size, "a\x94\x39\xFC\x36", 5, status);
  };
  EXPECT_EQ(LeftBy<wchar_t>(2, page), (Left<wchar_t>{L"a ######", 1, 1}));
}

TEST_F(TranscodeBuffer, HalfADoubleByteCharacterIsLeftOut) {
  const auto page = [&](char* to, int size, int* status) {
    return QULTMB8toCodePage(japanese_.Get(), to, size, "a\u3042\u3044", 7, status);
  };
  EXPECT_EQ(LeftBy<char>(4, page), (Left<char>{"a\x82\xA0 ####", 3, 1}));
  EXPECT_EQ(LeftBy<char>(5, page), (Left<char>{"a\x82\xA0\x82\xA2###", 5, 0}));
}

TEST_F(TranscodeBuffer, CutTextWithShiftStatesEndsInItsInitialState) {
  const QULTMBConverterHandle mail(QULTMBConverterNew_8("ISO-2022-JP"));
  std::string buffer(10, '#');
  int status = -1;
  EXPECT_EQ(QULTMB8toCodePage(mail.Get(), buffer.data(), 10, "\u3042\u3044\u3046", 9, &status), 10);
  EXPECT_EQ(buffer, "\x1B$B$\"$$\x1B(B");
  EXPECT_EQ(status, 1);
  EXPECT_EQ(QULTMB8toCodePage(mail.Get(), buffer.data(), 9, "\u3042\u3044\u3046", 9, &status), 8);
  EXPECT_EQ(buffer.substr(0, 9), "\x1B$B$\"\x1B(B ");
}

// What is behind the cut is looked at in pieces; the last one may give nothing.
TEST_F(TranscodeBuffer, CutTextEndsInItsInitialStateHoweverLongItGoesOn) {
  const QULTMBConverterHandle mail(QULTMBConverterNew_8("ISO-2022-JP"));
  for (std::size_t behind = 400; behind < 1200; ++behind) {
    const std::string text = "\u3042\u3042\u3042" + std::string(behind, 'a') + "\u00ad";
    std::string to(9, '#');
    int status = -1;
    const int length = static_cast<int>(text.size());
    ASSERT_EQ(QULTMB8toCodePage(mail.Get(), to.data(), 9, text.data(), length, &status), 8) << behind;
    ASSERT_EQ(to, "\x1B$B$\"\x1B(B ");
  }
}

TEST_F(TranscodeBuffer, PairThatTheEncodingWritesInHalvesIsCutWhole) {
  const QULTMBConverterHandle cesu(QULTMBConverterNew_8("CESU-8"));
  char to[3];
  int status = -1;
  EXPECT_EQ(QULTMB16toCodePage(cesu.Get(), to, 3, u"\U0001F600", 2, &status), 0);
  EXPECT_EQ(std::string(to, 3), "   ");
  EXPECT_EQ(status, 1);
}

TEST_F(TranscodeBuffer, CutCompoundTextBeginsWithItsEscape) {
  const QULTMBConverterHandle x11(QULTMBConverterNew_8("x11-compound-text"));
  char to[9];
  int status = -1;
  EXPECT_EQ(QULTMB16toCodePage(x11.Get(), to, 9, L"\u3042\u3042\u3042\u3042", 4, &status), 8);
  EXPECT_EQ(std::string(to, 8), "\x1B$)B\xA4\xA2\xA4\xA2");
  EXPECT_EQ(status, 1);
}

TEST_F(TranscodeBuffer, HalfASurrogatePairIsReportedByAnEncodingThatWritesIt) {
  for (const char* name : {"LMBCS-1", "LMBCS-2", "LMBCS-16", "CESU-8", "SCSU"}) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::string to;
    EXPECT_EQ(QULTMBU16ToCodePage(converter.Get(), to, std::u16string(u"a\xD800z")), 3) << name;
  }
}

TEST_F(TranscodeBuffer, EmptyShiftedSegmentIsReportedAndLosesNothingBehindIt) {
  const std::pair<const char*, std::string> rows[] = {{"ISO-2022-JP", "A\x1B$B\x1B(BB"}, {"HZ", "A~{~}B"}};
  for (const auto& [name, text] : rows) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::string to;
    EXPECT_EQ(QULTMBCodePageToU8(converter.Get(), to, text), 3) << name;
    EXPECT_EQ(to.front(), 'A') << name;
    EXPECT_EQ(to.back(), 'B') << name;
  }
}

TEST_F(TranscodeBuffer, TextThatEndsInsideACharacterEndsWithAReplacement) {
  const std::pair<const char*, std::string> rows[] = {{"HZ", "a~"},
                                                      {"HZ", "a~{V"},
                                                      {"UTF-7", "a+"},
                                                      {"UTF-7", "a+AG"},
                                                      {"UTF-7", "a+A"},
                                                      {"UTF-7", "a+AA"},
                                                      {"UTF-7", "a+AGEA"},
                                                      {"UTF-7", "a+AMQA1"},
                                                      {"UTF-7", "a+AGEAY"},
                                                      {"UTF-16LE", "a\0b"s},
                                                      {"ISO-2022-JP", "a\x1B$B0"},
                                                      {"932", "a\x82"},
                                                      {"UTF-8", "a\xE4\xB8"},
                                                      {"gb18030", "a\x81\x30"}};
  for (const auto& [name, text] : rows) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::wstring wide;
    EXPECT_EQ(QULTMBCodePageToU16(converter.Get(), wide, text), 3) << name << ' ' << text;
    EXPECT_EQ(wide.substr(0, 1) + wide.substr(wide.size() - 1), L"a?") << name << ' ' << text;
    const int length = static_cast<int>(text.size());
    const std::wstring padded = wide + L"  ";
    for (int size = 1; size <= static_cast<int>(padded.size()); ++size) {  // the replacement may be what does not fit
      std::wstring to(static_cast<std::size_t>(size), L'#');
      int status = -1;
      QULTMBCodePageto16(converter.Get(), to.data(), size, text.data(), length, &status);
      EXPECT_EQ(to, padded.substr(0, to.size())) << name << ' ' << text;
      EXPECT_EQ(status, 3) << name << ' ' << text << ' ' << size;
    }
  }
}

TEST_F(TranscodeBuffer, TextThatIsReadMayEndInAShiftedState) {
  const std::pair<const char*, std::string> rows[] = {
      {"HZ", "a~{VP"},    {"HZ", "a~{"},         {"HZ", "a~~"},           {"UTF-7", "a+Ti0"},          {"UTF-7", "a+-"},
      {"UTF-7", "a+AGE"}, {"UTF-7", "a+AGEAYg"}, {"UTF-7", "a+AGEAYgBj"}, {"ISO-2022-JP", "a\x1B$BCf"}};
  for (const auto& [name, text] : rows) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::wstring wide;
    EXPECT_EQ(QULTMBCodePageToU16(converter.Get(), wide, text), 0) << name << ' ' << text;
    EXPECT_EQ(wide.find(L'?'), wide.npos) << name << ' ' << text;
  }
}

TEST_F(TranscodeBuffer, DesignatorBeforeACharacterThatIsLeftOutFits) {
  const QULTMBConverterHandle korean(QULTMBConverterNew_8("ISO-2022-KR"));
  std::string to(5, '#');
  int status = -1;
  EXPECT_EQ(QULTMB16toCodePage(korean.Get(), to.data(), 4, L"\xFFF6z", 2, &status), 4);
  EXPECT_EQ(to, "\x1B$)C#");
  EXPECT_EQ(status, 3);
  EXPECT_EQ(QULTMB16toCodePage(korean.Get(), to.data(), 4, L"z", 1, &status), 0);
  EXPECT_EQ(to, "    #");
  EXPECT_EQ(status, 1);
}

TEST_F(TranscodeBuffer, HzEndsInItsInitialState) {
  const QULTMBConverterHandle hz(QULTMBConverterNew_8("HZ"));
  const std::pair<std::wstring, std::string> rows[] = {{L"\u4e2d", "~{VP~}"},
                                                       {L"\u4e2d\u4e2d", "~{VPVP~}"},
                                                       {L"\u4e2da", "~{VP~}a"},
                                                       {L"a\u4e2d", "~}a~{VP~}"},  // ICU begins ASCII like that
                                                       {L"~", "~~"},
                                                       {L"", ""}};
  for (const auto& [text, expected] : rows) {
    std::string to;
    EXPECT_EQ(QULTMBU16ToCodePage(hz.Get(), to, text), 0) << expected;
    EXPECT_EQ(to, expected);
  }
  std::string cut(8, '#');
  int status = -1;
  EXPECT_EQ(QULTMB16toCodePage(hz.Get(), cut.data(), 7, L"\u4e2d\u4e2d", 2, &status), 6);
  EXPECT_EQ(cut, "~{VP~} #");
  EXPECT_EQ(status, 1);
}

// The pieces of an inner buffer, its edges, the exact fit and the cut must all report it.
TEST_F(TranscodeBuffer, ReplacedCharacterIsReportedWhateverTheSizeAndThePlace) {
  for (const int length : {1, 2, 255, 256, 1023, 1024, 1025, 4095, 4096, 4097, 9000})
    for (const int place : {0, length / 2, length - 1})
      for (const int size : {length, length + 1, length + 100, length / 2 + 1}) {
        std::wstring text(static_cast<std::size_t>(length), L'\u00e9');
        text[static_cast<std::size_t>(place)] = L'\u4e2d';
        std::string utf8;
        QULTMBU16ToU8(utf8, text);
        std::string buffer(static_cast<std::size_t>(size), '#');
        int status = -1;
        QULTMB16toCodePage(latin_.Get(), buffer.data(), size, text.data(), length, &status);
        EXPECT_EQ(status, 3) << length << " " << place << " " << size;
        EXPECT_EQ(buffer.find('?'), place < size ? static_cast<std::size_t>(place) : buffer.npos);
        QULTMB8toCodePage(latin_.Get(), buffer.data(), size, utf8.data(), static_cast<int>(utf8.size()), &status);
        EXPECT_EQ(status, 3) << length << " " << place << " " << size;
      }
}

TEST_F(TranscodeBuffer, UnassignedByteIsReportedWhateverTheSizeAndThePlace) {
  const QULTMBConverterHandle greek(QULTMBConverterNew_8("1253"));
  for (const int length : {1, 2, 1023, 1024, 1025, 4095, 4096, 4097, 9000})
    for (const int place : {0, length / 2, length - 1})
      for (const int size : {length, length + 1, length + 100, length / 2 + 1}) {
        std::string text(static_cast<std::size_t>(length), '\xE1');
        text[static_cast<std::size_t>(place)] = '\xFF';
        std::wstring wide(static_cast<std::size_t>(size), L'#');
        int status = -1;
        QULTMBCodePageto16(greek.Get(), wide.data(), size, text.data(), length, &status);
        EXPECT_EQ(status, 3) << length << " " << place << " " << size;
        EXPECT_EQ(wide.find(L'?'), place < size ? static_cast<std::size_t>(place) : wide.npos);
        std::string utf8(static_cast<std::size_t>(size), '#');
        QULTMBCodePageto8(greek.Get(), utf8.data(), size, text.data(), length, &status);
        EXPECT_EQ(status, 3) << length << " " << place << " " << size;
      }
}

TEST_F(TranscodeBuffer, MalformedUtf8KeepsWhatStandsBefore) {
  for (const char* bad : {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                          "\xF4\x90\x80\x80", "\xF5", "\xFF", "\xE2\x82", "\xF0\x9F\x98", "\xC3"}) {
    const std::string text = "ab" + std::string(bad);
    const auto wide = [&](wchar_t* to, int size, int* status) {
      return QULTMB8to16(to, size, text.data(), static_cast<int>(text.size()), status);
    };
    EXPECT_EQ(LeftBy<wchar_t>(6, wide), (Left<wchar_t>{L"ab    ##", 2, 3})) << bad;
    const auto terminated = [&](wchar_t* to, int size, int* status) {
      return QULTMB8to16(to, size, text.c_str(), -1, status);
    };
    EXPECT_EQ(LeftBy<wchar_t>(6, terminated), (Left<wchar_t>{L"ab\0#####"s, 2, 3})) << bad;
  }
}

TEST_F(TranscodeBuffer, MalformedUtf16KeepsWhatStandsBefore) {
  for (const std::wstring& bad :
       {std::wstring{0xD800}, std::wstring{0xDC00}, std::wstring{0xD800, L'z'}, std::wstring{0xDC00, 0xD800},
        std::wstring{static_cast<wchar_t>(0x110000)}, std::wstring{static_cast<wchar_t>(-1)}}) {
    const std::wstring text = L"ab" + bad;
    const auto narrow = [&](char* to, int size, int* status) {
      return QULTMB16to8(to, size, text.data(), static_cast<int>(text.size()), status);
    };
    EXPECT_EQ(LeftBy<char>(6, narrow), (Left<char>{"ab    ##", 2, 3}));
  }
  const std::u16string sixteen = {u'a', u'b', 0xDC00};
  const auto narrow = [&](char* to, int size, int* status) { return QULTMB16to8(to, size, sixteen.data(), 3, status); };
  EXPECT_EQ(LeftBy<char>(6, narrow), (Left<char>{"ab    ##", 2, 3}));
}

TEST_F(TranscodeBuffer, MalformedTextIsReplacedOnTheWayToACodePage) {
  const auto latin = [&](char* to, int size, int* status) {
    return QULTMB8toCodePage(latin_.Get(), to, size, "a\xFF\xE2\x82z", 5, status);
  };
  EXPECT_EQ(LeftBy<char>(6, latin), (Left<char>{"a\?\?z  ##", 4, 3}));
  const QULTMBConverterHandle unicode(QULTMBConverterNew_8("UTF-8"));
  const auto utf8 = [&](char* to, int size, int* status) {
    return QULTMB8toCodePage(unicode.Get(), to, size, "a\xFFz", 3, status);
  };
  EXPECT_EQ(LeftBy<char>(6, utf8), (Left<char>{"a\uFFFDz ##", 5, 3}));
  const std::wstring half = {L'a', 0xD83D, L'z'};
  const auto fromWide = [&](char* to, int size, int* status) {
    return QULTMB16toCodePage(unicode.Get(), to, size, half.data(), 3, status);
  };
  EXPECT_EQ(LeftBy<char>(6, fromWide), (Left<char>{"a?z   ##", 3, 3}));
}

TEST_F(TranscodeBuffer, EachMalformedSequenceIsReplacedOnItsOwn) {
  const std::pair<std::string, std::string> rows[] = {
      {"a\xED\xA0\x80z", "a\?\?\?z"}, {"a\xF4\x90\x80\x80z", "a\?\?\?\?z"},
      {"a\xE0\x80\x80z", "a\?\?\?z"}, {"a\xF0\x80\x80\x80z", "a\?\?\?\?z"},
      {"a\xF0\x9F\x98z", "a?z"},      {"a\xED\x9Fz", "a?z"}};
  for (const auto& [text, expected] : rows)
    for (const std::size_t behind : {0U, 400U}) {  // long text goes another way
      std::string page;
      EXPECT_EQ(QULTMBU8ToCodePage(latin_.Get(), page, text + std::string(behind, 'e')), 3);
      EXPECT_EQ(page, expected + std::string(behind, 'e'));
    }
}

TEST_F(TranscodeBuffer, CutBetweenMalformedSequencesOfSeveralBytes) {
  std::string text;
  for (int i = 0; i < 10; ++i) text += "\xE2\x82";
  for (int i = 0; i < 10; ++i) text += "b\xF0\x9F\x98";
  for (const char* name : {"1252", "932"}) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::string whole;
    QULTMBU8ToCodePage(converter.Get(), whole, text);
    ASSERT_EQ(whole.size(), 30U) << name;
    for (std::size_t size = 1; size < whole.size(); ++size) {
      std::string to(size, '#');
      int status = -1;
      EXPECT_EQ(QULTMB8toCodePage(converter.Get(), to.data(), static_cast<int>(size), text.data(),
                                  static_cast<int>(text.size()), &status),
                static_cast<int>(size));
      EXPECT_EQ(to, whole.substr(0, size)) << name;
      EXPECT_EQ(status, 3);
    }
  }
}

TEST_F(TranscodeBuffer, NativeWideCharacterAboveTheBasicPlaneIsThatCharacter) {
  const std::wstring text = {L'a', static_cast<wchar_t>(0x1F600)};
  const auto narrow = [&](char* to, int size, int* status) { return QULTMB16to8(to, size, text.c_str(), -1, status); };
  EXPECT_EQ(LeftBy<char>(6, narrow), (Left<char>{"a\U0001F600\0##"s, 5, 0}));
  const QULTMBConverterHandle chinese(QULTMBConverterNew_8("gb18030"));
  const auto page = [&](char* to, int size, int* status) {
    return QULTMB16toCodePage(chinese.Get(), to, size, text.c_str(), 2, status);
  };
  EXPECT_EQ(LeftBy<char>(5, page), (Left<char>{"a\x94\x39\xFC\x36###", 5, 0}));
}

// A value that is no character stands between halves of pairs: none of them may find a partner.
TEST_F(TranscodeBuffer, WideValueThatIsNoCharacterIsReplacedAlone) {
  for (const std::wstring& text : {std::wstring{0xD83D, static_cast<wchar_t>(0x110000), 0xDE00},
                                   std::wstring{0xD83D, static_cast<wchar_t>(-1), 0xDE00}}) {
    const auto page = [&](char* to, int size, int* status) {
      return QULTMB16toCodePage(latin_.Get(), to, size, text.data(), 3, status);
    };
    EXPECT_EQ(LeftBy<char>(4, page), (Left<char>{"??? ####", 3, 3}));
  }
}

TEST_F(TranscodeBuffer, WideValueThatIsNoCharacterIsReplacedAloneBehindAPieceToo) {
  const QULTMBConverterHandle unicode(QULTMBConverterNew_8("UTF-8"));
  for (std::size_t before = 4085; before < 4100; ++before) {
    std::wstring text(before, L'\u00e9');
    text += static_cast<wchar_t>(0xD83D);
    text += static_cast<wchar_t>(0x110000);
    std::string to;
    EXPECT_EQ(QULTMBU16ToCodePage(unicode.Get(), to, text), 3) << before;
    std::string expected;
    for (std::size_t i = 0; i < before; ++i) expected += "\u00e9";
    EXPECT_EQ(to, expected + "\?\?") << before;
  }
}

TEST_F(TranscodeBuffer, ZerosWithinAGivenLengthAreConverted) {
  const auto wide = [](wchar_t* to, int size, int* status) { return QULTMB8to16(to, size, "a\0b", 3, status); };
  EXPECT_EQ(LeftBy<wchar_t>(4, wide), (Left<wchar_t>{L"a\0b ####"s, 3, 0}));
  const auto page = [&](char* to, int size, int* status) {
    return QULTMB16toCodePage(latin_.Get(), to, size, L"\u00e9\0b", 3, status);
  };
  EXPECT_EQ(LeftBy<char>(4, page), (Left<char>{"\xE9\0b ####"s, 3, 0}));
}

template <class To, class From>
using Plain = int (*)(To*, int, const From*, int, int*);
template <class To, class From>
using OfPage = int (*)(void*, To*, int, const From*, int, int*);
template <class To, class From>
using Conversions = std::vector<std::function<int(To*, int, const From*, int, int*)>>;

// With the default converter.
template <class To, class From>
auto Default(OfPage<To, From> function) {
  return [function](To* to, int size, const From* from, int length, int* status) {
    return function(nullptr, to, size, from, length, status);
  };
}

Conversions<char, char> NarrowConversions() {
  return {QULTMB8toGeneric,
          QULTMBGenericto8,
          Default(QULTMBGenerictoCodePage),
          Default(QULTMBCodePagetoGeneric),
          Default(QULTMB8toCodePage),
          Default(QULTMBCodePageto8)};
}

template <class Unit>
Conversions<char, Unit> NarrowingConversions() {
  return {Plain<char, Unit>(QULTMB16to8), Plain<char, Unit>(QULTMB16toGeneric),
          Default<char, Unit>(QULTMB16toCodePage)};
}

template <class Unit>
Conversions<Unit, char> WideningConversions() {
  return {Plain<Unit, char>(QULTMB8to16), Plain<Unit, char>(QULTMBGenericto16),
          Default<Unit, char>(QULTMBCodePageto16)};
}

// No conversion writes into a destination without room, or into none.
template <class To, class From>
void ExpectLeftAlone(const Conversions<To, From>& conversions) {
  const From text[] = {'a', 'b', 0};
  const From empty[] = {0};
  const std::basic_string<To> untouched(8, To{'#'});
  for (const auto& convert : conversions) {
    for (const int length : {-1, 2}) {
      int status = -1;
      for (const int size : {0, -1, -1000}) {
        const auto any = [&](To* to, int n, int* outcome) { return convert(to, n, text, length, outcome); };
        EXPECT_TRUE((LeftBy<To>(size, any) == Left<To>{untouched, 0, 1}));
        const auto none = [&](To* to, int n, int* outcome) {
          return convert(to, n, empty, length < 0 ? -1 : 0, outcome);
        };
        EXPECT_TRUE((LeftBy<To>(size, none) == Left<To>{untouched, 0, 0}));
      }
      EXPECT_EQ(convert(nullptr, 8, text, length, &status), 0);
      EXPECT_EQ(status, 1);
      EXPECT_EQ(convert(nullptr, 8, empty, length < 0 ? -1 : 0, &status), 0);
      EXPECT_EQ(status, 0);
    }
  }
}

template <class To, class From>
void ExpectStatusOptional(const Conversions<To, From>& conversions) {
  const From text[] = {'a', 'b', 0};
  To to[8];
  for (const auto& convert : conversions) {
    EXPECT_EQ(convert(to, 8, text, -1, nullptr), 2);
    EXPECT_EQ(convert(to, 0, text, -1, nullptr), 0);
    EXPECT_EQ(std::basic_string<To>(to), (std::basic_string<To>{'a', 'b'}));
  }
}

template <class To, class From>
void ExpectNullSourceEmpty(const Conversions<To, From>& conversions) {
  for (const auto& convert : conversions) {
    const auto terminated = [&](To* to, int size, int* status) { return convert(to, size, nullptr, -1, status); };
    EXPECT_TRUE((LeftBy<To>(2, terminated) == Left<To>{{0, '#', '#', '#', '#', '#', '#', '#'}, 0, 0}));
    const auto given = [&](To* to, int size, int* status) { return convert(to, size, nullptr, 4, status); };
    EXPECT_TRUE((LeftBy<To>(2, given) == Left<To>{{' ', ' ', '#', '#', '#', '#', '#', '#'}, 0, 0}));
  }
}

// Hands all conversions to the check, in each mode.
template <class Check>
void ForEachConversion(Check check) {
  for (const int mode : {0, 1}) {
    SetUTF8mode(mode);
    check(NarrowConversions());
    check(NarrowingConversions<wchar_t>());
    check(NarrowingConversions<char16_t>());
    check(WideningConversions<wchar_t>());
    check(WideningConversions<char16_t>());
  }
}

TEST_F(TranscodeBuffer, BufferWithoutRoomIsLeftAloneByEveryConversion) {
  ForEachConversion([](const auto& conversions) { ExpectLeftAlone(conversions); });
}

TEST_F(TranscodeBuffer, StatusIsOptionalInEveryConversion) {
  ForEachConversion([](const auto& conversions) { ExpectStatusOptional(conversions); });
}

TEST_F(TranscodeBuffer, NullSourceIsEmptyInEveryConversion) {
  ForEachConversion([](const auto& conversions) { ExpectNullSourceEmpty(conversions); });
}

TEST_F(TranscodeBuffer, PlainCopyTakesBytesAsTheyAreWithStatusZero) {
  const auto copy = [](char* to, int size, int* status) {
    return QULTMB8toGeneric(to, size, "a\xFF\u20ac", 5, status);
  };
  EXPECT_EQ(LeftBy<char>(7, copy), (Left<char>{"a\xFF\u20ac  #", 5, 0}));
  EXPECT_EQ(LeftBy<char>(3, copy), (Left<char>{"a\xFF\xE2#####", 3, 0}));
}

TEST_F(TranscodeBuffer, PlainCopyPutsTheTerminatorBehindAFullBuffer) {
  const auto copy = [](char* to, int size, int* status) { return QULTMBGenericto8(to, size, "abcd", -1, status); };
  EXPECT_EQ(LeftBy<char>(4, copy), (Left<char>{"abcd\0###"s, 4, 0}));
  EXPECT_EQ(LeftBy<char>(2, copy), (Left<char>{"ab\0#####"s, 2, 0}));
  EXPECT_EQ(LeftBy<char>(6, copy), (Left<char>{"abcd\0###"s, 4, 0}));
}

TEST_F(TranscodeBuffer, GenericIsUtf8InUtf8Mode) {
  char narrow[16];
  wchar_t wide[16];
  int status = -1;
  QULTMB16toGeneric(narrow, 16, L"\u4e2d", -1, &status);
  EXPECT_STREQ(narrow, "\u4e2d");
  QULTMBGenericto16(wide, 16, "\u4e2d", -1, &status);
  EXPECT_STREQ(wide, L"\u4e2d");
  QULTMB16toGeneric(narrow, 16, u"\u4e00", -1, &status);
  EXPECT_STREQ(narrow, "\u4e00");
  char16_t sixteen[16];
  QULTMBGenericto16(sixteen, 16, "\u4e2d", -1, &status);
  EXPECT_TRUE(std::u16string(sixteen) == u"\u4e2d");
  QULTMB8toGeneric(narrow, 16, "\u4e2d", -1, &status);
  EXPECT_STREQ(narrow, "\u4e2d");
  QULTMBGenericto8(narrow, 16, "\u4e2d", -1, &status);
  EXPECT_STREQ(narrow, "\u4e2d");
  QULTMBGenerictoCodePage(latin_.Get(), narrow, 16, "\u00e9", -1, &status);
  EXPECT_STREQ(narrow, "\xE9");
  QULTMBCodePagetoGeneric(latin_.Get(), narrow, 16, "\xE9", -1, &status);
  EXPECT_STREQ(narrow, "\u00e9");
  EXPECT_EQ(status, 0);
}

TEST_F(TranscodeBuffer, GenericIsInTheDefaultEncodingOutsideUtf8Mode) {
  SetUTF8mode(0);
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  char narrow[16];
  wchar_t wide[16];
  int status = -1;
  QULTMB16toGeneric(narrow, 16, L"\u00e9", -1, &status);
  EXPECT_STREQ(narrow, "\xE9");
  QULTMBGenericto16(wide, 16, "\xE9", -1, &status);
  EXPECT_STREQ(wide, L"\u00e9");
  QULTMB16toGeneric(narrow, 16, u"\u00e8", -1, &status);
  EXPECT_STREQ(narrow, "\xE8");
  char16_t sixteen[16];
  QULTMBGenericto16(sixteen, 16, "\xE9", -1, &status);
  EXPECT_TRUE(std::u16string(sixteen) == u"\u00e9");
  QULTMB8toGeneric(narrow, 16, "\u00e9", -1, &status);
  EXPECT_STREQ(narrow, "\xE9");
  QULTMBGenericto8(narrow, 16, "\xE9", -1, &status);
  EXPECT_STREQ(narrow, "\u00e9");
  EXPECT_EQ(status, 0);
  QULTMB8toGeneric(narrow, 16, "\u4e2d", -1, &status);
  EXPECT_STREQ(narrow, "?");
  EXPECT_EQ(status, 3);
}

TEST_F(TranscodeBuffer, GenericAndCodePageAreOneOutsideUtf8ModeWhateverTheConverter) {
  SetUTF8mode(0);
  const auto to = [&](char* buffer, int size, int* status) {
    return QULTMBGenerictoCodePage(japanese_.Get(), buffer, size, "\xE9\xFF", 2, status);
  };
  EXPECT_EQ(LeftBy<char>(3, to), (Left<char>{"\xE9\xFF #####", 2, 0}));
  const auto from = [&](char* buffer, int size, int* status) {
    return QULTMBCodePagetoGeneric(japanese_.Get(), buffer, size, "\xE9\xFF", 2, status);
  };
  EXPECT_EQ(LeftBy<char>(3, from), (Left<char>{"\xE9\xFF #####", 2, 0}));
}

TEST_F(TranscodeBuffer, ConverterItselfIsNeverChanged) {
  auto* const converter = static_cast<UConverter*>(japanese_.Get());
  std::string first;
  std::string second;
  // A lead byte left behind in the converter by someone else is not part of the text.
  char16_t unit = 0;
  char16_t* target = &unit;
  const char* source = "\x82";
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(converter, &target, target + 1, &source, source + 1, nullptr, 0, &error);
  EXPECT_EQ(QULTMBCodePageToU8(converter, first, "\xB1z"), 0);
  EXPECT_EQ(QULTMBCodePageToU8(converter, second, "\xB1z"), 0);
  EXPECT_EQ(first, "\uFF71z");
  EXPECT_EQ(second, first);
}

TEST_F(TranscodeBuffer, ShiftThatSomeoneLeftInTheConverterIsNotPartOfTheText) {
  const QULTMBConverterHandle mail(QULTMBConverterNew_8("ISO-2022-JP"));
  char bytes[16];
  char* target = bytes;
  const char16_t* source = u"\u3042";
  UErrorCode error = U_ZERO_ERROR;
  ucnv_fromUnicode(static_cast<UConverter*>(mail.Get()), &target, bytes + sizeof bytes, &source, source + 1, nullptr, 0,
                   &error);
  std::string to;
  EXPECT_EQ(QULTMBU8ToCodePage(mail.Get(), to, "\u3042"), 0);
  EXPECT_EQ(to, "\x1B$B$\"\x1B(B");
}

// Nothing is known of such a converter, whatever the context of its callback says.
TEST_F(TranscodeBuffer, ConverterWithAForeignCallbackConvertsAsIcuDoes) {
  const int context[16] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2};
  for (const void* const any : {static_cast<const void*>(nullptr), static_cast<const void*>(context)})
    for (const char* name : {"UTF-16LE", "ISO-2022-KR", "1252"}) {
      const QULTMBConverterHandle known(QULTMBConverterNew_8(name));
      const QULTMBConverterHandle foreign(QULTMBConverterNew_8(name));
      UErrorCode error = U_ZERO_ERROR;
      ucnv_setFromUCallBack(static_cast<UConverter*>(foreign.Get()), UCNV_FROM_U_CALLBACK_SUBSTITUTE, any, nullptr,
                            nullptr, &error);
      std::string expected;
      std::string to;
      EXPECT_EQ(QULTMBU8ToCodePage(foreign.Get(), to, "ab"), 0) << name;
      QULTMBU8ToCodePage(known.Get(), expected, "ab");
      EXPECT_EQ(to, expected) << name;
      EXPECT_EQ(QULTMBU8ToCodePage(foreign.Get(), to, "a\u4e2d\u00e9"),
                QULTMBU8ToCodePage(known.Get(), expected, "a\u4e2d\u00e9"));
      EXPECT_EQ(to, expected) << name;
      const std::string page = expected;
      EXPECT_EQ(QULTMBCodePageToU8(foreign.Get(), to, page), QULTMBCodePageToU8(known.Get(), expected, page)) << name;
      EXPECT_EQ(to, expected) << name;
    }
}

}  // namespace
