#include "rqxml/xml/RQXMarkupText.h"

#include <utility>

namespace RQXPrsUtil {

namespace {

constexpr char kOther = '\x80';

/// The characters of markup stand in one place in all EBCDIC code pages that XML knows.
char FromEbcdic(unsigned int byte) {
  switch (byte) {
    case 0x00:
      return '\0';
    case 0x4C:
      return '<';
    case 0x6E:
      return '>';
    case 0x7E:
      return '=';
    case 0x7F:
      return '"';
    case 0x7D:
      return '\'';
    case 0x5A:
      return '!';
    case 0x6F:
      return '?';
    case 0x61:
      return '/';
    case 0x05:
    case 0x0D:
    case 0x15:
    case 0x25:
    case 0x40:
      return ' ';
    default:
      return kOther;
  }
}

}  // namespace

std::string_view RQXMarkupText::Add(std::string_view bytes) {
  if (fHeadLength == fHead.size()) return Convert(bytes);
  const std::size_t before = fHeadLength;
  for (std::size_t i = 0; i < bytes.size() && fHeadLength < fHead.size(); ++i) {
    fHead[fHeadLength++] = static_cast<XMLByte>(bytes[i]);
  }
  // What the first bytes mean is known when there are enough of them.
  if (fHeadLength < fHead.size()) return {};
  fFamily = DetectFamily(fHead);
  if (before == 0) return Convert(bytes);
  std::string beginning(fHead.begin(), fHead.begin() + static_cast<std::ptrdiff_t>(before));
  beginning += bytes;
  fText = std::string(Convert(beginning));
  return fText;
}

std::string_view RQXMarkupText::Convert(std::string_view bytes) {
  if (fFamily == RQXEncodingFamily::Ascii) return bytes;
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    fUnit[fPending++] = static_cast<XMLByte>(byte);
    if (fPending < GetUnitSize(fFamily)) continue;
    fPending = 0;
    const unsigned int unit = MakeUnit(fUnit.data(), fFamily);
    if (fFamily == RQXEncodingFamily::Ebcdic) {
      text += FromEbcdic(unit);
    } else {
      text += unit < 0x80 ? static_cast<char>(unit) : kOther;
    }
  }
  fText = std::move(text);
  return fText;
}

}  // namespace RQXPrsUtil
