#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/address_sanitizer.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::HasTerminals;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 64 * 1024;
const std::string kEuro = "\xE2\x82\xAC";
const std::string kKanji = "\xE6\x97\xA5";
const std::string kEmoji = "\xF0\x9F\x98\x80";

class Recode : public ::testing::Test {
 protected:
  static std::vector<std::string> Arguments(const std::string& from, const std::string& to,
                                            std::vector<std::string> more = {}) {
    std::vector<std::string> arguments{"recode", "--from", from, "--to", to};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  // Through a pipe on both sides.
  static ToolResult Pipe(const std::string& from, const std::string& to, const std::string& text,
                         std::vector<std::string> more = {}) {
    return RunTool(ToolCall{.arguments = Arguments(from, to, std::move(more)), .input = text});
  }
  std::string Out() const { return folder_.File("out"); }
  // Only these files are in the folder.
  void ExpectFiles(std::vector<std::string> expected) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) names.push_back(entry.path().filename().string());
    EXPECT_THAT(names, ::testing::UnorderedElementsAreArray(expected));
  }

  TempFolder folder_;
};

TEST_F(Recode, ConvertsStandardInputToStandardOutputInSilence) {
  for (const auto& names : std::vector<std::vector<std::string>>{{}, {"-"}, {"-", "-"}}) {
    const ToolResult result = Pipe("UTF-8", "1252", "10 " + kEuro, names);
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_EQ(result.out, "10 \x80");
    EXPECT_THAT(result.err, IsEmpty());
  }
}

TEST_F(Recode, ConvertsAFileToAFile) {
  const std::string in = WriteFile(folder_.File("in"), "\x93\xFA");
  const ToolResult result = RunTool(Arguments("932", "65001", {in, Out()}));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out + result.err, IsEmpty());
  EXPECT_EQ(ReadFile(Out()), kKanji);
  ExpectFiles({"in", "out"});
}

TEST_F(Recode, EmptyTextStaysEmpty) {
  for (const std::string to : {"UTF-8", "UTF-16", "UTF-32", "ISO-2022-JP", "IBM037"}) {
    const ToolResult result = Pipe("UTF-8", to, "");
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_THAT(result.out + result.err, IsEmpty());
  }
}

TEST_F(Recode, MarksAndShiftStatesAreThoseOfTheWholeText) {
  using namespace std::string_literals;
  EXPECT_EQ(Pipe("UTF-16", "UTF-8", "\xFE\xFF\0a"s).out, "a");
  EXPECT_EQ(Pipe("UTF-16", "UTF-8",
                 "\xFF\xFE"
                 "a\0"s)
                .out,
            "a");
  EXPECT_EQ(Pipe("UTF-16", "UTF-16BE", Pipe("UTF-8", "UTF-16", "ab").out).out, "\0a\0b"s);
  EXPECT_EQ(Pipe("UTF-8", "UTF-8",
                 "\xEF\xBB\xBF"
                 "a")
                .out,
            "\xEF\xBB\xBF"
            "a");
  EXPECT_EQ(Pipe("UTF-8", "ISO-2022-JP", kKanji + "a" + kKanji).out, "\x1B$BF|\x1B(Ba\x1B$BF|\x1B(B");
}

TEST_F(Recode, ReplacedCharactersAreCountedWithThePlaceOfTheFirst) {
  const ToolResult one = Pipe("UTF-8", "1252", "ab" + kKanji);
  EXPECT_EQ(one.exitCode, 0) << one;
  EXPECT_EQ(one.out, "ab?");
  EXPECT_EQ(one.err, "rqxml: note: standard input: 1 character was replaced, at byte 2\n");
  const std::string in = WriteFile(folder_.File("in"), "a\xFF" + kKanji);
  const ToolResult two = RunTool(Arguments("UTF-8", "1252", {in}));
  EXPECT_EQ(two.out, "a??");
  EXPECT_EQ(two.err, "rqxml: note: " + in + ": 2 characters were replaced, the first at byte 1\n");
}

