// The conversions into strings and new arrays, and those of char16_t.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace {

using namespace RQMEM_NAMESPACE;
using namespace std::string_literals;

class TranscodeString : public testing::Test {
 protected:
  ~TranscodeString() override {
    SetUTF8mode(1);
    QULTMBSetDefaultConverter("UTF-8");
  }

  const QULTMBConverterHandle latin_{QULTMBConverterNew_8("1252")};
  const QULTMBConverterHandle japanese_{QULTMBConverterNew_8("932")};
};

template <class Unit>
std::basic_string<Unit> Take(Unit* made) {
  const std::unique_ptr<Unit[]> owned(made);
  return owned ? std::basic_string<Unit>(owned.get()) : std::basic_string<Unit>{'n', 'u', 'l', 'l'};
}

TEST_F(TranscodeString, EveryPairConverts) {
  std::string bytes;
  std::wstring wide;
  std::u16string sixteen;
  EXPECT_EQ(QULTMBU8ToU16(wide, "\u00e9\U0001F600"), 0);
  EXPECT_TRUE(wide == std::wstring({0xE9, 0xD83D, 0xDE00}));
  EXPECT_EQ(QULTMBU8ToU16(sixteen, "\u00e9\U0001F600"), 0);
  EXPECT_TRUE(sixteen == u"\u00e9\U0001F600");
  EXPECT_EQ(QULTMBU16ToU8(bytes, wide), 0);
  EXPECT_EQ(bytes, "\u00e9\U0001F600");
  EXPECT_EQ(QULTMBU16ToU8(bytes, sixteen), 0);
  EXPECT_EQ(bytes, "\u00e9\U0001F600");
  EXPECT_EQ(QULTMBCodePageToU16(japanese_.Get(), wide, "a\x82\xA0"), 0);
  EXPECT_EQ(wide, L"a\u3042");
  EXPECT_EQ(QULTMBCodePageToU16(japanese_.Get(), sixteen, "a\x82\xA0"), 0);
  EXPECT_TRUE(sixteen == u"a\u3042");
  EXPECT_EQ(QULTMBU16ToCodePage(japanese_.Get(), bytes, L"a\u3042"s), 0);
  EXPECT_EQ(bytes, "a\x82\xA0");
  EXPECT_EQ(QULTMBU16ToCodePage(japanese_.Get(), bytes, u"a\u3042"s), 0);
  EXPECT_EQ(bytes, "a\x82\xA0");
  EXPECT_EQ(QULTMBCodePageToU8(japanese_.Get(), bytes, "a\x82\xA0"), 0);
  EXPECT_EQ(bytes, "a\u3042");
  EXPECT_EQ(QULTMBU8ToCodePage(japanese_.Get(), bytes, "a\u3042"), 0);
  EXPECT_EQ(bytes, "a\x82\xA0");
}

TEST_F(TranscodeString, WholeTextIsConvertedZerosIncluded) {
  std::string bytes;
  std::wstring wide;
  EXPECT_EQ(QULTMBU8ToU16(wide, "a\0\u00e9\0"s), 0);
  EXPECT_EQ(wide, L"a\0\u00e9\0"s);
  EXPECT_EQ(QULTMBU16ToU8(bytes, L"\0b\0"s), 0);
  EXPECT_EQ(bytes, "\0b\0"s);
  EXPECT_EQ(QULTMBU16ToCodePage(latin_.Get(), bytes, L"\u00e9\0b"s), 0);
  EXPECT_EQ(bytes, "\xE9\0b"s);
  EXPECT_EQ(QULTMBCodePageToU8(latin_.Get(), bytes, "\xE9\0b"s), 0);
  EXPECT_EQ(bytes, "\u00e9\0b"s);
  EXPECT_EQ(QULTMBGenericToU8(bytes, "a\0b"s), 0);
  EXPECT_EQ(bytes, "a\0b"s);
}

