#ifndef TESTS_SUPPORT_REFERENCE_MBSTRING_H
#define TESTS_SUPPORT_REFERENCE_MBSTRING_H

// What the multibyte string functions give, by their rules and without regard to speed. Texts are zero-terminated:
// a std::string here holds no zero byte, and what is given as a length is cut to it.

#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

namespace rqtest::slow {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

inline unsigned Byte(std::string_view s, std::size_t i) { return static_cast<unsigned char>(s[i]); }

// ---- UTF-8 ----

struct Range {
  unsigned first, last;
  constexpr bool Holds(unsigned byte) const { return first <= byte && byte <= last; }
};

struct Row {
  std::size_t length;
  std::array<Range, 4> bytes;
};

constexpr Range kTail = {0x80, 0xBF};

/// The table "Well-Formed UTF-8 Byte Sequences" of the Unicode Standard, row by row.
constexpr std::array<Row, 9> kWellFormed = {{
    {1, {{{0x00, 0x7F}}}},
    {2, {{{0xC2, 0xDF}, kTail}}},
    {3, {{{0xE0, 0xE0}, {0xA0, 0xBF}, kTail}}},
    {3, {{{0xE1, 0xEC}, kTail, kTail}}},
    {3, {{{0xED, 0xED}, {0x80, 0x9F}, kTail}}},
    {3, {{{0xEE, 0xEF}, kTail, kTail}}},
    {4, {{{0xF0, 0xF0}, {0x90, 0xBF}, kTail, kTail}}},
    {4, {{{0xF1, 0xF3}, kTail, kTail, kTail}}},
    {4, {{{0xF4, 0xF4}, {0x80, 0x8F}, kTail, kTail}}},
}};

inline bool Matches(std::string_view s, const Row& row) {
  if (s.size() < row.length) return false;
  for (std::size_t i = 0; i < row.length; ++i)
    if (!row.bytes[i].Holds(static_cast<unsigned char>(s[i]))) return false;
  return true;
}

/// The length of the well-formed sequence at the beginning, 0 when there is none.
inline std::size_t WellFormed(std::string_view s) {
  for (const Row& row : kWellFormed)
    if (Matches(s, row)) return row.length;
  return 0;
}

/// The code point of a sequence, whatever its bytes are: the low bits of the first, six bits of each that follows.
inline std::int64_t CodePoint(std::string_view sequence) {
  const unsigned lead = Byte(sequence, 0);
  std::int64_t value = sequence.size() == 1 ? lead : lead % (1U << (7 - sequence.size()));
  for (std::size_t i = 1; i < sequence.size(); ++i) value = value * 64 + Byte(sequence, i) % 64;
  return value;
}

inline bool IsNoncharacter(std::int64_t c) { return (c >= 0xFDD0 && c <= 0xFDEF) || c % 0x10000 >= 0xFFFE; }

/// The acceptable or any well-formed character that ends before `end`: its length, 0 when there is none.
inline std::size_t EndingCharacter(const std::string& s, std::size_t end, bool acceptable) {
  for (std::size_t length = 1; length <= 4 && length <= end; ++length) {
    const std::string_view tail = std::string_view(s).substr(end - length, length);
    if (WellFormed(tail) == length) return acceptable && IsNoncharacter(CodePoint(tail)) ? 0 : length;
  }
  return 0;
}

/// The lengths of the character at the beginning of a text, which is at its zero byte when it is empty.
inline std::size_t MbcLen8(std::string_view s) {
  std::size_t announced = 1;
  for (const Row& row : kWellFormed)
    if (!s.empty() && row.bytes[0].Holds(Byte(s, 0))) announced = row.length;
  return std::max<std::size_t>(1, std::min(announced, s.size()));
}

inline int MbLen8(std::string_view s, std::size_t n) {
  if (n == 0 || s.empty()) return 0;
  const std::size_t length = WellFormed(s.substr(0, n));
  return length == 0 ? -1 : static_cast<int>(length);
}

struct Piece {
  std::size_t start;
  std::string bytes;
};

/// The text cut into characters by their first bytes alone. One that the end cuts is left out.
inline std::vector<Piece> ByLead8(const std::string& s) {
  std::vector<Piece> pieces;
  for (std::size_t at = 0; at < s.size();) {
    const unsigned lead = Byte(s, at);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (at + length <= s.size()) pieces.push_back({at, s.substr(at, length)});
    at += length;
  }
  return pieces;
}

inline std::size_t StrChr8(const std::string& s, unsigned c) {
  if (c == 0) return s.size();
  if (c < 128) return s.find(static_cast<char>(c));
  for (const Piece& piece : ByLead8(s))
    if (CodePoint(piece.bytes) == c) return piece.start;
  return kNone;
}

inline std::size_t StrRChr8(const std::string& s, unsigned c) {
  if (c == 0) return s.size();
  if (c < 128) return s.rfind(static_cast<char>(c));
  std::size_t last = kNone;
  for (const Piece& piece : ByLead8(s))
    if (CodePoint(piece.bytes) == c) last = piece.start;
  return last;
}

inline std::size_t StrCSpn8(const std::string& s, const std::string& reject) {
  for (const Piece& piece : ByLead8(s))
    for (const Piece& rejected : ByLead8(reject))
      if (CodePoint(piece.bytes) == CodePoint(rejected.bytes)) return piece.start;
  return s.size();
}

/// What the `n` bytes of the destination hold.
inline std::string StrNCpy8(const std::string& s, std::size_t n) {
  std::size_t length = std::min(s.size(), n);
  while (length > 0 && EndingCharacter(s, length, true) == 0) --length;
  return s.substr(0, length) + std::string(n - length, '\0');
}

inline std::size_t PreviousIndex8(const std::string& s, std::size_t i) {
  if (i == 0) return 0;
  return i - std::max<std::size_t>(1, EndingCharacter(s, i, true));
}

/// A lower-cased character, or a byte of none.
struct Folded {
  bool malformed;
  std::int64_t value;
  bool operator==(const Folded&) const = default;
};

inline std::int64_t Lower(std::int64_t c) { return u_tolower(static_cast<UChar32>(c)); }

inline std::vector<Folded> Fold8(const std::string& s) {
  std::vector<Folded> folded;
  for (std::size_t at = 0; at < s.size();) {
    const std::size_t length = WellFormed(std::string_view(s).substr(at));
    if (length == 0)
      folded.push_back({true, Byte(s, at)});
    else
      folded.push_back({false, Lower(CodePoint(s.substr(at, length)))});
    at += std::max<std::size_t>(1, length);
  }
  return folded;
}

struct Comparison {
  int equal;
  int status;
  bool operator==(const Comparison&) const = default;
};

/// Whether both hold the same, and 3 when a malformed byte stands up to the first difference.
inline Comparison Compare(const std::vector<Folded>& a, const std::vector<Folded>& b) {
  Comparison result = {a == b ? 1 : 0, 0};
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    for (const auto* side : {&a, &b})
      if (i < side->size() && (*side)[i].malformed) result.status = 3;
    if (i >= a.size() || i >= b.size() || !(a[i] == b[i])) break;
  }
  return result;
}

