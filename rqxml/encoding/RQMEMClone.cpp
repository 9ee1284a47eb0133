#include "rqxml/encoding/RQMEMClone.h"

#include <array>
#include <string_view>

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

/// What a converter makes of bytes behind those that it has read.
struct Behind {
  bool replaced = false;
  bool any = false;
  UChar first = 0;
};

Behind ReadBehind(const UConverter& converter, std::string_view bytes) {
  Behind behind;
  const OwnedConverter probe(Clone(converter, ucnv_getType(&converter)));
  if (!probe) return behind;
  RecordMalformed(*probe, behind.replaced);
  const char* source = bytes.data();
  std::array<UChar, 8> units{};
  UChar* end = units.data();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(probe.get(), &end, end + units.size(), &source, source + bytes.size(), nullptr, 0, &error);
  behind.any = end != units.data();
  behind.first = units.front();
  return behind;
}

}  // namespace

// A converter that was used with ICU directly hands its state on: the recording functions reset the clone.

ConverterClone::ConverterClone() {
  const UConverter* const original = QULTMBGetDefaultConverter();
  if (original != nullptr) Set(*original, TraitsOf(*original), Direction::ToUnicode);
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
  const Behind sign = ReadBehind(converter, "!");  // stands for itself, or begins a character of HZ
  if (sign.replaced || (sign.any && sign.first != u'!')) return true;
  if (ucnv_getType(&converter) != UCNV_UTF7) return false;
  // Bits that wait for the rest of a unit, all zero, are followed by set ones here. Four at most are padding.
  const Behind bits = ReadBehind(converter, "///");
  return bits.any && bits.first != u'/' && bits.first < 0x0FFF;
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
