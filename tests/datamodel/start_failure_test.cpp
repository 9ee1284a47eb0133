// Nobody can start the XML library.

#include <gtest/gtest.h>

#include "rqxml/datamodel/RQDataModelParser.h"
#include "tests/support/datamodel.h"
#include "tests/support/failing_start.h"
#include "tests/support/platform.h"

namespace {

using rqtest::Calls;
using rqtest::DataModel;
using rqtest::Failure;
using RQXPrsUtil::RQDataModelParser;

class DataModelStartFailure : private rqtest::FailingStart, public rqtest::WithPlatform {};

TEST_F(DataModelStartFailure, IsReportedByEveryOperation) {
  RQDataModelParser parser;
  EXPECT_EQ(parser.GetStatus(), Failure(103));
  for (const char* const text : {"", "<DataModel>", "<DataModel/>"}) {
    EXPECT_EQ(rqtest::FillFrom(parser).status, Failure(103));
    EXPECT_EQ(parser.ParseToDOM(text), Failure(103)) << text;
    EXPECT_EQ(parser.GetStatus(), Failure(103));
  }
  EXPECT_EQ(parser.ParseToDOM(DataModel("")), Failure(103));
  EXPECT_EQ(rqtest::FillFrom(parser).status, Failure(103));
  EXPECT_EQ(rqtest::FillFrom(parser).calls, Calls());
}

TEST_F(DataModelStartFailure, StopsNothingThatItDidNotStart) {
  { RQDataModelParser parser; }
  EXPECT_TRUE(rqtest::PlatformIsUp());
}

}  // namespace
