#include "rqxml/common/RQVarList.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "rqxml/common/RQNameIndex.h"

namespace RQMTD_NAMESPACE {

namespace {

using Kind = RQVariable::Kind;

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

struct RQVarList::Contents {
  std::vector<std::unique_ptr<RQVariable>> variables;
  RQNameIndex names;
  bool hasWeight = false;
};

RQVarList::RQVarList() : fContents(std::make_unique<Contents>()) {}
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
  return Keep(RQVariable::Make(Kind::Continuous, name, label, role));
}

int RQVarList::AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                          const std::vector<double>& cutPoints, bool flag, Role role) {
  if (!Accepts(name) || !IsRange(minimum, maximum) || !DoAscend(cutPoints)) return kRefused;
  auto variable = RQVariable::Make(Kind::Continuous, name, label, role);
  variable->SetRange(minimum, maximum);
  variable->fCutPoints = cutPoints;
  variable->fFlag = flag;
  return Keep(std::move(variable));
}

int RQVarList::AddContVar(const std::string& name, const std::string& label, double minimum, double maximum, Role role,
                          bool flag, int count) {
  if (!Accepts(name) || !IsRange(minimum, maximum)) return kRefused;
  auto variable = RQVariable::Make(Kind::Continuous, name, label, role);
  variable->SetRange(minimum, maximum);
  variable->fFlag = flag;
  variable->fCount = count;
  return Keep(std::move(variable));
}

int RQVarList::SetWeightVar(const std::string& name, const std::string& label, IRQVariable::WRoundingOption rounding) {
  if (fContents->hasWeight || !Accepts(name)) return kRefused;
  auto variable = RQVariable::Make(Kind::Weight, name, label, IRQVariable::RoleFrequencyWeight);
  variable->fRounding = rounding;
  const int index = Keep(std::move(variable));
  fContents->hasWeight = true;
  return index;
}

const IRQVariable* RQVarList::GetVarAt(int index) const { return GetVariable(index); }

IRQVariable* RQVarList::GetVarAt(int index) { return Find(index); }

IRQEncoder* RQVarList::GetEncoderAt(int index) {
  RQVariable* const variable = Find(index);
  return variable == nullptr ? nullptr : &variable->fEncoder;
}

int RQVarList::Size() const { return static_cast<int>(fContents->variables.size()); }

const RQVariable* RQVarList::GetVariable(int index) const { return Find(index); }

template <typename Value>
int RQVarList::AddCategorical(const std::string& name, const std::string& label, const std::vector<Value>& values,
                              const std::vector<std::string>* labels, Role role) {
  if (!Accepts(name)) return kRefused;
  if (labels != nullptr && labels->size() != values.size()) return kRefused;
  auto variable = RQVariable::Make(Kind::Categorical, name, label, role);
  variable->SetValues(values);
  if (labels != nullptr) variable->fLabels = *labels;
  return Keep(std::move(variable));
}

// Takes the steps that cannot fail last, so that a variable is in both members or in none.
int RQVarList::Keep(std::unique_ptr<RQVariable> variable) {
  auto& variables = fContents->variables;
  const std::size_t position = variables.size();
  if (position == variables.capacity()) variables.reserve(std::max(kFirstCapacity, 2 * position));
  fContents->names.ReserveOne();
  fContents->names.Insert(variable->fName, position);
  variables.push_back(std::move(variable));
  return static_cast<int>(position);
}

bool RQVarList::Accepts(const std::string& name) const {
  const auto& variables = fContents->variables;
  const auto nameAt = [&variables](std::size_t position) -> const std::string& { return variables[position]->fName; };
  return !name.empty() && fContents->names.Find(name, nameAt) == RQNameIndex::kNone;
}

RQVariable* RQVarList::Find(int index) const {
  if (index < 0) return nullptr;
  const auto position = static_cast<std::size_t>(index);
  return position < fContents->variables.size() ? fContents->variables[position].get() : nullptr;
}

}  // namespace RQMTD_NAMESPACE
