#include "rqxml/common/RQVariable.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQVarList.h"

namespace {

using RQMTD_NAMESPACE::IRQEncoder;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQEncoder;
using RQMTD_NAMESPACE::RQVariable;
using RQMTD_NAMESPACE::RQVarList;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;
using Kind = RQVariable::Kind;

constexpr double kHighest = std::numeric_limits<double>::max();

static_assert(!std::is_default_constructible_v<RQVariable> && !std::is_copy_constructible_v<RQVariable>);
static_assert(std::is_base_of_v<IRQVariable, RQVariable> && std::is_base_of_v<IRQEncoder, RQEncoder>);

// What a variable was told in the operations that not every variable knows; defaults are those of a plain variable.
struct Expected {
  Kind kind = Kind::Continuous;
  int typeCode = 1;
  int categories = 0;
  int integerIndicator = 0;
  IRQVariable::VariableRole role = IRQVariable::RoleInput;
  bool isString = false;
  IRQVariable::WRoundingOption rounding = IRQVariable::RoundingNone;
  bool hasRange = false;
  double minimum = 0;
  double maximum = 0;
  Numbers cutPoints;
  Numbers numbers;
  Texts strings;
  Texts labels;
  bool flag = false;
  int count = -1;
};

void ExpectVariable(const RQVarList& list, const Expected& expected) {
  const RQVariable* const variable = list.GetVariable(0);
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(variable->GetName(), "name");
  EXPECT_EQ(variable->GetLabel(), "label");
  EXPECT_EQ(variable->GetKind(), expected.kind);
  EXPECT_EQ(variable->GetTypeCode(), expected.typeCode);
  EXPECT_EQ(variable->GetNumCategories(), expected.categories);
  EXPECT_EQ(variable->GetIntegerIndicator(), expected.integerIndicator);
  EXPECT_EQ(variable->GetRole(), expected.role);
  EXPECT_EQ(variable->IsString(), expected.isString);
  EXPECT_EQ(variable->GetRounding(), expected.rounding);
  EXPECT_EQ(variable->HasRange(), expected.hasRange);
  EXPECT_EQ(variable->GetMinimum(), expected.minimum);
  EXPECT_EQ(variable->GetMaximum(), expected.maximum);
  EXPECT_EQ(variable->GetCutPoints(), expected.cutPoints);
  EXPECT_EQ(variable->GetNumericValues(), expected.numbers);
  EXPECT_EQ(variable->GetStringValues(), expected.strings);
  EXPECT_EQ(variable->GetLabels(), expected.labels);
  EXPECT_EQ(variable->GetFlag(), expected.flag);
  EXPECT_EQ(variable->GetCount(), expected.count);
  EXPECT_EQ(variable->GetStorageType(), 0);
}

TEST(RQVariable, KeepsNumericCategories) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("name", "label", Numbers{3, 1.5, 2}, IRQVariable::RoleTarget), 0);
  Expected expected;
  expected.kind = Kind::Categorical;
  expected.typeCode = 2;
  expected.categories = 3;
  expected.role = IRQVariable::RoleTarget;
  expected.numbers = {3, 1.5, 2};
  ExpectVariable(list, expected);
}

TEST(RQVariable, KeepsStringCategories) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("name", "label", Texts{"b", "", "a"}, IRQVariable::RoleInputField), 0);
  Expected expected;
  expected.kind = Kind::Categorical;
  expected.typeCode = 3;
  expected.categories = 3;
  expected.role = IRQVariable::RoleInputField;
  expected.isString = true;
  expected.strings = {"b", "", "a"};
  ExpectVariable(list, expected);
}

TEST(RQVariable, KeepsLabelledNumericCategories) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("name", "label", Numbers{1, 2}, Texts{"one", ""}, IRQVariable::RoleNone), 0);
  Expected expected;
  expected.kind = Kind::Categorical;
  expected.typeCode = 2;
  expected.categories = 2;
  expected.integerIndicator = 1;
  expected.role = IRQVariable::RoleNone;
  expected.numbers = {1, 2};
  expected.labels = {"one", ""};
  ExpectVariable(list, expected);
}

