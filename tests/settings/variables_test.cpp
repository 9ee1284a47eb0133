// The names of variables: both forms of GetVariables and the operations that ask for one role.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Complex;
using rqtest::ListValue;
using rqtest::Parameter;
using rqtest::Show;
using rqtest::Valued;
using rqtest::Values;
using RQXPrsUtil::RQSettingsParser;

const char* const kIsList = "isList='true'";

class Variables : public rqtest::WithSettings {
 protected:
  std::string Of(const std::string& attributes, const std::string& content = "") {
    Load(Parameter("p", attributes, content));
    return ask_.Variables("p");
  }
  std::string SingleOf(const std::string& attributes, const std::string& content = "") {
    Load(Parameter("p", attributes, content));
    return ask_.Variable("p");
  }
};

// Lists

TEST_F(Variables, ListGivesItsNamesInOrder) {
  EXPECT_EQ(Of(kIsList, ListValue({"b", "a", "b", " c "})), R"(OK: ["b", "a", "b", " c "])");
}

TEST_F(Variables, EmptyNamesAreDropped) {
  EXPECT_EQ(Of(kIsList, ListValue({"a", "", "c"})), R"(OK: ["a", "c"])");
  EXPECT_EQ(Of(kIsList, ListValue({"", ""})), "OK: []");
  EXPECT_EQ(Of(kIsList, ListValue({" "})), R"(OK: [" "])");
}

TEST_F(Variables, EmptyListIsGoodHereThoughGetArrayCallsItAParameterWithoutValue) {
  for (const char* const content : {"<ListValue/>", "<ListValue> </ListValue>", "<ListValue><value/></ListValue>",
                                    "<ListValue><!--c--><x><Value value='a'/></x></ListValue>"}) {
    EXPECT_EQ(Of(kIsList, content), "OK: []") << content;
    EXPECT_EQ(ask_.Strings("p"), "123 (flag): []") << content;
  }
}

TEST_F(Variables, ItemWithoutValueEndsTheListWithTheNamesBeforeIt) {
  const std::string first = "<Value value='a'/>";
  const std::string last = "<Value value='c'/>";
  EXPECT_EQ(Of(kIsList, "<ListValue>" + first + "<Value/>" + last + "</ListValue>"), R"(108: ["a"])");
  EXPECT_EQ(Of(kIsList, "<ListValue>" + first + "<Value Value='b' displayValue='b'/>" + last + "</ListValue>"),
            R"(108: ["a"])");
  EXPECT_EQ(Of(kIsList, "<ListValue><Value>text</Value>" + last + "</ListValue>"), "108: []");
  EXPECT_EQ(Of(kIsList, "<ListValue>" + first + last + "<Value/></ListValue>"), R"(108: ["a", "c"])");
}

TEST_F(Variables, OnlyValueElementsDirectlyInTheListCount) {
  EXPECT_EQ(Of(kIsList,
               "<ListValue>text<!-- <Value value='0'/> --><Value value='a'><Value value='1'/></Value>"
               "<value value='2'/><x:Value value='3'/><![CDATA[<Value value='4'/>]]><Values value='5'/>"
               "<x><Value value='6'/></x><?p i?><Value value='b'/></ListValue>"),
            R"(OK: ["a", "b"])");
}

TEST_F(Variables, FirstListCounts) {
  EXPECT_EQ(Of(kIsList, Values({"0"}) + "<listValue/><x:ListValue/>" + ListValue({"a"}) + ListValue({"b"})),
            R"(OK: ["a"])");
  EXPECT_EQ(Of(kIsList, "<ListValue/>" + ListValue({"b"})), "OK: []");
}

TEST_F(Variables, ListWithoutItsElementIsRefusedAndTheOutputEmptied) {
  for (const char* const content :
       {"", "text", "<Value value='a'/>", "<x><ListValue><Value value='a'/></ListValue></x>", "<listValue/>",
        "<!--<ListValue/>-->"}) {
    EXPECT_EQ(Of(kIsList, content), "122: []") << content;
    EXPECT_EQ(Of("isList='true' value='a'", content), "122: []") << content;
  }
}

TEST_F(Variables, ListIgnoresTheParametersOwnValue) {
  EXPECT_EQ(Of("isList='true' value='own'", ListValue({"a"})), R"(OK: ["a"])");
}

// Single values

TEST_F(Variables, SingleValueGivesOneName) {
  EXPECT_EQ(Of("value='a'"), R"(OK: ["a"])");
  EXPECT_EQ(Of("isList='false' value='a'"), R"(OK: ["a"])");
}

TEST_F(Variables, EmptySingleValueGivesNoName) { EXPECT_EQ(Of("value=''"), "OK: []"); }

TEST_F(Variables, OnlyTheWordTrueMakesAList) {
  for (const char* const word : {"TRUE", "True", "1", "yes", " true", "true ", "", "false"}) {
    EXPECT_EQ(Of("isList='" + std::string(word) + "' value='own'", ListValue({"a"})), R"(OK: ["own"])") << word;
  }
  EXPECT_EQ(Of("IsList='true' x:isList='true' value='own'", ListValue({"a"})), R"(OK: ["own"])");
  EXPECT_EQ(Of("isList='&#116;rue' value='own'", ListValue({"a"})), R"(OK: ["a"])");
}

