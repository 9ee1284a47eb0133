#include "FileNames.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <utility>

namespace rqtool {

namespace {

constexpr std::size_t kLongest = 120;  // bytes, so that a number and an extension have room

bool IsKept(UChar32 character) {
  if (character == '-' || character == '_' || character == '.') return true;
  switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_COMBINING_SPACING_MARK:
      return true;
    default:
      return u_isalnum(character);
  }
}

std::string Utf8(const icu::UnicodeString& text) {
  std::string bytes;
  text.toUTF8String(bytes);
  return bytes;
}

bool IsDevice(std::string name) {
  constexpr std::array<std::string_view, 4> kDevices{"con", "prn", "aux", "nul"};
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
  name = name.substr(0, name.find('.'));
  if (std::find(kDevices.begin(), kDevices.end(), name) != kDevices.end()) return true;
  const std::string_view start = std::string_view(name).substr(0, 3);
  return name.size() == 4 && (start == "com" || start == "lpt") && name[3] >= '0' && name[3] <= '9';
}

std::string Clean(std::string_view text) {
  const icu::UnicodeString units = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(std::min(text.size(), 4 * kLongest))));
  std::string name;
  for (int32_t i = 0; i < units.length(); i = units.moveIndex32(i, 1)) {
    const UChar32 character = units.char32At(i);
    const std::string piece = IsKept(character) ? Utf8(icu::UnicodeString(character)) : "_";
    if (name.size() + piece.size() > kLongest) break;
    name += piece;
  }
  if (name.empty() || name.front() == '.' || name.front() == '-' || IsDevice(name)) name.insert(0, "_");
  return name;
}

// What names have in common that some file system takes for the same.
std::string Key(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKCCasefoldInstance(error);
  if (U_FAILURE(error)) return name;
  const icu::UnicodeString folded = normalizer->normalize(icu::UnicodeString::fromUTF8(name), error);
  return U_FAILURE(error) ? name : Utf8(folded);
}

}  // namespace

FileNames::FileNames(std::string extension) : fExtension(std::move(extension)) {}

std::string FileNames::Make(std::string_view text) {
  const std::string clean = Clean(text);
  const auto [asked, isNew] = fTaken.emplace(Key(clean), 1);
  if (isNew) return clean + fExtension;
  for (std::size_t number = asked->second + 1;; ++number) {
    const std::string name = clean + '-' + std::to_string(number);
    if (!fTaken.emplace(Key(name), 1).second) continue;
    fTaken[Key(clean)] = number;
    return name + fExtension;
  }
}

}  // namespace rqtool
