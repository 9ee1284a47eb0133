#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "rqxml/pmml/RQPMMLParser.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"

namespace {

using rqtest::Calls;
using rqtest::Failure;
using rqtest::Field;
using rqtest::Fill;
using rqtest::Filled;
using rqtest::FillWithBins;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::PmmlWithFields;
using rqtest::Show;

/// Gives a test the protected lookup.
class BinReader : public RQXPrsUtil::RQPMMLParser {
 public:
  using RQPMMLParser::SetBinsFrTransDict;
};

class Bins : public rqtest::WithPlatform {
 protected:
  /// The cut points and labels found for the field "v", as text; "none" when the field is not discretised.
  static std::string Found(const std::string& transformations, const std::string& name = "v") {
    BinReader reader;
    EXPECT_EQ(Parse(reader, PmmlWithFields("", transformations)), Ok()) << transformations;
    std::vector<double> cutPoints = {47, 11};
    std::vector<std::string> labels = {"before"};
    if (reader.SetBinsFrTransDict(name, cutPoints, labels)) return Show(cutPoints) + " " + Show(labels);
    EXPECT_TRUE(cutPoints.empty()) << transformations;
    EXPECT_TRUE(labels.empty()) << transformations;
    return "none";
  }

  static std::string Discretize(const std::string& bins) { return "<Discretize field='v'>" + bins + "</Discretize>"; }
  static std::string Derived(const std::string& content) {
    return "<DerivedField name='d'>" + content + "</DerivedField>";
  }
  static std::string FoundInBins(const std::string& bins) { return Found(Derived(Discretize(bins))); }

