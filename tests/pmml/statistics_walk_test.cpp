// How FillUniStats goes from field to field, and what it says before there is one.

#include <gtest/gtest.h>

#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/support/statistics.h"

namespace {

using RQMTD_NAMESPACE::RQUniStats;
using rqtest::Discrete;
using rqtest::Failure;
using rqtest::IntArray;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::Show;
using rqtest::ShowStatus;
using RQXPrsUtil::GetFirstChildElmt;
using xercesc::DOMElement;

using Texts = std::vector<std::string>;

std::string Field(const std::string& name, const std::string& counts) {
  return "<UnivariateStats field='" + name + "'><Counts totalFreq='1'/><DiscrStats>" + IntArray(counts) +
         "</DiscrStats></UnivariateStats>";
}

class StatisticsWalk : public rqtest::WithStatistics {
 protected:
  /// Reads until there is no further field.
  Texts ReadAll() {
    Texts texts;
    const DOMElement* cursor = nullptr;
    do texts.push_back(Next(cursor));
    while (cursor && texts.size() < 100);
    return texts;
  }
  /// A call returns `status` and changes neither object nor cursor.
  void ExpectRefused(const RQCommon::RQStatus& status) const {
    RQUniStats stats = Before();
    const DOMElement* cursor = nullptr;
    EXPECT_EQ(parser_.FillUniStats(stats, cursor), status);
    EXPECT_EQ(Show(stats), Show(Before()));
    EXPECT_EQ(cursor, nullptr);
  }
};

// Before there is a field

TEST_F(StatisticsWalk, NeedsADocument) { ExpectRefused(Failure(107)); }

TEST_F(StatisticsWalk, NeedsAModelWhateverTheDocumentHolds) {
  for (const std::string& document : {Pmml("<DataDictionary/>"), rqtest::WithModelStats(Field("v", "1"))}) {
    ASSERT_EQ(Parse(parser_, document), Ok());
    ExpectRefused(Failure(112));
  }
}

TEST_F(StatisticsWalk, SaysTheStatusOfAFailedParse) {
  const struct {
    const char* document;
    long code;
  } rows[] = {{"<PMML>\xC0\x80</PMML>", 104}, {"<x/>", 105}, {"<PMML/>", 106}};
  for (const auto& row : rows) {
    Load(Field("v", "1"));
    EXPECT_EQ(Parse(parser_, row.document), Failure(row.code));
    ExpectRefused(Failure(row.code));
  }
  Load(Field("v", "1"));
  EXPECT_THROW(Parse(parser_, "<PMML>"), xercesc::SAXParseException);
  ExpectRefused(Failure(107));
}

TEST_F(StatisticsWalk, ModelOfAnEarlierDocumentIsForgotten) {
  Load(Field("v", "1"));
  ASSERT_EQ(Parse(parser_, rqtest::WithModelStats(Field("v", "1"))), Ok());
  ExpectRefused(Failure(112));
}

TEST_F(StatisticsWalk, FailureKeepsACursorThatPointsNowhereElse) {
  Load(Field("v", "1"));
  const DOMElement* cursor = parser_.GetRootElement();
  ASSERT_EQ(Parse(parser_, rqtest::WithModelStats(Field("v", "1"))), Ok());
  RQUniStats stats;
  const DOMElement* const before = cursor;
  EXPECT_EQ(parser_.FillUniStats(stats, cursor), Failure(112));
  EXPECT_EQ(cursor, before);
}

// From field to field

TEST_F(StatisticsWalk, ModelWithoutStatisticsEndsAtOnce) {
  const std::string field = Field("v", "1");
  for (const std::string& content :
       {std::string(), "<ModelStats/>" + field, "<modelStats>" + field + "</modelStats>",
        "<p:ModelStats>" + field + "</p:ModelStats>", "<x><ModelStats>" + field + "</ModelStats></x>",
        "<ModelStats>text<!--" + field + "--><univariateStats/><p:UnivariateStats/><x>" + field + "</x></ModelStats>",
        "<ModelStats/><ModelStats>" + field + "</ModelStats>"}) {
    LoadDocument(Pmml("<DataDictionary/><Model>" + content + "</Model>"));
    EXPECT_EQ(ReadAll(), Texts{"OK: kept"}) << content;
  }
}

TEST_F(StatisticsWalk, FieldsComeInDocumentOrderAndThenTheCursorIsNull) {
  Load("text" + Field("b", "1") + "<!-- c --><x/>" + Field("a", "2") + "<?p?>" + Field("b", "3") + "<y/>");
  EXPECT_EQ(ReadAll(), (Texts{R"(OK: "b" 1 [1])", R"(OK: "a" 1 [2])", R"(OK: "b" 1 [3])", "OK: kept"}));
}

TEST_F(StatisticsWalk, NullCursorStartsAgain) {
  Load(Field("a", "1") + Field("b", "2"));
  const Texts all = ReadAll();
  EXPECT_EQ(all.size(), 3U);
  EXPECT_EQ(ReadAll(), all);
}

TEST_F(StatisticsWalk, CursorIsTheElementReadAndAnySiblingMayBeTheStart) {
  Load("<x/>" + Field("a", "1") + "<y/>" + Field("b", "2"));
  const DOMElement& stats = *GetFirstChildElmt(*GetFirstChildElmt(*parser_.GetRootElement(), "Model"), "ModelStats");
  const DOMElement* cursor = nullptr;
  EXPECT_EQ(Next(cursor), R"(OK: "a" 1 [1])");
  EXPECT_EQ(cursor, GetFirstChildElmt(stats, "UnivariateStats"));
  cursor = GetFirstChildElmt(stats, "x");
  EXPECT_EQ(Next(cursor), R"(OK: "a" 1 [1])");
  cursor = GetFirstChildElmt(stats, "y");
  EXPECT_EQ(Next(cursor), R"(OK: "b" 1 [2])");
  EXPECT_EQ(Next(cursor), "OK: kept");
  EXPECT_EQ(cursor, nullptr);
}

TEST_F(StatisticsWalk, EachModelOfADocumentHasItsOwn) {
  ASSERT_EQ(Parse(parser_, Pmml("<DataDictionary/><A><ModelStats>" + Field("a", "1") +
                                "</ModelStats></A><B><ModelStats>" + Field("b", "2") + "</ModelStats></B><C/>")),
            Ok());
  const DOMElement& root = *parser_.GetRootElement();
  const struct {
    const char* model;
    Texts texts;
  } rows[] = {{"B", {R"(OK: "b" 1 [2])", "OK: kept"}},
              {"A", {R"(OK: "a" 1 [1])", "OK: kept"}},
              {"C", {"OK: kept"}},
              {"DataDictionary", {"OK: kept"}}};
  for (const auto& row : rows) {
    ASSERT_TRUE(parser_.SetModelElmt(*GetFirstChildElmt(root, row.model)));
    EXPECT_EQ(ReadAll(), row.texts) << row.model;
  }
  ASSERT_TRUE(parser_.SetModelElmt(root));
  EXPECT_EQ(ReadAll(), Texts{"OK: kept"});
}

TEST_F(StatisticsWalk, GoesOnBehindFieldsThatAreBad) {
  Load("<UnivariateStats/>" + Field("a", "1") + Field("b", "-1") + Field("c", "x") + Field("d", "2") +
       "<UnivariateStats field='e'/>" + rqtest::Histogram("<Interval/>") + Field("", "1") + Field("f", "3") +
       "<UnivariateStats/>");
  EXPECT_EQ(ReadAll(), (Texts{"108", R"(OK: "a" 1 [1])", "114", "114", R"(OK: "d" 1 [2])", "113", "108", "116",
                              R"(OK: "f" 1 [3])", "108", "OK: kept"}));
  EXPECT_EQ(parser_.GetStatus(), Ok());
}

TEST_F(StatisticsWalk, OneObjectIsFilledAgainAndAgain) {
  Load(Field("a", "1 2 3") + Field("b", "-1") +
       rqtest::Univariate("<NumericInfo mean='2'/><ContStats>" + rqtest::Interval("0", "1") + IntArray("4") +
                          "</ContStats>") +
       Field("c", ""));
  RQUniStats stats;
  const DOMElement* cursor = nullptr;
  Texts texts;
  for (int i = 0; i < 5; ++i) {
    const auto status = parser_.FillUniStats(stats, cursor);
    texts.push_back(ShowStatus(status) + " " + Show(stats));
  }
  const std::string histogram = R"("v" 10 LOWEST..LOWEST mean 2 sd LOWEST cuts [0, 1] [4])";
  EXPECT_EQ(texts, (Texts{R"(OK "a" 1 [1, 2, 3])", R"(114 "a" 1 [1, 2, 3])", "OK " + histogram, R"(OK "c" 1 [])",
                          R"(OK "c" 1 [])"}));
}

TEST_F(StatisticsWalk, ReadingChangesNothing) {
  Load(Field("a", "1") + "<UnivariateStats/>");
  const auto& parser = parser_;
  const Texts all = ReadAll();
  EXPECT_EQ(ReadAll(), all);
  EXPECT_EQ(parser.GetStatus(), Ok());
  EXPECT_EQ(parser.GetXercesMessage(), "");
}

// The head of a field

TEST_F(StatisticsWalk, FieldAndCountsAreRequired) {
  const std::string rest = "<DiscrStats>" + IntArray("1") + "</DiscrStats>";
  const struct {
    std::string univariate;
    const char* outcome;
  } rows[] = {
      {"<UnivariateStats><Counts totalFreq='1'/>" + rest + "</UnivariateStats>", "108"},
      {"<UnivariateStats Field='v' name='v' p:field='v'><Counts totalFreq='1'/>" + rest + "</UnivariateStats>", "108"},
      {"<UnivariateStats field=''><Counts totalFreq='1'/>" + rest + "</UnivariateStats>", "116"},
      {"<UnivariateStats field=' v '><Counts totalFreq='1'/>" + rest + "</UnivariateStats>", R"(OK: " v " 1 [1])"},
      {"<UnivariateStats field='v'>" + rest + "</UnivariateStats>", "113"},
      {"<UnivariateStats field='v' totalFreq='1'>" + rest + "</UnivariateStats>", "113"},
      {"<UnivariateStats field='v'><counts totalFreq='1'/><p:Counts totalFreq='1'/>" + rest + "</UnivariateStats>",
       "113"},
      {"<UnivariateStats field='v'><x><Counts totalFreq='1'/></x>" + rest + "</UnivariateStats>", "113"},
      {"<UnivariateStats field='v'>" + rest + "<!-- c -->text<Counts totalFreq='1'/></UnivariateStats>",
       R"(OK: "v" 1 [1])"},
      {"<UnivariateStats field='v'><Counts totalFreq='1'/><Counts totalFreq='-2'/>" + rest + "</UnivariateStats>",
       R"(OK: "v" 1 [1])"},
      {"<UnivariateStats field='v'><Counts/><Counts totalFreq='1'/>" + rest + "</UnivariateStats>", "108"}};
  for (const auto& row : rows) EXPECT_EQ(Read(row.univariate), row.outcome) << row.univariate;
}

TEST_F(StatisticsWalk, NameIsUtf8) {
  const std::string name = "\xC3\xA4\xD0\xB6\xE8\xA1\xA8\xF0\x9F\x98\x80";
  EXPECT_EQ(Read(Field(name, "1")), "OK: \"" + name + "\" 1 [1]");
}

TEST_F(StatisticsWalk, TotalIsANumberOfZeroOrMore) {
  const struct {
    const char* counts;
    const char* outcome;
  } rows[] = {{"totalFreq='0'", R"(OK: "v" 0 [1])"},
              {"totalFreq='2.5'", R"(OK: "v" 2.5 [1])"},
              {"totalFreq='1e3'", R"(OK: "v" 1000 [1])"},
              {"totalFreq=' 7 '", R"(OK: "v" 7 [1])"},
              {"totalFreq='-0'", R"(OK: "v" -0 [1])"},
              {"totalFreq='1.7976931348623157e308'", R"(OK: "v" HIGHEST [1])"},
              {"totalFreq='3' invalidFreq='x' missingFreq='-1' cardinality=''", R"(OK: "v" 3 [1])"},
              {"", "108"},
              {"TotalFreq='1' p:totalFreq='1'", "108"},
              {"totalFreq=''", "109"},
              {"totalFreq='x'", "109"},
              {"totalFreq='1,5'", "109"},
              {"totalFreq='INF'", "109"},
              {"totalFreq='1e400'", "109"},
              {"totalFreq='-1'", "109"},
              {"totalFreq='-0.5'", "109"},
              {"totalFreq='-1e300'", "109"},
              {"totalFreq='-INF'", "109"},
              // The missing value is the lowest number of all, and so negative.
              {"totalFreq='NaN'", "109"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Read(std::string("<UnivariateStats field='v'><Counts ") + row.counts + "/><DiscrStats>" + IntArray("1") +
                   "</DiscrStats></UnivariateStats>"),
              row.outcome)
        << row.counts;
  }
}

TEST_F(StatisticsWalk, FieldWithNumericInfoIsContinuousWhateverElseItHas) {
  const std::string discrete = "<DiscrStats>" + IntArray("1") + "</DiscrStats>";
  const std::string continuous = "<ContStats>" + rqtest::Interval("0", "1") + IntArray("2") + "</ContStats>";
  const char* const histogram = R"(OK: "v" 10 LOWEST..LOWEST mean LOWEST sd LOWEST cuts [0, 1] [2])";
  EXPECT_EQ(Read(rqtest::Univariate(discrete + continuous + "<NumericInfo/>")), histogram);
  EXPECT_EQ(Read(rqtest::Univariate(discrete + continuous)), R"(OK: "v" 10 [1])");
  for (const char* const other :
       {"<numericInfo/>", "<p:NumericInfo/>", "<x><NumericInfo/></x>", "<!--<NumericInfo/>-->"}) {
    EXPECT_EQ(Read(rqtest::Univariate(discrete + continuous + other)), R"(OK: "v" 10 [1])") << other;
  }
}

}  // namespace
