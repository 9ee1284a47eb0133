#include "ParameterFailure.h"

#include <cstddef>
#include <variant>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using Kind = ParameterNode::Kind;
using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

std::string KindTitle(Kind kind) {
  switch (kind) {
    case Kind::Parameter:
      return "parameter";
    case Kind::Complex:
      return "complex parameter";
    case Kind::Matrix:
      return "matrix";
  }
  return {};
}

std::string ScopeTitle(const Scope& scope) {
  if (scope.names.empty()) return "the parameters of the task";
  std::string path;
  for (const std::string& name : scope.names) path += (path.empty() ? "" : "/") + name;
  return "the complex parameter \"" + path + '"';
}

std::string HintForMissing(const Scope& scope, Kind kind, const std::string& name) {
  if (kind != Kind::Parameter && FindInScope(scope, Kind::Parameter, name) != nullptr) {
    return "it is a parameter with a value or a list";
  }
  if (kind != Kind::Matrix && FindInScope(scope, Kind::Matrix, name) != nullptr) return "it is a matrix: --as matrix";
  if (kind != Kind::Complex && FindInScope(scope, Kind::Complex, name) != nullptr) {
    return "it is a complex parameter: leave out --as to see what is in it, or give it with --scope";
  }
  return "rqxml settings lists all parameters; names count exactly as written";
}

// What is wrong, and a hint.
struct Explanation {
  std::string what;
  std::string hint;
};

std::size_t ItemsRead(const ParameterValue& value) {
  if (const auto* const integers = std::get_if<std::vector<int>>(&value)) return integers->size();
  if (const auto* const numbers = std::get_if<std::vector<double>>(&value)) return numbers->size();
  return 0;
}

bool IsInteger(ReadAs as, const ParameterValue& value) {
  return as == ReadAs::Int || std::holds_alternative<std::vector<int>>(value);
}

Explanation ExplainBadValue(const DOMElement& parameter, ReadAs as, const ParameterValue& value) {
  const DOMElement* holder = &parameter;
  std::string what;
  const DOMElement* const list = xml::GetFirstChildElmt(parameter, "ListValue");
  if (as == ReadAs::Array && list != nullptr) {
    holder = xml::GetFirstChildElmt(*list, "Value");
    const std::size_t before = ItemsRead(value);
    for (std::size_t i = 0; i < before && holder != nullptr; ++i) holder = xml::GetNextSiblingElmt(*holder, "Value");
    what = "item " + std::to_string(before + 1) + " of its list: ";
  }
  what += "value=\"" + (holder == nullptr ? std::string() : Attribute(*holder, "value").value_or("")) + "\" is ";
  if (as == ReadAs::Bool) return {what + "neither \"true\" nor \"false\"", "--as string reads any value"};
  what += IsInteger(as, value) ? "no integer of zero or more" : "no finite number";
  return {what, as == ReadAs::Array
                    ? "the type of the parameter decides what its items are; correct the one or the other"
                    : "--as string reads any value"};
}

Explanation ExplainNoValue(const DOMElement& parameter) {
  const std::string hint = "give it a value, or leave the parameter out";
  const DOMElement* const list = xml::GetFirstChildElmt(parameter, "ListValue");
  if (list == nullptr) return {"it has neither \"value\" nor a child \"ListValue\"", hint};
  if (xml::GetFirstChildElmt(*list, "Value") == nullptr) return {"its list has no items", hint};
  return {"an item of its list has no \"value\"", "give each item a value"};
}

Explanation Explain(const DOMElement& parameter, ReadAs as, const Reading& reading) {
  switch (reading.status.GetCode()) {
    case xml::BadValue:
      return ExplainBadValue(parameter, as, reading.value);
    case xml::ParameterIsList:
      return {"it is a list, and one value was asked for", "--as array reads a list"};
    case xml::ParameterWithoutValue:
      return ExplainNoValue(parameter);
    default:
      return {"it cannot be read", {}};
  }
}

}  // namespace

Failure NoSuchParameter(InputFile& input, const Scope& scope, Kind kind, const std::string& name) {
  return Failure(ExitCode::Refused,
                 {.file = input.GetDisplayName(),
                  .place = PlaceOf(input, *scope.element),
                  .what = "there is no " + KindTitle(kind) + " \"" + name + "\" in " + ScopeTitle(scope),
                  .status = xml::ParameterNotFound,
                  .hint = HintForMissing(scope, kind, name)});
}

Failure ParameterFailure(InputFile& input, const Scope& scope, const std::string& name, ReadAs as,
                         const Reading& reading) {
  const Kind kind = as == ReadAs::Matrix ? Kind::Matrix : Kind::Parameter;
  const DOMElement* const parameter = FindInScope(scope, kind, name);
  if (parameter == nullptr) return NoSuchParameter(input, scope, kind, name);
  const Explanation explanation = Explain(*parameter, as, reading);
  return Failure(ExitCode::Refused, {.file = input.GetDisplayName(),
                                     .place = PlaceOf(input, *parameter),
                                     .element = "Parameter \"" + name + '"',
                                     .what = explanation.what,
                                     .status = reading.status.GetCode(),
                                     .hint = explanation.hint});
}

}  // namespace rqtool
