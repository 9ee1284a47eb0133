#include "ParameterTree.h"

namespace rqtool {

namespace {

Json TextOrNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

void AddParameter(Json& json, const ParameterNode& node) {
  const bool good = node.reading.status.IsOK();
  json["type"] = TextOrNull(node.type);
  json["list"] = node.isList;
  json["value"] = good ? ValueToJson(node.reading.value) : Json();
  json["status"] = good ? Json() : Json(node.reading.status.GetCode());
}

Json NodeToJson(const ParameterNode& node) {
  Json json;
  json["name"] = TextOrNull(node.name);
  switch (node.kind) {
    case ParameterNode::Kind::Parameter:
      json["kind"] = "parameter";
      json["hidden"] = node.hidden;
      AddParameter(json, node);
      break;
    case ParameterNode::Kind::Matrix:
      json["kind"] = "matrix";
      json["hidden"] = node.hidden;
      json["rows"] = ValueToJson(node.reading.value);
      break;
    case ParameterNode::Kind::Complex:
      json["kind"] = "complex";
      json["hidden"] = node.hidden;
      json["parameters"] = TreeToJson(node.children);
      break;
  }
  return json;
}

}  // namespace

Json TreeToJson(const std::vector<ParameterNode>& nodes) {
  Json array = Json::array();
  for (const ParameterNode& node : nodes) array.push_back(NodeToJson(node));
  return array;
}

}  // namespace rqtool
