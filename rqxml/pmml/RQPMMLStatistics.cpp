#include "rqxml/pmml/RQPMMLParser.h"

#include <algorithm>
#include <utility>

#include "rqxml/common/RQMV.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQUniStats;
using xercesc::DOMElement;

constexpr XMLCh kUnivariateStats[] = u"UnivariateStats";
constexpr XMLCh kArray[] = u"Array";

constexpr RQStatus kMissing{AttributeMissing, false};
constexpr RQStatus kBad{BadValue, false};
constexpr RQStatus kNoChild{ElementMissing, false};
constexpr RQStatus kContradiction{BadIntervals, false};
constexpr RQStatus kInvalid{BadStatistics, false};

bool IsGiven(double value) { return value != RQMV::gMissingValue; }

/// The first child of that name of an element that may be absent itself.
const DOMElement* ChildOf(const DOMElement* element, const XMLCh* tagName) {
  return element ? FirstChild(*element, tagName) : nullptr;
}

RQStatus ReadTotal(const DOMElement& counts, double& total) {
  switch (ReadDoubleAttribute(counts, u"totalFreq", total)) {
    case RQXNumberAttribute::Absent:
      return kMissing;
    case RQXNumberAttribute::Bad:
      return kBad;
    case RQXNumberAttribute::Good:
      break;
  }
  return total < 0 ? kBad : RQStatus();
}

/// What is read of every field, whatever its kind.
RQStatus ReadHead(const DOMElement& element, std::string& name, double& total) {
  const XMLCh* const field = AttributeOf(element, u"field");
  if (!field) return kMissing;
  const DOMElement* const counts = FirstChild(element, u"Counts");
  if (!counts) return kNoChild;
  AssignUTF8(field, name);
  return ReadTotal(*counts, total);
}

/// A statistic that is absent is missing; false for one that is no number.
bool ReadStatistic(const DOMElement& info, const XMLCh* name, double& value) {
  return ReadDoubleAttribute(info, name, value) != RQXNumberAttribute::Bad;
}

RQStatus ReadSummary(const DOMElement& info, RQUniStats::SummStats& summary) {
  if (!ReadStatistic(info, u"minimum", summary.minimum)) return kBad;
  if (!ReadStatistic(info, u"maximum", summary.maximum)) return kBad;
  if (!ReadStatistic(info, u"mean", summary.mean)) return kBad;
  ReadStatistic(info, u"standardDeviation", summary.standardDeviation);  // no number counts as not given
  const double deviation = summary.standardDeviation;
  return IsGiven(deviation) && deviation < 0 ? kInvalid : RQStatus();
}

bool IsNumeric(const XMLCh* type) { return XStrEquals(type, u"real") || XStrEquals(type, u"int"); }

bool IsTextArray(const DOMElement& array) {
  const XMLCh* const type = AttributeOf(array, u"type");
  return type && XStrEquals(type, u"string");
}

/// The array of counts behind leading arrays of category texts; `first` when there is no other.
const DOMElement* SkipTexts(const DOMElement* first) {
  const DOMElement* array = first;
  while (array && IsTextArray(*array)) array = NextSibling(*array, kArray);
  return array ? array : first;
}

/// Takes the margins of one interval after the other as cut points.
class CutPoints {
 public:
  explicit CutPoints(std::vector<double>& points) : fPoints(points) {}

  /// True once an interval had no right margin: none may follow.
  bool IsOpenAbove() const { return fOpenAbove; }

  RQStatus Add(double left, double right) {
    if (RQStatus status = AddLeft(left); !status.IsOK()) return status;
    fOpenAbove = !IsGiven(right);
    fPoints.push_back(right);
    return {};
  }

 private:
  RQStatus AddLeft(double left) {
    if (fPoints.empty()) {
      fPoints.push_back(left);
      return {};
    }
    if (!IsGiven(left) || left < fPoints.back()) return kContradiction;
    if (left > fPoints.back()) fPoints.push_back(left);  // a gap is an interval of its own
    return {};
  }

  std::vector<double>& fPoints;
  bool fOpenAbove = false;
};

}  // namespace

void RQPMMLParser::SetLenientStatistics(bool lenient) { fLenientStatistics = lenient; }

RQStatus RQPMMLParser::FillUniStats(RQUniStats& stats, const DOMElement*& cursor) const {
  if (const RQStatus status = GetReadiness(); !status.IsOK()) return status;
  if (!fModelElement) return {NoModelElement, false};
  cursor = cursor ? NextSibling(*cursor, kUnivariateStats)
                  : ChildOf(FirstChild(*fModelElement, u"ModelStats"), kUnivariateStats);
  if (!cursor) return {};
  std::string name;
  double total = 0;
  if (const RQStatus status = ReadHead(*cursor, name, total); !status.IsOK()) return status;
  const bool continuous = FirstChild(*cursor, u"NumericInfo") != nullptr;
  RQUniStats result;
  const RQStatus status =
      continuous ? FillUniStatsCont(result, name, total, *cursor) : FillUniStatsCat(result, name, total, *cursor);
  if (!status.IsOK()) return status;
  // A total that was read is not missing: where it is, nothing was built, and the caller's object is judged.
  const bool built = IsGiven(result.GetTotalFrequency());
  if (!(built ? result : stats).IsValid()) return kInvalid;
  if (built) stats = std::move(result);
  return {};
}

