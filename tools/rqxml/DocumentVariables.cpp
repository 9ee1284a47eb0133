#include "DocumentVariables.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <xercesc/dom/DOMElement.hpp>

#include "DataModelFailure.h"
#include "ElementPlace.h"
#include "FieldFailure.h"
#include "FieldStatistics.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

using RQMTD_NAMESPACE::RQVarList;

namespace {

using FieldNames = std::vector<std::optional<std::string>>;

// Each bad field costs another walk over all fields.
constexpr std::size_t kMostProblems = 10;

FieldNames NamesOf(const Document& document) {
  FieldNames names;
  const auto* const dictionary = ChildOf(document.parser->GetRootElement(), "DataDictionary");
  const xercesc::DOMElement* field = ChildOf(dictionary, "DataField");
  for (; field != nullptr; field = RQXPrsUtil::GetNextSiblingElmt(*field, "DataField")) {
    names.push_back(Attribute(*field, "name"));
  }
  return names;
}

// The position of the field that stands behind `passed` others that pass the filter; the end when that field has no
// name, since nothing behind it is ever read.
std::size_t FindStop(const FieldNames& names, const std::unordered_set<std::string>& filter, int passed) {
  for (std::size_t i = 0; i < names.size() && names[i]; ++i) {
    if (filter.count(*names[i]) > 0 && passed-- == 0) return i;
  }
  return names.size();
}

// The names behind `stop` that no field up to it has.
std::vector<std::string> NamesBehind(const FieldNames& names, std::size_t stop) {
  std::unordered_set<std::string> seen;
  std::vector<std::string> behind;
  for (std::size_t i = 0; i < names.size() && names[i]; ++i) {
    if (seen.insert(*names[i]).second && i > stop) behind.push_back(*names[i]);
  }
  return behind;
}

// A name that a field before it has is in no filter behind that field: what is wrong with it is told here.
void TellDuplicates(const InputFile& input, const FieldNames& names, const std::unordered_set<std::size_t>& told,
                    std::vector<Problem>& problems) {
  std::unordered_set<std::string> seen;
  for (std::size_t i = 0; i < names.size() && names[i] && problems.size() < kMostProblems; ++i) {
    if (seen.insert(*names[i]).second || told.count(i) > 0) continue;
    problems.push_back({.file = input.GetDisplayName(),
                        .element = "DataField \"" + *names[i] + '"',
                        .what = "a field before it has the same name",
                        .status = RQXPrsUtil::VariableRefused});
  }
}

// The status of reading the fields that pass `filter`, and how many were read.
struct Reading {
  RQCommon::RQStatus status;
  int added;
};

Reading ReadSome(const Document& document, const std::vector<std::string>& filter, RQVarList& list) {
  const int before = list.Size();
  const RQCommon::RQStatus status = document.kind == DocumentKind::Settings
                                        ? document.parser->FillVarList(list, false)
                                        : document.parser->FillVarList(list, filter, false);
  return {status, list.Size() - before};
}

}  // namespace

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

std::unique_ptr<RQVarList> ReadDataModelVariables(InputFile& input, const Document& document,
                                                  const DataModelOptions& options) {
  auto list = std::make_unique<RQVarList>();
  const RQCommon::RQStatus status =
      document.dataModel->FillVarList(*list, options.fieldRoles, options.flag, options.count);
  if (!status.IsOK()) throw DataModelFailure(input, status, list->Size());
  return list;
}

ReadableVariables ReadReadableVariables(InputFile& input, const Document& document) {
  ReadableVariables variables{std::make_unique<RQVarList>(), {}};
  const FieldNames names = NamesOf(document);
  std::unordered_set<std::size_t> stops;
  std::vector<std::string> filter;  // all fields at first
  do {
    const auto [status, added] = ReadSome(document, filter, *variables.list);
    if (status.IsOK()) break;
    variables.problems.push_back(FieldFailure(input, document, FieldKind::Data, status, filter, added).GetProblem());
    const std::size_t stop =
        filter.empty() ? static_cast<std::size_t>(added) : FindStop(names, {filter.begin(), filter.end()}, added);
    // All fields of a settings document are read, or none behind a bad one.
    if (document.kind == DocumentKind::Settings || stop >= names.size() || !names[stop]) break;
    stops.insert(stop);
    filter = NamesBehind(names, stop);
  } while (!filter.empty() && variables.problems.size() < kMostProblems);
  if (!stops.empty()) TellDuplicates(input, names, stops, variables.problems);
  return variables;
}

std::unique_ptr<RQVarList> ReadDerivedVariables(InputFile& input, const Document& document) {
  if (document.kind != DocumentKind::Settings) {
    throw Failure(ExitCode::Refused, {.file = input.GetDisplayName(),
                                      .what = std::string(document.kind == DocumentKind::DataModel
                                                              ? "a data-model document"
                                                              : "a PMML document without \"MiningBuildTask\"") +
                                              " gives no derived variables",
                                      .hint = "leave out --derived: only settings documents have them"});
  }
  auto list = std::make_unique<RQVarList>();
  const RQCommon::RQStatus status = document.parser->FillTransDict(*list);
  if (!status.IsOK()) throw FieldFailure(input, document, FieldKind::Derived, status, {}, list->Size());
  return list;
}

}  // namespace rqtool
