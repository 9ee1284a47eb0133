#ifndef TESTS_TOOL_STATS_SUPPORT_H
#define TESTS_TOOL_STATS_SUPPORT_H

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

namespace rqtest {

/// A document with `models` behind a small data dictionary.
inline std::string WithModels(const std::string& models) {
  return "<PMML>\n<DataDictionary><DataField name='x' optype='continuous' dataType='double'/></DataDictionary>\n" +
         models + "</PMML>";
}

/// A document with one model that has `statistics`.
inline std::string WithStatistics(const std::string& statistics) {
  return WithModels("<TreeModel modelName='m'><ModelStats>\n" + statistics + "</ModelStats></TreeModel>");
}

/// The statistics of a field with 10 cases and `content`.
inline std::string Statistics(const std::string& field, const std::string& content) {
  return "<UnivariateStats field='" + field + "'><Counts totalFreq='10'/>" + content + "</UnivariateStats>\n";
}

/// Runs "stats" on a document with more arguments behind the file.
inline ToolResult Stats(const std::string& document, const std::vector<std::string>& options = {}) {
  ToolCall call{.arguments = {"stats", "-"}, .input = document};
  call.arguments.insert(call.arguments.end(), options.begin(), options.end());
  return RunTool(call);
}

/// The same, as JSON.
inline nlohmann::ordered_json StatsJson(const std::string& document, std::vector<std::string> options = {}) {
  options.emplace_back("--json");
  const ToolResult result = Stats(document, options);
  const auto json = nlohmann::ordered_json::parse(result.out, nullptr, false);
  EXPECT_FALSE(json.is_discarded()) << result;
  return json;
}

}  // namespace rqtest

#endif
