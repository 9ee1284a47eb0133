#include "VariableTable.h"

#include <array>
#include <limits>
#include <string>
#include <utility>

#include "DisplayText.h"
#include "ValueText.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::RQEncoder;
using RQMTD_NAMESPACE::RQVariable;
using Cell = TextTable::Cell;

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kLargest = std::numeric_limits<double>::max();

std::string LabelledText(std::string value, const std::string& label) {
  return label.empty() ? value : std::move(value) + " = " + ItemText(label);
}

// "2 .. 5"; an end at the limit of all doubles is open.
std::string RangeText(double lower, double upper) {
  std::string text;
  if (lower != kLowest) text += NumberText(lower) + ' ';
  text += "..";
  if (upper != kLargest) text += ' ' + NumberText(upper);
  return text;
}

std::string KindText(const RQVariable& variable) {
  switch (variable.GetKind()) {
    case RQVariable::Kind::Categorical:
      return "categorical";
    case RQVariable::Kind::Continuous:
      return "continuous";
    case RQVariable::Kind::Weight:
      return "weight";
  }
  return {};
}

// A range that is open at both ends says nothing.
bool IsUnbounded(const RQVariable& variable) {
  return variable.GetMinimum() == kLowest && variable.GetMaximum() == kLargest && variable.GetCutPoints().empty();
}

Cell Bins(const RQVariable& variable) {
  const std::vector<double>& cutPoints = variable.GetCutPoints();
  const std::vector<std::string>& labels = variable.GetEncoder().GetBinLabels();
  Cell bins;
  double lower = variable.GetMinimum();
  for (std::size_t bin = 0; bin <= cutPoints.size(); ++bin) {
    const double upper = bin < cutPoints.size() ? cutPoints[bin] : variable.GetMaximum();
    bins.push_back(LabelledText(RangeText(lower, upper), bin < labels.size() ? labels[bin] : std::string()));
    lower = upper;
  }
  return bins;
}

Cell Categories(const RQVariable& variable) {
  const std::vector<std::string>& labels = variable.GetLabels();
  Cell categories;
  for (int i = 0; i < variable.GetNumCategories(); ++i) {
    const auto index = static_cast<std::size_t>(i);
    std::string value = variable.IsString() ? ItemText(variable.GetStringValues()[index])
                                            : NumberText(variable.GetNumericValues()[index]);
    categories.push_back(LabelledText(std::move(value), index < labels.size() ? labels[index] : std::string()));
  }
  return categories;
}

Cell ValuesCell(const RQVariable& variable) {
  if (variable.GetKind() == RQVariable::Kind::Categorical) return Categories(variable);
  if (!variable.HasRange() || (IsUnbounded(variable) && variable.GetEncoder().GetBinLabels().empty())) return {};
  return Bins(variable);
}

Cell MissingCell(const RQEncoder& encoder) {
  Cell missing;
  for (const auto& [value, label] : encoder.GetNumMissingValues()) {
    missing.push_back(LabelledText(NumberText(value), label));
  }
  for (const auto& [value, label] : encoder.GetStrMissingValues()) {
    missing.push_back(LabelledText(ItemText(value), label));
  }
  return missing;
}

Cell InvalidCell(const RQEncoder& encoder) {
  if (!encoder.HasInvalidRange()) return {};
  return {RangeText(encoder.GetInvalidLower(), encoder.GetInvalidUpper())};
}

Cell StorageCell(const RQVariable& variable) {
  constexpr std::array<const char*, 7> kWords{"", "integer", "real", "string", "date", "time", "timestamp"};
  const auto code = static_cast<std::size_t>(variable.GetStorageType());
  return code == 0 || code >= kWords.size() ? Cell() : Cell{kWords[code]};
}

Cell RoleCell(const RQVariable& variable) {
  switch (variable.GetRole()) {
    case RQVariable::RoleTarget:
      return {"target"};
    case RQVariable::RoleFrequencyWeight:
      return {"weight"};
    case RQVariable::RoleInput:
      return {"input"};
    case RQVariable::RoleInputField:
      return {"input field"};
    default:
      return {};
  }
}

Cell FlagCell(const RQVariable& variable) {
  return variable.GetFlag() ? Cell{"yes, " + std::to_string(variable.GetCount())} : Cell();
}

Cell TextCell(const std::string& text) { return text.empty() ? Cell() : Cell{Printable(text)}; }

}  // namespace

TextTable MakeVariableTable(const VariableSelection& variables, VariableColumns columns) {
  const bool all = columns == VariableColumns::All;
  using Fit = TextTable::Fit;
  TextTable table(
      {{.title = "#", .alignRight = true},
       {.title = "Name", .fit = Fit::CutText},
       {.title = "Label", .fit = Fit::CutText, .optional = true},
       {.title = "Kind"},
       {.title = "Type"},
       {.title = "Storage", .optional = true},
       {.title = "Role", .optional = true},
       {.title = "Flag, count", .optional = true},
       {.title = "Missing values", .fit = Fit::ShortenList, .optional = true, .beneath = "missing"},
       {.title = "Invalid range", .fit = Fit::CutText, .optional = true, .beneath = "invalid"},
       {.title = "Range, bins or categories", .fit = Fit::ShortenList, .optional = true, .beneath = "values"}});
  std::size_t index = 0;
  for (const RQVariable* const variable : variables) {
    table.AddRow({{std::to_string(index++)},
                  TextCell(variable->GetName()),
                  TextCell(variable->GetLabel()),
                  {KindText(*variable)},
                  {variable->IsString() ? "string" : "numeric"},
                  all ? StorageCell(*variable) : Cell(),
                  all ? RoleCell(*variable) : Cell(),
                  all ? FlagCell(*variable) : Cell(),
                  MissingCell(variable->GetEncoder()),
                  InvalidCell(variable->GetEncoder()),
                  ValuesCell(*variable)});
  }
  return table;
}

}  // namespace rqtool
