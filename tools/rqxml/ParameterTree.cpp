#include "ParameterTree.h"

#include <array>
#include <cstddef>
#include <set>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "Failure.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;
namespace xml = RQXPrsUtil;
using Kind = ParameterNode::Kind;

// Deeper trees are no settings of anything, and a tree for people gets too wide.
constexpr std::size_t kDeepest = 100;
// A look-up passes over what stands before the parameter in its scope. So many steps take a few seconds.
constexpr std::size_t kMostSteps = 50'000'000;

constexpr std::array kTags{std::pair{Kind::Parameter, "Parameter"}, std::pair{Kind::Complex, "ComplexParameter"},
                           std::pair{Kind::Matrix, "MatrixParmeter"}};

const char* TagOf(Kind kind) {
  for (const auto& [known, tag] : kTags) {
    if (known == kind) return tag;
  }
  return "";
}

std::optional<Kind> KindOf(const DOMElement& element) {
  for (const auto& [kind, tag] : kTags) {
    if (xml::TagNameEquals(element, tag)) return kind;
  }
  return std::nullopt;
}

class TreeReader {
 public:
  TreeReader(const InputFile& input, DocumentParser& parser) : fInput(input), fParser(parser) {}

  std::vector<ParameterNode> Read(const DOMElement& scope, void* handle, std::size_t depth) {
    if (depth > kDeepest) throw TooMuch("complex parameters are nested more than 100 deep");
    CountSteps(scope);
    std::vector<ParameterNode> nodes;
    std::set<std::pair<Kind, std::string>> seen;
    for (const DOMElement* element = xml::GetFirstChildElmt(scope, nullptr); element != nullptr;
         element = xml::GetNextSiblingElmt(*element, nullptr)) {
      const std::optional<Kind> kind = KindOf(*element);
      if (!kind) continue;
      ParameterNode node{.kind = *kind, .name = Attribute(*element, "name")};
      node.hidden = !node.name || !seen.emplace(*kind, *node.name).second;
      Fill(node, *element, handle, depth);
      nodes.push_back(std::move(node));
    }
    return nodes;
  }

 private:
  Failure TooMuch(const std::string& what) const {
    return Failure(ExitCode::Refused, {.file = fInput.GetDisplayName(),
                                       .what = what,
                                       .hint = "rqxml get reads single parameters also of such a document"});
  }

  // Counts what it takes to look up each element below `scope`: before the first look-up, so that it is told at once.
  void CountSteps(const DOMElement& scope) {
    std::size_t position = 0;
    for (const DOMElement* element = xml::GetFirstChildElmt(scope, nullptr); element != nullptr;
         element = xml::GetNextSiblingElmt(*element, nullptr)) {
      fSteps += ++position;
    }
    if (fSteps > kMostSteps) throw TooMuch("too many parameters stand in one scope to look each up by its name");
  }

  void Fill(ParameterNode& node, const DOMElement& element, void* scope, std::size_t depth) {
    switch (node.kind) {
      case Kind::Parameter:
        FillParameter(node, element, scope);
        break;
      case Kind::Matrix:
        if (!node.hidden) node.reading = ReadParameter(fParser, *node.name, scope, ReadAs::Matrix, {});
        break;
      case Kind::Complex:
        if (node.hidden) break;
        node.children = Read(element, fParser.GetComplexParameter(node.name->c_str(), scope), depth + 1);
        break;
    }
  }

  void FillParameter(ParameterNode& node, const DOMElement& element, void* scope) {
    node.type = Attribute(element, "type");
    node.isList = xml::GetFirstChildElmt(element, "ListValue") != nullptr;
    node.written = Attribute(element, "value").value_or("");
    if (node.hidden) return;
    const auto type = TypeOf(node.type.value_or(""));
    node.reading = ReadParameter(fParser, *node.name, scope, node.isList ? ReadAs::Array : ScalarOf(type), type);
  }

  const InputFile& fInput;
  DocumentParser& fParser;
  std::size_t fSteps = 0;
};

}  // namespace

Scope TopScope(const Document& document) {
  const DOMElement* element = document.parser->GetBuildTask();
  for (const char* const tag : {"Extension", "Parameters"}) {
    if (element != nullptr) element = xml::GetFirstChildElmt(*element, tag);
  }
  return {.element = element};
}

const DOMElement* FindInScope(const Scope& scope, Kind kind, const std::string& name) {
  const char* const tag = TagOf(kind);
  const DOMElement* element = xml::GetFirstChildElmt(*scope.element, tag);
  for (; element != nullptr; element = xml::GetNextSiblingElmt(*element, tag)) {
    const XMLCh* const own = xml::GetAttribute(*element, "name");
    if (own != nullptr && xml::XStrEqualsUTF8Str(own, name.c_str())) return element;
  }
  return nullptr;
}

std::vector<ParameterNode> ReadParameterTree(const InputFile& input, const Document& document, const Scope& scope) {
  return TreeReader(input, *document.parser).Read(*scope.element, scope.handle, 1);
}

}  // namespace rqtool
