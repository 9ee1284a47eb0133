// The _C family as far as the runtime's locale serves it.

#include <bitset>
#include <cstdlib>
#include <cstring>

#include "rqxml/encoding/RQMEMLocale.h"
#include "rqxml/encoding/RQMEMString.h"

namespace RQMEM_NAMESPACE {

namespace {

std::bitset<256> FirstBytes(const char* text) {
  std::bitset<256> firstBytes;
  for (; *text != 0; text += locale::LengthAt(text)) firstBytes.set(static_cast<unsigned char>(*text));
  return firstBytes;
}

// True when the `length` bytes at `character` are one of the text's characters.
bool Occurs(const char* character, std::size_t length, const char* text) {
  while (*text != 0) {
    const std::size_t other = locale::LengthAt(text);
    if (other == length && std::memcmp(text, character, length) == 0) return true;
    text += other;
  }
  return false;
}

// How many of the first `length` bytes are whole characters.
std::size_t WholeCharacters(const char* s, std::size_t length) {
  std::size_t end = 0;
  while (end < length) {
    const std::size_t step = locale::LengthWithin(s + end, length - end);
    if (step == 0) break;
    end += step;
  }
  return end;
}

// True when byte `i` is the trail byte of a character. Whatever is no lead byte ends a character, so that the lead
// bytes in a row before it decide: of an odd number the last has not got its trail byte yet.
bool IsTrailByte(const char* s, std::size_t i) {
  std::size_t first = i;
  while (first > 0 && locale::IsLeadByte(static_cast<unsigned char>(s[first - 1]))) --first;
  return (i - first) % 2 == 1;
}

}  // namespace

std::size_t QULTMBmbclen_C(const char* s) {
  return QULTMBIsLeadByte_C(static_cast<unsigned char>(*s)) != 0 && s[1] != 0 ? 2 : 1;
}

int QULTMBmblen_C(const char* s, std::size_t n) { return std::mblen(s, n); }

char* QULTMBstrchr_C(const char* s, unsigned int c) {
  if (locale::gSingleByte != 0) return const_cast<char*>(std::strchr(s, static_cast<int>(c)));
  const char low = static_cast<char>(c & 0xFFU);
  for (; *s != 0; s += locale::LengthAt(s))
    if (*s == low) return const_cast<char*>(s);
  return c == 0 ? const_cast<char*>(s) : nullptr;
}

char* QULTMBstrrchr_C(const char* s, unsigned int c) {
  if (locale::gSingleByte != 0) return const_cast<char*>(std::strrchr(s, static_cast<int>(c)));
  const char low = static_cast<char>(c & 0xFFU);
  const char* last = nullptr;
  while (*s != 0) {
    const bool matches = *s == low;
    if (matches) last = s;
    s += matches ? 1 : locale::LengthAt(s);
  }
  if (last == nullptr && c == 0) last = s;
  return const_cast<char*>(last);
}

std::size_t QULTMBstrcspn_C(const char* s, const char* reject) {
  if (locale::gSingleByte != 0) return std::strcspn(s, reject);
  const std::bitset<256> firstBytes = FirstBytes(reject);
  const char* at = s;
  while (*at != 0) {
    const std::size_t length = locale::LengthAt(at);
    if (firstBytes[static_cast<unsigned char>(*at)] && Occurs(at, length, reject)) break;
    at += length;
  }
  return static_cast<std::size_t>(at - s);
}

char* QULTMBstrncpy_C(char* dst, const char* src, std::size_t n) {
  if (dst == nullptr || src == nullptr || n == 0) return dst;
  std::size_t length = strnlen(src, n);
  if (locale::gSingleByte == 0) length = WholeCharacters(src, length);
  std::memmove(dst, src, length);
  std::memset(dst + length, 0, n - length);
  return dst;
}

char* QULTMBstrinc_C(const char* s) { return const_cast<char*>(s + QULTMBmbclen_C(s)); }

std::size_t QULTMBFindStart_C(const char* s, std::size_t i) {
  if (s == nullptr) return 0;
  const std::size_t length = strnlen(s, i);
  if (length < i) return length;
  if (locale::gSingleByte != 0 || s[i] == 0) return i;
  return IsTrailByte(s, i) ? i - 1 : i;
}

char* QULTMBAnsiPrev_C(const char* start, const char* p) {
  if (p == nullptr || p == start) return const_cast<char*>(p);
  return const_cast<char*>(start + QULTMBFindStart_C(start, static_cast<std::size_t>(p - start) - 1));
}

int QULTMBIsLeadByte_C(unsigned int c) {
  const bool isByte = c <= 0xFF;
  return isByte && locale::gSingleByte == 0 && locale::IsLeadByte(static_cast<unsigned char>(c)) ? 1 : 0;
}

}  // namespace RQMEM_NAMESPACE