TEST_F(TranscodeString, EmptyTextGivesEmptyText) {
  for (const char* name : {"1252", "932", "UTF-16", "ISO-2022-KR", "UTF-7"}) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::string bytes = "before";
    EXPECT_EQ(QULTMBU8ToCodePage(converter.Get(), bytes, ""), 0);
    EXPECT_EQ(bytes, "") << name;
    std::wstring wide = L"before";
    EXPECT_EQ(QULTMBCodePageToU16(converter.Get(), wide, ""), 0);
    EXPECT_EQ(wide, L"") << name;
  }
}

TEST_F(TranscodeString, MalformedTextKeepsWhatStandsBefore) {
  std::string bytes;
  std::wstring wide;
  EXPECT_EQ(QULTMBU8ToU16(wide, "ab\xFFz"), 3);
  EXPECT_EQ(wide, L"ab");
  EXPECT_EQ(QULTMBU16ToU8(bytes, std::wstring{L'a', 0xDC00, L'z'}), 3);
  EXPECT_EQ(bytes, "a");
  const std::wstring later = std::wstring(5000, L'\u4e2d') + static_cast<wchar_t>(0xD800);
  EXPECT_EQ(QULTMBU16ToU8(bytes, later), 3);
  EXPECT_EQ(bytes.size(), 15000U);
}

TEST_F(TranscodeString, HalfASurrogatePairIsReportedByEncodingsThatWouldWriteIt) {
  for (const char* name : {"UTF-7", "SCSU", "BOCU-1", "CESU-8", "IMAP-mailbox-name"}) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    ASSERT_TRUE(converter) << name;
    std::string bytes;
    EXPECT_EQ(QULTMBU16ToCodePage(converter.Get(), bytes, std::wstring{L'a', 0xD800}), 3) << name;
    EXPECT_EQ(QULTMBU16ToCodePage(converter.Get(), bytes, std::u16string{u'a', 0xDC00}), 3) << name;
    EXPECT_EQ(QULTMBU16ToCodePage(converter.Get(), bytes, L"a\u4e2d"s), 0) << name;
  }
}

TEST_F(TranscodeString, HalfASurrogatePairThatAnEncodingSpellsIsReportedInEveryForm) {
  const std::pair<const char*, std::string> rows[] = {{"UTF-7", "a+2AA-z"},         {"UTF-7", "a+3AA-z"},
                                                      {"UTF-7", "a+2AA"},           {"UTF-7", "a+2ADYAA-z"},
                                                      {"CESU-8", "a\xED\xA0\x80z"}, {"IMAP-mailbox-name", "a&2AA-z"}};
  for (const auto& [name, text] : rows) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    std::wstring wide;
    std::u16string narrow;
    std::string utf8;
    EXPECT_EQ(QULTMBCodePageToU16(converter.Get(), wide, text), 3) << name << ' ' << text;
    EXPECT_EQ(QULTMBCodePageToU16(converter.Get(), narrow, text), 3) << name << ' ' << text;
    EXPECT_EQ(QULTMBCodePageToU8(converter.Get(), utf8, text), 3) << name << ' ' << text;
    EXPECT_TRUE(std::u16string(wide.begin(), wide.end()) == narrow);
  }
  const QULTMBConverterHandle compressed(QULTMBConverterNew_8("SCSU"));
  std::string utf8;
  EXPECT_EQ(QULTMBCodePageToU8(compressed.Get(), utf8, "a\x0E\xD8\0z"s), 3);
  std::u16string sixteen;
  EXPECT_EQ(QULTMBCodePageToU16(compressed.Get(), sixteen, "a\x0E\xD8\0z"s), 3);
  const QULTMBConverterHandle utf7(QULTMBConverterNew_8("UTF-7"));
  std::wstring wide;
  for (int before = 0; before < 5000; before += before < 4080 ? 255 : 1) {  // a pair across inner buffers is none
    EXPECT_EQ(QULTMBCodePageToU16(utf7.Get(), wide, std::string(static_cast<std::size_t>(before), 'a') + "+2D3eAA-z"),
              0)
        << before;
  }
}

