#ifndef RQXML_FUZZ_REFERENCE_TEXT_H
#define RQXML_FUZZ_REFERENCE_TEXT_H

#include <optional>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

namespace rqxml_fuzz {

/// The slow and obvious ways to texts and numbers, written on the XML library alone: what the fuzz targets compare
/// the fast ways with.

/// UTF-16 to 8-bit text in one piece; empty when anything is wrong with it or for null.
std::string SlowTranscodeTo(const char* encoding, const XMLCh* text);

/// 8-bit text to UTF-16 in one piece, with a zero behind it; the zero alone when anything is wrong.
std::vector<XMLCh> SlowTranscodeFrom(const char* encoding, const std::string& text);

/// To UTF-8.
std::string SlowUTF8(const XMLCh* text);

/// From UTF-8.
std::vector<XMLCh> SlowUTF16(const std::string& text);

/// An XML Schema double, "NaN" as the system-missing value; nothing for infinities and for what is no number.
std::optional<double> SlowDouble(const XMLCh* text);

/// An XML Schema integer modulo 2^32; nothing for what is none.
std::optional<int> SlowInteger(const XMLCh* text);

/// The numbers of a text; nothing when one of them is none.
std::optional<std::vector<double>> SlowDoubles(const XMLCh* text);

}  // namespace rqxml_fuzz

#endif
