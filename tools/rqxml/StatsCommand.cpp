#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "Command.h"
#include "Document.h"
#include "Failure.h"
#include "FieldPicture.h"
#include "FileNames.h"
#include "HtmlReport.h"
#include "Json.h"
#include "Models.h"
#include "OutputFile.h"
#include "StatisticsJson.h"
#include "StatisticsReport.h"
#include "StatisticsText.h"
#include "Terminal.h"

namespace rqtool {

namespace {

constexpr const char* kFooter =
    "Models count from 1, in the order of the document. A modelName is taken before\n"
    "a number. Fields whose statistics cannot be read are told with their status;\n"
    "all others are shown, and the exit code is 1.\n\n";

// What the options ask for.
struct StatsOptions {
  std::string file;
  std::optional<std::string> model;
  std::vector<std::string> fields;
  std::string pictures;  // the folder; empty for none
  std::string page;      // the file; empty for none
  bool contract = false;
  bool wide = false;

  StatisticsReading Reading() const { return contract ? StatisticsReading::Strict : StatisticsReading::Lenient; }
};

bool IsWanted(const StatsOptions& options, const ReportedField& field) {
  const std::optional<std::string>& name = field.statistics.field;
  return name && std::find(options.fields.begin(), options.fields.end(), *name) != options.fields.end();
}

void RequireField(const StatisticsReport& report, const std::string& name) {
  const auto& fields = report.fields;
  if (std::any_of(fields.begin(), fields.end(),
                  [&name](const ReportedField& field) { return field.statistics.field == name; })) {
    return;
  }
  throw Failure(ExitCode::Refused, {.file = report.input->GetDisplayName(),
                                    .element = TitleOf(report.model),
                                    .what = "has no statistics of a field \"" + name + '"',
                                    .hint = "without --field all fields that it has statistics of are shown"});
}

void KeepWanted(const StatsOptions& options, StatisticsReport& report) {
  if (options.fields.empty()) return;
  for (const std::string& name : options.fields) RequireField(report, name);
  const auto unwanted = [&options](const ReportedField& field) { return !IsWanted(options, field); };
  report.fields.erase(std::remove_if(report.fields.begin(), report.fields.end(), unwanted), report.fields.end());
}

std::string NoteOnBad(std::size_t bad, std::size_t all) {
  if (bad == 0) return {};
  return "the statistics of " + std::to_string(bad) + " of " + std::to_string(all) +
         (all == 1 ? " field cannot be read" : " fields cannot be read");
}

void RequireOtherFile(const InputFile& input, const char* option, const std::string& file) {
  if (!IsSameFile(input.GetName(), file)) return;
  throw Failure(ExitCode::WrongUsage,
                {.what = std::string(option) + ": " + file + " is the file to read", .hint = "name another one"});
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && std::filesystem::is_directory(folder, error)) return;
  throw Failure(ExitCode::FileFailed,
                {.file = folder,
                 .what = "is no folder and cannot be made one" + (error ? ": " + error.message() : std::string()),
                 .hint = "name a folder, or one that can be made"});
}

void WritePictures(const StatsOptions& options, StatisticsReport& report) {
  MakeFolder(options.pictures);
  FileNames names(".svg");
  for (ReportedField& field : report.fields) {
    if (field.problem) continue;
    const std::string name = names.Make(*field.statistics.field);
    field.picture = (std::filesystem::path(options.pictures) / name).string();
    RequireOtherFile(*report.input, "--svg", field.picture);
    WriteWholeFile(field.picture, FieldPicture(field.statistics, PictureUse::File));
  }
}

// The page is about the whole document, whatever model and fields were asked for.
void WritePage(const StatsOptions& options, InputFile& input, const Document& document,
               const std::vector<Model>& models) {
  std::vector<StatisticsReport> reports;
  for (const Model& model : models) {
    reports.push_back(MakeStatisticsReport(input, document, model, models.size(), options.Reading()));
  }
  RequireOtherFile(input, "--html", options.page);
  WriteWholeFile(options.page, HtmlReport(input.GetDisplayName(), ReadReadableVariables(input, document), reports));
}

Outcome Run(const StatsOptions& options, const Request& request) {
  InputFile input(options.file, request.Files());
  const Document document = ReadModelDocument(input);
  const std::vector<Model> models = FindModels(document);
  const Model& model = ChooseModel(input, models, options.model);
  StatisticsReport report = MakeStatisticsReport(input, document, model, models.size(), options.Reading());
  KeepWanted(options, report);
  if (!options.pictures.empty()) WritePictures(options, report);
  if (!options.page.empty()) WritePage(options, input, document, models);

  Outcome outcome;
  const std::size_t bad = CountBad(report);
  if (bad > 0) {
    outcome.notes.push_back(NoteOnBad(bad, report.fields.size()));
    outcome.exitCode = ExitCode::Refused;
  }
  outcome.output = request.json ? JsonText(StatisticsToJson(report))
                                : StatisticsText(report, options.wide ? std::nullopt : TerminalWidth());
  return outcome;
}

}  // namespace

void AddStatsCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<StatsOptions>();
  CLI::App* const command = app.add_subcommand("stats", "Show the statistics of the fields of a model");
  command->footer(kFooter + command->get_footer());
  command->add_option("FILE", options->file, "the document; - reads standard input")->required()->option_text(" ");
  command->add_option("--model", options->model, "the model, by its name or its number; else the first")
      ->option_text("NAME");
  command->add_option("--field", options->fields, "only this field; may be repeated")
      ->option_text("NAME")
      ->allow_extra_args(false);
  command->add_option("--svg", options->pictures, "write a picture of each field into this folder")->option_text("DIR");
  command->add_option("--html", options->page, "write a page about the whole document")->option_text("FILE");
  command->add_flag("--contract", options->contract, "read only the form that the library contracts for");
  command->add_flag("--wide", options->wide, "shorten nothing to the width of the terminal");
  AddJson(*command, request);
  AddAllowDtd(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
