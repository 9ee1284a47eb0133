#ifndef RQXML_ENCODING_RQMEMUTF8_H
#define RQXML_ENCODING_RQMEMUTF8_H

/// @file
/// Internal: where the characters of UTF-8 text begin and end.

#include <array>
#include <cstddef>
#include <cstdint>

namespace RQMEM_NAMESPACE::utf8 {

/// A character and its length in bytes. A negative code point: the bytes are no character.
struct Character {
  std::int64_t codePoint;
  std::size_t length;
};

/// The byte as a number from 0 to 255.
constexpr unsigned ByteAt(const char* s) { return static_cast<unsigned char>(*s); }

constexpr bool IsContinuation(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

constexpr std::array<std::uint8_t, 256> MakeLengths() {
  std::array<std::uint8_t, 256> lengths{};
  for (unsigned lead = 0; lead < 256; ++lead) {
    if (lead < 0x80)
      lengths[lead] = 1;
    else if (lead < 0xC2 || lead > 0xF4)
      lengths[lead] = 0;
    else
      lengths[lead] = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  }
  return lengths;
}

/// The length of the sequence by its lead byte; 0 for a byte that leads no well-formed sequence.
inline constexpr std::array<std::uint8_t, 256> kLengths = MakeLengths();

/// For the lead bytes E0 to EF: bit b is set when a second byte with b as its top three bits may follow. E0 takes A0 to
/// BF, since lower ones would be overlong, and ED takes 80 to 9F, since higher ones would be surrogates.
inline constexpr std::array<std::uint8_t, 16> kSecondOfThree = {0x20, 0x30, 0x30, 0x30, 0x30, 0x30, 0x30, 0x30,
                                                                0x30, 0x30, 0x30, 0x30, 0x30, 0x10, 0x30, 0x30};

/// For the lead bytes F0 to F4: bit b is set when a second byte with b as its top four bits may follow. F0 takes 90 to
/// BF, since lower ones would be overlong, and F4 takes 80 to 8F, since U+10FFFF is the last code point.
inline constexpr std::array<std::uint16_t, 5> kSecondOfFour = {0x0E00, 0x0F00, 0x0F00, 0x0F00, 0x0100};

/// True when a well-formed sequence of `length` bytes (2 to 4) may begin with these two.
constexpr bool MayFollow(unsigned lead, unsigned second, std::size_t length) {
  if (length == 3) return ((kSecondOfThree[lead & 0xFU] >> (second >> 5U)) & 1U) != 0;
  if (length == 4) return ((kSecondOfFour[lead & 0x7U] >> (second >> 4U)) & 1U) != 0;
  return IsContinuation(second);
}

/// The length of the well-formed sequence at `s` that fits in `n` bytes (at least 1), or 0. Reads no byte behind the
/// first that does not belong to it.
constexpr std::size_t WellFormedLength(const char* s, std::size_t n) {
  const unsigned lead = ByteAt(s);
  const std::size_t length = kLengths[lead];
  if (length < 2) return length;
  if (length > n || !MayFollow(lead, ByteAt(s + 1), length)) return 0;
  for (std::size_t i = 2; i < length; ++i)
    if (!IsContinuation(ByteAt(s + i))) return 0;
  return length;
}

/// The code point of a sequence of `length` bytes; nothing is validated.
constexpr std::int64_t CodePoint(const char* s, std::size_t length) {
  constexpr std::array<unsigned, 5> kLeadBits = {0, 0xFF, 0x1F, 0x0F, 0x07};
  std::int64_t codePoint = ByteAt(s) & kLeadBits[length];
  for (std::size_t i = 1; i < length; ++i) codePoint = (codePoint << 6) | (ByteAt(s + i) & 0x3FU);
  return codePoint;
}

/// The well-formed character at `s` within `n` bytes (at least 1); a byte that begins none stands alone, as -1.
constexpr Character Decode(const char* s, std::size_t n) {
  const std::size_t length = WellFormedLength(s, n);
  if (length == 0) return {-1, 1};
  return {CodePoint(s, length), length};
}

/// The character at `s`, which is not at the zero byte, by its first byte alone. One that the zero byte cuts is -1 and
/// as long as what is there.
constexpr Character DecodeByLead(const char* s) {
  const unsigned lead = ByteAt(s);
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i)
    if (s[i] == 0) return {-1, i};
  return {CodePoint(s, length), length};
}

/// The character of `s` that ends before byte `end` (at least 1), with ICU's rules for what is malformed.
Character DecodeBackwards(const char* s, std::size_t end);

/// True for a scalar value that is not a noncharacter.
constexpr bool IsAcceptable(std::int64_t codePoint) {
  if (codePoint < 0xD800) return codePoint >= 0;
  if (codePoint < 0xE000 || codePoint > 0x10FFFF) return false;
  return (codePoint < 0xFDD0 || codePoint > 0xFDEF) && (codePoint & 0xFFFE) != 0xFFFE;
}

}  // namespace RQMEM_NAMESPACE::utf8

#endif
