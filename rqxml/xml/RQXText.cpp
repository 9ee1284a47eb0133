#include "rqxml/xml/RQXText.h"

#include <cstddef>

#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXTranscoder.h"

namespace RQXPrsUtil {

namespace {

constexpr bool IsHighSurrogate(XMLCh unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(XMLCh unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// How many bytes of UTF-8 a string takes; false when it is malformed.
bool MeasureUTF8(const XMLCh* string, std::size_t& bytes) {
  bytes = 0;
  for (const XMLCh* p = string; *p != 0; ++p) {
    if (*p < 0x80) {
      bytes += 1;
    } else if (*p < 0x800) {
      bytes += 2;
    } else if (*p < 0xD800 || *p > 0xDFFF) {
      bytes += 3;
    } else {
      if (!IsHighSurrogate(*p) || !IsLowSurrogate(p[1])) return false;
      bytes += 4;
      ++p;
    }
  }
  return true;
}

char* Put(char* to, unsigned int lead, int shift, unsigned int point) {
  *to++ = static_cast<char>(lead | (point >> shift));
  while (shift > 0) {
    shift -= 6;
    *to++ = static_cast<char>(0x80 | ((point >> shift) & 0x3F));
  }
  return to;
}

void EncodeUTF8(const XMLCh* p, const XMLCh* end, char* to) {
  while (p != end) {
    const unsigned int unit = *p++;
    if (unit < 0x80) {
      *to++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
      to = Put(to, 0xC0, 6, unit);
    } else if (unit < 0xD800 || unit > 0xDFFF) {
      to = Put(to, 0xE0, 12, unit);
    } else {
      const unsigned int low = *p++;
      to = Put(to, 0xF0, 18, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
    }
  }
}

/// Reads one well-formed character of `text` and steps over it; 0 for anything else.
char32_t NextCharacter(const char*& text) {
  const auto byte = [&](int i) { return static_cast<unsigned int>(static_cast<unsigned char>(text[i])); };
  const auto continues = [&](int i) { return (byte(i) & 0xC0) == 0x80; };
  const unsigned int lead = byte(0);
  if (lead < 0x80) {
    ++text;
    return lead;
  }
  if (lead >= 0xC2 && lead <= 0xDF && continues(1)) {
    const char32_t point = (lead & 0x1F) << 6 | (byte(1) & 0x3F);
    text += 2;
    return point;
  }
  if ((lead & 0xF0) == 0xE0 && continues(1) && continues(2)) {
    const char32_t point = (lead & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    if (point < 0x800 || (point >= 0xD800 && point <= 0xDFFF)) return 0;
    text += 3;
    return point;
  }
  if ((lead & 0xF8) == 0xF0 && continues(1) && continues(2) && continues(3)) {
    const char32_t point = (lead & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
    if (point < 0x10000 || point > 0x10FFFF) return 0;
    text += 4;
    return point;
  }
  return 0;
}

/// Steps over `point` when it comes next.
bool TakeIf(const XMLCh*& xstring, char32_t point) {
  if (point < 0x10000) return *xstring++ == point;
  const char32_t offset = point - 0x10000;
  if (*xstring++ != 0xD800 + (offset >> 10)) return false;
  return *xstring++ == 0xDC00 + (offset & 0x3FF);
}

void AppendUTF16(std::u16string& text, char32_t point) {
  if (point < 0x10000) {
    text += static_cast<char16_t>(point);
    return;
  }
  text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
  text += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

}  // namespace

std::u16string DecodeUTF8(const char* string) {
  std::u16string text;
  for (const char* next = string; *next != 0;) {
    const char32_t point = NextCharacter(next);
    if (point == 0) return ToUTF16(string).data();
    AppendUTF16(text, point);
  }
  return text;
}

void AssignUTF8(const XMLCh* string, std::string& text) {
  if (!string) return text.clear();
  std::size_t length = 0;
  unsigned int allBits = 0;
  for (; string[length] != 0; ++length) allBits |= string[length];
  if (allBits < 0x80) {
    text.resize(length);
    for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(string[i]);
    return;
  }
  std::size_t bytes = 0;
  if (!MeasureUTF8(string, bytes)) {
    text = RQXTranscoder().TranscodeTo(string);  // malformed: the XML library decides
    return;
  }
  text.resize(bytes);
  EncodeUTF8(string, string + length, text.data());
}

std::string ToUTF8(const XMLCh* string) {
  std::string text;
  AssignUTF8(string, text);
  return text;
}

std::vector<XMLCh> ToUTF16(const char* string) { return RQXTranscoder().TranscodeFrom(string); }

bool XStrEqualsUTF8Str(const XMLCh* xstring, const char* string) {
  if (*string == 0) return !xstring || *xstring == 0;
  // Only malformed text equals the empty string now; what counts as malformed is for the XML library to say.
  if (!xstring || *xstring == 0) return ToUTF16(string).size() == 1;
  const XMLCh* unit = xstring;
  for (const char* next = string; *next != 0;) {
    const char32_t point = NextCharacter(next);
    if (point == 0) return XStrEquals(xstring, ToUTF16(string).data());
    if (!TakeIf(unit, point)) return false;
  }
  return *unit == 0;
}

}  // namespace RQXPrsUtil
