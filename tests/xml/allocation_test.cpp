// Every allocation fails once, and nothing may be left behind.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/failing_heap.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/temp_folder.h"

namespace {

using RQCommon::RQStatus;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::heap;
using rqtest::Ok;
using rqtest::Outcome;
using rqtest::WithFailureAt;
using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQXMLReadWrite;

const std::string& Document() {
  static const std::string document = rqtest::PmmlWithFields(
      rqtest::Field("age of the customer in years", "continuous", "double",
                    "<Value value='-1' property='missing' displayValue='unknown to the people who asked'/>"
                    "<Extension name='invalidRangeLower' value='-10'/>") +
          rqtest::Field("sex", "categorical", "string",
                        "<Value value='m' displayValue='male, as far as anybody could tell'/>"
                        "<Value value='f' displayValue='female'/><Value value='?' property='missing'/>") +
          rqtest::Field("grade", "ordinal", "integer", "<Value value='1'/><Value value='2'/>"),
      "<DerivedField name='binned'><Discretize field='age of the customer in years'>"
      "<DiscretizeBin binValue='younger than thirty years'><Interval rightMargin='30'/></DiscretizeBin>"
      "<DiscretizeBin binValue='thirty years or older'><Interval leftMargin='30'/></DiscretizeBin>"
      "</Discretize></DerivedField>");
  return document;
}

class Allocation : public rqtest::WithFailingHeap {
 protected:
  Allocation() : WithFailingHeap(Document()) {}
};

Calls Filled(const RQPMMLParser& parser, bool useBins) {
  rqtest::RecordingVarList vars;
  EXPECT_EQ(parser.FillVarList(vars, {}, useBins), Ok());
  return vars.calls;
}

TEST_F(Allocation, EachMayFailInParsingAndFilling) {
  for (const bool useBins : {false, true}) {
    RQPMMLParser whole;
    ASSERT_EQ(rqtest::Parse(whole, Document()), Ok());
    const Calls expected = Filled(whole, useBins);
    FailEachOnceWithoutLeaks([&](long allocation) {
      RQPMMLParser parser;
      std::istringstream stream(Document());
      rqtest::RecordingVarList vars;
      const Outcome outcome = WithFailureAt(allocation, [&] {
        const RQStatus parsed = parser.ParseToDOM(stream);
        return parsed.IsOK() ? parser.FillVarList(vars, {}, useBins) : parsed;
      });
      if (!outcome.outOfMemory && outcome.status.IsOK()) {
        ASSERT_EQ(vars.calls, expected) << "a good status for less than the whole, allocation " << allocation;
      }
      ASSERT_EQ(rqtest::Parse(parser, Document()), Ok()) << "parse after a failure at allocation " << allocation;
      ASSERT_EQ(Filled(parser, useBins), expected) << "fill after a failure at allocation " << allocation;
    });
  }
}

TEST_F(Allocation, EachMayFailInFillingTheReferenceList) {
  RQPMMLParser parser;
  ASSERT_EQ(rqtest::Parse(parser, Document()), Ok());
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQMTD_NAMESPACE::RQVarList vars;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      return parser.FillVarList(vars, {"sex", "age of the customer in years"}, true);
    });
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      ASSERT_EQ(vars.Size(), 2) << allocation;
      EXPECT_EQ(vars.GetVariable(0)->GetName(), "age of the customer in years");
      EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetBinLabels().size(), 2U);
      EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetNumMissingValues().size(), 1U);
      EXPECT_TRUE(vars.GetVariable(0)->GetEncoder().HasInvalidRange());
      EXPECT_EQ(vars.GetVariable(1)->GetLabels().size(), 2U);
    }
    EXPECT_EQ(parser.GetStatus(), Ok());
  });
}

TEST_F(Allocation, EachMayFailInConstruction) {
  FailEachOnceWithoutLeaks([](long allocation) {
    WithFailureAt(allocation, [] { return RQPMMLParser().GetStatus(); });
    EXPECT_EQ(RQPMMLParser().GetStatus(), Ok());
  });
}

