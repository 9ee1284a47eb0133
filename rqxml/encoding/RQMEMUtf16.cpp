#include "rqxml/encoding/RQMEMUtf16.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <type_traits>

namespace RQMEM_NAMESPACE {

namespace {

constexpr std::size_t kBlock = 16;
/// What the two halves of a surrogate pair add up to above their code point.
constexpr std::uint32_t kPairOffset = (0xD800U << 10) + 0xDC00U - 0x10000U;
constexpr std::uint64_t kHighBits = 0x8080808080808080U;

unsigned Byte(char c) { return static_cast<unsigned char>(c); }

bool IsTrail(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

/// An element as a number; wchar_t may be signed.
template <class Unit>
std::uint32_t Value(Unit unit) {
  return static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
}

bool IsLead(std::uint32_t value) { return (value & 0xFFFFFC00U) == 0xD800U; }
bool IsTrailSurrogate(std::uint32_t value) { return (value & 0xFFFFFC00U) == 0xDC00U; }
bool IsSurrogate(std::uint32_t value) { return (value & 0xFFFFF800U) == 0xD800U; }

std::uint64_t LoadWord(const char* source) {
  std::uint64_t word;
  std::memcpy(&word, source, sizeof word);
  return word;
}

/// Where the first byte with its high bit set stands; there is one.
std::size_t FirstHighByte(std::uint64_t high) {
  const int zeros = std::endian::native == std::endian::little ? std::countr_zero(high) : std::countl_zero(high);
  return static_cast<std::size_t>(zeros) / 8;
}

template <class Unit>
void PutPair(std::uint32_t codePoint, Unit*& target) {
  *target++ = static_cast<Unit>(0xD7C0U + (codePoint >> 10));
  *target++ = static_cast<Unit>(0xDC00U + (codePoint & 0x3FFU));
}

/// One character of several bytes; nothing is moved unless it is whole and fits.
template <class Unit>
Stop DecodeTwo(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  if (end - source < 2 || !IsTrail(Byte(source[1]))) return Stop::Malformed;
  if (target == limit) return Stop::Full;
  *target++ = static_cast<Unit>((Byte(source[0]) & 0x1FU) << 6 | (Byte(source[1]) & 0x3FU));
  source += 2;
  return Stop::AtEnd;
}

template <class Unit>
Stop DecodeThree(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  if (end - source < 3) return Stop::Malformed;
  const std::uint32_t second = Byte(source[1]) ^ 0x80U;  // below 0x40 where it continues a character
  const std::uint32_t third = Byte(source[2]) ^ 0x80U;
  const std::uint32_t value = (Byte(source[0]) & 0xFU) << 12 | second << 6 | third;
  if ((second | third) >= 0x40U || value < 0x800U || IsSurrogate(value)) return Stop::Malformed;
  if (target == limit) return Stop::Full;
  *target++ = static_cast<Unit>(value);
  source += 3;
  return Stop::AtEnd;
}

template <class Unit>
Stop DecodeFour(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  if (end - source < 4 || !IsTrail(Byte(source[1])) || !IsTrail(Byte(source[2])) || !IsTrail(Byte(source[3])))
    return Stop::Malformed;
  const std::uint32_t value = (Byte(source[0]) & 7U) << 18 | (Byte(source[1]) & 0x3FU) << 12 |
                              (Byte(source[2]) & 0x3FU) << 6 | (Byte(source[3]) & 0x3FU);
  if (value < 0x10000U || value > 0x10FFFFU) return Stop::Malformed;
  if (limit - target < 2) return Stop::Full;
  PutPair(value, target);
  source += 4;
  return Stop::AtEnd;
}

/// One character of several bytes; four bytes can be read and two units written. False, and nothing moved, where it is
/// malformed.
template <class Unit>
bool DecodeSeveral(const char*& source, Unit*& target) {
  const unsigned lead = Byte(*source);
  const char* const end = source + 4;
  const Unit* const limit = target + 2;
  if ((lead & 0xF0U) == 0xE0U) return DecodeThree(source, end, target, limit) == Stop::AtEnd;
  if (lead < 0xC2U || lead > 0xF4U) return false;
  if (lead < 0xE0U) return DecodeTwo(source, end, target, limit) == Stop::AtEnd;
  return DecodeFour(source, end, target, limit) == Stop::AtEnd;
}

constexpr std::size_t kWord = sizeof(std::uint64_t);

/// Widens the ASCII at the beginning of a word; the rest of a word behind the target is overwritten.
/// @return true when the whole word is ASCII
template <class Unit>
bool DecodeWord(const char*& source, Unit*& target) {
  const std::uint64_t high = LoadWord(source) & kHighBits;
  for (std::size_t i = 0; i < kWord; ++i) target[i] = static_cast<Unit>(Byte(source[i]));
  const std::size_t count = high == 0 ? kWord : FirstHighByte(high);
  source += count;
  target += count;
  return high == 0;
}

/// Everything up to what is malformed, near the end or near the limit. No character takes more units than bytes, so
/// that one margin serves both sides.
template <class Unit>
void DecodeBulk(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  constexpr std::ptrdiff_t kLongest = 4;
  constexpr std::ptrdiff_t kMargin = kWord + kLongest;  // a character may follow part of a word
  for (;;) {
    const std::ptrdiff_t room = std::min<std::ptrdiff_t>(end - source, limit - target);
    if (room < kMargin) return;
    const char* const last = source + (room - kMargin);
    while (source <= last) {
      if (Byte(*source) < 0x80U && DecodeWord(source, target)) continue;
      while (Byte(*source) >= 0x80U) {
        if (!DecodeSeveral(source, target)) return;
        if (source > last) break;
      }
    }
  }
}

template <class Unit>
Stop DecodeOne(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  const unsigned lead = Byte(*source);
  if (lead < 0x80U) {
    if (target == limit) return Stop::Full;
    *target++ = static_cast<Unit>(lead);
    ++source;
    return Stop::AtEnd;
  }
  if (lead < 0xC2U || lead > 0xF4U) return Stop::Malformed;
  if (lead < 0xE0U) return DecodeTwo(source, end, target, limit);
  if (lead < 0xF0U) return DecodeThree(source, end, target, limit);
  return DecodeFour(source, end, target, limit);
}

template <std::size_t Count = kBlock, class Unit>
bool IsAsciiBlock(const Unit* source) {
  using Bits = std::make_unsigned_t<Unit>;
  Bits all = 0;
  for (std::size_t i = 0; i < Count; ++i) all = static_cast<Bits>(all | static_cast<Bits>(source[i]));
  return all < 0x80U;
}

char Tail(std::uint32_t codePoint, unsigned shift) { return static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU)); }

Stop PutTwo(std::uint32_t codePoint, char*& target, const char* limit) {
  if (limit - target < 2) return Stop::Full;
  target[0] = static_cast<char>(0xC0U | codePoint >> 6);
  target[1] = Tail(codePoint, 0);
  target += 2;
  return Stop::AtEnd;
}

Stop PutThree(std::uint32_t codePoint, char*& target, const char* limit) {
  if (limit - target < 3) return Stop::Full;
  target[0] = static_cast<char>(0xE0U | codePoint >> 12);
  target[1] = Tail(codePoint, 6);
  target[2] = Tail(codePoint, 0);
  target += 3;
  return Stop::AtEnd;
}

Stop PutFour(std::uint32_t codePoint, char*& target, const char* limit) {
  if (limit - target < 4) return Stop::Full;
  target[0] = static_cast<char>(0xF0U | codePoint >> 18);
  target[1] = Tail(codePoint, 12);
  target[2] = Tail(codePoint, 6);
  target[3] = Tail(codePoint, 0);
  target += 4;
  return Stop::AtEnd;
}

/// A character that takes one element above 0xFFFF or two surrogates.
template <class Unit>
Stop EncodeSupplementary(const Unit*& source, const Unit* end, char*& target, const char* limit) {
  std::uint32_t codePoint = Value(*source);
  std::ptrdiff_t count = 1;
  if (codePoint <= 0xFFFFU) {
    if (!IsLead(codePoint) || end - source < 2 || !IsTrailSurrogate(Value(source[1]))) return Stop::Malformed;
    codePoint = (codePoint << 10) + Value(source[1]) - kPairOffset;
    count = 2;
  }
  if (codePoint > 0x10FFFFU) return Stop::Malformed;
  const Stop stop = PutFour(codePoint, target, limit);
  if (stop == Stop::AtEnd) source += count;
  return stop;
}

template <class Unit>
Stop EncodeOne(const Unit*& source, const Unit* end, char*& target, const char* limit) {
  const std::uint32_t value = Value(*source);
  if (value < 0x80U) {
    if (target == limit) return Stop::Full;
    *target++ = static_cast<char>(value);
  } else if (value < 0x800U) {
    if (PutTwo(value, target, limit) != Stop::AtEnd) return Stop::Full;
  } else if (value < 0xD800U || (value >= 0xE000U && value <= 0xFFFFU)) {
    if (PutThree(value, target, limit) != Stop::AtEnd) return Stop::Full;
  } else {
    return EncodeSupplementary(source, end, target, limit);
  }
  ++source;
  return Stop::AtEnd;
}

/// One character in 16-bit units; there is room, and two units can be read. False, and nothing moved, for any other.
template <class Unit>
bool EncodeWithRoom(const Unit*& source, char*& target) {
  const std::uint32_t value = Value(*source);
  const char* const limit = target + 4;
  if (value < 0x80U) {
    *target++ = static_cast<char>(value);
  } else if (value < 0x800U) {
    PutTwo(value, target, limit);
  } else if (value < 0xD800U || (value >= 0xE000U && value <= 0xFFFFU)) {
    PutThree(value, target, limit);
  } else {
    const std::uint32_t second = Value(source[1]);
    if (!IsLead(value) || !IsTrailSurrogate(second)) return false;
    PutFour((value << 10) + second - kPairOffset, target, limit);
    ++source;
  }
  ++source;
  return true;
}

/// True when each element takes three bytes.
template <class Unit>
bool IsThreeByteBlock(const Unit* source) {
  std::uint32_t others = 0;
  for (std::size_t i = 0; i < kBlock; ++i) others |= static_cast<std::uint32_t>(Value(source[i]) - 0x800U >= 0xD000U);
  return others == 0;
}

/// A block of elements that all take one byte, or all three. False, and nothing moved, for any other.
template <class Unit>
bool EncodeBlock(const Unit*& source, char*& target) {
  const std::uint32_t first = Value(*source);
  if (first < 0x80U && IsAsciiBlock(source)) {
    for (std::size_t i = 0; i < kBlock; ++i) target[i] = static_cast<char>(source[i]);
    target += kBlock;
  } else if (first >= 0x800U && first < 0xD800U && IsThreeByteBlock(source)) {
    for (std::size_t i = 0; i < kBlock; ++i) PutThree(Value(source[i]), target, target + 3);
  } else {
    return false;
  }
  source += kBlock;
  return true;
}

/// Everything up to what is malformed, near the end or near the limit.
template <class Unit>
void EncodeBulk(const Unit*& source, const Unit* end, char*& target, const char* limit) {
  constexpr std::ptrdiff_t kSourceMargin = kBlock + 1;
  constexpr std::ptrdiff_t kTargetMargin = 4 * (kBlock + 1);
  while (end - source >= kSourceMargin && limit - target >= kTargetMargin) {
    if (EncodeBlock(source, target)) continue;
    const Unit* const blockEnd = source + kBlock;
    while (source < blockEnd)
      if (!EncodeWithRoom(source, target) &&
          EncodeSupplementary(source, blockEnd + 1, target, target + 4) != Stop::AtEnd)
        return;
  }
}

template <class Unit>
bool IsPrintable(Unit unit) {
  return Value(unit) - 0x20U <= 0x5EU;
}

template <class Unit>
bool IsPrintableBlock(const Unit* source) {
  std::uint32_t others = 0;
  for (std::size_t i = 0; i < kBlock; ++i) others |= static_cast<std::uint32_t>(!IsPrintable(source[i]));
  return others == 0;
}

/// True when the two bytes can begin a character of three or four bytes.
bool IsBeginning(unsigned lead, unsigned second) {
  if (!IsTrail(second)) return false;
  if (lead == 0xE0U) return second >= 0xA0U;
  if (lead == 0xEDU) return second < 0xA0U;
  if (lead == 0xF0U) return second >= 0x90U;
  if (lead == 0xF4U) return second < 0x90U;
  return true;
}

/// One character or half of one; there is room for two units.
void NarrowOne(const wchar_t*& source, const wchar_t* end, char16_t*& target, char16_t previous) {
  const std::uint32_t value = Value(*source++);
  if (value <= 0xFFFFU && !IsSurrogate(value)) {
    *target++ = static_cast<char16_t>(value);
  } else if (value > 0xFFFFU && value <= 0x10FFFFU) {
    PutPair(value, target);
  } else if (IsLead(value) && source != end && IsTrailSurrogate(Value(*source))) {
    *target++ = static_cast<char16_t>(value);
    *target++ = static_cast<char16_t>(*source++);
  } else {
    *target++ = IsLead(previous) ? u'\xD800' : u'\xDFFF';
  }
}

/// Narrows by sixteen elements, and collects the bits of all. Compilers make code of the plain loop that takes twice as
/// long, which is felt beside what converters cost.
/// @return how many elements are done; the rest is left
std::size_t NarrowBlocks([[maybe_unused]] const wchar_t* source, [[maybe_unused]] std::size_t length,
                         [[maybe_unused]] char16_t* target, [[maybe_unused]] std::uint32_t& all) {
  std::size_t done = 0;
#if defined(__SSE2__) && WCHAR_MAX > 0xFFFF
  const __m128i half = _mm_set1_epi32(0x8000);
  const __m128i highBit = _mm_set1_epi16(static_cast<short>(0x8000));
  const auto load = [source](std::size_t i) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i)); };
  const auto store = [&](std::size_t i, __m128i first, __m128i second) {  // the packing takes signed numbers
    const __m128i packed = _mm_packs_epi32(_mm_sub_epi32(first, half), _mm_sub_epi32(second, half));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + i), _mm_xor_si128(packed, highBit));
  };
  __m128i bits = _mm_setzero_si128();
  __m128i moreBits = bits;
  for (; done + kBlock <= length; done += kBlock) {
    const __m128i four[] = {load(done), load(done + 4), load(done + 8), load(done + 12)};
    bits = _mm_or_si128(bits, _mm_or_si128(four[0], four[1]));
    moreBits = _mm_or_si128(moreBits, _mm_or_si128(four[2], four[3]));
    store(done, four[0], four[1]);
    store(done + 8, four[2], four[3]);
  }
  bits = _mm_or_si128(bits, moreBits);
  std::array<std::uint32_t, 4> parts;
  std::memcpy(parts.data(), &bits, sizeof bits);
  for (const std::uint32_t part : parts) all |= part;
