#include "VariableJson.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::RQEncoder;
using RQMTD_NAMESPACE::RQVariable;

const char* TypeWord(RQVariable::Kind kind) {
  switch (kind) {
    case RQVariable::Kind::Categorical:
      return "categorical";
    case RQVariable::Kind::Continuous:
      return "continuous";
    case RQVariable::Kind::Weight:
      return "weight";
  }
  return "";
}

Json MissingValuesToJson(const RQEncoder& encoder) {
  Json array = Json::array();
  for (const auto& [value, label] : encoder.GetNumMissingValues()) {
    array.push_back({{"value", JsonNumber(value)}, {"label", label}});
  }
  for (const auto& [value, label] : encoder.GetStrMissingValues()) {
    array.push_back({{"value", value}, {"label", label}});
  }
  return array;
}

Json InvalidRangeToJson(const RQEncoder& encoder) {
  if (!encoder.HasInvalidRange()) return nullptr;
  return {{"lower", JsonNumber(encoder.GetInvalidLower())}, {"upper", JsonNumber(encoder.GetInvalidUpper())}};
}

Json VariableToJson(std::size_t index, const RQVariable& variable) {
  const RQEncoder& encoder = variable.GetEncoder();
  const bool ranged = variable.HasRange();
  Json json;
  json["index"] = index;
  json["name"] = variable.GetName();
  json["label"] = variable.GetLabel();
  json["type"] = TypeWord(variable.GetKind());
  json["valueType"] = variable.IsString() ? "string" : "numeric";
  json["storage"] = variable.GetStorageType();
  json["role"] = static_cast<int>(variable.GetRole());
  json["minimum"] = ranged ? JsonNumber(variable.GetMinimum()) : Json();
  json["maximum"] = ranged ? JsonNumber(variable.GetMaximum()) : Json();
  json["cutPoints"] = JsonNumbers(variable.GetCutPoints());
  json["binLabels"] = encoder.GetBinLabels();
  json["values"] = variable.IsString() ? Json(variable.GetStringValues()) : JsonNumbers(variable.GetNumericValues());
  json["labels"] = variable.GetLabels();
  json["missingValues"] = MissingValuesToJson(encoder);
  json["invalidRange"] = InvalidRangeToJson(encoder);
  json["flag"] = variable.GetFlag();
  json["count"] = variable.GetCount();
  return json;
}

}  // namespace

Json VariablesToJson(const VariableSelection& variables) {
  Json array = Json::array();
  for (const RQVariable* const variable : variables) array.push_back(VariableToJson(array.size(), *variable));
  return array;
}

}  // namespace rqtool
