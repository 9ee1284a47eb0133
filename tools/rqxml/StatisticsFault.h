#ifndef RQXML_TOOLS_STATISTICSFAULT_H
#define RQXML_TOOLS_STATISTICSFAULT_H

#include <string>

#include "FieldStatistics.h"

namespace rqtool {

/// What is wrong with the statistics of a field whose status is not OK; anything but printable. The fault is looked for
/// where the status code says, in the order of the library.
std::string ExplainFault(const FieldStatistics& field);

}  // namespace rqtool

#endif
