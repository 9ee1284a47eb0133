#include "DocumentScan.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/platform.h"

using rqtool::FindDocumentElement;
using rqtool::FindElement;
using rqtool::FindError;
using rqtool::HasDoctype;
using rqtool::Place;

namespace {

class DocumentScan : public rqtest::WithPlatform {};

std::string Utf16(const std::string& text) {
  std::string wide = "\xFE\xFF";
  for (const char c : text) wide.append(1, '\0').append(1, c);
  return wide;
}

std::string Shown(const std::optional<Place>& place) {
  return place ? std::to_string(place->line) + ':' + std::to_string(place->column) : "nowhere";
}

TEST_F(DocumentScan, FindsADoctypeBehindWhateverMayStandBeforeIt) {
  struct Row {
    std::string document;
    bool found;
  };
  const std::vector<Row> rows{
      {"<!DOCTYPE a><a/>", true},
      {" \r\n\t<!DOCTYPE a><a/>", true},
      {"\xEF\xBB\xBF<!DOCTYPE a><a/>", true},
      {Utf16("<?xml version='1.0'?><!DOCTYPE a><a/>"), true},
      {"<?xml version='1.0'?><?a ? > ?><!-- - > --><!---->\n<!DOCTYPE a><a/>", true},
      {"<a/><!DOCTYPE a>", false},
      {"<!-- <!DOCTYPE a> --><a/>", false},
      {"<?p <!DOCTYPE a> ?><a/>", false},
      {"<!doctype a><a/>", false},
      {"<!-- <!DOCTYPE a>", false},
      {"text <!DOCTYPE a>", false},
      {"<!", false},
      {"<", false},
      {"", false},
  };
  for (const Row& row : rows) {
    std::istringstream in(row.document);
    EXPECT_EQ(HasDoctype(in), row.found) << ::testing::PrintToString(row.document);
  }
}

TEST_F(DocumentScan, FindsTheDocumentElementAlsoOfADocumentThatIsBadFurtherOn) {
  for (const std::string document : {"<?p?>\n<n:a b=''><c/></n:a>", "<?p?>\n<n:a b=''><c>"}) {
    std::istringstream in(document);
    const auto element = FindDocumentElement(in);
    ASSERT_TRUE(element);
    EXPECT_EQ(element->name, "n:a");
    EXPECT_EQ(Shown(element->place), "2:11");
  }
  std::istringstream none("nothing");
  EXPECT_FALSE(FindDocumentElement(none));
}

TEST_F(DocumentScan, FindsAnElementByTheWayToIt) {
  const std::string document =
      "<PMML>\n<!-- --><a/>\n<b>text<c/>\n<d><e/></d><c>\n <f/></c>\n</b>\n<b><c/><c/><c/><c/></b></PMML>";
  struct Row {
    rqtool::ElementPath path;
    std::string place;
  };
  const std::vector<Row> rows{{{}, "1:7"},         {{0}, "2:13"},      {{1}, "3:4"},       {{1, 0}, "3:12"},
                              {{1, 1, 0}, "4:8"},  {{1, 2, 0}, "5:6"}, {{2}, "7:4"},       {{2, 3}, "7:20"},
                              {{1, 3}, "nowhere"}, {{3}, "nowhere"},   {{0, 0}, "nowhere"}};
  for (const Row& row : rows) {
    std::istringstream in(document);
    EXPECT_EQ(Shown(FindElement(in, row.path)), row.place) << ::testing::PrintToString(row.path);
  }
}

TEST_F(DocumentScan, FindsNothingBehindADoctypeThatDeclaresAnything) {
  const std::string content = "\n<PMML><DataDictionary>\n<DataField/></DataDictionary></a>";
  for (const std::string doctype : {"<!DOCTYPE PMML [<!ENTITY e '<DataField/>'>]>", "<!DOCTYPE PMML SYSTEM '/none'>"}) {
    std::istringstream field(doctype + content);
    EXPECT_EQ(Shown(FindElement(field, {0, 0})), "nowhere");
    std::istringstream element(doctype + content);
    EXPECT_FALSE(FindDocumentElement(element));
    std::istringstream error(doctype + content);
    EXPECT_EQ(Shown(FindError(error)), "nowhere");
  }
}

TEST_F(DocumentScan, FindsTheFirstError) {
  struct Row {
    std::string document;
    std::string place;
  };
  const std::vector<Row> rows{{"<a/>", "nowhere"}, {"<a>\n<b>", "2:4"}, {"<a>\n</b>", "2:3"}};
  for (const Row& row : rows) {
    std::istringstream in(row.document);
    EXPECT_EQ(Shown(FindError(in)), row.place) << row.document;
  }
}

}  // namespace
