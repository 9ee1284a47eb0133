#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ios>
#include <istream>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/common/virtual_slot.h"
#include "tests/support/leaks.h"
#include "tests/support/settings.h"
#include "tests/support/streams.h"

namespace {

using RQCommon::RQStatus;
using rqtest::Absent;
using rqtest::BuildTask;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::Settings;
using rqtest::Valued;
using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQSettingsParser;

using Parser = RQSettingsParser;
using Texts = std::vector<std::string>;
using Ints = std::vector<int>;
using Numbers = std::vector<double>;

// The class

static_assert(std::is_convertible_v<Parser*, RQPMMLParser*>, "a public base");
static_assert(std::has_virtual_destructor_v<Parser>);
static_assert(std::is_default_constructible_v<Parser>);
static_assert(!std::is_copy_constructible_v<Parser> && !std::is_copy_assignable_v<Parser>);
static_assert(sizeof(Parser) == sizeof(RQPMMLParser) + sizeof(void*), "one pointer more than the base");

static_assert(Parser::ParamString == 0 && Parser::ParamDouble == 1 && Parser::ParamInteger == 2 &&
              Parser::ParamBoolean == 3 && Parser::ParamEnum == 4 && Parser::ParamFieldName == 5 &&
              Parser::ParamUnknown == 6);
static_assert(std::is_enum_v<Parser::ParamType>);

// A pointer to a member is initialised by an operation of exactly that signature and constness only.
template <class Member>
constexpr bool Is(Member) {
  return true;
}
template <class Output>
using ScopedGetter = RQStatus (Parser::*)(const char*, Output&, void*) const;
template <class Output>
using ChangingScopedGetter = RQStatus (Parser::*)(const char*, Output&, void*);
template <class Output>
using NamedGetter = RQStatus (Parser::*)(const char*, Output&) const;
template <class Output>
using RoleGetter = RQStatus (Parser::*)(Output&) const;

static_assert(Is<ScopedGetter<std::string>>(&Parser::GetParameter));
static_assert(Is<ScopedGetter<int>>(&Parser::GetParameter));
static_assert(Is<ScopedGetter<double>>(&Parser::GetParameter));
static_assert(Is<ScopedGetter<bool>>(&Parser::GetParameter));
static_assert(Is<Parser::ParamType (Parser::*)(const char*, void*)>(&Parser::GetParameterType));
static_assert(Is<void* (Parser::*)(const char*, void*)>(&Parser::GetComplexParameter));
static_assert(Is<NamedGetter<Texts>>(&Parser::GetVariables));
static_assert(Is<NamedGetter<std::string>>(&Parser::GetVariables));
static_assert(Is<ScopedGetter<Texts>>(&Parser::GetArray));
static_assert(Is<ScopedGetter<Ints>>(&Parser::GetArray));
static_assert(Is<ScopedGetter<Numbers>>(&Parser::GetArray));
static_assert(Is<ChangingScopedGetter<std::vector<Texts>>>(&Parser::GetMatrix));
static_assert(Is<ChangingScopedGetter<std::vector<Ints>>>(&Parser::GetMatrix));
static_assert(Is<ChangingScopedGetter<std::vector<Numbers>>>(&Parser::GetMatrix));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetTargetVars));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetCatResponseVars));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetContResponseVars));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetPredictors));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetCatPredictors));
static_assert(Is<RoleGetter<Texts>>(&Parser::GetContPredictors));
static_assert(Is<RoleGetter<std::string>>(&Parser::GetFrequencyWeight));
static_assert(Is<RQStatus (Parser::*)(RQMTD_NAMESPACE::RQVarList&, bool) const>(&Parser::FillVarList));
static_assert(Is<RQStatus (Parser::*)(RQMTD_NAMESPACE::RQVarList&) const>(&Parser::FillTransDict));

const char* const kValued = "<Parameter name='p' value='1'/>";

