#include "rqxml/encoding/RQMEMCodePages.h"

#include <unicode/ucnv.h>

#include <array>
#include <cstdio>

namespace RQMEM_NAMESPACE {

namespace {

struct CodePage {
  int number;
  const char* name;
};

constexpr std::array<CodePage, 15> kCodePages = {{{932, "windows-31j"},
                                                  {936, "GBK"},
                                                  {949, "KS_C_5601-1987"},
                                                  {950, "Big5"},
                                                  {1250, "cp1250"},
                                                  {1251, "cp1251"},
                                                  {1252, "cp1252"},
                                                  {1253, "cp1253"},
                                                  {1254, "cp1254"},
                                                  {1255, "cp1255"},
                                                  {1256, "cp1256"},
                                                  {1257, "cp1257"},
                                                  {1258, "cp1258"},
                                                  {28591, "ISO-8859-1"},
                                                  {65001, "UTF-8"}}};

constexpr int kLargest = 99999;

bool IsKnown(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_countAliases(name, &error) > 0 && U_SUCCESS(error);
}

std::string Formatted(const char* format, int number) {
  std::array<char, 32> buffer;
  std::snprintf(buffer.data(), buffer.size(), format, static_cast<long>(number));
  return buffer.data();
}

std::string KnownName(int number) {
  for (const CodePage& page : kCodePages)
    if (page.number == number && IsKnown(page.name)) return page.name;
  for (const char* format : {"windows-%03ld", "cp%03ld"}) {
    const std::string name = Formatted(format, number);
    if (IsKnown(name.c_str())) return name;
  }
  return {};
}

}  // namespace

std::optional<int> CodePageNumber(const char* name) {
  int number = 0;
  for (const char* digit = name; *digit != 0; ++digit) {
    if (*digit < '0' || *digit > '9') return std::nullopt;
    number = number * 10 + (*digit - '0');
    if (number > kLargest) return std::nullopt;
  }
  if (number == 0) return std::nullopt;
  return number;
}

std::string CodePageName(int number) {
  std::string name = KnownName(number);
  if (name.empty()) return name;
  UErrorCode error = U_ZERO_ERROR;
  const char* const standard = ucnv_getStandardName(name.c_str(), "IANA", &error);
  return U_SUCCESS(error) && standard != nullptr && *standard != 0 ? standard : name;
}

bool IsPlainConverterName(const char* name) {
  for (int length = 0; name[length] != 0; ++length)
    if (name[length] < 0x20 || name[length] > 0x7E || length + 1 == kConverterNameSize) return false;
  return true;
}

}  // namespace RQMEM_NAMESPACE
