#include "rqxml/datamodel/RQDataModelParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/common/virtual_slot.h"
#include "tests/support/datamodel.h"
#include "tests/support/platform.h"
#include "tests/support/settings.h"

namespace {

using RQCommon::RQStatus;
using rqtest::Calls;
using rqtest::DataModel;
using rqtest::Failure;
using rqtest::Filled;
using rqtest::ModelField;
using rqtest::Ok;
using RQXPrsUtil::RQDataModelParser;

using Parser = RQDataModelParser;

// The class

static_assert(std::has_virtual_destructor_v<Parser>);
static_assert(std::is_default_constructible_v<Parser>);
static_assert(!std::is_copy_constructible_v<Parser> && !std::is_copy_assignable_v<Parser>);
static_assert(sizeof(Parser) == 2 * sizeof(void*), "a handle: the table of virtual operations and one pointer");

// A pointer to a member is initialised by an operation of exactly that signature and constness only.
template <class Member>
constexpr bool Is(Member) {
  return true;
}
static_assert(Is<RQStatus (Parser::*)() const>(&Parser::GetStatus));
static_assert(Is<RQStatus (Parser::*)(const std::string&)>(&Parser::ParseToDOM));
static_assert(Is<RQStatus (Parser::*)(RQMTD_NAMESPACE::RQVarList&, bool, bool, int) const>(&Parser::FillVarList));

const std::string kField = ModelField("v", "storage='real' measure='continuous'");
const char* const kFieldCall = R"(AddContVar("v", "", LOWEST, HIGHEST, role 0, false, -1) -> 0)";

class DataModelParser : public rqtest::WithPlatform {
 protected:
  /// A fill returns `status` and adds nothing.
  void ExpectFillGives(const RQStatus& status) const {
    const Filled filled = rqtest::FillFrom(parser_);
    EXPECT_EQ(filled.status, status);
    EXPECT_EQ(filled.calls, Calls());
  }
  void ExpectParsesAgain() {
    EXPECT_EQ(parser_.ParseToDOM(DataModel(kField)), Ok());
    EXPECT_EQ(parser_.GetStatus(), Ok());
    const Filled filled = rqtest::FillFrom(parser_);
    EXPECT_EQ(filled.status, Ok());
    EXPECT_EQ(filled.calls, (Calls{kFieldCall, "variable 0: SetStorageType(2)"}));
  }