TEST_F(TranscodeString, PairAcrossInnerBuffersIsOneCharacter) {
  const QULTMBConverterHandle chinese(QULTMBConverterNew_8("gb18030"));
  for (std::size_t before = 4085; before < 4100; ++before) {
    const std::string utf8 = "\u00e9" + std::string(before, 'a') + "\U0001F600z";
    std::string page;
    std::string back;
    EXPECT_EQ(QULTMBU8ToCodePage(chinese.Get(), page, utf8), 0) << before;
    EXPECT_EQ(QULTMBCodePageToU8(chinese.Get(), back, page), 0) << before;
    EXPECT_TRUE(back == utf8) << before;
  }
}

TEST_F(TranscodeString, ReplacedCharacterIsReportedInTextsOfAnyLength) {
  for (const std::size_t length : {1U, 20U, 257U, 1024U, 4096U, 20000U, 200000U}) {
    const std::string text = "\u4e2d" + std::string(length, 'a');
    std::string bytes;
    EXPECT_EQ(QULTMBU8ToCodePage(latin_.Get(), bytes, text), 3) << length;
    EXPECT_EQ(bytes, "?" + std::string(length, 'a')) << length;
    EXPECT_EQ(QULTMBU8ToCodePage(japanese_.Get(), bytes, text), 0) << length;
  }
}

TEST_F(TranscodeString, SourceMayBeTheDestination) {
  for (const std::size_t length : {1U, 30U, 5000U}) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += "a\u3042";
    const std::string utf8 = text;
    EXPECT_EQ(QULTMBU8ToCodePage(japanese_.Get(), text, text), 0);
    EXPECT_EQ(text.size(), 3 * length);
    EXPECT_EQ(QULTMBCodePageToU8(japanese_.Get(), text, text), 0);
    EXPECT_EQ(text, utf8);
    EXPECT_EQ(QULTMBGenericToU8(text, text), 0);
    EXPECT_EQ(text, utf8);
  }
}

TEST_F(TranscodeString, GenericIsUtf8InUtf8Mode) {
  std::string bytes;
  std::wstring wide;
  std::u16string sixteen;
  void* const page = latin_.Get();
  for (void* const converter : {page, static_cast<void*>(nullptr)}) {
    EXPECT_EQ(QULTMBGenericToU16(converter, wide, "\u4e2d"), 0);
    EXPECT_EQ(wide, L"\u4e2d");
    EXPECT_EQ(QULTMBU16ToGeneric(converter, bytes, L"\u4e2d"s), 0);
    EXPECT_EQ(bytes, "\u4e2d");
    EXPECT_EQ(QULTMBGenericToU16(converter, sixteen, "\u4e00"), 0);
    EXPECT_TRUE(sixteen == u"\u4e00");
    EXPECT_EQ(QULTMBU16ToGeneric(converter, bytes, u"\u4e00"s), 0);
    EXPECT_EQ(bytes, "\u4e00");
    EXPECT_EQ(QULTMBGenericToU8(converter, bytes, "\xFF"), 0);
    EXPECT_EQ(bytes, "\xFF");
    EXPECT_EQ(QULTMBU8ToGeneric(converter, bytes, "\xFF"), 0);
    EXPECT_EQ(bytes, "\xFF");
  }
  EXPECT_EQ(QULTMBGenericToCodePage(page, bytes, "\u00e9"), 0);
  EXPECT_EQ(bytes, "\xE9");
  EXPECT_EQ(QULTMBCodePageToGeneric(page, bytes, "\xE9"), 0);
  EXPECT_EQ(bytes, "\u00e9");
}

