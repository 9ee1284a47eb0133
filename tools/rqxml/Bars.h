#ifndef RQXML_TOOLS_BARS_H
#define RQXML_TOOLS_BARS_H

#include <optional>
#include <string>
#include <vector>

#include "FieldStatistics.h"

namespace rqtool {

/// One bar of a histogram, with the texts that tell it; the texts are printable.
struct Bar {
  std::string label;  ///< the interval or the category
  std::string count;
  std::string share;  ///< in percent of all counts
  double length;      ///< relative to the longest bar, 0 to 1
};

/// The bars of a field whose status is OK.
std::vector<Bar> MakeBars(const FieldStatistics& field);

/// The sum of the counts.
double CountedIn(const FieldStatistics& field);

/// The name of the field, or words for none; printable.
std::string FieldTitle(const FieldStatistics& field);

/// How many cases there are, were counted, have no value and have an invalid one, as far as the document tells.
std::vector<std::string> CaseTexts(const FieldStatistics& field);

/// The summary statistics that the document gives.
std::vector<std::string> SummaryTexts(const FieldStatistics& field);

/// What the lenient reading did; empty when it was not used.
std::string LenienceText(const FieldStatistics& field);

/// Where the mean and one standard deviation around it lie between the minimum and the maximum, 0 to 1.
struct Spread {
  double low;
  double mean;
  double high;
};

/// The spread of a continuous field; nothing unless minimum, maximum and mean are given and in order. Without a
/// standard deviation low and high are the mean.
std::optional<Spread> SpreadOf(const FieldStatistics& field);

}  // namespace rqtool

#endif
