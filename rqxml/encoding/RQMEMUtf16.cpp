#include "rqxml/encoding/RQMEMUtf16.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace RQMEM_NAMESPACE {

namespace {

constexpr std::size_t kBlock = 16;
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

std::uint64_t LoadEight(const char* source) {
  std::uint64_t word;
  std::memcpy(&word, source, sizeof word);
  return word;
}

template <class Unit, std::size_t Count>
void Widen(const char* source, Unit* target) {
  for (std::size_t i = 0; i < Count; ++i) target[i] = static_cast<Unit>(static_cast<unsigned char>(source[i]));
}

/// Copies the ASCII bytes at the source.
/// @return false when one of them does not fit
template <class Unit>
bool DecodeAscii(const char*& source, const char* end, Unit*& target, const Unit* limit) {
  const char* from = source;
  Unit* to = target;
  const auto fits = [&](std::ptrdiff_t count) { return end - from >= count && limit - to >= count; };
  for (; fits(16) && ((LoadEight(from) | LoadEight(from + 8)) & kHighBits) == 0; from += 16, to += 16)
    Widen<Unit, 16>(from, to);
  for (; fits(8) && (LoadEight(from) & kHighBits) == 0; from += 8, to += 8) Widen<Unit, 8>(from, to);
  while (from != end && to != limit && Byte(*from) < 0x80U) *to++ = static_cast<Unit>(*from++);
  source = from;
  target = to;
  return from == end || Byte(*from) >= 0x80U;
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
  if (end - source < 3 || !IsTrail(Byte(source[1])) || !IsTrail(Byte(source[2]))) return Stop::Malformed;
  const std::uint32_t value =
      (Byte(source[0]) & 0xFU) << 12 | (Byte(source[1]) & 0x3FU) << 6 | (Byte(source[2]) & 0x3FU);
  if (value < 0x800U || IsSurrogate(value)) return Stop::Malformed;
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

/// Characters of the same number of bytes mostly stand together: each loop runs as long as they do.
template <class Unit>
Stop DecodeRun(const char*& source, const char* end, Unit*& target, Unit* limit) {
  Stop stop = Stop::AtEnd;
  const unsigned lead = Byte(*source);
  if (lead < 0xC2U || lead > 0xF4U) return Stop::Malformed;
  if (lead < 0xE0U) {
    while (stop == Stop::AtEnd && source != end && Byte(*source) >= 0xC2U && Byte(*source) < 0xE0U)
      stop = DecodeTwo(source, end, target, limit);
  } else if (lead < 0xF0U) {
    while (stop == Stop::AtEnd && source != end && (Byte(*source) & 0xF0U) == 0xE0U)
      stop = DecodeThree(source, end, target, limit);
  } else {
    while (stop == Stop::AtEnd && source != end && Byte(*source) >= 0xF0U && Byte(*source) <= 0xF4U)
      stop = DecodeFour(source, end, target, limit);
  }
  return stop;
}

/// Elements or-ed: below 0x80 when all are ASCII.
template <class Unit>
std::uint32_t OrBlock(const Unit* source) {
  std::uint32_t all = 0;
  for (std::size_t i = 0; i < kBlock; ++i) all |= Value(source[i]);
  return all;
}

/// Copies the ASCII elements at the source.
/// @return false when one of them does not fit
template <class Unit>
bool EncodeAscii(const Unit*& source, const Unit* end, char*& target, const char* limit) {
  constexpr auto kCount = static_cast<std::ptrdiff_t>(kBlock);
  const Unit* from = source;
  char* to = target;
  for (; end - from >= kCount && limit - to >= kCount && OrBlock(from) < 0x80U; from += kBlock, to += kBlock)
    for (std::size_t i = 0; i < kBlock; ++i) to[i] = static_cast<char>(from[i]);
  while (from != end && to != limit && Value(*from) < 0x80U) *to++ = static_cast<char>(*from++);
  source = from;
  target = to;
  return from == end || Value(*from) >= 0x80U;
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
    codePoint = 0x10000U + ((codePoint & 0x3FFU) << 10) + (Value(source[1]) & 0x3FFU);
    count = 2;
  }
  if (codePoint > 0x10FFFFU) return Stop::Malformed;
  const Stop stop = PutFour(codePoint, target, limit);
  if (stop == Stop::AtEnd) source += count;
  return stop;
}

/// One character that is not ASCII.
template <class Unit>
Stop EncodeOne(const Unit*& source, const Unit* end, char*& target, const char* limit) {
  const std::uint32_t value = Value(*source);
  if (value < 0x800U) {
    if (PutTwo(value, target, limit) != Stop::AtEnd) return Stop::Full;
  } else if (value <= 0xFFFFU && !IsSurrogate(value)) {
    if (PutThree(value, target, limit) != Stop::AtEnd) return Stop::Full;
  } else {
    return EncodeSupplementary(source, end, target, limit);
  }
  ++source;
  return Stop::AtEnd;
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

/// True when each element is a character of its own in one 16-bit unit.
bool IsPlainBlock(const wchar_t* source) {
  std::uint32_t others = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const std::uint32_t value = Value(source[i]);
    others |= static_cast<std::uint32_t>(IsSurrogate(value)) | (value >> 16);
  }
  return others == 0;
}

/// One character or half of one; there is room for two units.
void NarrowOne(const wchar_t*& source, const wchar_t* end, char16_t*& target) {
  constexpr char16_t kNoCharacter = 0xDFFF;
  const std::uint32_t value = Value(*source++);
  if (value <= 0xFFFFU && !IsSurrogate(value)) {
    *target++ = static_cast<char16_t>(value);
  } else if (value > 0xFFFFU && value <= 0x10FFFFU) {
    PutPair(value, target);
  } else if (IsLead(value) && source != end && IsTrailSurrogate(Value(*source))) {
    *target++ = static_cast<char16_t>(value);
    *target++ = static_cast<char16_t>(*source++);
  } else {
    *target++ = kNoCharacter;
  }
}

}  // namespace

