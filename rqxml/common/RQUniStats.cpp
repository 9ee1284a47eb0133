#include "rqxml/common/RQUniStats.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace RQMTD_NAMESPACE {

namespace {

bool IsMissing(double value) { return value == RQMV::gMissingValue; }

bool IsCount(double value) { return std::isfinite(value) && value >= 0; }

bool IsSummaryConsistent(const RQUniStats::SummStats& summary) {
  const bool deviation = IsMissing(summary.standardDeviation) || summary.standardDeviation >= 0;
  const bool range = IsMissing(summary.minimum) || IsMissing(summary.maximum) || summary.minimum <= summary.maximum;
  return deviation && range;
}

// Given bounds ascend strictly; the first and the last may be missing, which leaves that end open.
bool AreCutPointsConsistent(const std::vector<double>& cutPoints) {
  std::size_t begin = 0;
  std::size_t end = cutPoints.size();
  if (begin < end && IsMissing(cutPoints[begin])) ++begin;
  if (begin < end && IsMissing(cutPoints[end - 1])) --end;
  for (std::size_t i = begin; i < end; ++i) {
    if (std::isnan(cutPoints[i]) || IsMissing(cutPoints[i])) return false;
    if (i > begin && cutPoints[i - 1] >= cutPoints[i]) return false;
  }
  return true;
}

bool DoCountsMatch(const std::vector<double>& cutPoints, const std::vector<double>& frequencies) {
  return cutPoints.empty() ? frequencies.empty() : cutPoints.size() == frequencies.size() + 1;
}

}  // namespace

RQUniStats::RQUniStats() = default;

RQUniStats::RQUniStats(const std::string& name, double totalFrequency, const std::vector<double>& frequencies)
    : fName(name), fTotalFrequency(totalFrequency), fFrequencies(frequencies) {}

RQUniStats::RQUniStats(const std::string& name, double totalFrequency, const SummStats& summary,
                       const std::vector<double>& cutPoints, const std::vector<double>& frequencies)
    : fName(name),
      fTotalFrequency(totalFrequency),
      fSummary(summary),
      fCutPoints(cutPoints),
      fFrequencies(frequencies),
      fContinuous(true) {}

RQUniStats::RQUniStats(const RQUniStats&) = default;
RQUniStats::RQUniStats(RQUniStats&&) noexcept = default;
RQUniStats& RQUniStats::operator=(RQUniStats&&) noexcept = default;
RQUniStats::~RQUniStats() = default;

RQUniStats& RQUniStats::operator=(const RQUniStats& other) {
  return *this = RQUniStats(other);  // the old value survives when memory runs out
}

bool RQUniStats::IsValid() const {
  if (fName.empty() || !IsCount(fTotalFrequency)) return false;
  if (!std::all_of(fFrequencies.begin(), fFrequencies.end(), IsCount)) return false;
  if (!fContinuous) return true;
  return IsSummaryConsistent(fSummary) && DoCountsMatch(fCutPoints, fFrequencies) && AreCutPointsConsistent(fCutPoints);
}

}  // namespace RQMTD_NAMESPACE
