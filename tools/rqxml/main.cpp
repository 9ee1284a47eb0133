#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "Command.h"
#include "DisplayText.h"
#include "ExitCode.h"
#include "Failure.h"
#include "Terminal.h"
#include "XmlPlatform.h"
#include "rqxml/common/RQVersion.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

constexpr const char* kOutOfMemory = "rqxml: there is not enough memory for this document\n";

std::string ExitCodeHelp() {
  std::string text = "Exit codes:\n";
  for (const ExitCodeEntry& entry : kExitCodes) {
    text += "  " + std::to_string(static_cast<int>(entry.code)) + "  " + std::string(entry.meaning) + '\n';
  }
  return text;
}

ExitCode Report(const Failure& failure) {
  WriteToStderr(Describe(failure.GetProblem()));
  return failure.GetExitCode();
}

ExitCode ReportXmlLibrary(const XMLCh* message) {
  return Report(Failure(ExitCode::Refused, {.what = "the XML library failed: " + RQXPrsUtil::ToUTF8(message),
                                            .hint = "check that the file is what it should be"}));
}

ExitCode ReportOutOfMemory() {
  WriteToStderr(kOutOfMemory);
  return ExitCode::Refused;
}

ExitCode Print(const Outcome& outcome) {
  if (outcome.outputLost) return ExitCode::FileFailed;
  std::string notes;
  for (const std::string& note : outcome.notes) notes += "rqxml: note: " + note + '\n';
  const bool reported = WriteToStderr(notes + outcome.report);
  return WriteToStdout(outcome.output) && reported ? outcome.exitCode : ExitCode::FileFailed;
}

// Lets no exception of the XML library out: they must be told while it is up.
ExitCode Perform(const Request& request) {
  try {
    return Print(request.run());
  } catch (const Failure& e) {
    return Report(e);
  } catch (const xercesc::OutOfMemoryException&) {
    return ReportOutOfMemory();
  } catch (const std::bad_alloc&) {
    return ReportOutOfMemory();
  } catch (const xercesc::XMLException& e) {
    return ReportXmlLibrary(e.getMessage());
  } catch (const xercesc::SAXException& e) {
    return ReportXmlLibrary(e.getMessage());
  } catch (const xercesc::DOMException& e) {
    return ReportXmlLibrary(e.getMessage());
  }
}

// The first word that looks like an option and is none of `subCommand`.
std::optional<std::string> FindUnknownOption(const CLI::App& subCommand) {
  for (const std::string& word : subCommand.remaining()) {
    if (word == "--") return std::nullopt;
    if (word.size() > 1 && word.front() == '-') return word;
  }
  return std::nullopt;
}

// What the parser says, in plain words where it has none.
std::string Complaint(const CLI::ParseError& e) {
  std::string text = e.what();
  const std::size_t count = text.find(": At Most 1 required but received ");
  if (count == std::string::npos) return text;
  return text.substr(0, count) + " may be given once only";
}

// --help and --version come as exceptions too.
ExitCode AnswerCommandLine(const CLI::App& app, const CLI::ParseError& e) {
  std::ostringstream out;
  std::ostringstream err;
  if (app.exit(e, out, err) == 0) return Print({.output = out.str()});
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  const std::vector<std::string> unknown = app.remaining();
  std::string what = Complaint(e);
  if (chosen.empty() && !unknown.empty()) what = "there is no sub-command or option \"" + unknown.front() + '"';
  const std::string command = chosen.empty() ? "rqxml" : "rqxml " + chosen.front()->get_name();
  std::string hint = command + " --help tells what it takes";
  // A word that was not understood comes before what is missing for want of it.
  const std::optional<std::string> option = chosen.empty() ? std::nullopt : FindUnknownOption(*chosen.front());
  if (option) {
    what = command + " has no option \"" + *option + '"';
    if (chosen.front()->get_option_no_throw("FILE") != nullptr) {
      hint += "; a file of that name is ./" + *option + ", or stands behind --";
    }
  }
  return Report(Failure(ExitCode::WrongUsage, {.what = what, .hint = hint}));
}

// The parser takes --name= for --name, and the next word for its value.
std::optional<std::string> FindEmptyValue(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--") return std::nullopt;
    if (word.substr(0, 2) == "--" && word.find('=') == word.size() - 1) return std::string(word);
  }
  return std::nullopt;
}

ExitCode Run(int argc, char** argv) {
  CLI::App app(
      "Reads and combines the XML documents of a statistics and data-mining engine, and\nconverts text between "
      "encodings.",
      "rqxml");
  app.set_version_flag("--version", std::string("rqxml ") + RQXML_VERSION_STRING);
  app.footer(ExitCodeHelp());
  app.get_formatter()->column_width(20);
  app.require_subcommand(1);
  Request request;
  AddVarsCommand(app, request);
  AddSettingsCommand(app, request);
  AddGetCommand(app, request);
  AddStatsCommand(app, request);
  AddCombineCommand(app, request);
  AddStatusCommand(app, request);
  AddRecodeCommand(app, request);
  AddEncodingsCommand(app, request);
  if (const std::optional<std::string> word = FindEmptyValue(argc, argv)) {
    return Report(Failure(ExitCode::WrongUsage, {.what = *word + " gives no value",
                                                 .hint = "write the value behind it, as in --fields=a,b,c; rqxml "
                                                         "--help tells more"}));
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return AnswerCommandLine(app, e);
  }
  try {
    const XmlPlatform platform(request.Dtds());
    return Perform(request);
  } catch (const Failure& e) {
    return Report(e);
  }
}

}  // namespace

}  // namespace rqtool

int main(int argc, char** argv) {
  // The reader of a pipe may leave at any time: the write then fails, and nothing needs to be said about it.
  std::signal(SIGPIPE, SIG_IGN);
  // A write beyond the permitted size of a file fails too, and is told as such.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  try {
    return static_cast<int>(rqtool::Run(argc, argv));
  } catch (const std::bad_alloc&) {
    rqtool::WriteToStderr(rqtool::kOutOfMemory);
  } catch (const std::exception& e) {
    rqtool::WriteToStderr("rqxml: " + rqtool::Printable(e.what()) + '\n');
  } catch (...) {
    rqtool::WriteToStderr("rqxml: an unknown error\n");
  }
  return static_cast<int>(rqtool::ExitCode::Refused);
}
