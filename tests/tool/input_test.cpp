#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr const char* kOneField =
    "<PMML><DataDictionary><DataField name='x' optype='continuous' dataType='double'/></DataDictionary></PMML>";
constexpr const char* kWithDoctype =
    "<?xml version='1.0'?>\n<!-- <PMML> --><!DOCTYPE PMML [<!ENTITY e 'entity'>]>\n"
    "<PMML><DataDictionary><DataField name='&e;' optype='continuous' dataType='double'/></DataDictionary></PMML>";

std::string Example(const std::string& name) { return SourceFile("examples/" + name); }

// Nothing was printed, and the reason and a hint were told.
void ExpectFileFailure(const ToolResult& result, const std::string& reason) {
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, AllOf(StartsWith("rqxml: "), HasSubstr(reason), HasSubstr("\n  hint: ")));
}

TEST(Input, StandardInputGivesWhatTheFileGives) {
  const ToolResult file = RunTool({"vars", Example("customers.pmml"), "--bins"});
  const ToolResult standardInput =
      RunTool(ToolCall{.arguments = {"vars", "-", "--bins"}, .input = ReadFile(Example("customers.pmml"))});
  EXPECT_EQ(standardInput.exitCode, 0) << standardInput;
  EXPECT_THAT(standardInput.out, StartsWith("standard input: PMML document, 9 variables\n"));
  EXPECT_EQ(standardInput.out.substr(standardInput.out.find('\n')), file.out.substr(file.out.find('\n')));
}

TEST(Input, StandardInputMayBeLongerThanAPipeHolds) {
  std::string document = "<PMML><DataDictionary>";
  for (int i = 0; i < 5000; ++i) {
    document += "<DataField name='field" + std::to_string(i) + "' optype='continuous' dataType='double'/>";
  }
  document += "</DataDictionary></PMML>";
  ASSERT_GT(document.size(), 300'000u);
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "-"}, .input = document});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(HasSubstr("5000 variables"), HasSubstr("\n4999  field4999  continuous")));
}

TEST(Input, EndlessRubbishOnStandardInputIsRefusedAtOnce) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "-"}, .input = std::string(50'000'000, 'y')});
  EXPECT_EQ(result.exitCode, 1) << result.err;
  EXPECT_THAT(result.err, HasSubstr("standard input:1:"));
}

TEST(Input, ClosedStandardInputCannotBeRead) {
  ExpectFileFailure(RunTool(ToolCall{.arguments = {"vars", "-"}, .closeInput = true}), "standard input: could not be");
}

TEST(Input, WhatIsNotThereCannotBeOpened) {
  ExpectFileFailure(RunTool({"vars", "/no/such/file.pmml"}), "/no/such/file.pmml: cannot be opened: No such file");
}

TEST(Input, AnEmptyNameIsShownInQuotes) {
  ExpectFileFailure(RunTool({"vars", ""}), "rqxml: \"\": cannot be opened: No such file");
}

TEST(Input, AnAddressIsALocalFileThatIsNotThere) {
  // Even if the network were asked, nobody would answer there.
  for (const char* name : {"http://127.0.0.1:9/x.pmml", "ftp://127.0.0.1:9/x.pmml", "file:///etc/hostname"}) {
    for (const auto& arguments : {std::vector<std::string>{"vars", name}, {"vars", "--allow-dtd", name}}) {
      const ToolResult result = RunTool(arguments);
      ExpectFileFailure(result, "cannot be opened: No such file");
      EXPECT_THAT(result.err, HasSubstr("nothing is fetched from a network"));
    }
  }
}

TEST(Input, AFolderIsRefusedWithAndWithoutAllowDtd) {
  const TempFolder folder;
  ExpectFileFailure(RunTool({"vars", folder.Path()}), "is a directory");
  ExpectFileFailure(RunTool({"vars", "--allow-dtd", folder.Path()}), "is a directory");
}

TEST(Input, AFileWithoutPermissionCannotBeOpened) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  const TempFolder folder;
  const std::string file = WriteFile(folder.File("secret.pmml"), kOneField);
  ASSERT_EQ(chmod(file.c_str(), 0), 0);
  ExpectFileFailure(RunTool({"vars", file}), "Permission denied");
}

TEST(Input, AFileBelowAFileCannotBeOpened) {
  ExpectFileFailure(RunTool({"vars", Example("customers.pmml") + "/x"}), "Not a directory");
}

TEST(Input, APipeIsRefusedWithoutWaitingForAWriter) {
  const TempFolder folder;
  const std::string pipe = folder.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const ToolResult result = RunTool({"vars", pipe});
  ExpectFileFailure(result, "is a pipe or a device");
  EXPECT_THAT(result.err, HasSubstr("--allow-dtd"));
}

