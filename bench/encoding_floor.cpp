#include "encoding_floor.h"

#include <unicode/ucnv_err.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>

#include "workload.h"

namespace rqxml_bench {
namespace {

constexpr int kPiece = 4096;

template <class From, class To>
void CopyUnits(const From* source, int count, To* target) {
  for (int i = 0; i < count; ++i) target[i] = static_cast<To>(source[i]);
}

char16_t* Grown(Pivot& pivot, int length) {
  if (pivot.size() < static_cast<std::size_t>(length)) pivot.resize(static_cast<std::size_t>(length));
  return pivot.data();
}

bool IsReplacement(UConverterCallbackReason reason) { return reason <= UCNV_IRREGULAR; }

void NoteToUnicode(const void* context, UConverterToUnicodeArgs* args, const char* bytes, std::int32_t length,
                   UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsReplacement(reason)) return;
  *const_cast<bool*>(static_cast<const bool*>(context)) = true;
  UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, args, bytes, length, reason, error);
}

void NoteFromUnicode(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                     UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsReplacement(reason)) return;
  *const_cast<bool*>(static_cast<const bool*>(context)) = true;
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, codePoint, reason, error);
}

// Clones that note whether something was replaced. They stay where they are: ICU points at them.

struct Reader {
  explicit Reader(const IcuConverter& converter) : clone(CloneIcu(converter)) {
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(clone.get(), NoteToUnicode, &replaced, nullptr, nullptr, &error);
  }
  bool replaced = false;
  IcuConverter clone;
};

struct Writer {
  explicit Writer(const IcuConverter& converter) : clone(CloneIcu(converter)) {
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setFromUCallBack(clone.get(), NoteFromUnicode, &replaced, nullptr, nullptr, &error);
  }
  bool replaced = false;
  IcuConverter clone;
};

}  // namespace

IcuConverter OpenIcu(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  IcuConverter converter(ucnv_open(name, &error));
  if (converter) ucnv_setSubstChars(converter.get(), "?", 1, &error);
  Require(U_SUCCESS(error), "ICU opens the converter");
  return converter;
}

IcuConverter CloneIcu(const IcuConverter& converter) {
  UErrorCode error = U_ZERO_ERROR;
  return IcuConverter(ucnv_clone(converter.get(), &error));
}

int IcuFrom8(char16_t* target, int room, const char* source, int length) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t written = 0;
  u_strFromUTF8(target, room, &written, source, length, &error);
  return written;
}

int IcuFrom8(Pivot& pivot, wchar_t* target, int room, const char* source, int length) {
  char16_t* const units = Grown(pivot, room);
  const int written = IcuFrom8(units, room, source, length);
  CopyUnits(units, written, target);
  return written;
}

int IcuTo8(char* target, int room, const char16_t* source, int length) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t written = 0;
  u_strToUTF8(target, room, &written, source, length, &error);
  return written;
}

int IcuTo8(Pivot& pivot, char* target, int room, const wchar_t* source, int length) {
  char16_t* const units = Grown(pivot, length);
  CopyUnits(source, length, units);
  return IcuTo8(target, room, units, length);
}

int IcuFromPage(const IcuConverter& page, char16_t* target, int room, const char* source, int length) {
  const Reader reader(page);
  UErrorCode error = U_ZERO_ERROR;
  char16_t* end = target;
  ucnv_toUnicode(reader.clone.get(), &end, target + room, &source, source + length, nullptr, 1, &error);
  return static_cast<int>(end - target);
}

int IcuFromPage(const IcuConverter& page, wchar_t* target, int, const char* source, int length) {
  const Reader reader(page);
  std::array<char16_t, kPiece> units;
  const char* const sourceEnd = source + length;
  wchar_t* to = target;
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    char16_t* end = units.data();
    ucnv_toUnicode(reader.clone.get(), &end, units.data() + units.size(), &source, sourceEnd, nullptr, 1, &error);
    const int count = static_cast<int>(end - units.data());
    CopyUnits(units.data(), count, to);
    to += count;
  }
  return static_cast<int>(to - target);
}

int IcuToPage(const IcuConverter& page, char* target, int room, const char16_t* source, int length) {
  const Writer writer(page);
  UErrorCode error = U_ZERO_ERROR;
  char* end = target;
  ucnv_fromUnicode(writer.clone.get(), &end, target + room, &source, source + length, nullptr, 1, &error);
  return static_cast<int>(end - target);
}

int IcuToPage(const IcuConverter& page, char* target, int room, const wchar_t* source, int length) {
  const Writer writer(page);
  std::array<char16_t, kPiece> units;
  char* end = target;
  UErrorCode error = U_ZERO_ERROR;
  while (length > 0 && U_SUCCESS(error)) {
    const int count = std::min(length, kPiece);
    CopyUnits(source, count, units.data());
    source += count;
    length -= count;
    const char16_t* from = units.data();
    ucnv_fromUnicode(writer.clone.get(), &end, target + room, &from, from + count, nullptr, length == 0 ? 1 : 0,
                     &error);
  }
  return static_cast<int>(end - target);
}

int IcuFromPageTo8(const IcuConverter& page, char* target, int room, const char* source, int length) {
  const Reader reader(page);
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_toAlgorithmic(UCNV_UTF8, reader.clone.get(), target, room, source, length, &error);
}

int IcuFrom8ToPage(const IcuConverter& page, char* target, int room, const char* source, int length) {
  const Writer writer(page);
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_fromAlgorithmic(writer.clone.get(), UCNV_UTF8, target, room, source, length, &error);
}

bool Iconv::Convert(const void* source, std::size_t bytes, void* target, std::size_t room) const {
  if (fHandle == kNone) return false;
  iconv(fHandle, nullptr, nullptr, nullptr, nullptr);
  char* from = static_cast<char*>(const_cast<void*>(source));  // iconv does not write to it
  char* to = static_cast<char*>(target);
  return iconv(fHandle, &from, &bytes, &to, &room) != static_cast<std::size_t>(-1);
}

}  // namespace rqxml_bench
