#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "rqxml/common/RQVersion.h"
#include "tests/support/files.h"
#include "tests/tool/run_tool.h"

using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::ToolResult;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

namespace {

const std::vector<std::vector<std::string>> kHelpCalls{
    {"--help"},           {"vars", "--help"},   {"settings", "--help"},
    {"get", "--help"},    {"stats", "--help"},  {"combine", "--help"},
    {"status", "--help"}, {"recode", "--help"}, {"encodings", "--help"}};

std::set<std::string> LongOptions(const std::string& text) {
  const std::regex pattern("--[a-z][a-z-]*");
  std::set<std::string> options;
  for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end; ++i) options.insert(i->str());
  return options;
}

// Without the escapes that keep hyphens and backslashes as they are.
std::string ManPage() { return std::regex_replace(ReadFile(SourceFile("docs/rqxml.1")), std::regex(R"(\\-)"), "-"); }

TEST(CommandLine, HelpOnEveryLevelGoesToStandardOutputAndTellsTheExitCodes) {
  for (const auto& call : kHelpCalls) {
    const ToolResult result = RunTool(call);
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(result.out, HasSubstr("Exit codes:\n  0  "));
    for (const char* code : {"\n  1  ", "\n  2  ", "\n  3  ", "\n  4  "}) EXPECT_THAT(result.out, HasSubstr(code));
  }
}

