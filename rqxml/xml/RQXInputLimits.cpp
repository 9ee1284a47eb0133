#include "rqxml/xml/RQXInputLimits.h"

namespace RQXPrsUtil {

namespace {

bool StartsName(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x80 || (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z') || value == '_' ||
         value == ':';
}

bool IsSpace(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }

}  // namespace

void RQXInputLimits::Restart() {
  fRecent.fill(nullptr);
  fNames.clear();
  fPlace = Place::Elsewhere;
}

bool RQXInputLimits::AdmitsMarkup(std::string_view text) {
  // No attribute value holds a '<', so the last one tells what the text ends in.
  const std::size_t lastOpening = text.rfind('<');
  if (lastOpening != std::string_view::npos) {
    fPlace = Place::Opened;
    text.remove_prefix(lastOpening + 1);
  }
  Follow(text);
  return fPlace == Place::Elsewhere || fPlace == Place::Opened || fAttributes <= kMostNames;
}

void RQXInputLimits::Follow(std::string_view text) {
  for (const char byte : text) {
    if (fPlace == Place::Elsewhere) return;
    Step(byte);
  }
}

void RQXInputLimits::Step(char byte) {
  const bool quote = byte == '"' || byte == '\'';
  if (fPlace == Place::Opened) {
    fPlace = StartsName(byte) ? Place::InTag : Place::Elsewhere;
    fQuote = 0;
    fAttributes = 0;
  } else if (fQuote != 0) {
    if (byte == fQuote) fQuote = 0;
  } else if (fPlace == Place::AfterEquals && !IsSpace(byte)) {
    // The '<' of a comment or of character data is no tag, and shows it by values without quotes.
    fPlace = quote ? Place::InTag : Place::Elsewhere;
    fQuote = byte;
    ++fAttributes;
  } else if (byte == '=') {
    fPlace = Place::AfterEquals;
  } else if (byte == '>' || quote) {
    fPlace = Place::Elsewhere;
  }
}

}  // namespace RQXPrsUtil
