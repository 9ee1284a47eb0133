#include "Writable.h"

#include <cstddef>
#include <cstdio>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>

#include "NodeWalk.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using RQXPrsUtil::ToUTF8;
using xercesc::DOMNode;

// The XML library writes by recursion; this many levels fit any usual stack, and no model comes near them.
constexpr std::size_t kDeepest = 10'000;

// What of a text XML 1.0 has no place for; XML 1.1 has, as references. Surrogates come in pairs here.
std::string WhyBadText(const XMLCh* text) {
  for (; text != nullptr && *text != 0; ++text) {
    if (*text >= 0x20 || *text == u'\t' || *text == u'\n' || *text == u'\r') continue;
    char code[16];
    std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(*text));
    return std::string("holds the character ") + code + ", which only XML 1.1 can";
  }
  return {};
}

std::string WhyBadName(const XMLCh* name) {
  if (xercesc::XMLChar1_0::isValidName(name, xercesc::XMLString::stringLen(name))) return {};
  return "uses the name \"" + ToUTF8(name) + "\", which only XML 1.1 can";
}

std::string WhyBadAttributes(const DOMNode& element) {
  const xercesc::DOMNamedNodeMap* const attributes = element.getAttributes();
  std::string why;
  for (XMLSize_t i = 0; attributes != nullptr && why.empty() && i < attributes->getLength(); ++i) {
    const DOMNode& attribute = *attributes->item(i);
    why = WhyBadName(attribute.getNodeName());
    if (why.empty()) why = WhyBadText(attribute.getNodeValue());
  }
  return why;
}

std::string WhyNotXml10(const DOMNode& node) {
  if (node.getNodeType() != DOMNode::ELEMENT_NODE) return WhyBadText(node.getNodeValue());
  const std::string why = WhyBadName(node.getNodeName());
  return why.empty() ? WhyBadAttributes(node) : why;
}

}  // namespace

std::string WhyNotWritable(const xercesc::DOMDocument& document) {
  const bool later = xercesc::XMLString::equals(document.getXmlVersion(), u"1.1");
  std::string why;
  WalkNodes(document, [&](const DOMNode& node, std::size_t depth) {
    if (depth > kDeepest) why = "is nested more than " + std::to_string(kDeepest) + " levels deep";
    if (later && why.empty()) why = WhyNotXml10(node);
    return why.empty();
  });
  return why;
}

}  // namespace rqtool
