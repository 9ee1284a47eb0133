#ifndef RQXML_COMMON_RQXMLFORMAT_H
#define RQXML_COMMON_RQXMLFORMAT_H

#include <string>

#include "rqxml/common/RQExport.h"

namespace RQXML_NAMESPACE {

/// The shortest text that reads back as the same double, whatever the locale: "0.1", "1e-07", "1e+300".
///
/// Whole numbers below 1e15 in magnitude stand in plain digits ("3", "100000"; negative zero as "0"). The
/// system-missing value and not-a-number are written "NaN", the infinities "INF" and "-INF".
/// @param value  the number
/// @param flag   true keeps a decimal point in whole numbers: "3.0", "1.0e+300"
/// @param buffer null, or a place for at least 32 bytes that also receives the zero-terminated text
/// @throws std::bad_alloc when a text too long for the string itself finds no memory
RQ_API std::string Format(double value, bool flag, char* buffer);

}  // namespace RQXML_NAMESPACE

#endif