RQStatus RQPMMLParser::FillUniStatsCat(RQUniStats& stats, const std::string& name, double total,
                                       const DOMElement& element) const {
  const DOMElement* array = ChildOf(FirstChild(element, u"DiscrStats"), kArray);
  if (!array) return kNoChild;
  if (fLenientStatistics) array = SkipTexts(array);
  std::vector<double> frequencies;
  if (const RQStatus status = ReadFrequencies(frequencies, *array); !status.IsOK()) return status;
  stats = RQUniStats(name, total, frequencies);
  return {};
}

RQStatus RQPMMLParser::FillUniStatsCont(RQUniStats& stats, const std::string& name, double total,
                                        const DOMElement& element) const {
  const DOMElement* const info = FirstChild(element, u"NumericInfo");
  if (!info) return kNoChild;
  RQUniStats::SummStats summary;
  if (const RQStatus status = ReadSummary(*info, summary); !status.IsOK()) return status;
  std::vector<double> cutPoints;
  std::vector<double> frequencies;
  const DOMElement* const contStats = FirstChild(element, u"ContStats");
  if (!contStats && !fLenientStatistics) return {};  // the caller's object is judged as it stands
  if (contStats) {
    bool openAtLeft = true;
    const RQStatus status = FillCutPointsFreqs(cutPoints, frequencies, openAtLeft, *contStats);
    if (!status.IsOK()) return status;
  }
  stats = RQUniStats(name, total, summary, cutPoints, frequencies);
  return {};
}

RQStatus RQPMMLParser::ReadFrequencies(std::vector<double>& frequencies, const DOMElement& array) const {
  const XMLCh* const type = AttributeOf(array, u"type");
  if (!type) return kMissing;
  if (!IsNumeric(type)) return kBad;
  const auto negative = [](double frequency) { return frequency < 0; };
  if (!AssembleDoublesList(array, frequencies) || std::any_of(frequencies.begin(), frequencies.end(), negative)) {
    return {BadFrequencies, false};
  }
  return {};
}

RQStatus RQPMMLParser::FillCutPointsFreqs(std::vector<double>& cutPoints, std::vector<double>& frequencies,
                                          bool& openAtLeft, const DOMElement& contStats) const {
  cutPoints.clear();
  frequencies.clear();
  openAtLeft = true;
  CutPoints collected(cutPoints);
  for (auto* interval = FirstChild(contStats, Names::kInterval); interval;
       interval = NextSibling(*interval, Names::kInterval)) {
    if (collected.IsOpenAbove()) return kContradiction;
    double left = 0;
    double right = 0;
    bool open = true;
    if (const RQStatus status = ExtractInterval(left, right, open, *interval); !status.IsOK()) return status;
    if (cutPoints.empty()) openAtLeft = open;
    if (open != openAtLeft) return kContradiction;
    if (const RQStatus status = collected.Add(left, right); !status.IsOK()) return status;
  }
  if (cutPoints.empty()) return {};
  const DOMElement* const array = FirstChild(contStats, kArray);
  if (!array) return kNoChild;
  if (const RQStatus status = ReadFrequencies(frequencies, *array); !status.IsOK()) return status;
  const bool consistent = frequencies.empty() ? cutPoints.size() <= 1 : cutPoints.size() == frequencies.size() + 1;
  return consistent ? RQStatus() : kContradiction;
}

RQStatus RQPMMLParser::ExtractInterval(double& left, double& right, bool& openAtLeft,
                                       const DOMElement& interval) const {
  left = RQMV::gMissingValue;
  right = RQMV::gMissingValue;
  if (ReadDoubleAttribute(interval, Names::kLeftMargin, left) == RQXNumberAttribute::Bad) return kBad;
  switch (ReadDoubleAttribute(interval, Names::kRightMargin, right)) {
    case RQXNumberAttribute::Bad:
      return kBad;
    case RQXNumberAttribute::Good:
      if (IsGiven(left) && left >= right) return kBad;
      break;
    case RQXNumberAttribute::Absent:
      if (!IsGiven(left)) return kMissing;
      break;
  }
  const XMLCh* const closure = AttributeOf(interval, u"closure");
  if (!closure) return kMissing;
  openAtLeft = XStrEquals(closure, u"openOpen") || XStrEquals(closure, u"openClosed");
  return {};
}

}  // namespace RQXPrsUtil
