#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ios>
#include <sstream>
#include <string>
#include <type_traits>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/dom.h"
#include "tests/support/leaks.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/streams.h"

namespace {

using rqtest::Calls;
using rqtest::Failure;
using rqtest::Field;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::PmmlWithFields;
using RQXPrsUtil::RQPMMLParser;
using ::testing::IsEmpty;
using ::testing::Not;

static_assert(std::has_virtual_destructor_v<RQPMMLParser>);
static_assert(!std::is_copy_constructible_v<RQPMMLParser> && !std::is_copy_assignable_v<RQPMMLParser>);
static_assert(
    std::is_same_v<decltype(std::declval<const RQPMMLParser&>().GetRootElement()), const xercesc::DOMElement*>);

const char* const kGood =
    "<PMML><DataDictionary><DataField name='x' optype='continuous' dataType='double'/>"
    "</DataDictionary></PMML>";

class Parser : public rqtest::WithPlatform {
 protected:
  /// What filling a list gives while the parser holds no good document.
  void ExpectNothingHeld(const RQCommon::RQStatus& fill) {
    EXPECT_EQ(parser_.GetRootElement(), nullptr);
    EXPECT_FALSE(parser_.SetModelElmt(other_.Root()));
    rqtest::RecordingVarList vars;
    EXPECT_EQ(parser_.FillVarList(vars, {}, false), fill);
    EXPECT_EQ(parser_.FillVarList(vars, {"x"}, true), fill);
    EXPECT_EQ(vars.calls, Calls());
  }
  void ExpectParsesAgain() {
    EXPECT_EQ(Parse(parser_, kGood), Ok());
    EXPECT_EQ(parser_.GetStatus(), Ok());
    EXPECT_EQ(parser_.GetXercesMessage(), "");
    ASSERT_NE(parser_.GetRootElement(), nullptr);
    rqtest::RecordingVarList vars;
    EXPECT_EQ(parser_.FillVarList(vars, {}, false), Ok());
    EXPECT_EQ(vars.calls, Calls{R"(AddContVar("x", "", role 4) -> 0)"});
  }