  static std::string Bin(const std::string& label, const std::string& margins) {
    return "<DiscretizeBin binValue='" + label + "'><Interval " + margins + "/></DiscretizeBin>";
  }
};

const char* const kThreeBins =
    "<DiscretizeBin binValue='low'><Interval closure='openOpen' rightMargin='10'/></DiscretizeBin>"
    "<DiscretizeBin binValue='mid'><Interval closure='closedOpen' leftMargin='10' rightMargin='20'/></DiscretizeBin>"
    "<DiscretizeBin binValue='high'><Interval closure='closedOpen' leftMargin='20'/></DiscretizeBin>";

// Finding the discretisation

TEST_F(Bins, ThreeBinsGiveFourCutPointsAndThreeLabels) {
  EXPECT_EQ(FoundInBins(kThreeBins), R"([LOWEST, 10, 20, HIGHEST] ["low", "mid", "high"])");
}

TEST_F(Bins, FieldThatNothingDiscretisesHasNone) {
  for (const std::string& transformations :
       {std::string(),
        std::string("text<!--c-->"),
        Derived(""),
        Derived("<Constant>1</Constant>"),
        Derived("<Discretize/>"),
        Derived("<Discretize>" + std::string(kThreeBins) + "</Discretize>"),
        Derived("<Discretize Field='v'/>"),
        Derived("<Discretize field='V'/>"),
        Derived("<Discretize field='v '/>"),
        Derived("<Discretize field=''/>"),
        Derived("<Discretize name='v'/>"),
        Derived("<discretize field='v'/>"),
        Derived("<p:Discretize field='v'/>"),
        Derived("<Discretize p:field='v'/>"),
        Derived("<Apply>" + Discretize(kThreeBins) + "</Apply>"),
        Discretize(kThreeBins),
        "<x>" + Derived(Discretize(kThreeBins)) + "</x>",
        "<derivedField>" + Discretize(kThreeBins) + "</derivedField>",
        "<p:DerivedField>" + Discretize(kThreeBins) + "</p:DerivedField>",
        std::string("<DerivedField name='v'><Discretize field='other'/></DerivedField>")}) {
    EXPECT_EQ(Found(transformations), "none") << transformations;
  }
}

TEST_F(Bins, FirstMatchInTheDocumentWins) {
  const std::string first = Discretize(Bin("a", "leftMargin='1' rightMargin='2'"));
  const std::string second = Discretize(Bin("b", "leftMargin='3' rightMargin='4'"));
  const std::string other = "<Discretize field='w'>" + Bin("w", "leftMargin='5' rightMargin='6'") + "</Discretize>";
  const std::string expected = R"([1, 2] ["a"])";
  EXPECT_EQ(Found(Derived(first) + Derived(second)), expected);
  EXPECT_EQ(Found(Derived(first + second)), expected);
  EXPECT_EQ(Found(Derived(other + first + second)), expected);
  EXPECT_EQ(Found(Derived(other) + Derived("") + "<x/>text" + Derived("text<!--c--><y/>" + first) + Derived(second)),
            expected);
  EXPECT_EQ(Found(Derived("<Discretize/>" + first)), expected);
  EXPECT_EQ(Found(Derived(first) + Derived(other), "w"), R"([5, 6] ["w"])");
}

TEST_F(Bins, EmptyMatchHidesALaterOneWithBins) {
  EXPECT_EQ(Found(Derived(Discretize("")) + Derived(Discretize(kThreeBins))), "[0] []");
}

TEST_F(Bins, NameOfTheDerivedFieldDoesNotMatter) {
  EXPECT_EQ(Found("<DerivedField>" + Discretize(Bin("a", "rightMargin='1'")) + "</DerivedField>"),
            R"([LOWEST, 1] ["a"])");
}

TEST_F(Bins, FieldNamesAreComparedAsCharacters) {
  const std::string transformations = Derived(
      "<Discretize field='gr\xC3\xB6\xC3\x9F"
      "e &#x1F600;'>" +
      Bin("a", "rightMargin='1'") + "</Discretize>");
  EXPECT_EQ(Found(transformations,
                  "gr\xC3\xB6\xC3\x9F"
                  "e \xF0\x9F\x98\x80"),
            R"([LOWEST, 1] ["a"])");
  EXPECT_EQ(Found(transformations,
                  "gr\xF6\xDF"
                  "e"),
            "none");
}

TEST_F(Bins, EmptyNameMatchesAnEmptyFieldAttributeOnly) {
  const std::string transformations = Derived("<Discretize/>") + Derived("<Discretize other='x'/>") +
                                      Derived("<Discretize field=''>" + Bin("a", "rightMargin='1'") + "</Discretize>");
  EXPECT_EQ(Found(transformations, ""), R"([LOWEST, 1] ["a"])");
  EXPECT_EQ(Found(Derived("<Discretize other='x'/>"), ""), "none");
}

TEST_F(Bins, ContentOfEntitiesIsNotSeen) {
  BinReader reader;
  ASSERT_EQ(Parse(reader,
                  "<!DOCTYPE PMML [<!ENTITY e '"
                  "<DerivedField><Discretize field=\"v\"/></DerivedField>"
                  "'>]>" +
                      PmmlWithFields("", "&e;")),
            Ok());
  std::vector<double> cutPoints;
  std::vector<std::string> labels;
  EXPECT_FALSE(reader.SetBinsFrTransDict("v", cutPoints, labels));
}

// Reading the bins

TEST_F(Bins, DiscretisationWithoutBinsGivesTheSinglePlaceholder) {
  EXPECT_EQ(FoundInBins(""), "[0] []");
  EXPECT_EQ(FoundInBins("text<!--c--><x/><discretizeBin/><p:DiscretizeBin binValue='x'/>"), "[0] []");
}

TEST_F(Bins, BinWithoutIntervalGivesItsLabelOnly) {
  EXPECT_EQ(FoundInBins("<DiscretizeBin binValue='a'/>"), R"([0] ["a"])");
  EXPECT_EQ(FoundInBins("<DiscretizeBin binValue='a'/>" + Bin("b", "leftMargin='1' rightMargin='2'")),
            R"([1, 2] ["a", "b"])");
}

TEST_F(Bins, MarginsThatAreAbsentOrNoNumbersAreTheExtremes) {
  const struct {
    const char* margins;
    const char* cutPoints;
  } rows[] = {{"leftMargin='1' rightMargin='2'", "[1, 2]"},
              {"leftMargin='1'", "[1, HIGHEST]"},
              {"rightMargin='2'", "[LOWEST, 2]"},
              {"", "[LOWEST, HIGHEST]"},
              {"leftMargin='' rightMargin=''", "[LOWEST, HIGHEST]"},
              {"leftMargin='x' rightMargin='y'", "[LOWEST, HIGHEST]"},
              {"leftMargin='-INF' rightMargin='INF'", "[LOWEST, HIGHEST]"},
              {"leftMargin='INF' rightMargin='-INF'", "[LOWEST, HIGHEST]"},
              {"leftMargin='1e999' rightMargin='1e999'", "[LOWEST, HIGHEST]"},
              {"leftMargin='NaN' rightMargin='NaN'", "[LOWEST, LOWEST]"},
              {"leftMargin=' 1 ' rightMargin='2e0'", "[1, 2]"},
              {"LeftMargin='1' p:rightMargin='2'", "[LOWEST, HIGHEST]"},
              {"leftMargin='5' rightMargin='2'", "[5, 2]"}};
  for (const auto& row : rows) {
    EXPECT_EQ(FoundInBins(Bin("a", row.margins)), std::string(row.cutPoints) + R"( ["a"])") << row.margins;
  }
}

TEST_F(Bins, OnlyTheVeryFirstLeftMarginCounts) {
  EXPECT_EQ(FoundInBins(Bin("a", "leftMargin='1' rightMargin='2'") + Bin("b", "leftMargin='77' rightMargin='3'") +
                        Bin("c", "rightMargin='4'")),
            R"([1, 2, 3, 4] ["a", "b", "c"])");
  EXPECT_EQ(FoundInBins(Bin("a", "rightMargin='2'") + Bin("b", "leftMargin='1' rightMargin='3'")),
            R"([LOWEST, 2, 3] ["a", "b"])");
}

TEST_F(Bins, RightMarginThatIsAbsentInTheMiddleIsTheLargestNumber) {
  EXPECT_EQ(FoundInBins(Bin("a", "leftMargin='1'") + Bin("b", "rightMargin='3'")), R"([1, HIGHEST, 3] ["a", "b"])");
}

TEST_F(Bins, OrderGapsAndClosuresAreNotTested) {
  EXPECT_EQ(FoundInBins(Bin("a", "closure='nonsense' leftMargin='9' rightMargin='8'") +
                        Bin("b", "leftMargin='1' rightMargin='2'") + Bin("c", "leftMargin='1' rightMargin='2'")),
            R"([9, 8, 2, 2] ["a", "b", "c"])");
}

TEST_F(Bins, BinWithTwoIntervalsGivesTwoCutPointsAndOneLabel) {
  EXPECT_EQ(FoundInBins("<DiscretizeBin binValue='a'>text<Interval leftMargin='1' rightMargin='2'/><!--c-->"
                        "<Interval leftMargin='5' rightMargin='6'/></DiscretizeBin>" +
                        Bin("b", "rightMargin='7'")),
            R"([1, 2, 6, 7] ["a", "b"])");
}

TEST_F(Bins, IntervalsBelowOtherElementsDoNotCount) {
  EXPECT_EQ(FoundInBins("<DiscretizeBin binValue='a'><x><Interval leftMargin='1' rightMargin='2'/></x><interval "
                        "rightMargin='3'/><p:Interval rightMargin='4'/></DiscretizeBin><Interval rightMargin='5'/>"),
            R"([0] ["a"])");
}

TEST_F(Bins, BinWithoutLabelAddsNone) {
  EXPECT_EQ(FoundInBins("<DiscretizeBin><Interval rightMargin='1'/></DiscretizeBin>" + Bin("b", "rightMargin='2'") +
                        "<DiscretizeBin binvalue='c'><Interval rightMargin='3'/></DiscretizeBin>"),
            R"([LOWEST, 1, 2, 3] ["b"])");
}

TEST_F(Bins, EmptyLabelIsALabel) { EXPECT_EQ(FoundInBins(Bin("", "rightMargin='1'")), R"([LOWEST, 1] [""])"); }

TEST_F(Bins, LabelsBeyondAsciiAndLongOnesComeWhole) {
  for (const std::size_t before : {0U, 998U, 999U, 1000U, 3999U, 4000U, 5000U}) {
    const std::string label = std::string(before, 'a') + "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80 end";
    EXPECT_EQ(FoundInBins(Bin(label, "rightMargin='1'")), "[LOWEST, 1] [\"" + label + "\"]") << before;
  }
}

TEST_F(Bins, SecondLookupGivesTheSame) {
  BinReader reader;
  ASSERT_EQ(Parse(reader, PmmlWithFields("", Derived(Discretize(kThreeBins)))), Ok());
  std::vector<double> cutPoints;
  std::vector<std::string> labels;
  ASSERT_TRUE(reader.SetBinsFrTransDict("v", cutPoints, labels));
  const std::vector<double> first = cutPoints;
  ASSERT_TRUE(reader.SetBinsFrTransDict("v", cutPoints, labels));
  EXPECT_EQ(cutPoints, first);
  EXPECT_EQ(labels, (std::vector<std::string>{"low", "mid", "high"}));
  EXPECT_FALSE(reader.SetBinsFrTransDict("w", cutPoints, labels));
  EXPECT_TRUE(cutPoints.empty());
  EXPECT_TRUE(labels.empty());
}

// Bins in a variable list

class BinnedList : public Bins {
 protected:
  /// The calls for one continuous field with these bins.
  static Calls CallsFor(const std::string& bins, const std::string& content = "", const std::string& type = "double") {
    const Filled filled =
        FillWithBins(PmmlWithFields(Field("v", "continuous", type, content), Derived(Discretize(bins))));
    EXPECT_EQ(filled.status, Ok()) << bins;
    return filled.calls;
  }
};

TEST_F(BinnedList, RangeInteriorCutPointsAndLabelsReachTheList) {
  EXPECT_EQ(CallsFor(kThreeBins), (Calls{R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> 0)",
                                         R"(encoder 0: SetBinLabels(["low", "mid", "high"]))"}));
}