// ---- the runtime's locale ----

inline bool IsLead(const std::string& s, std::size_t i) {
  std::mbstate_t state{};
  return MB_CUR_MAX == 2 && std::mbrlen(&s[i], 1, &state) == static_cast<std::size_t>(-2);
}

/// The runtime's step, or 1; the zero byte and what stands behind it are there to be looked at.
inline std::size_t Step(const std::string& s, std::size_t at) {
  const std::string rest = s.substr(at) + std::string(5, '\0');
  return static_cast<std::size_t>(std::max(1, std::mblen(rest.c_str(), 5)));
}

inline std::size_t StrChrC(const std::string& s, unsigned c) {
  for (std::size_t at = 0; at < s.size(); at += Step(s, at))
    if (Byte(s, at) == c % 256) return at;
  return c == 0 ? s.size() : kNone;
}

inline std::size_t StrRChrC(const std::string& s, unsigned c) {
  std::size_t last = c == 0 ? s.size() : kNone;
  for (std::size_t at = 0; at < s.size();) {
    const bool matches = Byte(s, at) == c % 256;
    if (matches) last = at;
    at += matches ? 1 : Step(s, at);
  }
  return last;
}

inline std::vector<Piece> PiecesC(const std::string& s) {
  std::vector<Piece> pieces;
  for (std::size_t at = 0; at < s.size(); at += Step(s, at)) pieces.push_back({at, s.substr(at, Step(s, at))});
  return pieces;
}

inline std::size_t StrCSpnC(const std::string& s, const std::string& reject) {
  for (const Piece& piece : PiecesC(s))
    for (const Piece& rejected : PiecesC(reject))
      if (piece.bytes == rejected.bytes) return piece.start;
  return s.size();
}

/// What the `n` bytes of the destination hold: characters are added while they fit and are whole.
inline std::string StrNCpyC(const std::string& s, std::size_t n) {
  const std::string within = s.substr(0, n);
  std::size_t length = 0;
  while (length < within.size()) {
    std::mbstate_t state{};
    const std::size_t step = std::mbrlen(&within[length], within.size() - length, &state);
    if (step == static_cast<std::size_t>(-2)) break;
    length += step == static_cast<std::size_t>(-1) ? 1 : step;
  }
  return within.substr(0, length) + std::string(n - length, '\0');
}

inline std::size_t FindStartC(const std::string& s, std::size_t i) {
  if (i >= s.size()) return s.size();
  std::size_t start = 0;
  while (true) {
    const std::size_t length = IsLead(s, start) ? 2 : 1;
    if (start + length > i) return start;
    start += length;
  }
}

// ---- the default converter ----

/// Whether what stands behind the last character of a text, and ICU drops in silence, begins one: in HZ anything but
/// whole shifts, in UTF-7 anything that is not closed.
inline bool BeginsCharacter(UConverterType type, std::string rest) {
  if (type == UCNV_UTF7) return !rest.empty() && rest.back() != '-';
  if (type != UCNV_HZ) return false;
  while (rest.size() >= 2 && rest[0] == '~' && (rest[1] == '{' || rest[1] == '}' || rest[1] == '\n')) rest.erase(0, 2);
  return !rest.empty();
}

/// The text through a converter of ICU, one character after the other.
inline std::vector<Folded> FoldConverted(UConverter* converter, const std::string& s) {
  std::vector<Folded> folded;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_resetToUnicode(converter);
  const char* at = s.data();
  while (true) {
    error = U_ZERO_ERROR;
    const std::string rest(at, s.data() + s.size());
    const UChar32 c = ucnv_getNextUChar(converter, &at, s.data() + s.size(), &error);
    if (error == U_INDEX_OUTOFBOUNDS_ERROR) {
      if (BeginsCharacter(ucnv_getType(converter), rest))
        for (const char byte : rest) folded.push_back({true, static_cast<unsigned char>(byte)});
      return folded;
    }
    if (U_SUCCESS(error)) {
      folded.push_back({false, Lower(c)});
      continue;
    }
    char invalid[32];
    std::int8_t length = sizeof invalid;
    error = U_ZERO_ERROR;
    ucnv_getInvalidChars(converter, invalid, &length, &error);
    for (const char byte : std::string(invalid, static_cast<std::size_t>(length)))
      folded.push_back({true, static_cast<unsigned char>(byte)});
  }
}

}  // namespace rqtest::slow

#endif
