#ifndef RQXML_XML_RQXNUMBERS_H
#define RQXML_XML_RQXNUMBERS_H

#include <string_view>

#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// Reads an XML Schema double: a normal number as it is, "NaN" as the system-missing value. Infinities (numbers beyond
/// the range of double too) and everything else fail and leave `value` as it was.
bool ReadDouble(const XMLCh* text, double& value);

/// The same for a text without a terminating zero.
bool ReadDouble(std::u16string_view text, double& value);

/// Reads an XML Schema integer; one beyond the range of int comes out modulo 2^32. False, and `value` as it was, for
/// anything else.
bool ReadInteger(const XMLCh* text, int& value);

/// What reading an attribute as a number came to.
enum class RQXNumberAttribute { Absent, Bad, Good };

/// Reads a double attribute with the rules of ReadDouble; `value` is written when it is good.
RQXNumberAttribute ReadDoubleAttribute(const xercesc::DOMElement& element, const XMLCh* name, double& value);

}  // namespace RQXPrsUtil

#endif
