#include "rqxml/common/RQVariable.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQXMLFormat.h"

namespace RQMTD_NAMESPACE {

namespace {

constexpr int kIntegerStorage = 1;

constexpr int kContinuousType = 1;
constexpr int kNumericCategoriesType = 2;
constexpr int kStringCategoriesType = 3;

bool IsWholeNumber(double value) {
  return std::isfinite(value) && value != RQMV::gMissingValue && std::trunc(value) == value;
}

}  // namespace

struct RQEncoder::Contents {
  std::vector<std::string> binLabels;
  std::vector<NumMissingValue> numMissing;
  std::vector<StrMissingValue> strMissing;
  double invalidLower = 0;
  double invalidUpper = 0;
  bool hasInvalidRange = false;
};

RQEncoder::RQEncoder() = default;
RQEncoder::~RQEncoder() = default;

void RQEncoder::SetBinLabels(const std::vector<std::string>& labels) {
  std::vector<std::string> copy(labels);  // the old labels survive when memory runs out
  Told().binLabels.swap(copy);
}

void RQEncoder::AddNumMissingValue(double value, const std::string& label) {
  Told().numMissing.emplace_back(value, label);
}

void RQEncoder::AddStrMissingValue(const std::string& value, const std::string& label) {
  Told().strMissing.emplace_back(value, label);
}

void RQEncoder::SetInvalidRange(double lower, double upper) {
  Contents& contents = Told();
  contents.invalidLower = lower;
  contents.invalidUpper = upper;
  contents.hasInvalidRange = true;
}

const std::vector<std::string>& RQEncoder::GetBinLabels() const { return Told().binLabels; }

const std::vector<RQEncoder::NumMissingValue>& RQEncoder::GetNumMissingValues() const { return Told().numMissing; }

const std::vector<RQEncoder::StrMissingValue>& RQEncoder::GetStrMissingValues() const { return Told().strMissing; }

bool RQEncoder::HasInvalidRange() const { return Told().hasInvalidRange; }

double RQEncoder::GetInvalidLower() const { return Told().invalidLower; }

double RQEncoder::GetInvalidUpper() const { return Told().invalidUpper; }

RQEncoder::Contents& RQEncoder::Told() {
  if (!fContents) fContents = std::make_unique<Contents>();
  return *fContents;
}

const RQEncoder::Contents& RQEncoder::Told() const {
  static const Contents kNothing;
  return fContents ? *fContents : kNothing;
}

std::unique_ptr<RQVariable> RQVariable::Make(Kind kind, const std::string& name, const std::string& label,
                                             VariableRole role) {
  return std::unique_ptr<RQVariable>(new RQVariable(kind, name, label, role));  // the constructor is private
}

RQVariable::RQVariable(Kind kind, const std::string& name, const std::string& label, VariableRole role)
    : fName(name), fLabel(label), fKind(kind), fRole(role) {}

RQVariable::~RQVariable() = default;

int RQVariable::GetTypeCode() const {
  if (fKind != Kind::Categorical) return kContinuousType;
  return fString ? kStringCategoriesType : kNumericCategoriesType;
}

std::string RQVariable::GetName() const { return fName; }

std::string RQVariable::GetLabel() const { return fLabel; }

int RQVariable::GetNumCategories() const { return static_cast<int>(fString ? fStrings.size() : fNumbers.size()); }

int RQVariable::GetIntegerIndicator() const {
  if (fStorage != 0) return fStorage == kIntegerStorage ? 1 : 0;
  return !fNumbers.empty() && std::all_of(fNumbers.begin(), fNumbers.end(), IsWholeNumber) ? 1 : 0;
}

std::string RQVariable::GetCategoryText(int index) const {
  if (index < 0 || index >= GetNumCategories()) return {};
  const auto position = static_cast<std::size_t>(index);
  return fString ? fStrings[position] : RQXML_NAMESPACE::Format(fNumbers[position], false, nullptr);
}

void RQVariable::SetStorageType(int code) { fStorage = code; }

void RQVariable::SetRange(double minimum, double maximum) {
  fMinimum = minimum;
  fMaximum = maximum;
  fHasRange = true;
}

void RQVariable::SetValues(const std::vector<double>& values) { fNumbers = values; }

void RQVariable::SetValues(const std::vector<std::string>& values) {
  fStrings = values;
  fString = true;
}

}  // namespace RQMTD_NAMESPACE