TEST(Input, APipeIsReadWithAllowDtdAlsoASecondTimeForAMessage) {
  const TempFolder folder;
  const std::string pipe = folder.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto runWith = [&](const std::string& document) {
    std::thread writer([&] { WriteFile(pipe, document); });
    const ToolResult result = RunTool({"vars", "--allow-dtd", pipe});
    writer.join();
    return result;
  };
  const ToolResult good = runWith(kOneField);
  EXPECT_EQ(good.exitCode, 0) << good;
  EXPECT_THAT(good.out, HasSubstr(": PMML document, 1 variable\n"));
  const ToolResult bad = runWith("<PMML>\n<DataDictionary>\n<DataField/></DataDictionary></PMML>");
  EXPECT_EQ(bad.exitCode, 1) << bad;
  EXPECT_THAT(bad.err, HasSubstr("pipe:3:13: DataField number 1"));
}

// Gives `name` to each of two files in turn as fast as it can, until it is destroyed.
class NameChanger {
 public:
  NameChanger(const std::string& name, const std::string& one, const std::string& other)
      : thread_([this, name, one, other] {
          for (bool first = false; !done_; first = !first) {
            std::filesystem::create_hard_link(first ? one : other, name + ".new");
            std::filesystem::rename(name + ".new", name);
          }
        }) {}
  ~NameChanger() {
    done_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> done_{false};
  std::thread thread_;
};

TEST(Input, ANameThatTurnsIntoAPipeWhileItIsOpenedDoesNotHang) {
  const TempFolder folder;
  const std::string pipe = folder.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string file = WriteFile(folder.File("file"), kOneField);
  const std::string name = folder.File("name");
  std::filesystem::create_hard_link(file, name);
  const NameChanger changer(name, file, pipe);
  for (int i = 0; i < 100; ++i) {
    const ToolResult result = RunTool({"vars", name});
    ASSERT_TRUE(result.exitCode == 0 || result.exitCode == 3) << result;
  }
}

TEST(Input, ADeviceIsRefused) { ExpectFileFailure(RunTool({"vars", "/dev/zero"}), "is a pipe or a device"); }

TEST(Input, ALinkToARegularFileIsRead) {
  const TempFolder folder;
  std::filesystem::create_symlink(Example("customers.pmml"), folder.File("link"));
  EXPECT_EQ(RunTool({"vars", folder.File("link")}).exitCode, 0);
}

TEST(Input, AFileThatCannotBeReadToItsEndIsAFileFailure) {
  if (!std::filesystem::exists("/proc/self/mem")) GTEST_SKIP() << "there is no such file here";
  ExpectFileFailure(RunTool({"vars", "/proc/self/mem"}), "could not be read to its end");
}

TEST(Input, ANameMayHoldAnything) {
  const TempFolder folder;
  const std::string file = WriteFile(folder.File("a\x1b[31m\xff\n.pmml"), kOneField);
  const ToolResult text = RunTool({"vars", file});
  EXPECT_EQ(text.exitCode, 0) << text;
  EXPECT_THAT(text.out, HasSubstr("a\\x1b[31m\\xff\\n.pmml: PMML document"));
  const ToolResult json = RunTool({"vars", "--json", file});
  EXPECT_EQ(json.exitCode, 0) << json;
  EXPECT_THAT(json.out, HasSubstr("a\\u001b[31m\xEF\xBF\xBD\\n.pmml\""));
}

TEST(Doctype, IsRefusedInEveryPlaceAndEncodingWithTheWayOut) {
  const TempFolder folder;
  std::string utf16 = "\xFF\xFE";
  for (const char* c = kWithDoctype; *c != '\0'; ++c) utf16.append(1, *c).append(1, '\0');
  const std::vector<std::string> documents{
      kWithDoctype,
      "<!DOCTYPE PMML><PMML><DataDictionary/></PMML>",
      "\xEF\xBB\xBF<!DOCTYPE PMML><PMML><DataDictionary/></PMML>",
      "<?xml version='1.0'?>\n<?pi <a> ?><!-- - <PMML> ?> -->\n<!DOCTYPE PMML SYSTEM 'http://127.0.0.1:9/x'><PMML/>",
      utf16,
  };
  for (const std::string& document : documents) {
    const ToolResult result = RunTool({"vars", WriteFile(folder.File("d.pmml"), document)});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("d.pmml:"), HasSubstr("DOCTYPE"), HasSubstr("--allow-dtd")));
  }
}

TEST(Doctype, IsRefusedOnStandardInputToo) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "-"}, .input = kWithDoctype});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("standard input:2:"), HasSubstr("DOCTYPE"), HasSubstr("--allow-dtd")));
}

TEST(Doctype, IsReadWithAllowDtd) {
  const TempFolder folder;
  const ToolResult result = RunTool({"vars", "--allow-dtd", WriteFile(folder.File("d.pmml"), kWithDoctype)});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, HasSubstr("\n0  entity  continuous"));
}

