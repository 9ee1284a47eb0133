#ifndef RQXML_BENCH_WORKLOAD_H
#define RQXML_BENCH_WORKLOAD_H

#include <array>
#include <chrono>
#include <istream>
#include <streambuf>
#include <string>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "documents.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace rqxml_bench {

/// Reads a text where it lies.
class TextBuffer final : public std::streambuf {
 public:
  explicit TextBuffer(const std::string& text) {
    char* const start = const_cast<char*>(text.data());  // the get area is never written to
    setg(start, start, start + text.size());
  }
};

/// Holds the XML library for the whole program, so that no start of it is timed.
class Platform {
 public:
  Platform();
  ~Platform();
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;
};

/// What the XML library alone costs: a bare parser and its document.
class Floor {
 public:
  /// Parses the document; its tree lives as long as this object.
  void Run(const Document& document);

 private:
  xercesc::XercesDOMParser fParser;
};

/// What this library costs: parser, document, and the variables of the document.
class Subject {
 public:
  /// Parses the document and fills the list.
  void Run(const Document& document) {
    Parse(document);
    Fill(document);
  }
  /// The first half of Run.
  void Parse(const Document& document);
  /// The second half of Run.
  void Fill(const Document& document);
  /// The variables read.
  const RQMTD_NAMESPACE::RQVarList& GetVariables() const { return fVariables; }

 private:
  RQXPrsUtil::RQPMMLParser fParser;
  RQMTD_NAMESPACE::RQVarList fVariables;
};

/// Ends the program unless the subject reads what stands in the document, and the floor reads it whole.
void CheckAnswer(const Document& document);

/// Ends the program with the text unless the condition holds.
void Require(bool condition, const char* text);

/// The processor time of this thread, in milliseconds.
double ProcessorMilliseconds();

/// Milliseconds of processor time that the step takes. All steps compute in one thread and wait for nothing, so that
/// this is the time that passes on a machine which does nothing else.
template <class Step>
double MillisecondsOf(Step step) {
  const double start = ProcessorMilliseconds();
  step();
  return ProcessorMilliseconds() - start;
}

/// The value below which the given share (0 to 1) of the values lies. Sorts them.
double Quantile(std::vector<double>& values, double share);

/// How the times grow with the sizes: the slope of the straight line through the logarithms. 1 is linear, 2 quadratic.
double Exponent(const std::array<double, 3>& sizes, const std::array<double, 3>& times);

/// Lets the process keep the memory that it has. What is given back to the system costs a fault for each page when it
/// comes again; only the largest documents give any back, so that growth would be measured in faults. Fill the largest
/// document once afterwards.
void KeepMemory();

}  // namespace rqxml_bench

#endif
