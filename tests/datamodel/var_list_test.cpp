#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/common/RQVariable.h"
#include "tests/support/datamodel.h"
#include "tests/support/platform.h"

namespace {

using rqtest::Calls;
using rqtest::DataModel;
using rqtest::Failure;
using rqtest::FillDataModel;
using rqtest::Filled;
using rqtest::FillFlags;
using rqtest::ModelField;
using rqtest::Ok;
using RQXPrsUtil::RQDataModelParser;

const std::string kReal = "storage='real' measure='continuous'";
const std::string kTexts = "storage='string' measure='discrete'";
const std::string kNumbers = "storage='integer' measure='discrete'";

std::string Values(const std::string& content) { return "<Values>" + content + "</Values>"; }

std::string Cont(const std::string& range, const std::string& role = "0", const std::string& rest = "false, -1") {
  return "AddContVar(\"v\", \"\", " + range + ", role " + role + ", " + rest + ") -> 0";
}

std::string Cat(const std::string& values, const std::string& role = "0", int index = 0) {
  return "AddCatVar(\"v\", \"\", " + values + ", role " + role + ") -> " + std::to_string(index);
}

std::string Storage(int code, int index = 0) {
  return "variable " + std::to_string(index) + ": SetStorageType(" + std::to_string(code) + ")";
}

const char* const kUnlimited = "LOWEST, HIGHEST";
const char* const kNoTexts = "strings [], labels []";
const char* const kNoNumbers = "numbers [], labels []";

class DataModelVarList : public rqtest::WithPlatform {
 protected:
  /// The calls for one field called v, which is good.
  static Calls CallsFor(const std::string& attributes, const std::string& content = "", const FillFlags& flags = {}) {
    const Filled filled = FillDataModel(DataModel(ModelField("v", attributes, content)), flags);
    EXPECT_EQ(filled.status, Ok()) << attributes << content;
    return filled.calls;
  }
};

// The walk

TEST_F(DataModelVarList, FieldsWithoutAFieldAddNothing) {
  for (const char* const content : {"", "text", "<!--<Field/>-->", "<field/><x:Field/><FIELD/><Fields/><DataField/>",
                                    "<x><Field/></x>", "<![CDATA[<Field/>]]>", "<?Field name='v'?>"}) {
    const Filled filled = FillDataModel(DataModel(content));
    EXPECT_EQ(filled.status, Ok()) << content;
    EXPECT_EQ(filled.calls, Calls()) << content;
  }
}

TEST_F(DataModelVarList, FieldsComeInDocumentOrderBehindWhatTheListHolds) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(DataModel("text" + ModelField("b", kReal) + "<!--c--><x/>" + ModelField("a", kTexts) +
                                        "<?p?>" + ModelField("c", kNumbers))),
            Ok());
  rqtest::RecordingStorageList vars(41);
  EXPECT_EQ(parser.FillVarList(vars, false, false, 0), Ok());
  EXPECT_EQ(vars.calls, (Calls{R"(AddContVar("b", "", LOWEST, HIGHEST, role 0, false, -1) -> 41)", Storage(2, 41),
                               R"(AddCatVar("a", "", strings [], labels [], role 0) -> 42)", Storage(3, 42),
                               R"(AddCatVar("c", "", numbers [], labels [], role 0) -> 43)", Storage(1, 43)}));
}

TEST_F(DataModelVarList, NothingOfAFieldReachesTheNext) {
  const std::string full = kNumbers + " displayLabel='l' role='target'";
  EXPECT_EQ(FillDataModel(DataModel(ModelField("u", full,
                                               Values("<Value value='1' displayLabel='one'/>") +
                                                   "<Range minValue='0' maxValue='1'/>") +
                                    ModelField("v", kTexts) + ModelField("w", kReal) + ModelField("x", kNumbers)))
                .calls,
            (Calls{R"(AddCatVar("u", "l", numbers [1], labels ["one"], role 2) -> 0)", Storage(1, 0),
                   R"(AddCatVar("v", "", strings [], labels [], role 0) -> 1)", Storage(3, 1),
                   R"(AddContVar("w", "", LOWEST, HIGHEST, role 0, false, -1) -> 2)", Storage(2, 2),
                   R"(AddCatVar("x", "", numbers [], labels [], role 0) -> 3)", Storage(1, 3)}));
}

