// Data-model documents: the parse ends as that of the general reader does, and the variables are those of the slow
// reference, whatever the flags.

#include <array>
#include <sstream>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "reference_datamodel.h"
#include "rqxml/datamodel/RQDataModelParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQVarList;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::DataModelFlags;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using RQXPrsUtil::RQDataModelParser;
using RQXPrsUtil::RQXMLReadWrite;

constexpr std::array<DataModelFlags, 4> kFlags = {
    {{false, false, 0}, {true, true, 5}, {false, true, 1}, {true, false, 9}}};

std::string Show(const RQStatus& status, const RQVarList& vars) {
  return "status " + Describe(status) + "\n" + Describe(vars);
}

std::string Fill(const RQDataModelParser& parser, const DataModelFlags& flags) {
  RQVarList vars;
  const RQStatus status = parser.FillVarList(vars, flags.fieldRoles, flags.flag, flags.count);
  return Show(status, vars);
}

std::string FillAll(const RQDataModelParser& parser) {
  std::string text;
  for (const DataModelFlags& flags : kFlags) text += Fill(parser, flags);
  return text;
}

std::string SlowFill(RQXMLReadWrite& reader, const Ending& ending, const DataModelFlags& flags) {
  RQVarList vars;
  if (ending.threw) return Show(RQStatus(107, false), vars);
  if (!ending.status.IsOK()) return Show(ending.status, vars);
  const RQStatus status = rqxml_fuzz::SlowFillDataModel(reader.GetDocument()->getDocumentElement(), vars, flags);
  return Show(status, vars);
}

// What the parse must end with when the general reader ended so.
Ending ExpectedEnding(RQXMLReadWrite& reader, const Ending& ending) {
  if (ending.threw || !ending.status.IsOK()) return ending;
  RQVarList vars;
  const RQStatus status = rqxml_fuzz::SlowFillDataModel(reader.GetDocument()->getDocumentElement(), vars, {});
  Ending expected;
  if (status.GetCode() == 105 || status.GetCode() == 113) expected.status = status;
  return expected;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = rqxml_fuzz::AsText(data, size);
  RQXMLReadWrite reader;
  const Ending plain = rqxml_fuzz::RunParse([&] {
    std::istringstream in(text);
    return reader.ParseToDOM(in);
  });

  RQDataModelParser parser;
  const Ending ending = rqxml_fuzz::RunParse([&] { return parser.ParseToDOM(text); });
  CheckEqual(Describe(ending), Describe(ExpectedEnding(reader, plain)), "a parse ends as that of the general reader");
  Check(parser.GetStatus() == ending.status, "the status kept is the one returned");
  for (const DataModelFlags& flags : kFlags)
    CheckEqual(Fill(parser, flags), SlowFill(reader, plain, flags), "the fields are read by the rules");

  const std::string filled = FillAll(parser);
  CheckEqual(Describe(rqxml_fuzz::RunParse([&] { return parser.ParseToDOM(text); })), Describe(ending),
             "a further parse ends the same");
  CheckEqual(FillAll(parser), filled, "a further parse reads the same");
  return 0;
}