TEST_F(BinnedList, TwoBinsAreEnough) {
  EXPECT_EQ(
      CallsFor(Bin("a", "leftMargin='0' rightMargin='1'") + Bin("b", "rightMargin='2'")),
      (Calls{R"(AddContVar("v", "", 0, 2, cuts [1], true, role 4) -> 0)", R"(encoder 0: SetBinLabels(["a", "b"]))"}));
}

TEST_F(BinnedList, FewerThanThreeCutPointsMakeAPlainVariableWithoutLabels) {
  for (const std::string& bins :
       {std::string(), std::string("<DiscretizeBin binValue='a'/>"), Bin("a", "leftMargin='1' rightMargin='2'"),
        std::string("<DiscretizeBin binValue='a'/><DiscretizeBin binValue='b'/>")}) {
    EXPECT_EQ(CallsFor(bins), Calls{R"(AddContVar("v", "", role 4) -> 0)"}) << bins;
  }
}

TEST_F(BinnedList, LabelsAreGivenOnlyWhenThereIsOneForEachBin) {
  const std::string unlabelled = "<DiscretizeBin><Interval rightMargin='5'/></DiscretizeBin>";
  EXPECT_EQ(CallsFor(Bin("a", "leftMargin='1' rightMargin='2'") + unlabelled),
            Calls{R"(AddContVar("v", "", 1, 5, cuts [2], true, role 4) -> 0)"});
  EXPECT_EQ(CallsFor(unlabelled + unlabelled), Calls{R"(AddContVar("v", "", LOWEST, 5, cuts [5], true, role 4) -> 0)"});
  EXPECT_EQ(
      CallsFor(Bin("a", "leftMargin='1' rightMargin='2'") + unlabelled + "<DiscretizeBin binValue='b'/>"),
      (Calls{R"(AddContVar("v", "", 1, 5, cuts [2], true, role 4) -> 0)", R"(encoder 0: SetBinLabels(["a", "b"]))"}));
  EXPECT_EQ(CallsFor(Bin("a", "leftMargin='1' rightMargin='2'") + Bin("b", "rightMargin='3'") +
                     "<DiscretizeBin binValue='c'/>"),
            Calls{R"(AddContVar("v", "", 1, 3, cuts [2], true, role 4) -> 0)"});
}

