#include "Command.h"

namespace rqtool {

void AddAllowDtd(CLI::App& subCommand, Request& request) {
  subCommand.add_flag("--allow-dtd", request.allowDtd,
                      "accept a DOCTYPE, and a pipe or device as FILE. Only for\n"
                      "documents that you trust: a DOCTYPE can open other files,\n"
                      "go to the network and grow without limit");
}

void AddJson(CLI::App& subCommand, Request& request) {
  subCommand.add_flag("--json", request.json, "print one JSON object instead of text");
}

}  // namespace rqtool
