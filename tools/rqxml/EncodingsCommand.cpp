#include <unicode/ucnv.h>

#include <array>
#include <clocale>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "DisplayText.h"
#include "Encoding.h"
#include "EncodingFacts.h"
#include "Failure.h"
#include "Json.h"
#include "Terminal.h"
#include "TextTable.h"

namespace rqtool {

namespace {

using RQMEM_NAMESPACE::QULTMBConverterHandle;

// Those for which the library has a name of its own.
constexpr std::array kCodePages{932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 28591, 65001};

struct EncodingsOptions {
  std::optional<std::string> name;
  bool all = false;
  bool wide = false;
};

struct ProcessEncodings {
  std::string system;
  std::string converter;
  bool utf8 = true;
};

// The system encoding is that of the user's locale, which a program has to ask for.
ProcessEncodings FindProcessEncodings() {
  std::setlocale(LC_CTYPE, "");
  ProcessEncodings found;
  found.system = RQMEM_NAMESPACE::SystemEncoding();
  const UConverter* const converter = RQMEM_NAMESPACE::QULTMBGetDefaultConverter();
  if (converter != nullptr) found.converter = CanonicalName(*converter);
  found.utf8 = RQMEM_NAMESPACE::qUTF8mode() != 0;
  return found;
}

EncodingFacts FactsAbout(const std::string& name) { return FactsOf(ConverterOf(OpenEncoding(name))); }

std::vector<EncodingFacts> AllEncodings() {
  std::vector<EncodingFacts> all;
  for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const QULTMBConverterHandle converter(RQMEM_NAMESPACE::QULTMBConverterNew_8(ucnv_getAvailableName(i)));
    if (converter) all.push_back(FactsOf(ConverterOf(converter)));
  }
  return all;
}

TextTable::Cell TextCell(const std::string& text) {
  return text.empty() ? TextTable::Cell{} : TextTable::Cell{Printable(text)};
}

std::vector<TextTable::Column> FactColumns() {
  return {{.title = "Encoding"},
          {.title = "IANA name"},
          {.title = "MIME name"},
          {.title = "Other names", .fit = TextTable::Fit::ShortenList}};
}

// The IANA and the MIME name have columns of their own.
TextTable::Row FactCells(const EncodingFacts& facts) {
  TextTable::Cell others;
  for (const std::string& alias : facts.aliases) {
    if (alias != facts.iana && alias != facts.mime) others.push_back(Printable(alias));
  }
  return {TextCell(facts.name), TextCell(facts.iana), TextCell(facts.mime), others};
}

std::string CodePagesAsText(bool wide) {
  const ProcessEncodings process = FindProcessEncodings();
  std::vector<TextTable::Column> columns = FactColumns();
  columns.insert(columns.begin(), {.title = "Code page", .alignRight = true});
  TextTable table(columns);
  for (const int number : kCodePages) {
    TextTable::Row row = FactCells(FactsAbout(std::to_string(number)));
    row.insert(row.begin(), {std::to_string(number)});
    table.AddRow(row);
  }
  return "System encoding:    " + Printable(process.system) + "\nDefault converter:  " + Printable(process.converter) +
         "\nUTF-8 mode:         " + (process.utf8 ? "on" : "off") + "\n\n" +
         table.Render(wide ? std::nullopt : TerminalWidth()) +
         "\nOther code pages are tried as windows-NUMBER and cpNUMBER. rqxml encodings --all\n"
         "lists every encoding, rqxml encodings NAME tells more about one.\n";
}

std::string CodePagesAsJson() {
  const ProcessEncodings process = FindProcessEncodings();
  Json pages = Json::array();
  for (const int number : kCodePages) {
    Json page = {{"number", number}};
    page.update(FactsToJson(FactsAbout(std::to_string(number))));
    pages.push_back(page);
  }
  return JsonText({{"systemEncoding", process.system},
                   {"defaultConverter", process.converter},
                   {"utf8Mode", process.utf8},
                   {"codePages", pages}});
}

std::string AllAsText(bool wide) {
  TextTable table(FactColumns());
  for (const EncodingFacts& facts : AllEncodings()) table.AddRow(FactCells(facts));
  return table.Render(wide ? std::nullopt : TerminalWidth());
}

std::string AllAsJson() {
  Json encodings = Json::array();
  for (const EncodingFacts& facts : AllEncodings()) encodings.push_back(FactsToJson(facts));
  return JsonText({{"encodings", encodings}});
}

std::string OneAsText(const std::string& given) {
  const EncodingFacts facts = FactsAbout(given);
  std::string text = Printable(given) + ": " + facts.name + '\n';
  const auto add = [&text](const char* title, const std::string& value) {
    if (!value.empty()) text += std::string(title) + ": " + value + '\n';
  };
  add("IANA name", facts.iana);
  add("MIME name", facts.mime);
  add("type", facts.type);
  add("bytes", "at least " + std::to_string(facts.minBytes) + " for a character, at most " +
                   std::to_string(facts.maxBytes) + " for a UTF-16 unit");
  add("substitute", facts.substitute);
  if (!facts.aliases.empty()) text += "\nAliases:\n";
  for (const std::string& alias : facts.aliases) text += "  - " + Printable(alias) + '\n';
  return text;
}

std::string OneAsJson(const std::string& given) {
  Json json = {{"given", given}};
  json.update(FactsToJson(FactsAbout(given)));
  return JsonText(json);
}

Outcome Run(const EncodingsOptions& options, bool json) {
  if (options.name && options.all) {
    throw Failure(ExitCode::WrongUsage, {.what = "--all goes with no NAME", .hint = "leave out one of them"});
  }
  if (options.name) return {.output = json ? OneAsJson(*options.name) : OneAsText(*options.name)};
  if (options.all) return {.output = json ? AllAsJson() : AllAsText(options.wide)};
  return {.output = json ? CodePagesAsJson() : CodePagesAsText(options.wide)};
}

}  // namespace

void AddEncodingsCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<EncodingsOptions>();
  CLI::App* const command = app.add_subcommand("encodings", "Tell which encodings there are");
  command
      ->add_option("NAME", options->name,
                   "the encoding to tell about, a code-page number or a name;\n"
                   "the code pages when left out")
      ->option_text(" ");
  command->add_flag("--all", options->all, "list every encoding instead");
  command->add_flag("--wide", options->wide, "shorten nothing to the width of the terminal");
  AddJson(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request.json); }; });
}

}  // namespace rqtool
