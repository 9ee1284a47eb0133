#include "rqxml/common/RQXMLFormat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <vector>

#include "rqxml/common/RQMV.h"
#include "tests/support/comma_locale.h"

namespace {

using RQXML_NAMESPACE::Format;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr double kSmallestNormal = std::numeric_limits<double>::min();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

struct Row {
  double value;
  const char* text;
  const char* withPoint;
};

const Row kRows[] = {
    {0, "0", "0.0"},
    {-0.0, "0", "0.0"},
    {3, "3", "3.0"},
    {-3, "-3", "-3.0"},
    {10, "10", "10.0"},
    {100000, "100000", "100000.0"},
    {-100000, "-100000", "-100000.0"},
    {1e14, "100000000000000", "100000000000000.0"},
    {999999999999999, "999999999999999", "999999999999999.0"},
    {-999999999999999, "-999999999999999", "-999999999999999.0"},
    {1e15, "1e+15", "1.0e+15"},
    {-1e15, "-1e+15", "-1.0e+15"},
    {1000000000000001, "1000000000000001", "1000000000000001.0"},
    {9007199254740992, "9007199254740992", "9007199254740992.0"},
    {1e16, "1e+16", "1.0e+16"},
    {1.5e16, "1.5e+16", "1.5e+16"},
    {123456789012345680.0, "123456789012345680", "123456789012345680.0"},
    {9223372036854775808.0, "9223372036854775808", "9223372036854775808.0"},
    {1e22, "1e+22", "1.0e+22"},
    {-1234567890123456774144.0, "-1234567890123456774144", "-1234567890123456774144.0"},
    {1e300, "1e+300", "1.0e+300"},
    {-1e300, "-1e+300", "-1.0e+300"},
    {1.5e300, "1.5e+300", "1.5e+300"},
    {0.1, "0.1", "0.1"},
    {-0.1, "-0.1", "-0.1"},
    {0.5, "0.5", "0.5"},
    {1.5, "1.5", "1.5"},
    {123456.789, "123456.789", "123456.789"},
    {0.001, "0.001", "0.001"},
    {0.0001, "1e-04", "1e-04"},
    {1e-7, "1e-07", "1e-07"},
    {-1e-7, "-1e-07", "-1e-07"},
    {1.5e-7, "1.5e-07", "1.5e-07"},
    {1e-300, "1e-300", "1e-300"},
    {0.1 + 0.2, "0.30000000000000004", "0.30000000000000004"},
    {1.0 / 3, "0.3333333333333333", "0.3333333333333333"},
    {999999999999999.9, "999999999999999.9", "999999999999999.9"},
    {kHighest, "1.7976931348623157e+308", "1.7976931348623157e+308"},
    {std::nextafter(-kHighest, 0), "-1.7976931348623155e+308", "-1.7976931348623155e+308"},
    {kSmallestNormal, "2.2250738585072014e-308", "2.2250738585072014e-308"},
    {-kSmallestNormal, "-2.2250738585072014e-308", "-2.2250738585072014e-308"},
    {kTiny, "5e-324", "5e-324"},
    {-kTiny, "-5e-324", "-5e-324"},
    {-kHighest, "NaN", "NaN"},
    {kNaN, "NaN", "NaN"},
    {kInfinity, "INF", "INF"},
    {-kInfinity, "-INF", "-INF"},
};

// The same doubles in every run: any bit pattern, whole numbers of any size, and decimal fractions.
std::vector<double> Samples() {
  constexpr int kCount = 20000;
  std::mt19937_64 random(20240229);
  std::vector<double> samples;
  for (int i = 0; i < kCount; ++i) {
    const std::uint64_t bits = random();
    double any = 0;
    std::memcpy(&any, &bits, sizeof any);
    samples.push_back(any);
    samples.push_back(static_cast<double>(static_cast<std::int64_t>(bits) >> (bits % 64)));
    samples.push_back(static_cast<double>(static_cast<std::int64_t>(random()) >> 20) / std::pow(10.0, bits % 20));
    samples.push_back(std::ldexp(1.0, static_cast<int>(bits % 2098) - 1074));
  }
  return samples;
}

bool IsWhole(double value) { return std::trunc(value) == value; }

double ReadBack(const std::string& text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  EXPECT_EQ(result.ptr, text.data() + text.size()) << text;
  return value;
}

// The fewest significant digits that identify the number, found by trying all counts.
int FewestDigits(double value) {
  std::array<char, 64> buffer;
  for (int digits = 1; digits < 17; ++digits) {
    std::snprintf(buffer.data(), buffer.size(), "%.*e", digits - 1, value);
    if (std::strtod(buffer.data(), nullptr) == value) return digits;
  }
  return 17;
}

// How long the exponent form with the fewest digits is.
std::size_t ExponentFormLength(double value) {
  std::array<char, 64> buffer;
  return static_cast<std::size_t>(std::snprintf(buffer.data(), buffer.size(), "%.*e", FewestDigits(value) - 1, value));
}

TEST(Format, WritesTheShortestTextAndKeepsThePointWhereAsked) {
  for (const Row& row : kRows) {
    EXPECT_EQ(Format(row.value, false, nullptr), row.text);
    EXPECT_EQ(Format(row.value, true, nullptr), row.withPoint);
  }
}

TEST(Format, WritesTheSystemMissingValueAsNaN) { EXPECT_EQ(Format(RQMV::gMissingValue, false, nullptr), "NaN"); }

TEST(Format, WritesEveryNotANumberAsNaN) {
  EXPECT_EQ(Format(-kNaN, false, nullptr), "NaN");
  EXPECT_EQ(Format(std::nan("12345"), true, nullptr), "NaN");
}

TEST(Format, EveryTextReadsBackAsTheSameNumber) {
  for (const double value : Samples()) {
    if (!std::isfinite(value)) continue;
    for (const bool flag : {false, true}) {
      const std::string text = Format(value, flag, nullptr);
      ASSERT_EQ(ReadBack(text), value) << text;
      ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
    }
  }
}

TEST(Format, NoTextIsLongerThanTheExponentFormWithTheFewestDigits) {
  for (const double value : Samples()) {
    if (!std::isfinite(value) || value == RQMV::gMissingValue) continue;
    if (IsWhole(value) && std::fabs(value) < 1e15) continue;
    const std::string text = Format(value, false, nullptr);
    ASSERT_LE(text.size(), ExponentFormLength(value)) << text;
  }
}

TEST(Format, WholeNumbersBelowTenToTheFifteenthStandInPlainDigits) {
  int seen = 0;
  for (const double value : Samples()) {
    if (!IsWhole(value) || std::fabs(value) >= 1e15) continue;
    ++seen;
    const std::string expected = std::to_string(static_cast<long long>(value));
    ASSERT_EQ(Format(value, false, nullptr), expected);
    ASSERT_EQ(Format(value, true, nullptr), expected + ".0");
  }
  EXPECT_GT(seen, 10000);
}

TEST(Format, TheFlagPutsAPointIntoEveryWholeNumberAndChangesNoOther) {
  for (const double value : Samples()) {
    const std::string text = Format(value, false, nullptr);
    const std::string flagged = Format(value, true, nullptr);
    if (!std::isfinite(value) || !IsWhole(value)) {
      ASSERT_EQ(flagged, text);
    } else {
      ASSERT_NE(flagged.find('.'), std::string::npos) << flagged;
      ASSERT_EQ(flagged.size(), text.size() + (text.find('.') == std::string::npos ? 2 : 0)) << flagged;
    }
  }
}

// What a caller's buffer receives is the returned text and nothing beyond its zero. Returns the text's length.
std::size_t CheckedLength(double value, bool flag) {
  constexpr char kUntouched = '#';
  std::array<char, 40> buffer;
  buffer.fill(kUntouched);
  const std::string text = Format(value, flag, buffer.data());
  EXPECT_LT(text.size(), 32U) << text;
  EXPECT_EQ(std::memcmp(buffer.data(), text.c_str(), text.size() + 1), 0) << text;
  for (std::size_t i = text.size() + 1; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], kUntouched) << text;
  return text.size();
}

