#ifndef TESTS_SUPPORT_MEGABYTE_H
#define TESTS_SUPPORT_MEGABYTE_H

#include <cstddef>
#include <functional>
#include <string>

namespace rqtest {

constexpr std::size_t kMegabyte = 1000000;

/// Pieces, numbered from zero, up to a megabyte.
inline std::string MegabyteOf(const std::function<std::string(std::size_t)>& piece) {
  std::string text;
  for (std::size_t i = 0; text.size() < kMegabyte; ++i) text += piece(i);
  return text;
}

/// The same piece again and again, up to a megabyte.
inline std::string MegabyteOf(const std::string& piece) {
  return MegabyteOf([&](std::size_t) { return piece; });
}

}  // namespace rqtest

#endif