TEST_F(Variables, ListElementDoesNotMakeAListHereThoughItDoesInGetArray) {
  EXPECT_EQ(Of("value='own'", ListValue({"a", "b"})), R"(OK: ["own"])");
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["a", "b"])");
  EXPECT_EQ(Of("", ListValue({"a", "b"})), "108: []");
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["a", "b"])");
}

TEST_F(Variables, MissingValueIsAMissingAttributeHereThoughGetArrayCallsItAParameterWithoutValue) {
  EXPECT_EQ(Of(""), "108: []");
  EXPECT_EQ(ask_.Strings("p"), "123 (flag): []");
  EXPECT_EQ(Of("isList='false' Value='a'", Values({"a"})), "108: []");
}

TEST_F(Variables, OutputIsKeptWhenThereIsNoSuchParameterAndEmptiedOnceThereIs) {
  Load(Parameter("p", kIsList));
  EXPECT_EQ(ask_.Variables("absent"), R"(120 (flag): ["before"])");
  EXPECT_EQ(ask_.Variables("p"), "122: []");
}

TEST_F(Variables, ParametersOfComplexOnesCannotBeReached) {
  Load(Complex("c", Valued("p", "a")));
  EXPECT_EQ(ask_.Variables("p"), R"(120 (flag): ["before"])");
  EXPECT_EQ(ask_.Variable("p"), R"(120 (flag): "before")");
}

TEST_F(Variables, NamesOfEveryScriptAndLengthComeWhole) {
  const std::string longName = std::string(3999, 'a') + "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::vector<std::string> names = {"\xE5\x9B\x9E\xE5\xB8\xB0", "\xD7\xA9\xD7\x9C", "\xF0\x9F\x98\x80", longName};
  EXPECT_EQ(Of(kIsList, ListValue({names[0], names[1], "&#x1F600;", names[3]})), "OK: " + Show(names));
  EXPECT_EQ(Of("value='" + longName + "'"), "OK: " + Show(std::vector<std::string>{longName}));
  EXPECT_EQ(SingleOf("value='" + longName + "'"), "OK: " + Show(longName));
  EXPECT_EQ(Of(kIsList, ListValue({"a\nb", "a&#10;b", "&lt;"})), "OK: [\"a b\", \"a\nb\", \"<\"]");
}

TEST_F(Variables, NameThatUtf8CannotSayIsEmptyAndDropped) {
  const std::string document = rqtest::Settings(Parameter("p", kIsList, ListValue({"a", "?", "b"})));
  ASSERT_EQ(rqtest::Parse(parser_, rqtest::AsUtf16(document, u'\xD800')), rqtest::Ok());
  EXPECT_EQ(ask_.Variables("p"), R"(OK: ["a", "b"])");
}

// One name

TEST_F(Variables, OneNameIsTheValueWhateverIsListSays) {
  EXPECT_EQ(SingleOf("value='a'"), R"(OK: "a")");
  EXPECT_EQ(SingleOf("isList='true' value='a'", ListValue({"b"})), R"(OK: "a")");
  EXPECT_EQ(SingleOf("isList='true' value='a'"), R"(OK: "a")");
}

TEST_F(Variables, OneEmptyNameIsAssignedThoughTheListFormDropsIt) {
  EXPECT_EQ(SingleOf("value=''"), R"(OK: "")");
  EXPECT_EQ(ask_.Variables("p"), "OK: []");
}

TEST_F(Variables, OneNameOfAListIsRefusedByIsListAloneThoughGetParameterLooksForTheListItself) {
  EXPECT_EQ(SingleOf(kIsList), R"(121: "before")");
  EXPECT_EQ(ask_.String("p"), R"(123 (flag): "before")");
  EXPECT_EQ(SingleOf(kIsList, ListValue({"a"})), R"(121: "before")");
  EXPECT_EQ(SingleOf("", ListValue({"a"})), R"(108: "before")");
  EXPECT_EQ(ask_.String("p"), R"(121: "before")");
}

TEST_F(Variables, OneNameWithoutValueIsAMissingAttributeAndTheOutputKept) {
  EXPECT_EQ(SingleOf(""), R"(108: "before")");
  EXPECT_EQ(SingleOf("isList='TRUE'"), R"(108: "before")");
  EXPECT_EQ(SingleOf("isList='false' Value='a'"), R"(108: "before")");
}

// Roles

class Roles : public rqtest::WithSettings {
 protected:
  using Getter = NameListGetter;

  std::string Ask(Getter getter) const {
    std::vector<std::string> names = {"before"};
    const auto status = (parser_.*getter)(names);
    return rqtest::ShowOutcome(status) + ": " + Show(names);
  }
  std::string AskWeight() const {
    std::string name = "before";
    const auto status = parser_.GetFrequencyWeight(name);
    return rqtest::ShowOutcome(status) + ": " + Show(name);
  }
};

