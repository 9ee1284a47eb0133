#ifndef RQXML_TOOLS_COMBINEOPTIONS_H
#define RQXML_TOOLS_COMBINEOPTIONS_H

#include <string>
#include <vector>

namespace rqtool {

/// What the options of "rqxml combine" ask for, as they were given.
struct CombineOptions {
  std::string output;
  std::string manifest;                 ///< empty without one
  std::string by;                       ///< empty without it
  std::vector<std::string> splits;      ///< FILE=VALUE[,VALUE]
  std::vector<std::string> types;       ///< NAME=string|double|integer
  std::vector<std::string> labels;      ///< NAME=TEXT
  std::vector<std::string> continuous;  ///< NAME
  std::vector<std::string> categories;  ///< NAME=a,b,c
  bool keepGoing = false;
  bool strict = false;
  bool quiet = false;
};

}  // namespace rqtool

#endif
