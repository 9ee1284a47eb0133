#include "rqxml/encoding/RQMEMConverter.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/encoding/RQMEMTranscode.h"
#include "tests/support/reference_transcode.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;

// ICU's own name of the converter; "none" for null.
std::string NameOf(void* converter) {
  if (converter == nullptr) return "none";
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_getName(static_cast<UConverter*>(converter), &error);
}

std::string NameOf(const QULTMBConverterHandle& converter) { return NameOf(converter.Get()); }

std::string OpenedByIcu(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  const QULTMBConverterHandle converter(ucnv_open(name, &error));
  return NameOf(converter);
}

// Puts UTF-8 mode and the default converter back.
class Converter : public testing::Test {
 protected:
  ~Converter() override {
    SetUTF8mode(1);
    QULTMBSetDefaultConverter("UTF-8");
  }
};

struct Page {
  const char* number;
  const char* standardName;
};

TEST_F(Converter, CodePageNumberOpensTheStandardNameOfTheTable) {
  for (const Page& page : std::vector<Page>{{"932", "Shift_JIS"},
                                            {"936", "GBK"},
                                            {"949", "EUC-KR"},
                                            {"950", "Big5"},
                                            {"1250", "windows-1250"},
                                            {"1251", "windows-1251"},
                                            {"1252", "windows-1252"},
                                            {"1253", "windows-1253"},
                                            {"1254", "windows-1254"},
                                            {"1255", "windows-1255"},
                                            {"1256", "windows-1256"},
                                            {"1257", "windows-1257"},
                                            {"1258", "windows-1258"},
                                            {"28591", "ISO-8859-1"},
                                            {"65001", "UTF-8"}}) {
    EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C(page.number))), OpenedByIcu(page.standardName));
    EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_8(page.number))), OpenedByIcu(page.standardName));
  }
}

TEST_F(Converter, CodePageBesideTheTableIsTriedAsWindowsThenAsCp) {
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("874"))), OpenedByIcu("windows-874"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("37"))), OpenedByIcu("cp037"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("437"))), OpenedByIcu("cp437"));
  ASSERT_NE(OpenedByIcu("windows-1200"), OpenedByIcu("cp1200"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("1200"))), OpenedByIcu("windows-1200"));
}

TEST_F(Converter, LeadingZerosDoNotChangeANumber) {
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("001252"))), OpenedByIcu("windows-1252"));
}

TEST_F(Converter, UnknownCodePageOpensNothing) {
  for (const char* number : {"1", "12345", "99999"}) EXPECT_EQ(QULTMBConverterNew_C(number), nullptr) << number;
}

TEST_F(Converter, NumbersOutOfRangeAreNamesThatIcuDoesNotKnow) {
  for (const char* name : {"0", "100000", "99999999999999999999", "-1252", "+1252", " 1252"})
    EXPECT_EQ(QULTMBConverterNew_C(name), nullptr) << name;
}

TEST_F(Converter, DigitsFollowedByALetterAreAName) {
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("8859_1"))), OpenedByIcu("8859_1"));
  EXPECT_EQ(QULTMBConverterNew_C("1252x"), nullptr);
}

TEST_F(Converter, NameIsGivenToIcu) {
  for (const char* name : {"UTF-8", "windows-1252", "shift_jis", "ISO-2022-JP", "KS_C_5601-1987", "x11-compound-text"})
    EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C(name))), OpenedByIcu(name)) << name;
}

TEST_F(Converter, UnknownAndEmptyNamesOpenNothing) {
  for (const char* name : {"", "no such encoding"}) {
    EXPECT_EQ(QULTMBConverterNew_C(name), nullptr);
    EXPECT_EQ(QULTMBConverterNew_8(name), nullptr);
    EXPECT_EQ(QULTMBConverterNew_A(name), nullptr);
  }
}

TEST_F(Converter, Windows28591IsLatin1WhateverTheCase) {
  for (const char* name : {"windows-28591", "WINDOWS-28591", "Windows-28591"})
    EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C(name))), OpenedByIcu("ISO-8859-1")) << name;
}

TEST_F(Converter, Windows28591IsLatin1InATurkishLocaleToo) {
  const rqtest::TestLocale turkish("tr_TR.ISO-8859-9");
  ASSERT_TRUE(turkish.IsSet());
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C("WINDOWS-28591"))), OpenedByIcu("ISO-8859-1"));
}

