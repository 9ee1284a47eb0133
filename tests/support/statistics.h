#ifndef TESTS_SUPPORT_STATISTICS_H
#define TESTS_SUPPORT_STATISTICS_H

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "rqxml/common/RQUniStats.h"
#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"

namespace rqtest {

// Documents

/// A document with one model, called "Model", around the content of its statistics.
inline std::string WithModelStats(const std::string& content) {
  return Pmml("<DataDictionary/><Model><ModelStats>" + content + "</ModelStats></Model>");
}

/// The statistics of the field v with the total 10, around what follows the counts.
inline std::string Univariate(const std::string& content) {
  return "<UnivariateStats field='v'><Counts totalFreq='10'/>" + content + "</UnivariateStats>";
}

/// A discrete field, around the content of its "DiscrStats".
inline std::string Discrete(const std::string& content) {
  return Univariate("<DiscrStats>" + content + "</DiscrStats>");
}

/// A continuous field, around the content of its "ContStats".
inline std::string Histogram(const std::string& content) {
  return Univariate("<NumericInfo/><ContStats>" + content + "</ContStats>");
}

inline std::string IntArray(const std::string& numbers) { return "<Array type='int'>" + numbers + "</Array>"; }

/// An interval with margins unless they are empty.
inline std::string Interval(const std::string& left, const std::string& right,
                            const std::string& closure = "closedOpen") {
  return "<Interval" + (left.empty() ? "" : " leftMargin='" + left + "'") +
         (right.empty() ? "" : " rightMargin='" + right + "'") + " closure='" + closure + "'/>";
}

// Outcomes

/// Everything that is known about the statistics, in a line.
inline std::string Show(const RQMTD_NAMESPACE::RQUniStats& stats) {
  std::string text = Show(stats.GetName()) + " " + Show(stats.GetTotalFrequency()) + " ";
  if (!stats.IsContinuous()) return text + Show(stats.GetFrequencies());
  const auto& summary = stats.GetSummStats();
  return text + Show(summary.minimum) + ".." + Show(summary.maximum) + " mean " + Show(summary.mean) + " sd " +
         Show(summary.standardDeviation) + " cuts " + Show(stats.GetCutPoints()) + " " + Show(stats.GetFrequencies());
}

inline std::string ShowStatus(const RQCommon::RQStatus& status) {
  std::ostringstream out;
  PrintTo(status, &out);
  return out.str();
}

/// A fixture with a parser whose statistics are asked for.
class WithStatistics : public WithPlatform {
 protected:
  /// Parses the document and chooses the first element called "Model".
  void LoadDocument(const std::string& document) {
    ASSERT_EQ(Parse(parser_, document), Ok()) << document;
    ASSERT_TRUE(parser_.SetModelElmt(*RQXPrsUtil::GetFirstChildElmt(*parser_.GetRootElement(), "Model")));
  }
  void Load(const std::string& content) { LoadDocument(WithModelStats(content)); }

  /// What the caller's object holds before it is filled.
  static RQMTD_NAMESPACE::RQUniStats Before() { return {"before", 3, {1, 2}}; }

  /// Reads the next field: the status and, when it is good, what is in the object. A failure must keep the object, be
  /// it valid or not, and move the cursor to the same place.
  std::string Next(const xercesc::DOMElement*& cursor) const {
    RQMTD_NAMESPACE::RQUniStats stats = Before();
    RQMTD_NAMESPACE::RQUniStats invalid;
    const xercesc::DOMElement* other = cursor;
    const RQCommon::RQStatus status = parser_.FillUniStats(stats, cursor);
    const RQCommon::RQStatus otherStatus = parser_.FillUniStats(invalid, other);
    EXPECT_EQ(cursor, other);
    if (status.IsOK()) return Show(stats) == Show(Before()) ? "OK: kept" : "OK: " + Show(stats);
    EXPECT_EQ(status, otherStatus);
    EXPECT_EQ(Show(stats), Show(Before())) << "a failure keeps the object";
    EXPECT_EQ(Show(invalid), Show(RQMTD_NAMESPACE::RQUniStats())) << "a failure keeps the object";
    return ShowStatus(status);
  }

  /// Loads the statistics of one field and reads them.
  std::string Read(const std::string& univariate) {
    Load(univariate);
    const xercesc::DOMElement* cursor = nullptr;
    std::string text = Next(cursor);
    EXPECT_NE(cursor, nullptr) << univariate;
    return text;
  }

  RQXPrsUtil::RQPMMLParser parser_;
};

}  // namespace rqtest

#endif
