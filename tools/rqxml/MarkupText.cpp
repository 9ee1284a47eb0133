#include "MarkupText.h"

#include "DisplayText.h"

namespace rqtool {

namespace {

std::string_view Entity(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

// U+FFFE and U+FFFF are no characters of XML; both begin with these bytes.
constexpr std::string_view kNoCharacter = "\xEF\xBF";

bool IsNoCharacter(std::string_view rest) {
  return rest.size() > 2 && rest.substr(0, 2) == kNoCharacter && (rest[2] == '\xBE' || rest[2] == '\xBF');
}

}  // namespace

std::string MarkupText(std::string_view text) {
  const std::string printable = Printable(text);
  std::string markup;
  for (std::size_t i = 0; i < printable.size(); ++i) {
    const std::string_view rest = std::string_view(printable).substr(i);
    if (const std::string_view entity = Entity(rest.front()); !entity.empty()) {
      markup += entity;
    } else if (IsNoCharacter(rest)) {
      markup += rest[2] == '\xBE' ? "\\u{fffe}" : "\\u{ffff}";
      i += 2;
    } else {
      markup += rest.front();
    }
  }
  return markup;
}

}  // namespace rqtool
