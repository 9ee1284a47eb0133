// How the objects hold the XML platform when nobody else does. The tests run one process each under CTest; run by hand
// in one process, those that need a platform that is down skip once an exception has left it up for good.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/datamodel/RQDataModelParser.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/datamodel.h"
#include "tests/support/platform.h"

namespace {

using rqtest::DataModel;
using rqtest::Failure;
using rqtest::Ok;
using rqtest::PlatformIsUp;
using RQXPrsUtil::RQDataModelParser;

class DataModelPlatformDown : public ::testing::Test {
 protected:
  void SetUp() override {
    if (PlatformIsUp()) GTEST_SKIP() << "the platform is up already";
  }
};

TEST_F(DataModelPlatformDown, EachObjectHoldsThePlatformAsLongAsItLives) {
  for (int i = 0; i < 3; ++i) {
    auto first = std::make_unique<RQDataModelParser>();
    auto second = std::make_unique<RQDataModelParser>();
    first.reset();
    EXPECT_TRUE(PlatformIsUp());
    EXPECT_EQ(second->ParseToDOM(DataModel("")), Ok());
    second.reset();
    EXPECT_FALSE(PlatformIsUp());
  }
}

TEST_F(DataModelPlatformDown, ExceptionOutlivesTheLastObject) {
  std::string message;
  try {
    RQDataModelParser().ParseToDOM("<DataModel>");
  } catch (const xercesc::SAXParseException& e) {
    message = RQXPrsUtil::ToUTF8(e.getMessage());
  }
  EXPECT_NE(message, "");
  EXPECT_TRUE(PlatformIsUp());
  EXPECT_EQ(RQDataModelParser().ParseToDOM("<x/>"), Failure(105));
}

}  // namespace
