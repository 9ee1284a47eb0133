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
#include "Failure.h"
#include "FieldFailure.h"
#include "Json.h"
#include "Terminal.h"
#include "VariableJson.h"
#include "VariableTable.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::RQVarList;

constexpr std::string_view kFooter =
    "A name with a comma in it, or a double quote at its beginning, stands in double\n"
    "quotes, each quote in it twice: --fields 'age,\"height, cm\"'.\n\n"
    "With --bins each continuous field that is listed must have bins.\n\n";

// Names that no field has are told one by one up to this many.
constexpr std::size_t kMostNotes = 10;

// What the options ask for.
struct VarsOptions {
  std::string file;
  std::vector<std::string> fieldLists;  // as given, one for each --fields
  bool bins = false;
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

void FillVariables(RQVarList& list, InputFile& input, const Document& document, const std::vector<std::string>& names,
                   bool bins) {
  const RQCommon::RQStatus status = document.parser->FillVarList(list, names, bins);
  if (!status.IsOK()) throw FieldFailure(input, *document.parser, status, names, list.Size());
}

std::vector<std::string> NotesOnUnknownNames(const std::vector<std::string>& names, const RQVarList& list,
                                             const InputFile& input) {
  std::unordered_set<std::string> known;
  for (int i = 0; i < list.Size(); ++i) known.insert(list.GetVarAt(i)->GetName());
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

std::string Heading(const InputFile& input, const Document& document, const RQVarList& list) {
  std::string heading = Printable(input.GetDisplayName()) + ": " + std::string(KindTitle(document.kind)) + ", ";
  return heading + std::to_string(list.Size()) + (list.Size() == 1 ? " variable\n" : " variables\n");
}

std::string TextReport(const InputFile& input, const Document& document, const RQVarList& list, bool wide) {
  std::string text = Heading(input, document, list);
  if (list.Size() > 0) text += '\n' + MakeVariableTable(list).Render(wide ? std::nullopt : TerminalWidth());
  return text;
}

std::string JsonReport(const InputFile& input, const Document& document, const RQVarList& list) {
  Json json;
  json["file"] = input.GetName();
  json["kind"] = KindWord(document.kind);
  json["variables"] = VariablesToJson(list);
  return JsonText(json);
}

Outcome Run(const VarsOptions& options, const Request& request) {
  const std::vector<std::string> names = FieldNames(options.fieldLists);
  InputFile input(options.file, request.Files());
  const Document document = ReadDocument(input);
  RQVarList list;
  FillVariables(list, input, document, names, options.bins);

  Outcome outcome;
  outcome.notes = NotesOnUnknownNames(names, list, input);
  outcome.output = request.json ? JsonReport(input, document, list) : TextReport(input, document, list, options.wide);
  return outcome;
}

}  // namespace

void AddVarsCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<VarsOptions>();
  CLI::App* const command = app.add_subcommand("vars", "List the variables that a PMML document describes");
  command->footer(std::string(kFooter) + command->get_footer());
  command->add_option("FILE", options->file, "the document; - reads standard input")->required()->option_text(" ");
  command->add_option("--fields", options->fieldLists, "only these fields, as in a,b,c; may be repeated")
      ->option_text("NAMES")
      ->allow_extra_args(false);
  command->add_flag("--bins", options->bins, "take the bins of continuous fields from the document");
  command->add_flag("--wide", options->wide, "shorten nothing to the width of the terminal");
  AddJson(*command, request);
  AddAllowDtd(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
