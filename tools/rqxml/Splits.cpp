#include "Splits.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <utility>

#include "CommaList.h"
#include "Csv.h"
#include "DocumentText.h"
#include "Failure.h"
#include "InputFile.h"

namespace rqtool {

namespace {

namespace fs = std::filesystem;

constexpr const char* kHeaderHint = "its first line names the columns: file, then each split variable";
constexpr const char* kListHint =
    "write NAME[,NAME] and FILE=VALUE[,VALUE]; what holds a comma stands in double quotes";

Failure WrongUsage(const std::string& what, const std::string& hint) {
  return Failure(ExitCode::WrongUsage, {.what = what, .hint = hint});
}

Failure BadManifest(const InputFile& manifest, std::size_t line, const std::string& what, const std::string& hint) {
  return Failure(ExitCode::Refused,
                 {.file = manifest.GetDisplayName() + ':' + std::to_string(line), .what = what, .hint = hint});
}

// What is wrong with the names of the split variables; empty when nothing is.
std::string WhyBadNames(const std::vector<std::string>& names) {
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (name->empty()) return "the name of a split variable is empty";
    if (!IsDocumentText(*name)) return "the name \"" + *name + "\" holds what no XML document can hold";
    if (std::find(names.begin(), name, *name) != name) return "the split variable \"" + *name + "\" is named twice";
  }
  return {};
}

std::vector<CsvRecord> ReadRecords(InputFile& manifest) {
  const std::string text{std::istreambuf_iterator<char>(manifest.Stream()), {}};
  manifest.RequireWhole();
  try {
    return ParseCsv(text);
  } catch (const CsvError& e) {
    throw BadManifest(manifest, e.GetLine(), e.what(), "a field with a quote stands in double quotes, the quote twice");
  }
}

std::vector<std::string> ReadHeader(const InputFile& manifest, const std::vector<CsvRecord>& records) {
  if (records.empty()) throw BadManifest(manifest, 1, "the manifest is empty", kHeaderHint);
  const CsvRecord& header = records.front();
  if (header.fields.front() != "file") {
    const std::string what = "the first column is named \"" + header.fields.front() + "\", not \"file\"";
    throw BadManifest(manifest, header.line, what, kHeaderHint);
  }
  std::vector<std::string> names(header.fields.begin() + 1, header.fields.end());
  if (names.empty()) throw BadManifest(manifest, header.line, "no split variable is named", kHeaderHint);
  const std::string wrong = WhyBadNames(names);
  if (!wrong.empty()) throw BadManifest(manifest, header.line, wrong, kHeaderHint);
  return names;
}

Split ReadRow(const InputFile& manifest, const CsvRecord& record) {
  const std::string& file = record.fields.front();
  if (file.empty()) throw BadManifest(manifest, record.line, "the name of the file is empty", "name one in each line");
  if (file.find('\0') != std::string::npos) {
    throw BadManifest(manifest, record.line, "the name of the file holds a zero byte", "correct the line");
  }
  const fs::path folder = manifest.GetName() == "-" ? fs::path() : fs::path(manifest.GetName()).parent_path();
  return {.file = (folder / file).string(),
          .line = record.line,
          .values = {record.fields.begin() + 1, record.fields.end()}};
}

Splits ReadManifest(const std::string& name) {
  InputFile manifest(name, SpecialFiles::Read);
  const std::vector<CsvRecord> records = ReadRecords(manifest);
  Splits splits{ReadHeader(manifest, records), {}};
  for (std::size_t i = 1; i < records.size(); ++i) splits.splits.push_back(ReadRow(manifest, records[i]));
  if (splits.splits.empty()) {
    throw BadManifest(manifest, records.front().line, "no file is named", "write one line for each split");
  }
  return splits;
}

// Where the quoted item that begins at `begin` ends: behind its closing quote, or nowhere.
std::size_t FindEndOfQuoted(const std::string& text, std::size_t begin) {
  std::size_t quote = text.find('"', begin + 1);
  while (quote != std::string::npos && text.compare(quote, 2, "\"\"") == 0) quote = text.find('"', quote + 2);
  return quote == std::string::npos ? quote : quote + 1;
}

// Where the equals sign before the values stands: the last one outside their quotes. A quote in the name of the file
// is a character like any other; that of a value follows the equals sign or a comma.
std::size_t FindEquals(const std::string& text) {
  std::size_t found = std::string::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '=') found = i;
    const bool beginsItem = found != std::string::npos && (text[i] == '=' || text[i] == ',');
    if (!beginsItem || text.compare(i + 1, 1, "\"") != 0) continue;
    const std::size_t end = FindEndOfQuoted(text, i + 1);
    if (end == std::string::npos) return found;
    i = end - 1;
  }
  return found;
}

Split ReadArgument(const std::string& argument) {
  const std::size_t equals = FindEquals(argument);
  if (equals == std::string::npos || equals == 0) throw WrongUsage(argument + ": is not FILE=VALUE", kListHint);
  std::optional<std::vector<std::string>> values = SplitCommaList(std::string_view(argument).substr(equals + 1));
  if (!values) throw WrongUsage(argument + ": the quotes do not match", kListHint);
  return {.file = argument.substr(0, equals), .values = std::move(*values)};
}

Splits ReadArguments(const CombineOptions& options) {
  std::optional<std::vector<std::string>> names = SplitCommaList(options.by);
  if (!names) throw WrongUsage("--by " + options.by + ": the quotes do not match", kListHint);
  const std::string wrong = WhyBadNames(*names);
  if (!wrong.empty()) throw WrongUsage("--by " + options.by + ": " + wrong, kListHint);
  if (options.splits.empty()) throw WrongUsage("no file is named", kListHint);
  Splits splits{std::move(*names), {}};
  for (const std::string& argument : options.splits) splits.splits.push_back(ReadArgument(argument));
  return splits;
}

}  // namespace

Splits ReadSplits(const CombineOptions& options) {
  if (options.manifest.empty() == options.by.empty()) {
    throw WrongUsage("give --manifest or --by, one of them", "rqxml combine --help tells what they take");
  }
  if (options.manifest.empty()) return ReadArguments(options);
  if (!options.splits.empty()) {
    throw WrongUsage("with --manifest no file is named: " + options.splits.front(), "the manifest names all of them");
  }
  return ReadManifest(options.manifest);
}

}  // namespace rqtool
