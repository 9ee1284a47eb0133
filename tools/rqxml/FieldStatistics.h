#ifndef RQXML_TOOLS_FIELDSTATISTICS_H
#define RQXML_TOOLS_FIELDSTATISTICS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Document.h"
#include "Models.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQUniStats.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// What the cases of one bar of a histogram have in common: they lie in an interval.
struct Interval {
  double left;          ///< the system-missing value for an open end
  double right;         ///< the same
  bool closedAtLeft;    ///< whether the left margin belongs to it
  bool closedAtRight;   ///< whether the right margin belongs to it
  std::string closure;  ///< the word that the document has for both; empty for a gap between two of its intervals
};

/// The statistics of one field, or why there are none.
struct FieldStatistics {
  const xercesc::DOMElement* element;   ///< "UnivariateStats"; belongs to the document
  std::optional<std::string> field;     ///< the field's name; nothing without one
  RQCommon::RQStatus status;            ///< how reading them went
  RQMTD_NAMESPACE::RQUniStats stats;    ///< valid when the status is OK
  bool continuous = false;              ///< known whatever the status
  bool needsLenience = false;           ///< only the lenient reading understands them
  bool lenient = false;                 ///< and was used
  std::optional<double> missing;        ///< cases without a value, where the document tells
  std::optional<double> invalid;        ///< cases with an invalid value, where the document tells
  std::string label;                    ///< of the field, from the data dictionary; may be empty
  std::vector<std::string> categories;  ///< one text for each frequency of a categorical field, or none
  std::vector<std::string> labels;      ///< one for each category, from the data dictionary; may be empty
  std::size_t texts = 0;                ///< how many category texts stand beside the frequencies
  std::vector<Interval> intervals;      ///< one for each frequency of a continuous field
};

/// How the statistics are read.
enum class StatisticsReading {
  Strict,  ///< by the contract of the library alone
  Lenient  ///< also the forms that many writers use instead
};

/// The statistics of all fields of a model, bad ones too, in document order.
std::vector<FieldStatistics> ReadStatistics(const Document& document, const Model& model, StatisticsReading reading);

/// True when the model has a "ModelStats".
bool HasStatistics(const Model& model);

/// The first child element `tag` of `element`, or null; also when `element` is.
const xercesc::DOMElement* ChildOf(const xercesc::DOMElement* element, const char* tag);

}  // namespace rqtool

#endif
