#include "rqxml/encoding/RQMEMClone.h"

#include <array>

#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMSubstitution.h"

namespace RQMEM_NAMESPACE {

namespace {

UConverter* Clone(const UConverter& converter, UConverterType type) {
  UErrorCode error = U_ZERO_ERROR;
  if (type == UCNV_COMPOUND_TEXT) {  // ICU crashes where a clone of this type is closed
    UConverter* const opened = ucnv_open(ucnv_getName(&converter, &error), &error);
    if (opened != nullptr) InstallSubstitution(*opened);
    return opened;
  }
#if U_ICU_VERSION_MAJOR_NUM >= 71
  return ucnv_clone(&converter, &error);
#else
  return ucnv_safeClone(&converter, nullptr, nullptr, &error);
#endif
}

}  // namespace

// A converter that was used with ICU directly hands its state on: the recording functions reset the clone.

ConverterClone::ConverterClone(void* converter, Direction direction) {
  const auto* const original = converter != nullptr ? static_cast<UConverter*>(converter) : QULTMBGetDefaultConverter();
  if (original != nullptr) Set(*original, TraitsOf(*original), direction);
}

ConverterClone::ConverterClone(const UConverter& converter, const ConverterTraits& traits, Direction direction) {
  Set(converter, traits, direction);
}

void ConverterClone::Set(const UConverter& converter, const ConverterTraits& traits, Direction direction) {
  fClone.reset(Clone(converter, traits.type));
  if (!fClone) return;
  if (direction == Direction::FromUnicode)
    RecordFromUnicode(*fClone, fReplaced);
  else
    RecordToUnicode(*fClone, fReplaced);
}

bool IsInsideCharacter(const UConverter& converter) {
  const OwnedConverter probe(Clone(converter, UCNV_UNSUPPORTED_CONVERTER));
  if (!probe) return false;
  bool replaced = false;
  RecordMalformed(*probe, replaced);
  const char sign = '!';  // behind whole characters it stands for itself, or begins a character of HZ
  const char* source = &sign;
  std::array<UChar, 8> units;
  UChar* end = units.data();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(probe.get(), &end, end + units.size(), &source, source + 1, nullptr, 0, &error);
  return replaced || (end != units.data() && units.front() != u'!');
}

Utf8Clone::Utf8Clone(Direction direction) {
  UErrorCode error = U_ZERO_ERROR;
  static const UConverter* const original = ucnv_open("UTF-8", &error);  // kept: a clone costs less than opening one
  if (original == nullptr) return;
  fClone.reset(Clone(*original, UCNV_UTF8));
  if (!fClone) return;
  if (direction == Direction::FromUnicode)
    RecordFromUnicode(*fClone, fReplaced);
  else
    RecordMalformed(*fClone, fReplaced);
}

}  // namespace RQMEM_NAMESPACE
