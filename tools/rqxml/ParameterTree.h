#ifndef RQXML_TOOLS_PARAMETERTREE_H
#define RQXML_TOOLS_PARAMETERTREE_H

#include <optional>
#include <string>
#include <vector>

#include "Document.h"
#include "InputFile.h"
#include "Json.h"
#include "ParameterValue.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// What stands in a scope under one name.
struct ParameterNode {
  enum class Kind { Parameter, Complex, Matrix };

  Kind kind = Kind::Parameter;
  std::optional<std::string> name{};
  bool hidden = false;  ///< nothing gives it by name: it has none, or one of its kind before it has the same
  std::optional<std::string> type{};      ///< of a parameter: as it is written
  bool isList = false;                    ///< of a parameter: it has a list
  std::string written{};                  ///< of a parameter: its one value as it is written
  Reading reading{};                      ///< of a parameter and a matrix, unless hidden
  std::vector<ParameterNode> children{};  ///< of a complex parameter, unless hidden
};

/// Where parameters are looked up.
struct Scope {
  std::vector<std::string> names{};              ///< of the complex parameters on the way; empty for the task's own
  void* handle = nullptr;                        ///< for the parser
  const xercesc::DOMElement* element = nullptr;  ///< the same
};

/// The task's own parameters.
Scope TopScope(const Document& document);

/// The first element below the scope of that kind and name, or null.
const xercesc::DOMElement* FindInScope(const Scope& scope, ParameterNode::Kind kind, const std::string& name);

/// All that stands in `scope`, in document order.
/// @param input the document, for messages
/// @throws Failure (Refused) for more than a tree can show: complex parameters nested too deeply, or so many parameters
///   that looking each up by its name would take minutes
std::vector<ParameterNode> ReadParameterTree(const InputFile& input, const Document& document, const Scope& scope);

/// The nodes for people, one line each and one for each row of a matrix, the lowest ones behind `indent` blanks.
std::string TreeText(const std::vector<ParameterNode>& nodes, std::size_t indent);

/// The nodes as a JSON array.
Json TreeToJson(const std::vector<ParameterNode>& nodes);

}  // namespace rqtool

#endif
