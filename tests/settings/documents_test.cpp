// Each NAME.expected in tests/data/settings is a test of the document NAME.xml beside it, or of that in
// examples/settings. It says what is asked, a question a line, and behind " -> " what comes back: first the parse, then
//   scope A/B                the complex parameter in which the questions behind it are asked; none for the task's own
//   string NAME, int NAME, double NAME, bool NAME, type NAME, strings NAME, ints NAME, doubles NAME, variables NAME,
//   variable NAME, string rows NAME, int rows NAME, double rows NAME
//   target vars, predictors, ... (one for each role)
//   fill, fill with bins, fill derived       with the calls that the list received, indented, in the lines below it

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/settings/RQSettingsParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/files.h"
#include "tests/support/settings.h"
#include "tests/support/streams.h"
#include "tests/support/temp_folder.h"

namespace {

using rqtest::Asker;
using rqtest::DataFile;
using rqtest::Parse;
using rqtest::ReadFile;
using rqtest::Show;
using rqtest::ShowOutcome;
using RQXPrsUtil::RQSettingsParser;

/// An operation that gives the variables of one role.
using NameList = RQCommon::RQStatus (RQSettingsParser::*)(std::vector<std::string>&) const;

/// A way to bring a document to a parser.
using ParseFunction = std::function<RQCommon::RQStatus(RQSettingsParser&)>;

/// Line breaks and tabs as one writes them in programs, so that an answer is one line.
std::string OnOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) line += c == '\n' ? "\\n" : c == '\t' ? "\\t" : c == '\r' ? "\\r" : std::string(1, c);
  return line;
}

/// The questions of a file of expectations, without the first one, which is always the parse.
std::vector<std::string> ReadQuestions(const std::string& expected) {
  std::vector<std::string> questions;
  std::istringstream in(expected);
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    if (line.rfind("  ", 0) != 0) questions.push_back(line.substr(0, line.find(" -> ")));
  }
  return questions;
}

class Interview {
 public:
  explicit Interview(RQSettingsParser& parser) : parser_(parser), ask_(parser) {}

  std::string Answer(const std::string& question) {
    for (const auto& [words, answer] : byName_) {
      const std::string start = words + " ";
      if (question.rfind(start, 0) == 0) return OnOneLine(answer(question.substr(start.size())));
    }
    const auto found = bare_.find(question);
    if (found == bare_.end()) throw std::runtime_error("not a question: " + question);
    return found->second();
  }

 private:
  std::string EnterScope(const std::string& path) {
    scope_ = nullptr;
    if (path.empty()) return "the task's own";
    std::istringstream in(path);
    for (std::string name; std::getline(in, name, '/');) {
      scope_ = parser_.GetComplexParameter(name.c_str(), scope_);
      if (scope_ == nullptr) return "none";
    }
    return "found";
  }
  std::string Role(NameList getter) const {
    std::vector<std::string> names = {"before"};
    const auto status = (parser_.*getter)(names);
    return OnOneLine(ShowOutcome(status) + ": " + Show(names));
  }
  std::string Weight() const {
    std::string name = "before";
    const auto status = parser_.GetFrequencyWeight(name);
    return OnOneLine(ShowOutcome(status) + ": " + Show(name));
  }
  static std::string Filled(const std::function<RQCommon::RQStatus(RQMTD_NAMESPACE::RQVarList&)>& fill) {
    rqtest::RecordingStorageList vars;
    std::string text = ShowOutcome(fill(vars));
    for (const std::string& call : vars.calls) text += "\n  " + OnOneLine(call);
    return text;
  }

  RQSettingsParser& parser_;
  Asker ask_;
  void* scope_ = nullptr;

  using ByName = std::function<std::string(const std::string&)>;
  const std::vector<std::pair<std::string, ByName>> byName_ = {
      {"scope", [this](const auto& path) { return EnterScope(path); }},
      {"string rows", [this](const auto& name) { return ask_.StringRows(name.c_str(), scope_); }},
      {"int rows", [this](const auto& name) { return ask_.IntRows(name.c_str(), scope_); }},
      {"double rows", [this](const auto& name) { return ask_.DoubleRows(name.c_str(), scope_); }},
      {"string", [this](const auto& name) { return ask_.String(name.c_str(), scope_); }},
      {"int", [this](const auto& name) { return ask_.Int(name.c_str(), scope_); }},
      {"double", [this](const auto& name) { return ask_.Double(name.c_str(), scope_); }},
      {"bool", [this](const auto& name) { return ask_.Bool(name.c_str(), scope_); }},
      {"strings", [this](const auto& name) { return ask_.Strings(name.c_str(), scope_); }},
      {"ints", [this](const auto& name) { return ask_.Ints(name.c_str(), scope_); }},
      {"doubles", [this](const auto& name) { return ask_.Doubles(name.c_str(), scope_); }},
      {"variables", [this](const auto& name) { return ask_.Variables(name.c_str()); }},
      {"variable", [this](const auto& name) { return ask_.Variable(name.c_str()); }},
      {"type", [this](const auto& name) { return std::to_string(parser_.GetParameterType(name.c_str(), scope_)); }},
  };

