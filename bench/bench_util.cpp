// The utilities against the plain ways of the XML library to the same answers, alternately in one loop.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLStringTokenizer.hpp>

#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXTranscoder.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

struct Release {
  void operator()(xercesc::DOMDocument* document) const { document->release(); }
};

constexpr XMLCh kName[] = {'a', 0};

// An element with the text as its attribute "a" and as its one text node.
class Carrier {
 public:
  explicit Carrier(const std::string& text)
      : fDocument(xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, kName, nullptr)) {
    const std::vector<XMLCh> wide = RQXPrsUtil::ToUTF16(text.c_str());
    xercesc::DOMElement& root = *fDocument->getDocumentElement();
    root.setAttribute(kName, wide.data());
    root.appendChild(fDocument->createTextNode(wide.data()));
  }
  const xercesc::DOMElement& Element() const { return *fDocument->getDocumentElement(); }

 private:
  std::unique_ptr<xercesc::DOMDocument, Release> fDocument;
};

// Times both ways in pairs; each call of a way does one piece of work.
template <class Subject, class Library>
void Compare(benchmark::State& state, int calls, Subject subject, Library library) {
  const auto repeat = [calls](auto way) {
    return MillisecondsOf([&] {
      for (int i = 0; i < calls; ++i) way();
    });
  };
  std::vector<double> ratios, subjects;
  while (state.KeepRunning()) {
    const double base = repeat(library);
    const double time = repeat(subject);
    state.SetIterationTime(time / 1000);
    ratios.push_back(time / base);
    subjects.push_back(time / calls * 1e6);
  }
  state.counters["x_library"] = Quantile(ratios, 0.5);
  state.counters["ns"] = Quantile(subjects, 0.5);
}

std::string Number(std::size_t i) {
  char text[32];
  const double value = static_cast<double>(i % 100003) * 0.37 - 1e3;
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string Numbers(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += Number(i) + (i % 10 == 9 ? '\n' : ' ');
  return text;
}

void ListOfDoubles(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const Carrier carrier(Numbers(count));
  std::vector<double> values;
  std::vector<double> times;
  while (state.KeepRunning()) {
    const double time = MillisecondsOf(
        [&] { Require(RQXPrsUtil::AssembleDoublesList(carrier.Element(), values), "the list is read"); });
    state.SetIterationTime(time / 1000);
    times.push_back(time);
  }
  Require(values.size() == count && values[1] == 0.37 - 1e3, "every number is there");
  state.counters["ms"] = Quantile(times, 0.5);
}

// Against the tokenizer of the XML library, which is quadratic: few numbers only.
void ListOfDoublesAgainstTokenizer(benchmark::State& state) {
  const Carrier carrier(Numbers(static_cast<std::size_t>(state.range(0))));
  std::vector<double> values;
  std::vector<double> others;
  Compare(
      state, 1, [&] { RQXPrsUtil::AssembleDoublesList(carrier.Element(), values); },
      [&] {
        others.clear();
        xercesc::XMLStringTokenizer tokens(carrier.Element().getTextContent());
        while (tokens.hasMoreTokens()) others.push_back(xercesc::XMLDouble(tokens.nextToken()).getValue());
      });
  Require(values == others, "both ways read the same numbers");
}

void DoubleAttribute(benchmark::State& state, const char* text) {
  const Carrier carrier(text);
  double value = 0;
  double other = 0;
  Compare(
      state, 2000, [&] { Require(RQXPrsUtil::GetDoubleAttribute(carrier.Element(), "a", value) == 0, "it is read"); },
      [&] { other = xercesc::XMLDouble(carrier.Element().getAttribute(kName)).getValue(); });
  Require(value == other, "both ways read the same number");
}

void NameComparison(benchmark::State& state) {
  const std::vector<XMLCh> wide = RQXPrsUtil::ToUTF16("DataDictionary");
  bool same = false;
  Compare(
      state, 5000, [&] { same = RQXPrsUtil::XStrEqualsUTF8Str(wide.data(), "DataDictionary"); },
      [&] {
        const RQXPrsUtil::RQXTranscoder transcoder;
        same = xercesc::XMLString::equals(wide.data(), transcoder.TranscodeFrom("DataDictionary").data());
      });
  Require(same, "the names are equal");
}

void ToUTF8(benchmark::State& state) {
  const std::vector<XMLCh> wide = RQXPrsUtil::ToUTF16("Field number 12345, größer");
  std::string text, other;
  Compare(
      state, 5000, [&] { text = RQXPrsUtil::ToUTF8(wide.data()); },
      [&] {
        const RQXPrsUtil::RQXTranscoder transcoder;
        other = transcoder.TranscodeTo(wide.data());
      });
  Require(text == other, "both ways give the same text");
}

BENCHMARK(ListOfDoubles)->Arg(100000)->Arg(1000000)->Iterations(9)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ListOfDoublesAgainstTokenizer)->Arg(2000)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DoubleAttribute, plain, "-123.75")->Iterations(51)->UseManualTime();
BENCHMARK_CAPTURE(DoubleAttribute, blank_before, " 5")->Iterations(51)->UseManualTime();
BENCHMARK(NameComparison)->Iterations(51)->UseManualTime();
BENCHMARK(ToUTF8)->Iterations(51)->UseManualTime();

}  // namespace
}  // namespace rqxml_bench
