#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Complex;
using rqtest::ListValue;
using rqtest::Matrix;
using rqtest::Row;
using rqtest::Show;
using rqtest::Valued;
using rqtest::Values;

class MatrixParameter : public rqtest::WithSettings {};

TEST_F(MatrixParameter, RowsComeInOrderAndMayDifferInLength) {
  Load(Matrix("m", Row({"1", "2", "3"}) + Row({}) + Row({"4"}) + Row({"6", "5"})));
  EXPECT_EQ(ask_.StringRows("m"), R"(OK: [["1", "2", "3"], [], ["4"], ["6", "5"]])");
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1, 2, 3], [], [4], [6, 5]]");
  EXPECT_EQ(ask_.DoubleRows("m"), "OK: [[1, 2, 3], [], [4], [6, 5]]");
}

TEST_F(MatrixParameter, MatrixWithoutRowsIsEmptyAndGood) {
  for (const char* const content : {"", "text", "<!--c-->", "<x/>", "<Value value='1'/>"}) {
    Load(Matrix("m", content));
    EXPECT_EQ(ask_.StringRows("m"), "OK: []") << content;
    EXPECT_EQ(ask_.IntRows("m"), "OK: []") << content;
    EXPECT_EQ(ask_.DoubleRows("m"), "OK: []") << content;
  }
}

TEST_F(MatrixParameter, TagIsMatrixParmeterAsTheDocumentsSpellItAndNotWhatItShouldBe) {
  for (const char* const tag : {"MatrixParameter", "Matrixparmeter", "matrixParmeter", "MatrixParmeters",
                                "MatrixParmete", "x:MatrixParmeter", "Parameter", "ComplexParameter"}) {
    Load("<" + std::string(tag) + " name='m'>" + Row({"1"}) + "</" + tag + ">");
    EXPECT_EQ(ask_.StringRows("m"), R"(120 (flag): [["before"]])") << tag;
    EXPECT_EQ(ask_.IntRows("m"), "120 (flag): [[47]]") << tag;
    EXPECT_EQ(ask_.DoubleRows("m"), "120 (flag): [[4.75]]") << tag;
  }
  Load("<MatrixParameter name='m'>" + Row({"1"}) + "</MatrixParameter>" + Matrix("m", Row({"2"})));
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[2]]");
}

TEST_F(MatrixParameter, OnlyArrayParametersDirectlyInTheMatrixAreRows) {
  Load(Matrix("m", "text<!--" + Row({"0"}) + "-->" + Values({"0"}) + ListValue({"0"}) + "<x>" + Row({"0"}) + "</x>" +
                       "<arrayParameter/><x:ArrayParameter/><ArrayParmeter/><Parameter/>" + Row({"1"}) +
                       "<ArrayParameter>" + Row({"0"}) + Values({"2"}) + "</ArrayParameter>"));
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1], [2]]");
}

TEST_F(MatrixParameter, OnlyValuesDirectlyInTheRowAreItems) {
  Load(Matrix("m", "<ArrayParameter>text<!--" + Values({"0"}) + "--><x>" + Values({"0"}) + "</x>" + ListValue({"0"}) +
                       "<value value='0'/><x:Value value='0'/><Value value='1'>" + Values({"0"}) + "</Value>" +
                       Values({"2"}) + "</ArrayParameter>"));
  EXPECT_EQ(ask_.StringRows("m"), R"(OK: [["1", "2"]])");
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1, 2]]");
}

TEST_F(MatrixParameter, NamesAndValuesOfRowsDoNotMatter) {
  Load(Matrix("m", "<ArrayParameter name='r' type='integer' value='9'>" + Values({"1"}) + "</ArrayParameter>"));
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1]]");
  EXPECT_EQ(ask_.IntRows("r"), "120 (flag): [[47]]");
  EXPECT_EQ(ask_.Ints("r"), "120 (flag): [47]");
}

