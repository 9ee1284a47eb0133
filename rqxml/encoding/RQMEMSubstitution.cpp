#include "rqxml/encoding/RQMEMSubstitution.h"

#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>

namespace RQMEM_NAMESPACE {

namespace {

constexpr UErrorCode kUnassigned = static_cast<UErrorCode>(-100);
constexpr UErrorCode kIllegal = static_cast<UErrorCode>(-101);

constexpr std::size_t kTypes = UCNV_NUMBER_OF_SUPPORTED_CONVERTER_TYPES;
using TraitsOfTypes = std::array<ConverterTraits, kTypes>;

constexpr TraitsOfTypes MakeTraits(AsciiRange range) {
  TraitsOfTypes all{};
  for (std::size_t type = 0; type < kTypes; ++type) all[type] = {range, static_cast<UConverterType>(type)};
  return all;
}

/// The callbacks' contexts: converters carry what is known of them. Indexed by AsciiRange.
constexpr std::array<TraitsOfTypes, 3> kKnown = {MakeTraits(AsciiRange::None), MakeTraits(AsciiRange::Printable),
                                                 MakeTraits(AsciiRange::All)};

/// Callbacks are called for reset, close and clone too. ICU's own do nothing then.
bool IsSubstitution(UConverterCallbackReason reason) { return reason == UCNV_UNASSIGNED || reason == UCNV_ILLEGAL; }

void ReportFromUnicode(const void*, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                       UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsSubstitution(reason)) return;
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, codePoint, reason, error);
  if (U_SUCCESS(*error)) *error = reason == UCNV_UNASSIGNED ? kUnassigned : kIllegal;
}

/// Writes "?" in place of ICU's substitute; leaves a shift to another set and back at once, which some take for an
/// attack, to ICU.
void ReportToUnicode(const void*, UConverterToUnicodeArgs* args, const char* units, std::int32_t length,
                     UConverterCallbackReason reason, UErrorCode* error) {
  if (reason == UCNV_IRREGULAR) UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, reason, error);
  if (!IsSubstitution(reason)) return;
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, u"?", 1, 0, error);
  if (U_SUCCESS(*error)) *error = reason == UCNV_UNASSIGNED ? kUnassigned : kIllegal;
}

void Record(const void* context) { *const_cast<bool*>(static_cast<const bool*>(context)) = true; }

void NoteFromUnicode(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                     UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsSubstitution(reason)) return;
  Record(context);
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, codePoint, reason, error);
}

void NoteToUnicode(const void* context, UConverterToUnicodeArgs* args, const char* units, std::int32_t length,
                   UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsSubstitution(reason) && reason != UCNV_IRREGULAR) return;
  ReportToUnicode(nullptr, args, units, length, reason, error);
  Record(context);
  if (U_SUCCESS(*error)) *error = U_ZERO_ERROR;
}

void NoteMalformed(const void* context, UConverterToUnicodeArgs* args, const char* units, std::int32_t length,
                   UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsSubstitution(reason)) return;
  Record(context);
  UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, reason, error);
}

constexpr std::size_t kAsciiCount = 0x80;
using AsciiBytes = std::array<char, kAsciiCount>;
using AsciiUnits = std::array<UChar, kAsciiCount>;

/// Equal from the first to the last.
template <class Array>
bool SameBetween(const Array& left, const Array& right, std::size_t first, std::size_t last) {
  return std::equal(left.begin() + first, left.begin() + last + 1, right.begin() + first);
}

AsciiRange Probe(UConverter& converter, UConverterType type) {
  if (!ConverterTraits{AsciiRange::None, type}.HasNoState()) return AsciiRange::None;
  AsciiBytes bytes;
  AsciiUnits units;
  for (std::size_t i = 0; i < kAsciiCount; ++i) {
    bytes[i] = static_cast<char>(i);
    units[i] = static_cast<UChar>(i);
  }
  AsciiBytes madeBytes{};
  AsciiUnits madeUnits{};
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t byteCount =
      ucnv_fromUChars(&converter, madeBytes.data(), kAsciiCount, units.data(), kAsciiCount, &error);
  const std::int32_t unitCount =
      ucnv_toUChars(&converter, madeUnits.data(), kAsciiCount, bytes.data(), kAsciiCount, &error);
  ucnv_reset(&converter);
  if (U_FAILURE(error) || byteCount != kAsciiCount || unitCount != kAsciiCount) return AsciiRange::None;
  const auto same = [&](std::size_t first, std::size_t last) {
    return SameBetween(bytes, madeBytes, first, last) && SameBetween(units, madeUnits, first, last);
  };
  if (same(0, kAsciiCount - 1)) return AsciiRange::All;
  return same(0x20, 0x7E) ? AsciiRange::Printable : AsciiRange::None;
}

}  // namespace

bool ConverterTraits::HasNoState() const {
  switch (type) {
    case UCNV_SBCS:
    case UCNV_DBCS:
    case UCNV_MBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
    case UCNV_UTF8:
      return true;
    default:
      return false;
  }
}

bool ConverterTraits::WritesSurrogates() const {
  if (type >= UCNV_LMBCS_1 && type <= UCNV_LMBCS_LAST) return true;
  switch (type) {
    case UCNV_UTF7:
    case UCNV_IMAP_MAILBOX:
    case UCNV_SCSU:
    case UCNV_BOCU1:
    case UCNV_CESU8:
      return true;
    default:
      return false;
  }
}

void InstallSubstitution(UConverter& converter) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setSubstChars(&converter, "?", 1, &error);  // some refuse it and keep their own
  const UConverterType type = ucnv_getType(&converter);
  const AsciiRange range = Probe(converter, type);
  const ConverterTraits* const known = &kKnown[static_cast<std::size_t>(range)][static_cast<std::size_t>(type)];
  error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(&converter, ReportFromUnicode, known, nullptr, nullptr, &error);
  ucnv_setToUCallBack(&converter, ReportToUnicode, known, nullptr, nullptr, &error);
}

void RecordFromUnicode(UConverter& converter, bool& replaced) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(&converter, NoteFromUnicode, &replaced, nullptr, nullptr, &error);
  ucnv_resetFromUnicode(&converter);
}

void RecordToUnicode(UConverter& converter, bool& replaced) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(&converter, NoteToUnicode, &replaced, nullptr, nullptr, &error);
  ucnv_resetToUnicode(&converter);
}

void RecordMalformed(UConverter& converter, bool& replaced) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(&converter, NoteMalformed, &replaced, nullptr, nullptr, &error);
}

ConverterTraits TraitsOf(const UConverter& converter) {
  UConverterFromUCallback from = nullptr;
  const void* context = nullptr;
  ucnv_getFromUCallBack(&converter, &from, &context);
  if (from == ReportFromUnicode) return *static_cast<const ConverterTraits*>(context);
  return {AsciiRange::None, ucnv_getType(&converter)};
}

}  // namespace RQMEM_NAMESPACE
