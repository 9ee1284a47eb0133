#include "rqxml/encoding/RQMEMLocale.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace RQMEM_NAMESPACE::locale {

namespace {

constexpr auto kInvalid = static_cast<std::size_t>(-1);
constexpr auto kIncomplete = static_cast<std::size_t>(-2);

// In every locale of the runtime the characters of ASCII have one byte.
bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

std::size_t RuntimeLength(const char* s, std::size_t n) {
  std::mbstate_t initial{};
  return std::mbrlen(s, n, &initial);
}

}  // namespace

int gSingleByte = 0;

bool IsLeadByte(unsigned char byte) {
  const char text = static_cast<char>(byte);
  return !IsAscii(text) && MB_CUR_MAX == 2 && RuntimeLength(&text, 1) == kIncomplete;
}

std::size_t LengthWithin(const char* s, std::size_t n) {
  if (IsAscii(*s)) return 1;
  const std::size_t length = RuntimeLength(s, n);
  if (length == kIncomplete) return 0;
  return length == kInvalid || length == 0 ? 1 : length;
}

std::size_t LengthAt(const char* s) {
  constexpr std::size_t kLongest = 5;
  if (IsAscii(*s)) return 1;
  const std::size_t length = LengthWithin(s, strnlen(s, kLongest));
  return length == 0 ? 1 : length;
}

}  // namespace RQMEM_NAMESPACE::locale
