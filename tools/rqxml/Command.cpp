#include "Command.h"

namespace rqtool {

void AddAllowDtd(CLI::App& subCommand, Request& request) {
  subCommand.add_flag("--allow-dtd", request.allowDtd,
                      "accept a DOCTYPE, and a pipe or device as FILE; for documents\n"
                      "that you trust: a DOCTYPE can open other files, go to the\n"
                      "network and grow without limit");
}

void AddJson(CLI::App& subCommand, Request& request) {
  subCommand.add_flag("--json", request.json, "print one JSON object instead of text");
}

}  // namespace rqtool
