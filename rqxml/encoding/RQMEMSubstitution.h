#ifndef RQXML_ENCODING_RQMEMSUBSTITUTION_H
#define RQXML_ENCODING_RQMEMSUBSTITUTION_H

#include <unicode/ucnv.h>

namespace RQMEM_NAMESPACE {

/// What converters report to those who use them with ICU directly. Negative: a warning for ICU.
constexpr UErrorCode kUnassigned = static_cast<UErrorCode>(-100);
constexpr UErrorCode kIllegal = static_cast<UErrorCode>(-101);

/// Which ASCII text a converter turns into the same bytes and back, without a state.
enum class AsciiRange {
  None,
  Printable,  ///< 0x20 to 0x7E
  All         ///< 0x00 to 0x7F
};

/// True for converters without shift states. For those, ICU has fast ways from UTF-8.
bool HasNoState(const UConverter& converter);

/// True for converters that write halves of surrogate pairs as if they were characters.
bool WritesSurrogates(const UConverter& converter);

/// Makes "?" the substitute of a converter, as far as the converter takes it, and installs callbacks that report each
/// substitution with one of the two statuses.
void InstallSubstitution(UConverter& converter);

// Install a callback that sets `replaced` at each substitution, since statuses get lost inside ICU, and put the
// converter into its initial state. The flag must live as long as the converter is used.

/// For writing; the substitute is that of the converter.
void RecordFromUnicode(UConverter& converter, bool& replaced);
/// For reading; the substitute is "?".
void RecordToUnicode(UConverter& converter, bool& replaced);
/// For reading; the substitute is U+FFFD.
void RecordMalformed(UConverter& converter, bool& replaced);

/// What is known of a converter with InstallSubstitution's callbacks; None for any other converter.
AsciiRange SafeAscii(const UConverter& converter);

}  // namespace RQMEM_NAMESPACE

#endif