TEST_F(DataModelVarList, SecondFillOffersTheSameAgain) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(DataModel(ModelField("v", kNumbers, Values("<Value value='1'/>")))), Ok());
  const Filled first = rqtest::FillFrom(parser);
  EXPECT_EQ(first.calls, (Calls{Cat("numbers [1]"), Storage(1)}));
  EXPECT_EQ(rqtest::FillFrom(parser).calls, first.calls);
}

TEST_F(DataModelVarList, OnlyTheFirstFieldsElementIsRead) {
  const std::string document = "<DataModel><x><Fields>" + ModelField("w", kReal) + "</Fields></x><Fields>" +
                               ModelField("v", kReal) + "</Fields><Fields>" + ModelField("w", kReal) +
                               "</Fields></DataModel>";
  EXPECT_EQ(FillDataModel(document).calls, (Calls{Cont(kUnlimited), Storage(2)}));
}

// What a field says of itself

TEST_F(DataModelVarList, EachStorageHasItsCode) {
  const struct {
    const char* storage;
    int code;
  } rows[] = {{"integer", 1}, {"real", 2}, {"string", 3}, {"date", 4}, {"time", 5}, {"timestamp", 6}};
  for (const auto& row : rows) {
    const std::string storage = std::string("storage='") + row.storage + "' measure=";
    EXPECT_EQ(CallsFor(storage + "'continuous'"), (Calls{Cont(kUnlimited), Storage(row.code)})) << row.storage;
    const std::string values = row.code == 3 ? "strings [\"1\"]" : "numbers [1]";
    EXPECT_EQ(CallsFor(storage + "'discrete'", Values("<Value value='1'/>")), (Calls{Cat(values), Storage(row.code)}))
        << row.storage;
  }
}

TEST_F(DataModelVarList, UnknownStoragesAreRefused) {
  for (const char* const storage : {"Integer", "INTEGER", "int", "double", "float", "boolean", "dateTime", "Timestamp",
                                    "", " integer", "integer ", "reals", "String", "unknown", "1", "0"}) {
    for (const char* const measure : {"continuous", "discrete"}) {
      const Filled filled =
          FillDataModel(DataModel(ModelField("v", std::string("storage='") + storage + "' measure='" + measure + "'")));
      EXPECT_EQ(filled.status, Failure(109)) << storage;
      EXPECT_EQ(filled.calls, Calls()) << storage;
    }
  }
}

TEST_F(DataModelVarList, NameStorageAndMeasureAreRequiredAndAskedForInThisOrder) {
  const struct {
    const char* attributes;
    long code;
  } rows[] = {{"", 108},
              {"storage='real' measure='continuous'", 108},
              {"name='v' measure='continuous'", 108},
              {"name='v' storage='real'", 108},
              {"name='v'", 108},
              {"storage='boolean' measure='continuous'", 108},
              {"name='v' storage='boolean'", 109},
              {"name='v' storage=''", 109},
              {"name='v' storage='boolean' measure='continuous'", 109},
              {"Name='v' storage='real' measure='continuous'", 108},
              {"name='v' Storage='real' measure='continuous'", 108},
              {"name='v' storage='real' Measure='continuous'", 108},
              {"x:name='v' storage='real' measure='continuous'", 108},
              {"name='v' dataType='double' optype='continuous'", 108}};
  for (const auto& row : rows) {
    const Filled filled = FillDataModel(DataModel(std::string("<Field ") + row.attributes + "/>"));
    EXPECT_EQ(filled.status, Failure(row.code)) << row.attributes;
    EXPECT_EQ(filled.calls, Calls()) << row.attributes;
  }
}

