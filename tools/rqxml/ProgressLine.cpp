#include "ProgressLine.h"

#include <unistd.h>

#include <cstdio>

#include "Terminal.h"

namespace rqtool {

namespace {

constexpr std::chrono::milliseconds kPause{200};
constexpr const char* kWipe = "\r\x1b[K";

}  // namespace

ProgressLine::ProgressLine(bool wanted) : fShown(wanted && ::isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
  if (fShown) WriteToStderr(kWipe);
}

bool ProgressLine::IsDue(bool last) {
  const Clock::time_point now = Clock::now();
  if (!fShown || (now < fNext && !last)) return false;
  fNext = now + kPause;
  return true;
}

double ProgressLine::GetSeconds() const { return std::chrono::duration<double>(Clock::now() - fBegin).count(); }

void ProgressLine::Show(const std::string& text) const { WriteToStderr(kWipe + text); }

std::string RoundedForProgress(double value) {
  const bool small = value < 10;
  char text[32];
  std::snprintf(text, sizeof text, small ? "%.1f" : "%.0f", value);
  return text;
}

}  // namespace rqtool
