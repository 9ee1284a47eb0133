// How the objects share the XML platform when nobody else holds it. The tests run one process each under CTest; run by
// hand in one process, those that need a platform that is down skip once an exception has left it up for good.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/temp_folder.h"

namespace {

using rqtest::Failure;
using rqtest::Ok;
using rqtest::PlatformIsUp;
using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQXMLReadWrite;
using RQXPrsUtil::ToUTF8;
using ::testing::IsEmpty;
using ::testing::Not;

RQCommon::RQStatus ParseText(RQXMLReadWrite& reader, const std::string& text) {
  std::istringstream stream(text);
  return reader.ParseToDOM(stream);
}

class PlatformDown : public ::testing::Test {
 protected:
  void SetUp() override {
    if (PlatformIsUp()) GTEST_SKIP() << "the platform is up already";
  }
};

TEST_F(PlatformDown, EachObjectHoldsThePlatformAsLongAsItLives) {
  {
    RQXMLReadWrite reader;
    EXPECT_TRUE(PlatformIsUp());
    {
      RQPMMLParser parser;
      EXPECT_EQ(rqtest::Parse(parser, rqtest::PmmlWithFields("")), Ok());
    }
    EXPECT_TRUE(PlatformIsUp());
    EXPECT_EQ(ParseText(reader, "<a/>"), Ok());
  }
  EXPECT_FALSE(PlatformIsUp());
  {
    auto first = std::make_unique<RQPMMLParser>();
    auto second = std::make_unique<RQPMMLParser>();
    first.reset();
    EXPECT_TRUE(PlatformIsUp());
    EXPECT_EQ(rqtest::Parse(*second, rqtest::PmmlWithFields("")), Ok());
  }
  EXPECT_FALSE(PlatformIsUp());
}

TEST_F(PlatformDown, ObjectsStartAndStopThePlatformAgainAndAgain) {
  for (int i = 0; i < 20; ++i) {
    {
      RQXMLReadWrite reader;
      ASSERT_EQ(ParseText(reader, "<a>" + std::to_string(i) + "</a>"), Ok());
    }
    ASSERT_FALSE(PlatformIsUp());
    {
      RQPMMLParser parser;
      ASSERT_EQ(rqtest::Parse(parser, rqtest::PmmlWithFields("")), Ok());
    }
    ASSERT_FALSE(PlatformIsUp());
  }
}

TEST_F(PlatformDown, FailuresThatAreStatusesKeepTheCallsBalanced) {
  {
    RQXMLReadWrite reader;
    EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
    EXPECT_EQ(ParseText(reader, "<a>\xC0\x80</a>"), Failure(104));
    RQPMMLParser parser;
    EXPECT_EQ(rqtest::Parse(parser, "<?xml version='1.0' encoding='no-such'?><PMML/>"), Failure(104));
    EXPECT_EQ(rqtest::Parse(parser, "<x/>"), Failure(105));
  }
  EXPECT_FALSE(PlatformIsUp());
}

TEST_F(PlatformDown, PlatformHeldByTheCallerStaysUp) {
  {
    const rqtest::PlatformGuard guard;
    { RQXMLReadWrite reader; }
    { RQPMMLParser parser; }
    EXPECT_TRUE(PlatformIsUp());
  }
  EXPECT_FALSE(PlatformIsUp());
}

// What leaves by an exception may destroy the last object; the exception must stay readable.

TEST(LeavingException, ParseExceptionOutlivesTheLastReader) {
  try {
    RQXMLReadWrite reader;
    ParseText(reader, "<a>\n<b></a>");
    FAIL() << "nothing was thrown";
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
    EXPECT_EQ(ToUTF8(error.getSystemId()), "istream");
    EXPECT_EQ(error.getLineNumber(), 2U);
  }
}

TEST(LeavingException, ParseExceptionOfAFileOutlivesTheLastReader) {
  const rqtest::TempFolder folder;
  const std::string path = rqtest::WriteFile(folder.File("bad.xml"), "<a>");
  try {
    RQXMLReadWrite reader;
    reader.ParseToDOM(path);
    FAIL() << "nothing was thrown";
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
    EXPECT_THAT(ToUTF8(error.getSystemId()), ::testing::HasSubstr("bad.xml"));
  }
}

TEST(LeavingException, ParseExceptionOutlivesTheLastPmmlParser) {
  try {
    RQPMMLParser parser;
    rqtest::Parse(parser, "<PMML>");
    FAIL() << "nothing was thrown";
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
  }
}

TEST(LeavingException, DomExceptionOutlivesTheLastObject) {
  try {
    RQXMLReadWrite reader;
    ParseText(reader, "<?xml version='1.2'?><a/>");
    FAIL() << "nothing was thrown";
  } catch (const xercesc::DOMException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
  }
  try {
    RQPMMLParser parser;
    rqtest::Parse(parser, "<?xml version='1.2'?><PMML/>");
    FAIL() << "nothing was thrown";
  } catch (const xercesc::DOMException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
  }
}

TEST(LeavingException, ExceptionOfAFileThatCannotBeOpenedForWritingOutlivesTheLastReader) {
  try {
    RQXMLReadWrite reader;
    ASSERT_EQ(ParseText(reader, "<a/>"), Ok());
    reader.WriteFromDOM("/nonexistent/folder/out.xml", nullptr);
    FAIL() << "nothing was thrown";
  } catch (const xercesc::XMLException& error) {
    EXPECT_THAT(ToUTF8(error.getMessage()), ::testing::HasSubstr("/nonexistent/folder/out.xml"));
  }
}

TEST(LeavingException, ManyParseExceptionsLeaveOnlyOneHoldOnThePlatform) {
  if (PlatformIsUp()) GTEST_SKIP() << "the platform is up already";
  for (int i = 0; i < 10; ++i) {
    try {
      RQXMLReadWrite reader;
      ParseText(reader, "<a>");
      FAIL() << "nothing was thrown";
    } catch (const xercesc::SAXParseException& error) {
      EXPECT_THAT(ToUTF8(error.getMessage()), Not(IsEmpty()));
    }
  }
  ASSERT_TRUE(PlatformIsUp());
  xercesc::XMLPlatformUtils::Terminate();
  EXPECT_FALSE(PlatformIsUp());
  xercesc::XMLPlatformUtils::Initialize();
}

}  // namespace
