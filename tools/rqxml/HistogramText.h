#ifndef RQXML_TOOLS_HISTOGRAMTEXT_H
#define RQXML_TOOLS_HISTOGRAMTEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Bars.h"

namespace rqtool {

/// The bars on a line each, with label, count and share, drawn with block characters to an eighth of a column.
/// @param width the columns of the terminal: labels are cut, bars scaled, and all but the first bars counted; without
///   it everything is shown
std::string HistogramText(const std::vector<Bar>& bars, std::optional<std::size_t> width);

/// A line from the minimum to the maximum, thick one standard deviation around the mean, which is marked.
std::string SpreadText(const Spread& spread, const std::string& minimum, const std::string& maximum,
                       std::optional<std::size_t> width);

}  // namespace rqtool

#endif
