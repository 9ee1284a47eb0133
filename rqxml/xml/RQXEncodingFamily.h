#ifndef RQXML_XML_RQXENCODINGFAMILY_H
#define RQXML_XML_RQXENCODINGFAMILY_H

#include <array>

#include <xercesc/util/XercesDefs.hpp>

namespace RQXPrsUtil {

/// How the bytes of a document make up its characters, as far as its first four bytes tell.
enum class RQXEncodingFamily {
  Ascii,     ///< bytes in which ASCII characters stand for themselves: UTF-8 and most code pages
  Ebcdic,    ///< bytes in which they do not
  Units16L,  ///< 16-bit units, low byte first
  Units16B,  ///< 16-bit units, high byte first
  Units32L,  ///< 32-bit units, lowest byte first
  Units32B   ///< 32-bit units, highest byte first
};

inline RQXEncodingFamily DetectFamily(const std::array<XMLByte, 4>& head) {
  const unsigned int first = static_cast<unsigned int>(head[0] << 8 | head[1]);
  const unsigned int second = static_cast<unsigned int>(head[2] << 8 | head[3]);
  if (first == 0x4C6F && second == 0xA794) return RQXEncodingFamily::Ebcdic;
  if (first == 0 && (second == 0xFEFF || second == 0x003C)) return RQXEncodingFamily::Units32B;
  if ((first == 0xFFFE || first == 0x3C00) && second == 0) return RQXEncodingFamily::Units32L;
  if (first == 0xFEFF || first == 0x003C) return RQXEncodingFamily::Units16B;
  if (first == 0xFFFE || first == 0x3C00) return RQXEncodingFamily::Units16L;
  return RQXEncodingFamily::Ascii;
}

/// The bytes of one unit.
inline std::size_t GetUnitSize(RQXEncodingFamily family) {
  switch (family) {
    case RQXEncodingFamily::Units16L:
    case RQXEncodingFamily::Units16B:
      return 2;
    case RQXEncodingFamily::Units32L:
    case RQXEncodingFamily::Units32B:
      return 4;
    default:
      return 1;
  }
}

/// One unit from its bytes.
inline unsigned int MakeUnit(const XMLByte* bytes, RQXEncodingFamily family) {
  const std::size_t size = GetUnitSize(family);
  const bool lowFirst = family == RQXEncodingFamily::Units16L || family == RQXEncodingFamily::Units32L;
  unsigned int unit = 0;
  for (std::size_t i = 0; i < size; ++i) unit = unit << 8 | bytes[lowFirst ? size - 1 - i : i];
  return unit;
}

}  // namespace RQXPrsUtil

#endif
