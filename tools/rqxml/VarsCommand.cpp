#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "CommaList.h"
#include "Command.h"
#include "DisplayText.h"
#include "Document.h"
#include "DocumentVariables.h"
#include "Failure.h"
#include "Json.h"
#include "Terminal.h"
#include "VariableJson.h"
#include "VariableSelection.h"
#include "VariableTable.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::RQVarList;

constexpr std::string_view kFooter =
    "A name with a comma in it, or a double quote at its beginning, stands in double\n"
    "quotes, each quote in it twice: --fields 'age,\"height, cm\"'.\n\n"
    "With --bins each continuous field that is listed must have bins; of a settings\n"
    "document each continuous field, listed or not.\n\n";

// Names that no field has are told one by one up to this many.
constexpr std::size_t kMostNotes = 10;

// What the options ask for.
struct VarsOptions {
  std::string file;
  std::vector<std::string> fieldLists;  // as given, one for each --fields
  bool bins = false;
  bool derived = false;
  bool fieldRoles = false;
  bool flag = false;
  std::optional<int> count;
  bool wide = false;
};

Failure WrongFields(const std::string& list, const std::string& what, const std::string& hint) {
  return Failure(ExitCode::WrongUsage, {.what = "--fields " + list + ": " + what, .hint = hint});
}

std::vector<std::string> FieldNames(const std::vector<std::string>& lists) {
  std::vector<std::string> names;
  for (const std::string& list : lists) {
    std::optional<std::vector<std::string>> items = SplitCommaList(list);
    if (!items) {
      throw WrongFields(list, "the quotes do not match",
                        "a name with a comma stands in double quotes, each quote in it twice");
    }
    for (const std::string& item : *items) {
      if (item.empty()) throw WrongFields(list, "a field name is empty", "give names as in a,b,c");
    }
    std::move(items->begin(), items->end(), std::back_inserter(names));
  }
  return names;
}

// What is shown of a document.
struct Variables {
  std::unique_ptr<RQVarList> list;
  std::unique_ptr<RQVarList> derivedList;  // null unless asked for
  VariableSelection shown;
  VariableSelection derivedShown;
};

Failure Unfit(const InputFile& input, const std::string& what, const std::string& hint) {
  return Failure(ExitCode::Refused, {.file = input.GetDisplayName(), .what = what, .hint = hint});
}

// Options that mean nothing for this kind of document are no use, and likely a mistake.
void RequireFit(const InputFile& input, const Document& document, const VarsOptions& options) {
  if (document.kind == DocumentKind::DataModel) {
    if (options.bins) throw Unfit(input, "a data-model document defines no bins", "leave out --bins");
    return;
  }
  for (const auto& [given, name] : {std::pair{options.fieldRoles, "--field-roles"}, {options.flag, "--flag"}}) {
    if (!given) continue;
    const std::string option = name;
    throw Unfit(input, "is no data-model document, and " + option + " is for those alone", "leave out " + option);
  }
}

std::unique_ptr<RQVarList> ReadList(InputFile& input, const Document& document, const std::vector<std::string>& names,
                                    const VarsOptions& options) {
  if (document.kind != DocumentKind::DataModel) return ReadVariables(input, document, names, options.bins);
  return ReadDataModelVariables(
      input, document, {.fieldRoles = options.fieldRoles, .flag = options.flag, .count = options.count.value_or(-1)});
}

Variables Read(InputFile& input, const Document& document, const std::vector<std::string>& names,
               const VarsOptions& options) {
  RequireFit(input, document, options);
  Variables variables;
  variables.list = ReadList(input, document, names, options);
  variables.shown = SelectVariables(*variables.list, names);
  if (!options.derived) return variables;
  variables.derivedList = ReadDerivedVariables(input, document);
  variables.derivedShown = SelectVariables(*variables.derivedList, names);
  return variables;
}

