#include "rqxml/xml/RQXMLReadWrite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <filesystem>
#include <functional>
#include <ios>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/dom.h"
#include "tests/support/files.h"
#include "tests/support/leaks.h"
#include "tests/support/platform.h"
#include "tests/support/status.h"
#include "tests/support/streams.h"
#include "tests/support/temp_folder.h"

namespace {

using RQCommon::RQStatus;
using rqtest::ChunkedBuf;
using rqtest::Document;
using rqtest::FailingBuf;
using rqtest::Failure;
using rqtest::Ok;
using rqtest::ReadFile;
using rqtest::Tag;
using rqtest::Text;
using rqtest::WriteFile;
using RQXPrsUtil::RQXMLReadWrite;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kDeclaration = R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>)";

static_assert(!std::is_copy_constructible_v<RQXMLReadWrite> && !std::is_copy_assignable_v<RQXMLReadWrite>);
static_assert(!std::is_polymorphic_v<RQXMLReadWrite>);
static_assert(std::is_same_v<decltype(std::declval<const RQXMLReadWrite&>().GetInitStatus()), RQStatus>);
static_assert(std::is_same_v<decltype(std::declval<const RQXMLReadWrite&>().GetXercesMessage()), std::string>);

RQStatus ParseText(RQXMLReadWrite& reader, const std::string& text) {
  std::istringstream stream(text);
  return reader.ParseToDOM(stream);
}

std::string RootTag(RQXMLReadWrite& reader) {
  return reader.GetDocument() == nullptr ? "(no document)"
                                         : RQXPrsUtil::ToUTF8(reader.GetDocument()->getDocumentElement()->getTagName());
}

/// Checks that the object holds nothing and that the next parse is good.
void ExpectEmptyAndUsable(RQXMLReadWrite& reader) {
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_EQ(reader.GetInitStatus(), Ok());
  EXPECT_EQ(ParseText(reader, "<again/>"), Ok());
  EXPECT_EQ(RootTag(reader), "again");
  EXPECT_EQ(reader.GetXercesMessage(), "");
}

class ReadWrite : public rqtest::WithPlatform {
 protected:
  std::string File(const std::string& name) const { return folder_.File(name); }
  rqtest::TempFolder folder_;
  RQXMLReadWrite reader_;
};

// Construction

TEST_F(ReadWrite, NewObjectIsOkAndEmpty) {
  EXPECT_EQ(reader_.GetInitStatus(), Ok());
  EXPECT_EQ(reader_.GetDocument(), nullptr);
  EXPECT_EQ(reader_.GetXercesMessage(), "");
}

TEST_F(ReadWrite, ObjectsAreIndependentAndMayDieInAnyOrder) {
  auto first = std::make_unique<RQXMLReadWrite>();
  auto second = std::make_unique<RQXMLReadWrite>();
  EXPECT_EQ(ParseText(*first, "<a/>"), Ok());
  EXPECT_EQ(ParseText(*second, "<b/>"), Ok());
  first.reset();
  EXPECT_EQ(RootTag(*second), "b");
  auto third = std::make_unique<RQXMLReadWrite>();
  second.reset();
  EXPECT_EQ(ParseText(*third, "<c/>"), Ok());
}

// Reading

TEST_F(ReadWrite, ParsesAFile) {
  EXPECT_EQ(reader_.ParseToDOM(WriteFile(File("a.xml"), "<a><b/></a>")), Ok());
  EXPECT_EQ(RootTag(reader_), "a");
  EXPECT_EQ(reader_.GetXercesMessage(), "");
}

TEST_F(ReadWrite, ParsesAStream) {
  EXPECT_EQ(ParseText(reader_, "<a><b/></a>"), Ok());
  EXPECT_EQ(RootTag(reader_), "a");
}

TEST_F(ReadWrite, ParsesAFileWhoseNameHasCharactersBeyondAscii) {
  EXPECT_EQ(reader_.ParseToDOM(WriteFile(File("gr\xC3\xB6\xC3\x9F"
                                              "e.xml"),
                                         "<a/>")),
            Ok());
  EXPECT_EQ(RootTag(reader_), "a");
}

