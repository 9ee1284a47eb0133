#ifndef RQXML_TOOLS_COMMAND_H
#define RQXML_TOOLS_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "ExitCode.h"
#include "InputFile.h"
#include "XmlPlatform.h"

namespace rqtool {

/// What a sub-command brings about. It prints nothing itself, so that nothing is ever printed by half, unless its
/// output is too long to be held back.
struct Outcome {
  std::string output{};              ///< for standard output, whole
  std::vector<std::string> notes{};  ///< for standard error, one printable line each
  ExitCode exitCode = ExitCode::Good;
  std::string report{};     ///< for standard error, whole
  bool outputLost = false;  ///< standard output has failed before, which was told
};

/// What the command line asked for; filled while it is parsed.
struct Request {
  std::function<Outcome()> run;  ///< the work of the chosen sub-command; failures leave it as exceptions
  bool allowDtd = false;         ///< --allow-dtd
  bool json = false;             ///< --json

  DtdPolicy Dtds() const { return allowDtd ? DtdPolicy::Allow : DtdPolicy::Refuse; }
  SpecialFiles Files() const { return allowDtd ? SpecialFiles::Read : SpecialFiles::Refuse; }
};

/// Adds the option --allow-dtd, which every sub-command that reads documents has.
void AddAllowDtd(CLI::App& subCommand, Request& request);

/// Adds the option --json.
void AddJson(CLI::App& subCommand, Request& request);

/// @name The sub-commands
/// Each adds itself to `app`; when it is chosen it puts its work into `request`, which outlives the work.
/// @{
void AddVarsCommand(CLI::App& app, Request& request);
void AddSettingsCommand(CLI::App& app, Request& request);
void AddGetCommand(CLI::App& app, Request& request);
void AddStatsCommand(CLI::App& app, Request& request);
void AddCombineCommand(CLI::App& app, Request& request);
void AddStatusCommand(CLI::App& app, Request& request);
void AddRecodeCommand(CLI::App& app, Request& request);
void AddEncodingsCommand(CLI::App& app, Request& request);
/// @}

}  // namespace rqtool

#endif
