#ifndef RQXML_TOOLS_HTMLREPORT_H
#define RQXML_TOOLS_HTMLREPORT_H

#include <string>
#include <vector>

#include "DocumentVariables.h"
#include "StatisticsReport.h"

namespace rqtool {

/// A page about a whole document: its variables, and the statistics of all its models with pictures. It needs nothing
/// besides itself, holds no script, and is well-formed XML too.
std::string HtmlReport(const std::string& file, const ReadableVariables& variables,
                       const std::vector<StatisticsReport>& models);

}  // namespace rqtool

#endif
