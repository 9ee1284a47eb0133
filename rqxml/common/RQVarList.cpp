#include "rqxml/common/RQVarList.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace RQMTD_NAMESPACE {

namespace {

constexpr int kRefused = -1;
constexpr std::size_t kFirstCapacity = 16;

// False for an empty range, and when an end is not a number.
bool IsRange(double minimum, double maximum) { return minimum <= maximum; }

bool DoAscend(const std::vector<double>& cutPoints) {
  if (std::any_of(cutPoints.begin(), cutPoints.end(), [](double value) { return std::isnan(value); })) return false;
  return std::adjacent_find(cutPoints.begin(), cutPoints.end(), [](double a, double b) { return a >= b; }) ==
         cutPoints.end();
}

}  // namespace

RQVarList::RQVarList() = default;
RQVarList::~RQVarList() = default;

int RQVarList::AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                         Role role) {
  return AddCategorical(name, label, values, nullptr, role);
}

int RQVarList::AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                         Role role) {
  return AddCategorical(name, label, values, nullptr, role);
}

int RQVarList::AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                         const std::vector<std::string>& labels, Role role) {
  return AddCategorical(name, label, values, &labels, role);
}

int RQVarList::AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                         const std::vector<std::string>& labels, Role role) {
  return AddCategorical(name, label, values, &labels, role);
}

int RQVarList::AddContVar(const std::string& name, const std::string& label, Role role) {
  if (!Accepts(name)) return kRefused;
  return Keep(Make(RQVariable::Kind::Continuous, name, label, role));
}

int RQVarList::AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                          const std::vector<double>& cutPoints, bool flag, Role role) {
  if (!Accepts(name) || !IsRange(minimum, maximum) || !DoAscend(cutPoints)) return kRefused;
  auto variable = Make(RQVariable::Kind::Continuous, name, label, role);
  variable->SetRange(minimum, maximum);
  variable->fCutPoints = cutPoints;
  variable->fFlag = flag;
  return Keep(std::move(variable));
}

int RQVarList::AddContVar(const std::string& name, const std::string& label, double minimum, double maximum, Role role,
                          bool flag, int count) {
  if (!Accepts(name) || !IsRange(minimum, maximum)) return kRefused;
  auto variable = Make(RQVariable::Kind::Continuous, name, label, role);
  variable->SetRange(minimum, maximum);
  variable->fFlag = flag;
  variable->fCount = count;
  return Keep(std::move(variable));
}

int RQVarList::SetWeightVar(const std::string& name, const std::string& label, IRQVariable::WRoundingOption rounding) {
  if (fHasWeight || !Accepts(name)) return kRefused;
  auto variable = Make(RQVariable::Kind::Weight, name, label, IRQVariable::RoleFrequencyWeight);
  variable->fRounding = rounding;
  const int index = Keep(std::move(variable));
  fHasWeight = true;
  return index;
}

const IRQVariable* RQVarList::GetVarAt(int index) const { return GetVariable(index); }

IRQVariable* RQVarList::GetVarAt(int index) { return Find(index); }

IRQEncoder* RQVarList::GetEncoderAt(int index) {
  RQVariable* const variable = Find(index);
  return variable == nullptr ? nullptr : &variable->fEncoder;
}

int RQVarList::Size() const { return static_cast<int>(fVariables.size()); }

const RQVariable* RQVarList::GetVariable(int index) const { return Find(index); }

template <typename Value>
int RQVarList::AddCategorical(const std::string& name, const std::string& label, const std::vector<Value>& values,
                              const std::vector<std::string>* labels, Role role) {
  if (!Accepts(name)) return kRefused;
  if (labels != nullptr && labels->size() != values.size()) return kRefused;
  auto variable = Make(RQVariable::Kind::Categorical, name, label, role);
  variable->SetValues(values);
  if (labels != nullptr) variable->fLabels = *labels;
  return Keep(std::move(variable));
}

std::unique_ptr<RQVariable> RQVarList::Make(RQVariable::Kind kind, const std::string& name, const std::string& label,
                                            Role role) {
  return std::unique_ptr<RQVariable>(new RQVariable(kind, name, label, role));  // the constructor is private
}

// Takes the one step that cannot fail last, so that a variable is in both members or in none.
int RQVarList::Keep(std::unique_ptr<RQVariable> variable) {
  if (fVariables.size() == fVariables.capacity()) fVariables.reserve(std::max(kFirstCapacity, 2 * fVariables.size()));
  fNames.insert(variable->fName);
  fVariables.push_back(std::move(variable));
  return static_cast<int>(fVariables.size()) - 1;
}

bool RQVarList::Accepts(const std::string& name) const { return !name.empty() && fNames.count(name) == 0; }

RQVariable* RQVarList::Find(int index) const {
  if (index < 0) return nullptr;
  const auto position = static_cast<std::size_t>(index);
  return position < fVariables.size() ? fVariables[position].get() : nullptr;
}

}  // namespace RQMTD_NAMESPACE
