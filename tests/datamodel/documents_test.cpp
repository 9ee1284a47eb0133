// Each NAME.expected in tests/data/datamodel is a test of the document NAME.xml beside it, or of that in
// examples/datamodel: blocks of lines, parted by an empty line, each with the flags of the fill ("none", "field roles",
// "count N" with the flag that goes with it, or both, parted by " | "), the outcome of the parse, the outcome of the
// fill if the parse was good, and the calls that the list received.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/datamodel.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/temp_folder.h"

namespace {

using rqtest::DataFile;
using rqtest::Filled;
using rqtest::FillFlags;
using rqtest::ReadFile;
using RQXPrsUtil::RQDataModelParser;

const std::string kFlags = "flags: ";

FillFlags ReadFlags(const std::string& text) {
  FillFlags flags;
  flags.fieldRoles = text.find("field roles") != std::string::npos;
  const std::size_t count = text.find("count ");
  if (count == std::string::npos) return flags;
  flags.flag = true;
  flags.count = std::stoi(text.substr(count + 6));
  return flags;
}

/// The lines that begin blocks, without their key.
std::vector<std::string> ReadRequests(const std::string& expected) {
  std::vector<std::string> requests;
  std::istringstream in(expected);
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(kFlags, 0) == 0) requests.push_back(line.substr(kFlags.size()));
  }
  if (requests.empty()) throw std::runtime_error("nothing is asked for");
  return requests;
}

std::string ShowStatus(const RQCommon::RQStatus& status) {
  std::ostringstream out;
  PrintTo(status, &out);
  return out.str();
}

std::string Describe(const std::string& request, RQDataModelParser& parser, const std::string& text) {
  std::string answer = kFlags + request + "\nparse: ";
  try {
    const RQCommon::RQStatus status = parser.ParseToDOM(text);
    answer += ShowStatus(status) + "\n";
    if (!status.IsOK()) return answer;
  } catch (const xercesc::SAXParseException&) {
    return answer + "not well-formed\n";
  }
  const Filled filled = rqtest::FillFrom(parser, ReadFlags(request));
  answer += "fill: " + ShowStatus(filled.status) + "\n";
  for (const std::string& call : filled.calls) answer += call + "\n";
  return answer;
}

std::string DocumentPath(const std::string& name) {
  const std::string own = DataFile("datamodel/" + name + ".xml");
  return std::filesystem::exists(own) ? own : std::string(RQXML_EXAMPLES_DIR) + "/datamodel/" + name + ".xml";
}

class DataModelDocument : public rqtest::WithPlatform, public ::testing::WithParamInterface<std::string> {
 protected:
  /// All blocks, each from a parser of its own that `prepare` has seen before.
  std::string DescribeAll(const std::string& text, const std::function<void(RQDataModelParser&)>& prepare) const {
    std::string all;
    for (const std::string& request : ReadRequests(expected_)) {
      RQDataModelParser parser;
      prepare(parser);
      all += (all.empty() ? "" : "\n") + Describe(request, parser, text);
    }
    return all;
  }

  const std::string path_ = DocumentPath(GetParam());
  const std::string text_ = ReadFile(path_);
  const std::string expected_ = ReadFile(DataFile("datamodel/" + GetParam() + ".expected"));
};

TEST_P(DataModelDocument, GivesWhatIsExpected) {
  EXPECT_EQ(DescribeAll(text_, [](RQDataModelParser&) {}), expected_);
}

TEST_P(DataModelDocument, GivesTheSameInASecondParseOfOneObjectWhateverTheFirstWas) {
  const auto good = [](RQDataModelParser& parser) {
    EXPECT_EQ(parser.ParseToDOM(rqtest::DataModel("<Field/>")), rqtest::Ok());
  };
  const auto failed = [](RQDataModelParser& parser) { EXPECT_EQ(parser.ParseToDOM("<x/>"), rqtest::Failure(105)); };
  const auto malformed = [](RQDataModelParser& parser) {
    EXPECT_THROW(parser.ParseToDOM("<x>"), xercesc::SAXParseException);
  };
  EXPECT_EQ(DescribeAll(text_, good), expected_);
  EXPECT_EQ(DescribeAll(text_, failed), expected_);
  EXPECT_EQ(DescribeAll(text_, malformed), expected_);
}

TEST_P(DataModelDocument, GivesTheSameAfterItWasReadFromItsFileAndWritten) {
  // The XML library's serialiser puts the quotes of entity values wrong.
  if (text_.find("<!ENTITY") != std::string::npos) GTEST_SKIP() << "cannot be written";
  RQXPrsUtil::RQXMLReadWrite reader;
  try {
    if (!reader.ParseToDOM(path_).IsOK()) GTEST_SKIP() << "cannot be read";
  } catch (const xercesc::SAXParseException&) {
    GTEST_SKIP() << "cannot be read";
  }
  const rqtest::TempFolder folder;
  ASSERT_EQ(reader.WriteFromDOM(folder.File("written.xml"), nullptr), rqtest::Ok());
  EXPECT_EQ(DescribeAll(ReadFile(folder.File("written.xml")), [](RQDataModelParser&) {}), expected_);
}

INSTANTIATE_TEST_SUITE_P(Each, DataModelDocument, ::testing::ValuesIn(rqtest::DataFileNames("datamodel", ".expected")),
                         [](const ::testing::TestParamInfo<std::string>& row) { return row.param; });

}  // namespace
