#ifndef RQXML_TOOLS_STATISTICSJSON_H
#define RQXML_TOOLS_STATISTICSJSON_H

#include "Json.h"
#include "StatisticsReport.h"

namespace rqtool {

/// The statistics of the fields of `report` for programs.
Json StatisticsToJson(const StatisticsReport& report);

}  // namespace rqtool

#endif
