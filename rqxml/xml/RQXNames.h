#ifndef RQXML_XML_RQXNAMES_H
#define RQXML_XML_RQXNAMES_H

/// @file
/// The names of elements and attributes that stand in more than one place, each written once, as UTF-16.

#include <xercesc/util/XercesDefs.hpp>

namespace RQXPrsUtil::Names {

inline constexpr XMLCh kDataField[] = u"DataField";
inline constexpr XMLCh kDerivedField[] = u"DerivedField";
inline constexpr XMLCh kExtender[] = u"extender";
inline constexpr XMLCh kExtension[] = u"Extension";
inline constexpr XMLCh kInterval[] = u"Interval";
inline constexpr XMLCh kLeftMargin[] = u"leftMargin";
inline constexpr XMLCh kName[] = u"name";
inline constexpr XMLCh kRightMargin[] = u"rightMargin";
inline constexpr XMLCh kValueAttribute[] = u"value";
inline constexpr XMLCh kValueElement[] = u"Value";

}  // namespace RQXPrsUtil::Names

#endif