TEST_F(DataModelVarList, EveryMeasureButContinuousIsCategorical) {
  for (const char* const measure : {"discrete", "nominal", "ordinal", "categorical", "Continuous", "CONTINUOUS",
                                    "continuous ", " continuous", ""}) {
    const std::string attributes = std::string("measure='") + measure + "' storage=";
    EXPECT_EQ(CallsFor(attributes + "'real'"), (Calls{Cat(kNoNumbers), Storage(2)})) << measure;
    EXPECT_EQ(CallsFor(attributes + "'string'"), (Calls{Cat(kNoTexts), Storage(3)})) << measure;
  }
}

TEST_F(DataModelVarList, LabelIsThatOfDisplayLabelOrEmpty) {
  EXPECT_EQ(CallsFor(kTexts + " displayLabel='A label &amp; more'")[0],
            R"(AddCatVar("v", "A label & more", strings [], labels [], role 0) -> 0)");
  for (const char* const attribute : {"", "displayLabel=''", "displayName='n'", "DisplayLabel='n'", "label='n'"}) {
    EXPECT_EQ(CallsFor(kTexts + " " + attribute)[0], Cat(kNoTexts)) << attribute;
  }
}

TEST_F(DataModelVarList, EmptyNameIsPassedOn) {
  EXPECT_EQ(FillDataModel(DataModel(ModelField("", kTexts))).calls[0],
            R"(AddCatVar("", "", strings [], labels [], role 0) -> 0)");
}

TEST_F(DataModelVarList, NamesLabelsAndTextsOfAllScriptsAreUtf8) {
  const std::string text = "\xC3\xA4\xD0\xB6\xE8\xA1\xA8\xF0\x9F\x98\x80";
  EXPECT_EQ(FillDataModel(DataModel(ModelField(text, kTexts + " displayLabel='" + text + "'",
                                               Values("<Value value='" + text + "' displayLabel='" + text + "'/>"))))
                .calls[0],
            "AddCatVar(\"" + text + "\", \"" + text + "\", strings [\"" + text + "\"], labels [\"" + text +
                "\"], role 0) -> 0");
}

TEST_F(DataModelVarList, LongTextsComeWhole) {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += "\xC3\xA4x";
  EXPECT_EQ(FillDataModel(DataModel(ModelField("v", kTexts + " displayLabel='" + text + "'",
                                               Values("<Value value='a' displayLabel='" + text + "'/>"))))
                .calls[0],
            "AddCatVar(\"v\", \"" + text + "\", strings [\"a\"], labels [\"" + text + "\"], role 0) -> 0");
}

// Roles

TEST_F(DataModelVarList, EachRoleWordHasItsRoleAndAllOthersNone) {
  const struct {
    const char* role;
    const char* plain;
    const char* fieldRoles;
  } rows[] = {{"role='input'", "4", "5"},      {"role='target'", "2", "2"},
              {"role='none'", "0", "0"},       {"", "0", "0"},
              {"role=''", "0", "0"},           {"role='Input'", "0", "0"},
              {"role='INPUT'", "0", "0"},      {"role=' input'", "0", "0"},
              {"role='inputs'", "0", "0"},     {"role='Target'", "0", "0"},
              {"role='freqweight'", "0", "0"}, {"role='weight'", "0", "0"},
              {"role='both'", "0", "0"},       {"role='4'", "0", "0"},
              {"Role='input'", "0", "0"},      {"x:role='input'", "0", "0"}};
  for (const auto& row : rows) {
    const std::string role = std::string(" ") + row.role;
    EXPECT_EQ(CallsFor(kReal + role)[0], Cont(kUnlimited, row.plain)) << row.role;
    EXPECT_EQ(CallsFor(kTexts + role)[0], Cat(kNoTexts, row.plain)) << row.role;
    EXPECT_EQ(CallsFor(kNumbers + role)[0], Cat(kNoNumbers, row.plain)) << row.role;
    const FillFlags fieldRoles{true, false, 0};
    EXPECT_EQ(CallsFor(kReal + role, "", fieldRoles)[0], Cont(kUnlimited, row.fieldRoles)) << row.role;
    EXPECT_EQ(CallsFor(kTexts + role, "", fieldRoles)[0], Cat(kNoTexts, row.fieldRoles)) << row.role;
  }
}

