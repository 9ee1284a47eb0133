#ifndef TESTS_SUPPORT_SETTINGS_H
#define TESTS_SUPPORT_SETTINGS_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/recording_storage_list.h"
#include "tests/support/status.h"

namespace rqtest {

/// A failure that says that the thing asked for is not there.
inline RQCommon::RQStatus Absent(long code) { return RQCommon::RQStatus(code, true); }

// Documents

/// A build task around the content of its parameters.
inline std::string BuildTask(const std::string& parameters) {
  return "<MiningBuildTask><Extension><Parameters>" + parameters + "</Parameters></Extension></MiningBuildTask>";
}

/// A settings document around the content of its parameters.
inline std::string Settings(const std::string& parameters) { return Pmml("<DataDictionary/>" + BuildTask(parameters)); }

/// A settings document around its data fields, with the content of a transformation dictionary if given.
inline std::string SettingsWithFields(const std::string& fields) {
  return Pmml("<DataDictionary>" + fields + "</DataDictionary>" + BuildTask(""));
}
inline std::string SettingsWithFields(const std::string& fields, const std::string& transformations) {
  return Pmml("<DataDictionary>" + fields + "</DataDictionary><TransformationDictionary>" + transformations +
              "</TransformationDictionary>" + BuildTask(""));
}

/// A parameter around its content; `attributes` stand beside the name.
inline std::string Parameter(const std::string& name, const std::string& attributes, const std::string& content = "") {
  return "<Parameter name='" + name + "' " + attributes + ">" + content + "</Parameter>";
}
inline std::string Valued(const std::string& name, const std::string& value) {
  return Parameter(name, "value='" + value + "'");
}
inline std::string Complex(const std::string& name, const std::string& content) {
  return "<ComplexParameter name='" + name + "'>" + content + "</ComplexParameter>";
}
inline std::string Matrix(const std::string& name, const std::string& content) {
  return "<MatrixParmeter name='" + name + "'>" + content + "</MatrixParmeter>";
}

inline std::string Values(std::initializer_list<std::string> values) {
  std::string text;
  for (const std::string& value : values) text += "<Value value='" + value + "'/>";
  return text;
}
inline std::string ListValue(std::initializer_list<std::string> values) {
  return "<ListValue>" + Values(values) + "</ListValue>";
}
inline std::string Row(std::initializer_list<std::string> values) {
  return "<ArrayParameter>" + Values(values) + "</ArrayParameter>";
}

/// A document of ASCII as UTF-16, in which each '?' becomes the unit: the XML library lets lone surrogates pass.
inline std::string AsUtf16(const std::string& document, char16_t unit) {
  std::string bytes = "\xFF\xFE";
  for (const char c : document) {
    const char16_t written = c == '?' ? unit : static_cast<char16_t>(c);
    bytes += static_cast<char>(written & 0xFF);
    bytes += static_cast<char>(written >> 8);
  }
  return bytes;
}

// Variable lists

/// Parses a settings document and fills a recording list from its data dictionary.
inline Filled FillSettings(const std::string& document, bool bins = false) {
  RQXPrsUtil::RQSettingsParser parser;
  Filled filled;
  filled.status = Parse(parser, document);
  if (!filled.status.IsOK()) return filled;
  RecordingStorageList vars;
  filled.status = parser.FillVarList(vars, bins);
  filled.calls = vars.calls;
  return filled;
}

/// Parses a settings document and fills a recording list from its transformation dictionary.
inline Filled FillDerived(const std::string& document) {
  RQXPrsUtil::RQSettingsParser parser;
  Filled filled;
  filled.status = Parse(parser, document);
  if (!filled.status.IsOK()) return filled;
  RecordingStorageList vars;
  filled.status = parser.FillTransDict(vars);
  filled.calls = vars.calls;
  return filled;
}

// Getters

inline std::string ShowOutcome(const RQCommon::RQStatus& status) {
  std::ostringstream out;
  PrintTo(status, &out);
  return out.str();
}

/// Asks a parser and shows what comes back: the status and, behind a colon, the output. Before each call the output
/// holds `before`, 47 or 4.75 (one of them, in lists and rows).
class Asker {
 public:
  explicit Asker(RQXPrsUtil::RQSettingsParser& parser) : parser_(parser) {}

  std::string String(const char* name, void* scope = nullptr) const {
    std::string value = "before";
    const auto status = Const().GetParameter(name, value, scope);
    return ShowOutcome(status) + ": " + Show(value);
  }
  std::string Int(const char* name, void* scope = nullptr) const {
    int value = 47;
    const auto status = Const().GetParameter(name, value, scope);
    return ShowOutcome(status) + ": " + std::to_string(value);
  }
  std::string Double(const char* name, void* scope = nullptr) const {
    double value = 4.75;
    const auto status = Const().GetParameter(name, value, scope);
    return ShowOutcome(status) + ": " + Show(value);
  }
  /// The output is "true", "false" or "kept".
  std::string Bool(const char* name, void* scope = nullptr) const {
    bool first = true;
    bool second = false;
    const auto status = Const().GetParameter(name, first, scope);
    EXPECT_EQ(Const().GetParameter(name, second, scope), status);
    const std::string value = first != second ? (first ? "kept" : "inverted") : (first ? "true" : "false");
    return ShowOutcome(status) + ": " + value;
  }
  std::string Strings(const char* name, void* scope = nullptr) const {
    return List<std::string>(name, scope, {"before"});
  }
  std::string Ints(const char* name, void* scope = nullptr) const { return List<int>(name, scope, {47}); }
  std::string Doubles(const char* name, void* scope = nullptr) const { return List<double>(name, scope, {4.75}); }

