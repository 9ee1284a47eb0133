#include "Encoder.h"

#include <string>
#include <utility>

#include "Encoding.h"

namespace rqtool {

using RQMEM_NAMESPACE::QULTMBConverterHandle;

namespace {

constexpr std::size_t kBytes = 64 * 1024;

}  // namespace

Encoder::Encoder(QULTMBConverterHandle converter)
    : fWatch(std::make_unique<Watch>()), fConverter(std::move(converter)) {
  ucnv_getFromUCallBack(&ConverterOf(fConverter), &fWatch->callback, &fWatch->context);
  Install();
}

Encoder::Encoder(QULTMBConverterHandle converter, const Watch& watch)
    : fWatch(std::make_unique<Watch>(watch)), fConverter(std::move(converter)) {
  fWatch->replaced = 0;
  Install();
}

void Encoder::Install() {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(&ConverterOf(fConverter), Note, fWatch.get(), nullptr, nullptr, &error);
}

// Leaves the replacing to the library. ICU calls for reset, close and clone too.
void Encoder::Note(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                   UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsReplacement(reason)) return;
  Watch& watch = *const_cast<Watch*>(static_cast<const Watch*>(context));
  if (watch.replaced++ == 0) watch.first = static_cast<char32_t>(codePoint);
  watch.callback(watch.context, args, units, length, codePoint, reason, error);
  if (U_SUCCESS(*error)) *error = U_ZERO_ERROR;
}

void Encoder::Write(std::u16string_view units, bool last, const ByteSink& sink) {
  if (!last || ucnv_getType(&ConverterOf(fConverter)) != UCNV_HZ) return Convert(units, last, sink);
  Convert(units, false, sink);
  const bool shifted = IsShifted();
  Convert({}, true, sink);
  if (shifted) sink("~}");
}

// Of HZ, which ICU leaves shifted at the end: behind shifted text this character needs no shift.
bool Encoder::IsShifted() const {
  std::string bytes;
  Clone().Convert(u"\u4e2d", false, [&](std::string_view piece) { bytes += piece; });
  return bytes == "VP";
}

void Encoder::Convert(std::u16string_view units, bool last, const ByteSink& sink) {
  fBytes.resize(kBytes);
  const char16_t* source = units.data() == nullptr ? u"" : units.data();
  const char16_t* const end = source + units.size();
  bool more = true;
  while (more) {
    char* target = fBytes.data();
    UErrorCode error = U_ZERO_ERROR;
    ucnv_fromUnicode(&ConverterOf(fConverter), &target, fBytes.data() + fBytes.size(), &source, end, nullptr,
                     last ? 1 : 0, &error);
    more = error == U_BUFFER_OVERFLOW_ERROR;
    if (U_FAILURE(error) && !more) FailConversion(ConverterOf(fConverter), error);
    if (target != fBytes.data())
      sink(std::string_view(fBytes.data(), static_cast<std::size_t>(target - fBytes.data())));
  }
}

std::size_t Encoder::CountPending() const {
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t count = ucnv_fromUCountPending(&ConverterOf(fConverter), &error);
  return U_SUCCESS(error) && count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool Encoder::IsClonable() const { return rqtool::IsClonable(ConverterOf(fConverter)); }

Encoder Encoder::Clone() const { return Encoder(CloneConverter(ConverterOf(fConverter)), *fWatch); }

}  // namespace rqtool
