#ifndef TESTS_SUPPORT_MBSTRING_H
#define TESTS_SUPPORT_MBSTRING_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/support/reference_mbstring.h"

namespace rqtest {

/// The index of a pointer into a text; slow::kNone for null.
inline std::size_t IndexOf(const char* found, const char* text) {
  return found == nullptr ? slow::kNone : static_cast<std::size_t>(found - text);
}

/// The generalised UTF-8 form of a code point: surrogates, too, get three bytes.
inline std::string Utf8(std::int64_t c) {
  const auto tail = [c](int shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) return {static_cast<char>(c)};
  if (c < 0x800) return {static_cast<char>(0xC0 | (c >> 6)), tail(0)};
  if (c < 0x10000) return {static_cast<char>(0xE0 | (c >> 12)), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | (c >> 18)), tail(12), tail(6), tail(0)};
}

/// A text of up to `most` of the pieces, chosen at random.
inline std::string RandomText(std::mt19937& random, const std::vector<std::string>& pieces, std::size_t most) {
  std::string text;
  for (std::size_t count = random() % (most + 1); count > 0; --count) text += pieces[random() % pieces.size()];
  return text;
}

/// The texts of one to three of these bytes each.
inline std::vector<std::string> TextsOf(const std::string& bytes) {
  std::vector<std::string> texts;
  for (const char a : bytes) {
    texts.push_back({a});
    for (const char b : bytes) {
      texts.push_back({a, b});
      for (const char c : bytes) texts.push_back({a, b, c});
    }
  }
  return texts;
}

}  // namespace rqtest

#endif
