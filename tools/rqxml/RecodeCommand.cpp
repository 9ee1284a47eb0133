#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ByteSource.h"
#include "Command.h"
#include "DisplayText.h"
#include "Encoding.h"
#include "Failure.h"
#include "Json.h"
#include "OutputFile.h"
#include "Progress.h"
#include "Recoder.h"
#include "Terminal.h"

namespace rqtool {

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;
constexpr const char* kStandardOutput = "-";

constexpr const char* kFooter =
    "ENC is a code-page number or the name of an encoding; rqxml encodings lists\n"
    "them. What is malformed in IN, and what OUT has no place for, is replaced,\n"
    "mostly by a question mark.\n\n";

struct RecodeOptions {
  std::string from;
  std::string to;
  std::string input = kStandardInput;
  std::string output = kStandardOutput;
  bool strict = false;
  bool quiet = false;
};

// Standard output has failed, which was told.
struct OutputLost {};

/// Takes the result block by block: a file that appears when it is whole, or standard output.
class Target {
 public:
  explicit Target(const std::string& name) {
    if (name != kStandardOutput) fFile.emplace(name);
  }

  bool IsFile() const { return fFile.has_value(); }
  /// Gathers the result of a block.
  void Add(std::string_view bytes) { fBlock += bytes; }
  /// Holds what was gathered back, and writes what was held before.
  void HoldBlock();
  /// Writes what was held back and gathered.
  void WriteAll();
  /// Forgets what was gathered, and what was held back or writes it.
  void DropBlock(bool heldToo);
  void Finish() {
    if (fFile) fFile->Finish();
  }
  std::uint64_t GetWritten() const { return fWritten; }

 private:
  void Write(std::string& bytes);

  std::optional<OutputFile> fFile;
  std::string fHeld;
  std::string fBlock;
  std::uint64_t fWritten = 0;
};

void Target::Write(std::string& bytes) {
  if (fFile) {
    fFile->Write(bytes);
  } else if (!WritePartToStdout(bytes)) {
    throw OutputLost();
  }
  fWritten += bytes.size();
  bytes.clear();
}

void Target::HoldBlock() {
  Write(fHeld);
  fHeld.swap(fBlock);
}

void Target::WriteAll() {
  Write(fHeld);
  Write(fBlock);
}

void Target::DropBlock(bool heldToo) {
  fBlock.clear();
  if (heldToo) fHeld.clear();
  Write(fHeld);
}

void RequireOtherFile(const RecodeOptions& options, const ByteSource& source) {
  const bool toFile = options.output != kStandardOutput;
  if (options.output.empty()) {
    throw Failure(ExitCode::WrongUsage, {.what = "OUT names no file", .hint = "name a file, or leave it out"});
  }
  if (!(toFile ? source.IsSameFile(options.output) : source.IsSameFile(STDOUT_FILENO))) return;
  throw Failure(ExitCode::WrongUsage, {.what = toFile ? "OUT " + options.output + " is the file to read"
                                                      : "standard output is the file to read",
                                       .hint = "name another file"});
}

// With --strict nothing goes out from the block on in which the first replaced character begins. A block is held back
// until the next one is there, since a character may begin in one and turn out malformed in the other; and it is filled
// up, however small the pieces are in which a pipe hands the text out.
void ConvertAll(const RecodeOptions& options, ByteSource& source, Recoder& recoder, Target& target) {
  ByteProgress progress(source.GetSize(), !options.quiet && (target.IsFile() || ::isatty(STDOUT_FILENO) == 0));
  std::uint64_t blockStart = 0;
  for (bool last = false; !last;) {
    const std::string_view piece = source.Next();
    last = piece.empty();
    if (recoder.GetRead() - blockStart + piece.size() > kBlockSize && options.strict) {
      if (recoder.GetReplaced() == 0) target.HoldBlock();
      blockStart = recoder.GetRead();
    }
    recoder.Convert(piece, last, [&target](std::string_view bytes) { target.Add(bytes); });
    if (options.strict && recoder.GetReplaced() > 0) {
      target.DropBlock(recoder.GetFirstReplaced().value_or(0) < blockStart);
    } else if (last || !options.strict) {
      target.WriteAll();
    }
    progress.Show(recoder.GetRead());
  }
}

std::string Note(const ByteSource& source, const Recoder& recoder, const Target& target, bool refused) {
  const std::uint64_t replaced = recoder.GetReplaced();
  std::string text = Printable(source.GetDisplayName()) + ": " + std::to_string(replaced);
  text += replaced == 1 ? " character was replaced, at byte " : " characters were replaced, the first at byte ";
  text += std::to_string(recoder.GetFirstReplaced().value_or(0));
  if (refused) text += target.IsFile() ? "; nothing was written" : "; the output ends before it";
  return text;
}

std::string Report(const RecodeOptions& options, const Recoder& recoder, const Target& target, bool refused) {
  const auto encoding = [](const std::string& given) {
    return Json{{"given", given}, {"name", CanonicalName(ConverterOf(OpenEncoding(given)))}};
  };
  Json first = nullptr;
  if (recoder.GetFirstReplaced()) first = *recoder.GetFirstReplaced();
  return JsonText({{"input", options.input},
                   {"output", options.output},
                   {"from", encoding(options.from)},
                   {"to", encoding(options.to)},
                   {"bytesRead", recoder.GetRead()},
                   {"bytesWritten", target.IsFile() && refused ? 0 : target.GetWritten()},
                   {"replaced", recoder.GetReplaced()},
                   {"firstReplaced", first},
                   {"written", !refused}});
}

Outcome Run(const RecodeOptions& options, bool json) {
  Recoder recoder(OpenEncoding(options.from, "--from"), OpenEncoding(options.to, "--to"));
  ByteSource source(options.input, kBlockSize);
  RequireOtherFile(options, source);
  Target target(options.output);
  Outcome outcome;
  try {
    ConvertAll(options, source, recoder, target);
  } catch (const OutputLost&) {
    outcome.outputLost = true;
    return outcome;
  }
  const bool refused = options.strict && recoder.GetReplaced() > 0;
  if (!refused) target.Finish();
  if (refused) outcome.exitCode = ExitCode::StrictFindings;
  if (json) {
    (target.IsFile() ? outcome.output : outcome.report) = Report(options, recoder, target, refused);
  } else if (recoder.GetReplaced() > 0) {
    outcome.notes.push_back(Note(source, recoder, target, refused));
  }
  return outcome;
}

}  // namespace

void AddRecodeCommand(CLI::App& app, Request& request) {
  const auto options = std::make_shared<RecodeOptions>();
  CLI::App* const command = app.add_subcommand("recode", "Convert text from one encoding to another");
  command->footer(kFooter + command->get_footer());
  command->add_option("--from", options->from, "the encoding of IN")->required()->option_text("ENC");
  command->add_option("--to", options->to, "the encoding of OUT")->required()->option_text("ENC");
  command->add_option("IN", options->input, "the text; standard input for - or when left out")->option_text(" ");
  command->add_option("OUT", options->output, "what to write; standard output likewise")->option_text(" ");
  command->add_flag("--strict", options->strict, "a character that is replaced is an error: OUT is not\nwritten");
  command->add_flag("--quiet", options->quiet, "show no progress on a terminal");
  command->add_flag("--json", request.json,
                    "tell the sums as one JSON object, on standard output when\n"
                    "OUT is a file, else on standard error");
  command->callback([options, &request] { request.run = [options, &request] { return Run(*options, request.json); }; });
}

}  // namespace rqtool
