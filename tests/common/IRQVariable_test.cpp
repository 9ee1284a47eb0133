#include "rqxml/common/IRQVariable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

#include "virtual_slot.h"

namespace {

using RQMTD_NAMESPACE::IRQVariable;

static_assert(std::is_abstract_v<IRQVariable>);
static_assert(std::has_virtual_destructor_v<IRQVariable>);
static_assert(std::is_same_v<std::underlying_type_t<IRQVariable::VariableRole>, int>);
static_assert(std::is_same_v<std::underlying_type_t<IRQVariable::WRoundingOption>, int>);

TEST(IRQVariable, RolesHaveTheValuesThatTheEngineKnows) {
  EXPECT_EQ(IRQVariable::RoleNone, 0);
  EXPECT_EQ(IRQVariable::RoleIdentifier, 1);
  EXPECT_EQ(IRQVariable::RoleTarget, 2);
  EXPECT_EQ(IRQVariable::RoleFrequencyWeight, 3);
  EXPECT_EQ(IRQVariable::RoleInput, 4);
  EXPECT_EQ(IRQVariable::RoleInputField, 5);
}

TEST(IRQVariable, RoundingOptionsHaveTheValuesThatTheEngineKnows) {
  EXPECT_EQ(IRQVariable::RoundingNone, 0);
  EXPECT_EQ(IRQVariable::RoundingTruncate, 1);
  EXPECT_EQ(IRQVariable::RoundingNearest, 2);
}

class FixedVariable : public IRQVariable {
 public:
  FixedVariable(int& storage, bool& destroyed) : fStorage(storage), fDestroyed(destroyed) {}
  ~FixedVariable() override { fDestroyed = true; }
  int GetTypeCode() const override { return 7; }
  std::string GetName() const override { return "name"; }
  std::string GetLabel() const override { return "label"; }
  int GetNumCategories() const override { return 11; }
  int GetIntegerIndicator() const override { return 13; }
  std::string GetCategoryText(int index) const override { return "category " + std::to_string(index); }
  void SetStorageType(int code) override { fStorage = code; }

 private:
  int& fStorage;
  bool& fDestroyed;
};

TEST(IRQVariable, EveryCallThroughTheInterfaceReachesTheOverride) {
  int storage = 0;
  bool destroyed = false;
  std::unique_ptr<IRQVariable> variable = std::make_unique<FixedVariable>(storage, destroyed);
  EXPECT_EQ(variable->GetTypeCode(), 7);
  EXPECT_EQ(variable->GetName(), "name");
  EXPECT_EQ(variable->GetLabel(), "label");
  EXPECT_EQ(variable->GetNumCategories(), 11);
  EXPECT_EQ(variable->GetIntegerIndicator(), 13);
  EXPECT_EQ(variable->GetCategoryText(5), "category 5");
  variable->SetStorageType(6);
  EXPECT_EQ(storage, 6);
  variable.reset();
  EXPECT_TRUE(destroyed);
}

TEST(IRQVariable, OperationsFollowTheDestructorInTheirFixedOrder) {
  if (!RQ_TEST_SEES_VIRTUAL_SLOTS) GTEST_SKIP() << "the order of virtual operations cannot be seen here";
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetTypeCode), 2U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetName), 3U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetLabel), 4U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetNumCategories), 5U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetIntegerIndicator), 6U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::GetCategoryText), 7U);
  EXPECT_EQ(VirtualSlot(&IRQVariable::SetStorageType), 8U);
}

}  // namespace
