#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Command.h"
#include "Failure.h"
#include "Json.h"
#include "StatusTable.h"
#include "Terminal.h"
#include "TextTable.h"

namespace rqtool {

namespace {

const char* FlagWord(bool flag) { return flag ? "true" : "false"; }

Json ToJson(const StatusEntry& entry) {
  Json causes = Json::array();
  for (const std::string_view cause : entry.causes) {
    if (!cause.empty()) causes.push_back(cause);
  }
  return {{"code", entry.code},
          {"flag", entry.flag},
          {"meaning", entry.meaning},
          {"causes", causes},
          {"whatToDo", entry.advice}};
}

std::string OneAsText(const StatusEntry& entry) {
  std::string text = std::to_string(entry.code) + ": " + std::string(entry.meaning) + '\n';
  text += std::string("flag: ") + FlagWord(entry.flag) + "\n\nCauses:\n";
  for (const std::string_view cause : entry.causes) {
    if (!cause.empty()) text += "  - " + std::string(cause) + '\n';
  }
  return text + "\nWhat to do:\n  " + std::string(entry.advice) + '\n';
}

std::string AllAsText() {
  TextTable table({{.title = "Code", .alignRight = true}, {.title = "Flag"}, {.title = "Meaning"}});
  for (const StatusEntry& entry : StatusTable()) {
    table.AddRow({{std::to_string(entry.code)}, {FlagWord(entry.flag)}, {std::string(entry.meaning)}});
  }
  return table.Render(TerminalWidth()) + "\nrqxml status CODE tells the causes of a code and what to do.\n";
}

std::string AllAsJson() {
  Json codes = Json::array();
  for (const StatusEntry& entry : StatusTable()) codes.push_back(ToJson(entry));
  return JsonText({{"codes", codes}});
}

const StatusEntry& Find(const std::string& code) {
  long number = 0;
  const char* const end = code.data() + code.size();
  const auto [stop, error] = std::from_chars(code.data(), end, number);
  if (error == std::errc::invalid_argument || stop != end) {
    throw Failure(ExitCode::WrongUsage, {.what = "CODE is a whole number, which \"" + code + "\" is not",
                                         .hint = "rqxml status --help tells what it takes"});
  }
  if (error == std::errc() && number == 0) return GoodStatus();
  const StatusEntry* const entry = error == std::errc() ? FindStatus(number) : nullptr;
  if (entry != nullptr) return *entry;
  throw Failure(ExitCode::WrongUsage,
                {.what = "there is no status code " + code, .hint = "rqxml status lists all of them"});
}

std::string Report(const std::optional<std::string>& code, bool json) {
  if (!code) return json ? AllAsJson() : AllAsText();
  const StatusEntry& entry = Find(*code);
  return json ? JsonText(ToJson(entry)) : OneAsText(entry);
}

}  // namespace

void AddStatusCommand(CLI::App& app, Request& request) {
  const auto code = std::make_shared<std::optional<std::string>>();
  CLI::App* const command = app.add_subcommand("status", "Explain the status codes of the library");
  command->add_option("CODE", *code, "the code to explain; all codes when left out")->option_text(" ");
  AddJson(*command, request);
  command->callback([code, &request] {
    request.run = [code, &request] { return Outcome{Report(*code, request.json), {}, ExitCode::Good}; };
  });
}

}  // namespace rqtool
