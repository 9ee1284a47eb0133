#ifndef RQXML_COMMON_RQUNISTATS_H
#define RQXML_COMMON_RQUNISTATS_H

#include <string>
#include <vector>

#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQMV.h"

namespace RQMTD_NAMESPACE {

/// The univariate statistics of one field: category frequencies, or summary statistics with a histogram.
///
/// A plain value: copyable, movable; a default-constructed object is not valid.
class RQ_API RQUniStats {
 public:
  /// Summary statistics of a continuous field, in the field's own unit; each may be the system-missing value.
  struct SummStats {
    double minimum = RQMV::gMissingValue;            ///< smallest value
    double maximum = RQMV::gMissingValue;            ///< largest value
    double mean = RQMV::gMissingValue;               ///< arithmetic mean
    double standardDeviation = RQMV::gMissingValue;  ///< standard deviation
  };

  /// Statistics of nothing; IsValid is false.
  RQUniStats();
  /// Statistics of a categorical field: one frequency for each category, in the order of the categories.
  RQUniStats(const std::string& name, double totalFrequency, const std::vector<double>& frequencies);
  /// Statistics of a continuous field: n frequencies for the intervals between n + 1 cut points, or neither.
  RQUniStats(const std::string& name, double totalFrequency, const SummStats& summary,
             const std::vector<double>& cutPoints, const std::vector<double>& frequencies);
  RQUniStats(const RQUniStats&);
  RQUniStats(RQUniStats&&) noexcept;
  /// Copies everything, or throws std::bad_alloc and leaves the object as it was.
  RQUniStats& operator=(const RQUniStats& other);
  RQUniStats& operator=(RQUniStats&&) noexcept;
  ~RQUniStats();

  /// True when the object describes a field consistently: a name; a total frequency that is given, finite and not
  /// negative; frequencies that are finite and not negative; for continuous statistics also a standard deviation
  /// that is missing or not negative, a minimum not above the maximum where both are given, no cut points and no
  /// frequencies or exactly one cut point more than frequencies, and ascending cut points of which only the first
  /// and the last may be missing. Cut points ascend strictly; they may be infinite. NaN
  /// fails every comparison.
  bool IsValid() const;
  /// True for statistics of a continuous field.
  bool IsContinuous() const { return fContinuous; }
  /// The field's name, in UTF-8.
  const std::string& GetName() const { return fName; }
  /// The number of cases, weighted where the field is.
  double GetTotalFrequency() const { return fTotalFrequency; }
  /// Frequencies of the categories or of the intervals.
  const std::vector<double>& GetFrequencies() const { return fFrequencies; }
  /// Bounds of the intervals; an open end is the system-missing value. Empty for categorical statistics.
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }
  /// The summary statistics; all missing for categorical statistics.
  const SummStats& GetSummStats() const { return fSummary; }

 private:
  std::string fName;
  double fTotalFrequency = RQMV::gMissingValue;
  SummStats fSummary;
  std::vector<double> fCutPoints;
  std::vector<double> fFrequencies;
  bool fContinuous = false;
};

}  // namespace RQMTD_NAMESPACE

#endif
