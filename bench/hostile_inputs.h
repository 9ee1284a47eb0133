#ifndef RQXML_BENCH_HOSTILE_INPUTS_H
#define RQXML_BENCH_HOSTILE_INPUTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace rqxml_bench {

/// A way to spend a given number of bytes, without any DTD, so that a careless reader takes as long as possible.
struct HostileShape {
  const char* name;                        ///< what the document is made of
  std::string (*make)(std::size_t bytes);  ///< a document of about that many bytes
};

/// All shapes that the timing program knows.
const std::vector<HostileShape>& HostileShapes();

}  // namespace rqxml_bench

#endif
