#ifndef RQXML_TOOLS_STATISTICSTEXT_H
#define RQXML_TOOLS_STATISTICSTEXT_H

#include <cstddef>
#include <optional>
#include <string>

#include "StatisticsReport.h"

namespace rqtool {

/// The statistics of the fields of `report` for people.
/// @param width the columns to fit them into; nothing to shorten nothing
std::string StatisticsText(const StatisticsReport& report, std::optional<std::size_t> width);

}  // namespace rqtool

#endif