TEST_F(Recode, CharactersAcrossTheEdgesOfBlocksStayWhole) {
  for (const std::string& character : {kEuro, kKanji, kEmoji}) {
    for (std::size_t before = kBlock - character.size(); before <= kBlock; ++before) {
      const std::string text = std::string(before, 'x') + character + "y" + character;
      const std::string in = WriteFile(folder_.File("in"), text);
      for (const std::string to : {"UTF-16LE", "GB18030", "UTF-7"}) {
        const ToolResult there = RunTool(Arguments("UTF-8", to, {in, Out()}));
        EXPECT_EQ(there.exitCode, 0) << there;
        EXPECT_THAT(there.err, IsEmpty());
        EXPECT_TRUE(RunTool(Arguments(to, "UTF-8", {Out()})).out == text) << to << ' ' << before;
      }
    }
  }
}

TEST_F(Recode, ThePlaceOfTheFirstReplacedCharacterIsExactAcrossTheEdgesOfBlocks) {
  for (std::size_t before = kBlock - 4; before <= kBlock + 1; ++before) {
    const std::string in = WriteFile(folder_.File("in"), std::string(before, 'x') + kEmoji + kKanji);
    const json report = json::parse(RunTool(Arguments("UTF-8", "1252", {"--json", in, Out()})).out);
    EXPECT_EQ(report.at("replaced"), 2);
    EXPECT_EQ(report.at("firstReplaced"), before);
  }
}

TEST_F(Recode, StrictWritesNoFileWhenACharacterIsReplaced) {
  const std::string in = WriteFile(folder_.File("in"), "a" + kKanji);
  WriteFile(Out(), "old");
  const ToolResult result = RunTool(Arguments("UTF-8", "1252", {"--strict", in, Out()}));
  EXPECT_EQ(result.exitCode, 4) << result;
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_EQ(result.err, "rqxml: note: " + in + ": 1 character was replaced, at byte 1; nothing was written\n");
  EXPECT_EQ(ReadFile(Out()), "old");
  ExpectFiles({"in", "out"});
  EXPECT_EQ(RunTool(Arguments("UTF-8", "932", {"--strict", in, Out()})).exitCode, 0);
  EXPECT_EQ(ReadFile(Out()), "a\x93\xFA");
}

TEST_F(Recode, StrictEndsStandardOutputBeforeTheFirstReplacedCharacter) {
  const ToolResult little = Pipe("UTF-8", "1252", "a" + kKanji + "b", {"--strict"});
  EXPECT_EQ(little.exitCode, 4) << little;
  EXPECT_THAT(little.out, IsEmpty());
  EXPECT_THAT(little.err, HasSubstr("1 character was replaced, at byte 1; the output ends before it"));
  const std::string in = WriteFile(folder_.File("in"), std::string(2 * kBlock + 5, 'x') + kKanji + kKanji + "y");
  const ToolResult much = RunTool(Arguments("UTF-8", "1252", {"--strict", in}));
  EXPECT_EQ(much.exitCode, 4) << much.err;
  EXPECT_TRUE(much.out == std::string(2 * kBlock, 'x')) << much.out.size();
  EXPECT_THAT(much.err, HasSubstr("2 characters were replaced, the first at byte 131077"));
}

TEST_F(Recode, StrictEndsStandardOutputBeforeTheBlockInWhichAReplacedCharacterBegins) {
  const std::string block(kBlock, 'x');
  const std::string shorter(kBlock - 1, 'x');
  for (const auto& [text, out] : std::vector<std::pair<std::string, std::string>>{{shorter + "\xE2\x82", ""},
                                                                                  {shorter + "\xE2", ""},
                                                                                  {block + shorter + "\xE2\x41", block},
                                                                                  {block + "\xE2", block}}) {
    const ToolResult result = RunTool(Arguments("UTF-8", "1252", {"--strict", WriteFile(folder_.File("in"), text)}));
    EXPECT_EQ(result.exitCode, 4) << result.err;
    EXPECT_TRUE(result.out == out) << result.out.size() << " bytes of " << text.size();
  }
}

TEST_F(Recode, TheReportIsOneJsonObject) {
  const std::string in = WriteFile(folder_.File("in"), "a" + kEuro);
  const ToolResult result = RunTool(Arguments("utf8", "1252", {"--json", in, Out()}));
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(json::parse(result.out), json({{"input", in},
                                           {"output", Out()},
                                           {"from", {{"given", "utf8"}, {"name", "UTF-8"}}},
                                           {"to", {{"given", "1252"}, {"name", "ibm-5348_P100-1997"}}},
                                           {"bytesRead", 4},
                                           {"bytesWritten", 2},
                                           {"replaced", 0},
                                           {"firstReplaced", nullptr},
                                           {"written", true}}));
}

