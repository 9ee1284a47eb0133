#include "SplitDocument.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "Document.h"
#include "Failure.h"
#include "NodeWalk.h"
#include "Writable.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using RQXPrsUtil::AsElement;
using RQXPrsUtil::GetAttribute;
using RQXPrsUtil::GetFirstChildElmt;
using RQXPrsUtil::GetNextSiblingElmt;
using RQXPrsUtil::ToUTF8;
using xercesc::DOMElement;

// The models that can be combined, in the order in which one is chosen where a document has several.
constexpr std::array kModels{
    "MiningModel",   "AssociationModel", "ClusteringModel", "GeneralRegressionModel", "NaiveBayesModel",
    "NeuralNetwork", "RegressionModel",  "RuleSetModel",    "SequenceModel",          "SupportVectorMachineModel",
    "TextModel",     "TimeSeriesModel",  "TreeModel"};

std::optional<std::string> Attribute(const DOMElement& element, const char* name) {
  const XMLCh* const value = GetAttribute(element, name);
  if (value == nullptr) return std::nullopt;
  return ToUTF8(value);
}

// Calls `use` with each element below `top` that is named `tagName`. The list is live: it is asked for once.
template <typename Use>
void ForEachBelow(const DOMElement& top, const XMLCh* tagName, Use use) {
  const xercesc::DOMNodeList& list = *top.getElementsByTagName(tagName);
  for (XMLSize_t i = 0; const xercesc::DOMNode* const node = list.item(i); ++i) {
    if (const DOMElement* const element = AsElement(*node, nullptr)) use(*element);
  }
}

SourceField ReadField(const DOMElement& element) {
  const std::optional<std::string> name = Attribute(element, "name");
  SourceField field{.name = name.value_or(""),
                    .named = name.has_value(),
                    .optype = Attribute(element, "optype").value_or(""),
                    .dataType = Attribute(element, "dataType").value_or("")};
  ForEachBelow(element, u"Value", [&field](const DOMElement& value) {
    if (auto text = Attribute(value, "value")) field.values.push_back(std::move(*text));
  });
  return field;
}

constexpr std::u16string_view kXmlns = u"xmlns";

// Calls `use` with the name and the text of each attribute.
template <typename Use>
void ForEachAttribute(const xercesc::DOMNode& element, Use use) {
  const xercesc::DOMNamedNodeMap* const attributes = element.getAttributes();
  for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i) {
    const xercesc::DOMNode& attribute = *attributes->item(i);
    use(std::u16string_view(attribute.getNodeName()), attribute.getNodeValue());
  }
}

void ReadNamespaces(const DOMElement& pmml, SplitDocument& document) {
  ForEachAttribute(pmml, [&document](std::u16string_view name, const XMLCh* text) {
    const bool declaration = name == kXmlns || name.substr(0, kXmlns.size() + 1) == u"xmlns:";
    if (declaration) document.namespaces.emplace(ToUTF8(name.data()), ToUTF8(text));
  });
  document.namespaces.emplace("xmlns", "");
}

// What stands before the colon; empty without one. A declaration uses no namespace.
std::u16string_view PrefixOf(std::u16string_view name) {
  const std::size_t colon = name.find(u':');
  const std::u16string_view prefix = name.substr(0, colon == std::u16string_view::npos ? 0 : colon);
  return prefix == kXmlns ? std::u16string_view() : prefix;
}