TEST_F(BinnedList, LabelsAreDroppedWhenTheFirstIsZero) {
  const auto labels = [](const std::string& first, const std::string& second) {
    return CallsFor(Bin(first, "leftMargin='0' rightMargin='1'") + Bin(second, "rightMargin='2'")).size() == 2;
  };
  EXPECT_FALSE(labels("0", "1"));
  EXPECT_FALSE(labels("0", "b"));
  EXPECT_FALSE(labels("&#48;", "b"));
  EXPECT_TRUE(labels("1", "0"));
  EXPECT_TRUE(labels("00", "1"));
  EXPECT_TRUE(labels("0.0", "1"));
  EXPECT_TRUE(labels(" 0", "1"));
  EXPECT_TRUE(labels("", "1"));
  EXPECT_TRUE(labels("\xEF\xBC\x90", "1"));
}

TEST_F(BinnedList, MissingValuesAndInvalidRangeFollowTheLabels) {
  EXPECT_EQ(CallsFor(kThreeBins,
                     "<Value value='9' property='missing' displayValue='M'/><Extension name='invalidRangeLower' "
                     "value='100'/>"),
            (Calls{R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> 0)",
                   R"(encoder 0: SetBinLabels(["low", "mid", "high"]))", R"(encoder 0: AddNumMissingValue(9, "M"))",
                   R"(encoder 0: SetInvalidRange(100, HIGHEST))"}));
}

