#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::BuildTask;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::Field;
using rqtest::FillDerived;
using rqtest::Filled;
using rqtest::FillSettings;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::Settings;
using rqtest::SettingsWithFields;
using rqtest::Valued;
using RQXPrsUtil::RQSettingsParser;

std::string Derived(const std::string& name, const std::string& optype, const std::string& dataType,
                    const std::string& content = "") {
  return "<DerivedField name='" + name + "' optype='" + optype + "' dataType='" + dataType + "'>" + content +
         "</DerivedField>";
}

std::string Cont(const std::string& name, const std::string& range, int index = 0) {
  return "AddContVar(\"" + name + "\", \"\", " + range + ", role 4, false, -1) -> " + std::to_string(index);
}

std::string Storage(int code, int index = 0) {
  return "variable " + std::to_string(index) + ": SetStorageType(" + std::to_string(code) + ")";
}

const char* const kUnlimited = "LOWEST, HIGHEST";

class TransDict : public rqtest::WithPlatform {
 protected:
  static Filled Of(const std::string& derivedFields) { return FillDerived(SettingsWithFields("", derivedFields)); }
  static Calls CallsFor(const std::string& content, const std::string& type = "double") {
    const Filled filled = Of(Derived("v", "continuous", type, content));
    EXPECT_EQ(filled.status, Ok()) << content;
    return filled.calls;
  }
  static std::string Extended(const std::string& content) { return "<Extension name='x'>" + content + "</Extension>"; }
};

// The walk

TEST_F(TransDict, DocumentWithoutTransformationDictionaryAddsNothing) {
  const Filled filled = FillDerived(SettingsWithFields(Field("a", "continuous", "boolean")));
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls, Calls());
}

TEST_F(TransDict, DictionaryWithoutDerivedFieldsAddsNothing) {
  for (const char* const content : {"", "text", "<DataField/>", "<derivedField/><x:DerivedField/>",
                                    "<x><DerivedField/></x>", "<!--<DerivedField/>-->"}) {
    const Filled filled = Of(content);
    EXPECT_EQ(filled.status, Ok()) << content;
    EXPECT_EQ(filled.calls, Calls()) << content;
  }
}

TEST_F(TransDict, DerivedFieldsComeInDocumentOrderBehindWhatTheListHolds) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("data", "continuous", "double"),
                                             "text" + Derived("b", "continuous", "double") + "<!--c--><x/>" +
                                                 Derived("a", "categorical", "string"))),
            Ok());
  rqtest::RecordingStorageList vars;
  EXPECT_EQ(parser.FillVarList(vars, false), Ok());
  EXPECT_EQ(parser.FillTransDict(vars), Ok());
  EXPECT_EQ(vars.calls, (Calls{Cont("data", kUnlimited), Storage(2), Cont("b", kUnlimited, 1), Storage(2, 1),
                               R"(AddCatVar("a", "", strings [], labels [], role 4) -> 2)", Storage(3, 2)}));
}

TEST_F(TransDict, FirstTransformationDictionaryCounts) {
  const auto dictionary = [](const std::string& content) {
    return "<TransformationDictionary>" + content + "</TransformationDictionary>";
  };
  const Filled filled = FillDerived(Pmml("<DataDictionary/>" + dictionary(Derived("a", "continuous", "double")) +
                                         dictionary(Derived("b", "continuous", "double")) + BuildTask("")));
  EXPECT_EQ(filled.calls, (Calls{Cont("a", kUnlimited), Storage(2)}));
}

// Derived fields are read as data fields are