TEST_F(Recode, TheReportGoesToStandardErrorWhenTheTextGoesToStandardOutput) {
  const ToolResult result = Pipe("UTF-8", "1252", "a" + kKanji, {"--json"});
  EXPECT_EQ(result.out, "a?");
  const json report = json::parse(result.err);
  EXPECT_EQ(report.at("input"), "-");
  EXPECT_EQ(report.at("output"), "-");
  EXPECT_EQ(report.at("replaced"), 1);
  EXPECT_EQ(report.at("firstReplaced"), 1);
}

TEST_F(Recode, AReportOrNoteThatIsLostIsNoSuccess) {
  for (const std::vector<std::string>& options : {std::vector<std::string>{"--json"}, std::vector<std::string>{}}) {
    const ToolResult result = RunTool(
        ToolCall{.arguments = Arguments("UTF-8", "1252", options), .input = "a" + kKanji, .errorFile = "/dev/full"});
    EXPECT_EQ(result.exitCode, 3) << result;
    EXPECT_EQ(result.out, "a?");
  }
}

TEST_F(Recode, TheReportTellsThatStrictKeptTheResultBack) {
  const std::string in = WriteFile(folder_.File("in"), "a" + kKanji);
  const ToolResult result = RunTool(Arguments("UTF-8", "1252", {"--json", "--strict", in, Out()}));
  EXPECT_EQ(result.exitCode, 4) << result;
  const json report = json::parse(result.out);
  EXPECT_EQ(report.at("written"), false);
  EXPECT_EQ(report.at("bytesWritten"), 0);
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(Recode, TheFileToReadIsNotTheOneToWrite) {
  const std::string in = WriteFile(folder_.File("in"), "text");
  fs::create_symlink("in", folder_.File("link"));
  fs::create_hard_link(in, folder_.File("hard"));
  for (const std::string name : {"in", "link", "hard", "./in"}) {
    const ToolResult result = RunTool(Arguments("UTF-8", "UTF-16", {in, folder_.File(name)}));
    EXPECT_EQ(result.exitCode, 2) << result;
    EXPECT_THAT(result.err, HasSubstr("is the file to read"));
  }
  const ToolResult empty = RunTool(Arguments("UTF-8", "UTF-16", {in, ""}));
  EXPECT_EQ(empty.exitCode, 2) << empty;
  EXPECT_EQ(ReadFile(in), "text");
}

TEST_F(Recode, StandardOutputIsNotTheFileToRead) {
  const std::string in = folder_.File("in");
  const ToolResult result = RunTool(ToolCall{.arguments = Arguments("UTF-8", "UTF-16", {in}), .outputFile = in});
  EXPECT_EQ(result.exitCode, 2) << result;
  EXPECT_THAT(result.err, HasSubstr("standard output is the file to read"));
}

TEST_F(Recode, WhatCannotBeReadOrWrittenIsTold) {
  struct Row {
    std::string in;
    std::string out;
    const char* message;
  };
  const std::string in = WriteFile(folder_.File("in"), "text");
  for (const Row& row : std::vector<Row>{{folder_.File("none"), Out(), "cannot be opened: No such file"},
                                         {"", Out(), "\"\": cannot be opened"},
                                         {folder_.Path(), Out(), "is a directory"},
                                         {in, folder_.Path(), "is a directory"},
                                         {in, folder_.File("none/out"), "cannot be written: No such file"},
                                         {in, "/dev/full", "is a pipe or a device"},
                                         {"/proc/self/mem", Out(), "could not be read to its end"}}) {
    const ToolResult result = RunTool(Arguments("UTF-8", "UTF-16", {row.in, row.out}));
    EXPECT_EQ(result.exitCode, 3) << result;
    EXPECT_THAT(result.err, HasSubstr(row.message));
  }
  ExpectFiles({"in"});
}

TEST_F(Recode, APipeUnderTheNameOfStandardOutputIsNoFile) {
  const ToolResult result = Pipe("UTF-8", "UTF-16", "text", {"-", "/dev/stdout"});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("/dev/stdout: is a pipe or a device"));
}

TEST_F(Recode, StrictRefusesTextThatEndsInsideACharacter) {
  for (const auto& [encoding, text] : std::vector<std::pair<std::string, std::string>>{{"UTF-8", "a\xE2\x82"},
                                                                                       {"932", "a\x93"},
                                                                                       {"HZ", "a~{V"},
                                                                                       {"HZ", "a~"},
                                                                                       {"UTF-7", "a+"},
                                                                                       {"UTF-16LE", "a"}}) {
    const ToolResult result = Pipe(encoding, "UTF-8", text, {"--strict"});
    EXPECT_EQ(result.exitCode, 4) << encoding << ' ' << result;
    EXPECT_THAT(result.out, IsEmpty());
  }
}

