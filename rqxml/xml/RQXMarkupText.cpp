#include "rqxml/xml/RQXMarkupText.h"

namespace RQXPrsUtil {

namespace {

constexpr char kOther = '\x80';

/// The characters of markup stand in one place in all EBCDIC code pages that XML knows.
char FromEbcdic(unsigned int byte) {
  switch (byte) {
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
  for (std::size_t i = 0; i < bytes.size() && fTotal + i < fHead.size(); ++i) {
    fHead[fTotal + i] = static_cast<XMLByte>(bytes[i]);
  }
  fTotal += bytes.size();
  // An input that is read in pieces of less than four bytes shows its family late, which only makes its first
  // characters unreadable here.
  if (fFamily == RQXEncodingFamily::Ascii && fTotal - bytes.size() < fHead.size()) fFamily = DetectFamily(fHead);
  if (fFamily == RQXEncodingFamily::Ascii) return bytes;
  fText.clear();
  for (const char byte : bytes) {
    fUnit[fPending++] = static_cast<XMLByte>(byte);
    if (fPending < GetUnitSize(fFamily)) continue;
    fPending = 0;
    const unsigned int unit = MakeUnit(fUnit.data(), fFamily);
    if (fFamily == RQXEncodingFamily::Ebcdic) {
      fText += FromEbcdic(unit);
    } else {
      fText += unit < 0x80 ? static_cast<char>(unit) : kOther;
    }
  }
  return fText;
}

}  // namespace RQXPrsUtil