TEST_F(MatrixParameter, ItemsWithoutValueAreSkippedThoughArraysEndThere) {
  Load(Matrix("m", "<ArrayParameter>" + Values({"1"}) + "<Value/><Value>7</Value><Value Value='7' displayValue='7'/>" +
                       Values({"2"}) + "</ArrayParameter><ArrayParameter><Value/></ArrayParameter>"));
  EXPECT_EQ(ask_.StringRows("m"), R"(OK: [["1", "2"], []])");
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1, 2], []]");
  EXPECT_EQ(ask_.DoubleRows("m"), "OK: [[1, 2], []]");
}

TEST_F(MatrixParameter, EmptyTextsAreKeptThoughArraysDropThem) {
  Load(Matrix("m", Row({"a", "", "c"}) + Row({""})));
  EXPECT_EQ(ask_.StringRows("m"), R"(OK: [["a", "", "c"], [""]])");
}

TEST_F(MatrixParameter, BadNumbersAreSkippedThoughArraysEndThere) {
  Load(Matrix("m", Row({"1", "x", "3"}) + Row({"", " ", "-2", "3.5", "5"}) + Row({"INF", "-INF", "1e999", "NaN", "7"}) +
                       Row({"x"})));
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1, 3], [5], [7], []]");
  EXPECT_EQ(ask_.DoubleRows("m"), "OK: [[1, 3], [-2, 3.5, 5], [LOWEST, 7], []]");
}

TEST_F(MatrixParameter, IntegersBeyondTheRangeComeModuloTwoTo32AndAreSkippedWhenThatIsNegative) {
  Load(Matrix("m", Row({"2147483647", "2147483648", "4294967295", "4294967296", "4294967297", "99999999999999999999",
                        "-4294967295"})));
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[2147483647, 0, 1, 1]]");
}

TEST_F(MatrixParameter, FirstMatrixOfANameIsTheOne) {
  Load("<MatrixParmeter/>" + Matrix("other", Row({"0"})) + Matrix("m", "") + Matrix("m", Row({"2"})));
  EXPECT_EQ(ask_.IntRows("m"), "OK: []");
}

TEST_F(MatrixParameter, ScopeDecidesWhichMatrixIsRead) {
  Load(Matrix("m", Row({"1"})) + Complex("c", Matrix("m", Row({"2"})) + Matrix("n", Row({"3"}))) + Complex("d", ""));
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[1]]");
  EXPECT_EQ(ask_.IntRows("m", scope), "OK: [[2]]");
  EXPECT_EQ(ask_.StringRows("n", scope), R"(OK: [["3"]])");
  EXPECT_EQ(ask_.DoubleRows("n", scope), "OK: [[3]]");
  EXPECT_EQ(ask_.IntRows("n"), "120 (flag): [[47]]");
  EXPECT_EQ(ask_.IntRows("m", parser_.GetComplexParameter("d", nullptr)), "120 (flag): [[47]]");
}

TEST_F(MatrixParameter, OutputIsKeptWhenThereIsNoSuchMatrixAndReplacedOnceThereIs) {
  Load(Matrix("m", Row({"x"})));
  EXPECT_EQ(ask_.IntRows("absent"), "120 (flag): [[47]]");
  EXPECT_EQ(ask_.IntRows("m"), "OK: [[]]");
}

TEST_F(MatrixParameter, TextsOfEveryScriptAndLengthComeWhole) {
  const std::string text = std::string(999, 'a') + "\xF0\x9F\x98\x80\xE5\x9B\x9E";
  Load(Matrix("m", Row({text, "&#x1F600;\n&#10;"})));
  EXPECT_EQ(ask_.StringRows("m"), "OK: " + Show(std::vector<std::vector<std::string>>{{text, "\xF0\x9F\x98\x80 \n"}}));
}

TEST_F(MatrixParameter, ManyRowsAreRead) {
  std::string rows;
  std::vector<std::vector<double>> expected;
  for (int i = 0; i < 5000; ++i) {
    rows += Row({std::to_string(i), "0.5", std::to_string(-i)});
    expected.push_back({double(i), 0.5, double(-i)});
  }
  Load(Matrix("m", rows));
  std::vector<std::vector<double>> read;
  EXPECT_EQ(parser_.GetMatrix("m", read, nullptr), rqtest::Ok());
  EXPECT_EQ(read, expected);
}

}  // namespace