TEST_F(DataModelVarList, ContinuousFrequencyWeightIsTheWeightVariableWithItsStorageAndNoOrdinaryOne) {
  for (const FillFlags& flags : {FillFlags{}, FillFlags{true, true, 5}}) {
    EXPECT_EQ(CallsFor(kReal + " role='freqWeight' displayLabel='l'", "<Range minValue='0'/>", flags),
              (Calls{R"(SetWeightVar("v", "l", rounding 2) -> 0)", Storage(2)}));
    EXPECT_EQ(CallsFor("storage='string' measure='continuous' role='freqWeight'", "", flags),
              (Calls{R"(SetWeightVar("v", "", rounding 2) -> 0)", Storage(3)}));
  }
}

TEST_F(DataModelVarList, CategoricalFrequencyWeightIsAnOrdinaryVariableOfThatRole) {
  EXPECT_EQ(CallsFor(kNumbers + " role='freqWeight'"), (Calls{Cat(kNoNumbers, "3"), Storage(1)}));
  EXPECT_EQ(CallsFor(kTexts + " role='freqWeight'"), (Calls{Cat(kNoTexts, "3"), Storage(3)}));
}

// Flag and count

TEST_F(DataModelVarList, FlagAndCountAreHandedOnTogetherAndOnlyForMoreThanOne) {
  const struct {
    bool flag;
    int count;
    const char* passed;
  } rows[] = {{true, 2, "true, 2"},    {true, 2147483647, "true, 2147483647"},
              {true, 1, "false, -1"},  {true, 0, "false, -1"},
              {true, -1, "false, -1"}, {true, -2147483647 - 1, "false, -1"},
              {false, 2, "false, -1"}, {false, 100, "false, -1"},
              {false, 0, "false, -1"}, {false, -1, "false, -1"}};
  for (const auto& row : rows) {
    for (const bool fieldRoles : {false, true}) {
      const FillFlags flags{fieldRoles, row.flag, row.count};
      EXPECT_EQ(CallsFor(kReal + " role='target'", "", flags), (Calls{Cont(kUnlimited, "2", row.passed), Storage(2)}))
          << row.passed;
      EXPECT_EQ(CallsFor(kNumbers, "", flags), (Calls{Cat(kNoNumbers), Storage(1)})) << row.passed;
    }
  }
}

// Values

TEST_F(DataModelVarList, ValuesAreThoseOfEveryValueInEveryValuesElement) {
  EXPECT_EQ(CallsFor(kTexts, "<Values><Value value='a'/>x<!-- --><y/><Value value=''/></Values><z/>" + Values("") +
                                 Values("<Value value=' b '/><Value value='a'/>"))[0],
            Cat(R"(strings ["a", "", " b ", "a"])"));
}

TEST_F(DataModelVarList, ElementsOfOtherNamesAndPlacesAreNoValues) {
  for (const char* const content :
       {"<Value value='a'/>", "<values><Value value='a'/></values>", "<Values><value value='a'/></Values>",
        "<Values><x><Value value='a'/></x></Values>", "<x><Values><Value value='a'/></Values></x>",
        "<Values value='a'/>", "<Values><Values><Value value='a'/></Values></Values>",
        "<p:Values><Value value='a'/></p:Values>", "<Values><p:Value value='a'/></Values>",
        "<Values><!--<Value value='a'/>--></Values>", "<Values><Value/></Values>", "<Values><Value>a</Value></Values>",
        "<Values><Value Value='a' displayValue='l' p:value='a'/></Values>"}) {
    EXPECT_EQ(CallsFor(kTexts, content)[0], Cat(kNoTexts)) << content;
  }
}