TEST(RQVariable, KeepsLabelledStringCategories) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("name", "label", Texts{"1", "2"}, Texts{"one", "two"}, IRQVariable::RoleInput), 0);
  Expected expected;
  expected.kind = Kind::Categorical;
  expected.typeCode = 3;
  expected.categories = 2;
  expected.isString = true;
  expected.strings = {"1", "2"};
  expected.labels = {"one", "two"};
  ExpectVariable(list, expected);
}

TEST(RQVariable, KnowsStringCategoriesAlsoWhenThereAreNone) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("name", "label", Texts{}, IRQVariable::RoleInput), 0);
  Expected expected;
  expected.kind = Kind::Categorical;
  expected.typeCode = 3;
  expected.isString = true;
  ExpectVariable(list, expected);
}

TEST(RQVariable, KeepsAContinuousVariableWithoutRange) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("name", "label", IRQVariable::RoleInput), 0);
  ExpectVariable(list, Expected());
}

TEST(RQVariable, KeepsRangeCutPointsAndFlag) {
  for (const bool flag : {false, true}) {
    RQVarList list;
    ASSERT_EQ(list.AddContVar("name", "label", -kHighest, kHighest, Numbers{0, 5.5}, flag, IRQVariable::RoleTarget), 0);
    Expected expected;
    expected.role = IRQVariable::RoleTarget;
    expected.hasRange = true;
    expected.minimum = -kHighest;
    expected.maximum = kHighest;
    expected.cutPoints = {0, 5.5};
    expected.flag = flag;
    ExpectVariable(list, expected);
  }
}

TEST(RQVariable, KeepsRangeFlagAndCount) {
  for (const bool flag : {false, true}) {
    for (const int count : {-2, 0, 12}) {
      RQVarList list;
      ASSERT_EQ(list.AddContVar("name", "label", -1.5, 2.5, IRQVariable::RoleInput, flag, count), 0);
      Expected expected;
      expected.hasRange = true;
      expected.minimum = -1.5;
      expected.maximum = 2.5;
      expected.flag = flag;
      expected.count = count;
      ExpectVariable(list, expected);
    }
  }
}

TEST(RQVariable, KeepsTheRoundingOfAWeight) {
  for (const auto rounding : {IRQVariable::RoundingNone, IRQVariable::RoundingTruncate, IRQVariable::RoundingNearest}) {
    RQVarList list;
    ASSERT_EQ(list.SetWeightVar("name", "label", rounding), 0);
    Expected expected;
    expected.kind = Kind::Weight;
    expected.role = IRQVariable::RoleFrequencyWeight;
    expected.rounding = rounding;
    ExpectVariable(list, expected);
  }
}

TEST(RQVariable, KeepsEveryRole) {
  for (const auto role : {IRQVariable::RoleNone, IRQVariable::RoleIdentifier, IRQVariable::RoleTarget,
                          IRQVariable::RoleFrequencyWeight, IRQVariable::RoleInput, IRQVariable::RoleInputField}) {
    SCOPED_TRACE(role);
    RQVarList list;
    ASSERT_EQ(list.AddCatVar("numbers", "", Numbers{1}, role), 0);
    ASSERT_EQ(list.AddCatVar("texts", "", Texts{"a"}, role), 1);
    ASSERT_EQ(list.AddCatVar("labelled numbers", "", Numbers{1}, Texts{"a"}, role), 2);
    ASSERT_EQ(list.AddCatVar("labelled texts", "", Texts{"a"}, Texts{"a"}, role), 3);
    ASSERT_EQ(list.AddContVar("plain", "", role), 4);
    ASSERT_EQ(list.AddContVar("cuts", "", 0, 1, Numbers{}, false, role), 5);
    ASSERT_EQ(list.AddContVar("count", "", 0, 1, role, false, 0), 6);
    for (int i = 0; i < list.Size(); ++i) EXPECT_EQ(list.GetVariable(i)->GetRole(), role) << i;
  }
}