TEST_F(TranscodeString, GenericWithoutConverterUsesTheDefaultOne) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  std::string bytes;
  std::wstring wide;
  std::u16string sixteen;
  EXPECT_EQ(QULTMBGenericToCodePage(bytes, "\u00e9"), 0);
  EXPECT_EQ(bytes, "\xE9");
  EXPECT_EQ(QULTMBCodePageToGeneric(bytes, "\xE9"), 0);
  EXPECT_EQ(bytes, "\u00e9");
  SetUTF8mode(0);
  EXPECT_EQ(QULTMBGenericToU16(wide, "\xE9"), 0);
  EXPECT_EQ(wide, L"\u00e9");
  EXPECT_EQ(QULTMBGenericToU16(sixteen, "\xE9"), 0);
  EXPECT_TRUE(sixteen == u"\u00e9");
  EXPECT_EQ(QULTMBU16ToGeneric(bytes, L"\u00e9"s), 0);
  EXPECT_EQ(bytes, "\xE9");
  EXPECT_EQ(QULTMBU16ToGeneric(bytes, u"\u00e9"s), 0);
  EXPECT_EQ(bytes, "\xE9");
  EXPECT_EQ(QULTMBGenericToU8(bytes, "\xE9"), 0);
  EXPECT_EQ(bytes, "\u00e9");
  EXPECT_EQ(QULTMBU8ToGeneric(bytes, "\u00e9"), 0);
  EXPECT_EQ(bytes, "\xE9");
}

TEST_F(TranscodeString, GenericWithConverterUsesItOutsideUtf8Mode) {
  SetUTF8mode(0);
  std::string bytes;
  std::wstring wide;
  std::u16string sixteen;
  EXPECT_EQ(QULTMBGenericToU16(japanese_.Get(), wide, "\x82\xA0"), 0);
  EXPECT_EQ(wide, L"\u3042");
  EXPECT_EQ(QULTMBGenericToU16(japanese_.Get(), sixteen, "\x82\xA0"), 0);
  EXPECT_TRUE(sixteen == u"\u3042");
  EXPECT_EQ(QULTMBU16ToGeneric(japanese_.Get(), bytes, L"\u3042"s), 0);
  EXPECT_EQ(bytes, "\x82\xA0");
  EXPECT_EQ(QULTMBU16ToGeneric(japanese_.Get(), bytes, u"\u3044"s), 0);
  EXPECT_EQ(bytes, "\x82\xA2");
  EXPECT_EQ(QULTMBGenericToU8(japanese_.Get(), bytes, "\x82\xA0"), 0);
  EXPECT_EQ(bytes, "\u3042");
  EXPECT_EQ(QULTMBU8ToGeneric(japanese_.Get(), bytes, "\u3042"), 0);
  EXPECT_EQ(bytes, "\x82\xA0");
}

TEST_F(TranscodeString, GenericAndCodePageAreOneOutsideUtf8Mode) {
  SetUTF8mode(0);
  std::string bytes;
  EXPECT_EQ(QULTMBGenericToCodePage(japanese_.Get(), bytes, "\xFF\0x"s), 0);
  EXPECT_EQ(bytes, "\xFF\0x"s);
  EXPECT_EQ(QULTMBCodePageToGeneric(japanese_.Get(), bytes, "\xFE"), 0);
  EXPECT_EQ(bytes, "\xFE");
}

TEST_F(TranscodeString, TextBeyondIntGives2AndAnEmptyDestination) {
  std::string bytes = "before";
  const std::wstring wide((std::size_t{1} << 29), L'a');
  EXPECT_EQ(QULTMBU16ToU8(bytes, wide), 2);
  EXPECT_EQ(bytes, "");
  bytes = "before";
  EXPECT_EQ(QULTMBU16ToCodePage(latin_.Get(), bytes, wide), 2);
  EXPECT_EQ(bytes, "");
  bytes = "before";
  EXPECT_EQ(QULTMBU16ToGeneric(bytes, wide), 2);
  EXPECT_EQ(bytes, "");
  EXPECT_EQ(QULTMBTranscodeU8(wide.c_str()), nullptr);
  EXPECT_EQ(QULTMBTranscodeCodePage(wide.c_str()), nullptr);
}

