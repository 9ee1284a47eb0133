#include "Combination.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <xercesc/util/XMLException.hpp>

#include "InputFile.h"
#include "SplitDocument.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using RQCommon::RQStatus;
using RQXPrsUtil::RQXSplitPMMLCombiner;

// The name of a file for the library, which takes names in the encoding of the locale and as addresses: an absolute
// one of ASCII characters is neither changed nor misread, and anything else is reached through its descriptor.
class LibraryName {
 public:
  explicit LibraryName(const std::string& path) : fName(std::filesystem::absolute(path).string()) {
    const bool plain =
        std::all_of(fName.begin(), fName.end(), [](char c) { return c > ' ' && c < '\x7f' && c != '%' && c != '\\'; });
    if (plain) return;
    fDescriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fDescriptor >= 0) fName = "/proc/self/fd/" + std::to_string(fDescriptor);
  }
  ~LibraryName() {
    if (fDescriptor >= 0) ::close(fDescriptor);
  }
  LibraryName(const LibraryName&) = delete;
  LibraryName& operator=(const LibraryName&) = delete;

  const std::string& Get() const { return fName; }

 private:
  std::string fName;
  int fDescriptor = -1;
};

Failure Refusal(const Split& split, const std::string& what, const std::string& hint) {
  return Failure(ExitCode::Refused, {.file = split.file, .what = what, .hint = hint});
}

Failure Refusal(const Split& split, const std::string& what, long status, const std::string& hint) {
  return Failure(ExitCode::Refused, {.file = split.file, .what = what, .status = status, .hint = hint});
}

std::string Count(std::size_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string PlaceInManifest(const Split& split) {
  return split.line == 0 ? "" : " (line " + std::to_string(split.line) + " of the manifest)";
}

// A file that the library does not take.
Failure RefusedByLibrary(const Split& split, const SplitDocument& document, const RQStatus& status,
                         const std::string& firstFunction) {
  switch (status.GetCode()) {
    case RQXPrsUtil::FunctionNameDiffers:
      return Refusal(split,
                     "functionName is \"" + document.functionName.value_or("") + "\", but \"" + firstFunction +
                         "\" in the first file",
                     status.GetCode(), "combine only models of the same function");
    case RQXPrsUtil::NestedMiningModel:
      return Refusal(split, "its model is a \"MiningModel\"", status.GetCode(), "combine the single models instead");
    case RQXPrsUtil::AttributeMissing:
      if (document.model.empty()) {
        return Refusal(split, "has no model that can be combined", status.GetCode(),
                       "see that a model stands below \"PMML\", with an unprefixed name");
      }
      return Refusal(split, "its model has no attribute \"functionName\"", status.GetCode(),
                     "add it: regression, classification, clustering, ...");
    default:
      return Refusal(split, "was refused", status.GetCode(),
                     "rqxml status " + std::to_string(status.GetCode()) + " tells more");
  }
}

}  // namespace

Combination::Combination(const std::vector<SplitVariable>& variables) : fVariables(variables), fComparison(variables) {
  AddSplitVariables(fVariables, fList);
  fCombiner = std::make_unique<RQXSplitPMMLCombiner>(fList);
}

Combination::~Combination() {
  fCombiner->ExportMiningModel("");  // discards what was not written
}

void Combination::StartAnew() {
  fCombiner->ExportMiningModel("");
  fCombiner = std::make_unique<RQXSplitPMMLCombiner>(fList);
}

void Combination::CheckValues(const Split& split) const {
  if (split.values.size() != fVariables.size()) {
    const std::string what = "has " + Count(split.values.size(), "split value") + " for " +
                             Count(fVariables.size(), "split variable") + PlaceInManifest(split);
    throw Refusal(split, what, RQXPrsUtil::BadSplitValues, "give one value for each split variable");
  }
  for (std::size_t i = 0; i < fVariables.size(); ++i) {
    const std::string wrong = WhyBadValue(fVariables[i], split.values[i]);
    if (!wrong.empty()) {
      throw Refusal(split, wrong + PlaceInManifest(split), "correct the value, or the type of the variable (--type)");
    }
  }
}

// The declarations of a later file stay behind with its "PMML": what uses them could not be read.
void Combination::CheckNamespaces(const Split& split, const SplitDocument& document) const {
  if (GetSegments() == 0) return;
  for (const std::string& name : document.usedNamespaces) {
    if (fNamespaces.count(name) == 1) continue;
    const std::string address = document.namespaces.at(name);
    throw Refusal(split, "uses names of " + name + "=\"" + address + "\", which the first file does not declare",
                  "declare it at the \"PMML\" of the first file too, or at the element that uses it");
  }
}

void Combination::Add(const Split& split) {
  CheckValues(split);
  SplitDocument document;
  {
    InputFile input(split.file, SpecialFiles::RegularOnly);
    document = ReadSplitDocument(input);
  }
  CheckNamespaces(split, document);
  const LibraryName name(split.file);
  Merge(split, document, name.Get());
  fComparison.Add(split, document);
}

void Combination::Merge(const Split& split, const SplitDocument& document, const std::string& libraryName) {
  const RQStatus status = fCombiner->AddModel(libraryName, split.values);
  if (GetSegments() == 0) {
    // The first file founds the combined document, or leaves an empty one, which no other file can found.
    StartAnew();
    if (status.IsOK()) {
      throw Refusal(split, "the attribute \"functionName\" of its model is empty",
                    "write what the model is for: regression, classification, clustering, ...");
    }
  }
  if (!status.IsOK()) throw RefusedByLibrary(split, document, status, fFunctionName);
  if (GetSegments() == 1 && fFunctionName.empty()) {
    fFunctionName = document.functionName.value_or("");
    fNamespaces = document.namespaces;
  }
}

void Combination::Write(const OutputFile& output) {
  try {
    const RQStatus status = fCombiner->ExportMiningModel(output.GetTemporaryName());
    if (status.IsOK()) return;
    throw Failure(ExitCode::FileFailed, {.file = output.GetName(),
                                         .what = "cannot be written",
                                         .status = status.GetCode(),
                                         .hint = "make room, or name a file elsewhere"});
  } catch (const xercesc::XMLException& e) {
    output.Fail("cannot be written: " + RQXPrsUtil::ToUTF8(e.getMessage()), "check the folder and its permissions");
  }
}

}  // namespace rqtool
