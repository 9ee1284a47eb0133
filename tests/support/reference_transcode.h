#ifndef TESTS_SUPPORT_REFERENCE_TRANSCODE_H
#define TESTS_SUPPORT_REFERENCE_TRANSCODE_H

// The conversions of the encoding layer in the slow and obvious way: whole texts, character by character, and for code
// pages ICU's own conversion of whole texts. What does not fit is found by trying every beginning of the text.

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace rqtest {

/// What a conversion into a buffer is to give.
template <class Unit>
struct Converted {
  std::basic_string<Unit> text;
  bool cut = false;
  bool problem = false;

  int Status() const { return problem ? 3 : cut ? 1 : 0; }
};

/// What it is to give for a buffer of each capacity.
template <class Unit>
using OfCapacity = std::function<Converted<Unit>(std::size_t)>;

constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

/// A text as code points; kIllegal for what is none.
using Points = std::vector<std::int64_t>;
constexpr std::int64_t kIllegal = -1;

inline bool IsSurrogate(std::int64_t value) { return value >= 0xD800 && value <= 0xDFFF; }

/// The code point of a well-formed sequence of this length; kIllegal for any other.
inline std::int64_t SequenceValue(const std::string& bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  static constexpr std::int64_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  static constexpr unsigned kMark[] = {0, 0, 0xC0, 0xE0, 0xF0};
  static constexpr unsigned kMask[] = {0, 0x80, 0xE0, 0xF0, 0xF8};
  const std::size_t length = bytes.size();
  if ((at(0) & kMask[length]) != kMark[length]) return kIllegal;
  std::int64_t value = at(0) & ~kMask[length] & 0xFFU;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0U) != 0x80U) return kIllegal;
    value = value << 6 | (at(i) & 0x3FU);
  }
  return value < kSmallest[length] || value > 0x10FFFF || IsSurrogate(value) ? kIllegal : value;
}

/// True when some bytes behind these would make them a character.
inline bool IsBeginning(const std::string& bytes) {
  if (bytes.size() >= 4) return false;
  for (const char next : {'\x80', '\x8F', '\x90', '\x9F', '\xA0', '\xBF'}) {  // the ends of all ranges
    const std::string longer = bytes + next;
    if (SequenceValue(longer) != kIllegal || IsBeginning(longer)) return true;
  }
  return false;
}

/// UTF-8 as code points: what is malformed counts once for each longest beginning of a character.
inline Points PointsOf(const std::string& text) {
  Points points;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t length = 1;
    for (std::size_t n = 1; n <= 4 && i + n <= text.size(); ++n)
      if (SequenceValue(text.substr(i, n)) != kIllegal) length = n;
    const std::int64_t value = SequenceValue(text.substr(i, length));
    if (value == kIllegal)
      while (length < 3 && i + length < text.size() && IsBeginning(text.substr(i, length + 1))) ++length;
    points.push_back(value);
    i += length;
  }
  return points;
}

/// UTF-16 as code points; an element above 0xFFFF is that code point.
template <class Unit>
Points PointsOf(const std::basic_string<Unit>& text) {
  Points points;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto value = static_cast<std::int64_t>(static_cast<std::uint32_t>(text[i]));
    const auto next = i + 1 < text.size() ? static_cast<std::int64_t>(static_cast<std::uint32_t>(text[i + 1])) : 0;
    if (value >= 0xD800 && value <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
      points.push_back(0x10000 + (value - 0xD800) * 0x400 + (next - 0xDC00));
      ++i;
    } else {
      points.push_back(IsSurrogate(value) || value > 0x10FFFF ? kIllegal : value);
    }
  }
  return points;
}

