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

/// Makes the reports on the models of one document.
class StatisticsReporter {
 public:
  /// @param input  the document, for a second look at bad fields
  /// @param models how many models the document has
  StatisticsReporter(InputFile& input, const Document& document, std::size_t models, StatisticsReading reading);

  /// Reads the statistics of all fields of `model`. The places of bad fields are told for the first ones alone, of all
  /// reports together.
  StatisticsReport Make(const Model& model);

 private:
  std::optional<Problem> ProblemOf(const FieldStatistics& field);

  InputFile& fInput;
  const Document& fDocument;
  DataFields fDataFields;
  std::size_t fModels;
  StatisticsReading fReading;
  std::size_t fPlaces = 0;
};

/// How many fields of `report` have statistics that cannot be read.
std::size_t CountBad(const StatisticsReport& report);

/// The line that `problem` begins with in a report: the file, the place and what is wrong; printable.
std::string ProblemText(const Problem& problem);

/// The number and the meaning of a status code.
std::string StatusText(long code);

}  // namespace rqtool

#endif
