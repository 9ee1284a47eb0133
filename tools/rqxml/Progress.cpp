#include "Progress.h"

#include <string>

namespace rqtool {

namespace {

double Rate(double done, double seconds) { return seconds > 0 ? done / seconds : 0; }

std::string Megabytes(double bytes) { return RoundedForProgress(bytes / 1e6) + " MB"; }

}  // namespace

void Progress::Show(std::size_t done, int segments) {
  if (!fLine.IsDue(done == fTotal)) return;
  const double rate = Rate(static_cast<double>(done), fLine.GetSeconds());
  std::string line = std::to_string(done) + " of " + std::to_string(fTotal) + " files, ";
  line += std::to_string(segments) + (segments == 1 ? " segment, " : " segments, ") + RoundedForProgress(rate);
  line += " files/s";
  if (done == fTotal) {
    line += ", writing";
  } else if (rate > 0) {
    line += ", " + RoundedForProgress(static_cast<double>(fTotal - done) / rate) + " s left";
  }
  fLine.Show(line);
}

void ByteProgress::Show(std::uint64_t done) {
  if (!fLine.IsDue(false)) return;
  const double rate = Rate(static_cast<double>(done), fLine.GetSeconds());
  std::string line = Megabytes(static_cast<double>(done));
  if (fTotal) line += " of " + Megabytes(static_cast<double>(*fTotal));
  line += ", " + Megabytes(rate) + "/s";
  if (fTotal && rate > 0 && done < *fTotal) {
    line += ", " + RoundedForProgress(static_cast<double>(*fTotal - done) / rate) + " s left";
  }
  fLine.Show(line);
}

}  // namespace rqtool