TEST_F(DataModelVarList, PropertyOfAValueIsNotLookedAt) {
  EXPECT_EQ(CallsFor(kTexts, Values("<Value property='missing' value='a'/><Value value='b' property='invalid'/>")),
            (Calls{Cat(R"(strings ["a", "b"])"), Storage(3)}));
}

TEST_F(DataModelVarList, ValuesOfANumericFieldAreTheNumbersAmongThem) {
  const struct {
    const char* value;
    const char* numbers;
  } rows[] = {{"1", "[1]"},  {"-2.5e3", "[-2500]"}, {"NaN", "[LOWEST]"}, {" 7 ", "[7]"}, {"007", "[7]"},
              {"INF", "[]"}, {"-INF", "[]"},        {"1e400", "[]"},     {"", "[]"},     {"x", "[]"},
              {"1,5", "[]"}, {"0x10", "[]"},        {"2020-01-31", "[]"}};
  for (const char* const storage : {"integer", "real", "date", "time", "timestamp"}) {
    for (const auto& row : rows) {
      const std::string numbers = std::string("numbers ") + row.numbers;
      EXPECT_EQ(CallsFor(std::string("measure='discrete' storage='") + storage + "'",
                         Values(std::string("<Value value='") + row.value + "'/>"))[0],
                Cat(std::string(row.numbers) == "[]" ? numbers + ", labels []" : numbers))
          << row.value;
    }
  }
}

TEST_F(DataModelVarList, LabelsAreHandedOnWhenThereAreAsManyAsValues) {
  const struct {
    const char* values;
    const char* numbers;
    const char* texts;
  } rows[] = {
      {"<Value value='1' displayLabel='a'/><Value value='2' displayLabel='b'/>", R"(numbers [1, 2], labels ["a", "b"])",
       R"(strings ["1", "2"], labels ["a", "b"])"},
      {"<Value value='1' displayLabel='a'/><Value value='2'/>", "numbers [1, 2]", R"(strings ["1", "2"])"},
      {"<Value value='1'/><Value value='2' displayLabel='b'/>", "numbers [1, 2]", R"(strings ["1", "2"])"},
      {"<Value value='1'/>", "numbers [1]", R"(strings ["1"])"},
      {"<Value displayLabel='a'/>", "numbers []", "strings []"},
      {"<Value value='1' displayLabel=''/>", R"(numbers [1], labels [""])", R"(strings ["1"], labels [""])"},
      // Labels pair by their own position.
      {"<Value value='1'/><Value displayLabel='a'/>", R"(numbers [1], labels ["a"])", R"(strings ["1"], labels ["a"])"},
      {"<Value value='x' displayLabel='a'/><Value value='1'/>", R"(numbers [1], labels ["a"])",
       R"(strings ["x", "1"])"},
      {"<Value value='x' displayLabel='a'/>", "numbers []", R"(strings ["x"], labels ["a"])"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CallsFor(kNumbers, Values(row.values))[0], Cat(row.numbers)) << row.values;
    EXPECT_EQ(CallsFor(kTexts, Values(row.values))[0], Cat(row.texts)) << row.values;
  }
}

TEST_F(DataModelVarList, LabelsAndValuesOfSeveralValuesElementsAreCountedTogether) {
  EXPECT_EQ(CallsFor(kNumbers, Values("<Value value='1'/>") + Values("<Value value='2' displayLabel='b'/>") +
                                   Values("<Value displayLabel='a'/>"))[0],
            Cat(R"(numbers [1, 2], labels ["b", "a"])"));
}