TEST_F(Converter, Windows28591IsLatin1AsAWholeNameAlone) {
  for (const char* name : {"windows-2859", "windows-285911", "windows_28591"})
    EXPECT_EQ(QULTMBConverterNew_C(name), nullptr) << name;
}

TEST_F(Converter, NullNameIsLikeTheDefaultConverter) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C(nullptr))), OpenedByIcu("windows-1252"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_8(nullptr))), OpenedByIcu("windows-1252"));
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_A(nullptr))), OpenedByIcu("windows-1252"));
}

// ICU passes over characters that no name has, so that such a name is known; converted, it is not the same any more.
TEST_F(Converter, Utf8NameMustBeInTheDefaultEncoding) {
  const char* const name = "UTF-8\u4e2d";
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_8(name))), "UTF-8");
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  EXPECT_EQ(QULTMBConverterNew_8(name), nullptr);
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_C(name))), "UTF-8");
}

TEST_F(Converter, Utf8NameHasAtMost59Bytes) {
  const std::string longest = "UTF-8" + std::string(54, '-');
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_8(longest.c_str()))), "UTF-8");
  EXPECT_EQ(QULTMBConverterNew_8((longest + "-").c_str()), nullptr);
}

TEST_F(Converter, MalformedUtf8NameOpensNothing) { EXPECT_EQ(QULTMBConverterNew_8("UTF-8\xFF"), nullptr); }

TEST_F(Converter, GenericNameFollowsUtf8Mode) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  const char* const name = "UTF-8\u4e2d";
  EXPECT_EQ(QULTMBConverterNew_A(name), nullptr);
  SetUTF8mode(0);
  EXPECT_EQ(NameOf(QULTMBConverterHandle(QULTMBConverterNew_A(name))), "UTF-8");
}

TEST_F(Converter, DefaultConverterIsReplacedAndCounted) {
  QULTMBGetDefaultConverter();
  const int before = QULTMBDefaultConverterID();
  EXPECT_TRUE(QULTMBSetDefaultConverter("932"));
  EXPECT_EQ(QULTMBDefaultConverterID(), before + 1);
  EXPECT_EQ(NameOf(QULTMBGetDefaultConverter()), OpenedByIcu("Shift_JIS"));
  EXPECT_TRUE(QULTMBSetDefaultConverter("932"));
  EXPECT_EQ(QULTMBDefaultConverterID(), before + 2);
}

TEST_F(Converter, DefaultConverterThatCannotBeOpenedChangesNothing) {
  const UConverter* const converter = QULTMBGetDefaultConverter();
  const int before = QULTMBDefaultConverterID();
  const std::string longest = "UTF-8" + std::string(54, '-');
  const std::string tooLong = longest + "-";
  const std::string longNumber = std::string(60, '0') + "1252";
  for (const char* name :
       {"no such encoding", "", "12345", "UTF-8\xFF", "UTF-8\x7F", tooLong.c_str(), longNumber.c_str()})
    EXPECT_FALSE(QULTMBSetDefaultConverter(name)) << name;
  EXPECT_EQ(QULTMBGetDefaultConverter(), converter);
  EXPECT_EQ(QULTMBDefaultConverterID(), before);
  EXPECT_TRUE(QULTMBSetDefaultConverter(longest.c_str()));
}

TEST_F(Converter, DefaultConverterComesBackFromAnEncodingWithoutAscii) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("UTF-16"));
  ASSERT_TRUE(QULTMBSetDefaultConverter("ibm-37"));
  ASSERT_TRUE(QULTMBSetDefaultConverter("UTF-8"));
  EXPECT_EQ(NameOf(QULTMBGetDefaultConverter()), "UTF-8");
}

TEST_F(Converter, Utf8ModeIsOnForAnyValueButZero) {
  for (const int on : {1, -1, 7}) {
    SetUTF8mode(on);
    EXPECT_EQ(qUTF8mode(), 1);
  }
  SetUTF8mode(0);
  EXPECT_EQ(qUTF8mode(), 0);
}

TEST_F(Converter, WritesAQuestionMarkAndMinus100ForWhatThePageLacks) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("1252"));
  std::array<char, 8> bytes{};
  UErrorCode error = U_ZERO_ERROR;
  ucnv_fromUChars(static_cast<UConverter*>(converter.Get()), bytes.data(), 8, u"a\u4e2d", 2, &error);
  EXPECT_STREQ(bytes.data(), "a?");
  EXPECT_EQ(static_cast<int>(error), -100);
}