#endif
  return done;
}

}  // namespace

// The cursors are kept in local variables while text is written: it could otherwise change them.

template <class Unit>
Stop DecodeUtf8(const char*& source, const char* end, Unit*& target, Unit* limit) {
  const char* from = source;
  Unit* to = target;
  Stop stop = Stop::AtEnd;
  DecodeBulk(from, end, to, limit);
  while (from != end && stop == Stop::AtEnd) stop = DecodeOne(from, end, to, limit);
  source = from;
  target = to;
  return stop;
}

template <class Unit>
Stop EncodeUtf8(const Unit*& source, const Unit* end, char*& target, char* limit) {
  const Unit* from = source;
  char* to = target;
  Stop stop = Stop::AtEnd;
  EncodeBulk(from, end, to, limit);
  while (from != end && stop == Stop::AtEnd) stop = EncodeOne(from, end, to, limit);
  source = from;
  target = to;
  return stop;
}

std::size_t MalformedLength(const char* source, const char* end) {
  const unsigned lead = Byte(*source);
  if (lead < 0xE0U || lead > 0xF4U) return 1;
  if (end - source < 2 || !IsBeginning(lead, Byte(source[1]))) return 1;
  if (lead < 0xF0U || end - source < 3 || !IsTrail(Byte(source[2]))) return 2;
  return 3;
}

