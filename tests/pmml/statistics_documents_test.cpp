// Each NAME.expected in tests/data/statistics is a test of the document NAME.pmml beside it, or of that in examples:
// blocks of lines, parted by an empty line, each with the model that is chosen (the n-th child of the root of that
// name), whether reading is lenient, and what comes of each field until there is none ("OK: kept" where nothing is
// built and the object, which is a valid one, stays as it is).

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/statistics.h"

namespace {

using rqtest::DataFile;
using rqtest::ReadFile;
using xercesc::DOMElement;

struct Request {
  std::string model;
  int number = 0;
  bool lenient = false;
};

std::vector<Request> ReadRequests(const std::string& expected) {
  std::vector<Request> requests;
  std::istringstream in(expected);
  for (std::string key; in >> key;) {
    if (key == "model:") in >> requests.emplace_back().model >> requests.back().number;
    if (key == "lenient:") {
      in >> key;
      requests.back().lenient = key == "yes";
    }
  }
  return requests;
}

std::string DocumentPath(const std::string& name) {
  const std::string own = DataFile("statistics/" + name + ".pmml");
  return std::filesystem::exists(own) ? own : std::string(RQXML_EXAMPLES_DIR) + "/" + name + ".pmml";
}

class StatisticsDocument : public rqtest::WithStatistics, public ::testing::WithParamInterface<std::string> {
 protected:
  const DOMElement& Model(const Request& request) const {
    const DOMElement* element = RQXPrsUtil::GetFirstChildElmt(*parser_.GetRootElement(), request.model.c_str());
    for (int i = 1; i < request.number; ++i) element = RQXPrsUtil::GetNextSiblingElmt(*element, request.model.c_str());
    return *element;
  }
  std::string Describe(const Request& request) {
    parser_.SetLenientStatistics(request.lenient);
    EXPECT_TRUE(parser_.SetModelElmt(Model(request)));
    std::string text = "model: " + request.model + " " + std::to_string(request.number) +
                       "\nlenient: " + (request.lenient ? "yes" : "no") + "\n";
    const DOMElement* cursor = nullptr;
    while (true) {
      const std::string outcome = Next(cursor);
      if (!cursor) return text + "end\n";
      text += outcome + "\n";
    }
  }
};

TEST_P(StatisticsDocument, GivesWhatIsExpected) {
  const std::string expected = ReadFile(DataFile("statistics/" + GetParam() + ".expected"));
  ASSERT_EQ(rqtest::Parse(parser_, ReadFile(DocumentPath(GetParam()))), rqtest::Ok());
  std::string text;
  for (const Request& request : ReadRequests(expected)) text += (text.empty() ? "" : "\n") + Describe(request);
  EXPECT_EQ(text, expected);
}

INSTANTIATE_TEST_SUITE_P(Each, StatisticsDocument,
                         ::testing::ValuesIn(rqtest::DataFileNames("statistics", ".expected")),
                         [](const ::testing::TestParamInfo<std::string>& row) { return row.param; });

}  // namespace