TEST(RQVariable, KeepsTheStorageTypeLastSet) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 0);
  ASSERT_EQ(list.AddContVar("y", "", IRQVariable::RoleInput), 1);
  for (const int code : {1, 2, 3, 4, 5, 6, 0}) {
    list.GetVarAt(0)->SetStorageType(code);
    EXPECT_EQ(list.GetVariable(0)->GetStorageType(), code);
    EXPECT_EQ(list.GetVariable(1)->GetStorageType(), 0);
  }
}

TEST(RQVariable, CategoryTextsAreTheStringsOrTheNumbersShortestTexts) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("texts", "", Texts{"b", "", "\xC3\xA4"}, IRQVariable::RoleInput), 0);
  const Numbers numbers{3, 0.1, -0.0, 100000, 1e-7, 1e300, RQMV::gMissingValue};
  ASSERT_EQ(list.AddCatVar("numbers", "", numbers, IRQVariable::RoleInput), 1);
  const Texts texts[] = {{"b", "", "\xC3\xA4"}, {"3", "0.1", "0", "100000", "1e-07", "1e+300", "NaN"}};
  for (int i = 0; i < 2; ++i) {
    const IRQVariable* const variable = list.GetVarAt(i);
    ASSERT_EQ(variable->GetNumCategories(), static_cast<int>(texts[i].size()));
    for (int k = 0; k < variable->GetNumCategories(); ++k) {
      EXPECT_EQ(variable->GetCategoryText(k), texts[i][static_cast<std::size_t>(k)]);
    }
  }
}

TEST(RQVariable, CategoriesThatDoNotExistHaveNoText) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("texts", "", Texts{"a", "b"}, IRQVariable::RoleInput), 0);
  ASSERT_EQ(list.AddCatVar("numbers", "", Numbers{1, 2}, IRQVariable::RoleInput), 1);
  ASSERT_EQ(list.AddContVar("continuous", "", 0, 9, Numbers{1, 2, 3}, false, IRQVariable::RoleInput), 2);
  for (int i = 0; i < list.Size(); ++i) {
    for (const int k : {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
      EXPECT_EQ(list.GetVarAt(i)->GetCategoryText(k), "") << i << ", " << k;
    }
  }
  EXPECT_EQ(list.GetVarAt(2)->GetCategoryText(0), "");
}

TEST(RQVariable, IntegerIndicatorFollowsTheStorageTypeOnceItIsSet) {
  RQVarList list;
  ASSERT_EQ(list.AddCatVar("whole", "", Numbers{1, 2}, IRQVariable::RoleInput), 0);
  ASSERT_EQ(list.AddCatVar("fractions", "", Numbers{1, 2.5}, IRQVariable::RoleInput), 1);
  ASSERT_EQ(list.AddCatVar("texts", "", Texts{"1", "2"}, IRQVariable::RoleInput), 2);
  ASSERT_EQ(list.AddContVar("continuous", "", 0, 9, Numbers{1, 2}, false, IRQVariable::RoleInput), 3);
  ASSERT_EQ(list.SetWeightVar("weight", "", IRQVariable::RoundingNearest), 4);
  for (int i = 0; i < list.Size(); ++i) {
    SCOPED_TRACE(list.GetVarAt(i)->GetName());
    IRQVariable* const variable = list.GetVarAt(i);
    const int before = i == 0 ? 1 : 0;
    EXPECT_EQ(variable->GetIntegerIndicator(), before);
    for (int code = 1; code <= 6; ++code) {
      variable->SetStorageType(code);
      EXPECT_EQ(variable->GetIntegerIndicator(), code == 1 ? 1 : 0) << code;
    }
    variable->SetStorageType(0);
    EXPECT_EQ(variable->GetIntegerIndicator(), before) << "storage not known again";
  }
}