TEST_F(ReadWrite, ParsesAFileWhoseNameHasBlanksAndPercentSigns) {
  EXPECT_EQ(reader_.ParseToDOM(WriteFile(File("a b%20c#d.xml"), "<a/>")), Ok());
  EXPECT_EQ(RootTag(reader_), "a");
}

TEST_F(ReadWrite, ParsesAStreamFromItsCurrentPosition) {
  std::istringstream stream("length: 4\n<a/>");
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(reader_.ParseToDOM(stream), Ok());
  EXPECT_EQ(RootTag(reader_), "a");
}

TEST_F(ReadWrite, LeavesTheStreamAtItsEnd) {
  for (const std::string& text : {std::string("<a/>"), "<a/>" + std::string(200000, ' ')}) {
    std::istringstream stream(text);
    EXPECT_EQ(reader_.ParseToDOM(stream), Ok());
    EXPECT_TRUE(stream.eof());
    EXPECT_TRUE(stream.fail());
    EXPECT_FALSE(stream.bad());
    stream.clear();
    EXPECT_EQ(stream.tellg(), std::streampos(static_cast<std::streamoff>(text.size())));
  }
}

TEST_F(ReadWrite, ParsesAStreamThatComesInSmallChunksAndCannotBePositioned) {
  for (const std::size_t chunk : {1U, 2U, 3U, 7U}) {
    ChunkedBuf buffer("<a b='\xC3\xA4'>\xE2\x82\xAC<!-- \xF0\x9F\x98\x80 --></a>", chunk);
    std::istream stream(&buffer);
    ASSERT_EQ(reader_.ParseToDOM(stream), Ok()) << chunk;
    EXPECT_EQ(Text(reader_.GetDocument()->getDocumentElement()->getTextContent()), u"\u20AC") << chunk;
  }
}

TEST_F(ReadWrite, SecondParseReplacesTheDocument) {
  ASSERT_EQ(ParseText(reader_, "<first/>"), Ok());
  ASSERT_EQ(ParseText(reader_, "<second/>"), Ok());
  EXPECT_EQ(RootTag(reader_), "second");
  ASSERT_EQ(reader_.ParseToDOM(WriteFile(File("a.xml"), "<third/>")), Ok());
  EXPECT_EQ(RootTag(reader_), "third");
}

TEST_F(ReadWrite, GetDocumentHandsOutTheSameDocumentUntilTheNextParse) {
  ASSERT_EQ(ParseText(reader_, "<a/>"), Ok());
  xercesc::DOMDocument* const document = reader_.GetDocument();
  EXPECT_EQ(reader_.WriteFromDOM(File("a.xml"), nullptr), Ok());
  EXPECT_EQ(reader_.GetDocument(), document);
}

// The parser's features are the library's defaults.

TEST_F(ReadWrite, KeepsCommentsInstructionsBlanksAndCdataAsNodes) {
  ASSERT_EQ(ParseText(reader_, "<a> <!--c--><?p i?><![CDATA[x]]>\n<b/></a>"), Ok());
  std::vector<int> types;
  for (xercesc::DOMNode* node = reader_.GetDocument()->getDocumentElement()->getFirstChild(); node != nullptr;
       node = node->getNextSibling()) {
    types.push_back(node->getNodeType());
  }
  using xercesc::DOMNode;
  EXPECT_THAT(types,
              ::testing::ElementsAre(DOMNode::TEXT_NODE, DOMNode::COMMENT_NODE, DOMNode::PROCESSING_INSTRUCTION_NODE,
                                     DOMNode::CDATA_SECTION_NODE, DOMNode::TEXT_NODE, DOMNode::ELEMENT_NODE));
}

TEST_F(ReadWrite, DoesNotProcessNamespaces) {
  ASSERT_EQ(ParseText(reader_, "<p:a xmlns:q='urn:q' p:b='1'/>"), Ok());
  const xercesc::DOMElement* const root = reader_.GetDocument()->getDocumentElement();
  EXPECT_EQ(Tag(root), u"p:a");
  EXPECT_EQ(root->getNamespaceURI(), nullptr);
  EXPECT_EQ(root->getLocalName(), nullptr);
  EXPECT_EQ(Text(RQXPrsUtil::GetAttribute(*root, "p:b")), u"1");
}