TEST(CommandLine, HelpFitsAnEightyColumnTerminal) {
  for (const auto& call : kHelpCalls) {
    std::istringstream lines(RunTool(call).out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  }
}

TEST(CommandLine, HelpNamesEachOptionOfVars) {
  const std::string help = RunTool({"vars", "--help"}).out;
  for (const char* option : {"FILE", "--fields NAMES", "--bins", "--derived", "--wide", "--json", "--allow-dtd"}) {
    EXPECT_THAT(help, HasSubstr(option));
  }
}

TEST(CommandLine, HelpNamesEachOptionOfSettingsAndOfGet) {
  const std::string settings = RunTool({"settings", "--help"}).out;
  for (const char* option : {"FILE", "--wide", "--json", "--allow-dtd"}) EXPECT_THAT(settings, HasSubstr(option));
  const std::string get = RunTool({"get", "--help"}).out;
  for (const char* option : {"FILE", "NAME", "--scope A/B", "--as FORM", "--json", "--allow-dtd"}) {
    EXPECT_THAT(get, HasSubstr(option));
  }
}

TEST(CommandLine, HelpNamesEachOptionOfStatsAndThoseOfVarsForDataModels) {
  const std::string stats = RunTool({"stats", "--help"}).out;
  for (const char* option : {"FILE", "--model NAME", "--field NAME", "--svg DIR", "--html FILE", "--contract", "--wide",
                             "--json", "--allow-dtd"}) {
    EXPECT_THAT(stats, HasSubstr(option));
  }
  const std::string vars = RunTool({"vars", "--help"}).out;
  for (const char* option : {"--field-roles", "--flag", "--count N"}) EXPECT_THAT(vars, HasSubstr(option));
}

TEST(CommandLine, HelpNamesEachOptionOfRecodeAndOfEncodings) {
  const std::string recode = RunTool({"recode", "--help"}).out;
  for (const char* option : {"IN", "OUT", "--from ENC", "--to ENC", "--strict", "--quiet", "--json"}) {
    EXPECT_THAT(recode, HasSubstr(option));
  }
  const std::string encodings = RunTool({"encodings", "--help"}).out;
  for (const char* option : {"NAME", "--all", "--wide", "--json"}) EXPECT_THAT(encodings, HasSubstr(option));
}

TEST(CommandLine, VersionIsThatOfTheLibrary) {
  const ToolResult result = RunTool({"--version"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.out, "rqxml " RQXML_VERSION_STRING "\n");
}

TEST(CommandLine, WrongUsageGivesTwoAndAWayToTheHelpOnStandardErrorAlone) {
  struct Row {
    std::vector<std::string> arguments;
    std::string message;
    std::string help;
  };
  const std::vector<Row> rows{
      {{}, "subcommand is required", "rqxml --help"},
      {{"nothing"}, "nothing", "rqxml --help"},
      {{"--nothing"}, "--nothing", "rqxml --help"},
      {{"vars"}, "FILE is required", "rqxml vars --help"},
      {{"vars", "--bins"}, "FILE is required", "rqxml vars --help"},
      {{"vars", "a", "b"}, "not expected: b", "rqxml vars --help"},
      {{"vars", "a", "--nothing"}, "--nothing", "rqxml vars --help"},
      {{"vars", "a", "--fields"}, "--fields", "rqxml vars --help"},
      {{"vars", "-x.pmml"}, "rqxml vars has no option \"-x.pmml\"", "./-x.pmml, or stands behind --"},
      {{"vars", "--typo"}, "rqxml vars has no option \"--typo\"", "rqxml vars --help"},
      {{"vars", "--version"}, "rqxml vars has no option \"--version\"", "rqxml vars --help"},
      {{"recode", "--from", "1252", "--from", "932", "--to", "UTF-8"},
       "--from may be given once only",
       "rqxml recode --help"},
      {{"vars", "a", "--fields="}, "--fields= gives no value", "--fields=a,b,c"},
      {{"vars", "--fields=", "a"}, "--fields= gives no value", "--fields=a,b,c"},
      {{"vars", "a", "--fields", "x,\"y"}, "the quotes do not match", "double quotes"},
      {{"vars", "a", "--fields", "\"x\"y"}, "the quotes do not match", "double quotes"},
      {{"vars", "a", "--fields", "x,,y"}, "a field name is empty", "a,b,c"},
      {{"vars", "a", "--fields", ""}, "a field name is empty", "a,b,c"},
      {{"vars", "a", "--flag"}, "--flag needs --count", "--flag --count 5"},
      {{"vars", "a", "--count", "5"}, "--count needs --flag", "--flag --count 5"},
      {{"vars", "a", "--flag", "--count", "x"}, "--count", "rqxml vars --help"},
      {{"vars", "a", "--flag", "--count", "99999999999"}, "--count", "rqxml vars --help"},
      {{"stats"}, "FILE is required", "rqxml stats --help"},
      {{"stats", "a", "b"}, "not expected: b", "rqxml stats --help"},
      {{"stats", "a", "--svg"}, "--svg", "rqxml stats --help"},
      {{"stats", "a", "--model="}, "--model= gives no value", "behind it"},
      {{"settings"}, "FILE is required", "rqxml settings --help"},
      {{"settings", "a", "b"}, "not expected: b", "rqxml settings --help"},
      {{"get", "a"}, "NAME is required", "rqxml get --help"},
      {{"get", "a", "b", "--as", "float"}, "\"float\" is not one of string, int, double", "rqxml get --help"},
      {{"get", "a", "b", "--scope"}, "--scope", "rqxml get --help"},
      {{"get", "a", "b\xff"}, "the name \"b\\xff\" is not UTF-8", "UTF-8"},
      {{"get", "a", "b", "--scope", "\xff"}, "the name \"\\xff\" is not UTF-8", "UTF-8"},
      {{"combine"}, "--output is required", "rqxml combine --help"},
      {{"combine", "-o", "x"}, "--manifest or --by", "rqxml combine --help"},
      {{"combine", "-o", "x", "--manifest", "m", "--by", "a", "f=1"}, "one of them", "rqxml combine --help"},
      {{"combine", "-o", "x", "--by", "a"}, "no file is named", "FILE=VALUE"},
      {{"combine", "-o", "x", "--by", "a,a", "f=1"}, "\"a\" is named twice", "NAME"},
      {{"combine", "-o", "x", "--by", "a,", "f=1"}, "the name of a split variable is empty", "NAME"},
      {{"combine", "-o", "x", "--by", "\"a", "f=1"}, "the quotes do not match", "NAME"},
      {{"combine", "-o", "x", "--by", "a\xff", "f=1"}, "holds what no XML document can hold", "NAME"},
      {{"combine", "-o", "x", "--by", "a", "f"}, "f: is not FILE=VALUE", "FILE=VALUE"},
      {{"combine", "-o", "x", "--by", "a", "=1"}, "=1: is not FILE=VALUE", "FILE=VALUE"},
      {{"combine", "-o", "x", "--by", "a", "f=\"1"}, "the quotes do not match", "FILE=VALUE"},
      {{"combine", "-o", "x", "--by", "a", "f=\"1\"2"}, "the quotes do not match", "FILE=VALUE"},
      {{"combine", "-o", "x", "--manifest", "/dev/null", "f=1"}, "no file is named: f=1", "the manifest"},
      {{"combine", "-o", "x", "--by", "a", "--type", "b=string", "f=1"}, "name of a split variable", "NAME="},
      {{"combine", "-o", "x", "--by", "a", "--type", "a=text", "f=1"}, "there is no such type", "string, double"},
      {{"combine", "-o", "x", "--by", "a", "--type", "a=double", "--type", "a=double", "f=1"}, "twice", "once"},
      {{"combine", "-o", "x", "--by", "a", "--label", "a", "f=1"}, "name of a split variable", "NAME="},
      {{"combine", "-o", "x", "--by", "a", "--label", "a=\x01", "f=1"}, "no XML document can hold", "UTF-8"},
      {{"combine", "-o", "x", "--by", "a", "--continuous", "b", "f=1"}, "no such split variable", "--by"},
      {{"combine", "-o", "x", "--by", "a", "--continuous", "a", "--type", "a=string", "f=1"}, "string", "numbers"},
      {{"combine", "-o", "x", "--by", "a", "--continuous", "a", "--categories", "a=1", "f=1"}, "continuous", "leave"},
      {{"combine", "-o", "x", "--by", "a", "--categories", "a=x,x", "f=1"}, "\"x\" stands there twice", "once"},
      {{"combine", "-o", "x", "--by", "a", "--categories", "a=\"x", "f=1"}, "the quotes do not match", "a,b,c"},
      {{"combine", "-o", "x", "--by", "a", "--categories", "a=x,,y", "f=1"}, "is empty", "a,b,c"},
      {{"combine", "-o", "x", "--by", "a", "--type", "a=integer", "--categories", "a=1,1.5", "f=1"},
       "\"1.5\" of \"a\" is no integer",
       "a,b,c"},
      {{"status", "x"}, "CODE", "rqxml status --help"},
      {{"status", "103", "104"}, "104", "rqxml status --help"},
      {{"status", "117"}, "no status code 117", "rqxml status"},
      {{"status", "-5"}, "-5", "rqxml status"},
      {{"status", "99999999999999999999"}, "no status code 99999999999999999999", "rqxml status"},
      {{"status", "-99999999999999999999"}, "99999999999999999999", "rqxml status"},
      {{"recode"}, "--from is required", "rqxml recode --help"},
      {{"recode", "--from", "UTF-8"}, "--to is required", "rqxml recode --help"},
      {{"recode", "--from", "UTF-8", "--to", "1252", "a", "b", "c"}, "not expected: c", "rqxml recode --help"},
      {{"recode", "--from", "UTF-8", "--to", "x-none"}, "--to: there is no encoding \"x-none\"", "rqxml encodings"},
      {{"recode", "--from", "0", "--to", "1252"}, "--from: there is no encoding \"0\"", "rqxml encodings"},
      {{"recode", "--from", "\xff", "--to", "1252"}, "--from: there is no encoding \"\\xff\"", "rqxml encodings"},
      {{"recode", "--from=", "--to", "1252"}, "--from= gives no value", "behind it"},
      {{"encodings", "x-none"}, "there is no encoding \"x-none\"", "rqxml encodings --all"},
      {{"encodings", ""}, "there is no encoding \"\"", "rqxml encodings --all"},
      {{"encodings", "--all", "1252"}, "--all goes with no NAME", "leave out one"},
      {{"encodings", "1252", "1253"}, "not expected: 1253", "rqxml encodings --help"},
      {{"status", "103x"}, "CODE is a whole number, which \"103x\" is not", "rqxml status --help"},
      {{"status", ""}, "CODE is a whole number, which \"\" is not", "rqxml status --help"},
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool(row.arguments);
    EXPECT_EQ(result.exitCode, 2) << ::testing::PrintToString(row.arguments) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("rqxml: "), HasSubstr(row.message), HasSubstr("  hint: "), HasSubstr(row.help)));
  }
}

