// Settings documents: every getter gives what the slow reference gives, for every name that stands in the document and
// one that the input asks for, in every scope. An input is a document, or a line "=NAME" and a document behind it.

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "parse.h"
#include "reference_fill.h"
#include "reference_settings.h"
#include "rqxml/settings/RQSettingsParser.h"

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQVarList;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using rqxml_fuzz::ParseInChunks;
using rqxml_fuzz::ParseWhole;
using rqxml_fuzz::SlowSettings;
using RQXPrsUtil::RQSettingsParser;
using xercesc::DOMElement;

// Inputs have few names and scopes; the bounds keep hostile ones from taking all the time.
constexpr std::size_t kMostNames = 24;
constexpr std::size_t kMostScopes = 12;

// Names and outputs

struct Input {
  std::string name;
  std::string document;
};

Input Split(const std::string& text) {
  const std::size_t end = text.find('\n');
  if (text.empty() || text[0] != '=' || end == std::string::npos) return {"p", text};
  return {text.substr(1, end - 1), text.substr(end + 1)};
}

// What the outputs hold before a getter is asked.
void Prepare(std::string& value) { value = "before"; }
void Prepare(int& value) { value = 47; }
void Prepare(double& value) { value = 4.75; }
void Prepare(bool& value) { value = true; }
template <class Item>
void Prepare(std::vector<Item>& values) {
  values.resize(1);
  Prepare(values[0]);
}

std::string Show(const std::string& value) { return std::to_string(value.size()) + ":" + value; }
std::string Show(int value) { return std::to_string(value); }
std::string Show(double value) { return Describe(value); }
std::string Show(bool value) { return value ? "true" : "false"; }
template <class Item>
std::string Show(const std::vector<Item>& values) {
  std::string text = "[";
  for (const Item& value : values) text += Show(value) + " ";
  return text + "]";
}

bool IsGood(const std::string&) { return true; }
bool IsGood(int value) { return value >= 0; }
bool IsGood(double value) { return std::isfinite(value); }
bool IsGood(bool) { return true; }
template <class Item>
bool IsGood(const std::vector<Item>& values) {
  return std::all_of(values.begin(), values.end(), [](const Item& value) { return IsGood(value); });
}

// Promises of single getters: what a status says about its output.

template <class Value>
bool IsKept(const Value& value) {
  Value before;
  Prepare(before);
  return Show(value) == Show(before);
}

void CheckFound(const RQStatus& status, bool kept) {
  const long code = status.GetCode();
  Check(status.GetFlag() == (code == 120 || code == 123), "a flag tells what is not there");
  if (code == 120 || code == 119 || code == 107) Check(kept, "an output is kept unless the parameter is found");
}

template <class Value>
void CheckScalar(const RQStatus& status, const Value& value) {
  CheckFound(status, IsKept(value));
  if (status.IsOK()) Check(IsGood(value), "a good status has a good value");
  if (status.GetCode() == 121 || status.GetCode() == 123) Check(IsKept(value), "without a value the output is kept");
  if (status.GetCode() == 109) Check(IsKept(value) || !IsGood(value), "a bad value is kept away, or negative");
}

template <class Item>
void CheckArray(const RQStatus& status, const std::vector<Item>& items) {
  CheckFound(status, IsKept(items));
  Check(IsGood(items), "an array holds good items only");
}

void CheckNames(const RQStatus& status, const std::vector<std::string>& names) {
  CheckFound(status, IsKept(names));
  Check(std::find(names.begin(), names.end(), "") == names.end(), "empty texts are dropped");
  if (status.GetCode() == 122) Check(names.empty(), "a list that is not there has no names");
}

// Library and reference

class Comparison {
 public:
  Comparison(RQSettingsParser& parser, const SlowSettings& slow) : fParser(parser), fSlow(slow) {}

  void CompareAll(const std::string& name, void* scope) {
    CompareParameter<std::string>(name, scope);
    CompareParameter<int>(name, scope);
    CompareParameter<double>(name, scope);
    CompareParameter<bool>(name, scope);
    CompareArray<std::string>(name, scope);
    CompareArray<int>(name, scope);
    CompareArray<double>(name, scope);
    CompareMatrix<std::string>(name, scope);
    CompareMatrix<int>(name, scope);
    CompareMatrix<double>(name, scope);
    CheckEqual(std::to_string(fParser.GetParameterType(name.c_str(), scope)),
               std::to_string(fSlow.GetParameterType(Element(scope), name)), "the type is that of the parameter");
  }