template <class Unit>
Stop DecodeUtf8(const char*& source, const char* end, Unit*& target, Unit* limit) {
  while (source != end) {
    if (Byte(*source) < 0x80U) {
      if (!DecodeAscii(source, end, target, limit)) return Stop::Full;
      continue;
    }
    const Stop stop = DecodeRun(source, end, target, limit);
    if (stop != Stop::AtEnd) return stop;
  }
  return Stop::AtEnd;
}

template <class Unit>
Stop EncodeUtf8(const Unit*& source, const Unit* end, char*& target, char* limit) {
  while (source != end) {
    if (Value(*source) < 0x80U) {
      if (!EncodeAscii(source, end, target, limit)) return Stop::Full;
      continue;
    }
    const Stop stop = EncodeOne(source, end, target, limit);
    if (stop != Stop::AtEnd) return stop;
  }
  return Stop::AtEnd;
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

void Narrow(const wchar_t*& source, const wchar_t* end, char16_t*& target, char16_t* limit) {
  constexpr auto kCount = static_cast<std::ptrdiff_t>(kBlock);
  while (source != end) {
    if (end - source >= kCount && limit - target >= kCount && IsPlainBlock(source)) {
      for (std::size_t i = 0; i < kBlock; ++i) target[i] = static_cast<char16_t>(source[i]);
      source += kBlock;
      target += kBlock;
      continue;
    }
    const wchar_t* const blockEnd = end - source > kCount ? source + kCount : end;
    while (source < blockEnd) {
      if (limit - target < 2) return;
      NarrowOne(source, end, target);
    }
  }
}

template <class Unit>
std::size_t AsciiLength(const Unit* source, std::size_t length) {
  std::size_t count = 0;
  while (length - count >= kBlock && OrBlock(source + count) < 0x80U) count += kBlock;
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