class SettingsParser : public rqtest::WithSettings {
 protected:
  void ExpectParsesAgain() {
    EXPECT_EQ(Parse(parser_, Settings(kValued)), Ok());
    EXPECT_EQ(parser_.GetStatus(), Ok());
    EXPECT_EQ(parser_.GetXercesMessage(), "");
    EXPECT_EQ(ask_.Int("p"), "OK: 1");
  }
};

TEST_F(SettingsParser, ParseFollowsTheDestructorInTheVirtualOrderOfTheBaseClass) {
  if (!RQ_TEST_SEES_VIRTUAL_SLOTS) GTEST_SKIP();
  EXPECT_EQ(VirtualSlot(&RQSettingsParser::ParseToDOM), 2U);
  EXPECT_EQ(VirtualSlot(&RQPMMLParser::ParseToDOM), 2U);
}

TEST_F(SettingsParser, ParseThroughTheBaseClassFindsTheParameters) {
  RQPMMLParser& base = parser_;
  EXPECT_EQ(Parse(base, Settings(kValued)), Ok());
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
  EXPECT_EQ(Parse(base, Pmml("<DataDictionary/>")), Failure(119));
}

// Finding the parameters

TEST_F(SettingsParser, NewObjectAnswersEverythingWith107AndKeepsAllOutputs) {
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectEveryGetterGives(Failure(107));
  ExpectBothFillsGive(Failure(107));
}

TEST_F(SettingsParser, ParametersAreFoundBelowTheFirstChildOfEachName) {
  const std::string p(kValued);
  const std::string other = "<Parameter name='p' value='2'/>";
  const std::string parameters = "<Parameters>" + p + "</Parameters>";
  const std::string extension = "<Extension>" + parameters + "</Extension>";
  const std::string task = "<MiningBuildTask>" + extension + "</MiningBuildTask>";
  const std::string dictionary = "<DataDictionary/>";
  const std::string junk =
      "text<!-- <MiningBuildTask/> --><?p <Extension/>?><![CDATA[<Parameters/>]]><other/><p:MiningBuildTask/>"
      "<miningBuildTask/><extension/><parameters/><ParametersX/>";
  for (const std::string& content :
       {dictionary + task, task + dictionary, junk + dictionary + junk + task + junk,
        dictionary + "<MiningBuildTask>" + junk + extension + junk + "</MiningBuildTask>",
        dictionary + "<MiningBuildTask><Extension>" + junk + parameters + junk + "</Extension></MiningBuildTask>",
        dictionary + "<MiningBuildTask><Extension extender='nobody' name='' value='1'>" + parameters +
            "</Extension></MiningBuildTask>",
        dictionary + task + "<MiningBuildTask/>" + BuildTask(other),
        dictionary + "<MiningBuildTask>" + extension + "<Extension/><Extension><Parameters>" + other +
            "</Parameters></Extension></MiningBuildTask>",
        dictionary + "<MiningBuildTask><Extension>" + parameters + "<Parameters>" + other +
            "</Parameters></Extension></MiningBuildTask>"}) {
    EXPECT_EQ(Parse(parser_, Pmml(content)), Ok()) << content;
    EXPECT_EQ(ask_.Int("p"), "OK: 1") << content;
  }
}

TEST_F(SettingsParser, DocumentWithoutParametersIsRefusedAndKeepsAnswering119) {
  const std::string parameters = "<Parameters>" + std::string(kValued) + "</Parameters>";
  const std::string extension = "<Extension>" + parameters + "</Extension>";
  const auto task = [](const std::string& content) { return "<MiningBuildTask>" + content + "</MiningBuildTask>"; };
  for (const std::string& content : {std::string(),
                                     task(""),
                                     task("<Extension/>"),
                                     task(parameters),
                                     extension,
                                     parameters,
                                     "<x>" + task(extension) + "</x>",
                                     task("<x>" + extension + "</x>"),
                                     task("<Extension><x>" + parameters + "</x></Extension>"),
                                     "<miningBuildTask>" + extension + "</miningBuildTask>",
                                     "<p:MiningBuildTask>" + extension + "</p:MiningBuildTask>",
                                     task("<p:Extension>" + parameters + "</p:Extension>"),
                                     task("<Extension><p:Parameters/></Extension>"),
                                     task("<Extension><parameters/></Extension>"),
                                     task("<Extension><Parameter name='p' value='1'/></Extension>"),
                                     task("<Extension><!--<Parameters/>--></Extension>"),
                                     task("<Extension><![CDATA[<Parameters/>]]></Extension>"),
                                     task("") + task(extension),
                                     task("<Extension/>" + extension),
                                     task("<Extension/>") + task(extension)}) {
    EXPECT_EQ(Parse(parser_, Pmml("<DataDictionary/>" + content)), Failure(119)) << content;
    EXPECT_EQ(parser_.GetStatus(), Failure(119)) << content;
    EXPECT_EQ(parser_.GetXercesMessage(), "") << content;
    ExpectEveryGetterGives(Failure(119));
  }
  ExpectParsesAgain();
}

