#include "reference_statistics.h"

#include <algorithm>
#include <limits>
#include <string>
#include <xercesc/dom/DOM.hpp>

#include "reference_text.h"
#include "slow_dom.h"

namespace rqxml_fuzz {
namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQUniStats;
using xercesc::DOMElement;
using xercesc::DOMNode;

constexpr double kMissing = std::numeric_limits<double>::lowest();

/// Thrown at the first fault, with its code.
struct Fault {
  long code;
};

[[noreturn]] void Fail(long code) { throw Fault{code}; }

const DOMElement& Child(const DOMElement& element, const std::string& tag) {
  const DOMElement* child = FirstChild(element, tag);
  if (child == nullptr) Fail(113);
  return *child;
}

/// An attribute that is missing when absent and otherwise must be a number.
double OptionalNumber(const DOMElement& element, const std::string& name) {
  if (AttributeText(element, name) == nullptr) return kMissing;
  const auto number = NumberAttribute(element, name);
  if (!number) Fail(109);
  return *number;
}

std::vector<double> ReadArray(const DOMElement& array) {
  const auto type = Attribute(array, "type");
  if (!type) Fail(108);
  if (*type != "real" && *type != "int") Fail(109);
  const DOMNode* content = array.getFirstChild();
  if (content == nullptr) return {};
  if (content->getNextSibling() != nullptr || content->getNodeType() != DOMNode::TEXT_NODE) Fail(114);
  const auto numbers = SlowDoubles(content->getNodeValue());
  if (!numbers || std::any_of(numbers->begin(), numbers->end(), [](double number) { return number < 0; })) Fail(114);
  return *numbers;
}

struct Interval {
  double left = kMissing;
  double right = kMissing;
  bool openAtLeft = false;
};

Interval ReadInterval(const DOMElement& element) {
  Interval interval;
  interval.left = OptionalNumber(element, "leftMargin");
  interval.right = OptionalNumber(element, "rightMargin");
  if (AttributeText(element, "rightMargin") == nullptr) {
    if (interval.left == kMissing) Fail(108);
  } else if (interval.left != kMissing && interval.left >= interval.right) {
    Fail(109);
  }
  const auto closure = Attribute(element, "closure");
  if (!closure) Fail(108);
  interval.openAtLeft = *closure == "openOpen" || *closure == "openClosed";
  return interval;
}

struct Histogram {
  std::vector<double> cutPoints;
  std::vector<double> frequencies;
};

void Append(const Interval& interval, bool first, std::vector<double>& cutPoints) {
  if (first) {
    cutPoints.push_back(interval.left);
  } else if (interval.left == kMissing || interval.left < cutPoints.back()) {
    Fail(115);
  } else if (interval.left > cutPoints.back()) {
    cutPoints.push_back(interval.left);
  }
  cutPoints.push_back(interval.right);
}

Histogram ReadHistogram(const DOMElement& contStats) {
  Histogram histogram;
  std::vector<Interval> intervals;
  for (const DOMElement* element : Children(contStats, "Interval")) {
    if (!intervals.empty() && intervals.back().right == kMissing) Fail(115);
    intervals.push_back(ReadInterval(*element));
    if (intervals.back().openAtLeft != intervals.front().openAtLeft) Fail(115);
    Append(intervals.back(), intervals.size() == 1, histogram.cutPoints);
  }
  if (intervals.empty()) return histogram;
  histogram.frequencies = ReadArray(Child(contStats, "Array"));
  const std::size_t needed = histogram.frequencies.empty() ? 1 : histogram.frequencies.size() + 1;
  if (histogram.cutPoints.size() != needed) Fail(115);
  return histogram;
}

RQUniStats::SummStats ReadSummary(const DOMElement& info) {
  RQUniStats::SummStats summary;
  summary.minimum = OptionalNumber(info, "minimum");
  summary.maximum = OptionalNumber(info, "maximum");
  summary.mean = OptionalNumber(info, "mean");
  summary.standardDeviation = NumberAttribute(info, "standardDeviation").value_or(kMissing);
  if (summary.standardDeviation != kMissing && summary.standardDeviation < 0) Fail(116);
  return summary;
}

std::vector<double> ReadCounts(const DOMElement& discrStats, bool lenient) {
  const DOMElement* array = &Child(discrStats, "Array");
  const auto arrays = Children(discrStats, "Array");
  const auto counts = std::find_if(arrays.begin(), arrays.end(), [](const DOMElement* candidate) {
    return Attribute(*candidate, "type").value_or("") != "string";
  });
  if (lenient && counts != arrays.end()) array = *counts;
  return ReadArray(*array);
}

std::optional<RQUniStats> ReadField(const DOMElement& element, bool lenient) {
  const auto name = Attribute(element, "field");
  if (!name) Fail(108);
  const DOMElement& counts = Child(element, "Counts");
  if (AttributeText(counts, "totalFreq") == nullptr) Fail(108);
  const double total = OptionalNumber(counts, "totalFreq");
  if (total < 0) Fail(109);
  const DOMElement* info = FirstChild(element, "NumericInfo");
  if (info == nullptr) return RQUniStats(*name, total, ReadCounts(Child(element, "DiscrStats"), lenient));
  const RQUniStats::SummStats summary = ReadSummary(*info);
  const DOMElement* contStats = FirstChild(element, "ContStats");
  if (contStats == nullptr && !lenient) return std::nullopt;
  const Histogram histogram = contStats == nullptr ? Histogram() : ReadHistogram(*contStats);
  return RQUniStats(*name, total, summary, histogram.cutPoints, histogram.frequencies);
}

}  // namespace

std::vector<SlowStatistics> SlowUniStats(const DOMElement& model, bool lenient) {
  std::vector<SlowStatistics> all;
  const DOMElement* modelStats = FirstChild(model, "ModelStats");
  if (modelStats == nullptr) return all;
  for (const DOMElement* element : Children(*modelStats, "UnivariateStats")) {
    SlowStatistics& statistics = all.emplace_back();
    statistics.element = element;
    try {
      statistics.built = ReadField(*element, lenient);
    } catch (const Fault& fault) {
      statistics.status = RQStatus(fault.code, false);
    }
    if (!statistics.built || statistics.built->IsValid()) continue;
    statistics.status = RQStatus(116, false);
    statistics.built.reset();
  }
  return all;
}

}  // namespace rqxml_fuzz
