// Merging the files of splits, against what the XML library alone costs for the same files: a bare parse of each, an
// import of its root into one document, and one serialisation to a file. Each run is a process of its own, which also
// tells its peak memory; both sides run alternately, and what counts is the ratio of each pair. Where python3-lxml is
// there, a plain script that merges the same files is timed too.
//   rqxml_bench_combiner [--all]                            the table; --all with 5,000 splits and 100 large ones
//   rqxml_bench_combiner --only floor|subject N KILOBYTES   one side once, for a profiler

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>

#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

struct Cost {
  double milliseconds = 0;
  double peak = 0;  // bytes
};

struct Size {
  int splits;
  std::size_t kilobytes;
};

// Nodes of a tree model, as programs write them, up to the size asked for.
std::string MakeSplit(std::size_t bytes, int split) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"4.1\" xmlns=\"http://www.dmg.org/PMML-4_1\">\n"
      "  <Header copyright=\"none\"/>\n  <DataDictionary numberOfFields=\"20\">\n";
  std::string schema;
  for (int i = 0; i < 20; ++i) {
    const std::string name = "field" + std::to_string(i);
    text += "    <DataField name=\"" + name + "\" optype=\"categorical\" dataType=\"string\">\n";
    for (int k = 0; k < 5; ++k) text += "      <Value value=\"v" + std::to_string(k + split % 3) + "\"/>\n";
    text += "    </DataField>\n";
    schema += "      <MiningField name=\"" + name + "\"/>\n";
  }
  text += "  </DataDictionary>\n  <TreeModel functionName=\"classification\">\n    <MiningSchema>\n" + schema +
          "    </MiningSchema>\n    <Node id=\"0\"><True/>\n";
  for (int id = 1; text.size() < bytes; ++id) {
    const std::string number = std::to_string(id);
    text += "      <Node id=\"" + number + "\" score=\"v1\" recordCount=\"" + std::to_string(id * 37 % 1009) +
            "\">\n        <SimplePredicate field=\"field" + std::to_string(id % 20) +
            "\" operator=\"equal\" value=\"v2\"/>\n        <ScoreDistribution value=\"v1\" recordCount=\"" + number +
            ".25\"/>\n      </Node>\n";
  }
  return text + "    </Node>\n  </TreeModel>\n</PMML>\n";
}

class Files {
 public:
  explicit Files(Size size)
      : fFolder(std::filesystem::temp_directory_path() / ("rqxml_bench_" + std::to_string(getpid()))) {
    std::filesystem::create_directory(fFolder);
    for (int i = 0; i < size.splits; ++i) {
      fSplits.push_back((fFolder / (std::to_string(i) + ".pmml")).string());
      std::ofstream(fSplits.back()) << MakeSplit(size.kilobytes * 1000, i);
    }
  }
  ~Files() { std::filesystem::remove_all(fFolder); }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  const std::vector<std::string>& Splits() const { return fSplits; }
  std::string Output() const { return (fFolder / "out.pmml").string(); }

 private:
  std::filesystem::path fFolder;
  std::vector<std::string> fSplits;
};

void RunSubject(const Files& files) {
  RQMTD_NAMESPACE::RQVarList vars;
  vars.AddCatVar("split", "", std::vector<std::string>{"a"}, RQMTD_NAMESPACE::IRQVariable::RoleInput);
  RQXPrsUtil::RQXSplitPMMLCombiner combiner(vars);
  for (std::size_t i = 0; i < files.Splits().size(); ++i) {
    Require(combiner.AddModel(files.Splits()[i], {std::to_string(i)}).IsOK(), "each file is merged");
  }
  Require(combiner.GetNModels() == static_cast<int>(files.Splits().size()), "each file has its segment");
  Require(combiner.ExportMiningModel(files.Output()).IsOK(), "the document is written");
}

void RunFloor(const Files& files) {
  using xercesc::XMLPlatformUtils;
  auto& implementation = *xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  xercesc::DOMDocument* const output = implementation.createDocument(nullptr, u"all", nullptr);
  for (const std::string& file : files.Splits()) {
    xercesc::XercesDOMParser parser;
    parser.parse(file.c_str());
    output->getDocumentElement()->appendChild(output->importNode(parser.getDocument()->getDocumentElement(), true));
  }
  xercesc::DOMLSSerializer* const serializer = implementation.createLSSerializer();
  xercesc::DOMLSOutput* const destination = implementation.createLSOutput();
  xercesc::LocalFileFormatTarget target(files.Output().c_str());
  destination->setByteStream(&target);
  Require(serializer->write(output, destination), "the document is written");
  destination->release();
  serializer->release();
  output->release();
}

using Side = void (*)(const Files&);

