#ifndef RQXML_TOOLS_DATAFIELDS_H
#define RQXML_TOOLS_DATAFIELDS_H

#include <string>
#include <unordered_map>
#include <vector>

#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// What the data dictionary tells of a field that helps to show its statistics.
struct DataField {
  std::string label;                                    ///< may be empty
  std::vector<std::string> values;                      ///< the valid ones, in document order
  std::unordered_map<std::string, std::string> labels;  ///< of the valid values; each may be empty
};

/// The fields of a data dictionary by their names. Each is read once, however many statistics name it.
class DataFields {
 public:
  /// Those of the document with the document element `root`, which must outlive this object.
  explicit DataFields(const xercesc::DOMElement& root);

  /// The first field of that name, or null.
  const DataField* Find(const std::string& name);

 private:
  std::unordered_map<std::string, const xercesc::DOMElement*> fElements;
  std::unordered_map<const xercesc::DOMElement*, DataField> fRead;
};

}  // namespace rqtool

#endif