TEST_F(TranscodeString, Utf8BeyondIntGives2AndAnEmptyDestination) {
  const std::string source(std::size_t{1} << 31, 'a');
  std::wstring wide = L"before";
  EXPECT_EQ(QULTMBU8ToU16(wide, source), 2);
  EXPECT_EQ(wide, L"");
  wide = L"before";
  EXPECT_EQ(QULTMBCodePageToU16(latin_.Get(), wide, source), 2);
  EXPECT_EQ(wide, L"");
  std::string bytes = "before";
  EXPECT_EQ(QULTMBCodePageToU8(latin_.Get(), bytes, source), 2);
  EXPECT_EQ(bytes, "");
  bytes = "before";
  EXPECT_EQ(QULTMBU8ToCodePage(latin_.Get(), bytes, source), 2);
  EXPECT_EQ(bytes, "");
  bytes = "before";
  EXPECT_EQ(QULTMBGenericToU8(bytes, source), 2);  // a plain copy in UTF-8 mode
  EXPECT_EQ(bytes, "");
  EXPECT_EQ(QULTMBTranscodeU8(source.c_str()), nullptr);
  EXPECT_EQ(QULTMBTranscodeCodePage(source.c_str()), nullptr);
}

TEST_F(TranscodeString, NewArraysHoldTheTextAndItsTerminator) {
  for (const std::size_t length : {0U, 1U, 200U, 300U, 1024U, 1025U, 50000U}) {
    const std::string utf8(length, 'a');
    const std::wstring wide(length, L'a');
    const std::u16string sixteen(length, u'a');
    EXPECT_EQ(Take(QULTMBTranscodeU8(utf8.c_str())), wide);
    EXPECT_EQ(Take(QULTMBTranscodeU8(wide.c_str())), utf8);
    EXPECT_TRUE(Take(QULTMBTranscodeU8ToChar16(utf8.c_str())) == sixteen);
    EXPECT_EQ(Take(QULTMBTranscodeU8(sixteen.c_str())), utf8);
  }
}

TEST_F(TranscodeString, NewArraysOfTheDefaultCodePage) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  EXPECT_EQ(Take(QULTMBTranscodeCodePage("a\x82\xA0")), L"a\u3042");
  EXPECT_EQ(Take(QULTMBTranscodeCodePage(L"a\u3042")), "a\x82\xA0");
  EXPECT_TRUE(Take(QULTMBTranscodeCodePageToChar16("a\x82\xA0")) == u"a\u3042");
  EXPECT_EQ(Take(QULTMBTranscodeCodePage(u"a\u3042")), "a\x82\xA0");
  for (const int mode : {0, 1}) {
    SetUTF8mode(mode);
    const char* const generic = mode == 1 ? "a\u3042" : "a\x82\xA0";
    EXPECT_EQ(Take(QULTMBTranscodeGeneric(generic)), L"a\u3042");
    EXPECT_EQ(Take(QULTMBTranscodeGeneric(L"a\u3042")), generic);
    EXPECT_TRUE(Take(QULTMBTranscodeGenericToChar16(generic)) == u"a\u3042");
    EXPECT_EQ(Take(QULTMBTranscodeGeneric(u"a\u3042")), generic);
  }
}

TEST_F(TranscodeString, NewArrayOfMalformedTextHoldsWhatStandsBefore) {
  EXPECT_EQ(Take(QULTMBTranscodeU8("ab\xFF")), L"ab");
}

TEST_F(TranscodeString, NewArrayOfNoTextIsEmpty) {
  EXPECT_EQ(Take(QULTMBTranscodeU8(static_cast<const char*>(nullptr))), L"");
  EXPECT_EQ(Take(QULTMBTranscodeCodePage(static_cast<const wchar_t*>(nullptr))), "");
}

}  // namespace
