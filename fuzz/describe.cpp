#include "describe.h"

#include <array>
#include <cstdio>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "reference_text.h"

namespace rqxml_fuzz {
namespace {

using RQMTD_NAMESPACE::RQEncoder;
using RQMTD_NAMESPACE::RQVariable;
using xercesc::DOMNode;

// A text with its length, so that no two different lists of texts look alike.
std::string Quoted(const std::string& text) { return std::to_string(text.size()) + ":" + text; }

template <class List, class Print>
std::string Listed(const char* title, const List& list, Print print) {
  std::string text = std::string(" ") + title + "[";
  for (const auto& entry : list) text += print(entry) + " ";
  return text + "]";
}

std::string DescribeNumber(double number) { return Describe(number); }

std::string DescribeEncoder(const RQEncoder& encoder) {
  std::string text = Listed("bins", encoder.GetBinLabels(), Quoted);
  text += Listed("numMissing", encoder.GetNumMissingValues(),
                 [](const auto& entry) { return Describe(entry.first) + "=" + Quoted(entry.second); });
  text += Listed("strMissing", encoder.GetStrMissingValues(),
                 [](const auto& entry) { return Quoted(entry.first) + "=" + Quoted(entry.second); });
  if (encoder.HasInvalidRange())
    text += " invalid " + Describe(encoder.GetInvalidLower()) + ".." + Describe(encoder.GetInvalidUpper());
  return text;
}

std::string DescribeVariable(const RQVariable& variable) {
  std::string text = Quoted(variable.GetName()) + " " + Quoted(variable.GetLabel());
  text += " type " + std::to_string(variable.GetTypeCode()) + " role " + std::to_string(variable.GetRole());
  text += " storage " + std::to_string(variable.GetStorageType());
  if (variable.HasRange()) text += " range " + Describe(variable.GetMinimum()) + ".." + Describe(variable.GetMaximum());
  text += Listed("cuts", variable.GetCutPoints(), DescribeNumber);
  text += Listed("numbers", variable.GetNumericValues(), DescribeNumber);
  text += Listed("strings", variable.GetStringValues(), Quoted);
  text += Listed("labels", variable.GetLabels(), Quoted);
  text += variable.GetFlag() ? " flagged " : " plain ";
  text += std::to_string(variable.GetCount());
  return text + DescribeEncoder(variable.GetEncoder());
}

std::string DescribeNode(const DOMNode& node) {
  std::string text = std::to_string(node.getNodeType()) + " " + Quoted(SlowUTF8(node.getNodeName()));
  if (node.getNodeValue() != nullptr) text += " = " + Quoted(SlowUTF8(node.getNodeValue()));
  const xercesc::DOMNamedNodeMap* attributes = node.getAttributes();
  const XMLSize_t count = attributes == nullptr ? 0 : attributes->getLength();
  for (XMLSize_t i = 0; i < count; ++i) {
    const DOMNode* attribute = attributes->item(i);
    text += " @" + Quoted(SlowUTF8(attribute->getNodeName())) + "=" + Quoted(SlowUTF8(attribute->getNodeValue()));
  }
  return text + "\n";
}

// The next node in document order, the depth kept up to date; null behind the tree of `top`.
const DOMNode* Next(const DOMNode* node, const DOMNode* top, std::size_t& depth) {
  if (node->getFirstChild() != nullptr) {
    ++depth;
    return node->getFirstChild();
  }
  while (node != top) {
    if (node->getNextSibling() != nullptr) return node->getNextSibling();
    node = node->getParentNode();
    --depth;
  }
  return nullptr;
}

}  // namespace

std::string Describe(double number) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%a", number);
  return text.data();
}

std::string Describe(const RQCommon::RQStatus& status) {
  return std::to_string(status.GetCode()) + (status.GetFlag() ? " flagged" : "");
}

std::string Describe(const RQMTD_NAMESPACE::RQVarList& vars) {
  std::string text = std::to_string(vars.Size()) + " variables\n";
  for (int i = 0; i < vars.Size(); ++i) text += DescribeVariable(*vars.GetVariable(i)) + "\n";
  return text;
}

std::string DescribeTree(const DOMNode* node) {
  std::string text;
  std::size_t depth = 0;
  for (const DOMNode* at = node; at != nullptr; at = Next(at, node, depth))
    text += std::to_string(depth) + " " + DescribeNode(*at);
  return text;
}

Ending RunParse(const std::function<RQCommon::RQStatus()>& parse) {
  Ending ending;
  try {
    ending.status = parse();
  } catch (const xercesc::SAXParseException& e) {
    ending.threw = true;
    ending.text = "not well-formed at " + std::to_string(e.getLineNumber()) + ":" +
                  std::to_string(e.getColumnNumber()) + ": " + SlowUTF8(e.getMessage());
  } catch (const xercesc::DOMException& e) {
    ending.threw = true;
    ending.text = "DOM exception " + std::to_string(e.code);
  }
  return ending;
}

std::string Describe(const Ending& ending) { return ending.threw ? ending.text : "status " + Describe(ending.status); }

}  // namespace rqxml_fuzz