TEST_F(Allocation, EachMayFailInParsingAndWritingFiles) {
  const rqtest::TempFolder folder;
  const std::string in = rqtest::WriteFile(folder.File("in.xml"), Document());
  const std::string out = folder.File("out.xml");
  std::string expected;
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQXMLReadWrite reader;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      const RQStatus parsed = reader.ParseToDOM(in);
      return parsed.IsOK() ? reader.WriteFromDOM(out, nullptr) : parsed;
    });
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      if (expected.empty()) expected = rqtest::ReadFile(out);
      ASSERT_EQ(rqtest::ReadFile(out), expected) << "a good status for less than the whole, allocation " << allocation;
    }
    ASSERT_EQ(reader.ParseToDOM(in), Ok()) << "parse after a failure at allocation " << allocation;
    ASSERT_EQ(reader.WriteFromDOM(out, nullptr), Ok()) << "write after a failure at allocation " << allocation;
    ASSERT_EQ(rqtest::ReadFile(out), expected) << "write after a failure at allocation " << allocation;
  });
}

TEST_F(Allocation, EachMayFailWhileAMalformedDocumentIsRefused) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQXMLReadWrite reader;
    std::istringstream stream("<a><b>text</c></a>");
    bool malformed = false;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      try {
        return reader.ParseToDOM(stream);
      } catch (const xercesc::SAXParseException&) {
        malformed = true;
        return Failure(104);
      }
    });
    EXPECT_TRUE(outcome.outOfMemory || !outcome.status.IsOK()) << allocation;
    EXPECT_TRUE(malformed || heap.failed) << allocation;
    EXPECT_EQ(reader.GetDocument(), nullptr) << allocation;
  });
}

// Memory over many parses

const std::string& LargeDocument() {
  static const std::string document = [] {
    std::string fields;
    for (int i = 0; i < 300; ++i) {
      fields += rqtest::Field("field" + std::to_string(i), "categorical", "string", "<Value value='a'/>");
    }
    return rqtest::PmmlWithFields(fields);
  }();
  return document;
}

TEST_F(Allocation, FiftyParsesOfOneReaderHoldNoMoreThanAFew) {
  RQXMLReadWrite reader;
  ExpectNoGrowth([&] {
    std::istringstream stream(LargeDocument());
    ASSERT_EQ(reader.ParseToDOM(stream), Ok());
  });
}

TEST_F(Allocation, FiftyParsesOfOnePmmlParserHoldNoMoreThanAFew) {
  RQPMMLParser parser;
  ExpectNoGrowth([&] { ASSERT_EQ(rqtest::Parse(parser, LargeDocument()), Ok()); });
}

TEST_F(Allocation, FiftyFailedParsesHoldNoMoreThanAFew) {
  RQPMMLParser parser;
  RQXMLReadWrite reader;
  const std::string malformed = LargeDocument().substr(0, LargeDocument().size() - 10);
  const std::string wrongRoot = "<x>" + LargeDocument() + "</x>";
  ExpectNoGrowth([&] {
    EXPECT_THROW(rqtest::Parse(parser, malformed), xercesc::SAXParseException);
    EXPECT_EQ(rqtest::Parse(parser, wrongRoot), Failure(105));
    EXPECT_EQ(rqtest::Parse(parser, LargeDocument() + "\xC0\x80"), Failure(104));
    std::istringstream stream(malformed);
    EXPECT_THROW(reader.ParseToDOM(stream), xercesc::SAXParseException);
    EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  });
}

TEST_F(Allocation, ParseThatFailsGivesTheDocumentBeforeItBack) {
  RQXMLReadWrite reader;
  EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  const long empty = heap.liveBytes;
  std::istringstream stream(LargeDocument());
  ASSERT_EQ(reader.ParseToDOM(stream), Ok());
  const long full = heap.liveBytes;
  ASSERT_GT(full, empty + 100000);
  EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  EXPECT_LT(heap.liveBytes, empty + (full - empty) / 4);
}

TEST_F(Allocation, FiftyFillsHoldNothing) {
  RQPMMLParser parser;
  ASSERT_EQ(rqtest::Parse(parser, Document()), Ok());
  rqtest::RecordingVarList discarded;
  ASSERT_EQ(parser.FillVarList(discarded, {}, true), Ok());
  const long before = heap.LiveBlocks();
  for (int i = 0; i < 50; ++i) Filled(parser, true);
  EXPECT_EQ(heap.LiveBlocks(), before);
}

}  // namespace
