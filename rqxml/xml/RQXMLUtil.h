#ifndef RQXML_XML_RQXMLUTIL_H
#define RQXML_XML_RQXMLUTIL_H

/// @file
/// Reading and building DOM trees by UTF-8 names.
///
/// The functions own nothing: elements, attribute values and documents belong to the DOM document and live as long as
/// it. Names are compared exactly, as written in the document (prefix included). Absence is a null pointer or -1, bad
/// content 1 or false. Exceptions of the XML library pass through except where a function says otherwise. The XML
/// library must have been started.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/common/RQExport.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// @name Reading and walking
/// @{

/// `node` as an element when it is one and, unless `tagName` is null, has that tag name; else null.
RQ_API const xercesc::DOMElement* AsElement(const xercesc::DOMNode& node, const char* tagName);

/// True when the element's tag name is `tagName`.
RQ_API bool TagNameEquals(const xercesc::DOMElement& element, const char* tagName);

/// The first child of `node` that is an element (named `tagName` unless that is null); null when there is none.
RQ_API const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node, const char* tagName);

/// The first child element named like an entry of `table`, the entries tried in their order: the table's order wins
/// over the document's. The table ends with an entry whose name is null.
/// @param index receives the position of the entry found; 0 when none was
RQ_API const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node,
                                                    const std::pair<unsigned int, const char*>* const table,
                                                    std::size_t& index);

/// The first following sibling of `node` that is an element (named `tagName` unless that is null); null when there
/// is none.
RQ_API const xercesc::DOMElement* GetNextSiblingElmt(const xercesc::DOMNode& node, const char* tagName);

/// The first child of `node` that is an "Extension" element of this library's own, named `name` (any name when null).
RQ_API const xercesc::DOMElement* GetFirstChildExtension(const xercesc::DOMNode& node, const char* name);

/// The first following sibling of `node` that is an "Extension" element of this library's own, named `name` (any name
/// when null).
RQ_API const xercesc::DOMElement* GetNextSiblingExtension(const xercesc::DOMNode& node, const char* name);

/// The attribute's value, or null when the element has no such attribute; a present, empty attribute gives an empty
/// string.
RQ_API const XMLCh* GetAttribute(const xercesc::DOMElement& element, const char* name);

/// As the form for elements; null when `node` is not an element.
RQ_API const XMLCh* GetAttribute(const xercesc::DOMNode& node, const char* name);

/// Reads an integer attribute.
/// @param sign  negative: any value will do; 0: zero or above; positive: above zero
/// @param value receives every integer read, also one that the sign requirement rejects. Integers beyond the range of
///   int come out modulo 2^32.
/// @return 0 success; 1 not an integer, or the sign requirement fails; -1 no such attribute
RQ_API int GetIntAttribute(const xercesc::DOMElement& element, const char* name, int sign, int& value);

/// Reads a double attribute: an XML Schema double, "NaN" as RQMV::gMissingValue, infinities refused.
/// @param value written on success only
/// @return 0 success; 1 not an accepted number; -1 no such attribute
RQ_API int GetDoubleAttribute(const xercesc::DOMElement& element, const char* name, double& value);

/// Reads the doubles of an element's text, separated by blanks, tabs, carriage returns or line feeds. An element
/// without children is an empty list.
/// @param values cleared and filled; kept when the element's content is anything but one text node; empty after a bad
///   number
/// @return false when the content is not one text node or a number is bad
RQ_API bool AssembleDoublesList(const xercesc::DOMElement& element, std::vector<double>& values);

/// Position of the first entry of `table` (ended by a null name) whose name equals `string`; -1 when there is none.
RQ_API int FindXStrInList(const XMLCh* string, const std::pair<unsigned int, const char*>* const table);

/// Position of the first entry of `list` that equals `string`; -1 when there is none.
RQ_API int FindXStrInList(const XMLCh* string, const std::vector<std::string>& list);

/// @}
/// @name Building
/// @{

/// A new, unattached element of `document`; null when the XML library refuses the name.
RQ_API xercesc::DOMElement* CreateElement(xercesc::DOMDocument& document, const char* tagName);

/// A new, unattached "Extension" element with "extender" set to this library's own mark and "name" to `name`; null
/// when that fails. No "value" is set.
RQ_API xercesc::DOMElement* CreateExtension(xercesc::DOMDocument& document, const char* name);

/// Puts `newChild` in the place of `oldChild` below `parent`; false when the XML library raises a DOMException.
RQ_API bool ReplaceElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild, xercesc::DOMElement* oldChild);

/// Inserts `newChild` below `parent` before `refChild`, at the end when that is null; false when the XML library
/// raises a DOMException.
RQ_API bool InsertElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild, xercesc::DOMElement* refChild);

/// Sets an attribute, new or not; false when the XML library raises a DOMException.
RQ_API bool SetAttribute(xercesc::DOMElement& element, const char* name, const char* value);

/// Sets an attribute to the text that RQXML_NAMESPACE::Format(value, false, nullptr) makes of `value`.
RQ_API bool SetAttribute(xercesc::DOMElement& element, const char* name, double value);

/// @}
/// @name Strings
/// @{

/// `string` in UTF-8; empty for null and for a high surrogate at the end. Other malformed UTF-16 comes out as the XML
/// library encodes it.
RQ_API std::string ToUTF8(const XMLCh* string);

/// The UTF-8 text `string` (not null) as UTF-16 units with one zero unit behind them; the zero unit alone for
/// malformed UTF-8.
RQ_API std::vector<XMLCh> ToUTF16(const char* string);

/// True when ToUTF16(string) equals `xstring`; a null `xstring` equals an empty text.
RQ_API bool XStrEqualsUTF8Str(const XMLCh* xstring, const char* string);

/// @}

}  // namespace RQXPrsUtil

#endif