TEST_F(ReadWrite, KeepsEntityReferencesAsNodes) {
  ASSERT_EQ(ParseText(reader_, "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>"), Ok());
  const xercesc::DOMNode* const child = reader_.GetDocument()->getDocumentElement()->getFirstChild();
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(child->getNodeType(), xercesc::DOMNode::ENTITY_REFERENCE_NODE);
}

TEST_F(ReadWrite, ValidityErrorsAndWarningsGoUnheard) {
  const char* const documents[] = {
      "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>text</a>",
      "<!DOCTYPE b [<!ELEMENT b EMPTY>]><a/>",
      "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a n CDATA #REQUIRED>]><a m='1'/>",
      "<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT a ANY>]><a/>",
      "<!DOCTYPE a [<!ENTITY x '1'><!ENTITY x '2'>]><a>&x;</a>",
      "<?xml version='1.0' encoding='UTF-16'?><a/>",
      "<a xsi:schemaLocation='urn:x /nonexistent.xsd' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'/>",
  };
  for (const char* const document : documents) {
    EXPECT_EQ(ParseText(reader_, document), Ok()) << document;
    EXPECT_EQ(RootTag(reader_), "a") << document;
    EXPECT_EQ(reader_.GetXercesMessage(), "") << document;
  }
}

TEST_F(ReadWrite, LoadsTheExternalDtdBesideAFile) {
  const rqtest::LeaksOfTheLibrary leaks;
  WriteFile(File("a.dtd"), "<!ATTLIST a b CDATA 'default'><!ENTITY e 'entity'>");
  ASSERT_EQ(reader_.ParseToDOM(WriteFile(File("a.xml"), "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>")), Ok());
  const xercesc::DOMElement* const root = reader_.GetDocument()->getDocumentElement();
  EXPECT_EQ(Text(RQXPrsUtil::GetAttribute(*root, "b")), u"default");
  EXPECT_EQ(Text(root->getTextContent()), u"entity");
}

TEST_F(ReadWrite, ReadsXml11) {
  EXPECT_EQ(ParseText(reader_, "<?xml version='1.1'?><a>&#1;</a>"), Ok());
  EXPECT_EQ(Text(reader_.GetDocument()->getDocumentElement()->getTextContent()), u"\u0001");
}

// What is not well-formed passes out as the library's parse exception.

const char* const kMalformed[] = {
    "",
    "  \n",
    "text",
    "<?xml version=\"1.0\"?>",
    "<!-- only a comment -->",
    "<!DOCTYPE a>",
    "<a>",
    "<a><b>",
    "<a></b>",
    "<a/><b/>",
    "<a/>text",
    "<a b='1' b='2'/>",
    "<a b='<'/>",
    "<a b/>",
    "<a b=1/>",
    "<a>&undeclared;</a>",
    "<a>&#1;</a>",
    "<a>&#xD800;</a>",
    "<a>]]></a>",
    "<a><!-- -- --></a>",
    "<a><![CDATA[x</a>",
    "<a/><!-- open",
    "<a/><?open ",
    " <?xml version=\"1.0\"?><a/>",
    "<?xml version=\"2.0\"?><a/>",
    "<?xml version=\"1.0\" standalone=\"maybe\"?><a/>",
    "<?xml version=\"1.0\" encoding=\"\"?><a/>",
    "<!DOCTYPE a [<!ENTITY x '&y;'><!ENTITY y '&x;'>]><a>&x;</a>",
    "<1a/>",
    "<a \x01/>",
};

class MalformedDocument : public ReadWrite, public ::testing::WithParamInterface<const char*> {};

TEST_P(MalformedDocument, PassesOutOfTheStreamFormAsAParseException) {
  ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
  EXPECT_THROW(ParseText(reader_, GetParam()), xercesc::SAXParseException);
  ExpectEmptyAndUsable(reader_);
}

TEST_P(MalformedDocument, PassesOutOfTheFileFormAsAParseException) {
  ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
  const std::string path = WriteFile(File("bad.xml"), GetParam());
  EXPECT_THROW(reader_.ParseToDOM(path), xercesc::SAXParseException);
  ExpectEmptyAndUsable(reader_);
}

