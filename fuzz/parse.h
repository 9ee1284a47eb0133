#ifndef RQXML_FUZZ_PARSE_H
#define RQXML_FUZZ_PARSE_H

#include <cstddef>
#include <istream>
#include <sstream>
#include <string>

#include "byte_streams.h"
#include "describe.h"

namespace rqxml_fuzz {

/// Parses the rest of the stream; tells how that ended.
template <class Parser>
Ending Parse(Parser& parser, std::istream& in) {
  return RunParse([&] { return parser.ParseToDOM(in); });
}

template <class Parser>
Ending ParseWhole(Parser& parser, const std::string& text) {
  std::istringstream in(text);
  return Parse(parser, in);
}

/// As ParseWhole, from a stream that gives `chunk` bytes at a time.
template <class Parser>
Ending ParseInChunks(Parser& parser, const std::string& text, std::size_t chunk) {
  ChunkedBuffer buffer(text, chunk);
  std::istream in(&buffer);
  return Parse(parser, in);
}

}  // namespace rqxml_fuzz

#endif