TEST_F(BinnedList, ContinuousStringFieldIsBinnedToo) {
  EXPECT_EQ(CallsFor(kThreeBins, "<Value value='m' property='missing'/>", "string"),
            (Calls{R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> 0)",
                   R"(encoder 0: SetBinLabels(["low", "mid", "high"]))", R"(encoder 0: AddStrMissingValue("m", ""))"}));
}

TEST_F(BinnedList, UnsortedCutPointsAreOfferedAsTheyStand) {
  EXPECT_EQ(CallsFor(Bin("a", "leftMargin='9' rightMargin='1'") + Bin("b", "rightMargin='5'") +
                     Bin("c", "rightMargin='3'"))[0],
            R"(AddContVar("v", "", 9, 3, cuts [1, 5], true, role 4) -> 0)");
}

TEST_F(BinnedList, BinsAreNotLookedAtUnlessAskedFor) {
  const Filled filled = Fill(PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(kThreeBins))));
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls, Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

TEST_F(BinnedList, CategoricalFieldsNeedNoBins) {
  const std::string fields = Field("a", "categorical", "integer") + Field("b", "ordinal", "string");
  const Calls expected = {R"(AddCatVar("a", "", numbers [], labels [], role 4) -> 0)",
                          R"(AddCatVar("b", "", strings [], labels [], role 4) -> 1)"};
  EXPECT_EQ(FillWithBins(PmmlWithFields(fields)).status, Ok());
  EXPECT_EQ(FillWithBins(PmmlWithFields(fields)).calls, expected);
  EXPECT_EQ(FillWithBins(PmmlWithFields(fields, "<DerivedField><Discretize field='a'/></DerivedField>")).calls,
            expected);
}

TEST_F(BinnedList, ContinuousFieldWithoutBinsStopsTheWalkAndEarlierVariablesStay) {
  const std::string fields =
      Field("a", "categorical", "integer") + Field("v", "continuous", "double") + Field("b", "continuous", "boolean");
  const Calls before = {R"(AddCatVar("a", "", numbers [], labels [], role 4) -> 0)"};
  for (const std::string& document : {PmmlWithFields(fields), PmmlWithFields(fields, ""),
                                      PmmlWithFields(fields, Derived("<Discretize field='V'/>"))}) {
    const Filled filled = FillWithBins(document);
    EXPECT_EQ(filled.status, Failure(110)) << document;
    EXPECT_EQ(filled.calls, before) << document;
  }
}

