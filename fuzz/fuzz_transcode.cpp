// Conversions between encodings: every pair, every buffer size, strings and arrays give what the slow reference gives.

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "fuzz_target.h"
#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"
#include "tests/support/reference_transcode.h"

namespace {

using namespace RQMEM_NAMESPACE;
using rqtest::Converted;
using rqxml_fuzz::Check;

constexpr std::array<const char*, 16> kPages = {
    "932",     "936",    "949",    "950",         "1252",        "1258",       "28591",  "65001",
    "gb18030", "EUC-JP", "EUC-TW", "ISO-2022-JP", "ISO-2022-KR", "HZ-GB-2312", "UTF-16", "ibm-37"};

// A converter with ICU's own one of the same name, opened once.
struct Page {
  QULTMBConverterHandle converter;
  rqtest::ReferenceConverter reference;
};

const Page& PageAt(std::size_t index) {
  static std::array<Page, kPages.size()> pages;
  Page& page = pages[index];
  if (!page.converter) {
    page.converter = QULTMBConverterHandle(QULTMBConverterNew_8(kPages[index]));
    UErrorCode error = U_ZERO_ERROR;
    page.reference = rqtest::OpenReference(ucnv_getName(static_cast<UConverter*>(page.converter.Get()), &error));
  }
  return page;
}

template <class Unit>
bool Same(const std::basic_string<Unit>& left, const std::basic_string<Unit>& right, std::size_t count) {
  return std::equal(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(count), right.begin());
}

template <class To, class From, class Convert>
void CheckBuffer(const std::basic_string<From>& source, std::size_t size, bool terminated, Convert convert,
                 const rqtest::OfCapacity<To>& expectedOf) {
  const Converted<To> expected = expectedOf(size - (terminated ? 1 : 0));
  std::basic_string<To> buffer(size, To{'#'});
  int status = -1;
  const int length = terminated ? -1 : static_cast<int>(source.size());
  const int count = convert(buffer.data(), static_cast<int>(size), source.c_str(), length, &status);
  Check(status == expected.Status(), "a conversion into a buffer has the status");
  Check(count == static_cast<int>(expected.text.size()), "a conversion into a buffer has the count");
  const std::size_t kept = terminated && !expected.cut ? expected.text.size() + 1 : size;
  Check(Same(buffer, rqtest::ReferenceBuffer(expected, terminated, size), kept),
        "a conversion into a buffer has the text, the blanks and the terminator");
}

template <class To, class From, class Convert, class Reference>
void CheckSizes(const std::basic_string<From>& source, Convert convert, Reference reference) {
  const rqtest::OfCapacity<To> expectedOf = reference(source);
  const std::size_t whole = expectedOf(rqtest::kUnlimited).text.size();
  for (const bool terminated : {false, true}) {
    if (terminated && source.find(From{0}) != source.npos) continue;
    for (std::size_t size = 1; size <= whole + 2; size += whole > 60 ? whole / 30 : 1)
      CheckBuffer<To>(source, size, terminated, convert, expectedOf);
  }
}

template <class To, class From, class Convert, class Reference>
void CheckString(const std::basic_string<From>& source, Convert convert, Reference reference) {
  const Converted<To> expected = reference(source)(rqtest::kUnlimited);
  std::basic_string<To> result;
  Check(convert(result, source) == expected.Status(), "a conversion into a string has the status");
  Check(result == expected.text, "a conversion into a string has the text");
}

template <class Unit>
void CheckUnicode(const std::string& utf8, const std::basic_string<Unit>& utf16) {
  const auto from8 = rqtest::UnicodeOfCapacity<Unit, char>;
  const auto from16 = rqtest::UnicodeOfCapacity<char, Unit>;
  CheckSizes<Unit>(
      utf8, [](auto... arguments) { return QULTMB8to16(arguments...); }, from8);
  CheckSizes<char>(
      utf16, [](auto... arguments) { return QULTMB16to8(arguments...); }, from16);
  CheckString<Unit>(
      utf8, [](auto& to, auto& from) { return QULTMBU8ToU16(to, from); }, from8);
  CheckString<char>(
      utf16, [](auto& to, auto& from) { return QULTMBU16ToU8(to, from); }, from16);
}

template <class Unit>
void CheckPageWith16(const Page& page, const std::string& bytes, const std::basic_string<Unit>& utf16) {
  void* const converter = page.converter.Get();
  const auto reading = [&](const std::string& text) { return rqtest::FromPageOfCapacity<Unit>(page.reference, text); };
  const auto writing = [&](const std::basic_string<Unit>& text) {
    return rqtest::PageOfCapacity(page.reference, text);
  };
  CheckSizes<Unit>(
      bytes, [&](auto... rest) { return QULTMBCodePageto16(converter, rest...); }, reading);
  CheckSizes<char>(
      utf16, [&](auto... rest) { return QULTMB16toCodePage(converter, rest...); }, writing);
  CheckString<Unit>(
      bytes, [&](auto& to, auto& from) { return QULTMBCodePageToU16(converter, to, from); }, reading);
  CheckString<char>(
      utf16, [&](auto& to, auto& from) { return QULTMBU16ToCodePage(converter, to, from); }, writing);
}

void CheckPageWith8(const Page& page, const std::string& bytes) {
  void* const converter = page.converter.Get();
  const auto reading = [&](const std::string& text) { return rqtest::FromPageOfCapacity<char>(page.reference, text); };
  const auto writing = [&](const std::string& text) { return rqtest::PageOfCapacity(page.reference, text); };
  CheckSizes<char>(
      bytes, [&](auto... rest) { return QULTMBCodePageto8(converter, rest...); }, reading);
  CheckSizes<char>(
      bytes, [&](auto... rest) { return QULTMB8toCodePage(converter, rest...); }, writing);
  CheckString<char>(
      bytes, [&](auto& to, auto& from) { return QULTMBCodePageToU8(converter, to, from); }, reading);
  CheckString<char>(
      bytes, [&](auto& to, auto& from) { return QULTMBU8ToCodePage(converter, to, from); }, writing);
}

void CheckArrays(const std::string& utf8, const std::wstring& utf16) {
  const std::unique_ptr<wchar_t[]> wide(QULTMBTranscodeU8(utf8.c_str()));
  const std::unique_ptr<char[]> narrow(QULTMBTranscodeU8(utf16.c_str()));
  Check(wide.get() == rqtest::ReferenceUnicode<wchar_t>(std::string(utf8.c_str()), rqtest::kUnlimited).text,
        "a new wide array");
  Check(narrow.get() == rqtest::ReferenceUnicode<char>(std::wstring(utf16.c_str()), rqtest::kUnlimited).text,
        "a new array");
}

// Two bytes for each unit; a unit of 0xE000 to 0xE0FF becomes one beyond 16 bits.
std::wstring AsWide(const std::string& bytes) {
  std::wstring units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    auto unit =
        static_cast<unsigned>(static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1]));
    if (unit >> 8 == 0xE0) unit = (unit & 0xFFU) << 13;
    units += static_cast<wchar_t>(unit);
  }
  return units;
}

std::u16string AsUnits(const std::wstring& wide) {
  std::u16string units;
  for (const wchar_t unit : wide) units += static_cast<char16_t>(unit);
  return units;
}

}  // namespace

// The first byte chooses the code page, the second how often the text is repeated: beyond the inner buffers, too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2 || size > 200) return 0;
  const Page& page = PageAt(data[0] % kPages.size());
  const std::string piece = rqxml_fuzz::AsText(data + 2, size - 2);
  std::string text;
  for (int i = data[1] % 16 == 0 ? data[1] / 16 : 0; i >= 0; --i) text += piece;
  const std::wstring wide = AsWide(text);
  CheckUnicode(text, wide);
  CheckUnicode(text, AsUnits(wide));
  CheckPageWith8(page, text);
  CheckPageWith16(page, text, wide);
  CheckPageWith16(page, text, AsUnits(wide));
  CheckArrays(text, wide);
  return 0;
}
