#include "rqxml/xml/RQXMLUtil.h"

#include <algorithm>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "rqxml/common/RQXMLFormat.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"
#include "rqxml/xml/RQXText.h"

namespace RQXPrsUtil {

namespace {

/// What marks the "Extension" elements of this library.
constexpr char kOwnExtender[] = "rqxml.example";

/// A UTF-8 name as UTF-16 text, without an allocation for the short ASCII names that documents are made of.
class Name {
 public:
  explicit Name(const char* name) {
    std::size_t length = 0;
    for (; length < kRoom - 1 && name[length] != 0; ++length) {
      const auto byte = static_cast<unsigned char>(name[length]);
      if (byte >= 0x80) break;
      fShort[length] = byte;
    }
    fShort[length] = 0;
    if (name[length] != 0) fLong = ToUTF16(name);
  }

  const XMLCh* Get() const { return fLong.empty() ? fShort : fLong.data(); }

 private:
  static constexpr std::size_t kRoom = 48;
  XMLCh fShort[kRoom];
  std::vector<XMLCh> fLong;
};

auto Named(const char* tagName) {
  return [tagName](const xercesc::DOMElement& element) { return !tagName || TagNameEquals(element, tagName); };
}

/// Fits the "Extension" elements that carry this library's mark.
auto OwnExtension(const char* name) {
  return [name](const xercesc::DOMElement& element) {
    if (!HasTag(element, Names::kExtension)) return false;
    const XMLCh* const extender = AttributeOf(element, Names::kExtender);
    if (!extender || !XStrEqualsUTF8Str(extender, kOwnExtender)) return false;
    if (!name) return true;
    const XMLCh* const ownName = AttributeOf(element, Names::kName);
    return ownName && XStrEqualsUTF8Str(ownName, name);
  };
}

/// Runs a step that changes a document; false when the XML library refuses it.
template <class Step>
bool Accepted(Step step) {
  try {
    step();
    return true;
  } catch (const xercesc::DOMException&) {
    return false;
  }
}

constexpr std::u16string_view kDelimiters = u" \t\r\n";

bool ReadDoubles(std::u16string_view text, std::vector<double>& values) {
  std::size_t start = text.find_first_not_of(kDelimiters);
  while (start != std::u16string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(kDelimiters, start), text.size());
    double value = 0;
    if (!ReadDouble(text.substr(start, end - start), value)) return false;
    values.push_back(value);
    start = text.find_first_not_of(kDelimiters, end);
  }
  return true;
}

}  // namespace

const xercesc::DOMElement* AsElement(const xercesc::DOMNode& node, const char* tagName) {
  if (node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return nullptr;
  const auto& element = static_cast<const xercesc::DOMElement&>(node);
  return Named(tagName)(element) ? &element : nullptr;
}

bool TagNameEquals(const xercesc::DOMElement& element, const char* tagName) {
  return XStrEqualsUTF8Str(element.getTagName(), tagName);
}

const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node, const char* tagName) {
  return FindElement(node.getFirstChild(), Named(tagName));
}

const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node,
                                             const std::pair<unsigned int, const char*>* const table,
                                             std::size_t& index) {
  index = 0;
  for (std::size_t i = 0; table[i].second; ++i) {
    if (const xercesc::DOMElement* const child = GetFirstChildElmt(node, table[i].second)) {
      index = i;
      return child;
    }
  }
  return nullptr;
}

const xercesc::DOMElement* GetNextSiblingElmt(const xercesc::DOMNode& node, const char* tagName) {
  return FindElement(node.getNextSibling(), Named(tagName));
}

const xercesc::DOMElement* GetFirstChildExtension(const xercesc::DOMNode& node, const char* name) {
  return FindElement(node.getFirstChild(), OwnExtension(name));
}

const xercesc::DOMElement* GetNextSiblingExtension(const xercesc::DOMNode& node, const char* name) {
  return FindElement(node.getNextSibling(), OwnExtension(name));
}

const XMLCh* GetAttribute(const xercesc::DOMElement& element, const char* name) {
  return AttributeOf(element, Name(name).Get());
}

const XMLCh* GetAttribute(const xercesc::DOMNode& node, const char* name) {
  const xercesc::DOMElement* const element = AsElement(node, nullptr);
  return element ? GetAttribute(*element, name) : nullptr;
}

int GetIntAttribute(const xercesc::DOMElement& element, const char* name, int sign, int& value) {
  const XMLCh* const text = GetAttribute(element, name);
  if (!text) return -1;
  if (!ReadInteger(text, value)) return 1;
  if (sign < 0) return 0;
  return value >= (sign == 0 ? 0 : 1) ? 0 : 1;
}

int GetDoubleAttribute(const xercesc::DOMElement& element, const char* name, double& value) {
  switch (ReadDoubleAttribute(element, Name(name).Get(), value)) {
    case RQXNumberAttribute::Absent:
      return -1;
    case RQXNumberAttribute::Bad:
      return 1;
    case RQXNumberAttribute::Good:
      break;
  }
  return 0;
}

bool AssembleDoublesList(const xercesc::DOMElement& element, std::vector<double>& values) {
  const xercesc::DOMNode* const child = element.getFirstChild();
  if (!child) {
    values.clear();
    return true;
  }
  if (child->getNextSibling() || child->getNodeType() != xercesc::DOMNode::TEXT_NODE) return false;
  values.clear();
  if (ReadDoubles(AsView(child->getNodeValue()), values)) return true;
  values.clear();
  return false;
}

int FindXStrInList(const XMLCh* string, const std::pair<unsigned int, const char*>* const table) {
  for (int i = 0; table[i].second; ++i) {
    if (XStrEqualsUTF8Str(string, table[i].second)) return i;
  }
  return -1;
}

int FindXStrInList(const XMLCh* string, const std::vector<std::string>& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (XStrEqualsUTF8Str(string, list[i].c_str())) return static_cast<int>(i);
  }
  return -1;
}

xercesc::DOMElement* CreateElement(xercesc::DOMDocument& document, const char* tagName) {
  xercesc::DOMElement* element = nullptr;
  return Accepted([&] { element = document.createElement(Name(tagName).Get()); }) ? element : nullptr;
}

xercesc::DOMElement* CreateExtension(xercesc::DOMDocument& document, const char* name) {
  xercesc::DOMElement* const element = CreateElement(document, "Extension");
  if (!element) return nullptr;
  if (SetAttribute(*element, "extender", kOwnExtender) && SetAttribute(*element, "name", name)) {
    return element;
  }
  element->release();
  return nullptr;
}

bool ReplaceElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild, xercesc::DOMElement* oldChild) {
  return Accepted([&] { parent.replaceChild(newChild, oldChild); });
}

bool InsertElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild, xercesc::DOMElement* refChild) {
  return Accepted([&] { parent.insertBefore(newChild, refChild); });
}

bool SetAttribute(xercesc::DOMElement& element, const char* name, const char* value) {
  return Accepted([&] { element.setAttribute(Name(name).Get(), ToUTF16(value).data()); });
}

bool SetAttribute(xercesc::DOMElement& element, const char* name, double value) {
  return SetAttribute(element, name, RQXML_NAMESPACE::Format(value, false, nullptr).c_str());
}

}  // namespace RQXPrsUtil