INSTANTIATE_TEST_SUITE_P(Each, MalformedDocument, ::testing::ValuesIn(kMalformed));

TEST_F(ReadWrite, ParseExceptionTellsWhatAndWhere) {
  const std::string path = WriteFile(File("bad.xml"), "<a>\n  <b></c>\n</a>");
  try {
    reader_.ParseToDOM(path);
    FAIL() << "nothing was thrown";
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_THAT(RQXPrsUtil::ToUTF8(error.getMessage()), Not(IsEmpty()));
    EXPECT_EQ(error.getLineNumber(), 2U);
    EXPECT_GT(error.getColumnNumber(), 1U);
    EXPECT_THAT(RQXPrsUtil::ToUTF8(error.getSystemId()), HasSubstr("bad.xml"));
  }
}

TEST_F(ReadWrite, ParseExceptionOfAStreamNamesIstream) {
  try {
    ParseText(reader_, "<a>");
    FAIL() << "nothing was thrown";
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_EQ(Text(error.getSystemId()), u"istream");
    EXPECT_EQ(error.getLineNumber(), 1U);
  }
}

TEST_F(ReadWrite, ParseExceptionLeavesTheMessageEmpty) {
  EXPECT_EQ(reader_.ParseToDOM(File("missing.xml")), Failure(104));
  EXPECT_THROW(ParseText(reader_, "<a>"), xercesc::SAXParseException);
  EXPECT_EQ(reader_.GetXercesMessage(), "");
}

TEST_F(ReadWrite, WritingTheHeldDocumentAfterAParseExceptionWritesNothing) {
  ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
  EXPECT_THROW(ParseText(reader_, "<a>"), xercesc::SAXParseException);
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_FALSE(std::filesystem::exists(File("out.xml")));
}

TEST_F(ReadWrite, ParsesAgainAfterManyParseExceptions) {
  for (int i = 0; i < 100; ++i) EXPECT_THROW(ParseText(reader_, "<a><b>"), xercesc::SAXParseException);
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, ParseExceptionMayBeKeptUntilTheObjectIsGone) {
  std::exception_ptr kept;
  {
    RQXMLReadWrite reader;
    try {
      ParseText(reader, "<a>");
    } catch (...) {
      kept = std::current_exception();
    }
  }
  ASSERT_TRUE(kept);
  try {
    std::rethrow_exception(kept);
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_THAT(RQXPrsUtil::ToUTF8(error.getMessage()), Not(IsEmpty()));
  }
}

// Malformed documents whose library error is a DOMException.

TEST_F(ReadWrite, DomExceptionOfTheParserPassesOut) {
  for (const char* const document :
       {"<?xml version=\"1.2\"?><a/>", "<?xml version=\"1.9\"?><a/>", "<!DOCTYPE a:><a/>"}) {
    ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
    EXPECT_THROW(ParseText(reader_, document), xercesc::DOMException) << document;
    ExpectEmptyAndUsable(reader_);
    const std::string path = WriteFile(File("bad.xml"), document);
    EXPECT_THROW(reader_.ParseToDOM(path), xercesc::DOMException) << document;
    ExpectEmptyAndUsable(reader_);
  }
}

// XMLException inside the library: 104 with its text.

TEST_F(ReadWrite, MissingFileIsAFailedParseWithTheLibrarysOwnText) {
  ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
  EXPECT_EQ(reader_.ParseToDOM(File("missing.xml")), Failure(104));
  EXPECT_EQ(reader_.GetXercesMessage(), "unable to open primary document entity '" + File("missing.xml") + "'");
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, EmptyFileNameIsAFailedParse) {
  EXPECT_EQ(reader_.ParseToDOM(std::string()), Failure(104));
  EXPECT_THAT(reader_.GetXercesMessage(), Not(IsEmpty()));
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, DirectoryIsAFailedParse) {
  const rqtest::LeaksOfTheLibrary leaks;
  EXPECT_EQ(reader_.ParseToDOM(folder_.Path()), Failure(104));
  EXPECT_EQ(reader_.GetXercesMessage(), "unable to read data from file");
  ExpectEmptyAndUsable(reader_);
}

struct Undecodable {
  const char* what;
  std::string bytes;
};

