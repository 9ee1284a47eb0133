#include "rqxml/xml/RQXTagFollower.h"

namespace RQXPrsUtil {

namespace {

bool StartsName(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x80 || (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z') || value == '_' ||
         value == ':';
}

}  // namespace

void RQXTagFollower::Add(std::string_view text) {
  while (!text.empty()) {
    switch (fPlace) {
      case Place::Elsewhere:
      case Place::Tag:
        text = TakeOutside(text);
        break;
      case Place::Opening:
        text = TakeOpening(text);
        break;
      case Place::Skipped:
        text = TakeSkipped(text);
        break;
    }
  }
}

/// No attribute value holds a '<': where there is one, a tag has ended before it.
std::string_view RQXTagFollower::TakeOutside(std::string_view text) {
  const std::size_t next = text.find('<');
  if (next == std::string_view::npos) {
    FollowTag(text);
    return {};
  }
  fPlace = Place::Opening;
  fOpening.clear();
  return text.substr(next + 1);
}

std::string_view RQXTagFollower::TakeOpening(std::string_view text) {
  constexpr std::string_view kComment = "!--";
  constexpr std::string_view kCharacterData = "![CDATA[";
  fOpening += text.front();
  text.remove_prefix(1);
  if (fOpening == "?") {
    Skip("?>");
  } else if (fOpening == kComment) {
    Skip("-->");
  } else if (fOpening == kCharacterData) {
    Skip("]]>");
  } else if (StartsName(fOpening.front())) {
    fPlace = Place::Tag;
    fQuote = 0;
    fAttributes = 0;
  } else if (!kComment.starts_with(fOpening) && !kCharacterData.starts_with(fOpening)) {
    fPlace = Place::Elsewhere;
  }
  return text;
}

void RQXTagFollower::Skip(std::string_view terminator) {
  fPlace = Place::Skipped;
  fTerminator = terminator;
  fMatched = 0;
}

std::string_view RQXTagFollower::TakeSkipped(std::string_view text) {
  if (fMatched == 0) {
    const std::size_t next = text.find(fTerminator.front());
    if (next == std::string_view::npos) return {};
    text.remove_prefix(next);
  }
  const char byte = text.front();
  text.remove_prefix(1);
  if (byte == fTerminator[fMatched]) {
    if (++fMatched == fTerminator.size()) fPlace = Place::Elsewhere;
  } else if (byte != fTerminator.front()) {
    fMatched = 0;
  }  // else one more '-' or ']' before the '>': as much of the terminator came last as before
  return text;
}

void RQXTagFollower::FollowTag(std::string_view text) {
  for (const char byte : text) {
    if (fPlace != Place::Tag) return;
    if (fQuote != 0) {
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
