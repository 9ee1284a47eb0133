#ifndef TESTS_SUPPORT_RECORDING_VAR_LIST_H
#define TESTS_SUPPORT_RECORDING_VAR_LIST_H

#include <charconv>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/common/RQVarList.h"

namespace rqtest {

using Calls = std::vector<std::string>;

inline std::string Show(const std::string& text) { return '"' + text + '"'; }

/// The shortest text of a number; LOWEST (also the system-missing value) and HIGHEST are the extreme doubles.
inline std::string Show(double value) {
  if (value == std::numeric_limits<double>::lowest()) return "LOWEST";
  if (value == std::numeric_limits<double>::max()) return "HIGHEST";
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

template <typename T>
std::string Show(const std::vector<T>& items) {
  std::string text = "[";
  for (const T& item : items) text += (text.size() > 1 ? ", " : "") + Show(item);
  return text + "]";
}

/// Writes down every call in order, with the overload that was called and all arguments.
class RecordingVarList : public RQMTD_NAMESPACE::RQVarList {
 public:
  /// Everything that was called, in order. GetEncoderAt shows only through the encoder's operations.
  Calls calls;
  /// Names that every add operation refuses.
  std::set<std::string> refused;
  /// What a refusal returns.
  int refusal = -1;
  /// Names whose variables have no encoder.
  std::set<std::string> withoutEncoder;

  explicit RecordingVarList(int firstIndex = 0) : next_(firstIndex) {}

  int AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                Role role) override {
    return Add("AddCatVar", name, label, ", numbers " + Show(values) + ShowRole(role));
  }
  int AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                Role role) override {
    return Add("AddCatVar", name, label, ", strings " + Show(values) + ShowRole(role));
  }
  int AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                const std::vector<std::string>& labels, Role role) override {
    return Add("AddCatVar", name, label, ", numbers " + Show(values) + ", labels " + Show(labels) + ShowRole(role));
  }
  int AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                const std::vector<std::string>& labels, Role role) override {
    return Add("AddCatVar", name, label, ", strings " + Show(values) + ", labels " + Show(labels) + ShowRole(role));
  }
  int AddContVar(const std::string& name, const std::string& label, Role role) override {
    return Add("AddContVar", name, label, ShowRole(role));
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 const std::vector<double>& cutPoints, bool flag, Role role) override {
    return Add("AddContVar", name, label,
               ", " + Show(minimum) + ", " + Show(maximum) + ", cuts " + Show(cutPoints) +
                   (flag ? ", true" : ", false") + ShowRole(role));
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum, Role role,
                 bool flag, int count) override {
    return Add("AddContVar", name, label,
               ", " + Show(minimum) + ", " + Show(maximum) + ShowRole(role) + (flag ? ", true, " : ", false, ") +
                   std::to_string(count));
  }
  int SetWeightVar(const std::string& name, const std::string& label,
                   RQMTD_NAMESPACE::IRQVariable::WRoundingOption rounding) override {
    return Add("SetWeightVar", name, label, ", rounding " + std::to_string(static_cast<int>(rounding)));
  }
  RQMTD_NAMESPACE::IRQEncoder* GetEncoderAt(int index) override {
    const auto found = encoders_.find(index);
    if (found == encoders_.end()) calls.push_back("GetEncoderAt(" + std::to_string(index) + ") of no variable");
    return found == encoders_.end() ? nullptr : found->second.get();
  }

 private:
  class Encoder : public RQMTD_NAMESPACE::IRQEncoder {
   public:
    Encoder(Calls& calls, int index) : calls_(calls), prefix_("encoder " + std::to_string(index) + ": ") {}
    void SetBinLabels(const std::vector<std::string>& labels) override {
      calls_.push_back(prefix_ + "SetBinLabels(" + Show(labels) + ")");
    }
    void AddNumMissingValue(double value, const std::string& label) override {
      calls_.push_back(prefix_ + "AddNumMissingValue(" + Show(value) + ", " + Show(label) + ")");
    }
    void AddStrMissingValue(const std::string& value, const std::string& label) override {
      calls_.push_back(prefix_ + "AddStrMissingValue(" + Show(value) + ", " + Show(label) + ")");
    }
    void SetInvalidRange(double lower, double upper) override {
      calls_.push_back(prefix_ + "SetInvalidRange(" + Show(lower) + ", " + Show(upper) + ")");
    }

   private:
    Calls& calls_;
    std::string prefix_;
  };

  static std::string ShowRole(Role role) { return ", role " + std::to_string(static_cast<int>(role)); }

  int Add(const char* operation, const std::string& name, const std::string& label, const std::string& rest) {
    const int index = refused.count(name) != 0 ? refusal : next_++;
    calls.push_back(std::string(operation) + "(" + Show(name) + ", " + Show(label) + rest + ") -> " +
                    std::to_string(index));
    if (index >= 0) {
      encoders_[index] = withoutEncoder.count(name) != 0 ? nullptr : std::make_unique<Encoder>(calls, index);
    }
    return index;
  }

  int next_;
  std::map<int, std::unique_ptr<Encoder>> encoders_;
};

}  // namespace rqtest

#endif
