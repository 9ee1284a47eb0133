#include "rqxml/encoding/RQMEMConversions.h"

#include <type_traits>

#include "rqxml/encoding/RQMEMConverter.h"

namespace RQMEM_NAMESPACE {

namespace {

/// ICU refuses sources of more than about 2^31 bytes.
constexpr std::size_t kLargestPiece = std::size_t{1} << 20;

/// Copies units that have the same meaning on both sides.
template <class In, class Out>
Out* CopyUnits(const In* from, std::size_t count, Out* to) {
  if constexpr (std::is_same_v<In, Out>) return std::copy_n(from, count, to);
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<Out>(from[i]);
  return to + count;
}

/// Copies ASCII as far as it fits.
/// @return true when the output is full and some is left
template <class In, class Out>
bool CopyAscii(Text<In>& ascii, Out*& target, const Out* limit) {
  const std::size_t count = std::min(ascii.Length(), static_cast<std::size_t>(limit - target));
  target = CopyUnits(ascii.begin, count, target);
  ascii.begin += count;
  return !ascii.Empty();
}

/// The length that a lead byte announces.
std::ptrdiff_t Utf8SequenceLength(char lead) {
  const unsigned byte = static_cast<unsigned char>(lead);
  return byte < 0xC0U ? 1 : byte < 0xE0U ? 2 : byte < 0xF0U ? 3 : 4;
}

template <class Unit>
Text<Unit> First(Text<Unit> text, std::size_t length) {
  return {text.begin, text.begin + length};
}

template <class Unit>
Text<Unit> From(Text<Unit> text, std::size_t offset) {
  return {text.begin + offset, text.end};
}

template <class Unit>
bool HasLoneSurrogate(Text<Unit> text) {
  std::array<char, 256> scratch;
  for (;;) {
    char* target = scratch.data();
    const Stop stop = EncodeUtf8(text.begin, text.end, target, target + scratch.size());
    if (stop != Stop::Full) return stop == Stop::Malformed;
  }
}

}  // namespace

CodePageSide::CodePageSide(void* converter, Direction direction)
    : fConverter(converter != nullptr ? static_cast<UConverter*>(converter) : QULTMBGetDefaultConverter()),
      fTraits(fConverter != nullptr ? TraitsOf(*fConverter) : ConverterTraits{}),
      fDirection(direction) {}

template <class Unit>
std::size_t CodePageSide::SameLength(Text<Unit> text) const {
  if (fTraits.ascii == AsciiRange::None || text.Empty()) return 0;
  const std::size_t length = fTraits.ascii == AsciiRange::All ? AsciiLength(text.begin, text.Length())
                                                              : PrintableLength(text.begin, text.Length());
  // The last one may form one character of the code page with what follows.
  return length == text.Length() || length == 0 ? length : length - 1;
}

UConverter* CodePageSide::Clone() {
  if (!fClone && fConverter != nullptr) fClone.emplace(*fConverter, fTraits, fDirection);
  if (fClone && *fClone) return fClone->Get();
  Fail();
  return nullptr;
}

UConverter* CodePageSide::RestartedClone() {
  if (fTraits.type == UCNV_COMPOUND_TEXT && fClone) {  // a reset does not reach the parts that it is made of
    if (fClone->Replaced()) Fail();
    fClone.reset();
  }
  UConverter* const clone = Clone();
  if (clone != nullptr) ucnv_resetFromUnicode(clone);
  return clone;
}

const char* Utf8Shortcut::Place() const {
  const char* place = fText.begin;  // ICU may have stopped inside a character
  while (place != fText.end && (static_cast<unsigned char>(*place) & 0xC0U) == 0x80U) ++place;
  return place;
}

bool Utf8Shortcut::Next(UConverter* target, UConverter* source, char*& to, char* limit) {
  if (!fUtf8) {
    fFailed = true;
    return false;
  }
  for (;;) {
    const char* const end = fText.begin + std::min(fText.Length(), kLargestPiece);
    const bool isLast = end == fText.end;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_convertEx(target, source, &to, limit, &fText.begin, end, fPivot.data(), &fPivotSource, &fPivotTarget,
                   fPivot.data() + fPivot.size(), 0, isLast ? 1 : 0, &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) return true;
    if (U_FAILURE(error)) fFailed = true;
    if (U_FAILURE(error) || isLast) return false;
  }
}

CodePageReader::CodePageReader(void* converter, Text<char> text)
    : fSide(converter, Direction::ToUnicode),
      fAscii(First(text, fSide.SameLength(text))),
      fText(From(text, fAscii.Length())) {}

/// Reads the whole text, as far as there is room.
auto CodePageReader::Read(UConverter* clone, bool flush, char16_t*& target, char16_t* limit) -> Result {
  for (;;) {
    const char* const end = fText.begin + std::min(fText.Length(), kLargestPiece);
    const bool isLast = end == fText.end;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_toUnicode(clone, &target, limit, &fText.begin, end, nullptr, flush && isLast ? 1 : 0, &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) return Result::Full;
    if (U_FAILURE(error)) fSide.Fail();
    if (U_FAILURE(error)) return Result::Failed;
    if (isLast) return Result::AtEnd;
  }
}

bool CodePageReader::Next(char16_t*& target, char16_t* limit) {
  if (fText.Empty() && !fSide.HasClone()) return false;
  UConverter* const clone = fSide.Clone();
  if (clone == nullptr) return false;
  if (fSide.Traits().WritesSurrogates()) return NextChecked(clone, target, limit);
  if (fSide.Traits().ForgetsItsEnd()) return NextToldEnd(clone, target, limit);
  return Read(clone, true, target, limit) == Result::Full;
}

/// Reports halves of surrogate pairs, which these encodings can spell.
bool CodePageReader::NextChecked(UConverter* clone, char16_t*& target, char16_t* limit) {
  const char16_t* const begin = target;
  const bool more = fSide.Traits().ForgetsItsEnd() ? NextToldEnd(clone, target, limit)
                                                   : Read(clone, true, target, limit) == Result::Full;
  fSurrogates.Read(begin, target);
  if (!more && fSurrogates.HasHalf()) fSide.Fail();
  return more;
}

/// Replaces what is begun at the end of the text where ICU would drop it.
bool CodePageReader::NextToldEnd(UConverter* clone, char16_t*& target, char16_t* limit) {
  if (!fOwesReplacement) {
    const Result result = Read(clone, false, target, limit);
    if (result != Result::AtEnd) return result == Result::Full;
    const bool inside = IsInsideCharacter(*clone);
    const char16_t* const before = target;
    if (Read(clone, true, target, limit) == Result::Full) return true;
    if (!inside || target != before) return false;
    fSide.Fail();
    fOwesReplacement = true;
  }
  if (target == limit) return true;
  *target++ = u'?';
  fOwesReplacement = false;
  return false;
}

template <>
bool CodePageToUtf16<char16_t>::Next(char16_t*& target, char16_t* limit) {
  if (CopyAscii(fReader.Ascii(), target, limit)) return true;
  return fReader.Next(target, limit);
}

template <>
bool CodePageToUtf16<wchar_t>::Next(wchar_t*& target, wchar_t* limit) {
  if (CopyAscii(fReader.Ascii(), target, limit)) return true;
  std::array<char16_t, kPivotSize> pivot;
  for (;;) {
    const std::size_t room = std::min(pivot.size(), static_cast<std::size_t>(limit - target));
    char16_t* end = pivot.data();
    const bool more = fReader.Next(end, end + room);
    target = CopyUnits(pivot.data(), static_cast<std::size_t>(end - pivot.data()), target);
    if (!more || target == limit) return more;
  }
}

std::optional<Text<char>> CodePageReader::LongUtf8() const {
  if (fText.Length() < Utf8Shortcut::kShortest || fSide.Traits().type != UCNV_UTF8) return std::nullopt;
  return fText;
}

CodePageToUtf8::CodePageToUtf8(void* converter, Text<char> text) : fReader(converter, text) {
  const std::optional<Text<char>> longText = fReader.LongUtf8();
  if (!longText) return;
  fShortcutSource = fReader.Clone();
  if (fShortcutSource != nullptr) fShortcut.emplace(*longText, Direction::FromUnicode);
}

bool CodePageToUtf8::Next(char*& target, char* limit) {
  if (CopyAscii(fReader.Ascii(), target, limit)) return true;
  if (fShortcut) return fShortcut->NextFrom(fShortcutSource, target, limit);
  for (;;) {
    const Stop stop = EncodeUtf8(fUnits.begin, fUnits.end, target, limit);
    if (stop == Stop::Full) return true;
    const bool half = stop == Stop::Malformed && fMore && fUnits.Length() == 1;
    if (stop == Stop::AtEnd || half) {
      if (!fMore) return false;
      Refill();
    } else {
      fMalformed = true;
      const char16_t replacement = 0xFFFD;
      const char16_t* source = &replacement;
      if (EncodeUtf8(source, source + 1, target, limit) == Stop::Full) return true;
      ++fUnits.begin;
    }
  }
}

void CodePageToUtf8::CutToWhole(char* begin, char*& target, char*) {
  if (!fShortcut) return;
  char* start = target;
  while (start != begin && (static_cast<unsigned char>(start[-1]) & 0xC0U) == 0x80U) --start;
  if (start == begin) return;  // ASCII would stand before
  --start;
  if (Utf8SequenceLength(*start) > target - start) target = start;
}

void CodePageToUtf8::Refill() {
  char16_t* end = std::copy(fUnits.begin, fUnits.end, fPivot.data());
  fMore = fReader.Next(end, fPivot.data() + fPivot.size());
  fUnits = {fPivot.data(), end};
}

template <class Source>
ToCodePage<Source>::ToCodePage(void* converter, Text<Unit> text)
    : fSide(converter, Direction::FromUnicode),
      fAsciiLength(fSide.SameLength(text)),
      fAscii(First(text, fAsciiLength)),
      fText(From(text, fAsciiLength)),
      fWriter(fText, fSide.Traits()) {
  if constexpr (!std::is_same_v<Unit, char>)
    if (fSide.Traits().WritesSurrogates() && HasLoneSurrogate(fText)) fSide.Fail();
}

template <class Source>
bool ToCodePage<Source>::WantsShortcut() const {
  return std::is_same_v<Unit, char> && fText.Length() >= Utf8Shortcut::kShortest && fSide.Traits().HasNoState();
}

template <class Source>
bool ToCodePage<Source>::Next(char*& target, char* limit) {
  if (CopyAscii(fAscii, target, limit)) return true;
  if (fText.Empty()) return false;
  UConverter* const clone = fSide.Clone();
  if (clone == nullptr) return false;
  if constexpr (std::is_same_v<Unit, char>) {
    if (!fShortcut && WantsShortcut()) fShortcut.emplace(fText, Direction::ToUnicode);
    if (fShortcut) return fShortcut->NextTo(clone, target, limit);
  }
  return fWriter.Next(clone, target, limit);
}

template <class Source>
void ToCodePage<Source>::MarkCut() {
  if (!fAscii.Empty()) {
    fReached = fAscii.begin;
    return;
  }
  if constexpr (std::is_same_v<Unit, char>) {
    if (fShortcut) {
      fReached = fShortcut->Place();
      return;
    }
  }
  fReached = fWriter.Place();
}

template <class Source>
bool ToCodePage<Source>::Writer::Next(UConverter* clone, char*& target, char* limit) {
  return fIsHz ? WriteHz(clone, target, limit) : Write(clone, target, limit);
}

template <class Source>
bool ToCodePage<Source>::Writer::Write(UConverter* clone, char*& target, char* limit) {
  for (;;) {
    if (fUnits.Empty() && !fSource.AtEnd()) fUnits = fSource.Next();
    UErrorCode error = U_ZERO_ERROR;
    ucnv_fromUnicode(clone, &target, limit, &fUnits.begin, fUnits.end, nullptr, fSource.AtEnd() ? 1 : 0, &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) return true;
    if (U_FAILURE(error)) fFailed = true;
    if (U_FAILURE(error) || fSource.AtEnd()) return false;
  }
}

/// Adds what ICU leaves out at the end.
template <class Source>
bool ToCodePage<Source>::Writer::WriteHz(UConverter* clone, char*& target, char* limit) {
  if (!fWritten) {
    const char* const begin = target;
    const bool more = Write(clone, target, limit);
    fShift.Read({begin, static_cast<std::size_t>(target - begin)});
    if (more) return true;
    fWritten = true;
    if (fShift.IsShifted()) fShiftBack = {HzShift::kBack.data(), HzShift::kBack.data() + HzShift::kBack.size()};
  }
  return CopyAscii(fShiftBack, target, limit);
}

/// Converts the text up to `end` from its beginning; `target` is then behind what was written.
template <class Source>
bool ToCodePage<Source>::Fits(const Unit* end, char*& target, char* limit) {
  if (end == fText.begin) return true;
  UConverter* const clone = fSide.RestartedClone();
  if (clone == nullptr) return false;
  Writer writer({fText.begin, end}, fSide.Traits());
  bool more = writer.Next(clone, target, limit);
  while (more) {
    std::array<char, 64> behind;
    char* last = behind.data();
    more = writer.Next(clone, last, last + behind.size());
    if (last != behind.data()) return false;
  }
  return true;
}

/// The longest beginning of whole characters that fits, looked for between one that does and one that does not.
template <class Source>
auto ToCodePage<Source>::LongestBetween(const Unit* fitting, const Unit* tooLong, char* from, char* limit)
    -> const Unit* {
  for (;;) {
    const Unit* middle = Source::Before(fText.begin, fitting + (tooLong - fitting) / 2 + 1, fText.end);
    if (middle <= fitting) middle = Source::After(fitting, fText.end);
    if (middle >= tooLong) return fitting;
    char* target = from;
    (Fits(middle, target, limit) ? fitting : tooLong) = middle;
  }
}

/// The place, or the start of the character that it divides: some encodings write a surrogate pair in halves.
template <class Source>
auto ToCodePage<Source>::WholeUpTo(const Unit* place) const -> const Unit* {
  if (place == fText.begin) return place;
  const Unit* const start = Source::Before(fText.begin, place, fText.end);
  return Source::After(start, fText.end) > place ? start : place;
}

template <class Source>
void ToCodePage<Source>::CutToWhole(char* begin, char*& target, char* limit) {
  if (fReached < fText.begin) return;  // in the ASCII
  char* const from = begin + fAsciiLength;
  const auto fits = [&](const Unit* end) {
    target = from;
    return Fits(end, target, limit);
  };
  const Unit* fitting = WholeUpTo(fReached);
  // What stands before all text may fill the output; a first character that leaves no trace fits then, too.
  if (fitting == fText.begin && fits(Source::After(fitting, fText.end))) return;
  const Unit* tooLong = nullptr;
  for (std::size_t step = 1; !fits(fitting); step *= 2) {
    tooLong = fitting;
    for (std::size_t i = 0; i < step && fitting != fText.begin; ++i)
      fitting = Source::Before(fText.begin, fitting, fText.end);
  }
  if (tooLong == nullptr || Source::After(fitting, fText.end) >= tooLong) return;
  fits(LongestBetween(fitting, tooLong, from, limit));
}

template std::size_t CodePageSide::SameLength(Text<char>) const;
template std::size_t CodePageSide::SameLength(Text<char16_t>) const;
template std::size_t CodePageSide::SameLength(Text<wchar_t>) const;
template class ToCodePage<Char16Source>;
template class ToCodePage<WideSource>;
template class ToCodePage<Utf8Source>;

}  // namespace RQMEM_NAMESPACE
