// Seconds that each hostile document takes the bare parser and this library. No megabyte may take longer than the
// limit. Usage: hostile [BYTES [PART OF A NAME]]

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "hostile_inputs.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

constexpr double kLimitInSeconds = 5;
constexpr unsigned kPatienceInSeconds = 60;

struct Outcome {
  double seconds = -1;  ///< until everything is destroyed again; negative when the process did not come to its end
  double peakMegabytes = 0;
  long code = 0;  ///< status; -1 for a document that is not well-formed
};

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1000;
}

long ReadBare(const std::string& text) {
  xercesc::XercesDOMParser parser;
  const xercesc::MemBufInputSource input(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "memory");
  try {
    parser.parse(input);
  } catch (const xercesc::XMLException&) {
    return -1;
  }
  return parser.getErrorCount() == 0 ? 0 : -1;
}

long ReadVariables(const std::string& text) {
  RQXPrsUtil::RQPMMLParser parser;
  TextBuffer buffer(text);
  std::istream in(&buffer);
  try {
    RQCommon::RQStatus status = parser.ParseToDOM(in);
    if (!status.IsOK()) return status.GetCode();
    for (const bool useBins : {false, true}) {
      RQMTD_NAMESPACE::RQVarList vars;
      status = parser.FillVarList(vars, {}, useBins);
    }
    return status.GetCode();
  } catch (const xercesc::SAXParseException&) {
    return -1;
  }
}

template <class Read>
Outcome InChild(const std::string& text, Read read) {
  int ends[2];
  Require(pipe(ends) == 0, "there is a pipe");
  const pid_t child = fork();
  if (child == 0) {
    alarm(kPatienceInSeconds);
    const Platform platform;
    Outcome outcome;
    outcome.seconds = MillisecondsOf([&] { outcome.code = read(text); }) / 1000;
    outcome.peakMegabytes = PeakMegabytes();
    _exit(write(ends[1], &outcome, sizeof outcome) == sizeof outcome ? 0 : 1);
  }
  close(ends[1]);
  Outcome outcome;
  if (::read(ends[0], &outcome, sizeof outcome) != sizeof outcome) outcome = {};
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return outcome;
}

std::string InSeconds(const Outcome& outcome) {
  if (outcome.seconds < 0) return "not finished";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", outcome.seconds);
  return text;
}

std::string InWords(const Outcome& outcome) {
  if (outcome.seconds < 0) return "none";
  return outcome.code == -1 ? "not well-formed" : std::to_string(outcome.code);
}

// True when the library stays within the limit.
bool PrintRow(const HostileShape& shape, std::size_t bytes) {
  const std::string text = shape.make(bytes);
  const Outcome bare = InChild(text, ReadBare);
  const Outcome subject = InChild(text, ReadVariables);
  std::printf("| %s | %.2f | %s | %s | %.0f | %s |\n", shape.name, static_cast<double>(text.size()) / 1e6,
              InSeconds(bare).c_str(), InSeconds(subject).c_str(), subject.peakMegabytes, InWords(subject).c_str());
  std::fflush(stdout);
  return subject.seconds >= 0 && subject.seconds <= kLimitInSeconds;
}

}  // namespace
}  // namespace rqxml_bench

int main(int argc, char** argv) {
  const std::size_t bytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
  const std::string_view wanted = argc > 2 ? argv[2] : "";
  std::puts("| 1 MB of | MB | bare parse, s | this library, s | peak, MB | status |\n|---|---|---|---|---|---|");
  bool withinLimit = true;
  for (const rqxml_bench::HostileShape& shape : rqxml_bench::HostileShapes())
    if (std::string_view(shape.name).find(wanted) != std::string_view::npos && !rqxml_bench::PrintRow(shape, bytes))
      withinLimit = false;
  return withinLimit ? 0 : 1;
}