TEST(CommandLine, AFileWhoseNameLooksLikeAnOptionStandsBehindTwoHyphens) {
  const ToolResult result = RunTool({"vars", "--", "--no-such=file"});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("rqxml: --no-such=file: cannot be opened"));
  EXPECT_EQ(RunTool({"vars", "--", "--no-such-file="}).exitCode, 3);
}

TEST(CommandLine, ArgumentsCannotSteerTheTerminal) {
  const ToolResult result = RunTool({"vars", "x", "\x1b[31mred"});
  EXPECT_EQ(result.exitCode, 2) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("\\x1b[31mred"), Not(HasSubstr("\x1b"))));
}

TEST(ManPage, NamesEachOptionThatTheHelpNames) {
  const std::string page = ManPage();
  for (const auto& call : kHelpCalls) {
    for (const std::string& option : LongOptions(RunTool(call).out)) {
      EXPECT_THAT(page, HasSubstr(option));
    }
  }
}

TEST(ManPage, NamesNoOptionThatDoesNotExist) {
  std::set<std::string> known;
  for (const auto& call : kHelpCalls) known.merge(LongOptions(RunTool(call).out));
  for (const std::string& option : LongOptions(ManPage())) EXPECT_TRUE(known.count(option) == 1) << option;
}

TEST(ManPage, HasTheExitCodesAsTheHelpTellsThem) {
  const std::string page = ManPage();
  std::istringstream lines(RunTool({"--help"}).out);
  int found = 0;
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (!std::regex_match(line, match, std::regex("  ([0-4])  (.*)"))) continue;
    ++found;
    EXPECT_THAT(page, HasSubstr(".B " + match[1].str() + "\n" + match[2].str() + "\n"));
  }
  EXPECT_EQ(found, 5);
}

TEST(ManPage, StatesTheVersion) { EXPECT_THAT(ManPage(), HasSubstr("rqxml " RQXML_VERSION_STRING)); }

}  // namespace
