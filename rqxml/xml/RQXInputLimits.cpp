#include "rqxml/xml/RQXInputLimits.h"

namespace RQXPrsUtil {

namespace {

bool StartsName(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x80 || (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z') || value == '_' ||
         value == ':';
}

}  // namespace

void RQXInputLimits::Restart() {
  fRecent.fill(nullptr);
  fNames.clear();
  fPlace = Place::Elsewhere;
}

bool RQXInputLimits::AdmitsBytes(std::string_view bytes) {
  // No attribute value holds a '<', so the last one tells where the bytes end.
  const std::size_t lastOpening = bytes.rfind('<');
  if (lastOpening != std::string_view::npos) {
    fPlace = Place::Opened;
    bytes.remove_prefix(lastOpening + 1);
  }
  Follow(bytes);
  return fPlace != Place::InTag || fAttributes <= kMostInOneTag;
}

void RQXInputLimits::Follow(std::string_view bytes) {
  for (const char byte : bytes) {
    if (fPlace == Place::Elsewhere) return;
    if (fPlace == Place::Opened) {
      fPlace = StartsName(byte) ? Place::InTag : Place::Elsewhere;
      fQuote = 0;
      fAttributes = 0;
    } else if (fQuote != 0) {
      if (byte == fQuote) fQuote = 0;
    } else if (byte == '"' || byte == '\'') {
      fQuote = byte;
    } else if (byte == '=') {
      ++fAttributes;
    } else if (byte == '>') {
      fPlace = Place::Elsewhere;
    }
  }
}

}  // namespace RQXPrsUtil
