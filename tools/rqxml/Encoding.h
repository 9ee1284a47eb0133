#ifndef RQXML_TOOLS_ENCODING_H
#define RQXML_TOOLS_ENCODING_H

#include <unicode/ucnv.h>

#include <string>

#include "rqxml/encoding/RQMEMConverter.h"

namespace rqtool {

/// Opens an encoding with the library's substitution of characters.
/// @param name a code-page number or the name of an encoding
/// @param option the option that it was given with, for the message; empty for none
/// @throws Failure (WrongUsage) when there is no such encoding
RQMEM_NAMESPACE::QULTMBConverterHandle OpenEncoding(const std::string& name, const std::string& option = {});

/// The converter of a handle, as ICU knows it.
UConverter& ConverterOf(const RQMEM_NAMESPACE::QULTMBConverterHandle& handle);

/// ICU's own name of an encoding.
std::string CanonicalName(const UConverter& converter);

/// True when ICU calls a callback because of a character; else it resets, clones or closes the converter.
inline bool IsReplacement(UConverterCallbackReason reason) { return reason <= UCNV_IRREGULAR; }

/// False for a converter of which ICU cannot close a clone.
bool IsClonable(const UConverter& converter);

/// A converter in the same state.
/// @throws std::bad_alloc when ICU makes none
RQMEM_NAMESPACE::QULTMBConverterHandle CloneConverter(const UConverter& converter);

/// Ends the command after an error of ICU that is none of the text's.
/// @throws Failure (Refused)
[[noreturn]] void FailConversion(const UConverter& converter, UErrorCode error);

}  // namespace rqtool

#endif
