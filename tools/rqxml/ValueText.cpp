#include "ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "DisplayText.h"
#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQXMLFormat.h"

namespace rqtool {

std::string NumberText(double value) {
  if (value == RQMV::gMissingValue) return "(system-missing)";
  return RQXML_NAMESPACE::Format(value, false, nullptr);
}

std::string ShortNumberText(double value) {
  constexpr int kDigits = 6;
  constexpr double kSmallest = 1e-5;
  constexpr double kLargest = 1e15;
  const double size = std::fabs(value);
  if (std::trunc(value) == value || size < kSmallest || size >= kLargest) return NumberText(value);
  const int wholeDigits = static_cast<int>(std::floor(std::log10(size))) + 1;
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed,
                                 std::max(kDigits - wholeDigits, 0));
  std::string text(buffer.data(), end.ptr);
  if (text.find('.') != std::string::npos) text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string ItemText(const std::string& text) {
  const bool plain =
      !text.empty() && text.front() != ' ' && text.back() != ' ' && text.find_first_of(",=\"") == std::string::npos;
  return plain ? Printable(text) : '"' + Printable(text) + '"';
}

}  // namespace rqtool
