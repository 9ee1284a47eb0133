#include "Progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "Terminal.h"

namespace rqtool {

namespace {

constexpr std::chrono::milliseconds kPause{200};
constexpr const char* kWipe = "\r\x1b[K";

std::string Rounded(double value) {
  const bool small = value < 10;
  char text[32];
  std::snprintf(text, sizeof text, small ? "%.1f" : "%.0f", value);
  return text;
}

}  // namespace

Progress::Progress(std::size_t total, bool wanted) : fTotal(total), fShown(wanted && ::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (fShown) WriteToStderr(kWipe);
}

void Progress::Show(std::size_t done, int segments) {
  const Clock::time_point now = Clock::now();
  if (!fShown || (now < fNext && done < fTotal)) return;
  fNext = now + kPause;
  const double seconds = std::chrono::duration<double>(now - fBegin).count();
  const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
  std::string line = kWipe + std::to_string(done) + " of " + std::to_string(fTotal) + " files, ";
  line += std::to_string(segments) + (segments == 1 ? " segment, " : " segments, ") + Rounded(rate) + " files/s";
  if (done == fTotal) {
    line += ", writing";
  } else if (rate > 0) {
    line += ", " + Rounded(static_cast<double>(fTotal - done) / rate) + " s left";
  }
  WriteToStderr(line);
}

}  // namespace rqtool