TEST_F(DataModelVarList, ValuesOfAContinuousFieldAreNotHandedOn) {
  EXPECT_EQ(CallsFor(kReal, Values("<Value value='1' displayLabel='a'/>")), (Calls{Cont(kUnlimited), Storage(2)}));
}

// Range

TEST_F(DataModelVarList, RangeOfAContinuousNumericFieldIsHandedOn) {
  const struct {
    const char* content;
    const char* range;
  } rows[] = {{"", "LOWEST, HIGHEST"},
              {"<Range/>", "LOWEST, HIGHEST"},
              {"<Range minValue='0' maxValue='10.5'/>", "0, 10.5"},
              {"<Range minValue='-3'/>", "-3, HIGHEST"},
              {"<Range maxValue='-3'/>", "LOWEST, -3"},
              {"<Range minValue='x' maxValue='2'/>", "LOWEST, 2"},
              {"<Range minValue='1' maxValue=''/>", "1, HIGHEST"},
              {"<Range minValue='-INF' maxValue='INF'/>", "LOWEST, HIGHEST"},
              {"<Range minValue='NaN'/>", "LOWEST, HIGHEST"},
              {"<Range maxValue='NaN'/>", "LOWEST, LOWEST"},
              {"<Range minValue='5' maxValue='5'/>", "5, 5"},
              {"<Range minValue='9' maxValue='1'/>", "9, 1"},
              // A later range narrows what it gives, and leaves the rest.
              {"<Range minValue='1' maxValue='2'/><Range maxValue='3'/>", "1, 3"},
              {"<Range minValue='1' maxValue='2'/><x/><Range minValue='x'/>", "1, 2"},
              {"<range minValue='1'/><x><Range minValue='1'/></x><p:Range minValue='1'/><Interval leftMargin='1'/>",
               "LOWEST, HIGHEST"},
              {"<Range leftMargin='1' rightMargin='2' MinValue='1' min='1'/>", "LOWEST, HIGHEST"}};
  for (const auto& row : rows) {
    for (const char* const storage : {"integer", "real", "date", "time", "timestamp"}) {
      EXPECT_EQ(CallsFor(std::string("measure='continuous' storage='") + storage + "'", row.content)[0],
                Cont(row.range))
          << row.content;
    }
  }
}

TEST_F(DataModelVarList, RangeOfATextFieldIsIgnored) {
  const std::string range = "<Range minValue='1' maxValue='2'/>";
  EXPECT_EQ(CallsFor("storage='string' measure='continuous'", range)[0], Cont(kUnlimited));
  EXPECT_EQ(CallsFor(kTexts, range), (Calls{Cat(kNoTexts), Storage(3)}));
}

TEST_F(DataModelVarList, RangeOfACategoricalFieldIsNotHandedOn) {
  EXPECT_EQ(CallsFor(kNumbers, "<Range minValue='1' maxValue='2'/>"), (Calls{Cat(kNoNumbers), Storage(1)}));
}

// Failures

TEST_F(DataModelVarList, FirstFailureStopsTheWalkAndWhatWasAddedBeforeStays) {
  const struct {
    const char* bad;
    long code;
  } rows[] = {{"<Field storage='real' measure='continuous'/>", 108},
              {"<Field name='w' measure='continuous'/>", 108},
              {"<Field name='w' storage='real'/>", 108},
              {"<Field name='w' storage='x' measure='continuous'/>", 109}};
  for (const auto& row : rows) {
    const Filled filled =
        FillDataModel(DataModel(ModelField("v", kReal) + row.bad + "<Field/>" + ModelField("u", kReal)));
    EXPECT_EQ(filled.status, Failure(row.code)) << row.bad;
    EXPECT_EQ(filled.calls, (Calls{Cont(kUnlimited), Storage(2)})) << row.bad;
  }
}