TEST_F(SettingsParser, BuildTaskInsideTheDataDictionaryIsNone) {
  EXPECT_EQ(Parse(parser_, Pmml("<DataDictionary>" + BuildTask("") + "</DataDictionary>")), Failure(119));
}

TEST_F(SettingsParser, ContentOfEntitiesIsNotSeen) {
  EXPECT_EQ(Parse(parser_,
                  "<!DOCTYPE PMML [<!ENTITY e '<Parameters/>'>]><PMML><DataDictionary/><MiningBuildTask>"
                  "<Extension>&e;</Extension></MiningBuildTask></PMML>"),
            Failure(119));
  EXPECT_EQ(Parse(parser_, "<!DOCTYPE PMML [<!ENTITY e '<Parameter name=\"p\" value=\"2\"/>'>]>" +
                               Settings("&e;" + std::string(kValued))),
            Ok());
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
}

TEST_F(SettingsParser, AttributesThatADtdSuppliesCount) {
  EXPECT_EQ(
      Parse(parser_, "<!DOCTYPE PMML [<!ATTLIST Parameter name CDATA 'unnamed' type CDATA 'enum' value CDATA '7'>]>" +
                         Settings("<Parameter/><Parameter name='p'/>")),
      Ok());
  EXPECT_EQ(ask_.Int("unnamed"), "OK: 7");
  EXPECT_EQ(ask_.Int("p"), "OK: 7");
  EXPECT_EQ(parser_.GetParameterType("p", nullptr), RQSettingsParser::ParamEnum);
}

TEST_F(SettingsParser, FillsFailWith119TooAlthoughTheyNeedNoParameters) {
  EXPECT_EQ(Parse(parser_, Pmml("<DataDictionary>" + rqtest::Field("a", "continuous", "double") +
                                "</DataDictionary><TransformationDictionary/>")),
            Failure(119));
  ExpectBothFillsGive(Failure(119));
  RQMTD_NAMESPACE::RQVarList vars;
  EXPECT_EQ(parser_.FillVarList(vars, {}, false), Failure(119));
}

TEST_F(SettingsParser, ParseOfTheBaseClassAloneFindsNoParametersAndFillsAllTheSame) {
  std::istringstream stream(
      Pmml("<DataDictionary>" + rqtest::Field("a", "continuous", "double") + "</DataDictionary>" + BuildTask(kValued)));
  EXPECT_EQ(parser_.RQPMMLParser::ParseToDOM(stream), Ok());
  ExpectEveryGetterGives(Failure(119));
  rqtest::RecordingStorageList vars;
  EXPECT_EQ(parser_.FillVarList(vars, false), Ok());
  EXPECT_EQ(vars.calls.size(), 2U);
  EXPECT_EQ(parser_.FillTransDict(vars), Ok());
}

