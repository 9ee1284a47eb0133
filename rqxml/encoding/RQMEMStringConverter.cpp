// The _C family as far as the default converter serves it.

#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>

#include "rqxml/encoding/RQMEMCaseless.h"
#include "rqxml/encoding/RQMEMClone.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMString.h"
#include "rqxml/encoding/RQMEMSubstitution.h"

namespace RQMEM_NAMESPACE {

namespace {

// Lets the clone stop at what it cannot read instead of replacing it.
void StopAtBadBytes(UConverter* clone) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(clone, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
}

// The characters of a text, lower-cased. It is converted in pieces, so that a difference at the beginning of long texts
// is found soon.
class Reader {
 public:
  Reader(const char* s, std::size_t length) : fAt(s), fLeft(length), fCanConvert(fClone) {
    if (!fCanConvert) return;
    StopAtBadBytes(fClone.Get());
    const ConverterTraits traits = TraitsOf(*fClone.Get());
    fForgetsItsEnd = traits.ForgetsItsEnd();
    fGoesByteByByte = fForgetsItsEnd || traits.type == UCNV_BOCU1;
    fReadTo = fAt;
  }

  std::int64_t Next() {
    if (!HasUnit()) return NextBad();
    const char16_t unit = fUnits[fNextUnit++];
    if (unit < 0x80) return caseless::LowerAscii(unit);
    if (!U16_IS_SURROGATE(unit)) return caseless::Lower(unit);
    if (U16_IS_LEAD(unit) && HasUnit() && U16_IS_TRAIL(fUnits[fNextUnit]))
      return caseless::Lower(U16_GET_SUPPLEMENTARY(unit, fUnits[fNextUnit++]));
    fHasMetMalformed = true;
    return unit;
  }

  bool HasMetMalformed() const { return fHasMetMalformed; }

 private:
  static constexpr std::size_t kPiece = 256;

  // False at a byte of no character, and at the end.
  bool HasUnit() {
    while (fNextUnit == fUnitsEnd && fNextBad == fBadEnd && !fIsDone) Fill();
    return fNextUnit != fUnitsEnd;
  }

  std::int64_t NextBad() {
    if (fNextBad == fBadEnd) return caseless::kEnd;
    fHasMetMalformed = true;
    return caseless::Malformed(static_cast<unsigned char>(*fNextBad++));
  }

  void Fill() {
    const std::size_t most = fGoesByteByByte ? 1 : kPiece;
    const std::size_t piece = strnlen(fAt, std::min(fLeft, most));
    const bool isLast = piece < most;
    const char* const begin = fAt;
    if (fCanConvert)
      Convert(begin + piece, isLast);
    else
      TakeAsBad(piece, isLast);
    fLeft -= static_cast<std::size_t>(fAt - begin);
  }

  void Convert(const char* end, bool isLast) {
    const char* const begin = fGoesByteByByte ? fReadTo : fAt;
    UErrorCode error = U_ZERO_ERROR;
    char16_t* unitsEnd = fUnits.data();
    const bool flush = isLast && !fForgetsItsEnd;
    ucnv_toUnicode(fClone.Get(), &unitsEnd, unitsEnd + fUnits.size(), &fAt, end, nullptr, flush ? 1 : 0, &error);
    fNextUnit = 0;
    fUnitsEnd = static_cast<std::size_t>(unitsEnd - fUnits.data());
    if (fUnitsEnd > 0 || U_FAILURE(error)) fReadTo = fAt;
    if (U_FAILURE(error) && error != U_BUFFER_OVERFLOW_ERROR) TakeInvalid(begin);
    // After a failure the converter may hold bytes back that it will read again.
    fIsDone = isLast && U_SUCCESS(error);
    if (!fIsDone || !fForgetsItsEnd || !IsInsideCharacter(*fClone.Get())) return;
    fNextBad = fReadTo == fAt ? fAt - 1 : fReadTo;  // what is begun at the end, also by the last byte of a character
    fBadEnd = fAt;
  }

  // The bytes at which the converter stopped. Some do not tell them: then it is the last one that was read, or all
  // since `begin`, where the last character ended.
  void TakeInvalid(const char* begin) {
    auto length = static_cast<std::int8_t>(fInvalid.size());
    UErrorCode error = U_ZERO_ERROR;
    ucnv_getInvalidChars(fClone.Get(), fInvalid.data(), &length, &error);
    const bool told = U_SUCCESS(error) && length > 0;
    if (!told && fAt == begin) {
      fCanConvert = false;
      return;
    }
    fNextBad = told ? fInvalid.data() : fGoesByteByByte ? begin : fAt - 1;
    fBadEnd = told ? fNextBad + length : fAt;
  }

  void TakeAsBad(std::size_t count, bool isLast) {
    fNextBad = fAt;
    fBadEnd = fAt += count;
    fIsDone = isLast;
  }

  const char* fAt;
  std::size_t fLeft;
  ConverterClone fClone;
  bool fCanConvert;
  bool fForgetsItsEnd = false;
  bool fGoesByteByByte = false;  // to know where the last character ended
  const char* fReadTo = nullptr;
  std::array<char16_t, kPiece> fUnits;  // what Fill has not written is not read
  std::size_t fNextUnit = 0;
  std::size_t fUnitsEnd = 0;
  std::array<char, 32> fInvalid;
  const char* fNextBad = nullptr;
  const char* fBadEnd = nullptr;
  bool fIsDone = false;
  bool fHasMetMalformed = false;
};

// UTF-8, the usual encoding of the default converter, is read without one, with the same result.
bool IsDefaultUtf8() {
  const UConverter* const shared = QULTMBGetDefaultConverter();
  return shared != nullptr && ucnv_getType(shared) == UCNV_UTF8;
}

// Where the text at `s + offset` ends. An offset counts no further than an int.
int EndOfText(const char* s, int offset) {
  const std::size_t length = strnlen(s + offset, static_cast<std::size_t>(INT_MAX - std::max(offset, 0)));
  return offset + static_cast<int>(length);
}

}  // namespace

int QULTMBqstricmp_C(const char* a, int lenA, const char* b, int lenB, int* status) {
  if (IsDefaultUtf8()) return QULTMBqstricmp_8(a, lenA, b, lenB, status);
  Reader readerA(a, caseless::Length(lenA));
  Reader readerB(b, caseless::Length(lenB));
  return caseless::Equal(readerA, readerB, status);
}

int QULTMBstrnicmp_C(const char* a, const char* b, std::size_t n) {
  if (IsDefaultUtf8()) return QULTMBstrnicmp_8(a, b, n);
  Reader readerA(a, n);
  Reader readerB(b, n);
  return caseless::Compare(readerA, readerB);
}

int QULTMBU32Get_C(int* codePoint, const char* s, int offset, int end) {
  *codePoint = 0;
  if (end < 0) end = EndOfText(s, offset);
  if (end <= offset || s[offset] == 0) return 0;
  const ConverterClone clone;
  if (!clone) return -1;
  StopAtBadBytes(clone.Get());
  const char* next = s + offset;
  UErrorCode error = U_ZERO_ERROR;
  const UChar32 character = ucnv_getNextUChar(clone.Get(), &next, s + end, &error);
  if (U_FAILURE(error) || U_IS_SURROGATE(character)) return -1;
  *codePoint = character;
  return static_cast<int>(next - (s + offset));
}

}  // namespace RQMEM_NAMESPACE