  void* CompareComplex(const std::string& name, void* scope) {
    void* const handle = fParser.GetComplexParameter(name.c_str(), scope);
    Check(handle == static_cast<const void*>(fSlow.GetComplexParameter(Element(scope), name)),
          "the handle is the first complex parameter of the name");
    return handle;
  }

  void CompareVariables(const std::string& name) {
    CompareNames(
        name, [&](auto& names) { return fParser.GetVariables(name.c_str(), names); }, false);
    std::string value, slowValue;
    Prepare(value);
    Prepare(slowValue);
    const RQStatus status = fParser.GetVariables(name.c_str(), value);
    CheckSame(status, value, fSlow.GetVariables(name, slowValue), slowValue);
    CheckFound(status, IsKept(value));
    Check(status.IsOK() || IsKept(value), "a name that is not there is not told");
  }

  void CompareRoles() {
    CompareNames(
        "target", [&](auto& names) { return fParser.GetTargetVars(names); }, true);
    CompareNames(
        "inputs", [&](auto& names) { return fParser.GetPredictors(names); }, true);
    CompareNames(
        "CatResponses", [&](auto& names) { return fParser.GetCatResponseVars(names); }, false);
    CompareNames(
        "ContResponses", [&](auto& names) { return fParser.GetContResponseVars(names); }, false);
    CompareNames(
        "CatPredictors", [&](auto& names) { return fParser.GetCatPredictors(names); }, false);
    CompareNames(
        "ContPredictors", [&](auto& names) { return fParser.GetContPredictors(names); }, false);
    std::string weight, slowWeight;
    Prepare(weight);
    Prepare(slowWeight);
    const RQStatus status = fParser.GetFrequencyWeight(weight);
    CheckSame(status, weight, fSlow.GetVariables("FrequencyWeightVar", slowWeight), slowWeight);
  }

 private:
  const DOMElement& Element(void* scope) const {
    return scope == nullptr ? *fSlow.Parameters() : *static_cast<const DOMElement*>(scope);
  }

  template <class Value>
  static void CheckSame(const RQStatus& status, const Value& value, const RQStatus& slowStatus,
                        const Value& slowValue) {
    CheckEqual(Describe(status) + " " + Show(value), Describe(slowStatus) + " " + Show(slowValue),
               "parameters are read by the rules");
  }

  template <class Value>
  void CompareParameter(const std::string& name, void* scope) {
    Value value, slowValue;
    Prepare(value);
    Prepare(slowValue);
    const RQStatus status = fParser.GetParameter(name.c_str(), value, scope);
    CheckSame(status, value, fSlow.GetParameter(Element(scope), name, slowValue), slowValue);
    CheckScalar(status, value);
  }

  template <class Item>
  void CompareArray(const std::string& name, void* scope) {
    std::vector<Item> items, slowItems;
    Prepare(items);
    Prepare(slowItems);
    const RQStatus status = fParser.GetArray(name.c_str(), items, scope);
    CheckSame(status, items, fSlow.GetArray(Element(scope), name, slowItems), slowItems);
    CheckArray(status, items);
  }

  template <class Item>
  void CompareMatrix(const std::string& name, void* scope) {
    std::vector<std::vector<Item>> rows, slowRows;
    Prepare(rows);
    Prepare(slowRows);
    const RQStatus status = fParser.GetMatrix(name.c_str(), rows, scope);
    CheckSame(status, rows, fSlow.GetMatrix(Element(scope), name, slowRows), slowRows);
    CheckArray(status, rows);
    Check(status.IsOK() || status.GetCode() == 120, "the content of a matrix is no failure");
  }

  template <class Get>
  void CompareNames(const std::string& name, Get get, bool asArray) {
    std::vector<std::string> names, slowNames;
    Prepare(names);
    Prepare(slowNames);
    const RQStatus status = get(names);
    const RQStatus slowStatus =
        asArray ? fSlow.GetArray(*fSlow.Parameters(), name, slowNames) : fSlow.GetVariables(name, slowNames);
    CheckSame(status, names, slowStatus, slowNames);
    CheckNames(status, names);
  }

  RQSettingsParser& fParser;
  const SlowSettings& fSlow;
};

// Whole documents

template <class Fill>
std::string Filled(Fill fill) {
  RQVarList vars;
  const RQStatus status = fill(vars);
  return "status " + Describe(status) + "\n" + Describe(vars);
}

std::string FillAll(const RQSettingsParser& parser) {
  std::string text;
  for (const bool bins : {false, true}) text += Filled([&](auto& vars) { return parser.FillVarList(vars, bins); });
  return text + Filled([&](auto& vars) { return parser.FillTransDict(vars); });
}

