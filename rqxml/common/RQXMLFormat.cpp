#include "rqxml/common/RQXMLFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "rqxml/common/RQMV.h"

namespace RQXML_NAMESPACE {

namespace {

// The longest text is 25 characters: 22 plain digits (the shortest conversion turns to an exponent beyond) with a sign
// and the ".0" of the flag. One with an exponent has at most 24: "-2.2250738585072014e-308".
constexpr std::size_t kCapacity = 32;
using Digits = std::array<char, kCapacity>;

// From this magnitude on the shortest conversion decides between plain digits and an exponent.
constexpr double kPlainLimit = 1e15;

bool IsWhole(double value) { return std::trunc(value) == value; }

std::string_view Convert(double value, Digits& digits) {
  char* const first = digits.data();
  char* const last = first + digits.size();
  // The integer conversion writes 100000 in plain digits where the shortest one prefers "1e+05", and drops the sign
  // of negative zero.
  const bool plain = IsWhole(value) && std::fabs(value) < kPlainLimit;
  const auto result =
      plain ? std::to_chars(first, last, static_cast<long long>(value)) : std::to_chars(first, last, value);
  return {first, static_cast<std::size_t>(result.ptr - first)};
}

// "3" becomes "3.0", "1e+300" becomes "1.0e+300"; a text that has its point already stays.
std::string_view InsertPoint(std::string_view text, Digits& digits) {
  if (text.find('.') != std::string_view::npos) return text;
  const std::size_t mantissa = std::min(text.find('e'), text.size());
  char* const gap = digits.data() + mantissa;
  std::memmove(gap + 2, gap, text.size() - mantissa);
  std::memcpy(gap, ".0", 2);
  return {digits.data(), text.size() + 2};
}

std::string_view FormatInto(double value, bool flag, Digits& digits) {
  if (std::isnan(value) || value == RQMV::gMissingValue) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  const std::string_view text = Convert(value, digits);
  return flag && IsWhole(value) ? InsertPoint(text, digits) : text;
}

}  // namespace

std::string Format(double value, bool flag, char* buffer) {
  Digits digits;
  const std::string_view text = FormatInto(value, flag, digits);
  std::string result(text);
  if (buffer != nullptr) std::memcpy(buffer, result.c_str(), result.size() + 1);
  return result;
}

}  // namespace RQXML_NAMESPACE