TEST_F(SettingsParser, ParametersOfADocumentBeforeAFailureAreNotFoundAgainByAParseOfTheBaseClassAlone) {
  const auto parseOfTheBase = [this] {
    std::istringstream stream(Settings(kValued));
    return parser_.RQPMMLParser::ParseToDOM(stream);
  };
  for (const std::string& failing : {std::string("<x/>"), Pmml("<DataDictionary/>"), std::string("<PMML>\xC0\x80")}) {
    ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
    EXPECT_FALSE(Parse(parser_, failing).IsOK()) << failing;
    EXPECT_EQ(parseOfTheBase(), Ok());
    ExpectEveryGetterGives(Failure(119));
  }
  ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
  EXPECT_THROW(Parse(parser_, "<PMML>"), xercesc::SAXParseException);
  EXPECT_EQ(parseOfTheBase(), Ok());
  ExpectEveryGetterGives(Failure(119));
}

TEST_F(SettingsParser, FillOfTheBaseClassStaysReachableWithItsOwnRules) {
  EXPECT_EQ(Parse(parser_, rqtest::SettingsWithFields(
                               rqtest::Field("a", "continuous", "timeSeconds", "<Interval leftMargin='x'/>") +
                               rqtest::Field("b", "continuous", "double"))),
            Ok());
  rqtest::RecordingStorageList vars;
  EXPECT_EQ(parser_.FillVarList(vars, {"a"}, false), Ok());
  EXPECT_EQ(vars.calls, Calls{R"(AddContVar("a", "", role 4) -> 0)"});
  EXPECT_EQ(parser_.FillVarList(vars, false), Failure(109));
}

// Failed parses

TEST_F(SettingsParser, FailureOfTheBaseClassIsReportedUnchangedByEverything) {
  const struct {
    std::string document;
    long code;
  } rows[] = {{"<PMML>\xC0\x80</PMML>", 104},
              {"<?xml version='1.0' encoding='no-such'?><PMML/>", 104},
              {"<x/>", 105},
              {"<pmml>" + Settings(kValued) + "</pmml>", 105},
              {Pmml(""), 106},
              {Pmml(BuildTask(kValued)), 106}};
  for (const auto& row : rows) {
    ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
    EXPECT_EQ(Parse(parser_, row.document), Failure(row.code)) << row.document;
    EXPECT_EQ(parser_.GetStatus(), Failure(row.code)) << row.document;
    EXPECT_EQ(parser_.GetXercesMessage().empty(), row.code != 104) << row.document;
    ExpectEveryGetterGives(Failure(row.code));
    ExpectBothFillsGive(Failure(row.code));
  }
  ExpectParsesAgain();
}

TEST_F(SettingsParser, MalformedDocumentPassesOutAndNothingOfTheDocumentBeforeIsFoundAgain) {
  for (const std::string& document :
       {std::string(), std::string("x"), std::string("<PMML>"), Settings("<Parameter>"), Settings(kValued) + "<x/>",
        Settings("&undeclared;"), Settings("<Parameter name='p' name='p'/>"), Settings("<Parameter name='&#1;'/>"),
        Settings("<Parameter name='&#xD800;'/>")}) {
    ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
    EXPECT_THROW(Parse(parser_, document), xercesc::SAXParseException) << document;
    EXPECT_EQ(parser_.GetStatus(), Ok()) << document;
    ExpectEveryGetterGives(Failure(107));
    ExpectBothFillsGive(Failure(107));
  }
  ExpectParsesAgain();
}

TEST_F(SettingsParser, OtherExceptionsPassOutAndNothingOfTheDocumentBeforeIsFoundAgain) {
  ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
  EXPECT_THROW(Parse(parser_, "<?xml version='1.2'?><PMML/>"), xercesc::DOMException);
  ExpectEveryGetterGives(Failure(107));
  ExpectBothFillsGive(Failure(107));
  ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
  const rqtest::LeaksOfTheLibrary leaks;
  std::istringstream ending(Settings(kValued));
  ending.exceptions(std::ios::eofbit);
  EXPECT_THROW(parser_.ParseToDOM(ending), std::ios_base::failure);
  ExpectEveryGetterGives(Failure(107));
  ExpectParsesAgain();
}

TEST_F(SettingsParser, StatusOfAnEarlierFailureIsGoneAfterAParseException) {
  EXPECT_EQ(Parse(parser_, Pmml("<DataDictionary/>")), Failure(119));
  EXPECT_THROW(Parse(parser_, "<PMML>"), xercesc::SAXParseException);
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectEveryGetterGives(Failure(107));
}