TEST_F(Recode, AFullOrMissingStandardOutputIsTold) {
  const std::string in = WriteFile(folder_.File("in"), "text");
  for (const ToolCall& call : {ToolCall{.arguments = Arguments("UTF-8", "UTF-16", {in}), .outputFile = "/dev/full"},
                               ToolCall{.arguments = Arguments("UTF-8", "UTF-16", {in}), .closeOutput = true}}) {
    const ToolResult result = RunTool(call);
    EXPECT_EQ(result.exitCode, 3) << result;
    EXPECT_THAT(result.err, HasSubstr("rqxml: standard output cannot be written: "));
    EXPECT_EQ(result.err.find("rqxml: ", 1), std::string::npos) << result;
  }
}

TEST_F(Recode, AReaderThatLeavesEndsTheCommandInSilence) {
  const ToolResult result = RunTool(
      ToolCall{.arguments = Arguments("UTF-8", "UTF-16"), .input = std::string(10 * kBlock, 'x'), .breakPipe = true});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Recode, TheOldFileStaysWhenTheRoomDoesNotDo) {
  const std::string in = WriteFile(folder_.File("in"), std::string(3 * kBlock, 'x'));
  WriteFile(Out(), "old");
  const ToolResult result =
      RunTool(ToolCall{.arguments = Arguments("UTF-8", "UTF-16", {in, Out()}), .fileSizeLimit = kBlock});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("out: cannot be written: File too large"));
  EXPECT_EQ(ReadFile(Out()), "old");
  ExpectFiles({"in", "out"});
}

TEST_F(Recode, ReadsANamedPipe) {
  const std::string pipe = folder_.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::thread writer([&pipe] { WriteFile(pipe, "a" + kEuro); });
  const ToolResult result = RunTool(Arguments("UTF-8", "1252", {pipe}));
  writer.join();
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.out, "a\x80");
}

TEST_F(Recode, ALongTextNeedsNoMoreMemoryThanAShortOne) {
  if (rqtest::kAddressSanitizer) GTEST_SKIP() << "the sanitizer needs more address space than that";
  constexpr std::size_t kLimit = 64 << 20;  // the libraries take most of it
  const std::string line = "0123456789 " + kEuro + kKanji + "\n";
  std::string text;
  while (text.size() < kLimit) text += line;
  const std::string in = WriteFile(folder_.File("in"), text);
  const ToolResult file =
      RunTool(ToolCall{.arguments = Arguments("UTF-8", "GB18030", {in, Out()}), .memoryLimit = kLimit});
  EXPECT_EQ(file.exitCode, 0) << file;
  EXPECT_GT(fs::file_size(Out()), kLimit * 3 / 4);
  const ToolResult pipe =
      RunTool(ToolCall{.arguments = Arguments("UTF-8", "GB18030", {"-", Out()}), .input = text, .memoryLimit = kLimit});
  EXPECT_EQ(pipe.exitCode, 0) << pipe;
  EXPECT_GT(fs::file_size(Out()), kLimit * 3 / 4);
}

TEST_F(Recode, ProgressStandsOnATerminalOnlyAndIsWiped) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const std::string in = WriteFile(folder_.File("in"), std::string(40 * kBlock, 'x'));
  const std::vector<std::string> arguments = Arguments("UTF-8", "UTF-16", {in, Out()});
  const std::string shown = RunTool(ToolCall{.arguments = arguments, .errorColumns = 80}).err;
  EXPECT_THAT(shown, HasSubstr(" of 2.6 MB, "));
  EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1b[K");
  EXPECT_THAT(RunTool(arguments).err, IsEmpty());
  std::vector<std::string> quiet = arguments;
  quiet.push_back("--quiet");
  EXPECT_THAT(RunTool(ToolCall{.arguments = quiet, .errorColumns = 80}).err, IsEmpty());
  const ToolCall both{.arguments = Arguments("UTF-8", "1252", {in}), .terminalColumns = 80, .errorColumns = 80};
  EXPECT_THAT(RunTool(both).err, Not(HasSubstr("MB")));
}

}  // namespace