  RQDataModelParser parser_;
};

TEST_F(DataModelParser, NewObjectHasNoDocument) {
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectFillGives(Failure(107));
  EXPECT_EQ(parser_.GetStatus(), Ok());
}

TEST_F(DataModelParser, DocumentIsTheTextItself) {
  ExpectParsesAgain();
  EXPECT_THROW(parser_.ParseToDOM("/etc/hostname"), xercesc::SAXParseException);
}

TEST_F(DataModelParser, TextIsNotNeededAfterTheParse) {
  auto text = std::make_unique<std::string>(DataModel(kField));
  ASSERT_EQ(parser_.ParseToDOM(*text), Ok());
  text->assign(text->size(), 'x');
  text.reset();
  EXPECT_EQ(rqtest::FillFrom(parser_).calls[0], kFieldCall);
}

TEST_F(DataModelParser, TextIsNotChanged) {
  const std::string text = DataModel(kField);
  const std::string copy(text.data(), text.size());
  ASSERT_EQ(parser_.ParseToDOM(text), Ok());
  EXPECT_EQ(text, copy);
}

TEST_F(DataModelParser, FieldsAreFoundBelowTheRootWhateverStandsAround) {
  const std::string fields = "<Fields>" + kField + "</Fields>";
  const std::string junk = "text<!-- <Fields/> --><?p <Fields/>?><![CDATA[<Fields/>]]><other/><p:Fields/><fields/>";
  for (const std::string& document :
       {"<DataModel>" + fields + "</DataModel>", "<DataModel>" + junk + fields + junk + "</DataModel>",
        "<?xml version='1.0' encoding='UTF-8'?>\n<!-- c --><DataModel version='1' xmlns='urn:x'>" + fields +
            "</DataModel><!-- c -->\n",
        "\xEF\xBB\xBF<DataModel>" + fields + "</DataModel>"}) {
    EXPECT_EQ(parser_.ParseToDOM(document), Ok()) << document;
    EXPECT_EQ(rqtest::FillFrom(parser_).calls[0], kFieldCall) << document;
  }
}

// Failed parses

TEST_F(DataModelParser, FailedParseLeavesItsStatusAndNoDocument) {
  const std::string fields = "<Fields>" + kField + "</Fields>";
  const struct {
    std::string document;
    long code;
  } rows[] = {{"<DataModel>\xC0\x80</DataModel>", 104},
              {"<DataModel><Fields/></DataModel>\xC3", 104},
              {"<?xml version='1.0' encoding='no-such'?><DataModel/>", 104},
              {"<x/>", 105},
              {"<datamodel>" + fields + "</datamodel>", 105},
              {"<Datamodel>" + fields + "</Datamodel>", 105},
              {"<DataModels>" + fields + "</DataModels>", 105},
              {"<PMML>" + DataModel(kField) + "</PMML>", 105},
              {"<p:DataModel>" + fields + "</p:DataModel>", 105},
              {fields, 105},
              {"<DataModel/>", 113},
              {"<DataModel>text</DataModel>", 113},
              {"<DataModel><fields/></DataModel>", 113},
              {"<DataModel><p:Fields/></DataModel>", 113},
              {"<DataModel><x>" + fields + "</x></DataModel>", 113},
              {"<DataModel><!--" + fields + "--></DataModel>", 113},
              {"<DataModel>" + kField + "</DataModel>", 113}};
  for (const auto& row : rows) {
    ASSERT_EQ(parser_.ParseToDOM(DataModel(kField)), Ok());
    EXPECT_EQ(parser_.ParseToDOM(row.document), Failure(row.code)) << row.document;
    EXPECT_EQ(parser_.GetStatus(), Failure(row.code)) << row.document;
    ExpectFillGives(Failure(row.code));
  }
  ExpectParsesAgain();
}

TEST_F(DataModelParser, MalformedTextPassesOutAndNothingOfTheDocumentBeforeIsFoundAgain) {
  for (const std::string& document :
       {std::string(), std::string("x"), std::string(" "), std::string("<DataModel>"), DataModel("<Field>"),
        DataModel(kField) + "<x/>", DataModel("&undeclared;"), DataModel("<Field name='a' name='b'/>"),
        DataModel("<Field name='&#1;'/>"), DataModel("<Field name='&#xD800;'/>"), DataModel("<Field name=a/>"),
        DataModel(kField) + '\0', std::string("<DataModel>\0</DataModel>", 23), std::string(100, '\0'),
        DataModel(kField) + std::string(1, '\0') + "behind"}) {
    ASSERT_EQ(parser_.ParseToDOM(DataModel(kField)), Ok());
    EXPECT_THROW(parser_.ParseToDOM(document), xercesc::SAXParseException) << document;
    EXPECT_EQ(parser_.GetStatus(), Ok()) << document;
    ExpectFillGives(Failure(107));
  }
  ExpectParsesAgain();
}

TEST_F(DataModelParser, OtherExceptionsPassOutAndNothingOfTheDocumentBeforeIsFoundAgain) {
  ASSERT_EQ(parser_.ParseToDOM(DataModel(kField)), Ok());
  EXPECT_THROW(parser_.ParseToDOM("<?xml version='1.2'?><DataModel/>"), xercesc::DOMException);
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectFillGives(Failure(107));
  ExpectParsesAgain();
}

TEST_F(DataModelParser, StatusOfAnEarlierFailureIsGoneAfterAParseException) {
  EXPECT_EQ(parser_.ParseToDOM("<DataModel/>"), Failure(113));
  EXPECT_THROW(parser_.ParseToDOM("<DataModel>"), xercesc::SAXParseException);
  EXPECT_EQ(parser_.GetStatus(), Ok());
  ExpectFillGives(Failure(107));
}

TEST_F(DataModelParser, FailureOfAFillIsNotKept) {
  ASSERT_EQ(parser_.ParseToDOM(DataModel("<Field/>")), Ok());
  EXPECT_EQ(rqtest::FillFrom(parser_).status, Failure(108));
  EXPECT_EQ(parser_.GetStatus(), Ok());
  EXPECT_EQ(rqtest::FillFrom(parser_).status, Failure(108));
}

TEST_F(DataModelParser, SecondParseReplacesTheFirst) {
  ASSERT_EQ(parser_.ParseToDOM(DataModel(ModelField("old", "storage='real' measure='continuous'"))), Ok());
  ExpectParsesAgain();
}

// Hostile names

TEST_F(DataModelParser, TooManyDifferentNamesAreAFailedParse) {
  std::string elements, attributes, onOneElement;
  for (int i = 0; i < 13000; ++i) {
    const std::string number = std::to_string(i);
    elements += "<e" + number + "/>";
    attributes += "<e a" + number + "=''/>";
    onOneElement += " a" + number + "=''";
  }
  for (const std::string& content :
       {elements, attributes, "<e" + onOneElement + "/>", "<Field" + onOneElement + "/>"}) {
    ASSERT_EQ(parser_.ParseToDOM(DataModel(kField)), Ok());
    EXPECT_EQ(parser_.ParseToDOM(DataModel(content + kField)), Failure(104)) << content.substr(0, 20);
    ExpectFillGives(Failure(104));
  }
  ExpectParsesAgain();
}

TEST_F(DataModelParser, ThousandsOfDifferentNamesAreRead) {
  std::string content;
  for (int i = 0; i < 10000; ++i) content += "<e" + std::to_string(i) + " a" + std::to_string(i) + "=''/>";
  ASSERT_EQ(parser_.ParseToDOM(DataModel(content + kField)), Ok());
  EXPECT_EQ(rqtest::FillFrom(parser_).calls[0], kFieldCall);
}

TEST_F(DataModelParser, TextThatUtf8CannotSayIsEmpty) {
  const std::string document =
      DataModel(ModelField("?", "storage='string' measure='x' displayLabel='?'",
                           "<Values><Value value='?' displayLabel='?'/><Value value='a' displayLabel='b'/></Values>"));
  ASSERT_EQ(parser_.ParseToDOM(rqtest::AsUtf16(document, 0xD83D)), Ok());
  EXPECT_EQ(rqtest::FillFrom(parser_).calls[0],
            R"(AddCatVar("", "", strings ["", "a"], labels ["", "b"], role 0) -> 0)");
}

}  // namespace