TEST_F(TransDict, DerivedFieldIsReadAsTheDataFieldOfTheSameContent) {
  const struct {
    const char* optype;
    const char* type;
    const char* content;
  } rows[] = {
      {"continuous", "integer", ""},
      {"continuous", "double", ""},
      {"continuous", "float", ""},
      {"continuous", "string", "<Value value='?' property='missing'/><Interval leftMargin='x'/>"},
      {"continuous", "date", ""},
      {"continuous", "time", ""},
      {"continuous", "dateTime", ""},
      {"continuous", "boolean", ""},
      {"continuous", "timeSeconds", ""},
      {"continuous", "dateDaysSince[1960]", ""},
      {"ordinal", "", ""},
      {"ordinal", "integer", "<Value value='1' displayValue='a'/><Value value='2'/>"},
      {"categorical", "integer", "<Value value='1' displayValue='a'/><Value value='2' displayValue='b'/>"},
      {"categorical", "double", "<Value value='1' displayValue='a'/><Value value='x' displayValue='b'/>"},
      {"", "string", "<Value value='a'/><Value value='b'/><Value/><Value value='?' property='missing'/>"},
      {"categorical", "string", "<Value value='a' displayValue='A'/><Value value='?' property='x' displayValue='q'/>"},
      {"continuous", "double", "<Value value='9' property='missing' displayValue='m'/><Value value='1'/>"},
      {"continuous", "double", "<Interval leftMargin='1' rightMargin='2'/>"},
      {"continuous", "double", "<Interval rightMargin='2'/>"},
      {"continuous", "double", "<Interval/>"},
      {"continuous", "double", "<Interval rightMargin='-2'/>"},
      {"continuous", "double", "<Interval leftMargin='5' rightMargin='1'/>"},
      {"continuous", "double", "<Interval leftMargin='x'/>"},
      {"categorical", "double", "<Interval leftMargin='x'/>"},
      {"continuous", "double", "<Interval leftMargin='1'/><Interval leftMargin='2'/>"},
      {"continuous", "double", "<Extension name='invalidRangeLower' value='1'/>"},
      {"continuous", "double",
       "<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeUpper' value='2'/>"},
      {"categorical", "double", "<Extension name='invalidRangeUpper' value='x'/>"},
      {"categorical", "string", "<Extension name='invalidRangeUpper' value='1'/>"},
      {"continuous", "double", "<Apply function='+'/><Constant>1</Constant>text<!--c-->"},
  };
  for (const auto& row : rows) {
    const Filled expected = FillSettings(SettingsWithFields(Field("v", row.optype, row.type, row.content)));
    const Filled filled = Of(Derived("v", row.optype, row.type, row.content));
    EXPECT_EQ(filled.status, expected.status) << row.optype << " " << row.type << " " << row.content;
    EXPECT_EQ(filled.calls, expected.calls) << row.optype << " " << row.type << " " << row.content;
    EXPECT_EQ(filled.calls.empty(), !filled.status.IsOK()) << row.optype << " " << row.type << " " << row.content;
  }
}

TEST_F(TransDict, FieldWithoutRangeIsUnlimited) { EXPECT_EQ(CallsFor(""), (Calls{Cont("v", kUnlimited), Storage(2)})); }

TEST_F(TransDict, MissingLeftMarginIsTheSmallestPositiveNumberThoughTheLowestNumberLooksMeant) {
  const Calls expected = {Cont("v", "2.2250738585072014e-308, 10"), Storage(2)};
  EXPECT_EQ(CallsFor("<Interval rightMargin='10'/>"), expected);
  EXPECT_EQ(CallsFor(Extended("<Interval rightMargin='10'/>")), expected);
  EXPECT_EQ(Of(Derived("v", "continuous", "double", Extended("<Interval rightMargin='0'/>"))).status, Failure(109));
}

TEST_F(TransDict, EachStorageTypeHasItsCodeToldAfterTheEncoder) {
  const struct {
    const char* type;
    int code;
  } rows[] = {{"integer", 1}, {"double", 2}, {"float", 2}, {"date", 4}, {"time", 5}, {"dateTime", 6}};
  for (const auto& row : rows) {
    EXPECT_EQ(
        CallsFor("<Value value='9' property='missing'/><Extension name='invalidRangeLower' value='1'/>", row.type),
        (Calls{Cont("v", kUnlimited), R"(encoder 0: AddNumMissingValue(9, ""))",
               "encoder 0: SetInvalidRange(1, HIGHEST)", Storage(row.code)}))
        << row.type;
  }
  EXPECT_EQ(CallsFor("<Value value='9' property='missing'/>", "string"), (Calls{Cont("v", kUnlimited), Storage(3)}));
}

