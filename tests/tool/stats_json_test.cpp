#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/stats_support.h"

using json = nlohmann::ordered_json;
using rqtest::Statistics;
using rqtest::Stats;
using rqtest::StatsJson;
using rqtest::ToolResult;
using rqtest::WithModels;
using rqtest::WithStatistics;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr const char* kTextsFirst =
    "<DiscrStats><Array type='string'>a b</Array><Array type='int'>1 2</Array></DiscrStats>";
constexpr const char* kNoHistogram = "<NumericInfo minimum='1'/>";

std::vector<std::string> Members(const json& object) {
  std::vector<std::string> members;
  for (const auto& [name, value] : object.items()) members.push_back(name);
  return members;
}

TEST(StatsJson, HasItsMembersInOrder) {
  const json document = StatsJson(WithStatistics(Statistics("k", kTextsFirst)));
  EXPECT_THAT(Members(document), ElementsAre("file", "model", "statistics", "modelElement", "modelNumber", "models"));
  EXPECT_THAT(Members(document.at("statistics")[0]),
              ElementsAre("field", "status", "continuous", "totalFrequency", "minimum", "maximum", "mean",
                          "standardDeviation", "cutPoints", "frequencies", "categories", "labels", "closures",
                          "missingFrequency", "invalidFrequency", "lenient", "problem"));
}

TEST(StatsJson, OfAContinuousFieldHasNullForWhatIsSystemMissing) {
  const json document = StatsJson(WithStatistics(
      "<UnivariateStats field='age'><Counts totalFreq='10.5' missingFreq='2'/><NumericInfo minimum='NaN' mean='0.1' "
      "standardDeviation='x'/><ContStats><Interval closure='openClosed' rightMargin='5'/><Interval "
      "closure='openOpen' leftMargin='7'/><Array type='real'>1 0 2.5</Array></ContStats></UnivariateStats>"));
  EXPECT_EQ(document, json::parse(R"({
    "file": "-", "model": "m", "statistics": [{
      "field": "age", "status": {"code": 0, "flag": false}, "continuous": true, "totalFrequency": 10.5,
      "minimum": null, "maximum": null, "mean": 0.1, "standardDeviation": null,
      "cutPoints": [null, 5, 7, null], "frequencies": [1, 0, 2.5], "categories": [], "labels": [],
      "closures": ["openClosed", null, "openOpen"], "missingFrequency": 2, "invalidFrequency": null,
      "lenient": false, "problem": null}],
    "modelElement": "TreeModel", "modelNumber": 1, "models": 1})"));
}

TEST(StatsJson, OfACategoricalFieldHasTheTextsAndLabelsOfItsCategories) {
  const json document = StatsJson(
      "<PMML><DataDictionary><DataField name='k' optype='categorical' dataType='string'>"
      "<Value value='?' property='missing'/><Value value='b'/><Value value='a' displayValue='first'/></DataField>"
      "</DataDictionary><TreeModel><ModelStats>" +
      Statistics("k", kTextsFirst) + Statistics("k", "<DiscrStats><Array type='int'>3 4</Array></DiscrStats>") +
      "</ModelStats></TreeModel></PMML>");
  EXPECT_EQ(document.at("model"), nullptr);
  const json& texts = document.at("statistics")[0];
  EXPECT_EQ(texts.at("frequencies"), json::parse("[1, 2]"));
  EXPECT_EQ(texts.at("categories"), json::parse(R"(["a", "b"])"));
  EXPECT_EQ(texts.at("labels"), json::parse(R"(["first", ""])"));
  EXPECT_EQ(texts.at("lenient"), true);
  const json& dictionary = document.at("statistics")[1];
  EXPECT_EQ(dictionary.at("categories"), json::parse(R"(["b", "a"])"));
  EXPECT_EQ(dictionary.at("lenient"), false);
}

TEST(StatsContract, RefusesWhatOnlyTheLenientReadingUnderstands) {
  const std::string document = WithStatistics(Statistics("k", kTextsFirst) + Statistics("x", kNoHistogram));
  const json strict = StatsJson(document, {"--contract"});
  EXPECT_EQ(strict.at("statistics")[0].at("status").at("code"), 109);
  EXPECT_EQ(strict.at("statistics")[1].at("status").at("code"), 116);
  for (const json& field : strict.at("statistics")) EXPECT_EQ(field.at("lenient"), false);
  const json lenient = StatsJson(document);
  for (const json& field : lenient.at("statistics")) {
    EXPECT_EQ(field.at("status").at("code"), 0);
    EXPECT_EQ(field.at("lenient"), true);
  }
  const ToolResult text = Stats(document, {"--contract"});
  EXPECT_EQ(text.exitCode, 1) << text;
  EXPECT_THAT(text.out, HasSubstr("hint: without --contract these statistics are read\n"));
}

// Statistics that cannot be read, the code, and what is told.
struct Row {
  std::string statistics;
  long code;
  std::string problem;
};

std::string Continuous(const std::string& content) { return Statistics("f", "<NumericInfo/>" + content); }