TEST(Format, TheBufferReceivesTheSameTextWithinThirtyTwoBytes) {
  std::vector<double> values = Samples();
  for (const Row& row : kRows) values.push_back(row.value);
  std::size_t longest = 0;
  std::size_t longestFlagged = 0;
  for (const double value : values) {
    longest = std::max(longest, CheckedLength(value, false));
    longestFlagged = std::max(longestFlagged, CheckedLength(value, true));
    if (HasFailure()) return;
  }
  // The longest texts there are: 17 digits with sign and a three-digit exponent, and 22 plain digits with sign, point
  // and zero. Shorter ones would mean that the samples do not prove what they should.
  EXPECT_EQ(longest, 24U);
  EXPECT_EQ(longestFlagged, 25U);
}

// Restores the runtime's and the standard library's locale.
class LocaleKeeper {
 public:
  LocaleKeeper() : fName(std::setlocale(LC_ALL, nullptr)) {}
  ~LocaleKeeper() {
    std::locale::global(fLocale);
    std::setlocale(LC_ALL, fName.c_str());
  }
  LocaleKeeper(const LocaleKeeper&) = delete;
  LocaleKeeper& operator=(const LocaleKeeper&) = delete;

 private:
  std::string fName;
  std::locale fLocale;
};

class CommaPoint : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

void ExpectTextsOfTheTable() {
  for (const Row& row : kRows) {
    EXPECT_EQ(Format(row.value, false, nullptr), row.text);
    EXPECT_EQ(Format(row.value, true, nullptr), row.withPoint);
  }
}

TEST(Format, IgnoresTheStandardLibrarysGlobalLocale) {
  const LocaleKeeper keeper;
  std::locale::global(std::locale(std::locale::classic(), new CommaPoint));  // the locale owns its facet
  ExpectTextsOfTheTable();
}

TEST(Format, IgnoresALocaleWithADecimalComma) {
  const rqtest::CommaLocale locale;
  ASSERT_TRUE(locale.IsSet());
  ExpectTextsOfTheTable();
}

}  // namespace