TEST_F(DataModelVarList, RefusedVariableIsReportedWhateverWasAdded) {
  const std::string weight = kReal + " role='freqWeight'";
  for (const std::string& attributes : {kReal, kTexts, kNumbers, weight}) {
    RQDataModelParser parser;
    ASSERT_EQ(
        parser.ParseToDOM(DataModel(ModelField("u", kReal) + ModelField("v", attributes) + ModelField("w", kReal))),
        Ok());
    for (const int refusal : {-1, -2147483647 - 1}) {
      rqtest::RecordingStorageList vars;
      vars.refused = {"v"};
      vars.refusal = refusal;
      EXPECT_EQ(parser.FillVarList(vars, false, false, 0), Failure(111)) << attributes;
      EXPECT_EQ(vars.calls.size(), 3U) << attributes;
      EXPECT_EQ(parser.GetStatus(), Ok());
    }
    EXPECT_EQ(rqtest::FillFrom(parser).status, Ok());
  }
}

TEST_F(DataModelVarList, VariableThatIsNotHandedOutIsReported) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(DataModel(ModelField("v", kReal) + ModelField("w", kReal))), Ok());
  rqtest::RecordingStorageList vars;
  vars.withoutVariable = {0};
  EXPECT_EQ(parser.FillVarList(vars, false, false, 0), Failure(111));
  EXPECT_EQ(vars.calls, Calls{Cont(kUnlimited)});
}

// The reference list

TEST_F(DataModelVarList, ReferenceListKeepsEverything) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(DataModel(
                ModelField("income", "storage='real' measure='continuous' role='input' displayLabel='Income'",
                           "<Range minValue='0' maxValue='1000'/>") +
                ModelField("sex", kTexts + " role='target'", Values("<Value value='m' displayLabel='male'/>")) +
                ModelField("weight", kReal + " role='freqWeight'"))),
            Ok());
  RQMTD_NAMESPACE::RQVarList vars;
  ASSERT_EQ(parser.FillVarList(vars, true, true, 10), Ok());
  ASSERT_EQ(vars.Size(), 3);
  const auto& income = *vars.GetVariable(0);
  EXPECT_EQ(income.GetLabel(), "Income");
  EXPECT_EQ(income.GetRole(), 5);
  EXPECT_EQ(income.GetStorageType(), 2);
  EXPECT_EQ(income.GetMaximum(), 1000);
  EXPECT_TRUE(income.GetFlag());
  EXPECT_EQ(income.GetCount(), 10);
  EXPECT_EQ(vars.GetVariable(1)->GetLabels(), std::vector<std::string>{"male"});
  EXPECT_EQ(vars.GetVariable(1)->GetRole(), 2);
  EXPECT_EQ(vars.GetVariable(2)->GetRole(), 3);
  EXPECT_EQ(vars.GetVariable(2)->GetName(), "weight");
}

TEST_F(DataModelVarList, ReferenceListRefusesASecondWeightAnEmptyNameAUsedNameAndARangeUpsideDown) {
  for (const std::string& fields :
       {ModelField("a", kReal + " role='freqWeight'") + ModelField("b", kReal + " role='freqWeight'"),
        ModelField("a", kReal) + ModelField("", kReal), ModelField("a", kReal) + ModelField("a", kTexts),
        ModelField("a", kReal) + ModelField("b", kReal, "<Range minValue='2' maxValue='1'/>"),
        ModelField("a", kReal) + ModelField("b", kReal, "<Range minValue='0' maxValue='NaN'/>")}) {
    RQDataModelParser parser;
    ASSERT_EQ(parser.ParseToDOM(DataModel(fields)), Ok());
    RQMTD_NAMESPACE::RQVarList vars;
    EXPECT_EQ(parser.FillVarList(vars, false, false, 0), Failure(111)) << fields;
    EXPECT_EQ(vars.Size(), 1) << fields;
  }
}

}  // namespace
