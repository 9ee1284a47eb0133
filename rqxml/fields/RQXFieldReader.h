#ifndef RQXML_FIELDS_RQXFIELDREADER_H
#define RQXML_FIELDS_RQXFIELDREADER_H

#include <span>

#include "rqxml/common/RQStatus.h"
#include "rqxml/fields/RQXField.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// One accepted word for how a field is stored.
struct RQXTypeWord {
  const XMLCh* word;
  int storage;
  bool numeric;
};

/// In what one kind of field differs from the others.
struct RQXFieldDialect {
  const XMLCh* labelAttribute;         // optional
  const XMLCh* typeAttribute;          // required
  std::span<const RQXTypeWord> types;  // its accepted words
  const XMLCh* measureAttribute;       // required; "continuous", or anything else for categorical
  /// Reads one child element of the field; a failure ends the field.
  RQCommon::RQStatus (*readChild)(const xercesc::DOMElement& child, RQXField& field);
};

/// Reads the field `element`: its name, label, type and measure, then its children in document order.
/// @return OK; 108 for an absent required attribute; 109 for an unknown type; or what a child came to
RQCommon::RQStatus ReadField(const xercesc::DOMElement& element, const RQXFieldDialect& dialect, RQXField& field);

/// @name Children of "DataField" and "DerivedField"
/// @{

/// A "Value": valid unless its "property" says otherwise. A value that is no number is dropped from a numeric field
/// while its "displayValue" stays, so that labels pair by their own position.
void ReadValue(const xercesc::DOMElement& value, RQXField& field);

/// An "Extension": "invalidRangeLower" or "invalidRangeUpper" with a numeric "value"; any other is ignored.
void ReadInvalidRange(const xercesc::DOMElement& extension, RQXField& field);

/// An "Interval" that is the range of a settings document's field. A missing right margin is the largest double, a
/// missing left one the smallest positive normal double: callers rely on it.
/// @return OK; 109 for a margin that is no number, and for a left margin above the right one
RQCommon::RQStatus ReadRange(const xercesc::DOMElement& interval, RQXField& field);

/// @}

/// Appends the attribute `name` of a value element to the field's numbers or texts (whichever the field has), unless
/// it is absent or no number.
void AppendValue(const xercesc::DOMElement& value, const XMLCh* name, bool numeric, std::vector<double>& numbers,
                 std::vector<std::string>& texts);

/// Appends the attribute `name` of a value element to `labels`, unless it is absent.
void AppendLabel(const xercesc::DOMElement& value, const XMLCh* name, std::vector<std::string>& labels);

}  // namespace RQXPrsUtil

#endif
