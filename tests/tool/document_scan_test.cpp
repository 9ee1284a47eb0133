#include "DocumentScan.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/platform.h"

using rqtool::FindDataField;
using rqtool::FindDocumentElement;
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

TEST_F(DocumentScan, FindsTheFieldsOfTheFirstDictionaryAlone) {
  const std::string document =
      "<PMML>\n<DataField/>\n<DataDictionary>\n<DataField/><a><DataField/></a>\n<Other/>\n <DataField>\n<DataField/>"
      "</DataField>\n</DataDictionary>\n<DataDictionary><DataField/></DataDictionary></PMML>";
  const std::vector<std::string> places{"4:13", "6:13", "nowhere"};
  for (std::size_t i = 0; i < places.size(); ++i) {
    std::istringstream in(document);
    EXPECT_EQ(Shown(FindDataField(in, i)), places[i]) << i;
  }
}

TEST_F(DocumentScan, FindsNothingBehindADoctypeThatDeclaresAnything) {
  const std::string content = "\n<PMML><DataDictionary>\n<DataField/></DataDictionary></a>";
  for (const std::string doctype : {"<!DOCTYPE PMML [<!ENTITY e '<DataField/>'>]>", "<!DOCTYPE PMML SYSTEM '/none'>"}) {
    std::istringstream field(doctype + content);
    EXPECT_EQ(Shown(FindDataField(field, 0)), "nowhere");
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