struct RoleRow {
  const char* parameter;
  RQCommon::RQStatus (RQSettingsParser::*getter)(std::vector<std::string>&) const;
};
const RoleRow kReadAsArrays[] = {{"target", &RQSettingsParser::GetTargetVars},
                                 {"inputs", &RQSettingsParser::GetPredictors}};
const RoleRow kReadAsVariables[] = {{"CatResponses", &RQSettingsParser::GetCatResponseVars},
                                    {"ContResponses", &RQSettingsParser::GetContResponseVars},
                                    {"CatPredictors", &RQSettingsParser::GetCatPredictors},
                                    {"ContPredictors", &RQSettingsParser::GetContPredictors}};

TEST_F(Roles, EachRoleHasItsParameter) {
  std::string parameters = Valued("FrequencyWeightVar", "w of FrequencyWeightVar");
  for (const RoleRow& row : kReadAsArrays) {
    parameters += Parameter(row.parameter, kIsList, ListValue({std::string("x of ") + row.parameter, "", "y"}));
  }
  for (const RoleRow& row : kReadAsVariables) {
    parameters += Parameter(row.parameter, kIsList, ListValue({std::string("x of ") + row.parameter, "", "y"}));
  }
  Load(parameters);
  for (const RoleRow& row : kReadAsArrays) {
    EXPECT_EQ(Ask(row.getter), std::string("OK: [\"x of ") + row.parameter + "\", \"y\"]");
  }
  for (const RoleRow& row : kReadAsVariables) {
    EXPECT_EQ(Ask(row.getter), std::string("OK: [\"x of ") + row.parameter + "\", \"y\"]");
  }
  EXPECT_EQ(AskWeight(), "OK: \"w of FrequencyWeightVar\"");
}

TEST_F(Roles, NamesOfTheParametersAreExact) {
  Load(Valued("Target", "x") + Valued("targets", "x") + Valued("Inputs", "x") + Valued("input", "x") +
       Valued("catResponses", "x") + Valued("CatResponse", "x") + Valued("contResponses", "x") +
       Valued("catPredictors", "x") + Valued("ContPredictor", "x") + Valued("frequencyWeightVar", "x") +
       Valued("FrequencyWeight", "x") +
       Complex("c", Valued("target", "x") + Valued("CatResponses", "x") + Valued("FrequencyWeightVar", "x")));
  for (const RoleRow& row : kReadAsArrays) EXPECT_EQ(Ask(row.getter), R"(120 (flag): ["before"])") << row.parameter;
  for (const RoleRow& row : kReadAsVariables) EXPECT_EQ(Ask(row.getter), R"(120 (flag): ["before"])") << row.parameter;
  EXPECT_EQ(AskWeight(), R"(120 (flag): "before")");
}

struct Form {
  const char* attributes;
  const char* content;
  const char* asArray;
  const char* asVariables;
};
const Form kForms[] = {
    {"", "<ListValue><Value value='a'/></ListValue>", R"(OK: ["a"])", "108: []"},
    {"isList='true'", "<ListValue/>", "123 (flag): []", "OK: []"},
    {"isList='true'", "", "123 (flag): []", "122: []"},
    {"isList='true' value='a'", "", R"(OK: ["a"])", "122: []"},
    {"value='own'", "<ListValue><Value value='a'/></ListValue>", R"(OK: ["a"])", R"(OK: ["own"])"},
    {"", "", "123 (flag): []", "108: []"},
    {"isList='true'", "<ListValue><Value value='a'/><Value/></ListValue>", R"(123 (flag): ["a"])", R"(108: ["a"])"},
};

TEST_F(Roles, TargetsAndInputsAreReadAsArraysAndTheOthersAsVariablesThoughTheyLookAlike) {
  for (const Form& form : kForms) {
    for (const RoleRow& row : kReadAsArrays) {
      Load(Parameter(row.parameter, form.attributes, form.content));
      EXPECT_EQ(Ask(row.getter), form.asArray) << row.parameter << " " << form.attributes << " " << form.content;
    }
    for (const RoleRow& row : kReadAsVariables) {
      Load(Parameter(row.parameter, form.attributes, form.content));
      EXPECT_EQ(Ask(row.getter), form.asVariables) << row.parameter << " " << form.attributes << " " << form.content;
    }
  }
}

TEST_F(Roles, FrequencyWeightIsReadAsOneVariable) {
  const struct {
    const char* attributes;
    const char* content;
    const char* outcome;
  } rows[] = {{"value='w'", "", R"(OK: "w")"},
              {"value=''", "", R"(OK: "")"},
              {"isList='true' value='w'", "", R"(OK: "w")"},
              {"isList='true'", "<ListValue><Value value='w'/></ListValue>", R"(121: "before")"},
              {"", "<ListValue><Value value='w'/></ListValue>", R"(108: "before")"},
              {"", "", R"(108: "before")"}};
  for (const auto& row : rows) {
    Load(Parameter("FrequencyWeightVar", row.attributes, row.content));
    EXPECT_EQ(AskWeight(), row.outcome) << row.attributes << " " << row.content;
  }
}

}  // namespace
