#ifndef RQXML_TOOLS_PARAMETERVALUE_H
#define RQXML_TOOLS_PARAMETERVALUE_H

#include <string>
#include <variant>
#include <vector>

#include "Json.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/settings/RQSettingsParser.h"

namespace rqtool {

/// What a parameter can be read as.
enum class ReadAs { String, Int, Double, Bool, Array, Matrix };

/// A parameter as it was read; empty when it was not.
using ParameterValue =
    std::variant<std::monostate, std::string, int, double, bool, std::vector<std::string>, std::vector<int>,
                 std::vector<double>, std::vector<std::vector<std::string>>, std::vector<std::vector<double>>>;

/// The outcome of reading a parameter: after a failure the value holds what was read before it.
struct Reading {
  RQCommon::RQStatus status;
  ParameterValue value;
};

/// What a single value of that type is read as.
ReadAs ScalarOf(RQXPrsUtil::RQSettingsParser::ParamType type);

/// The type that the word in a document stands for.
RQXPrsUtil::RQSettingsParser::ParamType TypeOf(const std::string& word);

/// The word of a type; "unknown" for ParamUnknown.
std::string TypeWord(RQXPrsUtil::RQSettingsParser::ParamType type);

/// Reads the parameter `name` (UTF-8) of `scope`.
/// @param type the type of the items of an array: integers, doubles, else texts. The items of a matrix are numbers when
///   all of them are, else texts.
Reading ReadParameter(RQXPrsUtil::RQSettingsParser& parser, const std::string& name, void* scope, ReadAs as,
                      RQXPrsUtil::RQSettingsParser::ParamType type);

/// The value as JSON; null for nothing and for system-missing numbers.
Json ValueToJson(const ParameterValue& value);

/// The lines that show the value to people: one for each row of a matrix, else one in all.
std::vector<std::string> ValueLines(const ParameterValue& value);

/// The items of an array as lines; a single value and the rows of a matrix as in ValueLines, a text as it is.
std::vector<std::string> PlainLines(const ParameterValue& value);

}  // namespace rqtool

#endif