TEST_F(TransDict, NameTypeAndMeasureAreRequired) {
  const struct {
    const char* attributes;
    long code;
  } rows[] = {{"", 108},
              {"optype='continuous' dataType='double'", 108},
              {"name='v' optype='continuous'", 108},
              {"name='v' dataType='double'", 108},
              {"name='v' dataType='boolean'", 109},
              {"name='v' dataType='boolean' optype='continuous'", 109}};
  for (const auto& row : rows) {
    const Filled filled = Of(Derived("before", "continuous", "double") + "<DerivedField " + row.attributes + "/>" +
                             Derived("behind", "continuous", "double"));
    EXPECT_EQ(filled.status, Failure(row.code)) << row.attributes;
    EXPECT_EQ(filled.calls, (Calls{Cont("before", kUnlimited), Storage(2)})) << "what was added stays";
  }
}

TEST_F(TransDict, LabelIsTheDisplayName) {
  EXPECT_EQ(Of("<DerivedField name='v' displayName='V' optype='continuous' dataType='double'/>").calls[0],
            R"(AddContVar("v", "V", LOWEST, HIGHEST, role 4, false, -1) -> 0)");
}

TEST_F(TransDict, FieldsDoNotInheritFromTheFieldBefore) {
  EXPECT_EQ(Of(Derived("a", "continuous", "double", Extended("<Interval leftMargin='1' rightMargin='2'/>")) +
               Derived("b", "continuous", "double"))
                .calls,
            (Calls{Cont("a", "1, 2"), Storage(2), Cont("b", kUnlimited, 1), Storage(2, 1)}));
}

// Ranges inside extensions

TEST_F(TransDict, IntervalInsideAnExtensionIsTheRangeThoughNotOfDataFields) {
  const std::string content = Extended("<Interval leftMargin='1' rightMargin='2'/>");
  EXPECT_EQ(CallsFor(content), (Calls{Cont("v", "1, 2"), Storage(2)}));
  EXPECT_EQ(FillSettings(SettingsWithFields(Field("v", "continuous", "double", content))).calls,
            (Calls{Cont("v", kUnlimited), Storage(2)}));
}

TEST_F(TransDict, EveryExtensionMayCarryTheRangeWhateverItIsNamed) {
  for (const char* const attributes :
       {"", "name='x'", "extender='anybody'", "name='invalidRange' value='x'", "value='1'"}) {
    EXPECT_EQ(CallsFor("<Extension " + std::string(attributes) + "><Interval leftMargin='1'/></Extension>"),
              (Calls{Cont("v", "1, HIGHEST"), Storage(2)}))
        << attributes;
  }
}

TEST_F(TransDict, ExtensionMayBeInvalidRangeAndRangeAtOnce) {
  EXPECT_EQ(CallsFor("<Extension name='invalidRangeLower' value='7'><Interval leftMargin='1' "
                     "rightMargin='2'/></Extension>"),
            (Calls{Cont("v", "1, 2"), "encoder 0: SetInvalidRange(7, HIGHEST)", Storage(2)}));
}

TEST_F(TransDict, LaterIntervalReplacesAnEarlierOneInsideAnExtensionOrNot) {
  const std::string direct = "<Interval leftMargin='1' rightMargin='2'/>";
  const std::string nested = Extended("<Interval leftMargin='3' rightMargin='4'/>");
  EXPECT_EQ(CallsFor(direct + nested)[0], Cont("v", "3, 4"));
  EXPECT_EQ(CallsFor(nested + direct)[0], Cont("v", "1, 2"));
  EXPECT_EQ(CallsFor(nested + Extended("<Interval leftMargin='5'/>"))[0], Cont("v", "5, HIGHEST"));
  EXPECT_EQ(CallsFor(nested + "<Interval rightMargin='6'/>")[0], Cont("v", "2.2250738585072014e-308, 6"));
  EXPECT_EQ(CallsFor(nested + Extended(""))[0], Cont("v", "3, 4")) << "an extension without interval changes nothing";
}

TEST_F(TransDict, FirstIntervalDirectlyInAnExtensionCounts) {
  EXPECT_EQ(CallsFor(Extended("text<!--c--><x><Interval leftMargin='9'/></x><interval leftMargin='9'/>"
                              "<x:Interval leftMargin='9'/><Interval leftMargin='1' rightMargin='2'/>"
                              "<Interval leftMargin='3' rightMargin='x'/>"))[0],
            Cont("v", "1, 2"));
  EXPECT_EQ(CallsFor(Extended(Extended("<Interval leftMargin='x'/>")))[0], Cont("v", kUnlimited));
  EXPECT_EQ(CallsFor("<x><Interval leftMargin='x'/></x><Discretize field='v'><DiscretizeBin><Interval "
                     "leftMargin='x'/></DiscretizeBin></Discretize>")[0],
            Cont("v", kUnlimited));
}

