#include <memory>
#include <string>

#include "Command.h"
#include "DisplayText.h"
#include "Document.h"
#include "DocumentVariables.h"
#include "Json.h"
#include "ParameterTree.h"
#include "Roles.h"
#include "Terminal.h"
#include "VariableJson.h"
#include "VariableTable.h"

namespace rqtool {

namespace {

struct SettingsOptions {
  std::string file;
  bool wide = false;
};

// All of a settings document.
struct Settings {
  std::vector<ParameterNode> parameters;
  std::vector<Role> roles;
  std::unique_ptr<RQMTD_NAMESPACE::RQVarList> variables;
  std::unique_ptr<RQMTD_NAMESPACE::RQVarList> derived;
};

Settings Read(InputFile& input, const Document& document) {
  return {ReadParameterTree(input, document, TopScope(document)), ReadRoles(*document.parser),
          ReadVariables(input, document, {}, false), ReadDerivedVariables(input, document)};
}

std::string Section(const std::string& title, const std::string& content) {
  return content.empty() ? std::string() : '\n' + title + ":\n" + content;
}

std::string TableText(const RQMTD_NAMESPACE::RQVarList& list, bool wide) {
  if (list.Size() == 0) return {};
  return '\n' + MakeVariableTable(SelectVariables(list, {})).Render(wide ? std::nullopt : TerminalWidth());
}

std::string TextReport(const InputFile& input, const Document& document, const Settings& settings, bool wide) {
  return Printable(input.GetDisplayName()) + ": " + std::string(KindTitle(document.kind)) + '\n' +
         Section("Parameters", TreeText(settings.parameters, 2)) + Section("Roles", RolesText(settings.roles)) +
         Section("Variables", TableText(*settings.variables, wide)) +
         Section("Derived variables", TableText(*settings.derived, wide));
}

std::string JsonReport(const InputFile& input, const Document& document, const Settings& settings) {
  Json json;
  json["file"] = input.GetName();
  json["kind"] = KindWord(document.kind);
  json["parameters"] = TreeToJson(settings.parameters);
  json["roles"] = RolesToJson(settings.roles);
  json["variables"] = VariablesToJson(SelectVariables(*settings.variables, {}));
  json["derived"] = VariablesToJson(SelectVariables(*settings.derived, {}));
  return JsonText(json);
}

Outcome Run(const SettingsOptions& options, const Request& request) {
  InputFile input(options.file, request.Files());
  const Document document = ReadSettings(input);
  const Settings settings = Read(input, document);
  return {request.json ? JsonReport(input, document, settings) : TextReport(input, document, settings, options.wide),
          {},
          ExitCode::Good};
}

}  // namespace

void AddSettingsCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<SettingsOptions>();
  CLI::App* const command = app.add_subcommand("settings", "Show what a settings document holds");
  command->add_option("FILE", options->file, "the document; - reads standard input")->required()->option_text(" ");
  command->add_flag("--wide", options->wide, "shorten nothing to the width of the terminal");
  AddJson(*command, request);
  AddAllowDtd(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
