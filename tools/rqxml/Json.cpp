#include "Json.h"

#include <cmath>
#include <cstdint>

#include "DisplayText.h"
#include "rqxml/common/RQMV.h"

namespace rqtool {

namespace {

// Below this every whole double is exact, and common JSON readers keep it exact.
constexpr double kExactIntegers = 9007199254740992.0;

bool IsPlainInteger(double value) {
  const bool negativeZero = value == 0 && std::signbit(value);
  return !negativeZero && std::trunc(value) == value && std::fabs(value) < kExactIntegers;
}

}  // namespace

Json JsonNumber(double value) {
  if (value == RQMV::gMissingValue) return nullptr;
  if (IsPlainInteger(value)) return static_cast<std::int64_t>(value);
  return value;
}

Json JsonNumbers(const std::vector<double>& values) {
  Json array = Json::array();
  for (const double value : values) array.push_back(JsonNumber(value));
  return array;
}

std::string JsonText(const Json& json) {
  return PrintableJson(json.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n';
}

}  // namespace rqtool
