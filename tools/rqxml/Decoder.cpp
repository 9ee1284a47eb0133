#include "Decoder.h"

#include <unicode/ucnv_cb.h>

#include <utility>

#include "Encoding.h"

namespace rqtool {

using RQMEM_NAMESPACE::QULTMBConverterHandle;

namespace {

constexpr std::size_t kUnits = 16 * 1024;

// Of these ICU forgets what they begin and do not end, and counts no bytes as pending.
bool ForgetsItsEnd(UConverterType type) { return type == UCNV_HZ || type == UCNV_UTF7; }

}  // namespace

Decoder::Decoder(QULTMBConverterHandle converter)
    : fWatch(std::make_unique<Watch>()), fConverter(std::move(converter)) {
  ucnv_getToUCallBack(&ConverterOf(fConverter), &fWatch->callback, &fWatch->context);
  Install();
}

Decoder::Decoder(QULTMBConverterHandle converter, const Watch& watch)
    : fWatch(std::make_unique<Watch>(watch)), fConverter(std::move(converter)) {
  fWatch->replaced = 0;
  Install();
}

void Decoder::Install() {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(&ConverterOf(fConverter), Note, fWatch.get(), nullptr, nullptr, &error);
}

// Leaves the replacing to the library. ICU calls for reset, close and clone too.
void Decoder::Note(const void* context, UConverterToUnicodeArgs* args, const char* bytes, std::int32_t length,
                   UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsReplacement(reason)) return;
  Watch& watch = *const_cast<Watch*>(static_cast<const Watch*>(context));
  if (watch.replaced++ == 0) watch.firstDistance = length + (args->sourceLimit - args->source);
  watch.callback(watch.context, args, bytes, length, reason, error);
  // An empty segment between two escape sequences is neither unassigned nor illegal, and no reason to stop either.
  const bool left = U_FAILURE(*error) != 0;
  *error = U_ZERO_ERROR;
  if (left) ucnv_cbToUWriteUChars(args, u"?", 1, 0, error);
}

Decoder::Piece Decoder::Take(std::string_view& bytes, bool last) {
  if (!last || !ForgetsItsEnd(ucnv_getType(&GetConverter()))) return Convert(bytes, last);
  if (!bytes.empty()) return {Convert(bytes, false).units, true};
  return TakeForgottenEnd();
}

Decoder::Piece Decoder::TakeForgottenEnd() {
  const bool inside = IsInsideCharacter();
  const std::uint64_t before = fWatch->replaced;
  std::string_view none;
  const Piece piece = Convert(none, true);
  if (!inside || !piece.units.empty() || fWatch->replaced > before) return piece;
  if (fWatch->replaced++ == 0) fWatch->firstDistance = 1;
  fUnits.front() = u'?';
  return {std::u16string_view(fUnits.data(), 1), false};
}

// Behind whole characters "!" stands for itself, or begins a character of HZ. In UTF-7 bits may wait for the rest of a
// unit, all zero; they are followed by set ones in the second probe. Four at most are padding.
bool Decoder::IsInsideCharacter() const {
  Decoder probe = Clone();
  std::string_view sign = "!";
  const Piece piece = probe.Convert(sign, false);
  if (probe.GetReplaced() > 0 || !(piece.units.empty() || piece.units == u"!")) return true;
  if (ucnv_getType(&GetConverter()) != UCNV_UTF7) return false;
  Decoder bitProbe = Clone();
  std::string_view bits = "///";
  const Piece behind = bitProbe.Convert(bits, false);
  return !behind.units.empty() && behind.units.front() != u'/' && behind.units.front() < 0x0FFF;
}

Decoder::Piece Decoder::Convert(std::string_view& bytes, bool last) {
  fUnits.resize(kUnits);
  const char* source = bytes.data() == nullptr ? "" : bytes.data();
  char16_t* target = fUnits.data();
  UErrorCode error = U_ZERO_ERROR;
  const char* const end = source + bytes.size();
  ucnv_toUnicode(&ConverterOf(fConverter), &target, fUnits.data() + fUnits.size(), &source, end, nullptr, last ? 1 : 0,
                 &error);
  const bool more = error == U_BUFFER_OVERFLOW_ERROR;
  if (U_FAILURE(error) && !more) FailConversion(ConverterOf(fConverter), error);
  bytes = std::string_view(source, static_cast<std::size_t>(end - source));
  return {std::u16string_view(fUnits.data(), static_cast<std::size_t>(target - fUnits.data())), more};
}

std::uint64_t Decoder::CountPending() const {
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t count = ucnv_toUCountPending(&ConverterOf(fConverter), &error);
  if (U_SUCCESS(error) && count > 0) return static_cast<std::uint64_t>(count);
  return ucnv_getType(&GetConverter()) == UCNV_HZ && IsInsideCharacter() ? 1 : 0;  // ICU counts none there
}

bool Decoder::HoldsCharacter() const {
  if (ucnv_getType(&GetConverter()) != UCNV_ISCII) return false;
  std::string_view none;
  Decoder probe = Clone();
  return !probe.Convert(none, true).units.empty();
}

bool Decoder::IsClonable() const { return rqtool::IsClonable(ConverterOf(fConverter)); }

Decoder Decoder::Clone() const { return Decoder(CloneConverter(ConverterOf(fConverter)), *fWatch); }

const UConverter& Decoder::GetConverter() const { return ConverterOf(fConverter); }

}  // namespace rqtool
