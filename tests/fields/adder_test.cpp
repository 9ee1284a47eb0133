#include "rqxml/fields/RQXFieldAdder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recording_var_list.h"
#include "tests/support/status.h"

namespace {

using RQMTD_NAMESPACE::IRQVariable;
using rqtest::Failure;
using rqtest::Ok;
using rqtest::RecordingVarList;
using RQXPrsUtil::RQXAddRules;
using RQXPrsUtil::RQXBins;
using RQXPrsUtil::RQXBinSource;
using RQXPrsUtil::RQXField;
using ::testing::ElementsAre;

RQXField Weight() {
  RQXField field;
  field.name = "w";
  field.label = "Weight";
  field.categorical = false;
  field.role = IRQVariable::RoleFrequencyWeight;
  field.low = 1;
  field.high = 9;
  return field;
}

// No document kind but the data model gives a field this role yet; for settings documents the step waits for a table
// of roles that somebody fills.
TEST(FieldAdder, ContinuousFrequencyWeightBecomesTheWeightAndIsAddedInNoOtherWay) {
  const RQXBins bins{{0, 5, 10}, {"low", "high"}};
  for (const RQXAddRules& rules : {RQXAddRules(), RQXAddRules{.withRange = true, .flag = true, .count = 5}}) {
    RecordingVarList vars;
    EXPECT_EQ(AddField(vars, Weight(), &bins, rules), Ok());
    EXPECT_THAT(vars.calls, ElementsAre("SetWeightVar(\"w\", \"Weight\", rounding 2) -> 0"));
  }
}

TEST(FieldAdder, FrequencyWeightNeedsNoBinsWhenBinsAreWanted) {
  RecordingVarList vars;
  RQXBinSource none(true, nullptr);
  EXPECT_EQ(AddFieldWithBins(vars, Weight(), none, RQXAddRules()), Ok());
  EXPECT_THAT(vars.calls, ElementsAre("SetWeightVar(\"w\", \"Weight\", rounding 2) -> 0"));
}

TEST(FieldAdder, RefusedFrequencyWeightIsARefusedVariable) {
  RecordingVarList vars;
  vars.refused = {"w"};
  EXPECT_EQ(AddField(vars, Weight(), nullptr, RQXAddRules{.storageType = true}), Failure(111));
  EXPECT_EQ(vars.calls.size(), 1U);
}

TEST(FieldAdder, SecondFrequencyWeightIsRefusedByTheReferenceList) {
  RQMTD_NAMESPACE::RQVarList vars;
  EXPECT_EQ(AddField(vars, Weight(), nullptr, RQXAddRules()), Ok());
  RQXField second = Weight();
  second.name = "v";
  EXPECT_EQ(AddField(vars, second, nullptr, RQXAddRules()), Failure(111));
  EXPECT_EQ(vars.Size(), 1);
}

TEST(FieldAdder, CategoricalFieldOfThatRoleIsAddedWithIt) {
  RQXField field = Weight();
  field.categorical = true;
  field.numbers = {1, 2};
  RecordingVarList vars;
  EXPECT_EQ(AddField(vars, field, nullptr, RQXAddRules()), Ok());
  EXPECT_THAT(vars.calls, ElementsAre("AddCatVar(\"w\", \"Weight\", numbers [1, 2], role 3) -> 0"));
}

}  // namespace
