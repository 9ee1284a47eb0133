// PMML documents: reading them whole, in pieces and again gives one result, and that of the slow reference.

#include <sstream>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "parse.h"
#include "reference_fill.h"
#include "reference_text.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQVarList;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using rqxml_fuzz::ParseInChunks;
using rqxml_fuzz::ParseWhole;
using RQXPrsUtil::RQPMMLParser;

using Names = std::vector<std::string>;

std::string Fill(const RQPMMLParser& parser, const Names& names, bool useBins) {
  RQVarList vars;
  const RQStatus status = parser.FillVarList(vars, names, useBins);
  return "status " + Describe(status) + "\n" + Describe(vars);
}

std::string SlowFill(const RQPMMLParser& parser, const Names& names, bool useBins) {
  RQVarList vars;
  const RQStatus status = rqxml_fuzz::SlowFill(*parser.GetRootElement(), vars, names, useBins);
  return "status " + Describe(status) + "\n" + Describe(vars);
}

// Every second name, and one that is nowhere.
Names HalfOf(const Names& names) {
  Names half = {"\x7Fnowhere"};
  for (std::size_t i = 0; i < names.size(); i += 2) half.push_back(names[i]);
  return half;
}

// An object without a document says so, and gives no variables.
void CheckEmpty(RQPMMLParser& parser, const Ending& ending) {
  const RQStatus expected = ending.threw ? RQStatus(107, false) : ending.status;
  for (const bool useBins : {false, true})
    CheckEqual(Fill(parser, {}, useBins), "status " + Describe(expected) + "\n" + Describe(RQVarList()),
               "without a document there are no variables");
  Check(parser.GetRootElement() == nullptr, "without a document there is no root element");
  Check(parser.GetStatus() == ending.status, "the status kept is the one returned");
}

void CheckFills(const RQPMMLParser& parser) {
  const auto [names, exact] = rqxml_fuzz::ListFieldNames(*parser.GetRootElement());
  CheckEqual(Fill(parser, {}, false), SlowFill(parser, {}, false), "the fields of the document are read by the rules");
  if (!exact) return;  // a name that cannot be said cannot be asked for
  for (const bool useBins : {false, true}) {
    const std::string all = Fill(parser, {}, useBins);
    CheckEqual(all, SlowFill(parser, {}, useBins), "the fields of the document are read by the rules");
    CheckEqual(Fill(parser, {}, useBins), all, "a fill changes nothing");
    CheckEqual(Fill(parser, names, useBins), all, "a filter of all names is no filter");
    CheckEqual(Fill(parser, Names(names.rbegin(), names.rend()), useBins), all, "the order of the filter is nothing");
    const Names half = HalfOf(names);
    CheckEqual(Fill(parser, half, useBins), SlowFill(parser, half, useBins), "the filter is applied by the rules");
  }
}

void CheckParsed(RQPMMLParser& parser) {
  Check(parser.GetRootElement() != nullptr, "a good parse has a root element");
  CheckEqual(rqxml_fuzz::SlowUTF8(parser.GetRootElement()->getTagName()), "PMML", "the root element is PMML");
  CheckEqual(parser.GetXercesMessage(), "", "a good parse has no message");
  CheckFills(parser);
}

void CheckEnding(RQPMMLParser& parser, const Ending& ending) {
  if (ending.threw || !ending.status.IsOK())
    CheckEmpty(parser, ending);
  else
    CheckParsed(parser);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = rqxml_fuzz::AsText(data, size);
  RQPMMLParser parser;
  const Ending ending = ParseWhole(parser, text);
  CheckEnding(parser, ending);
  const std::string message = parser.GetXercesMessage();
  const std::string vars = Fill(parser, {}, true);

  CheckEqual(Describe(ParseInChunks(parser, text, 1)), Describe(ending), "one byte at a time ends the same");
  CheckEqual(parser.GetXercesMessage(), message, "one byte at a time says the same");
  CheckEqual(Fill(parser, {}, true), vars, "one byte at a time reads the same");

  CheckEqual(Describe(ParseWhole(parser, text)), Describe(ending), "a further parse ends the same");
  CheckEqual(parser.GetXercesMessage(), message, "a further parse says the same");
  CheckEqual(Fill(parser, {}, true), vars, "a further parse reads the same");
  return 0;
}