std::vector<Undecodable> UndecodableDocuments() {
  return {
      {"a byte that starts no character", "<a>\xC0\x80</a>"},
      {"a surrogate in UTF-8", "<a>\xED\xA0\x80</a>"},
      {"a five-byte sequence", "<a>\xF8\x88\x80\x80\x80</a>"},
      {"a character that breaks off", "<a>\xE2\x82</a>"},
      {"a character beyond Unicode", "<a>\xF4\x90\x80\x80</a>"},
      {"bad bytes far behind the beginning", "<a>" + std::string(200000, 'x') + "\xC0\x80</a>"},
      {"an encoding that nobody knows", "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?><a/>"},
      {"an external DTD that is missing", "<!DOCTYPE a SYSTEM 'file:///nonexistent/a.dtd'><a/>"},
      {"an external entity that is missing", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///nonexistent/e.xml'>]><a>&e;</a>"},
  };
}

TEST_F(ReadWrite, InputThatCannotBeDecodedOrOpenedIsAFailedParseWithTheLibrarysText) {
  for (const Undecodable& row : UndecodableDocuments()) {
    SCOPED_TRACE(row.what);
    ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
    EXPECT_EQ(ParseText(reader_, row.bytes), Failure(104));
    EXPECT_THAT(reader_.GetXercesMessage(), Not(IsEmpty()));
    ExpectEmptyAndUsable(reader_);
    EXPECT_EQ(reader_.ParseToDOM(WriteFile(File("bad.xml"), row.bytes)), Failure(104));
    EXPECT_THAT(reader_.GetXercesMessage(), Not(IsEmpty()));
    ExpectEmptyAndUsable(reader_);
  }
}

TEST_F(ReadWrite, MessageIsTheLibrarysTextAndNothingElse) {
  EXPECT_EQ(ParseText(reader_, "<?xml version=\"1.0\" encoding=\"no-such\"?><a/>"), Failure(104));
  EXPECT_EQ(reader_.GetXercesMessage(), "unable to create converter for 'NO-SUCH' encoding");
}

TEST_F(ReadWrite, MessageIsUtf8) {
  EXPECT_EQ(reader_.ParseToDOM(File("\xC3\xA4.xml")), Failure(104));
  EXPECT_THAT(reader_.GetXercesMessage(), HasSubstr("\xC3\xA4.xml"));
}

TEST_F(ReadWrite, FailedParseForgetsTheMessageOfTheOneBefore) {
  const rqtest::LeaksOfTheLibrary leaks;
  EXPECT_EQ(reader_.ParseToDOM(File("missing.xml")), Failure(104));
  EXPECT_EQ(reader_.ParseToDOM(folder_.Path()), Failure(104));
  EXPECT_THAT(reader_.GetXercesMessage(), Not(HasSubstr("missing.xml")));
}

/// Whether parsing `bytes` reads as a good document.
bool ReadsAsGood(RQXMLReadWrite& reader, const std::function<RQStatus()>& parse) {
  try {
    return parse().IsOK() && reader.GetDocument() != nullptr;
  } catch (const xercesc::SAXParseException&) {
    return false;
  }
}

TEST_F(ReadWrite, JunkBehindTheEndOfADocumentNeverReadsAsAGoodDocument) {
  const std::string gap(100000, ' ');
  const std::string tails[] = {std::string("\xFF"),
                               std::string("\xFF<b"),
                               std::string("\0", 1),
                               std::string("\0<b/>", 5),
                               std::string("\xC3"),
                               std::string("\xE2\x82"),
                               std::string("\n\xF0\x9F\x98"),
                               gap + "\xFF<b",
                               gap + std::string("\0<b/>", 5),
                               gap + "\xC3",
                               std::string("<!-- \xFF -->"),
                               std::string("\x1A")};
  for (const std::string& tail : tails) {
    const std::string bytes = "<a/>" + tail;
    EXPECT_FALSE(ReadsAsGood(reader_, [&] { return ParseText(reader_, bytes); })) << ::testing::PrintToString(tail);
    const std::string path = WriteFile(File("junk.xml"), bytes);
    EXPECT_FALSE(ReadsAsGood(reader_, [&] { return reader_.ParseToDOM(path); })) << ::testing::PrintToString(tail);
    EXPECT_EQ(reader_.GetDocument(), nullptr);
  }
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, JunkInsideADocumentNeverReadsAsAGoodDocument) {
  const std::string documents[] = {"<a>\xFF</a>",
                                   std::string("<a>\0</a>", 8),
                                   std::string("<a b='\0'/>", 10),
                                   "<a>" + std::string(100000, 'x') + "\xFF</a>",
                                   "<a b='\xC3'/>",
                                   std::string("<?xml version\0='1.0'?><a/>", 26),
                                   std::string("\xFF\xFE<\0a\0/\0>\0\0\0", 12)};
  for (const std::string& bytes : documents) {
    EXPECT_FALSE(ReadsAsGood(reader_, [&] { return ParseText(reader_, bytes); })) << ::testing::PrintToString(bytes);
    const std::string path = WriteFile(File("junk.xml"), bytes);
    EXPECT_FALSE(ReadsAsGood(reader_, [&] { return reader_.ParseToDOM(path); })) << ::testing::PrintToString(bytes);
  }
}

// Streams that fail.

TEST_F(ReadWrite, StreamThatGoesBadIsAFailedParse) {
  const std::string large = "<a>" + std::string(49152 - 7, 'x') + "</a>";
  ASSERT_EQ(large.size(), 49152U);
  const std::string beginnings[] = {
      "", "<", "<a><b/>", "<a/>", "<a/>\n", "<a>" + std::string(100000, 'x'), large, large + large.substr(0, 10)};
  for (const std::string& beginning : beginnings) {
    SCOPED_TRACE(beginning.substr(0, 20) + " of " + std::to_string(beginning.size()));
    ASSERT_EQ(ParseText(reader_, "<before/>"), Ok());
    FailingBuf buffer(beginning);
    std::istream stream(&buffer);
    EXPECT_EQ(reader_.ParseToDOM(stream), Failure(104));
    EXPECT_TRUE(stream.bad());
    ExpectEmptyAndUsable(reader_);
  }
}

TEST_F(ReadWrite, StreamThatIsBadFromTheBeginningIsAFailedParse) {
  std::istringstream stream("<a/>");
  stream.setstate(std::ios::badbit);
  EXPECT_EQ(reader_.ParseToDOM(stream), Failure(104));
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, StreamAtItsEndIsAnEmptyDocument) {
  std::istringstream stream("<a/>");
  ASSERT_EQ(reader_.ParseToDOM(stream), Ok());
  EXPECT_THROW(reader_.ParseToDOM(stream), xercesc::SAXParseException);
  ExpectEmptyAndUsable(reader_);
}

TEST_F(ReadWrite, ExceptionThatTheStreamIsSetToThrowPassesOut) {
  const rqtest::LeaksOfTheLibrary leaks;
  FailingBuf buffer("<a><b/>");
  std::istream stream(&buffer);
  stream.exceptions(std::ios::badbit);
  EXPECT_THROW(reader_.ParseToDOM(stream), rqtest::ReadFailure);
  ExpectEmptyAndUsable(reader_);

  std::istringstream ending("<a/>");
  ending.exceptions(std::ios::failbit);
  EXPECT_THROW(reader_.ParseToDOM(ending), std::ios_base::failure);
  ExpectEmptyAndUsable(reader_);
}

// Writing

TEST_F(ReadWrite, WritingNothingIsAQuietSuccess) {
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_FALSE(std::filesystem::exists(File("out.xml")));
  EXPECT_EQ(reader_.WriteFromDOM("/nonexistent/folder/out.xml", nullptr), Ok());
}

TEST_F(ReadWrite, WritingNothingLeavesAnExistingFileAndTheMessageAlone) {
  const std::string path = WriteFile(File("out.xml"), "kept");
  EXPECT_EQ(reader_.ParseToDOM(File("missing.xml")), Failure(104));
  const std::string message = reader_.GetXercesMessage();
  EXPECT_EQ(reader_.WriteFromDOM(path, nullptr), Ok());
  EXPECT_EQ(ReadFile(path), "kept");
  EXPECT_EQ(reader_.GetXercesMessage(), message);
}

TEST_F(ReadWrite, WritesTheHeldDocumentWhenNoneIsGiven) {
  ASSERT_EQ(ParseText(reader_, "<held/>"), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")), std::string(kDeclaration) + "<held/>");
}

TEST_F(ReadWrite, WritesTheGivenDocumentRatherThanTheHeldOne) {
  Document given("<given/>");
  ASSERT_EQ(ParseText(reader_, "<held/>"), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &given.Get()), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")), std::string(kDeclaration) + "<given/>");
  EXPECT_EQ(RootTag(reader_), "held");
}

TEST_F(ReadWrite, WritesAGivenDocumentWithoutHoldingOne) {
  Document given("<given/>");
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &given.Get()), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")), std::string(kDeclaration) + "<given/>");
  EXPECT_EQ(reader_.GetDocument(), nullptr);
}

TEST_F(ReadWrite, WritesThroughAConstantObject) {
  Document given("<given/>");
  const RQXMLReadWrite& constant = reader_;
  EXPECT_EQ(constant.WriteFromDOM(File("out.xml"), &given.Get()), Ok());
}

TEST_F(ReadWrite, WritesADocumentThatWasBuiltRatherThanParsed) {
  xercesc::DOMImplementation* const core = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
  xercesc::DOMDocument* const built = core->createDocument(nullptr, u"built", nullptr);
  built->getDocumentElement()->setAttribute(u"n", u"\u00E4<&\"\t\n\r\U0001F600");
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), built), Ok());
  built->release();
  EXPECT_EQ(ReadFile(File("out.xml")),
            std::string(kDeclaration) + "<built n=\"\xC3\xA4&lt;&amp;&quot;&#x9;&#xA;&#xD;\xF0\x9F\x98\x80\"/>");
}