TEST_F(TransDict, BadIntervalInsideAnExtensionIsRefused) {
  for (const char* const interval : {"leftMargin='x'", "rightMargin='x'", "leftMargin='5' rightMargin='1'",
                                     "leftMargin=''", "rightMargin='INF'", "rightMargin='-1'"}) {
    for (const char* const optype : {"continuous", "categorical"}) {
      const Filled filled = Of(Derived("v", optype, "double", Extended("<Interval " + std::string(interval) + "/>")));
      EXPECT_EQ(filled.status, Failure(109)) << interval;
      EXPECT_EQ(filled.calls, Calls()) << interval;
    }
  }
}

TEST_F(TransDict, TextFieldsIgnoreIntervalsInsideExtensionsToo) {
  EXPECT_EQ(CallsFor(Extended("<Interval leftMargin='x'/>") + "<Interval leftMargin='x'/>", "string"),
            (Calls{Cont("v", kUnlimited), Storage(3)}));
  EXPECT_EQ(Of(Derived("v", "categorical", "string", Extended("<Interval leftMargin='x'/>"))).status, Ok());
}

// No bins, no roles

TEST_F(TransDict, BinsAreNeverConsulted) {
  const std::string bins =
      "<Discretize field='v'><DiscretizeBin binValue='a'><Interval leftMargin='0' rightMargin='1'/></DiscretizeBin>"
      "<DiscretizeBin binValue='b'><Interval rightMargin='2'/></DiscretizeBin></Discretize>";
  EXPECT_EQ(CallsFor(bins), (Calls{Cont("v", kUnlimited), Storage(2)}));
}

TEST_F(TransDict, FrequencyWeightOfTheTaskIsAddedAsAnInputAllTheSameBecauseNothingFillsTheTableOfRoles) {
  const Filled filled =
      FillDerived(Pmml("<DataDictionary/><TransformationDictionary>" + Derived("w", "continuous", "double") +
                       "</TransformationDictionary>" + BuildTask(Valued("FrequencyWeightVar", "w"))));
  EXPECT_EQ(filled.calls, (Calls{Cont("w", kUnlimited), Storage(2)}));
}

// What the list answers

TEST_F(TransDict, RefusalStopsTheWalk) {
  RQSettingsParser parser;
  const std::string missing = "<Value value='9' property='missing'/>";
  ASSERT_EQ(Parse(parser, SettingsWithFields("", Derived("a", "continuous", "double") +
                                                     Derived("b", "continuous", "double", missing) +
                                                     Derived("c", "continuous", "boolean"))),
            Ok());
  rqtest::RecordingStorageList refusing;
  refusing.refused = {"b"};
  EXPECT_EQ(parser.FillTransDict(refusing), Failure(111));
  EXPECT_EQ(refusing.calls, (Calls{Cont("a", kUnlimited), Storage(2), Cont("b", kUnlimited, -1)}));
  rqtest::RecordingStorageList hiding;
  hiding.withoutVariable = {1};
  EXPECT_EQ(parser.FillTransDict(hiding), Failure(111));
  EXPECT_EQ(hiding.calls, (Calls{Cont("a", kUnlimited), Storage(2), Cont("b", kUnlimited, 1),
                                 R"(encoder 1: AddNumMissingValue(9, ""))"}));
  EXPECT_EQ(parser.GetStatus(), Ok());
}

TEST_F(TransDict, ReferenceListRefusesADerivedFieldNamedLikeADataField) {
  RQSettingsParser parser;
  ASSERT_EQ(
      Parse(parser, SettingsWithFields(Field("a", "continuous", "double"),
                                       Derived("b", "categorical", "date") + Derived("a", "continuous", "double"))),
      Ok());
  RQMTD_NAMESPACE::RQVarList vars;
  EXPECT_EQ(parser.FillVarList(vars, false), Ok());
  EXPECT_EQ(parser.FillTransDict(vars), Failure(111));
  ASSERT_EQ(vars.Size(), 2);
  EXPECT_EQ(vars.GetVariable(1)->GetName(), "b");
  EXPECT_EQ(vars.GetVariable(1)->GetStorageType(), 4);
}

}  // namespace
