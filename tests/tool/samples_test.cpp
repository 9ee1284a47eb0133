#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::ToolResult;
using ::testing::HasSubstr;

namespace {

// Documents by other producers, which are no part of the project.
std::vector<std::string> Samples() {
  const char* const folder = std::getenv("RQXML_SAMPLES");
  std::vector<std::string> samples;
  if (folder == nullptr) return samples;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".pmml") samples.push_back(entry.path().string());
  }
  return samples;
}

// The names of the fields, read without any XML parser. None of the documents has entities in them.
std::vector<std::string> FieldNames(const std::string& document) {
  const std::regex pattern("<DataField\\s[^>]*\\bname=\"([^\"]*)\"");
  std::vector<std::string> names;
  for (std::sregex_iterator i(document.begin(), document.end(), pattern), end; i != end; ++i) names.push_back((*i)[1]);
  return names;
}

TEST(Samples, GiveAVariableForEachFieldOrTellTheFieldThatIsNotRead) {
  const std::vector<std::string> samples = Samples();
  if (samples.empty()) GTEST_SKIP() << "RQXML_SAMPLES names no folder with PMML documents";
  for (const std::string& sample : samples) {
    const std::string document = ReadFile(sample);
    const ToolResult result = RunTool({"vars", "--json", sample});
    if (document.find("dataType=\"boolean\"") != std::string::npos) {
      EXPECT_EQ(result.exitCode, 1) << sample << result;
      EXPECT_THAT(result.err, HasSubstr("dataType=\"boolean\" is not read\n  status 109"));
      continue;
    }
    EXPECT_EQ(result.exitCode, 0) << sample << result;
    std::vector<std::string> names;
    const json parsed = json::parse(result.out);
    for (const json& variable : parsed.at("variables")) names.push_back(variable.at("name"));
    EXPECT_EQ(names, FieldNames(document)) << sample;
  }
}

TEST(Samples, GiveBinsOrTellTheFieldThatHasNone) {
  const std::vector<std::string> samples = Samples();
  if (samples.empty()) GTEST_SKIP() << "RQXML_SAMPLES names no folder with PMML documents";
  for (const std::string& sample : samples) {
    const ToolResult result = RunTool({"vars", "--bins", sample});
    if (result.exitCode == 0) continue;
    EXPECT_EQ(result.exitCode, 1) << sample << result;
    EXPECT_THAT(result.err, ::testing::AnyOf(HasSubstr("status 110"), HasSubstr("status 109"))) << sample;
    EXPECT_THAT(result.err, HasSubstr(": DataField \"")) << sample;
  }
}

// The statistics of all fields, read without any XML parser: each as it is written.
std::vector<std::string> StatisticsIn(const std::string& document) {
  const std::string start = "<UnivariateStats";
  const std::string end = "</UnivariateStats>";
  std::vector<std::string> statistics;
  for (auto at = document.find(start); at != std::string::npos; at = document.find(start, at + 1)) {
    statistics.push_back(document.substr(at, document.find(end, at) - at));
  }
  return statistics;
}

TEST(Samples, GiveTheStatisticsOfEachFieldThatHasCounts) {
  const std::vector<std::string> samples = Samples();
  if (samples.empty()) GTEST_SKIP() << "RQXML_SAMPLES names no folder with PMML documents";
  for (const std::string& sample : samples) {
    const std::vector<std::string> written = StatisticsIn(ReadFile(sample));
    const ToolResult result = RunTool({"stats", "--json", sample});
    const json read = json::parse(result.out).at("statistics");
    ASSERT_EQ(read.size(), written.size()) << sample;
    for (std::size_t i = 0; i < written.size(); ++i) {
      const bool counted = written[i].find("<Counts") != std::string::npos;
      EXPECT_EQ(read[i].at("status").at("code"), counted ? 0 : 113) << sample << written[i];
      EXPECT_THAT(written[i], HasSubstr("field=\"" + read[i].at("field").get<std::string>() + '"'));
      if (!counted || read[i].at("continuous")) continue;
      double sum = 0;
      for (const json& frequency : read[i].at("frequencies")) sum += frequency.get<double>();
      EXPECT_EQ(sum, read[i].at("totalFrequency").get<double>()) << sample;
      EXPECT_EQ(read[i].at("categories").size(), read[i].at("frequencies").size()) << sample;
    }
  }
}

}  // namespace
