#include "DocumentVariables.h"

#include "Failure.h"
#include "FieldFailure.h"

namespace rqtool {

using RQMTD_NAMESPACE::RQVarList;

std::unique_ptr<RQVarList> ReadVariables(InputFile& input, const Document& document,
                                         const std::vector<std::string>& names, bool bins) {
  const bool settings = document.kind == DocumentKind::Settings;
  const std::vector<std::string> filter = settings ? std::vector<std::string>() : names;
  auto list = std::make_unique<RQVarList>();
  const RQCommon::RQStatus status =
      settings ? document.parser->FillVarList(*list, bins) : document.parser->FillVarList(*list, filter, bins);
  if (!status.IsOK()) throw FieldFailure(input, document, FieldKind::Data, status, filter, list->Size());
  return list;
}

std::unique_ptr<RQVarList> ReadDerivedVariables(InputFile& input, const Document& document) {
  if (document.kind != DocumentKind::Settings) {
    throw Failure(ExitCode::Refused, {.file = input.GetDisplayName(),
                                      .what = "a PMML document without \"MiningBuildTask\" gives no derived variables",
                                      .hint = "leave out --derived: only settings documents have them"});
  }
  auto list = std::make_unique<RQVarList>();
  const RQCommon::RQStatus status = document.parser->FillTransDict(*list);
  if (!status.IsOK()) throw FieldFailure(input, document, FieldKind::Derived, status, {}, list->Size());
  return list;
}

}  // namespace rqtool