void GatherPrefixes(const DOMElement* top, std::set<std::u16string_view>& prefixes) {
  if (top == nullptr) return;
  WalkNodes(*top, [&prefixes](const xercesc::DOMNode& node, std::size_t) {
    if (node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return true;
    prefixes.insert(PrefixOf(node.getNodeName()));
    ForEachAttribute(node, [&prefixes](std::u16string_view name, const XMLCh*) { prefixes.insert(PrefixOf(name)); });
    return true;
  });
}

void ReadUsedNamespaces(const DOMElement& pmml, const DOMElement* model, SplitDocument& document) {
  std::set<std::u16string_view> prefixes;
  for (const char* const part : {"DataDictionary", "TransformationDictionary"}) {
    GatherPrefixes(GetFirstChildElmt(pmml, part), prefixes);
  }
  GatherPrefixes(model, prefixes);
  for (const auto& [declaration, address] : document.namespaces) {
    const bool used = std::any_of(prefixes.begin(), prefixes.end(), [&name = declaration](std::u16string_view prefix) {
      return name == (prefix.empty() ? "xmlns" : "xmlns:" + ToUTF8(std::u16string(prefix).c_str()));
    });
    if (used) document.usedNamespaces.push_back(declaration);
  }
}

// Only its "DerivedField" elements are taken over.
void ReadFunctions(const DOMElement& pmml, SplitDocument& document) {
  const DOMElement* const dictionary = GetFirstChildElmt(pmml, "TransformationDictionary");
  if (dictionary == nullptr) return;
  document.hasTransformations = true;
  const DOMElement* function = GetFirstChildElmt(*dictionary, "DefineFunction");
  for (; function != nullptr; function = GetNextSiblingElmt(*function, "DefineFunction")) {
    document.functions.push_back(Attribute(*function, "name").value_or(""));
  }
}

void ReadDictionary(const DOMElement& pmml, SplitDocument& document) {
  const DOMElement* const dictionary = GetFirstChildElmt(pmml, "DataDictionary");
  if (dictionary == nullptr) return;
  document.hasDictionary = true;
  document.numberOfFields = Attribute(*dictionary, "numberOfFields");
  ForEachBelow(*dictionary, u"DataField",
               [&document](const DOMElement& field) { document.fields.push_back(ReadField(field)); });
}

const DOMElement* FindModel(const DOMElement& pmml, SplitDocument& document) {
  const DOMElement* chosen = nullptr;
  for (const char* const name : kModels) {
    const DOMElement* model = GetFirstChildElmt(pmml, name);
    for (; model != nullptr; model = GetNextSiblingElmt(*model, name)) {
      if (chosen == nullptr) {
        chosen = model;
        document.model = name;
      } else {
        document.otherModels.emplace_back(name);
      }
    }
  }
  return chosen;
}

void ReadSchema(const DOMElement& model, SplitDocument& document) {
  const DOMElement* const schema = GetFirstChildElmt(model, "MiningSchema");
  if (schema == nullptr) return;
  document.hasSchema = true;
  const DOMElement* field = GetFirstChildElmt(*schema, "MiningField");
  for (; field != nullptr; field = GetNextSiblingElmt(*field, "MiningField")) {
    if (auto name = Attribute(*field, "name")) document.miningFields.push_back(std::move(*name));
  }
}

void RequireWritable(const InputFile& input, const xercesc::DOMDocument& document) {
  const std::string why = WhyNotWritable(document);
  if (why.empty()) return;
  throw Failure(ExitCode::Refused,
                {.file = input.GetDisplayName(),
                 .what = why,
                 .hint = "the combined document, an XML 1.0 document, could not be written with it"});
}

}  // namespace

SplitDocument ReadSplitDocument(InputFile& input) {
  RQXPrsUtil::RQXMLReadWrite reader;
  ReadTree(input, reader);
  const DOMElement* const pmml = GetFirstChildElmt(*reader.GetDocument(), nullptr);
  if (pmml == nullptr || !RQXPrsUtil::TagNameEquals(*pmml, "PMML")) throw NoPmmlDocument(input);
  RequireWritable(input, *reader.GetDocument());

  SplitDocument document;
  document.hasHeader = GetFirstChildElmt(*pmml, "Header") != nullptr;
  document.version = Attribute(*pmml, "version").value_or("");
  ReadNamespaces(*pmml, document);
  ReadFunctions(*pmml, document);
  ReadDictionary(*pmml, document);
  const DOMElement* const model = FindModel(*pmml, document);
  ReadUsedNamespaces(*pmml, model, document);
  if (model == nullptr) return document;
  document.functionName = Attribute(*model, "functionName");
  document.algorithmName = Attribute(*model, "algorithmName").value_or("");
  document.hasLocalTransformations = GetFirstChildElmt(*model, "LocalTransformations") != nullptr;
  ReadSchema(*model, document);
  return document;
}

}  // namespace rqtool
