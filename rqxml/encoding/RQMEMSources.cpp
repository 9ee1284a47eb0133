#include "rqxml/encoding/RQMEMSources.h"

#include <algorithm>

#include "rqxml/encoding/RQMEMUtf16.h"

namespace RQMEM_NAMESPACE {

namespace {

/// ICU refuses larger pieces than about 2^30 units.
constexpr std::size_t kLargestPiece = std::size_t{1} << 20;

template <class Unit>
bool IsLead(Unit unit) {
  return unit >= Unit{0xD800} && unit <= Unit{0xDBFF};
}

template <class Unit>
bool IsTrail(Unit unit) {
  return unit >= Unit{0xDC00} && unit <= Unit{0xDFFF};
}

template <class Unit>
const Unit* AfterPairOrOne(const Unit* place, const Unit* end) {
  return place + (end - place > 1 && IsLead(place[0]) && IsTrail(place[1]) ? 2 : 1);
}

template <class Unit>
const Unit* BeforePairOrOne(const Unit* begin, const Unit* place) {
  return place - (place - begin > 1 && IsTrail(place[-1]) && IsLead(place[-2]) ? 2 : 1);
}

}  // namespace

Text<char16_t> Char16Source::Next() {
  const Text<Unit> piece{fText.begin, fText.begin + std::min(fText.Length(), kLargestPiece)};
  fText.begin = piece.end;
  return piece;
}

const char16_t* Char16Source::Before(const Unit* begin, const Unit* place, const Unit*) {
  return BeforePairOrOne(begin, place);
}

const char16_t* Char16Source::After(const Unit* place, const Unit* end) { return AfterPairOrOne(place, end); }

Text<char16_t> WideSource::Next() {
  fPieceBegin = fText.begin;
  char16_t* target = fPiece.data();
  std::size_t length = std::min(fPiece.size(), fText.Length());
  fPlain = fPlain && NarrowPlain(fText.begin, length, target);
  if (fPlain) {
    const bool splitsPair = length < fText.Length() && IsLead(target[length - 1]) && IsTrail(fText.begin[length]);
    if (splitsPair) --length;
    fText.begin += length;
    target += length;
  } else {
    Narrow(fText.begin, fText.end, target, target + fPiece.size(), fLast);
  }
  fLast = target[-1];
  return {fPiece.data(), target};
}

const wchar_t* WideSource::Place(const char16_t* inPiece) const {
  const Unit* place = fPieceBegin;
  for (const char16_t* unit = fPiece.data(); unit < inPiece;) {
    const Unit* const next = After(place, fText.end);
    unit += next - place == 2 || (*place > Unit{0xFFFF} && *place <= Unit{0x10FFFF}) ? 2 : 1;
    place = next;
  }
  return place;
}

const wchar_t* WideSource::Before(const Unit* begin, const Unit* place, const Unit*) {
  return BeforePairOrOne(begin, place);
}

const wchar_t* WideSource::After(const Unit* place, const Unit* end) { return AfterPairOrOne(place, end); }

Text<char16_t> Utf8Source::Next() {
  constexpr char16_t kReplacement = 0xFFFD;
  fPieceBegin = fText.begin;
  char16_t* target = fPiece.data();
  char16_t* const limit = target + fPiece.size();
  while (DecodeUtf8(fText.begin, fText.end, target, limit) == Stop::Malformed && target != limit) {
    fText.begin += MalformedLength(fText.begin, fText.end);
    *target++ = kReplacement;
    fMalformed = true;
  }
  return {fPiece.data(), target};
}

const char* Utf8Source::Place(const char16_t* inPiece) const {
  const char* place = fPieceBegin;
  for (const char16_t* unit = fPiece.data(); unit < inPiece;) {
    const char* const next = After(place, fText.end);
    unit += next - place == 4 ? 2 : 1;
    place = next;
  }
  return place;
}

const char* Utf8Source::Before(const Unit* begin, const Unit* place, const Unit* end) {
  constexpr std::ptrdiff_t kLongest = 4;
  for (const char* start = place - 1; start >= begin && place - start <= kLongest; --start) {
    if ((static_cast<unsigned char>(*start) & 0xC0U) == 0x80U) continue;
    return After(start, end) >= place ? start : place - 1;
  }
  return place - 1;
}

const char* Utf8Source::After(const Unit* place, const Unit* end) { return place + Utf8StepLength(place, end); }

}  // namespace RQMEM_NAMESPACE
