#ifndef RQXML_TOOLS_PROGRESS_H
#define RQXML_TOOLS_PROGRESS_H

#include <chrono>
#include <cstddef>

namespace rqtool {

/// A line about work on many files that keeps changing: files done, segments, rate and time left. It stands on
/// standard error while that is a terminal, and is wiped at the end; elsewhere nothing is shown.
class Progress {
 public:
  /// @param total how many files there are
  /// @param wanted false to show nothing on a terminal either
  Progress(std::size_t total, bool wanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Tells that `done` files are done, which gave `segments`. Shown a few times in a second.
  void Show(std::size_t done, int segments);

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t fTotal;
  bool fShown;
  Clock::time_point fBegin = Clock::now();
  Clock::time_point fNext = fBegin;
};

}  // namespace rqtool

#endif