std::vector<std::string> NotesOnUnknownNames(const std::vector<std::string>& names, const Variables& variables,
                                             const InputFile& input) {
  std::unordered_set<std::string> known;
  for (const auto* const variable : variables.shown) known.insert(variable->GetName());
  for (const auto* const variable : variables.derivedShown) known.insert(variable->GetName());
  std::vector<std::string> notes;
  std::size_t unknown = 0;
  for (const std::string& name : names) {
    if (!known.insert(name).second || ++unknown > kMostNotes) continue;
    notes.push_back(Printable("no field is named \"" + name + "\" in " + input.GetDisplayName()));
  }
  if (unknown > kMostNotes) {
    const std::size_t more = unknown - kMostNotes;
    notes.push_back(std::to_string(more) + (more == 1 ? " more name of --fields belongs to no field"
                                                      : " more names of --fields belong to no field"));
  }
  return notes;
}

std::string Count(std::size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string TextReport(const InputFile& input, const Document& document, const Variables& variables, bool wide) {
  const std::optional<std::size_t> width = wide ? std::nullopt : TerminalWidth();
  const auto columns = document.kind == DocumentKind::DataModel ? VariableColumns::All : VariableColumns::Usual;
  const std::string start = Printable(input.GetDisplayName()) + ": " + std::string(KindTitle(document.kind)) + ", ";
  std::string text = start + Count(variables.shown.size(), "variable");
  if (variables.derivedList) text += " and " + Count(variables.derivedShown.size(), "derived variable");
  text += '\n';
  if (!variables.shown.empty()) text += '\n' + MakeVariableTable(variables.shown, columns).Render(width);
  if (!variables.derivedShown.empty()) {
    text += "\nDerived variables:\n\n" + MakeVariableTable(variables.derivedShown, columns).Render(width);
  }
  return text;
}

std::string JsonReport(const InputFile& input, const Document& document, const Variables& variables) {
  Json json;
  json["file"] = input.GetName();
  json["kind"] = KindWord(document.kind);
  json["variables"] = VariablesToJson(variables.shown);
  if (variables.derivedList) json["derived"] = VariablesToJson(variables.derivedShown);
  return JsonText(json);
}

void RequireFlagWithCount(const VarsOptions& options) {
  if (options.flag == options.count.has_value()) return;
  throw Failure(ExitCode::WrongUsage, {.what = options.flag ? "--flag needs --count" : "--count needs --flag",
                                       .hint = "give both, as in --flag --count 5, or none of them"});
}

Outcome Run(const VarsOptions& options, const Request& request) {
  RequireFlagWithCount(options);
  const std::vector<std::string> names = FieldNames(options.fieldLists);
  InputFile input(options.file, request.Files());
  const Document document = ReadDocument(input);
  const Variables variables = Read(input, document, names, options);

  Outcome outcome;
  outcome.notes = NotesOnUnknownNames(names, variables, input);
  outcome.output =
      request.json ? JsonReport(input, document, variables) : TextReport(input, document, variables, options.wide);
  return outcome;
}

}  // namespace

void AddVarsCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<VarsOptions>();
  CLI::App* const command = app.add_subcommand("vars", "List the variables that a document describes");
  command->footer(std::string(kFooter) + command->get_footer());
  command->add_option("FILE", options->file, "the document; - reads standard input")->required()->option_text(" ");
  command->add_option("--fields", options->fieldLists, "only these fields, as in a,b,c; may be repeated")
      ->option_text("NAMES")
      ->allow_extra_args(false);
  command->add_flag("--bins", options->bins, "take the bins of continuous fields from the document");
  command->add_flag("--derived", options->derived, "list the derived fields of a settings document too");
  command->add_flag("--field-roles", options->fieldRoles, "of a data model: input fields get role 5, not 4");
  command->add_flag("--flag", options->flag, "of a data model: continuous variables get the flag\nand the count");
  command->add_option("--count", options->count, "the count that goes with --flag; from 2 on")->option_text("N");
  command->add_flag("--wide", options->wide, "shorten nothing to the width of the terminal");
  AddJson(*command, request);
  AddAllowDtd(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
