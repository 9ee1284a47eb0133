#include "MalformedUtf8.h"

#include <unicode/utf8.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace rqtool {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestDeclaration = 1024;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool Take(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

// The encoding that an XML declaration names, which goes up to "?>"; empty for none.
std::string_view DeclaredEncoding(std::string_view declaration) {
  const std::size_t name = declaration.find("encoding");
  if (name == std::string_view::npos) return {};
  std::string_view rest = declaration.substr(name + "encoding"sv.size());
  SkipBlanks(rest);
  if (!Take(rest, "=")) return {};
  SkipBlanks(rest);
  const std::size_t end = rest.empty() ? rest.npos : rest.find(rest.front(), 1);
  return end == rest.npos ? std::string_view() : rest.substr(1, end - 1);
}

bool NamesUtf8(std::string_view encoding) {
  std::string letters;
  for (const char c : encoding) letters += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return letters == "UTF-8" || letters == "UTF8";
}

// UTF-16 and UTF-32 by their marks or their zero bytes, EBCDIC by its "<?xm".
bool BeginsInAnotherEncoding(std::string_view text) {
  if (text.substr(0, 4).find('\0') != std::string_view::npos) return true;
  for (const std::string_view beginning : {"\xFE\xFF"sv, "\xFF\xFE"sv, "\x4C\x6F\xA7\x94"sv}) {
    if (text.substr(0, beginning.size()) == beginning) return true;
  }
  return false;
}

std::string ReadUpTo(std::istream& in, std::size_t length) {
  std::string text(length, '\0');
  in.read(text.data(), static_cast<std::streamsize>(length));
  text.resize(static_cast<std::size_t>(in.gcount()));
  return text;
}

// Counts lines and columns, the latter in units of UTF-16 as the XML library does.
class PlaceCounter {
 public:
  Place Get() const { return fPlace; }

  void Pass(UChar32 character) {
    const bool completesLineEnd = fAfterReturn && character == '\n';
    fAfterReturn = character == '\r';
    if (completesLineEnd) return;
    if (character == '\r' || character == '\n') {
      fPlace = {fPlace.line + 1, 1};
    } else {
      fPlace.column += character > 0xFFFF ? 2 : 1;
    }
  }

 private:
  Place fPlace{1, 1};
  bool fAfterReturn = false;
};

// Hands out the bytes that may make up the next character.
class Window {
 public:
  explicit Window(std::istream& in) : fIn(in) {}

  // At most as many as a character has; fewer only at the end.
  std::string_view Next() {
    while (fLength < fBytes.size() && Fetch()) {
    }
    return {fBytes.data(), fLength};
  }

  void Skip(std::size_t count) {
    fLength -= count;
    for (std::size_t i = 0; i < fLength; ++i) fBytes[i] = fBytes[i + count];
  }

 private:
  bool Fetch() {
    char byte = 0;
    if (!fIn.get(byte)) return false;
    fBytes[fLength++] = byte;
    return true;
  }

  std::istream& fIn;
  std::array<char, U8_MAX_LENGTH> fBytes{};
  std::size_t fLength = 0;
};

// Negative for what is no UTF-8; `length` is that of the character.
UChar32 Decode(std::string_view bytes, std::size_t& length) {
  const char* const text = bytes.data();
  const std::size_t end = bytes.size();
  UChar32 character = 0;
  length = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside the macro
  U8_NEXT(text, length, end, character);
#pragma GCC diagnostic pop
  return character;
}

}  // namespace

bool IsMeantAsUtf8(std::istream& in) {
  const std::string beginning = ReadUpTo(in, kLongestDeclaration);
  std::string_view text = beginning;
  if (BeginsInAnotherEncoding(text)) return false;
  Take(text, kMark);
  if (!Take(text, "<?xml") || text.empty() || !IsBlank(text.front())) return true;
  const std::size_t end = text.find("?>");
  if (end == std::string_view::npos) return false;
  const std::string_view encoding = DeclaredEncoding(text.substr(0, end));
  return encoding.empty() || NamesUtf8(encoding);
}

std::optional<MalformedByte> FindMalformedUtf8(std::istream& in) {
  Window window(in);
  PlaceCounter counter;
  if (window.Next().substr(0, kMark.size()) == kMark) window.Skip(kMark.size());
  while (true) {
    const std::string_view bytes = window.Next();
    if (bytes.empty()) return std::nullopt;
    std::size_t length = 0;
    const UChar32 character = Decode(bytes, length);
    if (character < 0) return MalformedByte{static_cast<std::uint8_t>(bytes.front()), counter.Get()};
    counter.Pass(character);
    window.Skip(length);
  }
}

}  // namespace rqtool
