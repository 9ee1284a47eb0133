// Peak memory of reading a document, above what the program needs before: the bare parser in one process, this library
// in another, and the size of the variables that the latter keeps.

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "workload.h"

namespace rqxml_bench {
namespace {

struct Peaks {
  double floor = 0;
  double subject = 0;
  double variables = 0;
};

// A line of the kernel's account of this process, in bytes.
double StatusLine(const std::string& title) {
  std::ifstream in("/proc/self/status");
  for (std::string word; in >> word;) {
    double kibibytes = 0;
    if (word == title && in >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

void ForgetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

double BytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

template <class Step>
double PeakOf(Step step) {
  malloc_trim(0);
  const double before = StatusLine("VmRSS:");
  ForgetPeak();
  step();
  return StatusLine("VmHWM:") - before;
}

Peaks MeasureFloor(const Document& document) {
  Floor floor;
  return {PeakOf([&] { floor.Run(document); }), 0, 0};
}

Peaks MeasureSubject(const Document& document) {
  Subject subject;
  Peaks peaks;
  peaks.subject = PeakOf([&] {
    subject.Parse(document);
    const double before = BytesInUse();
    subject.Fill(document);
    peaks.variables = BytesInUse() - before;
  });
  return peaks;
}

// Runs the step in a process of its own, where no earlier work has left memory behind.
template <class Step>
Peaks InChild(Step step) {
  int ends[2];
  Require(pipe(ends) == 0, "there is a pipe");
  const pid_t child = fork();
  if (child == 0) {
    const Platform platform;
    const Peaks peaks = step();
    _exit(write(ends[1], &peaks, sizeof peaks) == sizeof peaks ? 0 : 1);
  }
  Peaks peaks;
  close(ends[1]);
  Require(read(ends[0], &peaks, sizeof peaks) == sizeof peaks, "the child answers");
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return peaks;
}

void PrintRow(std::size_t fields, Variant variant) {
  const Peaks floor = InChild([=] { return MeasureFloor(MakeDocument(fields, variant)); });
  Peaks peaks = InChild([=] { return MeasureSubject(MakeDocument(fields, variant)); });
  peaks.floor = floor.floor;
  constexpr double kMega = 1e6;
  std::printf("| %s %zu | %.1f | %.1f | %.1f | %.3f |\n", NameOf(variant), fields, peaks.floor / kMega,
              peaks.subject / kMega, peaks.variables / kMega, (peaks.subject - peaks.variables) / peaks.floor);
  std::fflush(stdout);
}

}  // namespace
}  // namespace rqxml_bench

int main() {
  for (const rqxml_bench::Variant variant : rqxml_bench::kVariants)
    for (const std::size_t fields : {1000UL, 10000UL, 100000UL}) rqxml_bench::PrintRow(fields, variant);
  return 0;
}
