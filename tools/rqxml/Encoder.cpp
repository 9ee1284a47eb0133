#include "Encoder.h"

#include <unicode/utf16.h>

#include <algorithm>
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
  fState.writesHalves = IsClonable() && WritesHalves();
}

Encoder::Encoder(QULTMBConverterHandle converter, const Encoder& original)
    : fWatch(std::make_unique<Watch>(*original.fWatch)), fConverter(std::move(converter)), fState(original.fState) {
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
  fState.anyUnit = fState.anyUnit || !units.empty();
  if (!fState.anyUnit) return;  // where there is no text ICU would still write what stands before it
  if (fState.writesHalves) CountHalves(units);
  Convert(units, false, sink);
  if (last) End(sink);
}

void Encoder::End(const ByteSink& sink) {
  const std::uint64_t before = fWatch->replaced;
  if (ucnv_getType(&ConverterOf(fConverter)) == UCNV_HZ) EndHz(sink);
  Convert({}, true, sink);
  // The first half of a pair that stands last; BOCU-1 replaces that one alone, which has been counted.
  if (fState.lead != 0 && fWatch->replaced == before) NoteHalf(fState.lead);
}

// ICU leaves HZ shifted, and drops the first half of a pair there. A character behind the text shows both: before it
// stands what became of the half, and its own shift where the text is not shifted. What the text lacks is written.
void Encoder::EndHz(const ByteSink& sink) {
  constexpr std::string_view kCharacter = "VP";
  constexpr std::string_view kShift = "~{";
  std::string bytes;
  Encoder probe = Clone();
  probe.Convert(u"\u4e2d", false, [&bytes](std::string_view piece) { bytes += piece; });
  bytes.resize(bytes.size() - kCharacter.size());
  const bool shifted = bytes.size() < kShift.size() || bytes.compare(bytes.size() - kShift.size(), 2, kShift) != 0;
  if (shifted) {
    bytes += "~}";
  } else {
    bytes.resize(bytes.size() - kShift.size());
  }
  if (fWatch->replaced == 0) fWatch->first = probe.GetFirstReplaced();
  fWatch->replaced += probe.GetReplaced();
  sink(bytes);
}

bool Encoder::WritesHalves() const {
  Encoder probe = Clone();
  probe.Convert(u"\xD800z", true, [](std::string_view) {});
  return probe.GetReplaced() == 0;
}

void Encoder::CountHalves(std::u16string_view units) {
  for (const char16_t unit : units) {
    const bool ends = fState.lead != 0 && U16_IS_TRAIL(unit);
    if (!ends && fState.lead != 0) NoteHalf(fState.lead);
    if (!ends && U16_IS_TRAIL(unit)) NoteHalf(unit);
    fState.lead = U16_IS_LEAD(unit) ? unit : u'\0';
  }
}

void Encoder::NoteHalf(char16_t half) {
  if (fWatch->replaced++ == 0) fWatch->first = half;
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
  const std::size_t lead = fState.lead != 0 ? 1 : 0;
  return U_SUCCESS(error) && count > 0 ? std::max(static_cast<std::size_t>(count), lead) : lead;
}

bool Encoder::IsClonable() const { return rqtool::IsClonable(ConverterOf(fConverter)); }

Encoder Encoder::Clone() const { return Encoder(CloneConverter(ConverterOf(fConverter)), *this); }

}  // namespace rqtool
