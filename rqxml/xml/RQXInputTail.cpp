#include "rqxml/xml/RQXInputTail.h"

#include <algorithm>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace RQXPrsUtil {

namespace {

bool IsEndOfDocument(unsigned int unit) {
  return unit == '>' || unit == ' ' || unit == '\n' || unit == '\r' || unit == '\t';
}

/// How long the XML library takes the sequence after this lead byte to be, the byte itself included; 0xFE and 0xFF
/// count as leads of six bytes there.
std::size_t AnnouncedLength(XMLByte lead) {
  if (lead < 0xC0) return 1;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  if (lead < 0xF8) return 4;
  if (lead < 0xFC) return 5;
  return 6;
}

}  // namespace

void RQXInputTail::Add(std::string_view bytes) {
  const auto byteAt = [&](std::size_t i) { return static_cast<XMLByte>(bytes[i]); };
  for (std::size_t i = 0; i < bytes.size() && fTotal + i < fHead.size(); ++i) fHead[fTotal + i] = byteAt(i);
  fTotal += bytes.size();
  const std::size_t taken = std::min(bytes.size(), kKept);
  std::move(fLast.begin() + static_cast<std::ptrdiff_t>(taken), fLast.end(), fLast.begin());
  for (std::size_t i = 0; i < taken; ++i) fLast[kKept - taken + i] = byteAt(bytes.size() - taken + i);
}

bool RQXInputTail::EndsWithWholeCharacter(const XMLCh* encoding) const {
  switch (GetFamily()) {
    case Family::Units16:
      return EndsLikeUnits(2);
    case Family::Units32:
      return EndsLikeUnits(4);
    case Family::Ebcdic:
      return true;  // single-byte code pages in practice: every byte is a character
    case Family::Bytes:
      break;
  }
  if (xercesc::XMLString::equals(encoding, xercesc::XMLUni::fgUTF8EncodingString) && !EndsWithWholeUtf8()) return false;
  return EndsLikeAscii();
}

RQXInputTail::Family RQXInputTail::GetFamily() const {
  if (fTotal < fHead.size()) return Family::Bytes;
  const unsigned int first = static_cast<unsigned int>(fHead[0] << 8 | fHead[1]);
  const unsigned int second = static_cast<unsigned int>(fHead[2] << 8 | fHead[3]);
  if (first == 0x4C6F && second == 0xA794) return Family::Ebcdic;
  if (first == 0 && (second == 0xFEFF || second == 0x003C)) return Family::Units32;
  if ((first == 0xFFFE || first == 0x3C00) && second == 0) return Family::Units32;
  if (first == 0xFEFF || first == 0xFFFE || first == 0x003C || first == 0x3C00) return Family::Units16;
  return Family::Bytes;
}

bool RQXInputTail::EndsWithWholeUtf8() const {
  const std::size_t known = std::min(fTotal, kKept);
  for (std::size_t left = 1; left <= known; ++left) {
    if (AnnouncedLength(fLast[kKept - left]) > left) return false;
  }
  return true;
}

bool RQXInputTail::EndsLikeAscii() const {
  // An ISO-2022 document may close with the sequence that returns to ASCII.
  if (fLast[kKept - 3] == 0x1B && fLast[kKept - 2] == '(' && fLast[kKept - 1] == 'B') return true;
  return IsEndOfDocument(fLast[kKept - 1]);
}

bool RQXInputTail::EndsLikeUnits(std::size_t size) const {
  if (fTotal % size != 0) return false;
  unsigned int unit = 0;
  unsigned int bytesSet = 0;
  for (std::size_t i = kKept - size; i < kKept; ++i) {
    unit |= fLast[i];
    if (fLast[i] != 0) ++bytesSet;
  }
  return bytesSet == 1 && IsEndOfDocument(unit);
}

}  // namespace RQXPrsUtil
