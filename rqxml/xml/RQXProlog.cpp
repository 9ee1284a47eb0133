#include "rqxml/xml/RQXProlog.h"

#include <algorithm>
#include <array>

namespace RQXPrsUtil {

namespace {

using std::string_view;

constexpr string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr string_view kWhiteSpace = " \t\r\n";

/// Encodings in which no other byte sequence than ASCII's own can stand for markup.
constexpr std::array<string_view, 4> kAsciiMarkup = {"UTF-8", "US-ASCII", "ISO-8859-1", "WINDOWS-1252"};

bool TakeStart(string_view& text, string_view start) {
  if (text.substr(0, start.size()) != start) return false;
  text.remove_prefix(start.size());
  return true;
}

/// Takes all up to and with `end`; false, and nothing taken, when it is not there.
bool TakeThrough(string_view& text, string_view end) {
  const std::size_t at = text.find(end);
  if (at == string_view::npos) return false;
  text.remove_prefix(at + end.size());
  return true;
}

void TakeWhiteSpace(string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
}

char ToUpper(char letter) { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter; }

bool EqualsIgnoringCase(string_view text, string_view upper) {
  return std::equal(text.begin(), text.end(), upper.begin(), upper.end(),
                    [](char letter, char other) { return ToUpper(letter) == other; });
}

/// What an XML declaration says behind "encoding"; false when it cannot be read for certain.
bool NamesAsciiMarkup(string_view declaration) {
  if (!TakeThrough(declaration, "encoding")) return true;
  TakeWhiteSpace(declaration);
  if (!TakeStart(declaration, "=")) return false;
  TakeWhiteSpace(declaration);
  if (declaration.empty()) return false;
  const string_view quote = declaration.substr(0, 1);
  declaration.remove_prefix(1);
  const string_view name = declaration.substr(0, declaration.find(quote));
  return std::any_of(kAsciiMarkup.begin(), kAsciiMarkup.end(),
                     [name](string_view known) { return EqualsIgnoringCase(name, known); });
}

/// Takes the XML declaration, if there is one.
bool TakeDeclaration(string_view& text) {
  if (text.substr(0, 5) != "<?xml") return true;
  const string_view declaration = text.substr(0, text.find("?>"));
  return TakeThrough(text, "?>") && NamesAsciiMarkup(declaration);
}

/// Takes comments, processing instructions and white space; false when one of them does not end.
bool TakeMiscellaneous(string_view& text) {
  while (true) {
    TakeWhiteSpace(text);
    if (TakeStart(text, "<!--")) {
      if (!TakeThrough(text, "-->")) return false;
    } else if (TakeStart(text, "<?")) {
      if (!TakeThrough(text, "?>")) return false;
    } else {
      return true;
    }
  }
}

bool StartsElement(string_view text) {
  if (text.size() < 2 || text[0] != '<') return false;
  const char letter = ToUpper(text[1]);
  return (letter >= 'A' && letter <= 'Z') || letter == '_';
}

}  // namespace

bool ShowsNoDoctype(string_view beginning) {
  TakeStart(beginning, kByteOrderMark);
  return TakeDeclaration(beginning) && TakeMiscellaneous(beginning) && StartsElement(beginning);
}

}  // namespace RQXPrsUtil