std::string SlowFillAll(const DOMElement& root) {
  std::string text;
  for (const bool bins : {false, true})
    text += Filled([&](auto& vars) { return rqxml_fuzz::SlowFillSettings(root, vars, bins); });
  return text + Filled([&](auto& vars) { return rqxml_fuzz::SlowFillDerived(root, vars); });
}

template <class Value, class Get>
void CheckRefused(const RQStatus& expected, Get get) {
  Value value;
  Prepare(value);
  Check(get(value) == expected, "without parameters every getter says why");
  Check(IsKept(value), "without parameters outputs are kept");
}

// An object without a document or without parameters says so, and gives nothing.
void CheckEmpty(RQSettingsParser& parser, const Ending& ending, const std::string& name) {
  using Texts = std::vector<std::string>;
  const RQStatus expected = ending.threw ? RQStatus(107, false) : ending.status;
  const auto parameter = [&](auto& value) { return parser.GetParameter(name.c_str(), value, nullptr); };
  CheckRefused<std::string>(expected, parameter);
  CheckRefused<int>(expected, parameter);
  CheckRefused<double>(expected, parameter);
  CheckRefused<bool>(expected, parameter);
  CheckRefused<Texts>(expected, [&](auto& names) { return parser.GetVariables(name.c_str(), names); });
  CheckRefused<std::string>(expected, [&](auto& value) { return parser.GetVariables(name.c_str(), value); });
  CheckRefused<Texts>(expected, [&](auto& items) { return parser.GetArray(name.c_str(), items, nullptr); });
  CheckRefused<std::vector<Texts>>(expected, [&](auto& rows) { return parser.GetMatrix(name.c_str(), rows, nullptr); });
  CheckRefused<Texts>(expected, [&](auto& names) { return parser.GetTargetVars(names); });
  Check(parser.GetParameterType(name.c_str(), nullptr) == RQSettingsParser::ParamUnknown, "no parameter has a type");
  Check(parser.GetComplexParameter(name.c_str(), nullptr) == nullptr, "there is no complex parameter");
  const std::string nothing = "status " + Describe(expected) + "\n" + Describe(RQVarList());
  CheckEqual(FillAll(parser), nothing + nothing + nothing, "without a good parse there are no variables");
  Check(parser.GetStatus() == ending.status, "the status kept is the one returned");
}

void CheckParsed(RQSettingsParser& parser, const std::string& name) {
  const DOMElement& root = *parser.GetRootElement();
  const SlowSettings slow(root);
  Check(slow.Parameters() != nullptr, "a good parse has found parameters");
  std::vector<std::string> names = rqxml_fuzz::AllNames(root);
  names.resize(std::min(names.size(), kMostNames));
  names.push_back(name);
  Comparison comparison(parser, slow);
  std::vector<void*> scopes = {nullptr};
  for (std::size_t i = 0; i < scopes.size(); ++i) {
    for (const std::string& asked : names) {
      comparison.CompareAll(asked, scopes[i]);
      void* const handle = comparison.CompareComplex(asked, scopes[i]);
      const bool isNew = handle != nullptr && std::find(scopes.begin(), scopes.end(), handle) == scopes.end();
      if (isNew && scopes.size() < kMostScopes) scopes.push_back(handle);
    }
  }
  for (const std::string& asked : names) comparison.CompareVariables(asked);
  comparison.CompareRoles();
  CheckEqual(FillAll(parser), SlowFillAll(root), "the fields of the document are read by the rules");
  Check(parser.GetStatus().IsOK(), "getters change nothing");
}

void CheckEnding(RQSettingsParser& parser, const Ending& ending, const std::string& name) {
  if (ending.threw || !ending.status.IsOK())
    CheckEmpty(parser, ending, name);
  else
    CheckParsed(parser, name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input = Split(rqxml_fuzz::AsText(data, size));
  RQSettingsParser parser;
  const Ending ending = ParseWhole(parser, input.document);
  CheckEnding(parser, ending, input.name);
  const std::string message = parser.GetXercesMessage();
  const std::string vars = FillAll(parser);

  CheckEqual(Describe(ParseInChunks(parser, input.document, 1)), Describe(ending), "one byte at a time ends the same");
  CheckEqual(parser.GetXercesMessage(), message, "one byte at a time says the same");
  CheckEqual(FillAll(parser), vars, "one byte at a time reads the same");
  CheckEnding(parser, ending, input.name);
  return 0;
}
