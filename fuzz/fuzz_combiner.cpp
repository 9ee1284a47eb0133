// Merging: two documents, split at the first line that holds "----" alone (or one document twice), end as the rules
// say; what is written with a good status reads back, and has what a slow reference takes from the sources.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "scratch_file.h"

namespace {

using RQCommon::RQStatus;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using rqxml_fuzz::ScratchFile;
using RQXPrsUtil::GetAttribute;
using RQXPrsUtil::GetFirstChildElmt;
using RQXPrsUtil::GetNextSiblingElmt;
using RQXPrsUtil::RQXMLReadWrite;
using RQXPrsUtil::RQXSplitPMMLCombiner;
using RQXPrsUtil::ToUTF8;
using xercesc::DOMElement;
using xercesc::DOMNode;

struct Input {
  std::string first, second;
};

Input Split(const std::string& text) {
  const std::string line = "\n----\n";
  const std::size_t at = text.find(line);
  if (at == std::string::npos) return {text, text};
  return {text.substr(0, at), text.substr(at + line.size())};
}

const DOMElement* Child(const DOMNode* parent, const char* tag) {
  return parent ? GetFirstChildElmt(*parent, tag) : nullptr;
}

std::string TextOf(const DOMElement& element, const char* attribute) {
  const XMLCh* const text = GetAttribute(element, attribute);
  return text ? "=" + ToUTF8(text) : "";
}

// One document as the reference sees it.
struct Source {
  const DOMElement* pmml = nullptr;
  const DOMElement* model = nullptr;
  bool mining = false;
  bool hasFunction = false;
  std::string function;
};

Source Look(RQXMLReadWrite& reader) {
  Source source;
  source.pmml = Child(reader.GetDocument(), "PMML");
  for (const char* tag : {"MiningModel", "AssociationModel", "ClusteringModel", "GeneralRegressionModel",
                          "NaiveBayesModel", "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
                          "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"}) {
    if (!source.model) source.model = Child(source.pmml, tag);
  }
  if (!source.model) return source;
  source.mining = RQXPrsUtil::TagNameEquals(*source.model, "MiningModel");
  const XMLCh* const function = GetAttribute(*source.model, "functionName");
  source.hasFunction = function != nullptr;
  source.function = ToUTF8(function);
  return source;
}

RQStatus ExpectedFirst(const Source& source) {
  if (source.mining) return {125, false};
  return source.hasFunction ? RQStatus() : RQStatus(108, false);
}

RQStatus ExpectedSecond(const Source& source, const std::string& function) {
  if (!source.model || function.empty()) return {};
  if (source.mining) return {125, false};
  if (!source.hasFunction) return {108, false};
  return source.function == function ? RQStatus() : RQStatus(124, false);
}

std::vector<std::string> Fields(const DOMElement* parent, const char* tag) {
  std::vector<std::string> names;
  for (auto* field = Child(parent, tag); field; field = GetNextSiblingElmt(*field, tag)) {
    names.push_back(TextOf(*field, "name"));
  }
  return names;
}

bool Contains(const std::vector<std::string>& whole, const std::vector<std::string>& part) {
  return part.empty() || std::search(whole.begin(), whole.end(), part.begin(), part.end()) != whole.end();
}

// The schema by the rules, from the names alone; names that are missing are empty here.
std::vector<std::string> ExpectedSchema(const Source& first, const Source& second) {
  std::vector<std::string> all = Fields(Child(first.model, "MiningSchema"), "MiningField");
  all.push_back("=split");
  std::vector<std::string> known = all, names = Fields(Child(second.model, "MiningSchema"), "MiningField");
  known.erase(std::remove(known.begin(), known.end(), ""), known.end());
  names.erase(std::remove(names.begin(), names.end(), ""), names.end());
  if (Contains(known, names)) return all;
  for (const std::string& name : names) {
    if (std::find(all.begin(), all.end(), name) == all.end()) all.push_back(name);
  }
  return all;
}

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += std::to_string(name.size()) + ":" + name + " ";
  return text;
}

// The copy of the model, once its transformations are taken away.
std::string TreeOfCopy(const DOMElement& model, bool transformed) {
  auto* const copy = static_cast<DOMElement*>(model.cloneNode(true));
  if (transformed) copy->removeChild(copy->getLastChild());
  const std::string tree = rqxml_fuzz::DescribeTree(copy);
  copy->release();
  return tree;
}

