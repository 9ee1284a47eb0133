#ifndef TESTS_SUPPORT_RECORDING_STORAGE_LIST_H
#define TESTS_SUPPORT_RECORDING_STORAGE_LIST_H

#include <map>
#include <memory>
#include <set>
#include <string>

#include "tests/support/recording_var_list.h"

namespace rqtest {

/// Writes down also the storage types that its variables are told.
class RecordingStorageList : public RecordingVarList {
 public:
  using RecordingVarList::RecordingVarList;

  /// Indices at which no variable is handed out.
  std::set<int> withoutVariable;

  using RecordingVarList::GetVarAt;
  RQMTD_NAMESPACE::IRQVariable* GetVarAt(int index) override {
    if (withoutVariable.count(index) != 0) return nullptr;
    auto& variable = variables_[index];
    if (!variable) variable = std::make_unique<Variable>(calls, index);
    return variable.get();
  }

 private:
  class Variable : public RQMTD_NAMESPACE::IRQVariable {
   public:
    Variable(Calls& calls, int index) : calls_(calls), prefix_("variable " + std::to_string(index) + ": ") {}
    int GetTypeCode() const override { return 0; }
    std::string GetName() const override { return {}; }
    std::string GetLabel() const override { return {}; }
    int GetNumCategories() const override { return 0; }
    int GetIntegerIndicator() const override { return 0; }
    std::string GetCategoryText(int) const override { return {}; }
    void SetStorageType(int code) override {
      calls_.push_back(prefix_ + "SetStorageType(" + std::to_string(code) + ")");
    }

   private:
    Calls& calls_;
    std::string prefix_;
  };

  std::map<int, std::unique_ptr<Variable>> variables_;
};

}  // namespace rqtest

#endif
