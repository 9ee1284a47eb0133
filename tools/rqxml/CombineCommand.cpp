#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "Combination.h"
#include "CombineOptions.h"
#include "CombineReport.h"
#include "Command.h"
#include "Failure.h"
#include "OutputFile.h"
#include "Progress.h"
#include "SplitVariables.h"
#include "Splits.h"

namespace rqtool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kFooter =
    "A split is a file with its values, one for each split variable:\n"
    "  rqxml combine -o all.pmml --by region,size n1.pmml=north,1 s1.pmml=south,1\n"
    "or a line of a manifest (RFC 4180) whose first line is file,region,size.\n"
    "What holds a comma or a quote stands in double quotes, each quote twice.\n\n";

void RequireFileName(const CombineOptions& options) {
  if (!options.output.empty() && options.output != "-") return;
  throw Failure(ExitCode::WrongUsage,
                {.what = options.output.empty() ? "-o names no file" : "-o - is not standard output",
                 .hint = "the document is written whole and then renamed: name a file; one of the name - is ./-"});
}

void RequireOtherFile(const CombineOptions& options, const std::string& source) {
  if (!IsSameFile(options.output, source)) return;
  throw Failure(ExitCode::WrongUsage,
                {.what = "-o " + options.output + " is one of the files to read", .hint = "name another file"});
}

// Merges all files; those that fail end the command, or are noted.
void AddAll(const CombineOptions& options, const Splits& splits, Combination& combination, CombineResult& result,
            std::optional<ExitCode>& failed) {
  Progress progress(splits.splits.size(), !options.quiet);
  std::size_t done = 0;
  for (const Split& split : splits.splits) {
    try {
      combination.Add(split);
    } catch (const Failure& e) {
      if (!options.keepGoing) throw;
      result.skipped.push_back(e.GetProblem());
      failed = failed.value_or(e.GetExitCode());
    }
    progress.Show(++done, combination.GetSegments());
  }
}

Outcome Report(const CombineResult& result, const Request& request, ExitCode exitCode) {
  return {request.json ? CombineJson(result) : CombineText(result), {}, exitCode};
}

Outcome Run(const CombineOptions& options, const Request& request) {
  const Clock::time_point begin = Clock::now();
  RequireFileName(options);
  const Splits splits = ReadSplits(options);
  const std::vector<SplitVariable> variables = DescribeSplitVariables(options, splits);
  if (!options.manifest.empty()) RequireOtherFile(options, options.manifest);
  for (const Split& split : splits.splits) RequireOtherFile(options, split.file);

  OutputFile output(options.output);
  CombineResult result;
  result.output = options.output;
  result.files = splits.splits.size();
  std::optional<ExitCode> failed;
  Combination combination(variables);
  AddAll(options, splits, combination, result, failed);
  result.segments = combination.GetSegments();
  result.added = combination.GetComparison().GetAdded();
  result.findings = combination.GetComparison().GetFindings();

  const bool refused = options.strict && !result.findings.empty();
  if (result.segments > 0 && !refused) {
    combination.Write(output);
    result.size = output.Finish();
  }
  result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  if (refused) return Report(result, request, ExitCode::StrictFindings);
  return Report(result, request, failed.value_or(ExitCode::Good));
}

void AddVariableOptions(CLI::App& command, CombineOptions& options) {
  const auto add = [&command](const char* name, std::vector<std::string>& target, const char* help, const char* shown) {
    command.add_option(name, target, help)->option_text(shown)->allow_extra_args(false);
  };
  add("--type", options.types, "NAME=string, double or integer (string)", "NAME=TYPE");
  add("--label", options.labels, "the label of a split variable", "NAME=TEXT");
  add("--continuous", options.continuous, "a split variable without categories", "NAME");
  add("--categories", options.categories,
      "NAME=a,b,c; else the distinct values as\n"
      "they come first",
      "NAME=LIST");
}

}  // namespace

void AddCombineCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<CombineOptions>();
  CLI::App* const command = app.add_subcommand("combine", "Merge the PMML files of splits into one mining model");
  command->footer(kFooter + command->get_footer());
  command->add_option("-o,--output", options->output, "the document to write")->required()->option_text("OUT");
  command->add_option("--manifest", options->manifest, "a table of the files and their split values")
      ->option_text("CSV");
  command->add_option("--by", options->by, "the split variables, as in region,size")->option_text("NAMES");
  command->add_option("SPLIT", options->splits, "FILE=VALUE[,VALUE]...; with --by")->option_text(" ");
  AddVariableOptions(*command, *options);
  command->add_flag("--strict", options->strict, "findings are an error: nothing is written");
  command->add_flag("--keep-going", options->keepGoing, "skip files that are refused, tell them at the end");
  command->add_flag("--quiet", options->quiet, "show no progress on a terminal");
  AddJson(*command, request);
  command->add_flag("--allow-dtd", request.allowDtd,
                    "accept a DOCTYPE. Only for documents that you trust: it can\n"
                    "open other files, go to the network and grow without limit");
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request); }; });
}

}  // namespace rqtool