TEST_F(BinnedList, FaultsOfTheFieldComeBeforeMissingBins) {
  EXPECT_EQ(FillWithBins(PmmlWithFields(Field("v", "continuous", "boolean"))).status, Failure(109));
  EXPECT_EQ(FillWithBins(PmmlWithFields("<DataField name='v' optype='continuous'/>")).status, Failure(108));
}

TEST_F(BinnedList, FieldsThatAreNotAskedForNeedNoBins) {
  const std::string document = PmmlWithFields(Field("x", "continuous", "double") + Field("v", "continuous", "double"),
                                              Derived(Discretize(kThreeBins)));
  EXPECT_EQ(Fill(document, {"v"}, true).status, Ok());
  EXPECT_EQ(Fill(document, {"v"}, true).calls.size(), 2U);
  EXPECT_EQ(Fill(document, {"x"}, true).status, Failure(110));
  EXPECT_EQ(Fill(document, {}, true).status, Failure(110));
}

TEST_F(BinnedList, RefusalGivesNoLabels) {
  RQXPrsUtil::RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(kThreeBins)))), Ok());
  rqtest::RecordingVarList vars;
  vars.refused = {"v"};
  EXPECT_EQ(parser.FillVarList(vars, {}, true), Failure(111));
  EXPECT_EQ(vars.calls, Calls{R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> -1)"});
}

TEST_F(BinnedList, VariableWithoutEncoderGetsNoLabels) {
  RQXPrsUtil::RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(kThreeBins)))), Ok());
  rqtest::RecordingVarList vars;
  vars.withoutEncoder = {"v"};
  EXPECT_EQ(parser.FillVarList(vars, {}, true), Ok());
  EXPECT_EQ(vars.calls.size(), 1U);
}

TEST_F(BinnedList, LabelsGoToTheEncoderOfTheIndexTheListGave) {
  RQXPrsUtil::RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(kThreeBins)))), Ok());
  rqtest::RecordingVarList vars(41);
  EXPECT_EQ(parser.FillVarList(vars, {}, true), Ok());
  EXPECT_EQ(vars.calls.back(), R"(encoder 41: SetBinLabels(["low", "mid", "high"]))");
}

TEST_F(BinnedList, EveryFieldOfOneNameGetsTheSameBins) {
  const Filled filled = FillWithBins(PmmlWithFields(
      Field("v", "continuous", "double") + Field("v", "continuous", "float"), Derived(Discretize(kThreeBins))));
  EXPECT_EQ(filled.calls, (Calls{R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> 0)",
                                 R"(encoder 0: SetBinLabels(["low", "mid", "high"]))",
                                 R"(AddContVar("v", "", LOWEST, HIGHEST, cuts [10, 20], true, role 4) -> 1)",
                                 R"(encoder 1: SetBinLabels(["low", "mid", "high"]))"}));
}

TEST_F(BinnedList, ManyFieldsFindTheirOwnBins) {
  std::string fields;
  std::string transformations;
  Calls expected;
  for (int i = 0; i < 2000; ++i) {
    const std::string name = "f" + std::to_string(i);
    const std::string cut = std::to_string(i);
    fields += Field(name, "continuous", "double");
    // In the opposite order, and each twice: the first counts.
    transformations = Derived("<Discretize field='" + name + "'>" + Bin("a", "rightMargin='" + cut + "'") +
                              Bin("b", "leftMargin='" + cut + "'") + "</Discretize>") +
                      transformations +
                      Derived("<Discretize field='" + name + "'>" + Bin("x", "rightMargin='-1'") + "</Discretize>");
    expected.push_back("AddContVar(\"" + name + "\", \"\", LOWEST, HIGHEST, cuts [" + cut + "], true, role 4) -> " +
                       cut);
    expected.push_back("encoder " + cut + ": SetBinLabels([\"a\", \"b\"])");
  }
  EXPECT_EQ(FillWithBins(PmmlWithFields(fields, transformations)).calls, expected);
}

/// One discretisation: its field, and a number that tells it from the others and is its only interior cut point.
struct Discretization {
  std::string field;
  int number = 0;
};

