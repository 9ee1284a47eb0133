#include "rqxml/xml/RQXInputTail.h"

#include <algorithm>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace RQXPrsUtil {

namespace {

bool MayEndDocument(unsigned int unit, bool version11) {
  if (unit == '>' || unit == ' ' || unit == '\n' || unit == '\r' || unit == '\t') return true;
  return version11 && (unit == 0x85 || unit == 0x2028);
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

bool RQXInputTail::EndsWithWholeCharacter(const XMLCh* encoding, bool version11) const {
  using xercesc::XMLString;
  using xercesc::XMLUni;
  if (XMLString::equals(encoding, XMLUni::fgUTF8EncodingString) ||
      XMLString::equals(encoding, XMLUni::fgUTF8EncodingString2)) {
    return EndsWithWholeUtf8();
  }
  const RQXEncodingFamily family = fTotal < fHead.size() ? RQXEncodingFamily::Ascii : DetectFamily(fHead);
  // Of EBCDIC encodings only rare ones have characters of two bytes, and those close them with a shift.
  return family == RQXEncodingFamily::Ebcdic || EndsWithWholeUnit(family, version11);
}

bool RQXInputTail::EndsWithWholeUtf8() const {
  const std::size_t known = std::min(fTotal, kKept);
  for (std::size_t left = 1; left <= known; ++left) {
    if (AnnouncedLength(fLast[kKept - left]) > left) return false;
  }
  return true;
}

bool RQXInputTail::EndsWithWholeUnit(RQXEncodingFamily family, bool version11) const {
  const std::size_t size = GetUnitSize(family);
  if (fTotal % size != 0) return false;
  // An ISO-2022 document may close with the sequence that returns to ASCII.
  if (size == 1 && fLast[kKept - 3] == 0x1B && fLast[kKept - 2] == '(' && fLast[kKept - 1] == 'B') return true;
  return MayEndDocument(MakeUnit(&fLast[kKept - size], family), version11);
}

}  // namespace RQXPrsUtil
