#include "workload.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "rqxml/common/RQVariable.h"

namespace rqxml_bench {
namespace {

using RQMTD_NAMESPACE::RQVariable;

void CheckBinned(const RQVariable& first) {
  Require(first.GetCutPoints() == std::vector<double>({10, 20.5}), "the cut points are there");
  Require(first.GetEncoder().GetBinLabels() == std::vector<std::string>({"low", "middle", "high"}),
          "the bin labels are there");
}

void CheckFirst(const Document& document, const RQVariable& first) {
  Require(first.GetName() == "field_0" && first.GetLabel() == "Field number 0", "the first field is there");
  const auto& missing = first.GetEncoder().GetNumMissingValues();
  Require(missing.size() == 3 && missing[2].first == -70 && missing[2].second == "No answer",
          "the missing values are there");
  if (document.useBins) CheckBinned(first);
}

void CheckLast(const Document& document, const RQVariable& last) {
  if (!document.names.empty()) Require(last.GetName() == document.names.back(), "the last wanted field is there");
  if (last.GetTypeCode() == 3)
    Require(last.GetStringValues() == std::vector<std::string>({"low", "middle", "high"}), "the texts are there");
  if (last.GetTypeCode() == 2)
    Require(last.GetLabels() == std::vector<std::string>({"Category 1", "Category 2", "Category 3"}),
            "the labels are there");
}

}  // namespace

Platform::Platform() { xercesc::XMLPlatformUtils::Initialize(); }
Platform::~Platform() { xercesc::XMLPlatformUtils::Terminate(); }

void Floor::Run(const Document& document) {
  const xercesc::MemBufInputSource input(reinterpret_cast<const XMLByte*>(document.text.data()), document.text.size(),
                                         "memory");
  fParser.parse(input);
  Require(fParser.getErrorCount() == 0 && fParser.getDocument() != nullptr, "the bare parser reads the document");
}

void Subject::Parse(const Document& document) {
  TextBuffer buffer(document.text);
  std::istream in(&buffer);
  Require(fParser.ParseToDOM(in).IsOK(), "the document is parsed");
}

void Subject::Fill(const Document& document) {
  Require(fParser.FillVarList(fVariables, document.names, document.useBins).IsOK(), "the variables are read");
}

void CheckAnswer(const Document& document) {
  Floor().Run(document);
  Subject subject;
  subject.Run(document);
  const RQMTD_NAMESPACE::RQVarList& vars = subject.GetVariables();
  Require(vars.Size() == document.variables, "every wanted field becomes a variable");
  CheckFirst(document, *vars.GetVariable(0));
  CheckLast(document, *vars.GetVariable(vars.Size() - 1));
}

void Require(bool condition, const char* text) {
  if (condition) return;
  std::fprintf(stderr, "not true: %s\n", text);
  std::exit(1);
}

double ProcessorMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double Quantile(std::vector<double>& values, double share) {
  std::sort(values.begin(), values.end());
  const double position = share * static_cast<double>(values.size() - 1);
  const auto below = static_cast<std::size_t>(position);
  const std::size_t above = std::min(below + 1, values.size() - 1);
  return std::lerp(values[below], values[above], position - static_cast<double>(below));
}

double Exponent(const std::array<double, 3>& sizes, const std::array<double, 3>& times) {
  double x = 0, y = 0, xx = 0, xy = 0;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const double u = std::log(sizes[i]);
    const double v = std::log(times[i]);
    x += u;
    y += v;
    xx += u * u;
    xy += u * v;
  }
  const auto n = static_cast<double>(sizes.size());
  return (n * xy - x * y) / (n * xx - x * x);
}

void KeepMemory() {
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_MAX, 0);
}

}  // namespace rqxml_bench