std::string Intervals(const std::string& intervals, const std::string& counts = "1 1") {
  return Continuous("<ContStats>" + intervals + "<Array type='int'>" + counts + "</Array></ContStats>");
}

const std::vector<Row> kRows{
    {"<UnivariateStats/>", 108, "the attribute \"field\" is missing"},
    {"<UnivariateStats field='f'/>", 113, "it has no \"Counts\""},
    {"<UnivariateStats field='f'><Counts/></UnivariateStats>", 108, "\"Counts\" has no attribute \"totalFreq\""},
    {"<UnivariateStats field='f'><Counts totalFreq='x'/></UnivariateStats>", 109, "\"Counts\": totalFreq=\"x\" is no"},
    {"<UnivariateStats field='f'><Counts totalFreq='-1'/></UnivariateStats>", 109,
     "\"Counts\": totalFreq=\"-1\" is no"},
    {Statistics("f", ""), 113, "it has no \"NumericInfo\" and no \"DiscrStats\""},
    {Statistics("f", "<DiscrStats/>"), 113, "its \"DiscrStats\" has no \"Array\" of counts"},
    {Statistics("f", "<DiscrStats><Array>1</Array></DiscrStats>"), 108, "\"Array\" has no attribute \"type\""},
    {Statistics("f", "<DiscrStats><Array type='string'>a</Array></DiscrStats>"), 109, "\"Array\" has type=\"string\""},
    {Statistics("f", "<DiscrStats><Array type='Int'>1</Array></DiscrStats>"), 109, "\"Array\" has type=\"Int\""},
    {Statistics("f", "<DiscrStats><Array type='int'>+1 n/a</Array></DiscrStats>"), 114, "holds \"n/a\", no finite"},
    {Statistics("f", "<DiscrStats><Array type='int'>1 -1</Array></DiscrStats>"), 114, "holds \"-1\", no finite"},
    {Statistics("f", "<DiscrStats><Array type='int'>1<!-- -->2</Array></DiscrStats>"), 114,
     "broken up by other markup"},
    {Statistics("f", "<NumericInfo maximum='x'/>"), 109, "\"NumericInfo\": maximum=\"x\" is no finite number"},
    {Statistics("f", "<NumericInfo mean='INF'/>"), 109, "\"NumericInfo\": mean=\"INF\" is no finite number"},
    {Statistics("f", "<NumericInfo standardDeviation='-1'/>"), 116, "standardDeviation=\"-1\" is negative"},
    {Statistics("f", "<NumericInfo minimum='2' maximum='1'/><ContStats/>"), 116, "the minimum lies above the maximum"},
    {Statistics("", "<DiscrStats><Array type='int'>1</Array></DiscrStats>"), 116, "the name of the field is empty"},
    {Intervals("<Interval closure='openOpen'/>"), 108, "Interval number 1: it has no margin at all"},
    {Intervals("<Interval leftMargin='1' rightMargin='2'/>"), 108, "Interval number 1: the attribute \"closure\" is"},
    {Intervals("<Interval closure='openOpen' leftMargin='-INF' rightMargin='2'/>"), 109, "leftMargin=\"-INF\" is no"},
    {Intervals("<Interval closure='openOpen' leftMargin='2' rightMargin='2'/>"), 109, "does not lie below"},
    {Intervals("<Interval closure='openOpen' leftMargin='2'/><Interval closure='openOpen' leftMargin='3'/>"), 115,
     "Interval number 2: the interval before it is open above"},
    {Intervals("<Interval closure='openOpen' rightMargin='2'/><Interval closure='closedOpen' leftMargin='2'/>"), 115,
     "Interval number 2: it is closed on another side"},
    {Intervals("<Interval closure='openOpen' rightMargin='2'/><Interval closure='openOpen' rightMargin='3'/>"), 115,
     "Interval number 2: it has no left margin"},
    {Intervals("<Interval closure='openOpen' rightMargin='2'/><Interval closure='openOpen' leftMargin='1'/>"), 115,
     "Interval number 2: it begins before the end"},
    {Intervals("<Interval closure='openOpen' rightMargin='2'/><Interval closure='openOpen' leftMargin='3'/>"), 115,
     "there is not one count for each interval and each gap"},
    {Continuous("<ContStats><Interval closure='openOpen' rightMargin='2'/></ContStats>"), 113,
     "its \"ContStats\" has intervals and no \"Array\""},
    {Intervals("<Interval closure='openOpen' rightMargin='2'/>", "x"), 114, "holds \"x\", no finite number"},
};

TEST(StatsOfBadFields, TellTheStatusAndTheFaultAndGoOn) {
  for (const Row& row : kRows) {
    const std::string document =
        WithStatistics(row.statistics + Statistics("good", "<DiscrStats><Array type='int'>7</Array></DiscrStats>"));
    const json fields = StatsJson(document).at("statistics");
    ASSERT_EQ(fields.size(), 2u) << row.statistics;
    EXPECT_EQ(fields[0].at("status"), json({{"code", row.code}, {"flag", false}})) << row.statistics;
    EXPECT_EQ(fields[0].at("totalFrequency"), nullptr);
    EXPECT_THAT(fields[0].at("problem").get<std::string>(), HasSubstr(row.problem)) << row.statistics;
    EXPECT_EQ(fields[1].at("frequencies"), json::parse("[7]"));
    const ToolResult text = Stats(document);
    EXPECT_EQ(text.exitCode, 1) << text;
    EXPECT_EQ(text.err, "rqxml: note: the statistics of 1 of 2 fields cannot be read\n");
    EXPECT_THAT(text.out,
                AllOf(HasSubstr(": not read\n  standard input:4:"), HasSubstr(row.problem),
                      HasSubstr("\n  status " + std::to_string(row.code) + ": "), HasSubstr("\ngood: categ")));
  }
}

