#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include "tests/support/platform.h"
#include "tests/tool/stats_support.h"

namespace fs = std::filesystem;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::Statistics;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WithModels;
using rqtest::WithStatistics;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

namespace {

constexpr const char* kCounts = "<DiscrStats><Array type='int'>3 1</Array></DiscrStats>";

class Pictures : public rqtest::WithPlatform {
 protected:
  // Throws what is not well-formed out of the parser.
  static void RequireWellFormed(const std::string& markup) {
    xercesc::HandlerBase throwing;
    xercesc::XercesDOMParser parser;
    parser.setErrorHandler(&throwing);
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(markup.data()), markup.size(), "markup");
    EXPECT_NO_THROW(parser.parse(source)) << markup;
  }

  static std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  ToolResult Write(const std::string& document, const std::vector<std::string>& options) const {
    ToolCall call{.arguments = {"stats", WriteFile(folder_.File("x.pmml"), document)}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    return RunTool(call);
  }

  TempFolder folder_;
};

TEST_F(Pictures, AreOneForEachFieldThatCanBeRead) {
  const std::string pictures = folder_.File("new/folder");
  const ToolResult result = RunTool({"stats", SourceFile("examples/bicycles.pmml"), "--svg", pictures, "--json"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(FilesIn(pictures), ElementsAre("distance.svg", "duration.svg", "temperature.svg", "weekday.svg"));
  for (const std::string& name : FilesIn(pictures)) RequireWellFormed(ReadFile(pictures + "/" + name));
  const auto json = nlohmann::json::parse(result.out);
  EXPECT_EQ(json.at("statistics")[0].at("picture"), pictures + "/duration.svg");
  EXPECT_THAT(ReadFile(pictures + "/weekday.svg"),
              AllOf(HasSubstr(">3 = Wednesday</text>"), HasSubstr(">175 (14.6%)</text>"), Not(HasSubstr("<script"))));
  EXPECT_THAT(ReadFile(pictures + "/duration.svg"), HasSubstr("<title>[10, 20): 421 (35.1%)</title></rect>"));
  EXPECT_THAT(ReadFile(pictures + "/distance.svg"), HasSubstr(">mean 3.9</text>"));
}

TEST_F(Pictures, HaveAColumnOrBarAsLongAsItsCount) {
  const std::string document =
      WithStatistics(Statistics("c",
                                "<NumericInfo/><ContStats><Interval closure='openOpen' leftMargin='0' rightMargin='1'/>"
                                "<Interval closure='openOpen' leftMargin='1' rightMargin='2'/>"
                                "<Array type='int'>200 100</Array></ContStats>"));
  EXPECT_EQ(Write(document, {"--svg", folder_.Path()}).exitCode, 0);
  EXPECT_THAT(ReadFile(folder_.File("c.svg")),
              AllOf(HasSubstr("height=\"150.00\" class=\"b\""), HasSubstr("height=\"75.00\" class=\"b\"")));
}

TEST_F(Pictures, OfHostileNamesHaveSafeAndDifferentFileNames) {
  std::string statistics;
  for (const char* const name : {"../../up", "a", "a", "A", "a-2", ".hidden", "-o", "/etc/passwd", "con", "Größe",
                                 "&#x1;", "&lt;script&gt;alert(1)&lt;/script&gt;", " ", "a&#10;b"}) {
    statistics += Statistics(name, kCounts);
  }
  const std::string pictures = folder_.File("out");
  const ToolResult result = Write("<?xml version='1.1'?>" + WithStatistics(statistics), {"--svg", pictures});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(FilesIn(pictures),
              UnorderedElementsAre("_.._.._up.svg", "a.svg", "a-2.svg", "A-3.svg", "a-2-2.svg", "_.hidden.svg",
                                   "_-o.svg", "_etc_passwd.svg", "_con.svg", "Größe.svg", "_.svg",
                                   "_script_alert_1___script_.svg", "_-2.svg", "a_b.svg"));
  for (const std::string& name : FilesIn(pictures)) {
    const std::string picture = ReadFile(pictures + "/" + name);
    RequireWellFormed(picture);
    EXPECT_THAT(picture, Not(HasSubstr("<script")));
  }
  EXPECT_THAT(FilesIn(folder_.Path()), UnorderedElementsAre("out", "x.pmml"));
}

TEST_F(Pictures, OfVeryLongNamesAndManyCategoriesStaySmall) {
  std::string counts;
  for (int i = 0; i < 5000; ++i) counts += " 1";
  const std::string document = WithStatistics(
      Statistics(std::string(5000, 'x'), "<DiscrStats><Array type='int'>" + counts + "</Array></DiscrStats>"));
  EXPECT_EQ(Write(document, {"--svg", folder_.Path()}).exitCode, 0);
  const std::string picture = ReadFile(folder_.File(std::string(120, 'x') + ".svg"));
  EXPECT_THAT(picture, HasSubstr("… and 4960 more"));
  EXPECT_LT(picture.size(), 30'000u);
}

TEST_F(Pictures, NeedAFolderAndNeverReplaceTheDocument) {
  const std::string document = WithStatistics(Statistics("x", kCounts));
  const ToolResult file = Write(document, {"--svg", folder_.File("x.pmml")});
  EXPECT_EQ(file.exitCode, 3) << file;
  EXPECT_THAT(file.err, HasSubstr("x.pmml: is no folder and cannot be made one"));
  const std::string picture = WriteFile(folder_.File("x.svg"), document);
  const ToolResult itself = RunTool({"stats", picture, "--svg", folder_.Path()});
  EXPECT_EQ(itself.exitCode, 2) << itself;
  EXPECT_THAT(itself.err, HasSubstr("x.svg is the file to read"));
  EXPECT_EQ(ReadFile(picture), document);
  EXPECT_EQ(Write(document, {"--html", folder_.File("x.pmml")}).exitCode, 2);
  EXPECT_EQ(Write(document, {"--html", folder_.File("no/such/x.html")}).exitCode, 3);
  EXPECT_EQ(Write(document, {"--html", folder_.Path()}).exitCode, 3);
}

TEST_F(Pictures, ThatCannotBeWrittenWholeLeaveWhatStoodThere) {
  const std::string page = WriteFile(folder_.File("x.html"), "old");
  ToolCall call{.arguments = {"stats", SourceFile("examples/bicycles.pmml"), "--html", page}, .fileSizeLimit = 1000};
  const ToolResult result = RunTool(call);
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("cannot be written"));
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_EQ(ReadFile(page), "old");
  EXPECT_THAT(FilesIn(folder_.Path()), ElementsAre("x.html"));
}

using Page = Pictures;

TEST_F(Page, IsWellFormedAndAboutTheWholeDocumentWhateverWasAskedFor) {
  const std::string page = folder_.File("x.html");
  const ToolResult result =
      RunTool({"stats", SourceFile("examples/bicycles.pmml"), "--html", page, "--field", "weekday"});
  EXPECT_EQ(result.exitCode, 0) << result;
  const std::string markup = ReadFile(page);
  RequireWellFormed(markup);
  for (const char* const part :
       {"<p class=\"dim\">7 variables, 2 models</p>", "<h2>RegressionModel &quot;duration&quot;</h2>",
        "<h2>TreeModel &quot;ticket&quot;</h2>", "<h3>climb</h3>", "<td>Metres uphill</td>",
        "Interval number 2: it begins before the end", "status 115: ", "<td>3 = Wednesday</td><td class=\"n\">175</td>",
        "read leniently: texts stand before the counts"}) {
    EXPECT_THAT(markup, HasSubstr(part));
  }
}

TEST_F(Page, NeedsNothingBesidesItselfAndNoScript) {
  const std::string page = folder_.File("x.html");
  EXPECT_EQ(RunTool({"stats", SourceFile("examples/bicycles.pmml"), "--html", page}).exitCode, 0);
  std::string markup = ReadFile(page);
  // The names of the two languages are no addresses to fetch.
  for (const std::string& name :
       {std::string("http://www.w3.org/2000/svg"), std::string("http://www.w3.org/1999/xhtml")}) {
    for (auto at = markup.find(name); at != std::string::npos; at = markup.find(name)) markup.erase(at, name.size());
  }
  for (const char* const part : {"<script", "http:", "https:", "src=", "href=", "url(", "@import", "onload"}) {
    EXPECT_THAT(markup, Not(HasSubstr(part)));
  }
  EXPECT_THAT(markup, AllOf(HasSubstr("default-src 'none'"), HasSubstr("width=device-width"),
                            HasSubstr("prefers-color-scheme:dark")));
}

TEST_F(Page, OfHostileTextsIsStillWellFormed) {
  const std::string evil = "&lt;/style&gt;&lt;script&gt;alert(&apos;1&apos;)&lt;/script&gt;&amp;&quot;&#x1b;&#x202e;";
  const std::string document =
      "<?xml version='1.1'?><PMML><DataDictionary><DataField name='" + evil + "' displayName='" + evil +
      "' optype='categorical' dataType='string'><Value value='" + evil + "' displayValue='" + evil +
      "'/></DataField><DataField name='b' optype='continuous' dataType='boolean'/><DataField name='c' "
      "optype='continuous' dataType='double'/></DataDictionary><TreeModel modelName='" +
      evil + "'><ModelStats>" + Statistics(evil, "<DiscrStats><Array type='int'>3</Array></DiscrStats>") +
      Statistics(evil, "<DiscrStats><Array type='" + evil + "'>3</Array></DiscrStats>") +
      "</ModelStats></TreeModel></PMML>";
  const std::string page = folder_.File("<b>&\".html");
  EXPECT_EQ(Write(document, {"--html", page, "--svg", folder_.File("out")}).exitCode, 1);
  const std::string markup = ReadFile(page);
  RequireWellFormed(markup);
  EXPECT_THAT(markup, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("\x1b")), Not(HasSubstr("\u202e")),
                            HasSubstr("&lt;script&gt;alert(&#39;1&#39;)"), HasSubstr("\\x1b")));
  for (const std::string& name : FilesIn(folder_.File("out"))) RequireWellFormed(ReadFile(folder_.File("out/" + name)));
}

TEST_F(Page, ShowsTheVariablesThatCanBeReadAndTellsOfTheOthers) {
  const auto field = [](const std::string& name, const std::string& type) {
    return "<DataField name='" + name + "' optype='continuous' dataType='" + type + "'/>\n";
  };
  const std::string page = folder_.File("x.html");
  const std::string document = "<PMML><DataDictionary>\n" + field("first", "double") + field("bad", "boolean") +
                               field("second", "double") + field("first", "integer") + field("third", "double") +
                               "<DataField/>" + field("behind", "double") + "</DataDictionary><TreeModel/></PMML>";
  EXPECT_EQ(Write(document, {"--html", page}).exitCode, 0);
  const std::string markup = ReadFile(page);
  RequireWellFormed(markup);
  for (const char* const shown : {"<td>first</td>", "<td>second</td>", "<td>third</td>", "3 variables, 1 model<",
                                  "x.pmml:3:63: DataField &quot;bad&quot;: dataType=&quot;boolean&quot; is not read",
                                  "DataField &quot;first&quot;: a field before it has the same name",
                                  "DataField number 6: the attribute &quot;name&quot; is missing"}) {
    EXPECT_THAT(markup, HasSubstr(shown));
  }
  EXPECT_THAT(markup, Not(HasSubstr("<td>behind</td>")));
}

}  // namespace
