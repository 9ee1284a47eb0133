// Every allocation fails once, and nothing may be left behind.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/failing_heap.h"
#include "tests/support/settings.h"

namespace {

using RQCommon::RQStatus;
using rqtest::Absent;
using rqtest::BuildTask;
using rqtest::Calls;
using rqtest::Complex;
using rqtest::Failure;
using rqtest::Field;
using rqtest::heap;
using rqtest::ListValue;
using rqtest::Matrix;
using rqtest::Ok;
using rqtest::Outcome;
using rqtest::Parameter;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::Row;
using rqtest::Show;
using rqtest::Valued;
using rqtest::WithFailureAt;
using RQXPrsUtil::RQSettingsParser;

// Texts are longer than what fits into a string without an allocation.
const std::string kLong = "ein Text, der l\xC3\xA4nger ist als kurze Texte";

std::string Parameters() {
  return Valued("text", kLong) + Valued("number", "12") + Valued("flag", "true") +
         Parameter("list", "isList='true' type='integer'", ListValue({"1", "2", "3"})) +
         Parameter("texts", "isList='true'", ListValue({kLong, "", kLong + " too"})) +
         Parameter("target", "", ListValue({kLong})) + Valued("FrequencyWeightVar", kLong) +
         Matrix("matrix", Row({"1", kLong}) + Row({"2"})) +
         Complex("outer", Complex("inner", Valued("text", kLong + " inside")));
}

std::string Fields() {
  return Field("age of the customer in years", "continuous", "double",
               "<Interval leftMargin='0' rightMargin='120'/>"
               "<Value value='-1' property='missing' displayValue='unknown to the people who asked'/>"
               "<Extension name='invalidRangeLower' value='-10'/>") +
         Field("sex", "categorical", "string",
               "<Value value='m' displayValue='male, as far as anybody could tell'/>"
               "<Value value='f' displayValue='female'/><Value value='?' property='missing'/>") +
         Field("grade", "ordinal", "integer", "<Value value='1'/><Value value='2'/>");
}

std::string DerivedFields() {
  return "<DerivedField name='the binned age' optype='continuous' dataType='date'>"
         "<Extension><Interval leftMargin='1'/></Extension><Discretize field='age of the customer in years'>"
         "<DiscretizeBin binValue='younger than thirty years'><Interval rightMargin='30'/></DiscretizeBin>"
         "<DiscretizeBin binValue='thirty years or older'><Interval leftMargin='30'/></DiscretizeBin>"
         "</Discretize></DerivedField>";
}

const std::string& Document() {
  static const std::string document =
      Pmml("<DataDictionary>" + Fields() + "</DataDictionary><TransformationDictionary>" + DerivedFields() +
           "</TransformationDictionary>" + BuildTask(Parameters()));
  return document;
}

class SettingsAllocation : public rqtest::WithFailingHeap {
 protected:
  SettingsAllocation() : WithFailingHeap(Document()) {}
};

/// Everything that can be asked of the document.
struct Everything {
  std::string text, inner, weight, variable;
  int number = 0;
  double real = 0;
  bool flag = false;
  std::vector<std::string> texts, names, targets;
  std::vector<int> ints;
  std::vector<double> doubles;
  std::vector<std::vector<std::string>> textRows;
  std::vector<std::vector<int>> intRows;
  std::vector<std::vector<double>> doubleRows;
  RQSettingsParser::ParamType type = RQSettingsParser::ParamUnknown;

  /// The first status that is not OK.
  RQStatus Ask(RQSettingsParser& parser) {
    void* const outer = parser.GetComplexParameter("outer", nullptr);
    void* const scope = parser.GetComplexParameter("inner", outer);
    type = parser.GetParameterType("list", nullptr);
    for (const RQStatus& status :
         {parser.GetParameter("text", text, nullptr), parser.GetParameter("text", inner, scope),
          parser.GetParameter("number", number, nullptr), parser.GetParameter("number", real, nullptr),
          parser.GetParameter("flag", flag, nullptr), parser.GetArray("texts", texts, nullptr),
          parser.GetArray("list", ints, nullptr), parser.GetArray("list", doubles, nullptr),
          parser.GetVariables("texts", names), parser.GetVariables("text", variable), parser.GetTargetVars(targets),
          parser.GetFrequencyWeight(weight), parser.GetMatrix("matrix", textRows, nullptr),
          parser.GetMatrix("matrix", intRows, nullptr), parser.GetMatrix("matrix", doubleRows, nullptr)}) {
      if (!status.IsOK()) return status;
    }
    return {};
  }

  std::string Text() const {
    return Show(text) + Show(inner) + Show(weight) + Show(variable) + Show(number) + Show(real) + Show(flag) +
           Show(texts) + Show(names) + Show(targets) + Show(ints) + Show(doubles) + Show(textRows) + Show(intRows) +
           Show(doubleRows) + Show(type);
  }
};

RQStatus FillAll(const RQSettingsParser& parser, RQMTD_NAMESPACE::RQVarList& vars, bool bins) {
  const RQStatus status = parser.FillVarList(vars, bins);
  return status.IsOK() ? parser.FillTransDict(vars) : status;
}

TEST_F(SettingsAllocation, EachMayFailInParsing) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQSettingsParser parser;
    std::istringstream stream(Document());
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.ParseToDOM(stream); });
    std::string text = "kept";
    const RQStatus status = parser.GetParameter("text", text, nullptr);
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      ASSERT_EQ(status, Ok()) << allocation;
    } else {
      ASSERT_EQ(status, outcome.outOfMemory ? Failure(107) : outcome.status) << allocation;
      ASSERT_EQ(text, "kept") << allocation;
    }
    ASSERT_EQ(Parse(parser, Document()), Ok()) << "parse after a failure at allocation " << allocation;
    ASSERT_EQ(parser.GetParameter("text", text, nullptr), Ok());
  });
}

