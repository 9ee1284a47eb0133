#ifndef RQXML_TOOLS_STATISTICSREPORT_H
#define RQXML_TOOLS_STATISTICSREPORT_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "FieldStatistics.h"
#include "InputFile.h"
#include "Models.h"

namespace rqtool {

/// A field with what is told of it when its statistics cannot be read.
struct ReportedField {
  FieldStatistics statistics;
  std::optional<Problem> problem;  ///< nothing when the status is OK
  std::string picture;             ///< the name of its picture's file; empty without one
};

/// The statistics of one model.
struct StatisticsReport {
  const InputFile* input;
  Model model;
  std::size_t models;  ///< how many models the document has
  bool hasStatistics;  ///< whether the model has a "ModelStats"
  std::vector<ReportedField> fields;
};

/// Reads the statistics of all fields of `model`.
/// @param input  the document, for a second look at bad fields
/// @param models how many models the document has
StatisticsReport MakeStatisticsReport(InputFile& input, const Document& document, const Model& model,
                                      std::size_t models, StatisticsReading reading);

/// How many fields of `report` have statistics that cannot be read.
std::size_t CountBad(const StatisticsReport& report);

/// The line that `problem` begins with in a report: the file, the place and what is wrong; printable.
std::string ProblemText(const Problem& problem);

/// The number and the meaning of a status code.
std::string StatusText(long code);

}  // namespace rqtool

#endif