  std::string StringRows(const char* name, void* scope = nullptr) const {
    return Rows<std::string>(name, scope, {"before"});
  }
  std::string IntRows(const char* name, void* scope = nullptr) const { return Rows<int>(name, scope, {47}); }
  std::string DoubleRows(const char* name, void* scope = nullptr) const { return Rows<double>(name, scope, {4.75}); }

  std::string Variables(const char* name) const {
    std::vector<std::string> names = {"before"};
    const auto status = Const().GetVariables(name, names);
    return ShowOutcome(status) + ": " + Show(names);
  }
  std::string Variable(const char* name) const {
    std::string value = "before";
    const auto status = Const().GetVariables(name, value);
    return ShowOutcome(status) + ": " + Show(value);
  }

 private:
  const RQXPrsUtil::RQSettingsParser& Const() const { return parser_; }

  template <class Item>
  std::string List(const char* name, void* scope, std::vector<Item> items) const {
    const auto status = Const().GetArray(name, items, scope);
    return ShowOutcome(status) + ": " + Show(items);
  }
  template <class Item>
  std::string Rows(const char* name, void* scope, const std::vector<Item>& row) const {
    std::vector<std::vector<Item>> rows = {row};
    const auto status = parser_.GetMatrix(name, rows, scope);
    return ShowOutcome(status) + ": " + Show(rows);
  }

  RQXPrsUtil::RQSettingsParser& parser_;
};

/// A test fixture with a parser to be asked.
class WithSettings : public WithPlatform {
 protected:
  /// Parses a document with these parameters.
  void Load(const std::string& parameters) { ASSERT_EQ(Parse(parser_, Settings(parameters)), Ok()) << parameters; }

  /// Every getter returns `status` (or its failure value) and leaves its output alone.
  void ExpectEveryGetterGives(const RQCommon::RQStatus& status, const char* name = "p", void* scope = nullptr) {
    const std::string text = ShowOutcome(status);
    EXPECT_EQ(ask_.String(name, scope), text + ": \"before\"");
    EXPECT_EQ(ask_.Int(name, scope), text + ": 47");
    EXPECT_EQ(ask_.Double(name, scope), text + ": 4.75");
    EXPECT_EQ(ask_.Bool(name, scope), text + ": kept");
    EXPECT_EQ(ask_.Strings(name, scope), text + ": [\"before\"]");
    EXPECT_EQ(ask_.Ints(name, scope), text + ": [47]");
    EXPECT_EQ(ask_.Doubles(name, scope), text + ": [4.75]");
    EXPECT_EQ(ask_.StringRows(name, scope), text + ": [[\"before\"]]");
    EXPECT_EQ(ask_.IntRows(name, scope), text + ": [[47]]");
    EXPECT_EQ(ask_.DoubleRows(name, scope), text + ": [[4.75]]");
    EXPECT_EQ(parser_.GetParameterType(name, scope), RQXPrsUtil::RQSettingsParser::ParamUnknown);
    EXPECT_EQ(parser_.GetComplexParameter(name, scope), nullptr);
    if (scope != nullptr) return;
    EXPECT_EQ(ask_.Variables(name), text + ": [\"before\"]");
    EXPECT_EQ(ask_.Variable(name), text + ": \"before\"");
    for (const auto getter : kNameLists) {
      std::vector<std::string> names = {"before"};
      EXPECT_EQ((parser_.*getter)(names), status);
      EXPECT_EQ(names, std::vector<std::string>{"before"});
    }
    std::string weight = "before";
    EXPECT_EQ(parser_.GetFrequencyWeight(weight), status);
    EXPECT_EQ(weight, "before");
  }

  /// Both fills return `status` and add nothing.
  void ExpectBothFillsGive(const RQCommon::RQStatus& status) {
    RecordingStorageList vars;
    EXPECT_EQ(parser_.FillVarList(vars, false), status);
    EXPECT_EQ(parser_.FillVarList(vars, true), status);
    EXPECT_EQ(parser_.FillTransDict(vars), status);
    EXPECT_EQ(vars.calls, Calls());
  }

  using NameListGetter = RQCommon::RQStatus (RQXPrsUtil::RQSettingsParser::*)(std::vector<std::string>&) const;
  static constexpr NameListGetter kNameLists[] = {
      &RQXPrsUtil::RQSettingsParser::GetTargetVars,       &RQXPrsUtil::RQSettingsParser::GetCatResponseVars,
      &RQXPrsUtil::RQSettingsParser::GetContResponseVars, &RQXPrsUtil::RQSettingsParser::GetPredictors,
      &RQXPrsUtil::RQSettingsParser::GetCatPredictors,    &RQXPrsUtil::RQSettingsParser::GetContPredictors,
  };

  RQXPrsUtil::RQSettingsParser parser_;
  Asker ask_{parser_};
};

}  // namespace rqtest

#endif