TEST(Doctype, StaysRefusedWithAllowDtdWhereTheEnvironmentForbidsIt) {
  const TempFolder folder;
  const ToolResult result =
      RunTool(ToolCall{.arguments = {"vars", "--allow-dtd", WriteFile(folder.File("d.pmml"), kWithDoctype)},
                       .environment = {{"XERCES_DISABLE_DTD", "1"}}});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("DOCTYPE"), HasSubstr("XERCES_DISABLE_DTD")));
}

TEST(Doctype, CannotMakeTheReaderOpenOtherFiles) {
  const TempFolder folder;
  const std::string secret = WriteFile(folder.File("secret"), "the secret");
  const std::string document = "<!DOCTYPE PMML [<!ENTITY e SYSTEM '" + secret +
                               "'>]><PMML><DataDictionary><DataField name='x' optype='continuous' dataType='double'>"
                               "</DataField>&e;</DataDictionary></PMML>";
  const ToolResult result = RunTool({"vars", "--json", WriteFile(folder.File("d.pmml"), document)});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("DOCTYPE"), Not(HasSubstr("the secret"))));
}

TEST(Doctype, WithAPartThatIsNotThereIsRefusedWithAHint) {
  const TempFolder folder;
  for (const std::string doctype :
       {"<!DOCTYPE PMML SYSTEM '/no/such.dtd'>", "<!DOCTYPE PMML [<!ENTITY e SYSTEM '/no/such.xml'>]>",
        "<!DOCTYPE PMML [<!ENTITY % p SYSTEM '/no/such.ent'> %p;]>"}) {
    const std::string reference = doctype.find("ENTITY e") == std::string::npos ? "" : "&e;";
    const std::string document = doctype + "\n<PMML>" + reference + "<DataDictionary/></PMML>";
    const ToolResult result = RunTool({"vars", "--allow-dtd", WriteFile(folder.File("d.pmml"), document)});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.err, AllOf(HasSubstr("/no/such."), HasSubstr("\n  status 104: "),
                                  HasSubstr("\n  hint: see that every file and address that the DOCTYPE names")));
  }
}

TEST(Doctype, IsFollowedOnceOnlyWhateverIsToldOfTheDocument) {
  const TempFolder folder;
  const std::string part = folder.File("part");
  ASSERT_EQ(mkfifo(part.c_str(), 0600), 0);
  struct Row {
    std::string content;
    std::string message;
  };
  const std::vector<Row> rows{
      {"<PMML>&e;<DataDictionary><DataField/></DataDictionary></PMML>", "d.pmml: DataField number 1: the attribute"},
      {"<PMML>&e;</PMML>", "d.pmml: \"PMML\" has no child element"},
      {"<Other>&e;</Other>", "d.pmml: has no document element"},
      {"<PMML>&e;<Data", "d.pmml: cannot be read as XML: "},
  };
  for (const Row& row : rows) {
    const std::string doctype = "<!DOCTYPE PMML [<!ENTITY e SYSTEM '" + part + "'>]>\n";
    const std::string file = WriteFile(folder.File("d.pmml"), doctype + row.content);
    std::thread writer([&] { WriteFile(part, "<part/>"); });
    const ToolResult result = RunTool({"vars", "--allow-dtd", file});
    writer.join();
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.err, HasSubstr(row.message));
  }
}

TEST(Doctype, AnErrorInAnEntityNamesTheEntityNotTheDocument) {
  const TempFolder folder;
  WriteFile(folder.File("part.xml"), "\n\n<a><b></a>");
  const std::string document =
      "<!DOCTYPE PMML [<!ENTITY e SYSTEM '" + folder.File("part.xml") + "'>]><PMML>&e;<DataDictionary/></PMML>";
  const ToolResult result = RunTool({"vars", "--allow-dtd", WriteFile(folder.File("d.pmml"), document)});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, HasSubstr("part.xml:3:"));
}

TEST(Output, AFullDiskIsAFileFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full here";
  for (const auto& arguments : {std::vector<std::string>{"vars", Example("customers.pmml")}, {"status"}, {"--help"}}) {
    const ToolResult result = RunTool(ToolCall{.arguments = arguments, .outputFile = "/dev/full"});
    EXPECT_EQ(result.exitCode, 3) << result;
    EXPECT_THAT(result.err, AllOf(HasSubstr("standard output cannot be written"), HasSubstr("No space left")));
  }
}

TEST(Output, BeyondThePermittedSizeOfAFileIsAFileFailure) {
  const TempFolder folder;
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "--json", Example("customers.pmml")},
                                             .outputFile = folder.File("out"),
                                             .fileSizeLimit = 100});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("standard output cannot be written"), HasSubstr("File too large")));
}

TEST(Output, AClosedStandardOutputIsAFileFailure) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", Example("customers.pmml")}, .closeOutput = true});
  EXPECT_EQ(result.exitCode, 3) << result;
}

TEST(Output, AReaderThatLeavesEndsTheCommandInSilence) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", Example("customers.pmml")}, .breakPipe = true});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, IsEmpty());
}

}  // namespace
