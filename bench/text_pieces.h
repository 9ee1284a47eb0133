#ifndef RQXML_BENCH_TEXT_PIECES_H
#define RQXML_BENCH_TEXT_PIECES_H

#include <initializer_list>
#include <string>
#include <string_view>

namespace rqxml_bench {

/// The pieces, one behind the other.
inline std::string Join(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

}  // namespace rqxml_bench

#endif