TEST_F(ReadWrite, WritingReplacesALongerFile) {
  const std::string path = WriteFile(File("out.xml"), std::string(100000, 'x'));
  Document given("<given/>");
  EXPECT_EQ(reader_.WriteFromDOM(path, &given.Get()), Ok());
  EXPECT_EQ(ReadFile(path), std::string(kDeclaration) + "<given/>");
}

TEST_F(ReadWrite, WritesToAFileWhoseNameHasCharactersBeyondAscii) {
  Document given("<given/>");
  EXPECT_EQ(reader_.WriteFromDOM(File("gr\xC3\xB6\xC3\x9F"
                                      "e.xml"),
                                 &given.Get()),
            Ok());
  EXPECT_TRUE(
      std::filesystem::exists(File("gr\xC3\xB6\xC3\x9F"
                                   "e.xml")));
}

TEST_F(ReadWrite, MayOverwriteTheFileThatItWasParsedFrom) {
  const std::string path = WriteFile(File("a.xml"), "<a> <b/> </a>");
  ASSERT_EQ(reader_.ParseToDOM(path), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(path, nullptr), Ok());
  EXPECT_EQ(ReadFile(path), std::string(kDeclaration) + "<a> <b/> </a>");
}

TEST_F(ReadWrite, WrittenDocumentsAreNotIndentedAndKeepTheirBlanks) {
  const char* const bodies[] = {
      "<a><b><c/></b><b/></a>",
      "<a>\n  <b>\n\t<c/></b>  <b/>\n\n</a>",
      "<a><!-- comment --><?target data?><![CDATA[<raw>]]>text<b> </b></a>",
  };
  for (const char* const body : bodies) {
    ASSERT_EQ(ParseText(reader_, body), Ok());
    EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
    EXPECT_EQ(ReadFile(File("out.xml")), std::string(kDeclaration) + body);
  }
}