/// One code point in UTF-8 or UTF-16.
inline void Append(std::string& text, std::int64_t point) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | point >> 6);
    tail(0);
  } else if (point < 0x10000) {
    text += static_cast<char>(0xE0 | point >> 12);
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | point >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

template <class Unit>
void Append(std::basic_string<Unit>& text, std::int64_t point) {
  if (point < 0x10000) {
    text += static_cast<Unit>(point);
  } else {
    text += static_cast<Unit>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<Unit>(0xDC00 + ((point - 0x10000) & 0x3FF));
  }
}

/// Between UTF-8 and UTF-16: the characters before the first that is none, as many as fit.
template <class To, class From>
OfCapacity<To> UnicodeOfCapacity(const std::basic_string<From>& source) {
  std::basic_string<To> whole;
  std::vector<std::size_t> ends = {0};
  bool problem = false;
  for (const std::int64_t point : PointsOf(source)) {
    problem = point == kIllegal;
    if (problem) break;
    Append(whole, point);
    ends.push_back(whole.size());
  }
  return [=](std::size_t capacity) {
    std::size_t count = ends.size() - 1;
    while (ends[count] > capacity) --count;
    return Converted<To>{whole.substr(0, ends[count]), count + 1 < ends.size(), problem};
  };
}

template <class To, class From>
Converted<To> ReferenceUnicode(const std::basic_string<From>& source, std::size_t capacity) {
  return UnicodeOfCapacity<To>(source)(capacity);
}

struct CloseReference {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ReferenceConverter = std::unique_ptr<UConverter, CloseReference>;

/// Opened by ICU's own name, with "?" as substitute.
inline ReferenceConverter OpenReference(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  ReferenceConverter converter(ucnv_open(name, &error));
  error = U_ZERO_ERROR;
  if (converter) ucnv_setSubstChars(converter.get(), "?", 1, &error);
  return converter;
}

/// Adds what ICU leaves out at the end of HZ: a character behind the text shows whether the shift is open.
inline void ShiftBack(const ReferenceConverter& page, const std::u16string& text, std::string& bytes) {
  UErrorCode error = U_ZERO_ERROR;
  const std::u16string longer = text + u'\u4e2d';
  std::string written(longer.size() * 16 + 64, '\0');
  written.resize(
      static_cast<std::size_t>(ucnv_fromUChars(page.get(), written.data(), static_cast<std::int32_t>(written.size()),
                                               longer.data(), static_cast<std::int32_t>(longer.size()), &error)));
  if (written == bytes + "VP") bytes += "~}";
}

/// A text of code points as ICU converts it as a whole, in the initial state at its end. A converter has only one lone
/// surrogate for all illegal ones.
inline std::string WholeInPage(const ReferenceConverter& page, const std::u16string& text) {
  if (text.empty()) return {};
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(page.get(), UCNV_FROM_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &error);
  std::string bytes(text.size() * 16 + 64, '\0');
  bytes.resize(
      static_cast<std::size_t>(ucnv_fromUChars(page.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                               text.data(), static_cast<std::int32_t>(text.size()), &error)));
  if (ucnv_getType(page.get()) == UCNV_HZ) ShiftBack(page, text, bytes);
  return bytes;
}

inline void NoteReplaced(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                         UChar32 point, UConverterCallbackReason reason, UErrorCode* error) {
  if (reason <= UCNV_IRREGULAR) *const_cast<bool*>(static_cast<const bool*>(context)) = true;
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, point, reason, error);
}

/// Whether ICU converts every character of a text. A character that it passes over in silence counts as missing.
inline bool IsInPage(const ReferenceConverter& page, const std::u16string& text) {
  bool replaced = false;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(page.get(), NoteReplaced, &replaced, nullptr, nullptr, &error);
  std::string bytes(text.size() * 16 + 64, '\0');
  ucnv_fromUChars(page.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()), text.data(),
                  static_cast<std::int32_t>(text.size()), &error);
  ucnv_setFromUCallBack(page.get(), UCNV_FROM_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &error);
  return U_SUCCESS(error) && !replaced;
}

/// To a code page. What is malformed in UTF-8 counts as U+FFFD.
template <class From>
OfCapacity<char> PageOfCapacity(const ReferenceConverter& page, const std::basic_string<From>& source) {
  std::u16string whole;
  std::vector<std::size_t> ends = {0};
  bool malformed = false;
  for (const std::int64_t point : PointsOf(source)) {
    if (point != kIllegal)
      Append(whole, point);
    else if (sizeof(From) == 1)
      whole += char16_t{0xFFFD};
    else
      whole += !whole.empty() && (whole.back() & 0xFC00) == 0xD800 ? char16_t{0xD800} : char16_t{0xDFFF};
    malformed = malformed || point == kIllegal;
    ends.push_back(whole.size());
  }
  const bool problem = malformed || !IsInPage(page, whole);
  std::vector<std::optional<std::string>> made(ends.size());
  return [=, &page](std::size_t capacity) mutable {
    std::size_t count = ends.size();
    do {
      --count;
      if (!made[count]) made[count] = WholeInPage(page, whole.substr(0, ends[count]));
    } while (made[count]->size() > capacity);
    return Converted<char>{*made[count], count + 1 < ends.size(), problem};
  };
}

