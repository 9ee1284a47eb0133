// All single bytes, all pairs of bytes and all characters of the basic plane, in the code pages of the table, against
// ICU alone.

#include <gtest/gtest.h>

#include <string>

#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"
#include "tests/support/reference_transcode.h"

namespace {

using namespace RQMEM_NAMESPACE;

class CodePage : public testing::TestWithParam<const char*> {
 protected:
  CodePage() : converter_(QULTMBConverterNew_8(GetParam())) {
    UErrorCode error = U_ZERO_ERROR;
    reference_ = rqtest::OpenReference(ucnv_getName(static_cast<UConverter*>(converter_.Get()), &error));
  }

  void CheckReading(const std::string& bytes) const {
    const auto expected = rqtest::ReferenceFromPage<wchar_t>(reference_, bytes, 16);
    std::wstring wide;
    ASSERT_EQ(QULTMBCodePageToU16(converter_.Get(), wide, bytes), expected.Status()) << testing::PrintToString(bytes);
    ASSERT_EQ(wide, expected.text) << testing::PrintToString(bytes);
    std::string utf8;
    ASSERT_EQ(QULTMBCodePageToU8(converter_.Get(), utf8, bytes), expected.Status());
    ASSERT_EQ(utf8, rqtest::ReferenceFromPage<char>(reference_, bytes, 16).text) << testing::PrintToString(bytes);
  }

  QULTMBConverterHandle converter_;
  rqtest::ReferenceConverter reference_;
};

TEST_P(CodePage, EveryByteIsReadAsIcuReadsIt) {
  for (unsigned byte = 0; byte <= 0xFF; ++byte) CheckReading({static_cast<char>(byte)});
}

TEST_P(CodePage, EveryPairOfBytesIsReadAsIcuReadsIt) {
  for (unsigned first = 0; first <= 0xFF && !HasFatalFailure(); ++first)
    for (unsigned second = 0; second <= 0xFF; ++second)
      CheckReading({static_cast<char>(first), static_cast<char>(second)});
}

TEST_P(CodePage, EveryCharacterOfTheBasicPlaneIsWrittenAsIcuWritesIt) {
  for (unsigned unit = 0; unit <= 0xFFFF && !HasFatalFailure(); ++unit) {
    const std::wstring wide(1, static_cast<wchar_t>(unit));
    const auto expected = rqtest::ReferenceToPage(reference_, wide, 16);
    std::string bytes;
    ASSERT_EQ(QULTMBU16ToCodePage(converter_.Get(), bytes, wide), expected.Status()) << unit;
    ASSERT_EQ(bytes, expected.text) << unit;
  }
}

INSTANTIATE_TEST_SUITE_P(OfTheTable, CodePage,
                         testing::Values("932", "936", "949", "950", "1250", "1251", "1252", "1253", "1254", "1255",
                                         "1256", "1257", "1258"),
                         [](const auto& page) { return std::string("Page") + page.param; });

}  // namespace
