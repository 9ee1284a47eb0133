#include "SplitVariables.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "CommaList.h"
#include "DocumentText.h"
#include "Failure.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using Variables = std::vector<SplitVariable>;

// The codes of IRQVariable::SetStorageType.
constexpr int kIntegerStorage = 1;
constexpr int kRealStorage = 2;

struct TypeWord {
  std::string_view word;
  SplitType type;
};
constexpr std::array kTypeWords{TypeWord{"string", SplitType::String}, TypeWord{"double", SplitType::Double},
                                TypeWord{"integer", SplitType::Integer}};

Failure WrongOption(const std::string& option, const std::string& text, const std::string& what,
                    const std::string& hint) {
  return Failure(ExitCode::WrongUsage, {.what = option + ' ' + text + ": " + what, .hint = hint});
}

std::string_view WithoutPlus(std::string_view text) {
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

std::optional<double> ToDouble(std::string_view text) {
  text = WithoutPlus(text);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = result.ec == std::errc() && result.ptr == text.data() + text.size();
  if (!whole || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<std::string> IntegerKey(std::string_view text) {
  text = WithoutPlus(text);
  const bool negative = text.substr(0, 1) == "-";
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size() - 1));
  return (negative && text != "0" ? "-" : "") + std::string(text);
}

std::optional<std::string> DoubleKey(std::string_view text) {
  const std::optional<double> value = ToDouble(text);
  if (!value) return std::nullopt;
  std::array<char, 32> digits{};
  const double positiveZero = *value == 0 ? 0 : *value;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), positiveZero);
  return std::string(digits.data(), result.ptr);
}

// The values of an option, by the split variable that they are for.
class OptionValues {
 public:
  OptionValues(std::string option, const std::vector<std::string>& texts, Variables& variables)
      : fOption(std::move(option)) {
    for (const std::string& text : texts) Add(text, variables);
  }

  // Calls `use` with each variable and its text.
  template <typename Use>
  void ForEach(Use use) const {
    for (const auto& [variable, value] : fValues) use(*variable, value);
  }

  Failure Wrong(const std::string& value, const std::string& what, const std::string& hint) const {
    return WrongOption(fOption, value, what, hint);
  }

 private:
  void Add(const std::string& text, Variables& variables) {
    SplitVariable* const variable = Find(text, variables);
    if (variable == nullptr) {
      throw Wrong(text, "does not begin with the name of a split variable and =",
                  "write NAME=..., NAME as it is in "
                  "the manifest or --by");
    }
    for (const auto& [known, value] : fValues) {
      if (known == variable) throw Wrong(text, "stands there twice for \"" + known->name + '"', "give it once");
    }
    fValues.emplace_back(variable, text.substr(variable->name.size() + 1));
  }

  // A name may hold an equals sign: the longest that fits is meant.
  static SplitVariable* Find(const std::string& text, Variables& variables) {
    SplitVariable* best = nullptr;
    for (SplitVariable& variable : variables) {
      const bool fits = text.rfind(variable.name + '=', 0) == 0;
      if (fits && (best == nullptr || variable.name.size() > best->name.size())) best = &variable;
    }
    return best;
  }

  std::string fOption;
  std::vector<std::pair<SplitVariable*, std::string>> fValues;
};

void SetTypes(const CombineOptions& options, Variables& variables) {
  const OptionValues types("--type", options.types, variables);
  types.ForEach([&](SplitVariable& variable, const std::string& word) {
    const auto* const found = std::find_if(kTypeWords.begin(), kTypeWords.end(),
                                           [&word](const TypeWord& entry) { return entry.word == word; });
    if (found == kTypeWords.end()) {
      throw types.Wrong(variable.name + '=' + word, "there is no such type",
                        "the types are string, double and integer");
    }
    variable.type = found->type;
  });
}

void SetLabels(const CombineOptions& options, Variables& variables) {
  const OptionValues labels("--label", options.labels, variables);
  labels.ForEach([&](SplitVariable& variable, const std::string& label) {
    if (!IsDocumentText(label)) {
      throw labels.Wrong(variable.name, "the label holds what no XML document can hold", "give it as UTF-8 text");
    }
    variable.label = label;
  });
}

