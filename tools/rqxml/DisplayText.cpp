#include "DisplayText.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>
#include <cstdint>
#include <cstdio>

namespace rqtool {

namespace {

constexpr std::string_view kEllipsis = "\u2026";
constexpr std::size_t kEllipsisWidth = 1;

// Takes the first character off `text`, which is not empty; negative for a byte that begins none.
UChar32 NextCharacter(std::string_view& text) {
  const char* const bytes = text.data();
  const std::size_t length = text.size() < U8_MAX_LENGTH ? text.size() : U8_MAX_LENGTH;
  std::size_t taken = 0;
  UChar32 character = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside the macro
  U8_NEXT(bytes, taken, length, character);
#pragma GCC diagnostic pop
  text.remove_prefix(character < 0 ? 1 : taken);
  return character;
}

bool ChangesDirection(UChar32 character) {
  return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

// Not the joiners U+200C and U+200D: some scripts cannot be written without them.
bool IsInvisible(UChar32 character) {
  switch (character) {
    case 0x061C:  // marks of direction
    case 0x200E:
    case 0x200F:
    case 0x200B:  // of no width
    case 0x2060:
    case 0xFEFF:
      return true;
    default:
      return character >= 0xE0000 && character <= 0xE007F;  // tags
  }
}

bool IsPlainAscii(UChar32 character) { return character >= 0x20 && character < 0x7F; }

bool NeedsEscape(UChar32 character) {
  if (IsPlainAscii(character)) return false;
  switch (u_charType(character)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
    case U_SURROGATE:
      return true;
    default:
      return ChangesDirection(character) || IsInvisible(character);
  }
}

std::string Hexadecimal(const char* format, unsigned value) {
  std::array<char, 16> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), format, value);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

std::string EscapeByte(char byte) { return Hexadecimal("\\x%02x", static_cast<std::uint8_t>(byte)); }

std::string EscapeCharacter(UChar32 character) {
  switch (character) {
    case '\t':
      return "\\t";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    default:
      return Hexadecimal(character < 0x80 ? "\\x%02x" : "\\u{%x}", static_cast<unsigned>(character));
  }
}

std::string EscapeForJson(UChar32 character) {
  const auto unit = [](UChar32 value) { return Hexadecimal("\\u%04x", static_cast<unsigned>(value)); };
  if (character <= 0xFFFF) return unit(character);
  return unit(U16_LEAD(character)) + unit(U16_TRAIL(character));
}

// `text` with what `replace` makes of each character that `mustGo` names, and of the byte where it begins.
template <class MustGo, class Replace>
std::string ReplaceCharacters(std::string_view text, MustGo mustGo, Replace replace) {
  std::string replaced;
  replaced.reserve(text.size());
  std::string_view kept = text;  // begins with what is not yet copied
  while (!text.empty()) {
    const std::string_view before = text;
    const UChar32 character = NextCharacter(text);
    if (!mustGo(character)) continue;
    replaced += kept.substr(0, kept.size() - before.size());
    replaced += replace(character, before.front());
    kept = text;
  }
  return replaced.append(kept);
}

bool IsHangulVowelOrFinal(UChar32 character) {
  return (character >= 0x1160 && character <= 0x11FF) || (character >= 0xD7B0 && character <= 0xD7FF);
}

std::size_t CharacterWidth(UChar32 character) {
  constexpr UChar32 kSoftHyphen = 0xAD;
  if (character < 0 || IsPlainAscii(character) || character == kSoftHyphen) return 1;
  switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
      return 0;
    default:
      break;
  }
  // They complete the syllable that the wide consonant before them began.
  if (IsHangulVowelOrFinal(character)) return 0;
  const int eastAsian = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

std::string Printable(std::string_view text) {
  return ReplaceCharacters(
      text, [](UChar32 character) { return character < 0 || NeedsEscape(character); },
      [](UChar32 character, char byte) { return character < 0 ? EscapeByte(byte) : EscapeCharacter(character); });
}

std::string PrintableJson(std::string_view json) {
  return ReplaceCharacters(
      json, [](UChar32 character) { return character != '\n' && character >= 0 && NeedsEscape(character); },
      [](UChar32 character, char) { return EscapeForJson(character); });
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (NextCharacter(text) < 0) return false;
  }
  return true;
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) width += CharacterWidth(NextCharacter(text));
  return width;
}

std::string CutToWidth(std::string_view text, std::size_t width) {
  if (width == 0) return {};
  std::size_t used = 0;
  std::size_t fitting = 0;  // bytes that leave room for the ellipsis
  std::string_view rest = text;
  while (!rest.empty()) {
    used += CharacterWidth(NextCharacter(rest));
    if (used > width) return std::string(text.substr(0, fitting)).append(kEllipsis);
    if (used + kEllipsisWidth <= width) fitting = text.size() - rest.size();
  }
  return std::string(text);
}

}  // namespace rqtool