  rqtest::Document other_{"<other/>"};
  RQPMMLParser parser_;
};

TEST_F(Parser, NewObjectIsOkHoldsNothingAndFillsNothing) {
  EXPECT_EQ(parser_.GetStatus(), Ok());
  EXPECT_EQ(parser_.GetXercesMessage(), "");
  ExpectNothingHeld(Failure(107));
}

TEST_F(Parser, GoodDocumentGivesTheRootElement) {
  EXPECT_EQ(Parse(parser_, kGood), Ok());
  EXPECT_EQ(parser_.GetStatus(), Ok());
  EXPECT_EQ(rqtest::Tag(parser_.GetRootElement()), u"PMML");
  EXPECT_EQ(parser_.GetXercesMessage(), "");
}

TEST_F(Parser, VersionAndNamespaceAreNotExamined) {
  for (const char* const attributes :
       {"", " version='2.0'", " version='99'", " version=''", " xmlns='http://www.dmg.org/PMML-4_4' version='4.4'",
        " xmlns='urn:other'", " x='1'"}) {
    EXPECT_EQ(Parse(parser_, "<PMML" + std::string(attributes) + "><DataDictionary/></PMML>"), Ok()) << attributes;
  }
}

TEST_F(Parser, RootWithAnotherTagIsRefused) {
  for (const char* const tag : {"pmml", "Pmml", "PMMLx", "PMM", "p:PMML", "DataDictionary", "x"}) {
    const std::string document = "<" + std::string(tag) + "><DataDictionary/></" + tag + ">";
    EXPECT_EQ(Parse(parser_, document), Failure(105)) << tag;
    EXPECT_EQ(parser_.GetStatus(), Failure(105)) << tag;
    EXPECT_EQ(parser_.GetXercesMessage(), "") << tag;
    ExpectNothingHeld(Failure(105));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, PmmlElementBelowAnotherRootIsNotFound) {
  EXPECT_EQ(Parse(parser_, "<x>" + std::string(kGood) + "</x>"), Failure(105));
}

TEST_F(Parser, DocumentWithoutDataDictionaryIsRefused) {
  const char* const contents[] = {
      "",
      "text",
      "<!--<DataDictionary/>-->",
      "<![CDATA[<DataDictionary/>]]>",
      "<dataDictionary/>",
      "<DataDictionaryX/>",
      "<p:DataDictionary/>",
      "<Header><DataDictionary/></Header>",
      "<TransformationDictionary/>",
  };
  for (const char* const content : contents) {
    EXPECT_EQ(Parse(parser_, Pmml(content)), Failure(106)) << content;
    EXPECT_EQ(parser_.GetStatus(), Failure(106)) << content;
    EXPECT_EQ(parser_.GetXercesMessage(), "") << content;
    ExpectNothingHeld(Failure(106));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, DataDictionaryFromAnEntityIsNoDirectChild) {
  EXPECT_EQ(Parse(parser_, "<!DOCTYPE PMML [<!ENTITY e '<DataDictionary/>'>]><PMML>&e;</PMML>"), Failure(106));
}

TEST_F(Parser, DataDictionaryMayStandAnywhereAmongTheChildren) {
  EXPECT_EQ(Parse(parser_, Pmml("text<!--c--><Header/><?p i?><TreeModel/><DataDictionary/>")), Ok());
}

TEST_F(Parser, FirstDataDictionaryCounts) {
  const rqtest::Filled filled =
      rqtest::Fill(Pmml("<DataDictionary>" + Field("a", "continuous", "double") + "</DataDictionary><DataDictionary>" +
                        Field("b", "continuous", "double") + "</DataDictionary>"));
  EXPECT_EQ(filled.calls, Calls{R"(AddContVar("a", "", role 4) -> 0)"});
}

TEST_F(Parser, InputThatCannotBeDecodedIsAFailedParseWithMessage) {
  ASSERT_EQ(Parse(parser_, kGood), Ok());
  for (const char* const bytes :
       {"<PMML>\xC0\x80</PMML>", "<PMML>\xED\xA0\x80</PMML>", "<?xml version='1.0' encoding='no-such'?><PMML/>",
        "<!DOCTYPE PMML SYSTEM 'file:///nonexistent/a.dtd'><PMML/>"}) {
    EXPECT_EQ(Parse(parser_, bytes), Failure(104)) << bytes;
    EXPECT_EQ(parser_.GetStatus(), Failure(104)) << bytes;
    EXPECT_THAT(parser_.GetXercesMessage(), Not(IsEmpty())) << bytes;
    ExpectNothingHeld(Failure(104));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, MessageIsTheLibrarysTextAndNothingElse) {
  EXPECT_EQ(Parse(parser_, "<?xml version='1.0' encoding='no-such'?><PMML/>"), Failure(104));
  EXPECT_EQ(parser_.GetXercesMessage(), "unable to create converter for 'NO-SUCH' encoding");
}

TEST_F(Parser, MalformedDocumentPassesOutAndLeavesAnObjectWithoutDocument) {
  for (const char* const document :
       {"", " ", "x", "<PMML>", "<PMML></pmml>", "<PMML><DataDictionary></PMML>", "<PMML/><PMML/>", "<PMML>&e;</PMML>",
        "<PMML><DataDictionary/></PMML>x", "<PMML a='1' a='2'/>"}) {
    ASSERT_EQ(Parse(parser_, kGood), Ok());
    EXPECT_THROW(Parse(parser_, document), xercesc::SAXParseException) << document;
    EXPECT_EQ(parser_.GetStatus(), Ok()) << document;
    EXPECT_EQ(parser_.GetXercesMessage(), "") << document;
    ExpectNothingHeld(Failure(107));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, StatusOfAnEarlierFailureIsGoneAfterAParseException) {
  EXPECT_EQ(Parse(parser_, "<x/>"), Failure(105));
  EXPECT_THROW(Parse(parser_, "<PMML>"), xercesc::SAXParseException);
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectNothingHeld(Failure(107));
}

TEST_F(Parser, OtherExceptionsOfTheLibraryPassOutAndLeaveAnObjectWithoutDocument) {
  for (const char* const document : {"<?xml version='1.2'?><PMML/>", "<!DOCTYPE a:><PMML/>"}) {
    ASSERT_EQ(Parse(parser_, kGood), Ok());
    EXPECT_THROW(Parse(parser_, document), xercesc::DOMException);
    EXPECT_EQ(parser_.GetStatus(), Ok());
    ExpectNothingHeld(Failure(107));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, StreamThatGoesBadIsAFailedParse) {
  for (const std::string& beginning : {std::string(), std::string("<PMML>"), std::string(kGood),
                                       std::string(kGood) + "\n", std::string(kGood) + std::string(100000, ' ')}) {
    ASSERT_EQ(Parse(parser_, kGood), Ok());
    rqtest::FailingBuf buffer(beginning);
    std::istream stream(&buffer);
    EXPECT_EQ(parser_.ParseToDOM(stream), Failure(104)) << beginning;
    EXPECT_EQ(parser_.GetStatus(), Failure(104)) << beginning;
    ExpectNothingHeld(Failure(104));
  }
  ExpectParsesAgain();
}

TEST_F(Parser, ExceptionThatTheStreamIsSetToThrowPassesOut) {
  const rqtest::LeaksOfTheLibrary leaks;
  ASSERT_EQ(Parse(parser_, kGood), Ok());
  rqtest::FailingBuf buffer("<PMML>");
  std::istream stream(&buffer);
  stream.exceptions(std::ios::badbit);
  EXPECT_THROW(parser_.ParseToDOM(stream), rqtest::ReadFailure);
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectNothingHeld(Failure(107));
  std::istringstream ending(kGood);
  ending.exceptions(std::ios::eofbit);
  EXPECT_THROW(parser_.ParseToDOM(ending), std::ios_base::failure);
  ExpectNothingHeld(Failure(107));
  ExpectParsesAgain();
}

TEST_F(Parser, StreamIsReadFromItsPositionToItsEnd) {
  std::istringstream stream("a line before\n" + std::string(kGood) + "\n");
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(parser_.ParseToDOM(stream), Ok());
  EXPECT_TRUE(stream.eof());
  EXPECT_TRUE(stream.fail());
  EXPECT_FALSE(stream.bad());
}

TEST_F(Parser, StreamInChunksOfOneByteIsReadWhole) {
  rqtest::ChunkedBuf buffer(kGood, 1);
  std::istream stream(&buffer);
  EXPECT_EQ(parser_.ParseToDOM(stream), Ok());
  rqtest::RecordingVarList vars;
  EXPECT_EQ(parser_.FillVarList(vars, {}, false), Ok());
  EXPECT_EQ(vars.calls.size(), 1U);
}

TEST_F(Parser, SecondParseReplacesTheFirst) {
  ASSERT_EQ(Parse(parser_, PmmlWithFields(Field("old", "continuous", "double"))), Ok());
  ExpectParsesAgain();
}

TEST_F(Parser, FailedParseForgetsTheDocumentBefore) {
  ASSERT_EQ(Parse(parser_, kGood), Ok());
  EXPECT_EQ(Parse(parser_, Pmml("")), Failure(106));
  ExpectNothingHeld(Failure(106));
  EXPECT_EQ(Parse(parser_, "<x/>"), Failure(105));
  ExpectNothingHeld(Failure(105));
  ExpectParsesAgain();
}

TEST_F(Parser, FailedParseForgetsTheMessageBefore) {
  EXPECT_EQ(Parse(parser_, "<PMML>\xC0\x80</PMML>"), Failure(104));
  EXPECT_THAT(parser_.GetXercesMessage(), Not(IsEmpty()));
  EXPECT_EQ(Parse(parser_, "<x/>"), Failure(105));
  EXPECT_EQ(parser_.GetXercesMessage(), "");
}

TEST_F(Parser, ModelElementIsTakenWithoutExaminationWhileADocumentIsHeld) {
  ASSERT_EQ(Parse(parser_, Pmml("<DataDictionary/><TreeModel/>")), Ok());
  const xercesc::DOMElement* const model = RQXPrsUtil::GetFirstChildElmt(*parser_.GetRootElement(), "TreeModel");
  ASSERT_NE(model, nullptr);
  EXPECT_TRUE(parser_.SetModelElmt(*model));
  EXPECT_TRUE(parser_.SetModelElmt(*model));
  EXPECT_TRUE(parser_.SetModelElmt(*parser_.GetRootElement()));
}

TEST_F(Parser, ModelElementDoesNotInfluenceFilling) {
  ASSERT_EQ(Parse(parser_, kGood), Ok());
  EXPECT_TRUE(parser_.SetModelElmt(*parser_.GetRootElement()));
  rqtest::RecordingVarList vars;
  EXPECT_EQ(parser_.FillVarList(vars, {}, false), Ok());
  EXPECT_EQ(vars.calls.size(), 1U);
}

/// A derived class sees what the base class keeps.
class Exposed : public RQPMMLParser {
 public:
  RQCommon::RQStatus ParseToDOM(std::istream& in) override {
    ++parses;
    return RQPMMLParser::ParseToDOM(in);
  }
  bool HoldsTransformations() const { return fTransDictionary != nullptr; }
  bool HoldsModel() const { return fModelElement != nullptr; }
  bool HoldsAnything() const {
    return fDocument != nullptr || fRootElement != nullptr || fDataDictionary != nullptr ||
           fTransDictionary != nullptr || fModelElement != nullptr;
  }
  int parses = 0;
};

TEST_F(Parser, ParseToDomIsVirtual) {
  Exposed derived;
  RQPMMLParser& base = derived;
  EXPECT_EQ(Parse(base, kGood), Ok());
  EXPECT_EQ(derived.parses, 1);
}

TEST_F(Parser, EveryParseForgetsTheModelElementAndEveryFailureForgetsAll) {
  Exposed parser;
  const std::string document = Pmml("<DataDictionary/><TransformationDictionary/><TreeModel/>");
  const auto parseAndChoose = [&] {
    ASSERT_EQ(Parse(parser, document), Ok());
    EXPECT_FALSE(parser.HoldsModel());
    ASSERT_TRUE(parser.SetModelElmt(*parser.GetRootElement()));
    EXPECT_TRUE(parser.HoldsModel());
    EXPECT_TRUE(parser.HoldsTransformations());
  };
  parseAndChoose();
  parseAndChoose();
  EXPECT_EQ(Parse(parser, "<x/>"), Failure(105));
  EXPECT_FALSE(parser.HoldsAnything());
  parseAndChoose();
  EXPECT_EQ(Parse(parser, Pmml("<TransformationDictionary/>")), Failure(106));
  EXPECT_FALSE(parser.HoldsAnything());
  parseAndChoose();
  EXPECT_EQ(Parse(parser, "<PMML>\xC0\x80"), Failure(104));
  EXPECT_FALSE(parser.HoldsAnything());
  parseAndChoose();
  EXPECT_THROW(Parse(parser, "<PMML>"), xercesc::SAXParseException);
  EXPECT_FALSE(parser.HoldsAnything());
}

TEST_F(Parser, TransformationDictionaryMayBeAbsentAndIsADirectChildOfTheRoot) {
  Exposed parser;
  const struct {
    const char* content;
    bool held;
  } rows[] = {{"<DataDictionary/>", false},
              {"<DataDictionary/><TransformationDictionary/>", true},
              {"<TransformationDictionary/><DataDictionary/>", true},
              {"<DataDictionary><TransformationDictionary/></DataDictionary>", false},
              {"<DataDictionary/><p:TransformationDictionary/>", false},
              {"<DataDictionary/><transformationDictionary/>", false},
              {"<DataDictionary/><TreeModel><TransformationDictionary/></TreeModel>", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(Parse(parser, Pmml(row.content)), Ok()) << row.content;
    EXPECT_EQ(parser.HoldsTransformations(), row.held) << row.content;
  }
}

}  // namespace