TEST_F(SettingsAllocation, EachMayFailInASecondParseAndNothingOfTheFirstIsFoundAgain) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQSettingsParser parser;
    ASSERT_EQ(Parse(parser, Document()), Ok());
    std::istringstream stream(rqtest::Settings(Valued("other", "1")));
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.ParseToDOM(stream); });
    std::string text = "kept";
    const RQStatus status = parser.GetParameter("text", text, nullptr);
    ASSERT_EQ(text, "kept") << allocation;
    if (outcome.outOfMemory) {
      ASSERT_EQ(status, Failure(107)) << allocation;
    } else {
      ASSERT_EQ(status, outcome.status.IsOK() ? Absent(120) : outcome.status) << allocation;
    }
  });
}

TEST_F(SettingsAllocation, EachMayFailInEveryGetter) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, Document()), Ok());
  Everything whole;
  ASSERT_EQ(whole.Ask(parser), Ok());
  FailEachOnceWithoutLeaks([&](long allocation) {
    Everything asked;
    const Outcome outcome = WithFailureAt(allocation, [&] { return asked.Ask(parser); });
    if (!outcome.outOfMemory) {
      ASSERT_EQ(outcome.status, Ok()) << allocation;
      ASSERT_EQ(asked.Text(), whole.Text()) << "a good status for less than the whole, allocation " << allocation;
    }
    ASSERT_EQ(parser.GetStatus(), Ok());
    Everything again;
    ASSERT_EQ(again.Ask(parser), Ok()) << "after a failure at allocation " << allocation;
    ASSERT_EQ(again.Text(), whole.Text()) << "after a failure at allocation " << allocation;
  });
}

TEST_F(SettingsAllocation, EachMayFailInFilling) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, Document()), Ok());
  for (const bool bins : {false, true}) {
    const auto filled = [&] {
      rqtest::RecordingStorageList vars;
      EXPECT_EQ(FillAll(parser, vars, bins), Ok());
      return vars.calls;
    };
    const Calls expected = filled();
    FailEachOnceWithoutLeaks([&](long allocation) {
      rqtest::RecordingStorageList vars;
      const Outcome outcome = WithFailureAt(allocation, [&] { return FillAll(parser, vars, bins); });
      if (!outcome.outOfMemory) {
        ASSERT_EQ(outcome.status, Ok()) << allocation;
        ASSERT_EQ(vars.calls, expected) << "a good status for less than the whole, allocation " << allocation;
      }
      ASSERT_EQ(filled(), expected) << "fill after a failure at allocation " << allocation;
    });
  }
}

TEST_F(SettingsAllocation, EachMayFailInFillingTheReferenceList) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, Document()), Ok());
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQMTD_NAMESPACE::RQVarList vars;
    const Outcome outcome = WithFailureAt(allocation, [&] { return FillAll(parser, vars, true); });
    if (outcome.outOfMemory) return;
    ASSERT_EQ(outcome.status, Ok()) << allocation;
    ASSERT_EQ(vars.Size(), 4) << allocation;
    EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetBinLabels().size(), 2U);
    EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetNumMissingValues().size(), 1U);
    EXPECT_TRUE(vars.GetVariable(0)->GetEncoder().HasInvalidRange());
    EXPECT_EQ(vars.GetVariable(1)->GetLabels().size(), 2U);
    EXPECT_EQ(vars.GetVariable(3)->GetStorageType(), 4);
  });
}

TEST_F(SettingsAllocation, EachMayFailInConstruction) {
  FailEachOnceWithoutLeaks([](long allocation) {
    WithFailureAt(allocation, [] { return RQSettingsParser().GetStatus(); });
    EXPECT_EQ(RQSettingsParser().GetStatus(), Ok());
  });
}

// Memory over many calls

TEST_F(SettingsAllocation, FiftyParsesHoldNoMoreThanAFewAlsoWhenTheyFail) {
  RQSettingsParser parser;
  const std::string withoutParameters = Pmml("<DataDictionary/><MiningBuildTask/>");
  const std::string malformed = Document().substr(0, Document().size() - 10);
  ExpectNoGrowth([&] {
    ASSERT_EQ(Parse(parser, Document()), Ok());
    EXPECT_EQ(Parse(parser, withoutParameters), Failure(119));
    EXPECT_THROW(Parse(parser, malformed), xercesc::SAXParseException);
    EXPECT_EQ(Parse(parser, "<x/>"), Failure(105));
  });
}

TEST_F(SettingsAllocation, FiftyRoundsOfEveryGetterAndFillHoldNothing) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, Document()), Ok());
  const auto round = [&] {
    Everything asked;
    ASSERT_EQ(asked.Ask(parser), Ok());
    rqtest::RecordingStorageList vars;
    ASSERT_EQ(FillAll(parser, vars, true), Ok());
  };
  round();
  const long before = heap.LiveBlocks();
  for (int i = 0; i < 50; ++i) round();
  EXPECT_EQ(heap.LiveBlocks(), before);
}

}  // namespace