void SetContinuous(const CombineOptions& options, Variables& variables) {
  for (const std::string& name : options.continuous) {
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&name](const SplitVariable& variable) { return variable.name == name; });
    if (found == variables.end()) {
      throw WrongOption("--continuous", name, "there is no such split variable", "see the manifest or --by");
    }
    const bool typed = std::any_of(options.types.begin(), options.types.end(),
                                   [&name](const std::string& type) { return type == name + "=string"; });
    if (typed) throw WrongOption("--continuous", name, "its type is string", "a continuous variable holds numbers");
    found->continuous = true;
    if (found->type == SplitType::String) found->type = SplitType::Double;
  }
}

void SetCategories(const CombineOptions& options, Variables& variables) {
  const OptionValues lists("--categories", options.categories, variables);
  lists.ForEach([&](SplitVariable& variable, const std::string& list) {
    const std::string shown = variable.name + '=' + list;
    const std::optional<std::vector<std::string>> items = SplitCommaList(list);
    if (variable.continuous) throw lists.Wrong(shown, "the variable is continuous", "leave out one of the options");
    if (!items) throw lists.Wrong(shown, "the quotes do not match", "write NAME=a,b,c");
    std::unordered_set<std::string> keys;
    for (const std::string& item : *items) {
      const std::string wrong = WhyBadValue(variable, item);
      if (!wrong.empty()) throw lists.Wrong(shown, wrong, "write NAME=a,b,c with values of the variable's type");
      if (!keys.insert(*ValueKey(variable.type, item)).second) {
        throw lists.Wrong(shown, "the category \"" + item + "\" stands there twice", "name each once");
      }
    }
    variable.declared = true;
    variable.categories = *items;
  });
}

// The distinct values in order of first appearance. Wrong ones are told when it is the turn of their file.
void GatherCategories(const Splits& splits, std::size_t index, SplitVariable& variable) {
  std::unordered_set<std::string> keys;
  for (const Split& split : splits.splits) {
    if (split.values.size() != splits.variables.size()) continue;
    const std::string& value = split.values[index];
    if (!WhyBadValue(variable, value).empty()) continue;
    if (keys.insert(*ValueKey(variable.type, value)).second) variable.categories.push_back(value);
  }
}

int AddVariable(const SplitVariable& variable, RQVarList& list) {
  if (variable.continuous) return list.AddContVar(variable.name, variable.label, IRQVariable::RoleInput);
  if (variable.type != SplitType::Double) {
    // Integers too keep their texts, as a double could not hold them all.
    return list.AddCatVar(variable.name, variable.label, variable.categories, IRQVariable::RoleInput);
  }
  std::vector<double> numbers;
  for (const std::string& category : variable.categories) numbers.push_back(ToDouble(category).value_or(0));
  return list.AddCatVar(variable.name, variable.label, numbers, IRQVariable::RoleInput);
}

}  // namespace

std::optional<std::string> ValueKey(SplitType type, const std::string& value) {
  switch (type) {
    case SplitType::String:
      return value;
    case SplitType::Double:
      return DoubleKey(value);
    case SplitType::Integer:
      return IntegerKey(value);
  }
  return std::nullopt;
}

std::string WhyBadValue(const SplitVariable& variable, const std::string& value) {
  if (value.empty()) return "the value of \"" + variable.name + "\" is empty";
  if (!IsDocumentText(value)) return "the value of \"" + variable.name + "\" holds what no XML document can hold";
  if (ValueKey(variable.type, value)) return {};
  const bool integer = variable.type == SplitType::Integer;
  return "the value \"" + value + "\" of \"" + variable.name + "\" is " + (integer ? "no integer" : "no number");
}

std::vector<SplitVariable> DescribeSplitVariables(const CombineOptions& options, const Splits& splits) {
  Variables variables;
  for (const std::string& name : splits.variables) variables.push_back({.name = name});
  SetTypes(options, variables);
  SetLabels(options, variables);
  SetContinuous(options, variables);
  SetCategories(options, variables);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    if (!variables[i].continuous && !variables[i].declared) GatherCategories(splits, i, variables[i]);
  }
  return variables;
}

void AddSplitVariables(const std::vector<SplitVariable>& variables, RQVarList& list) {
  for (const SplitVariable& variable : variables) {
    const int index = AddVariable(variable, list);
    if (variable.type == SplitType::Integer) list.GetVarAt(index)->SetStorageType(kIntegerStorage);
    if (variable.type == SplitType::Double) list.GetVarAt(index)->SetStorageType(kRealStorage);
  }
}

}  // namespace rqtool
