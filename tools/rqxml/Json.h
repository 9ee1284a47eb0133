#ifndef RQXML_TOOLS_JSON_H
#define RQXML_TOOLS_JSON_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace rqtool {

/// JSON whose members keep the order in which they were added.
using Json = nlohmann::ordered_json;

/// A number that reads back as the same double: whole numbers without a fraction, null for the system-missing value.
Json JsonNumber(double value);

/// Each number as JsonNumber makes it.
Json JsonNumbers(const std::vector<double>& values);

/// The text of `json`, indented, with a line end. Bytes that are no UTF-8 come out as U+FFFD,
/// control characters and those that change the writing direction as JSON escapes.
std::string JsonText(const Json& json);

}  // namespace rqtool

#endif
