#ifndef RQXML_ENCODING_RQMEMCASELESS_H
#define RQXML_ENCODING_RQMEMCASELESS_H

/// @file
/// Internal: lower case, and the caseless comparison that the families of string functions share. A family brings a
/// reader with
/// - `std::int64_t Next()`: the next character as `Lower`, `LowerAscii` or `Malformed` gives it, or `kEnd`,
/// - `bool HasMetMalformed() const`: whether one was `Malformed`.

#include <unicode/uchar.h>

#include <cstddef>
#include <cstdint>

namespace RQMEM_NAMESPACE::caseless {

/// Stands behind the last character, and before every character in order.
inline constexpr std::int64_t kEnd = -1;

/// An ASCII character in lower case, as `Lower` gives it.
constexpr std::int64_t LowerAscii(unsigned byte) { return byte - 'A' < 26U ? byte + ('a' - 'A') : byte; }

/// A code point after ICU's simple lower-casing.
inline std::int64_t Lower(std::int64_t codePoint) { return u_tolower(static_cast<UChar32>(codePoint)); }

/// A byte of no character: unequal to every character, and behind all of them in order.
constexpr std::int64_t Malformed(unsigned byte) { return 0x110000 + std::int64_t{byte}; }

/// The length in bytes; a negative one is no limit.
constexpr std::size_t Length(int length) {
  return length < 0 ? static_cast<std::size_t>(-1) : static_cast<std::size_t>(length);
}

/// 0 when both texts hold the same characters, else -1 or 1 in their order.
template <class Reader>
int Compare(Reader& a, Reader& b) {
  while (true) {
    const std::int64_t characterA = a.Next();
    const std::int64_t characterB = b.Next();
    if (characterA != characterB) return characterA < characterB ? -1 : 1;
    if (characterA == kEnd) return 0;
  }
}

/// 1 when both texts hold the same characters, else 0; a status that is not null receives 3 or 0.
template <class Reader>
int Equal(Reader& a, Reader& b, int* status) {
  const bool equal = Compare(a, b) == 0;
  if (status != nullptr) *status = a.HasMetMalformed() || b.HasMetMalformed() ? 3 : 0;
  return equal ? 1 : 0;
}

}  // namespace RQMEM_NAMESPACE::caseless

#endif
