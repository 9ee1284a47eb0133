#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using rqtest::HasTerminals;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

std::string Example(const std::string& name) { return SourceFile("examples/" + name); }

std::string Text(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "vars");
  const ToolResult result = RunTool(arguments);
  EXPECT_EQ(result.exitCode, 0) << result;
  return result.out;
}

std::string TextOf(const std::string& fields) {
  const TempFolder folder;
  return Text({WriteFile(folder.File("x.pmml"), "<PMML><DataDictionary>" + fields + "</DataDictionary></PMML>")});
}

std::string OnTerminal(unsigned short columns, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "vars");
  const ToolResult result = RunTool(ToolCall{.arguments = arguments, .terminalColumns = columns});
  EXPECT_EQ(result.exitCode, 0) << result;
  return result.out;
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(VarsText, IsATableUnderATitle) {
  EXPECT_EQ(Text({Example("customers.pmml"), "--bins", "--fields", "age,months,contract,left"}),
            Example("customers.pmml") + R"(: PMML document, 4 variables

#  Name      Label                 Kind         Type     Missing values     Invalid range  Range, bins or categories
-  --------  --------------------  -----------  -------  -----------------  -------------  ------------------------------------------------------------
0  age       Age in years          continuous   numeric  -1 = not asked     -1000 .. -2    18 .. 30 = young, 30 .. 60 = middle, 60 .. 110 = old
1  months    Months as a customer  continuous   numeric                     720 ..         .. 12 = first year, 12 .. 60 = up to five years, 60 .. = longer
2  contract  Kind of contract      categorical  string   ? = contract lost                 M = monthly, Y = one year, 2Y = two years
3  left      Left the company      categorical  numeric                                    0 = no, 1 = yes
)");
}

TEST(VarsText, LeavesOutColumnsInWhichNothingStands) {
  EXPECT_THAT(TextOf("<DataField name='x' optype='continuous' dataType='double'/>"), HasSubstr(R"(
#  Name  Kind        Type
-  ----  ----------  -------
0  x     continuous  numeric
)"));
}

TEST(VarsText, AlignsColumnsByWhatIsSeen) {
  EXPECT_EQ(Text({Example("travellers.pmml"), "--fields", "職業,вес,fe\u0301erique,भाषा,성별"}),
            Example("travellers.pmml") + ": PMML document, 5 variables\n" + R"(
#  Name      Label                           Kind         Type     Missing values   Range, bins or categories
-  --------  ------------------------------  -----------  -------  ---------------  -----------------------------------
0  вес       Вес в килограммах               continuous   numeric  -1 = нет ответа
1  職業      職業(現在)                      categorical  string   無回答           学生, 会社員, 自営業
2  성별      응답자의 성별                   categorical  numeric  9 = 무응답       1 = 여성, 2 = 남성
3  भाषा      पहली भाषा                       categorical  string                    hi = हिन्दी, ta = தமிழ், en = English
4  )" + "fe\u0301erique" +
                R"(  a word with a combining accent  categorical  string                    peu, assez, très
)");
}

TEST(VarsText, IsUtf8InEveryLocale) {
  const std::string expected = Text({Example("travellers.pmml")});
  for (const char* locale : {"C", "POSIX", "de_DE.ISO-8859-1"}) {
    const ToolResult result = RunTool(ToolCall{.arguments = {"vars", Example("travellers.pmml")},
                                               .environment = {{"LC_ALL", locale}, {"LANG", locale}}});
    EXPECT_EQ(result.out, expected) << locale;
  }
}

TEST(VarsText, QuotesValuesThatCouldBeMistakenInAList) {
  const std::string text = TextOf(
      "<DataField name='x' optype='categorical' dataType='string'><Value value='a, b'/><Value value=''/>"
      "<Value value=' c'/><Value value='d '/><Value value='e=f'/><Value value='g h'/><Value "
      "value='&quot;'/></DataField>");
  EXPECT_THAT(text, HasSubstr(R"("a, b", "", " c", "d ", "e=f", g h, """)"));
}

TEST(VarsText, ShowsControlCharactersEscaped) {
  const std::string text = TextOf(
      "<DataField name='a&#x9b;31m' displayName='l&#10;&#9;l' optype='categorical' dataType='string'>"
      "<Value value='v&#x202e;v' displayValue='w&#x85;w'/></DataField>");
  EXPECT_THAT(text, AllOf(HasSubstr("a\\u{9b}31m"), HasSubstr("l\\n\\tl"), HasSubstr("v\\u{202e}v = w\\u{85}w")));
  EXPECT_THAT(text, AllOf(Not(HasSubstr("\u009b")), Not(HasSubstr("\u202e")), Not(HasSubstr("\t"))));
}

TEST(VarsText, CountsOneVariableInTheSingularAndNoneWithoutATable) {
  EXPECT_THAT(TextOf("<DataField name='x' optype='continuous' dataType='double'/>"), HasSubstr(", 1 variable\n"));
  EXPECT_THAT(TextOf(""), HasSubstr("x.pmml: PMML document, 0 variables\n"));
  EXPECT_EQ(Lines(TextOf("")).size(), 1u);
}

TEST(VarsText, AHugeNameDoesNotPushTheOtherRowsAside) {
  std::string fields = "<DataField name='" + std::string(100'000, 'n') + "' optype='continuous' dataType='double'/>";
  for (int i = 0; i < 1000; ++i) {
    fields += "<DataField name='" + std::to_string(i) + "' optype='continuous' dataType='double'/>";
  }
  EXPECT_LT(TextOf(fields).size(), 300'000u);
}

TEST(OnATerminal, LinesFitItsWidth) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  for (const char* document : {"customers.pmml", "survey.pmml", "travellers.pmml"}) {
    for (const unsigned short columns : std::vector<unsigned short>{60, 80, 100, 132}) {
      const std::vector<std::string> lines = Lines(OnTerminal(columns, {Example(document)}));
      for (std::size_t i = 1; i < lines.size(); ++i) {  // the first has the file's name
        const auto characters =
            std::count_if(lines[i].begin(), lines[i].end(), [](char c) { return (c & 0xC0) != 0x80; });
        EXPECT_LE(characters, columns) << lines[i];
      }
    }
  }
}

TEST(OnATerminal, ThatIsWideEnoughTheTableIsThatOfAFile) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  EXPECT_EQ(OnTerminal(500, {Example("survey.pmml")}), Text({Example("survey.pmml")}));
}

TEST(OnATerminal, LongListsEndWithTheNumberOfTheirItems) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const std::string text = OnTerminal(100, {Example("survey.pmml"), "--fields", "state"});
  EXPECT_THAT(text,
              AllOf(HasSubstr("1 = Schleswig-Holstein, "), HasSubstr(", … (16 in all)"), Not(HasSubstr("Thüringen"))));
}

TEST(OnATerminal, ThatIsTooNarrowForTheTableListsStandBeneathTheirVariable) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  EXPECT_THAT(OnTerminal(80, {Example("customers.pmml"), "--bins"}), HasSubstr(R"(
0  age           Age in years                        continuous   numeric
   missing: -1 = not asked
   invalid: -1000 .. -2
   values: 18 .. 30 = young, 30 .. 60 = middle, 60 .. 110 = old
1  months        Months as a customer                continuous   numeric
   invalid: 720 ..
)"));
}

TEST(OnATerminal, WideShowsAll) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  EXPECT_EQ(OnTerminal(60, {Example("survey.pmml"), "--wide"}), Text({Example("survey.pmml")}));
}

}  // namespace
