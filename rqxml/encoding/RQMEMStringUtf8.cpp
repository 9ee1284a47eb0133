// The _8 family: text in UTF-8.

#include <unicode/utf8.h>

#include <algorithm>
#include <bitset>
#include <cstring>

#include "rqxml/encoding/RQMEMCaseless.h"
#include "rqxml/encoding/RQMEMString.h"
#include "rqxml/encoding/RQMEMUtf8.h"

namespace RQMEM_NAMESPACE {

namespace utf8 {

Character DecodeBackwards(const char* s, std::size_t end) {
  // A character has at most four bytes, and ICU counts in 32 bits.
  const auto window = static_cast<std::int32_t>(std::min<std::size_t>(end, 4));
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(s + end) - window;
  std::int32_t start = window;
  UChar32 codePoint = 0;
  U8_PREV(bytes, 0, start, codePoint);
  return {codePoint, static_cast<std::size_t>(window - start)};
}

}  // namespace utf8

namespace {

using utf8::ByteAt;
using utf8::Character;

constexpr unsigned kEndOfAscii = 0x80;

// The low bytes of the code points in a text: most characters that do not occur there are told by them.
std::bitset<256> LowBytes(const char* text) {
  std::bitset<256> lowBytes;
  while (*text != 0) {
    const Character character = utf8::DecodeByLead(text);
    if (character.codePoint >= 0) lowBytes.set(static_cast<std::size_t>(character.codePoint & 0xFF));
    text += character.length;
  }
  return lowBytes;
}

bool Occurs(std::int64_t codePoint, const char* text) {
  while (*text != 0) {
    const Character character = utf8::DecodeByLead(text);
    if (character.codePoint == codePoint) return true;
    text += character.length;
  }
  return false;
}

// How many of the first `length` bytes are left when what is not acceptable at their end is dropped.
std::size_t WithoutBadEnd(const char* s, std::size_t length) {
  while (length > 0) {
    const Character last = utf8::DecodeBackwards(s, length);
    if (utf8::IsAcceptable(last.codePoint)) break;
    length -= last.length;
  }
  return length;
}

// The characters of a text, lower-cased.
class Reader {
 public:
  Reader(const char* s, std::size_t length) : fAt(s), fLeft(length) {}

  std::int64_t Next() {
    if (fLeft == 0 || *fAt == 0) return caseless::kEnd;
    const unsigned byte = ByteAt(fAt);
    if (byte < kEndOfAscii) {
      Skip(1);
      return caseless::LowerAscii(byte);
    }
    return NextBeyondAscii(byte);
  }

  bool HasMetMalformed() const { return fHasMetMalformed; }

 private:
  std::int64_t NextBeyondAscii(unsigned byte) {
    const Character character = utf8::Decode(fAt, fLeft);
    Skip(character.length);
    if (character.codePoint >= 0) return caseless::Lower(character.codePoint);
    fHasMetMalformed = true;
    return caseless::Malformed(byte);
  }

  void Skip(std::size_t count) {
    fAt += count;
    fLeft -= count;
  }

  const char* fAt;
  std::size_t fLeft;
  bool fHasMetMalformed = false;
};

}  // namespace

std::size_t QULTMBmbclen_8(const char* s) {
  const std::size_t announced = utf8::kLengths[ByteAt(s)];
  std::size_t length = 1;
  while (length < announced && s[length] != 0) ++length;
  return length;
}

int QULTMBmblen_8(const char* s, std::size_t n) {
  if (s == nullptr || n == 0 || *s == 0) return 0;
  const std::size_t length = utf8::WellFormedLength(s, n);
  return length == 0 ? -1 : static_cast<int>(length);
}

char* QULTMBstrchr_8(const char* s, unsigned int c) {
  if (c < kEndOfAscii) return const_cast<char*>(std::strchr(s, static_cast<int>(c)));
  while (*s != 0) {
    const Character character = utf8::DecodeByLead(s);
    if (character.codePoint == c) return const_cast<char*>(s);
    s += character.length;
  }
  return nullptr;
}

char* QULTMBstrrchr_8(const char* s, unsigned int c) {
  if (c < kEndOfAscii) return const_cast<char*>(std::strrchr(s, static_cast<int>(c)));
  const char* last = nullptr;
  while (*s != 0) {
    const Character character = utf8::DecodeByLead(s);
    if (character.codePoint == c) last = s;
    s += character.length;
  }
  return const_cast<char*>(last);
}

std::size_t QULTMBstrcspn_8(const char* s, const char* reject) {
  const std::bitset<256> lowBytes = LowBytes(reject);
  const char* at = s;
  while (*at != 0) {
    const Character character = utf8::DecodeByLead(at);
    const bool mayOccur = character.codePoint >= 0 && lowBytes[static_cast<std::size_t>(character.codePoint & 0xFF)];
    if (mayOccur && Occurs(character.codePoint, reject)) break;
    at += character.length;
  }
  return static_cast<std::size_t>(at - s);
}

char* QULTMBstrncpy_8(char* dst, const char* src, std::size_t n) {
  if (dst == nullptr || n == 0) return dst;
  std::size_t length = 0;
  if (src != nullptr) {
    length = WithoutBadEnd(src, strnlen(src, n));
    std::memmove(dst, src, length);
  }
  std::memset(dst + length, 0, n - length);
  return dst;
}

int QULTMBqstricmp_8(const char* a, int lenA, const char* b, int lenB, int* status) {
  Reader readerA(a, caseless::Length(lenA));
  Reader readerB(b, caseless::Length(lenB));
  return caseless::Equal(readerA, readerB, status);
}

int QULTMBstrnicmp_8(const char* a, const char* b, std::size_t n) {
  Reader readerA(a, n);
  Reader readerB(b, n);
  return caseless::Compare(readerA, readerB);
}

char* QULTMBstrinc_8(const char* s) { return const_cast<char*>(s + QULTMBmbclen_8(s)); }

std::size_t QULTMBPreviousIndex_8(const char* s, std::size_t i) {
  if (i == 0) return 0;
  const Character last = utf8::DecodeBackwards(s, i);
  return utf8::IsAcceptable(last.codePoint) ? i - last.length : i - 1;
}

char* QULTMBAnsiPrev_8(const char* start, const char* p) {
  if (p == nullptr || p == start) return const_cast<char*>(p);
  return const_cast<char*>(start + QULTMBPreviousIndex_8(start, static_cast<std::size_t>(p - start)));
}

}  // namespace RQMEM_NAMESPACE