TEST(StatsOfBadFields, TellThePlaceOfTheFirstTenOnly) {
  std::string statistics;
  for (int i = 0; i < 30; ++i) statistics += "<UnivariateStats field='f" + std::to_string(i) + "'/>\n";
  const ToolResult result = Stats(WithStatistics(statistics));
  EXPECT_THAT(result.out, AllOf(HasSubstr("f9: not read\n  standard input:13:30: it has"),
                                HasSubstr("f10: not read\n  standard input: it has")));
  EXPECT_EQ(result.err, "rqxml: note: the statistics of 30 of 30 fields cannot be read\n");
}

constexpr const char* kModels =
    "<RegressionModel modelName='2'><ModelStats><UnivariateStats field='r'/></ModelStats></RegressionModel>"
    "<Extension/><NearestNeighborModel/><TreeModel modelName='t'/><TreeModel modelName='t' x='second'/>";

TEST(StatsModel, IsTheFirstByDefaultAndAnyByNameOrNumberWhereTheNameComesFirst) {
  const auto choose = [](const std::vector<std::string>& options) {
    const json document = StatsJson(WithModels(kModels), options);
    return document.at("modelElement").get<std::string>() + ' ' + document.at("modelNumber").dump() + " of " +
           document.at("models").dump();
  };
  EXPECT_EQ(choose({}), "RegressionModel 1 of 4");
  EXPECT_EQ(choose({"--model", "1"}), "RegressionModel 1 of 4");
  EXPECT_EQ(choose({"--model", "2"}), "RegressionModel 1 of 4");
  EXPECT_EQ(choose({"--model", "t"}), "TreeModel 3 of 4");
  EXPECT_EQ(choose({"--model", "4"}), "TreeModel 4 of 4");
}

TEST(StatsModel, ThatIsNotThereIsRefusedWithTheModelsThatAre) {
  for (const std::string model : {"0", "5", "-1", "3x", "T", "", "99999999999999999999"}) {
    const ToolResult result = Stats(WithModels(kModels), {"--model", model});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("rqxml: standard input: has no model \"" + model + "\"\n"),
                                  HasSubstr("1 is RegressionModel \"2\", 2 is NearestNeighborModel, 3 is TreeModel")));
  }
}

TEST(StatsModel, IsNeededAndLooksNotIntoOthers) {
  for (const std::string& models : {std::string(), std::string("<Extension><TreeModel/></Extension>")}) {
    const ToolResult result = Stats(WithModels(models));
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.err, HasSubstr("rqxml: standard input: has no model, and so no statistics\n  hint: "));
  }
}

TEST(StatsModel, WithoutModelStatsHasNoStatisticsAndThatIsNoError) {
  const std::string document =
      WithModels("<MiningModel><Segmentation><Segment><TreeModel/></Segment></Segmentation></MiningModel>");
  const ToolResult result = Stats(document);
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.out, "standard input: MiningModel, no statistics: it has no \"ModelStats\"\n");
  EXPECT_EQ(StatsJson(document).at("statistics"), json::array());
  EXPECT_EQ(Stats(WithStatistics("")).out, "standard input: TreeModel \"m\", statistics of 0 fields\n");
}

TEST(StatsField, IsShownAloneAndRefusedWhenThereIsNone) {
  const std::string document = WithStatistics(Statistics("a", kTextsFirst) + "<UnivariateStats/>" +
                                              Statistics("b", kTextsFirst) + Statistics("a", kNoHistogram));
  const json fields = StatsJson(document, {"--field", "a"}).at("statistics");
  ASSERT_EQ(fields.size(), 2u);
  EXPECT_EQ(fields[1].at("minimum"), 1);
  EXPECT_EQ(StatsJson(document, {"--field", "b", "--field", "a"}).at("statistics").size(), 3u);
  const ToolResult result = Stats(document, {"--field", "c"});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr("TreeModel \"m\": has no statistics of a field \"c\"\n  hint: "));
}

TEST(StatsDocument, MayHaveABuildTaskWithoutParameters) {
  const std::string document = WithModels("<MiningBuildTask/><TreeModel><ModelStats/></TreeModel>");
  EXPECT_EQ(Stats(document).exitCode, 0);
}

TEST(StatsDocument, ThatIsADataModelIsRefusedWithAHint) {
  const ToolResult result = Stats("<DataModel><Fields/></DataModel>");
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("the document element is \"DataModel\", not \"PMML\"\n  status 105"),
                                HasSubstr("hint: rqxml vars lists the variables of data-model documents")));
}

}  // namespace