TEST_F(Converter, WritesAQuestionMarkAndMinus101ForHalfASurrogatePair) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("1252"));
  std::array<char, 8> bytes{};
  UErrorCode error = U_ZERO_ERROR;
  const char16_t text[] = {u'a', 0xD800, 0};
  ucnv_fromUChars(static_cast<UConverter*>(converter.Get()), bytes.data(), 8, text, 2, &error);
  EXPECT_STREQ(bytes.data(), "a?");
  EXPECT_EQ(static_cast<int>(error), -101);
}

// The byte of a question mark, whatever it means there.
TEST_F(Converter, WritesTheByte3FInAnEncodingWithoutAscii) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("ibm-37"));
  std::string bytes;
  EXPECT_EQ(QULTMBU8ToCodePage(converter.Get(), bytes, "a\u4e2d?"), 3);
  EXPECT_EQ(bytes, "\x81\x3F\x6F");
}

TEST_F(Converter, ReadsAQuestionMarkAndMinus100ForAnUnassignedByte) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("1253"));
  std::array<char16_t, 8> units{};
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUChars(static_cast<UConverter*>(converter.Get()), units.data(), 8, "a\xFF", 2, &error);
  EXPECT_EQ(std::u16string(units.data()), u"a?");
  EXPECT_EQ(static_cast<int>(error), -100);
}

TEST_F(Converter, ReadsAQuestionMarkAndMinus101ForAnIllegalSequence) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("UTF-8"));
  std::array<char16_t, 8> units{};
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUChars(static_cast<UConverter*>(converter.Get()), units.data(), 8, "a\xFF", 2, &error);
  EXPECT_EQ(std::u16string(units.data()), u"a?");
  EXPECT_EQ(static_cast<int>(error), -101);
}

TEST_F(Converter, OpensWhereItRefusesTheSubstitute) {
  for (const char* name : {"UTF-16", "UTF-32", "UTF-16LE"}) {
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    EXPECT_TRUE(converter) << name;
  }
}

TEST_F(Converter, CloseTakesNull) { QULTMBConverterClose(nullptr); }

TEST_F(Converter, HandleOwnsMovesAndReleases) {
  QULTMBConverterHandle first(QULTMBConverterNew_8("1252"));
  void* const converter = first.Get();
  ASSERT_NE(converter, nullptr);
  QULTMBConverterHandle second(std::move(first));
  EXPECT_EQ(second.Get(), converter);
  QULTMBConverterHandle third(QULTMBConverterNew_8("932"));
  third = std::move(second);
  EXPECT_EQ(third.Get(), converter);
  EXPECT_TRUE(third);
  QULTMBConverterHandle fourth(third.Release());
  EXPECT_FALSE(third);
  EXPECT_EQ(fourth.Get(), converter);
  fourth.Reset();
  EXPECT_FALSE(fourth);
  static_assert(!std::is_copy_constructible_v<QULTMBConverterHandle>);
}

TEST_F(Converter, DefaultOneMayBeReplacedByANewOneOfTheSameEncoding) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  const int before = QULTMBDefaultConverterID();
  EXPECT_TRUE(QULTMBSetDefaultConverter(nullptr));
  EXPECT_EQ(QULTMBDefaultConverterID(), before + 1);
  std::string bytes;
  EXPECT_EQ(QULTMBU8ToCodePage(nullptr, bytes, "\u00e9"), 0);
  EXPECT_EQ(bytes, "\xE9");
}

// Closing a clone of one of them crashes inside ICU.
TEST_F(Converter, EveryEncodingOfIcuConvertsAsIcuDoes) {
  for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const char* const name = ucnv_getAvailableName(i);
    const QULTMBConverterHandle converter(QULTMBConverterNew_8(name));
    ASSERT_TRUE(converter) << name;
    const rqtest::ReferenceConverter reference = rqtest::OpenReference(name);
    std::string bytes;
    QULTMBU8ToCodePage(converter.Get(), bytes, "Name [~] \u00e9\u4e2d\n");
    EXPECT_EQ(bytes, rqtest::WholeInPage(reference, u"Name [~] \u00e9\u4e2d\n")) << name;
    std::wstring back;
    QULTMBCodePageToU16(converter.Get(), back, bytes);
    int replaced = 0;
    const std::u16string expected = rqtest::WholeFromPage(reference, bytes, replaced);
    EXPECT_EQ(back, std::wstring(expected.begin(), expected.end())) << name;
  }
}

}  // namespace