TEST_F(ReadWrite, WritingAgainWhatWasWrittenGivesTheSameBytes) {
  const char* const documents[] = {
      "<?xml version=\"1.0\"?>\n<!-- before -->\n<a b='1' a=\"2\">\r\n<b>&amp;&lt;\t\xC3\xA4</b><![CDATA[]]></a>\n",
      "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a d CDATA 'default'>]><a>&e;<b/>&e;</a>",
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a b='\xE4'>\xDF</a>",
      "<?xml version=\"1.1\"?><a>\xC3\xA4</a>",
  };
  for (const char* const document : documents) {
    ASSERT_EQ(ParseText(reader_, document), Ok());
    ASSERT_EQ(reader_.WriteFromDOM(File("first.xml"), nullptr), Ok());
    ASSERT_EQ(reader_.ParseToDOM(File("first.xml")), Ok()) << ReadFile(File("first.xml"));
    ASSERT_EQ(reader_.WriteFromDOM(File("second.xml"), nullptr), Ok());
    EXPECT_EQ(ReadFile(File("second.xml")), ReadFile(File("first.xml")));
  }
}

TEST_F(ReadWrite, WritesInTheEncodingOfTheParsedDocument) {
  ASSERT_EQ(ParseText(reader_, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE4\xDF</a>"), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")),
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"no\" ?><a>\xE4\xDF</a>");
}

