#ifndef RQXML_ENCODING_RQMEMSUBSTITUTION_H
#define RQXML_ENCODING_RQMEMSUBSTITUTION_H

#include <unicode/ucnv.h>

namespace RQMEM_NAMESPACE {

/// Which ASCII text a converter turns into the same bytes and back, without a state.
enum class AsciiRange {
  None,
  Printable,  ///< 0x20 to 0x7E
  All         ///< 0x00 to 0x7F
};

/// What is known of a converter.
struct ConverterTraits {
  AsciiRange ascii = AsciiRange::None;  ///< None for a converter without InstallSubstitution's callbacks
  UConverterType type = UCNV_UNSUPPORTED_CONVERTER;

  /// True without shift states. ICU has fast ways from UTF-8 then.
  bool HasNoState() const;
  /// True when ICU does not tell that text which it has read ends inside a character.
  bool ForgetsItsEnd() const { return type == UCNV_HZ || type == UCNV_UTF7; }
  /// True when halves of surrogate pairs are written as if they were characters.
  bool WritesSurrogates() const;
};

/// Costs nearly nothing for a converter with InstallSubstitution's callbacks.
ConverterTraits TraitsOf(const UConverter& converter);

/// Makes "?" the substitute of a converter, as far as the converter takes it, and installs callbacks that report each
/// substitution to those who use the converter with ICU directly: -100 for an unassigned character, -101 for an illegal
/// sequence, warnings for ICU.
void InstallSubstitution(UConverter& converter);

// Install a callback that sets `replaced` at each substitution, since statuses get lost inside ICU. The first two put
// the converter into its initial state. The flag must live as long as the converter is used.

/// For writing; the substitute is that of the converter.
void RecordFromUnicode(UConverter& converter, bool& replaced);
/// For reading; the substitute is "?", but U+FFFD for a shift that ICU takes for an attack.
void RecordToUnicode(UConverter& converter, bool& replaced);
/// For reading; the state stays as it is, and the substitute is U+FFFD.
void RecordMalformed(UConverter& converter, bool& replaced);

}  // namespace RQMEM_NAMESPACE

#endif
