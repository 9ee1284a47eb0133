// Every allocation fails once, and nothing may be left behind.

#include <gtest/gtest.h>

#include <string>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/common/RQVariable.h"
#include "rqxml/datamodel/RQDataModelParser.h"
#include "tests/support/datamodel.h"
#include "tests/support/failing_heap.h"

namespace {

using RQCommon::RQStatus;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::FillFrom;
using rqtest::heap;
using rqtest::ModelField;
using rqtest::Ok;
using rqtest::Outcome;
using rqtest::WithFailureAt;
using RQXPrsUtil::RQDataModelParser;

// Texts are longer than what fits into a string without an allocation.
const std::string& Document() {
  static const std::string document = rqtest::DataModel(
      ModelField("age of the customer in years", "storage='integer' measure='continuous' role='input'",
                 "<Range minValue='0' maxValue='120'/>") +
      ModelField("sex", "storage='string' measure='discrete' role='target' displayLabel='Sex, as the customer told it'",
                 "<Values><Value value='m' displayLabel='m\xC3\xA4nnlich, as far as anybody could tell'/>"
                 "<Value value='f' displayLabel='weiblich'/></Values>") +
      ModelField("grade", "storage='real' measure='ordinal'",
                 "<Values><Value value='1'/><Value value=' 2 '/></Values>") +
      ModelField("how often the customer counts", "storage='real' measure='continuous' role='freqWeight'"));
  return document;
}

class DataModelAllocation : public rqtest::WithFailingHeap {
 protected:
  DataModelAllocation() : WithFailingHeap(Document()) {}
};

TEST_F(DataModelAllocation, EachMayFailInParsing) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQDataModelParser parser;
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.ParseToDOM(Document()); });
    const RQStatus status = FillFrom(parser).status;
    ASSERT_EQ(status, outcome.outOfMemory ? Failure(107) : outcome.status) << allocation;
    ASSERT_EQ(parser.ParseToDOM(Document()), Ok()) << "parse after a failure at allocation " << allocation;
    ASSERT_EQ(FillFrom(parser).calls.size(), 8U) << allocation;
  });
}

TEST_F(DataModelAllocation, EachMayFailInASecondParseAndNothingOfTheFirstIsFoundAgain) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQDataModelParser parser;
    ASSERT_EQ(parser.ParseToDOM(Document()), Ok());
    const std::string other = rqtest::DataModel("");
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.ParseToDOM(other); });
    const rqtest::Filled filled = FillFrom(parser);
    ASSERT_EQ(filled.calls, Calls()) << allocation;
    ASSERT_EQ(filled.status, outcome.outOfMemory ? Failure(107) : outcome.status) << allocation;
  });
}

TEST_F(DataModelAllocation, EachMayFailInFilling) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(Document()), Ok());
  const Calls expected = FillFrom(parser).calls;
  ASSERT_EQ(expected.size(), 8U);
  FailEachOnceWithoutLeaks([&](long allocation) {
    rqtest::RecordingStorageList vars;
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.FillVarList(vars, false, false, 0); });
    if (!outcome.outOfMemory) {
      ASSERT_EQ(outcome.status, Ok()) << allocation;
      ASSERT_EQ(vars.calls, expected) << "a good status for less than the whole, allocation " << allocation;
    }
    ASSERT_EQ(FillFrom(parser).calls, expected) << "fill after a failure at allocation " << allocation;
  });
}

TEST_F(DataModelAllocation, EachMayFailInFillingTheReferenceList) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(Document()), Ok());
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQMTD_NAMESPACE::RQVarList vars;
    const Outcome outcome = WithFailureAt(allocation, [&] { return parser.FillVarList(vars, true, true, 4); });
    if (outcome.outOfMemory) return;
    ASSERT_EQ(outcome.status, Ok()) << allocation;
    ASSERT_EQ(vars.Size(), 4) << allocation;
    EXPECT_EQ(vars.GetVariable(0)->GetMaximum(), 120);
    EXPECT_EQ(vars.GetVariable(1)->GetLabels().size(), 2U);
    EXPECT_EQ(vars.GetVariable(2)->GetNumericValues().size(), 2U);
    EXPECT_EQ(vars.GetVariable(3)->GetStorageType(), 2);
  });
}

TEST_F(DataModelAllocation, EachMayFailInConstruction) {
  FailEachOnceWithoutLeaks([](long allocation) {
    WithFailureAt(allocation, [] { return RQDataModelParser().GetStatus(); });
    EXPECT_EQ(RQDataModelParser().GetStatus(), Ok());
  });
}

// Memory over many calls

TEST_F(DataModelAllocation, FiftyParsesHoldNoMoreThanAFewAlsoWhenTheyFail) {
  RQDataModelParser parser;
  const std::string malformed = Document().substr(0, Document().size() - 10);
  ExpectNoGrowth([&] {
    ASSERT_EQ(parser.ParseToDOM(Document()), Ok());
    EXPECT_EQ(parser.ParseToDOM("<DataModel/>"), Failure(113));
    EXPECT_THROW(parser.ParseToDOM(malformed), xercesc::SAXParseException);
    EXPECT_EQ(parser.ParseToDOM("<x/>"), Failure(105));
  });
}

TEST_F(DataModelAllocation, FiftyFillsHoldNothing) {
  RQDataModelParser parser;
  ASSERT_EQ(parser.ParseToDOM(Document()), Ok());
  const auto round = [&] { ASSERT_EQ(FillFrom(parser).status, Ok()); };
  round();
  const long before = heap.LiveBlocks();
  for (int i = 0; i < 50; ++i) round();
  EXPECT_EQ(heap.LiveBlocks(), before);
}

}  // namespace