TEST_F(ReadWrite, WritingEmptiesTheMessage) {
  Document given("<given/>");
  EXPECT_EQ(reader_.ParseToDOM(File("missing.xml")), Failure(104));
  ASSERT_THAT(reader_.GetXercesMessage(), Not(IsEmpty()));
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &given.Get()), Ok());
  EXPECT_EQ(reader_.GetXercesMessage(), "");
}

TEST_F(ReadWrite, TextThatXmlCannotCarryIsAFailedWriteWithoutMessage) {
  Document given("<given/>");
  given.Root().appendChild(given.Get().createTextNode(u"a\u0001b"));
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &given.Get()), Failure(118));
  EXPECT_EQ(reader_.GetXercesMessage(), "");
  Document good("<good/>");
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &good.Get()), Ok());
}

TEST_F(ReadWrite, FullDiskIsAFailedWriteOfSmallAndLargeDocuments) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  for (const std::size_t size : {1U, 4096U, 1000000U}) {
    Document given("<given>" + std::string(size, 'x') + "</given>");
    EXPECT_EQ(reader_.WriteFromDOM("/dev/full", &given.Get()), Failure(118)) << size;
    EXPECT_THAT(reader_.GetXercesMessage(), Not(IsEmpty())) << size;
    EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), &given.Get()), Ok()) << size;
    EXPECT_EQ(reader_.GetXercesMessage(), "") << size;
  }
}

TEST_F(ReadWrite, FileThatCannotBeOpenedForWritingPassesOutAsTheLibrarysException) {
  Document given("<given/>");
  ASSERT_EQ(ParseText(reader_, "<held/>"), Ok());
  EXPECT_THROW(reader_.WriteFromDOM(File("no/such/folder/out.xml"), &given.Get()), xercesc::XMLException);
  EXPECT_THROW(reader_.WriteFromDOM(folder_.Path(), nullptr), xercesc::XMLException);
  EXPECT_THROW(reader_.WriteFromDOM("", nullptr), xercesc::XMLException);
  EXPECT_EQ(reader_.GetXercesMessage(), "");
  EXPECT_EQ(RootTag(reader_), "held");
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")), std::string(kDeclaration) + "<held/>");
}

std::string Nested(std::size_t levels) {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) text += "<e>";
  for (std::size_t i = 0; i < levels; ++i) text += "</e>";
  return text;
}

TEST_F(ReadWrite, DocumentNestedTooDeepForTheWriterIsAFailedWrite) {
  ASSERT_EQ(ParseText(reader_, Nested(100000)), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Failure(118));
  ASSERT_EQ(ParseText(reader_, Nested(1000)), Ok());
  EXPECT_EQ(reader_.WriteFromDOM(File("out.xml"), nullptr), Ok());
  EXPECT_EQ(ReadFile(File("out.xml")).size(), std::string(kDeclaration).size() + Nested(1000).size() - 3);
}

TEST_F(ReadWrite, WriterKnowsTheSmallerStackOfAThread) {
  ASSERT_EQ(ParseText(reader_, Nested(30000)), Ok());
  struct Work {
    RQXMLReadWrite& reader;
    std::string path;
    RQStatus status;
  } work{reader_, File("out.xml"), Ok()};
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1024 * 1024), 0);
  pthread_t thread{};
  const auto run = [](void* argument) -> void* {
    auto& mine = *static_cast<Work*>(argument);
    mine.status = mine.reader.WriteFromDOM(mine.path, nullptr);
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(work.status, Failure(118));
}

}  // namespace
