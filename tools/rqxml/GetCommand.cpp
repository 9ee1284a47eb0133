#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Command.h"
#include "DisplayText.h"
#include "Document.h"
#include "Failure.h"
#include "Json.h"
#include "ParameterFailure.h"
#include "ParameterTree.h"
#include "ParameterValue.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using Kind = ParameterNode::Kind;
using RQXPrsUtil::RQSettingsParser;

constexpr const char* kFooter =
    "Without --as a parameter is read by its type, and as an array when it has a\n"
    "list; a matrix and a complex parameter are shown whole.\n\n"
    "--scope A/B goes into the complex parameter A and in it into B. A name that\n"
    "holds a / is taken whole where there is one; --scope A --scope B always means\n"
    "two names.\n\n";

const std::map<std::string, ReadAs> kReadings{{"string", ReadAs::String}, {"int", ReadAs::Int},
                                              {"double", ReadAs::Double}, {"bool", ReadAs::Bool},
                                              {"array", ReadAs::Array},   {"matrix", ReadAs::Matrix}};
constexpr const char* kAsType = "type";

// What the options ask for.
struct GetOptions {
  std::string file;
  std::string name;
  std::vector<std::string> scopes;
  std::string as;  // empty to go by the parameter
};

// One parameter, ready to be shown.
struct Answer {
  std::string as;
  std::string text;
  Json value;
};

void RequireUtf8(const std::string& name) {
  if (IsUtf8(name)) return;
  throw Failure(ExitCode::WrongUsage, {.what = "the name \"" + name + "\" is not UTF-8",
                                       .hint = "names of parameters are given in UTF-8, whatever the locale"});
}

// False, and `scope` as it was, when there is no such complex parameter.
bool Enter(RQSettingsParser& parser, Scope& scope, const std::string& name) {
  void* const handle = parser.GetComplexParameter(name.c_str(), scope.handle);
  if (handle == nullptr) return false;
  scope.element = FindInScope(scope, Kind::Complex, name);
  scope.handle = handle;
  scope.names.push_back(name);
  return true;
}

std::vector<std::string> SplitAtSlashes(const std::string& path) {
  std::vector<std::string> names(1);
  for (const char c : path) {
    if (c == '/') {
      names.emplace_back();
    } else {
      names.back() += c;
    }
  }
  return names;
}

Scope FindScope(InputFile& input, const Document& document, const std::vector<std::string>& paths) {
  Scope scope = TopScope(document);
  for (const std::string& path : paths) {
    if (Enter(*document.parser, scope, path)) continue;
    for (const std::string& name : SplitAtSlashes(path)) {
      if (!Enter(*document.parser, scope, name)) throw NoSuchParameter(input, scope, Kind::Complex, name);
    }
  }
  return scope;
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

std::string WordOf(ReadAs as) {
  for (const auto& [word, reading] : kReadings) {
    if (reading == as) return word;
  }
  return {};
}

Answer Read(InputFile& input, const Document& document, const Scope& scope, const std::string& name, ReadAs as) {
  const auto type = document.parser->GetParameterType(name.c_str(), scope.handle);
  const Reading reading = ReadParameter(*document.parser, name, scope.handle, as, type);
  if (!reading.status.IsOK()) throw ParameterFailure(input, scope, name, as, reading);
  return {WordOf(as), JoinLines(PlainLines(reading.value)), ValueToJson(reading.value)};
}

Answer ReadType(InputFile& input, const Document& document, const Scope& scope, const std::string& name) {
  // The parser gives no status with a type, and the same answer for a type that it does not know.
  std::string value;
  const long code = document.parser->GetParameter(name.c_str(), value, scope.handle).GetCode();
  if (code == RQXPrsUtil::ParameterNotFound) throw NoSuchParameter(input, scope, Kind::Parameter, name);
  const std::string word = TypeWord(document.parser->GetParameterType(name.c_str(), scope.handle));
  return {kAsType, word + '\n', word};
}

Answer ReadComplex(InputFile& input, const Document& document, Scope scope, const std::string& name) {
  Enter(*document.parser, scope, name);
  const std::vector<ParameterNode> nodes = ReadParameterTree(input, document, scope);
  return {"complex", TreeText(nodes, 0), TreeToJson(nodes)};
}

// What is of that name: a parameter before a matrix before a complex parameter.
Answer ReadAsItIs(InputFile& input, const Document& document, const Scope& scope, const std::string& name) {
  if (const auto* const parameter = FindInScope(scope, Kind::Parameter, name)) {
    const bool isList = RQXPrsUtil::GetFirstChildElmt(*parameter, "ListValue") != nullptr;
    const auto type = document.parser->GetParameterType(name.c_str(), scope.handle);
    return Read(input, document, scope, name, isList ? ReadAs::Array : ScalarOf(type));
  }
  if (FindInScope(scope, Kind::Matrix, name) != nullptr) return Read(input, document, scope, name, ReadAs::Matrix);
  if (FindInScope(scope, Kind::Complex, name) != nullptr) return ReadComplex(input, document, scope, name);
  throw NoSuchParameter(input, scope, Kind::Parameter, name);
}

Answer Read(InputFile& input, const Document& document, const Scope& scope, const GetOptions& options) {
  if (options.as.empty()) return ReadAsItIs(input, document, scope, options.name);
  if (options.as == kAsType) return ReadType(input, document, scope, options.name);
  return Read(input, document, scope, options.name, kReadings.at(options.as));
}

std::string JsonReport(const InputFile& input, const Scope& scope, const std::string& name, const Answer& answer) {
  Json json;
  json["file"] = input.GetName();
  json["scope"] = scope.names;
  json["name"] = name;
  json["as"] = answer.as;
  json["value"] = answer.value;
  return JsonText(json);
}

Outcome Run(const GetOptions& options, const Request& request) {
  RequireUtf8(options.name);
  for (const std::string& scope : options.scopes) RequireUtf8(scope);
  InputFile input(options.file, request.Files());
  const Document document = ReadSettings(input);
  const Scope scope = FindScope(input, document, options.scopes);
  const Answer answer = Read(input, document, scope, options);
  return {request.json ? JsonReport(input, scope, options.name, answer) : answer.text, {}, ExitCode::Good};
}

std::string CheckAs(const std::string& word) {
  if (word == kAsType || kReadings.count(word) > 0) return {};
  return "\"" + word + "\" is not one of string, int, double, bool, array, matrix, type";
}

}  // namespace

void AddGetCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<GetOptions>();
  CLI::App* const command = app.add_subcommand("get", "Print one parameter of a settings document");
  command->footer(kFooter + command->get_footer());
  command->add_option("FILE", options->file, "the document; - reads standard input")->required()->option_text(" ");
  command->add_option("NAME", options->name, "the parameter")->required()->option_text(" ");
  command
      ->add_option("--scope", options->scopes, "the complex parameter that it stands in; may be\nrepeated to go deeper")
      ->option_text("A/B")
      ->allow_extra_args(false);
  command->add_option("--as", options->as, "how to read it: string, int, double, bool, array,\nmatrix or type")
      ->option_text("FORM")
      ->check(CheckAs);
  AddJson(*command, request);
  AddAllowDtd(*command, request);
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
