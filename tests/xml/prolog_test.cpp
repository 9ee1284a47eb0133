#include "rqxml/xml/RQXProlog.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "rqxml/xml/RQXDomParser.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/platform.h"

namespace {

using RQXPrsUtil::RQXDomParser;
using RQXPrsUtil::ShowsNoDoctype;
using RQXPrsUtil::ToUTF8;

TEST(Prolog, ShowsThatThereIsNoDocumentTypeBeforeTheDocumentElement) {
  for (const std::string_view text :
       {"<a", "<PMML version='4.4'>", "<_/>", " \t\r\n<a/>", "\xEF\xBB\xBF<a/>", "<!-- <!DOCTYPE a> --><a/>",
        "<?target <!DOCTYPE a> ?><!-- - -- -> --><a/>", "<?xml version='1.0'?><a/>",
        "<?xml version='1.0' standalone='yes'?>\n<a/>", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>",
        "<?xml version='1.0' encoding = 'utf-8' ?><a/>", "<?xml version='1.0' encoding='iso-8859-1'?><a/>",
        "<?xml version='1.0' encoding='windows-1252'?><a/>", "<a><!DOCTYPE a></a>"}) {
    EXPECT_TRUE(ShowsNoDoctype(text)) << text;
  }
}

TEST(Prolog, IsInDoubtAboutEverythingElse) {
  for (const std::string_view text : {"",
                                      " ",
                                      "<",
                                      "a",
                                      "<!DOCTYPE a><a/>",
                                      " <!DOCTYPE a><a/>",
                                      "<!doctype a><a/>",
                                      "<!-- --><!DOCTYPE a><a/>",
                                      "<?target?><!DOCTYPE a><a/>",
                                      "<?xml version='1.0'?><!DOCTYPE a><a/>",
                                      "<!--",
                                      "<!-- ",
                                      "<?target",
                                      "<?xml",
                                      "<?xml version='1.0' encoding='UTF-8'",
                                      "<?xml version='1.0' encoding='UTF-7'?><a/>",
                                      "<?xml version='1.0' encoding='UTF-16'?><a/>",
                                      "<?xml version='1.0' encoding='IBM037'?><a/>",
                                      "<?xml version='1.0' encoding=''?><a/>",
                                      "<?xml version='1.0' encoding=?><a/>",
                                      "<?xml encoding?><a/>",
                                      "<?xml version='1.0' encoding='UTF-8 ?><a/>",
                                      "\xFE\xFF",
                                      "\xFF\xFE<",
                                      "<1/>",
                                      "</a>",
                                      "< a>",
                                      "&lt;",
                                      "<![CDATA[]]>",
                                      "<\xC3\xA4/>",
                                      "\xC2\x85<a/>",
                                      "x<a/>"}) {
    EXPECT_FALSE(ShowsNoDoctype(text)) << text;
  }
  EXPECT_FALSE(ShowsNoDoctype(std::string_view("\0<\0a", 4)));
  EXPECT_FALSE(ShowsNoDoctype(std::string_view("<\0a\0", 4)));
}

/// The library's parser as it comes, made to tell its first fatal error and whether reading the input failed.
class DefaultParser final : public xercesc::XercesDOMParser {
 public:
  DefaultParser() { getScanner()->setErrorReporter(this); }

  bool HasFailed() const { return failed_; }

  void error(const unsigned int, const XMLCh* const domain, const ErrTypes type, const XMLCh* const text,
             const XMLCh* const systemId, const XMLCh* const publicId, const XMLFileLoc line,
             const XMLFileLoc column) override {
    if (type != ErrType_Fatal) return;
    failed_ = xercesc::XMLString::equals(domain, xercesc::XMLUni::fgExceptDomain);
    if (!failed_) throw xercesc::SAXParseException(text, publicId, systemId, line, column);
  }