template <class From>
Converted<char> ReferenceToPage(const ReferenceConverter& page, const std::basic_string<From>& source,
                                std::size_t capacity) {
  return PageOfCapacity(page, source)(capacity);
}

inline void QuestionMark(const void* context, UConverterToUnicodeArgs* args, const char*, std::int32_t,
                         UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;
  ++*const_cast<int*>(static_cast<const int*>(context));
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, u"?", 1, 0, error);
}

/// From a code page as ICU converts it as a whole. Without `flush` the end of the text is not yet the end.
inline std::u16string IcuFromPage(const ReferenceConverter& page, const std::string& source, bool flush,
                                  int& replaced) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(page.get(), QuestionMark, &replaced, nullptr, nullptr, &error);
  ucnv_resetToUnicode(page.get());
  std::u16string units(source.size() * 4 + 64, u'\0');
  UChar* target = units.data();
  const char* from = source.data();
  ucnv_toUnicode(page.get(), &target, target + units.size(), &from, from + source.size(), nullptr, flush ? 1 : 0,
                 &error);
  units.resize(static_cast<std::size_t>(target - units.data()));
  ucnv_setToUCallBack(page.get(), UCNV_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &error);
  return units;
}

/// How many bits of UTF-7 wait at the end of a text for the rest of a unit; they are all zero.
inline int WaitingBits(const ReferenceConverter& page, const std::string& source) {
  int replaced = 0;
  const std::size_t before = IcuFromPage(page, source, false, replaced).size();
  const std::uint16_t unit = IcuFromPage(page, source + "///", false, replaced)[before];  // each sign has six set bits
  return unit == u'/' ? 0 : std::countl_zero(unit);
}

/// From a code page, whole. Of HZ and UTF-7 ICU drops what is begun at the end: a sign behind the text shows it.
inline std::u16string WholeFromPage(const ReferenceConverter& page, const std::string& source, int& replaced) {
  std::u16string units = IcuFromPage(page, source, true, replaced);
  const UConverterType type = ucnv_getType(page.get());
  if (type != UCNV_HZ && type != UCNV_UTF7) return units;
  int replacedBefore = 0;
  int replacedBehind = 0;
  const std::u16string before = IcuFromPage(page, source, false, replacedBefore);
  const std::u16string behind = IcuFromPage(page, source + '!', false, replacedBehind);
  const bool whole = replacedBehind == replacedBefore && (behind == before || behind == before + u'!') &&
                     (type != UCNV_UTF7 || WaitingBits(page, source) <= 4);
  if (whole || units != before) return units;
  ++replaced;
  return units + u'?';
}

/// From a code page to UTF-8 or UTF-16.
template <class To>
OfCapacity<To> FromPageOfCapacity(const ReferenceConverter& page, const std::string& source) {
  int replaced = 0;
  const OfCapacity<To> units = UnicodeOfCapacity<To>(WholeFromPage(page, source, replaced));
  return [=](std::size_t capacity) {
    Converted<To> result = units(capacity);
    result.problem = result.problem || replaced > 0;
    return result;
  };
}

template <class To>
Converted<To> ReferenceFromPage(const ReferenceConverter& page, const std::string& source, std::size_t capacity) {
  return FromPageOfCapacity<To>(page, source)(capacity);
}

/// A buffer of `size` places, filled with '#', as a conversion is to leave it.
template <class Unit>
std::basic_string<Unit> ReferenceBuffer(const Converted<Unit>& converted, bool terminated, std::size_t size) {
  std::basic_string<Unit> buffer = converted.text;
  const std::size_t capacity = size - (terminated ? 1 : 0);
  if (converted.cut || !terminated) buffer.resize(capacity, Unit{' '});
  if (terminated) buffer += Unit{0};
  buffer.resize(size, Unit{'#'});
  return buffer;
}

}  // namespace rqtest

#endif
