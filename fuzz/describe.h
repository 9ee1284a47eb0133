#ifndef RQXML_FUZZ_DESCRIBE_H
#define RQXML_FUZZ_DESCRIBE_H

#include <functional>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// The number, bit for bit.
std::string Describe(double number);

/// Code and flag.
std::string Describe(const RQCommon::RQStatus& status);

/// Everything that the list knows about its variables.
std::string Describe(const RQMTD_NAMESPACE::RQVarList& vars);

/// The tree below and with `node`: types, names, values, attributes, in document order.
std::string DescribeTree(const xercesc::DOMNode* node);

/// How a parse ended: with a status or with one of the exceptions that may leave a parse, its text included.
struct Ending {
  bool threw = false;
  RQCommon::RQStatus status;
  std::string text;  ///< exception's kind, place and message; empty without one
};

/// Runs the parse. Exceptions that no parse may let out end the process.
Ending RunParse(const std::function<RQCommon::RQStatus()>& parse);

/// The ending in one text.
std::string Describe(const Ending& ending);

}  // namespace rqxml_fuzz

#endif