void CheckSegments(const DOMElement& mining, const std::vector<const Source*>& sources) {
  const DOMElement* const segmentation = Child(&mining, "Segmentation");
  Check(segmentation != nullptr, "a mining model has a segmentation");
  const DOMElement* segment = Child(segmentation, "Segment");
  for (const Source* source : sources) {
    Check(segment != nullptr, "each model has its segment");
    const auto* const predicate = static_cast<const DOMElement*>(segment->getFirstChild());
    Check(predicate != nullptr && RQXPrsUtil::TagNameEquals(*predicate, "SimplePredicate"),
          "a segment has a predicate");
    CheckEqual(TextOf(*predicate, "field"), "=split", "the predicate asks for the split variable");
    const auto* const copy = static_cast<const DOMElement*>(segment->getLastChild());
    CheckEqual(TreeOfCopy(*copy, Child(source->pmml, "TransformationDictionary") != nullptr),
               TreeOfCopy(*source->model, false), "a model is copied as it stands");
    segment = GetNextSiblingElmt(*segment, "Segment");
  }
  Check(segment == nullptr, "no segment has no model");
}

void CheckWritten(const std::string& path, const Source& first, const Source* second) {
  RQXMLReadWrite written;
  const Ending ending = rqxml_fuzz::RunParse([&] { return written.ParseToDOM(path); });
  CheckEqual(Describe(ending), "status 0", "what is written can be read");
  const DOMElement* const pmml = Child(written.GetDocument(), "PMML");
  Check(pmml != nullptr, "a founded document has its root");
  const DOMElement* const mining = Child(pmml, "MiningModel");
  Check((mining != nullptr) == !first.function.empty(), "there is a mining model where there is a function");
  if (!mining) return;
  std::vector<const Source*> sources = {&first};
  if (second && second->model) sources.push_back(second);
  CheckSegments(*mining, sources);
  const bool complete = Child(first.pmml, "DataDictionary") && Child(first.model, "MiningSchema");
  if (!complete) return;
  const Source none;
  CheckEqual(Joined(Fields(Child(mining, "MiningSchema"), "MiningField")),
             Joined(ExpectedSchema(first, second ? *second : none)), "the schemas are merged by the rules");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile first("first"), second("second"), output("output");
  const Input input = Split(rqxml_fuzz::AsText(data, size));
  first.Write(input.first);
  second.Write(input.second);
  RQMTD_NAMESPACE::RQVarList vars;
  vars.AddCatVar("split", "Split", std::vector<std::string>{"1"}, RQMTD_NAMESPACE::IRQVariable::RoleInput);

  RQXMLReadWrite firstReader, secondReader;
  const Ending firstParse = rqxml_fuzz::RunParse([&] { return firstReader.ParseToDOM(first.Path()); });
  const Ending secondParse = rqxml_fuzz::RunParse([&] { return secondReader.ParseToDOM(second.Path()); });
  const bool firstRead = !firstParse.threw && firstParse.status.IsOK();
  const bool secondRead = !secondParse.threw && secondParse.status.IsOK();
  if (!firstRead) return 0;

  RQXSplitPMMLCombiner combiner(vars);
  const Source one = Look(firstReader);
  const RQStatus founded = combiner.AddModel(first.Path(), {"1"});
  CheckEqual(Describe(founded), Describe(ExpectedFirst(one)), "the first file ends by the rules");
  const Ending added = rqxml_fuzz::RunParse([&] { return combiner.AddModel(second.Path(), {"2"}); });
  const Source two = secondRead ? Look(secondReader) : Source();
  bool merged = false;
  if (secondRead) {
    const RQStatus expected = ExpectedSecond(two, founded.IsOK() ? one.function : "");
    CheckEqual(Describe(added), "status " + Describe(expected), "the second file ends by the rules");
    merged = expected.IsOK();
  } else {
    Check(added.threw == secondParse.threw, "a file that cannot be read ends as its parse does");
  }
  if (founded.IsOK() && !one.function.empty()) {
    Check(combiner.GetNModels() == 1 + (merged && two.model ? 1 : 0), "each model is counted");
  } else {
    Check(combiner.GetNModels() == 0, "without a mining model nothing is counted");
  }
  const RQStatus exported = combiner.ExportMiningModel(output.Path());
  if (!exported.IsOK()) {
    CheckEqual(Describe(exported), "118", "a write that fails is a failed write");
  } else if (founded.IsOK()) {
    CheckWritten(output.Path(), one, merged ? &two : nullptr);
  }
  return 0;
}
