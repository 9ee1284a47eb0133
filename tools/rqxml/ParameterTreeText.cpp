#include <cstddef>
#include <string>

#include "DisplayText.h"
#include "ParameterTree.h"
#include "ValueText.h"

namespace rqtool {

namespace {

constexpr std::size_t kStep = 2;

std::string NotRead(const ParameterNode& node) {
  const std::string what = node.written.empty() || node.isList ? "" : '"' + Printable(node.written) + "\" is ";
  return ": " + what + "not read (status " + std::to_string(node.reading.status.GetCode()) + ')';
}

std::string ParameterText(const ParameterNode& node) {
  if (!node.reading.status.IsOK()) return NotRead(node);
  return " = " + ValueLines(node.reading.value).front();
}

std::string Start(const ParameterNode& node) {
  std::string text = node.name ? ItemText(*node.name) : "(without name)";
  if (node.type) text += " (" + Printable(*node.type) + ')';
  return text;
}

std::string HiddenText(const ParameterNode& node) {
  return node.name ? ": hidden by one of the same name before it" : ": out of reach without a name";
}

std::string MatrixText(const ParameterNode& node, std::size_t indent) {
  const std::vector<std::string> rows = ValueLines(node.reading.value);
  std::string text = rows.empty() ? ": matrix without rows\n" : ": matrix\n";
  for (const std::string& row : rows) text.append(indent, ' ').append(row).append("\n");
  return text;
}

std::string NodeText(const ParameterNode& node, std::size_t indent) {
  if (node.hidden) return HiddenText(node) + '\n';
  switch (node.kind) {
    case ParameterNode::Kind::Parameter:
      return ParameterText(node) + '\n';
    case ParameterNode::Kind::Matrix:
      return MatrixText(node, indent + kStep);
    case ParameterNode::Kind::Complex:
      return (node.children.empty() ? ": empty\n" : ":\n") + TreeText(node.children, indent + kStep);
  }
  return {};
}

}  // namespace

std::string TreeText(const std::vector<ParameterNode>& nodes, std::size_t indent) {
  std::string text;
  for (const ParameterNode& node : nodes) {
    text.append(indent, ' ').append(Start(node)).append(NodeText(node, indent));
  }
  return text;
}

}  // namespace rqtool