TEST_F(SettingsParser, StreamThatGoesBadIsAFailedParse) {
  ASSERT_EQ(Parse(parser_, Settings(kValued)), Ok());
  rqtest::FailingBuf buffer(Settings(kValued));
  std::istream stream(&buffer);
  EXPECT_EQ(parser_.ParseToDOM(stream), Failure(104));
  ExpectEveryGetterGives(Failure(104));
  ExpectParsesAgain();
}

// Parsing again

TEST_F(SettingsParser, SecondParseReplacesTheFirst) {
  ASSERT_EQ(Parse(parser_, Settings(Valued("old", "1") + Valued("p", "1"))), Ok());
  ASSERT_EQ(Parse(parser_, Settings(Valued("p", "2") + Valued("new", "3"))), Ok());
  EXPECT_EQ(ask_.Int("p"), "OK: 2");
  EXPECT_EQ(ask_.Int("new"), "OK: 3");
  ExpectEveryGetterGives(Absent(120), "old");
}

TEST_F(SettingsParser, StreamInChunksOfOneByteIsReadWhole) {
  rqtest::ChunkedBuf buffer(Settings(kValued), 1);
  std::istream stream(&buffer);
  EXPECT_EQ(parser_.ParseToDOM(stream), Ok());
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
}

TEST_F(SettingsParser, GettersChangeNothingAndMayBeCalledInAnyOrder) {
  Load(Valued("p", "1") + rqtest::Parameter("list", "isList='true'", rqtest::ListValue({"1", "2"})) +
       rqtest::Complex("c", Valued("q", "3")) + rqtest::Matrix("m", rqtest::Row({"1", "x"})));
  const auto all = [&](bool backwards) {
    void* const scope = parser_.GetComplexParameter("c", nullptr);
    std::vector<std::string> outcomes;
    const std::vector<std::function<std::string()>> questions = {
        [&] { return ask_.String("p"); },        [&] { return ask_.Int("p"); },
        [&] { return ask_.Bool("p"); },          [&] { return ask_.Double("q", scope); },
        [&] { return ask_.Ints("list"); },       [&] { return ask_.Variables("list"); },
        [&] { return ask_.Variable("list"); },   [&] { return ask_.StringRows("m"); },
        [&] { return ask_.IntRows("m"); },       [&] { return ask_.String("absent"); },
        [&] { return ask_.Strings("q", scope); }};
    for (std::size_t i = 0; i < questions.size(); ++i) {
      outcomes.push_back(questions[backwards ? questions.size() - 1 - i : i]());
    }
    if (backwards) std::reverse(outcomes.begin(), outcomes.end());
    return outcomes;
  };
  const auto first = all(false);
  EXPECT_EQ(first, (std::vector<std::string>{"OK: \"1\"", "OK: 1", "109: kept", "OK: 3", "OK: [1, 2]",
                                             "OK: [\"1\", \"2\"]", "121: \"before\"", "OK: [[\"1\", \"x\"]]",
                                             "OK: [[1]]", "120 (flag): \"before\"", "OK: [\"3\"]"}));
  EXPECT_EQ(all(true), first);
  EXPECT_EQ(all(false), first);
  EXPECT_EQ(parser_.GetStatus(), Ok());
}

TEST_F(SettingsParser, FailureOfAGetterIsNotKept) {
  Load(Valued("p", "-1"));
  EXPECT_EQ(ask_.Int("p"), "109: -1");
  EXPECT_EQ(ask_.Int("absent"), "120 (flag): 47");
  EXPECT_EQ(parser_.GetStatus(), Ok());
  EXPECT_EQ(ask_.String("p"), "OK: \"-1\"");
}

TEST_F(SettingsParser, EmptyParametersAreFoundAndHoldNothing) {
  Load("");
  ExpectEveryGetterGives(Absent(120));
  ExpectEveryGetterGives(Absent(120), "");
  Load("text<!--c--><?p i?>");
  ExpectEveryGetterGives(Absent(120));
}

}  // namespace