Cost InChild(Side side, const Files& files) {
  int ends[2];
  Require(pipe(ends) == 0, "there is a pipe");
  const pid_t child = fork();
  if (child == 0) {
    const Platform platform;
    Cost cost;
    cost.milliseconds = MillisecondsOf([&] { side(files); });
    _exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
  }
  Cost cost;
  close(ends[1]);
  Require(read(ends[0], &cost, sizeof cost) == sizeof cost, "the child answers");
  close(ends[0]);
  struct rusage usage {};
  int status = 0;
  wait4(child, &status, 0, &usage);
  cost.peak = static_cast<double>(usage.ru_maxrss) * 1024;
  return cost;
}

// The milliseconds of the same merge by a script on lxml; 0 where there is none, or more files than a command takes.
double TimeScript(const Files& files) {
  std::string command = "/usr/bin/python3 " RQXML_BENCH_DIR "/combine_lxml.py '" + files.Output() + '\'';
  for (const std::string& file : files.Splits()) command += " '" + file + '\'';
  command += " 2>/dev/null";
  constexpr std::size_t kLongestCommand = 120'000;
  if (command.size() > kLongestCommand) return 0;
  FILE* const script = popen(command.c_str(), "r");
  double milliseconds = 0;
  if (script && std::fscanf(script, "%lf", &milliseconds) != 1) milliseconds = 0;
  if (script) pclose(script);
  return milliseconds;
}

std::string ScriptColumn(const Files& files, double subject) {
  std::vector<double> times;
  for (int i = 0; i < 3; ++i) times.push_back(TimeScript(files));
  const double time = Quantile(times, 0.5);
  if (time <= 0) return "-";
  char text[64];
  std::snprintf(text, sizeof text, "%.1f (%.2f)", time, subject / time);
  return text;
}

// Prints a row, and hands out the subject's median time.
double PrintRow(Size size) {
  const Files files(size);
  const double bytes = static_cast<double>(size.splits) * static_cast<double>(size.kilobytes) * 1000;
  const int pairs = bytes > 2e7 ? 5 : 15;
  std::vector<double> floors, subjects, ratios, floorPeaks, subjectPeaks;
  InChild(RunFloor, files);  // fills the disk cache
  for (int i = 0; i < pairs; ++i) {
    Cost floor, subject;
    if (i % 2 == 0) floor = InChild(RunFloor, files);
    subject = InChild(RunSubject, files);
    if (i % 2 != 0) floor = InChild(RunFloor, files);
    floors.push_back(floor.milliseconds);
    subjects.push_back(subject.milliseconds);
    ratios.push_back(subject.milliseconds / floor.milliseconds);
    floorPeaks.push_back(floor.peak);
    subjectPeaks.push_back(subject.peak);
  }
  const double time = Quantile(subjects, 0.5);
  const double floorPeak = Quantile(floorPeaks, 0.5);
  const double subjectPeak = Quantile(subjectPeaks, 0.5);
  std::printf("| %d x %zu KB | %.1f | %.1f | %.3f | %.3f | %.3f | %.1f | %.1f | %.3f | %s |\n", size.splits,
              size.kilobytes, Quantile(floors, 0.5), time, Quantile(ratios, 0.5), Quantile(ratios, 0.25),
              Quantile(ratios, 0.75), floorPeak / 1e6, subjectPeak / 1e6, subjectPeak / floorPeak,
              ScriptColumn(files, time).c_str());
  std::fflush(stdout);
  return time;
}

// The slope of the straight line through the logarithms.
double Exponent(const std::vector<double>& sizes, const std::vector<double>& times) {
  double x = 0, y = 0, xx = 0, xy = 0;
  const double n = static_cast<double>(sizes.size());
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const double u = std::log(sizes[i]), v = std::log(times[i]);
    x += u;
    y += v;
    xx += u * u;
    xy += u * v;
  }
  return (n * xy - x * y) / (n * xx - x * x);
}

void PrintTable(bool all) {
  std::puts(
      "| splits | floor, ms | combiner, ms | ratio | lower quartile | upper quartile | floor, MB | combiner, MB | "
      "ratio | lxml script, ms (combiner / script) |");
  std::puts("|---|---|---|---|---|---|---|---|---|---|");
  std::vector<double> sizes, times;
  for (const int splits : {10, 100, 1000, 5000}) {
    if (splits > 1000 && !all) break;
    sizes.push_back(splits);
    times.push_back(PrintRow({splits, 50}));
  }
  PrintRow({all ? 100 : 20, 5000});
  std::printf("\ngrowth exponent in the number of splits: %.3f\n", Exponent(sizes, times));
}

// For a profiler: one side in this process.
void RunAlone(const char* side, Size size) {
  const Files files(size);
  const Platform platform;
  std::strcmp(side, "floor") == 0 ? RunFloor(files) : RunSubject(files);
}

}  // namespace
}  // namespace rqxml_bench

int main(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], "--only") == 0) {
    rqxml_bench::RunAlone(argv[2], {std::atoi(argv[3]), static_cast<std::size_t>(std::atol(argv[4]))});
  } else {
    rqxml_bench::PrintTable(argc > 1 && std::strcmp(argv[1], "--all") == 0);
  }
  return 0;
}