std::size_t Utf8StepLength(const char* source, const char* end) {
  const char* next = source;
  char16_t units[2];
  char16_t* target = units;
  const unsigned lead = Byte(*source);
  const std::ptrdiff_t longest = lead < 0x80U ? 1 : lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
  const char* const stop = end - source < longest ? end : source + longest;
  if (DecodeUtf8(next, stop, target, units + 2) == Stop::Malformed && next == source)
    return MalformedLength(source, end);
  return static_cast<std::size_t>(next - source);
}

bool NarrowPlain(const wchar_t* source, std::size_t length, char16_t* target) {
  std::uint32_t all = 0;
  for (std::size_t i = NarrowBlocks(source, length, target, all); i < length; ++i) {
    all |= Value(source[i]);
    target[i] = static_cast<char16_t>(source[i]);
  }
  return all <= 0xFFFFU;
}

void Narrow(const wchar_t*& source, const wchar_t* end, char16_t*& target, char16_t* limit, char16_t previous) {
  while (source != end && limit - target >= 2) {
    NarrowOne(source, end, target, previous);
    previous = target[-1];
  }
}

template <class Unit>
std::size_t AsciiLength(const Unit* source, std::size_t length) {
  std::size_t count = 0;
  const bool isLong = length >= kBlock && IsAsciiBlock<kBlock>(source);  // where not, large blocks are read in vain
  while (isLong && length - count >= 8 * kBlock && IsAsciiBlock<8 * kBlock>(source + count)) count += 8 * kBlock;
  while (length - count >= kBlock && IsAsciiBlock<kBlock>(source + count)) count += kBlock;
  while (count < length && Value(source[count]) < 0x80U) ++count;
  return count;
}

template <class Unit>
std::size_t PrintableLength(const Unit* source, std::size_t length) {
  std::size_t count = 0;
  while (length - count >= kBlock && IsPrintableBlock(source + count)) count += kBlock;
  while (count < length && IsPrintable(source[count])) ++count;
  return count;
}

template Stop DecodeUtf8(const char*&, const char*, char16_t*&, char16_t*);
template Stop DecodeUtf8(const char*&, const char*, wchar_t*&, wchar_t*);
template Stop EncodeUtf8(const char16_t*&, const char16_t*, char*&, char*);
template Stop EncodeUtf8(const wchar_t*&, const wchar_t*, char*&, char*);
template std::size_t AsciiLength(const char*, std::size_t);
template std::size_t AsciiLength(const char16_t*, std::size_t);
template std::size_t AsciiLength(const wchar_t*, std::size_t);
template std::size_t PrintableLength(const char*, std::size_t);
template std::size_t PrintableLength(const char16_t*, std::size_t);
template std::size_t PrintableLength(const wchar_t*, std::size_t);

}  // namespace RQMEM_NAMESPACE
