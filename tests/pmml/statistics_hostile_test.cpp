// A megabyte of statistics is read in bounded time, whatever it is made of.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "tests/support/statistics.h"

namespace {

using rqtest::Discrete;
using rqtest::Histogram;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::Univariate;

/// Pieces, numbered from zero, up to a megabyte.
std::string Fill(const std::function<std::string(std::size_t)>& piece) {
  std::string text;
  for (std::size_t i = 0; text.size() < 1000000; ++i) text += piece(i);
  return text;
}
std::string Fill(const std::string& piece) {
  return Fill([&](std::size_t) { return piece; });
}

struct Hostile {
  const char* name;
  std::function<std::string()> make;
};

const Hostile kHostile[] = {
    {"ManyFields", [] { return Fill(Discrete(IntArray("1"))); }},
    {"ManyBadFields", [] { return Fill("<UnivariateStats/>"); }},
    {"ManyElementsBetweenTwoFields", [] { return Discrete("") + Fill("<a/>") + Discrete(""); }},
    {"ManyChildrenBeforeTheCounts", [] { return "<UnivariateStats field='v'>" + Fill("<a/>") + "</UnivariateStats>"; }},
    {"ManyCounts", [] { return Discrete(IntArray(Fill("1 "))); }},
    {"ManyCountsThatTheXmlLibraryReads", [] { return Discrete(IntArray(Fill("+1 "))); }},
    {"ManyDigits", [] { return Discrete(IntArray(Fill("9"))); }},
    {"ManyBlanks", [] { return Discrete(IntArray(Fill(" "))); }},
    {"ManyTextArrays", [] { return Discrete(Fill("<Array type='string'/>") + IntArray("1")); }},
    {"LongTextArray", [] { return Discrete("<Array type='string'>" + Fill("a ") + "</Array>" + IntArray("1")); }},
    {"ManyIntervals",
     [] {
       std::string counts;
       const std::string intervals = Fill([&](std::size_t i) {
         counts += "1 ";
         return Interval(std::to_string(i), std::to_string(i + 1));
       });
       return Histogram(intervals + IntArray(counts));
     }},
    {"ManyChildrenBetweenIntervals",
     [] { return Histogram(Interval("0", "1") + Fill("<a/>") + Interval("1", "2") + IntArray("1 2")); }},
    {"LongClosure", [] { return Histogram(Interval("0", "1", Fill("open"))); }},
    {"LongName", [] { return "<UnivariateStats field='" + Fill("a") + "'/>"; }},
    {"ManyNumericInfos", [] { return Univariate(Fill("<NumericInfo mean='x'/>")); }},
};

class HostileStatistics : public rqtest::WithStatistics, public ::testing::WithParamInterface<Hostile> {};

TEST_P(HostileStatistics, AreReadInBoundedTime) {
  const std::string statistics = GetParam().make();
  const auto start = std::chrono::steady_clock::now();
  Load(statistics);
  for (const bool lenient : {false, true}) {
    parser_.SetLenientStatistics(lenient);
    const xercesc::DOMElement* cursor = nullptr;
    RQMTD_NAMESPACE::RQUniStats stats;
    do parser_.FillUniStats(stats, cursor);
    while (cursor);
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_LT(seconds.count(), 20);
}

INSTANTIATE_TEST_SUITE_P(Each, HostileStatistics, ::testing::ValuesIn(kHostile),
                         [](const ::testing::TestParamInfo<Hostile>& row) { return std::string(row.param.name); });

}  // namespace
