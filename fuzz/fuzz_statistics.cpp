// Univariate statistics: each element below the root is taken as a model, and what is read of its fields is what the
// slow reference reads, by the letter and leniently; a failure keeps the object and moves the cursor.

#include <sstream>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "reference_statistics.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQUniStats;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using rqxml_fuzz::SlowStatistics;
using RQXPrsUtil::RQPMMLParser;
using xercesc::DOMElement;
using xercesc::DOMNode;

// Hostile inputs have many models.
constexpr int kMostModels = 12;

std::string Show(const std::vector<double>& numbers) {
  std::string text = " [";
  for (const double number : numbers) text += Describe(number) + " ";
  return text + "]";
}

std::string Show(const RQUniStats& stats) {
  const RQUniStats::SummStats& summary = stats.GetSummStats();
  return std::to_string(stats.GetName().size()) + ":" + stats.GetName() + " " + Describe(stats.GetTotalFrequency()) +
         (stats.IsContinuous() ? " continuous " : " categorical ") + Describe(summary.minimum) + " " +
         Describe(summary.maximum) + " " + Describe(summary.mean) + " " + Describe(summary.standardDeviation) +
         Show(stats.GetCutPoints()) + Show(stats.GetFrequencies());
}

// What the caller's object may hold before.
const RQUniStats& Valid() {
  static const RQUniStats valid("before", 1, {2, 3});
  return valid;
}

void CheckField(const RQPMMLParser& parser, const SlowStatistics& expected, const DOMElement* cursor,
                const RQUniStats& before) {
  RQUniStats stats = before;
  const DOMElement* next = cursor;
  const RQStatus status = parser.FillUniStats(stats, next);
  Check(next == expected.element, "the cursor moves to the next field whatever comes of it");
  const bool judged = expected.status.IsOK() && !expected.built;
  const RQStatus expectedStatus = judged && !before.IsValid() ? RQStatus(116, false) : expected.status;
  CheckEqual(Describe(status), Describe(expectedStatus), "statistics are refused by the rules");
  CheckEqual(Show(stats), Show(expected.built ? *expected.built : before), "statistics are read by the rules");
  Check(!status.IsOK() || stats.IsValid(), "a good status has valid statistics");
}

void CheckModel(RQPMMLParser& parser, const DOMElement& model, bool lenient) {
  Check(parser.SetModelElmt(model), "a model can be chosen");
  parser.SetLenientStatistics(lenient);
  const DOMElement* cursor = nullptr;
  for (const SlowStatistics& expected : rqxml_fuzz::SlowUniStats(model, lenient)) {
    CheckField(parser, expected, cursor, RQUniStats());
    CheckField(parser, expected, cursor, Valid());
    cursor = expected.element;
  }
  RQUniStats stats = Valid();
  Check(parser.FillUniStats(stats, cursor).IsOK() && cursor == nullptr, "behind the last field there is none");
  CheckEqual(Show(stats), Show(Valid()), "behind the last field nothing is read");
}

void CheckRefused(const RQPMMLParser& parser, const RQStatus& expected) {
  RQUniStats stats = Valid();
  const DOMElement* cursor = nullptr;
  CheckEqual(Describe(parser.FillUniStats(stats, cursor)), Describe(expected), "without a model nothing is read");
  Check(cursor == nullptr, "without a model the cursor is kept");
  CheckEqual(Show(stats), Show(Valid()), "without a model the object is kept");
}

void CheckModels(RQPMMLParser& parser) {
  CheckRefused(parser, RQStatus(112, false));
  int models = 0;
  for (const DOMNode* node = parser.GetRootElement()->getFirstChild(); node != nullptr && models < kMostModels;
       node = node->getNextSibling()) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    for (const bool lenient : {false, true}) CheckModel(parser, static_cast<const DOMElement&>(*node), lenient);
    ++models;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = rqxml_fuzz::AsText(data, size);
  RQPMMLParser parser;
  const Ending ending = rqxml_fuzz::RunParse([&] {
    std::istringstream in(text);
    return parser.ParseToDOM(in);
  });
  if (ending.threw || !ending.status.IsOK()) {
    CheckRefused(parser, ending.threw ? RQStatus(107, false) : ending.status);
  } else {
    CheckModels(parser);
  }
  return 0;
}