/// The calls that fields must give, by looking through all discretisations for each of them.
Calls SlowReference(const std::vector<std::string>& fields, const std::vector<Discretization>& discretizations,
                    const std::vector<std::string>& wanted) {
  Calls calls;
  int index = 0;
  for (const std::string& field : fields) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), field) == wanted.end()) continue;
    const auto found = std::find_if(discretizations.begin(), discretizations.end(),
                                    [&](const Discretization& one) { return one.field == field; });
    if (found == discretizations.end()) break;
    calls.push_back("AddContVar(\"" + field + "\", \"\", LOWEST, HIGHEST, cuts [" + std::to_string(found->number) +
                    "], true, role 4) -> " + std::to_string(index++));
  }
  return calls;
}

TEST_F(BinnedList, AnyOrderOfFieldsAndDiscretisationsGivesTheFirstMatchOfEach) {
  std::mt19937 random(20240304);
  for (int round = 0; round < 500; ++round) {
    const auto name = [&] { return std::string(1, static_cast<char>('a' + random() % 6)); };
    std::vector<std::string> fields;
    std::string fieldText;
    for (std::size_t i = random() % 9; i > 0; --i) {
      fields.push_back(name());
      fieldText += Field(fields.back(), "continuous", "double");
    }
    std::vector<Discretization> discretizations;
    std::string transformations;
    for (std::size_t i = random() % 16; i > 0; --i) {
      std::string content;
      for (std::size_t j = random() % 4; j > 0; --j) {
        const int number = static_cast<int>(discretizations.size());
        discretizations.push_back({name(), number});
        content += "<Discretize field='" + discretizations.back().field + "'><DiscretizeBin><Interval rightMargin='" +
                   std::to_string(number) +
                   "'/></DiscretizeBin><DiscretizeBin><Interval/></DiscretizeBin></Discretize>";
      }
      // Only the first match of a derived field counts for a field, and each of its discretisations may be one.
      transformations += Derived(content);
    }
    std::vector<std::string> wanted;
    if (random() % 2 == 0) {
      for (std::size_t i = random() % 4; i > 0; --i) wanted.push_back(name());
    }
    const std::string document = PmmlWithFields(fieldText, transformations);
    ASSERT_EQ(Fill(document, wanted, true).calls, SlowReference(fields, discretizations, wanted)) << document;
  }
}

// The reference list

TEST_F(BinnedList, ReferenceListKeepsTheBins) {
  RQXPrsUtil::RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(kThreeBins)))), Ok());
  RQMTD_NAMESPACE::RQVarList vars;
  ASSERT_EQ(parser.FillVarList(vars, {}, true), Ok());
  const auto* const variable = vars.GetVariable(0);
  ASSERT_NE(variable, nullptr);
  EXPECT_TRUE(variable->HasRange());
  EXPECT_EQ(variable->GetMinimum(), std::numeric_limits<double>::lowest());
  EXPECT_EQ(variable->GetMaximum(), std::numeric_limits<double>::max());
  EXPECT_EQ(variable->GetCutPoints(), (std::vector<double>{10, 20}));
  EXPECT_TRUE(variable->GetFlag());
  EXPECT_EQ(variable->GetEncoder().GetBinLabels(), (std::vector<std::string>{"low", "mid", "high"}));
}

TEST_F(BinnedList, ReferenceListRefusesCutPointsThatDoNotAscend) {
  for (const std::string& bins :
       {Bin("a", "leftMargin='9' rightMargin='1'") + Bin("b", "rightMargin='5'"),
        Bin("a", "leftMargin='0' rightMargin='5'") + Bin("b", "rightMargin='3'") + Bin("c", "rightMargin='9'"),
        Bin("a", "leftMargin='0' rightMargin='5'") + Bin("b", "rightMargin='5'") + Bin("c", "rightMargin='9'")}) {
    RQXPrsUtil::RQPMMLParser parser;
    ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"), Derived(Discretize(bins)))), Ok());
    RQMTD_NAMESPACE::RQVarList vars;
    EXPECT_EQ(parser.FillVarList(vars, {}, true), Failure(111)) << bins;
    EXPECT_EQ(vars.Size(), 0) << bins;
  }
}

}  // namespace
