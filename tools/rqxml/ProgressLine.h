#ifndef RQXML_TOOLS_PROGRESSLINE_H
#define RQXML_TOOLS_PROGRESSLINE_H

#include <chrono>
#include <string>

namespace rqtool {

/// A line that keeps changing while work is done. It stands on standard error while that is a terminal, and is wiped at
/// the end; elsewhere nothing is shown.
class ProgressLine {
 public:
  /// @param wanted false to show nothing on a terminal either
  explicit ProgressLine(bool wanted);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// True when the line should be shown anew, a few times in a second; always for a `last` line that is shown at all.
  bool IsDue(bool last);
  /// How long the work has taken so far.
  double GetSeconds() const;
  /// Replaces the line.
  void Show(const std::string& text) const;

 private:
  using Clock = std::chrono::steady_clock;

  bool fShown;
  Clock::time_point fBegin = Clock::now();
  Clock::time_point fNext = fBegin;
};

/// A number for people, with one decimal where it is small.
std::string RoundedForProgress(double value);

}  // namespace rqtool

#endif
