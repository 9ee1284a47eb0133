#include "rqxml/xml/RQXNumbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>

#include "rqxml/common/RQMV.h"
#include "rqxml/xml/RQXDomWalk.h"

namespace RQXPrsUtil {

namespace {

/// Opens the library's classification of a number and its value, which it keeps to derived classes.
class RQXMLDouble final : public xercesc::XMLDouble {
 public:
  explicit RQXMLDouble(const XMLCh* text) : XMLDouble(text) {}

  bool Get(double& value) const {
    switch (fType) {
      case Normal:
        value = fValue;
        return true;
      case NaN:
        value = RQMV::gMissingValue;
        return true;
      default:
        return false;
    }
  }
};

bool ReadWithLibrary(const XMLCh* text, double& value) {
  try {
    return RQXMLDouble(text).Get(value);
  } catch (const xercesc::NumberFormatException&) {
    return false;
  }
}

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// A plain decimal number as 8-bit text: an optional minus, digits, optionally a point and digits, optionally an
/// exponent. Anything else, or longer than the buffer, is left to the XML library.
class PlainNumber {
 public:
  explicit PlainNumber(std::u16string_view text) : fText(text) { fPlain = text.size() <= sizeof fCopy && Scan(); }

  /// False when the XML library must decide: it has a mind of its own about what does not lie well within the normal
  /// range (text that rounds up to its lower end is zero there) and about negative zero.
  bool Get(double& value) const {
    if (!fPlain) return false;
    double number = 0;
    const char* const end = fCopy + fText.size();
    const auto [stop, failure] = std::from_chars(fCopy, end, number);
    if (failure != std::errc() || stop != end) return false;
    const bool settled = number == 0 ? !std::signbit(number) : std::abs(number) > std::numeric_limits<double>::min();
    if (settled) value = number;
    return settled;
  }

 private:
  bool Scan() {
    if (Is(u'-')) Take();
    if (!TakeDigits()) return false;
    if (Is(u'.')) {
      Take();
      if (!TakeDigits()) return false;
    }
    if (Is(u'e') || Is(u'E')) {
      Take();
      if (Is(u'-') || Is(u'+')) Take();
      if (!TakeDigits()) return false;
    }
    return fNext == fText.size();
  }
  bool Is(char16_t unit) const { return fNext < fText.size() && fText[fNext] == unit; }
  void Take() {
    fCopy[fNext] = static_cast<char>(fText[fNext]);
    ++fNext;
  }
  bool TakeDigits() {
    const std::size_t first = fNext;
    while (fNext < fText.size() && IsDigit(fText[fNext])) Take();
    return fNext > first;
  }

  std::u16string_view fText;
  char fCopy[64];
  std::size_t fNext = 0;
  bool fPlain = false;
};

/// Integers of up to nine digits, of which all fit an int.
bool ReadPlainInteger(const XMLCh* text, int& value) {
  const bool negative = *text == u'-';
  const XMLCh* next = negative ? text + 1 : text;
  const XMLCh* const first = next;
  int number = 0;
  for (; IsDigit(*next); ++next) {
    if (next - first == 9) return false;
    number = number * 10 + (*next - u'0');
  }
  if (next == first || *next != 0) return false;
  value = negative ? -number : number;
  return true;
}

}  // namespace

bool ReadDouble(const XMLCh* text, double& value) {
  if (PlainNumber(std::u16string_view(text)).Get(value)) return true;
  return ReadWithLibrary(text, value);
}

bool ReadDouble(std::u16string_view text, double& value) {
  if (PlainNumber(text).Get(value)) return true;
  return ReadWithLibrary(std::u16string(text).c_str(), value);
}

RQXNumberAttribute ReadDoubleAttribute(const xercesc::DOMElement& element, const XMLCh* name, double& value) {
  const XMLCh* const text = AttributeOf(element, name);
  if (!text) return RQXNumberAttribute::Absent;
  return ReadDouble(text, value) ? RQXNumberAttribute::Good : RQXNumberAttribute::Bad;
}

bool ReadInteger(const XMLCh* text, int& value) {
  if (ReadPlainInteger(text, value)) return true;
  try {
    value = xercesc::XMLBigInteger(text).intValue();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace RQXPrsUtil