 private:
  bool failed_ = false;
};

void Describe(const xercesc::DOMNode& node, std::string& text) {
  text += std::to_string(node.getNodeType()) + ' ' + ToUTF8(node.getNodeName()) + " [" +
          (node.getNodeValue() ? ToUTF8(node.getNodeValue()) : "") + "]\n";
  const xercesc::DOMNamedNodeMap* const attributes = node.getAttributes();
  for (XMLSize_t i = 0; attributes && i < attributes->getLength(); ++i) {
    Describe(*attributes->item(i), text);
    if (!static_cast<const xercesc::DOMAttr*>(attributes->item(i))->getSpecified()) text += "default\n";
  }
  for (auto* child = node.getFirstChild(); child; child = child->getNextSibling()) Describe(*child, text);
  text += "/\n";
}

std::string Describe(const xercesc::DOMDocument* document) {
  if (!document) return "no document";
  std::string text;
  for (const XMLCh* property : {document->getXmlVersion(), document->getXmlEncoding(), document->getInputEncoding()}) {
    text += (property ? ToUTF8(property) : "-") + '\n';
  }
  text += document->getXmlStandalone() ? "standalone\n" : "";
  Describe(*document, text);
  return text;
}

/// The tree, or the error with its place.
template <class Parse>
std::string Outcome(Parse parse) {
  try {
    return parse();
  } catch (const xercesc::SAXParseException& e) {
    return ToUTF8(e.getMessage()) + ' ' + std::to_string(e.getLineNumber()) + ':' + std::to_string(e.getColumnNumber());
  }
}

std::string OutcomeOfDefault(const std::string& text) {
  return Outcome([&text] {
    DefaultParser parser;
    parser.parse(xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(), u""));
    return Describe(parser.HasFailed() ? nullptr : parser.getDocument());
  });
}

std::string OutcomeOfOurs(const std::string& text) {
  return Outcome([&text] {
    RQXDomParser parser;
    std::istringstream stream(text);
    return Describe(parser.ParseStream(stream).document);
  });
}

class Scanner : public rqtest::WithPlatform {};

TEST_F(Scanner, BuildsTheTreeOfTheLibrarysDefaultScanner) {
  for (const std::string text :
       {"<a/>", "<?xml version='1.0' standalone='yes'?><a b='1' a=\"2\"/>", "<?xml version='1.1'?><a>\xC2\x85</a>",
        "<a xmlns='u' xmlns:p='v'><p:b p:c='1'/></a>", "<a b=' x\t\r\ny &lt;&#65;&#x1F600;&amp; '>&gt;&apos;</a>",
        "<a> <![CDATA[<&]]]]> text <!-- c --> <?t d?> <b/>\r\n</a> <!-- end --> <?t?>\n",
        "<!-- first --><a xml:space='preserve' xml:lang='de' id='x'> </a>", "<\xC3\xA4/>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE4'>\xFC</a>"}) {
    EXPECT_EQ(OutcomeOfOurs(text), OutcomeOfDefault(text)) << text;
  }
}

TEST_F(Scanner, FindsTheErrorsOfTheLibrarysDefaultScannerAtTheSamePlace) {
  for (const std::string text : {"<a>&x;</a>",
                                 "<a b='&x;'/>",
                                 "<?xml version='1.0' standalone='yes'?><a>&x;</a>",
                                 "<a b='1' b='2'/>",
                                 "<a b='1'c='2'/>",
                                 "<a b=1/>",
                                 "<a b/>",
                                 "<a b='<'/>",
                                 "<a>]]></a>",
                                 "<a></b>",
                                 "<a><b></a>",
                                 "</a>",
                                 "<a/><b/>",
                                 "<a/>x",
                                 "<a/><!DOCTYPE a>",
                                 "<a><!DOCTYPE a></a>",
                                 "<a>&#0;</a>",
                                 "<a>&#xD800;</a>",
                                 "<a>\x01</a>",
                                 "<a>&</a>",
                                 "<a>&;</a>",
                                 "<a><!-- -- --></a>",
                                 "<a><?xml version='1.0'?></a>",
                                 "<a><![CDATA[</a>",
                                 "<a><1/></a>",
                                 "<a:b:c/>",
                                 "<a :b='1'/>",
                                 "<a>\n\n  <b>\n  </c>\n</a>",
                                 "<a",
                                 "<a b",
                                 "<a b=",
                                 "<a b='",
                                 "<a><!-",
                                 "<a><?t"}) {
    EXPECT_EQ(OutcomeOfOurs(text), OutcomeOfDefault(text)) << text;
  }
}

TEST_F(Scanner, TakesOneDocumentAfterTheOtherWithAndWithoutADocumentType) {
  RQXDomParser parser;
  const std::string with = "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a d CDATA 'default'>]><a>&e;</a>";
  const std::string without = "<a>text</a>";
  for (const std::string& text : {without, with, without, without, with}) {
    std::istringstream stream(text);
    EXPECT_EQ(Describe(parser.ParseStream(stream).document), OutcomeOfDefault(text)) << text;
  }
}

TEST_F(Scanner, ForgetsTheNamesOfEarlierDocuments) {
  RQXDomParser parser;
  for (int parse = 0; parse < 3; ++parse) {
    std::string text = "<a>";
    for (int i = 0; i < 5'000; ++i) text += "<e" + std::to_string(parse) + '_' + std::to_string(i) + "/>";
    std::istringstream stream(text + "</a>");
    EXPECT_TRUE(parser.ParseStream(stream).status.IsOK()) << parse;
  }
}

}  // namespace