  using Bare = std::function<std::string()>;
  const std::map<std::string, Bare> bare_ = {
      {"scope", [this] { return EnterScope(""); }},
      {"target vars", [this] { return Role(&RQSettingsParser::GetTargetVars); }},
      {"cat response vars", [this] { return Role(&RQSettingsParser::GetCatResponseVars); }},
      {"cont response vars", [this] { return Role(&RQSettingsParser::GetContResponseVars); }},
      {"predictors", [this] { return Role(&RQSettingsParser::GetPredictors); }},
      {"cat predictors", [this] { return Role(&RQSettingsParser::GetCatPredictors); }},
      {"cont predictors", [this] { return Role(&RQSettingsParser::GetContPredictors); }},
      {"frequency weight", [this] { return Weight(); }},
      {"fill", [this] { return Filled([this](auto& vars) { return parser_.FillVarList(vars, false); }); }},
      {"fill with bins", [this] { return Filled([this](auto& vars) { return parser_.FillVarList(vars, true); }); }},
      {"fill derived", [this] { return Filled([this](auto& vars) { return parser_.FillTransDict(vars); }); }},
  };
};

std::string Describe(const std::vector<std::string>& questions, const ParseFunction& parse) {
  RQSettingsParser parser;
  std::string text = "parse -> ";
  try {
    text += ShowOutcome(parse(parser)) + "\n";
  } catch (const xercesc::SAXParseException&) {
    text += "not well-formed\n";
  }
  Interview interview(parser);
  for (const std::string& question : questions) text += question + " -> " + interview.Answer(question) + "\n";
  return text;
}

std::string DocumentPath(const std::string& name) {
  const std::string own = DataFile("settings/" + name + ".xml");
  return std::filesystem::exists(own) ? own : std::string(RQXML_EXAMPLES_DIR) + "/settings/" + name + ".xml";
}

class SettingsDocument : public rqtest::WithPlatform, public ::testing::WithParamInterface<std::string> {
 protected:
  const std::string path_ = DocumentPath(GetParam());
  const std::string expected_ = ReadFile(DataFile("settings/" + GetParam() + ".expected"));
  const std::vector<std::string> questions_ = ReadQuestions(expected_);
};

TEST_P(SettingsDocument, GivesWhatIsExpectedFromAFileStream) {
  EXPECT_EQ(Describe(questions_,
                     [&](RQSettingsParser& parser) {
                       std::ifstream stream(path_, std::ios::binary);
                       return parser.ParseToDOM(stream);
                     }),
            expected_);
}

TEST_P(SettingsDocument, GivesTheSameInChunksOfOneByteAndWithOtherBytesBeforeIt) {
  const std::string bytes = ReadFile(path_);
  EXPECT_EQ(Describe(questions_,
                     [&](RQSettingsParser& parser) {
                       rqtest::ChunkedBuf buffer(bytes, 1);
                       std::istream stream(&buffer);
                       return parser.ParseToDOM(stream);
                     }),
            expected_);
  EXPECT_EQ(Describe(questions_,
                     [&](RQSettingsParser& parser) {
                       std::istringstream stream("some other bytes" + bytes);
                       stream.seekg(16);
                       return parser.ParseToDOM(stream);
                     }),
            expected_);
}

TEST_P(SettingsDocument, GivesTheSameInASecondParseOfOneObject) {
  const std::string bytes = ReadFile(path_);
  const std::string other = rqtest::Settings(rqtest::Valued("twice", "0") + rqtest::Complex("outer", ""));
  EXPECT_EQ(Describe(questions_,
                     [&](RQSettingsParser& parser) {
                       EXPECT_EQ(Parse(parser, other), rqtest::Ok());
                       return Parse(parser, bytes);
                     }),
            expected_);
}

/// The XML library's serialiser puts the quotes of entity values wrong.
bool SurvivesWriting(const std::string& bytes) { return bytes.find("<!ENTITY") == std::string::npos; }

TEST_P(SettingsDocument, GivesTheSameAfterItWasReadFromItsFileAndWritten) {
  if (!SurvivesWriting(ReadFile(path_))) GTEST_SKIP() << "cannot be written";
  RQXPrsUtil::RQXMLReadWrite reader;
  try {
    if (!reader.ParseToDOM(path_).IsOK()) GTEST_SKIP() << "cannot be read";
  } catch (const xercesc::SAXParseException&) {
    GTEST_SKIP() << "cannot be read";
  }
  const rqtest::TempFolder folder;
  ASSERT_EQ(reader.WriteFromDOM(folder.File("written.xml"), nullptr), rqtest::Ok());
  const std::string bytes = ReadFile(folder.File("written.xml"));
  EXPECT_EQ(Describe(questions_, [&](RQSettingsParser& parser) { return Parse(parser, bytes); }), expected_) << bytes;
}

INSTANTIATE_TEST_SUITE_P(Each, SettingsDocument, ::testing::ValuesIn(rqtest::DataFileNames("settings", ".expected")),
                         [](const ::testing::TestParamInfo<std::string>& row) { return row.param; });

}  // namespace
