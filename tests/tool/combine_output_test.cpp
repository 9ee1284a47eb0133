#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/combine_support.h"
#include "tests/tool/run_tool.h"

using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SplitText;
using rqtest::TempFolder;
using rqtest::Text;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

// The names of the files in a folder that the command made and did not rename.
std::vector<std::string> Leftovers(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind(".rqxml-", 0) == 0) names.push_back(name);
  }
  return names;
}

class CombineOutput : public ::testing::Test {
 protected:
  CombineOutput() : source_(WriteFile(folder_.File("a.pmml"), Text(SplitText{}))) {
    fs::create_directory(folder_.File("out"));
  }
  std::string Target(const std::string& name = "out.pmml") const { return folder_.File("out/" + name); }
  std::vector<std::string> Arguments(const std::string& target) const {
    return {"combine", "-o", target, "--by", "s", source_ + "=1"};
  }
  ToolResult Run(const std::string& target) const { return RunTool(Arguments(target)); }
  void ExpectNothingLeft() const { EXPECT_THAT(Leftovers(folder_.File("out")), IsEmpty()); }

  // A manifest that takes the command a while.
  std::string LongManifest(int rows) const {
    std::string model = "<Node>";
    for (int i = 0; i < 200; ++i) model += "<Node id='" + std::to_string(i) + "' score='1.25'><True/></Node>";
    WriteFile(folder_.File("long.pmml"), Text({.local = model + "</Node>"}));
    std::string text = "file,s\n";
    for (int i = 0; i < rows; ++i) text += "long.pmml," + std::to_string(i) + "\n";
    return WriteFile(folder_.File("long.csv"), text);
  }

  TempFolder folder_;
  std::string source_;
};

mode_t Permissions(const std::string& file) {
  struct stat information {};
  EXPECT_EQ(stat(file.c_str(), &information), 0);
  return information.st_mode & 0777;
}

TEST_F(CombineOutput, HasTheUsualPermissionsWhenItIsNew) {
  const mode_t before = umask(027);
  EXPECT_EQ(Run(Target()).exitCode, 0);
  umask(before);
  EXPECT_EQ(Permissions(Target()), 0640u);
  ExpectNothingLeft();
}

TEST_F(CombineOutput, KeepsThePermissionsOfTheFileThatItReplaces) {
  WriteFile(Target(), "old");
  chmod(Target().c_str(), 0604);
  EXPECT_EQ(Run(Target()).exitCode, 0);
  EXPECT_EQ(Permissions(Target()), 0604u);
  EXPECT_THAT(ReadFile(Target()), HasSubstr("<Segment>"));
}

TEST_F(CombineOutput, ReplacesTheFileThatALinkLeadsToAndKeepsTheLink) {
  fs::create_directory(folder_.File("elsewhere"));
  const std::string file = WriteFile(folder_.File("elsewhere/real.pmml"), "old");
  fs::create_symlink("../elsewhere/real.pmml", Target("link.pmml"));
  fs::create_symlink("link.pmml", Target("link2.pmml"));
  EXPECT_EQ(Run(Target("link2.pmml")).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(Target("link.pmml")));
  EXPECT_TRUE(fs::is_symlink(Target("link2.pmml")));
  EXPECT_THAT(ReadFile(file), HasSubstr("<Segment>"));
}

TEST_F(CombineOutput, IsMadeWhereALinkLeadsToNothingYet) {
  fs::create_symlink(folder_.File("new.pmml"), Target("link.pmml"));
  EXPECT_EQ(Run(Target("link.pmml")).exitCode, 0);
  EXPECT_THAT(ReadFile(folder_.File("new.pmml")), HasSubstr("<Segment>"));
}

TEST_F(CombineOutput, IsNoFolderDeviceOrFileToRead) {
  struct Row {
    std::string target;
    int exitCode;
    std::string message;
  };
  fs::create_symlink("loop", Target("loop"));
  for (const Row& row : std::vector<Row>{{folder_.File("out"), 3, "is a directory"},
                                         {Target("loop"), 3, "leads in a circle"},
                                         {"/dev/full", 3, "is a pipe or a device"},
                                         {Target("none/x.pmml"), 3, "cannot be written: No such file or directory"},
                                         {source_, 2, "is one of the files to read"},
                                         {"", 2, "-o names no file"},
                                         {"-", 2, "-o - is not standard output"}}) {
    const ToolResult result = Run(row.target);
    EXPECT_EQ(result.exitCode, row.exitCode) << row.target << result;
    EXPECT_THAT(result.err, HasSubstr(row.message));
  }
  ExpectNothingLeft();
  EXPECT_EQ(ReadFile(source_), Text(SplitText{}));
}

TEST_F(CombineOutput, IsNotMadeInAFolderThatMayNotBeWritten) {
  if (geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  chmod(folder_.File("out").c_str(), 0555);
  const ToolResult result = Run(Target());
  chmod(folder_.File("out").c_str(), 0755);
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("cannot be written: Permission denied"));
}

TEST_F(CombineOutput, IsAsItWasWhenTheRoomDoesNotDo) {
  WriteFile(Target(), "old");
  for (const std::size_t limit : {1u, 300u, 600u}) {
    const ToolResult result = RunTool(ToolCall{.arguments = Arguments(Target()), .fileSizeLimit = limit});
    EXPECT_EQ(result.exitCode, 3) << result;
    EXPECT_THAT(result.err, HasSubstr("out.pmml: cannot be written\n  status 118: "));
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(ReadFile(Target()), "old");
    ExpectNothingLeft();
  }
}

TEST_F(CombineOutput, IsAsItWasWhenAFileIsRefused) {
  WriteFile(Target(), "old");
  WriteFile(source_, "<PMML/>");
  EXPECT_EQ(Run(Target()).exitCode, 1);
  EXPECT_EQ(ReadFile(Target()), "old");
  ExpectNothingLeft();
}

// Starts the command, waits until it has begun to write, and ends it with a signal.
class Killed : public CombineOutput, public ::testing::WithParamInterface<int> {
 protected:
  void StartAndKill(int number) {
    std::vector<std::string> words{RQXML_TOOL, "combine", "-o", Target(), "--manifest", LongManifest(400)};
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t child = 0;
    ASSERT_EQ(posix_spawn(&child, RQXML_TOOL, nullptr, nullptr, argv.data(), environ), 0);
    begun_ = WaitForBytes();
    kill(child, number);
    ASSERT_EQ(waitpid(child, &status_, 0), child);
  }

  bool begun_ = false;
  int status_ = 0;

 private:
  bool WaitForBytes() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < deadline) {
      for (const std::string& name : Leftovers(folder_.File("out"))) {
        std::error_code error;
        const auto size = fs::file_size(Target(name), error);
        if (!error && size > 0) return true;
      }
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return false;
  }
};

TEST_P(Killed, WhileItWritesLeavesTheOldFileAsItWas) {
  WriteFile(Target(), "old");
  StartAndKill(GetParam());
  ASSERT_TRUE(begun_);
  ASSERT_TRUE(WIFSIGNALED(status_)) << "the command was too fast for this test";
  EXPECT_EQ(WTERMSIG(status_), GetParam());
  EXPECT_EQ(ReadFile(Target()), "old");
  if (GetParam() != SIGKILL) ExpectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(BySignal, Killed, ::testing::Values(SIGKILL, SIGTERM, SIGINT, SIGHUP));

}  // namespace
