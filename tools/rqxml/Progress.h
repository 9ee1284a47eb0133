#ifndef RQXML_TOOLS_PROGRESS_H
#define RQXML_TOOLS_PROGRESS_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ProgressLine.h"

namespace rqtool {

/// A line about work on many files: files done, segments, rate and time left.
class Progress {
 public:
  /// @param total how many files there are
  /// @param wanted false to show nothing on a terminal either
  Progress(std::size_t total, bool wanted) : fTotal(total), fLine(wanted) {}

  /// Tells that `done` files are done, which gave `segments`.
  void Show(std::size_t done, int segments);

 private:
  std::size_t fTotal;
  ProgressLine fLine;
};

/// A line about work on the bytes of one file: megabytes done, rate and time left.
class ByteProgress {
 public:
  /// @param total how many bytes there are; nothing when that is not known
  /// @param wanted false to show nothing on a terminal either
  ByteProgress(std::optional<std::uint64_t> total, bool wanted) : fTotal(total), fLine(wanted) {}

  /// Tells that `done` bytes are done.
  void Show(std::uint64_t done);

 private:
  std::optional<std::uint64_t> fTotal;
  ProgressLine fLine;
};

}  // namespace rqtool

#endif
