// Each document NAME.pmml in tests/data/pmml is a test; NAME.expected beside it says what comes of it: blocks of lines,
// parted by an empty line, each with the fields asked for ("all", or names parted by " | "), whether bins are asked
// for, the outcome of the parse, the outcome of the fill if the parse was good, and the calls that the list received.

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/streams.h"
#include "tests/support/temp_folder.h"

namespace {

using rqtest::DataFile;
using rqtest::Parse;
using rqtest::ReadFile;
using RQXPrsUtil::RQPMMLParser;

/// What one block asks for.
struct Request {
  std::vector<std::string> names;
  bool useBins = false;
};

/// The value behind "key: " of the next line.
std::string ReadLine(std::istream& in, const std::string& key) {
  std::string line;
  std::getline(in, line);
  if (line.rfind(key + ": ", 0) != 0) throw std::runtime_error("expected \"" + key + ": \" and found \"" + line + "\"");
  return line.substr(key.size() + 2);
}

std::vector<std::string> SplitNames(const std::string& line) {
  std::vector<std::string> names;
  if (line == "all") return names;
  const std::string separator = " | ";
  std::size_t begin = 0;
  for (std::size_t end; (end = line.find(separator, begin)) != std::string::npos; begin = end + separator.size()) {
    names.push_back(line.substr(begin, end - begin));
  }
  names.push_back(line.substr(begin));
  return names;
}

std::vector<Request> ReadRequests(const std::string& expected) {
  std::vector<Request> requests;
  std::istringstream in(expected);
  while (in) {
    Request request;
    request.names = SplitNames(ReadLine(in, "fields"));
    request.useBins = ReadLine(in, "bins") == "yes";
    requests.push_back(request);
    for (std::string line; std::getline(in, line) && !line.empty();) continue;
    in.peek();
  }
  return requests;
}

std::string ShowStatus(const RQCommon::RQStatus& status) {
  std::ostringstream out;
  PrintTo(status, &out);
  return out.str();
}

/// A way to bring a document to a parser.
using ParseFunction = std::function<RQCommon::RQStatus(RQPMMLParser&)>;

std::string Describe(const Request& request, const ParseFunction& parse) {
  std::string text = "fields: ";
  if (request.names.empty()) text += "all";
  for (const std::string& name : request.names) text += (&name == &request.names[0] ? "" : " | ") + name;
  text += std::string("\nbins: ") + (request.useBins ? "yes" : "no") + "\nparse: ";
  RQPMMLParser parser;
  try {
    const RQCommon::RQStatus status = parse(parser);
    text += ShowStatus(status) + "\n";
    if (!status.IsOK()) return text;
  } catch (const xercesc::SAXParseException&) {
    return text + "not well-formed\n";
  }
  rqtest::RecordingVarList vars;
  text += "fill: " + ShowStatus(parser.FillVarList(vars, request.names, request.useBins)) + "\n";
  for (const std::string& call : vars.calls) text += call + "\n";
  return text;
}

std::string DescribeAll(const std::vector<Request>& requests, const ParseFunction& parse) {
  std::string text;
  for (const Request& request : requests) text += (text.empty() ? "" : "\n") + Describe(request, parse);
  return text;
}

class PmmlDocument : public rqtest::WithPlatform, public ::testing::WithParamInterface<std::string> {
 protected:
  const std::string path_ = DataFile("pmml/" + GetParam() + ".pmml");
  const std::string expected_ = ReadFile(DataFile("pmml/" + GetParam() + ".expected"));
  const std::vector<Request> requests_ = ReadRequests(expected_);
};

TEST_P(PmmlDocument, GivesWhatStandsBesideItFromAFileStream) {
  EXPECT_EQ(DescribeAll(requests_,
                        [&](RQPMMLParser& parser) {
                          std::ifstream stream(path_, std::ios::binary);
                          return parser.ParseToDOM(stream);
                        }),
            expected_);
}

TEST_P(PmmlDocument, GivesTheSameInChunksOfOneByteAndWithOtherBytesBeforeIt) {
  const std::string bytes = ReadFile(path_);
  EXPECT_EQ(DescribeAll(requests_,
                        [&](RQPMMLParser& parser) {
                          rqtest::ChunkedBuf buffer(bytes, 1);
                          std::istream stream(&buffer);
                          return parser.ParseToDOM(stream);
                        }),
            expected_);
  EXPECT_EQ(DescribeAll(requests_,
                        [&](RQPMMLParser& parser) {
                          std::istringstream stream("some other bytes" + bytes);
                          stream.seekg(16);
                          return parser.ParseToDOM(stream);
                        }),
            expected_);
}

TEST_P(PmmlDocument, GivesTheSameInASecondParseOfOneObject) {
  const std::string bytes = ReadFile(path_);
  EXPECT_EQ(DescribeAll(requests_,
                        [&](RQPMMLParser& parser) {
                          EXPECT_EQ(Parse(parser, rqtest::PmmlWithFields("", "")), rqtest::Ok());
                          return Parse(parser, bytes);
                        }),
            expected_);
}

/// The XML library's serialiser puts the quotes of entity values wrong and loses the shifts of ISO-2022-JP.
bool SurvivesWriting(const std::string& bytes) {
  return bytes.find("<!ENTITY") == std::string::npos && bytes.find("ISO-2022-JP") == std::string::npos;
}

TEST_P(PmmlDocument, GivesTheSameAfterItWasReadFromItsFileAndWritten) {
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
  EXPECT_EQ(DescribeAll(requests_, [&](RQPMMLParser& parser) { return Parse(parser, bytes); }), expected_) << bytes;
}

INSTANTIATE_TEST_SUITE_P(Each, PmmlDocument, ::testing::ValuesIn(rqtest::DataFileNames("pmml", ".pmml")),
                         [](const ::testing::TestParamInfo<std::string>& row) { return row.param; });

}  // namespace
