// A megabyte of statistics is read in bounded time, whatever it is made of.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "tests/support/megabyte.h"
#include "tests/support/statistics.h"

namespace {

using rqtest::Discrete;
using rqtest::Histogram;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::MegabyteOf;
using rqtest::Univariate;

struct Hostile {
  const char* name;
  std::function<std::string()> make;
};

const Hostile kHostile[] = {
    {"ManyFields", [] { return MegabyteOf(Discrete(IntArray("1"))); }},
    {"ManyBadFields", [] { return MegabyteOf("<UnivariateStats/>"); }},
    {"ManyElementsBetweenTwoFields", [] { return Discrete("") + MegabyteOf("<a/>") + Discrete(""); }},
    {"ManyChildrenBeforeTheCounts",
     [] { return "<UnivariateStats field='v'>" + MegabyteOf("<a/>") + "</UnivariateStats>"; }},
    {"ManyCounts", [] { return Discrete(IntArray(MegabyteOf("1 "))); }},
    {"ManyCountsThatTheXmlLibraryReads", [] { return Discrete(IntArray(MegabyteOf("+1 "))); }},
    {"ManyDigits", [] { return Discrete(IntArray(MegabyteOf("9"))); }},
    {"ManyBlanks", [] { return Discrete(IntArray(MegabyteOf(" "))); }},
    {"ManyTextArrays", [] { return Discrete(MegabyteOf("<Array type='string'/>") + IntArray("1")); }},
    {"LongTextArray", [] { return Discrete("<Array type='string'>" + MegabyteOf("a ") + "</Array>" + IntArray("1")); }},
    {"ManyIntervals",
     [] {
       std::string counts;
       const std::string intervals = MegabyteOf([&](std::size_t i) {
         counts += "1 ";
         return Interval(std::to_string(i), std::to_string(i + 1));
       });
       return Histogram(intervals + IntArray(counts));
     }},
    {"ManyChildrenBetweenIntervals",
     [] { return Histogram(Interval("0", "1") + MegabyteOf("<a/>") + Interval("1", "2") + IntArray("1 2")); }},
    {"LongClosure", [] { return Histogram(Interval("0", "1", MegabyteOf("open"))); }},
    {"LongName", [] { return "<UnivariateStats field='" + MegabyteOf("a") + "'/>"; }},
    {"ManyNumericInfos", [] { return Univariate(MegabyteOf("<NumericInfo mean='x'/>")); }},
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