TEST(RQVariable, IntegerIndicatorOfNumericCategoriesNeedsWholeNumbersOnly) {
  const std::pair<Numbers, int> rows[] = {
      {{}, 0},
      {{0}, 1},
      {{-0.0, -3, 1e300}, 1},
      {{1, 2, 3.5}, 0},
      {{0.5, 1, 2}, 0},
      {{1, RQMV::gMissingValue}, 0},
      {{1, std::numeric_limits<double>::infinity()}, 0},
      {{1, std::numeric_limits<double>::quiet_NaN()}, 0},
  };
  for (const auto& [values, indicator] : rows) {
    SCOPED_TRACE(::testing::PrintToString(values));
    RQVarList list;
    ASSERT_EQ(list.AddCatVar("x", "", values, IRQVariable::RoleInput), 0);
    EXPECT_EQ(list.GetVarAt(0)->GetIntegerIndicator(), indicator);
  }
}

TEST(RQEncoder, KnowsNothingAtFirst) {
  const RQEncoder encoder;
  EXPECT_TRUE(encoder.GetBinLabels().empty());
  EXPECT_TRUE(encoder.GetNumMissingValues().empty());
  EXPECT_TRUE(encoder.GetStrMissingValues().empty());
  EXPECT_FALSE(encoder.HasInvalidRange());
  EXPECT_EQ(encoder.GetInvalidLower(), 0);
  EXPECT_EQ(encoder.GetInvalidUpper(), 0);
}

TEST(RQEncoder, KeepsTheBinLabelsLastSet) {
  RQEncoder encoder;
  encoder.SetBinLabels({"low", "mid", "high"});
  EXPECT_EQ(encoder.GetBinLabels(), (Texts{"low", "mid", "high"}));
  encoder.SetBinLabels({"all"});
  EXPECT_EQ(encoder.GetBinLabels(), Texts{"all"});
  encoder.SetBinLabels({});
  EXPECT_TRUE(encoder.GetBinLabels().empty());
}

TEST(RQEncoder, KeepsMissingNumbersInTheOrderOfAdding) {
  RQEncoder encoder;
  encoder.AddNumMissingValue(9, "refused");
  encoder.AddNumMissingValue(-1.5, "");
  encoder.AddNumMissingValue(9, "again");
  EXPECT_EQ(encoder.GetNumMissingValues(),
            (std::vector<RQEncoder::NumMissingValue>{{9, "refused"}, {-1.5, ""}, {9, "again"}}));
  EXPECT_TRUE(encoder.GetStrMissingValues().empty());
}

TEST(RQEncoder, KeepsMissingTextsInTheOrderOfAdding) {
  RQEncoder encoder;
  encoder.AddStrMissingValue("N/A", "not asked");
  encoder.AddStrMissingValue("", "");
  encoder.AddStrMissingValue("N/A", "again");
  EXPECT_EQ(encoder.GetStrMissingValues(),
            (std::vector<RQEncoder::StrMissingValue>{{"N/A", "not asked"}, {"", ""}, {"N/A", "again"}}));
  EXPECT_TRUE(encoder.GetNumMissingValues().empty());
}

TEST(RQEncoder, KeepsTheInvalidRangeLastSet) {
  RQEncoder encoder;
  encoder.SetInvalidRange(0, 0);
  EXPECT_TRUE(encoder.HasInvalidRange()) << "a range of one number at zero is a range";
  encoder.SetInvalidRange(-kHighest, 5);
  EXPECT_TRUE(encoder.HasInvalidRange());
  EXPECT_EQ(encoder.GetInvalidLower(), -kHighest);
  EXPECT_EQ(encoder.GetInvalidUpper(), 5);
}

}  // namespace
