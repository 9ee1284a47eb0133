#include "rqxml/common/RQVarList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using RQMTD_NAMESPACE::IRQEncoder;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVariable;
using RQMTD_NAMESPACE::RQVarList;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr double kMissing = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

static_assert(std::is_default_constructible_v<RQVarList>);
static_assert(std::has_virtual_destructor_v<RQVarList>);
static_assert(!std::is_copy_constructible_v<RQVarList> && !std::is_copy_assignable_v<RQVarList>);
static_assert(std::is_same_v<RQVarList::Role, IRQVariable::VariableRole>);

// One row for each add operation, with arguments that it accepts.
struct AddOperation {
  const char* text;
  std::function<int(RQVarList&, const std::string& name)> add;
};

const AddOperation kAddOperations[] = {
    {"numeric categories",
     [](RQVarList& list, const std::string& name) {
       return list.AddCatVar(name, "a label", Numbers{1, 2.5}, IRQVariable::RoleInput);
     }},
    {"string categories",
     [](RQVarList& list, const std::string& name) {
       return list.AddCatVar(name, "a label", Texts{"a", "b"}, IRQVariable::RoleInput);
     }},
    {"labelled numeric categories",
     [](RQVarList& list, const std::string& name) {
       return list.AddCatVar(name, "a label", Numbers{1, 2.5}, Texts{"one", "more"}, IRQVariable::RoleInput);
     }},
    {"labelled string categories",
     [](RQVarList& list, const std::string& name) {
       return list.AddCatVar(name, "a label", Texts{"a", "b"}, Texts{"first", "second"}, IRQVariable::RoleInput);
     }},
    {"continuous",
     [](RQVarList& list, const std::string& name) { return list.AddContVar(name, "a label", IRQVariable::RoleInput); }},
    {"continuous with cut points",
     [](RQVarList& list, const std::string& name) {
       return list.AddContVar(name, "a label", 0, 10, Numbers{2, 5}, true, IRQVariable::RoleInput);
     }},
    {"continuous with count",
     [](RQVarList& list, const std::string& name) {
       return list.AddContVar(name, "a label", 0, 10, IRQVariable::RoleInput, true, 7);
     }},
    {"weight",
     [](RQVarList& list, const std::string& name) {
       return list.SetWeightVar(name, "a label", IRQVariable::RoundingNearest);
     }},
};

// Calls an operation that must refuse, and checks that the list of one variable is as it was.
template <typename Operation>
void ExpectRefused(RQVarList& list, Operation operation) {
  const int size = list.Size();
  const IRQVariable* const first = list.GetVarAt(0);
  EXPECT_LT(operation(), 0);
  EXPECT_EQ(list.Size(), size);
  EXPECT_EQ(list.GetVarAt(0), first);
  EXPECT_EQ(list.GetVarAt(size), nullptr);
  EXPECT_EQ(list.GetEncoderAt(size), nullptr);
}

TEST(RQVarList, IsEmptyAtFirst) {
  RQVarList list;
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(list.GetVarAt(0), nullptr);
  EXPECT_EQ(list.GetEncoderAt(0), nullptr);
  EXPECT_EQ(list.GetVariable(0), nullptr);
}

TEST(RQVarList, EveryAddOperationReturnsTheNextIndex) {
  RQVarList list;
  int expected = 0;
  for (const AddOperation& operation : kAddOperations) {
    SCOPED_TRACE(operation.text);
    const std::string name = operation.text;
    ASSERT_EQ(operation.add(list, name), expected);
    ++expected;
    ASSERT_EQ(list.Size(), expected);
    ASSERT_NE(list.GetVarAt(expected - 1), nullptr);
    EXPECT_EQ(list.GetVarAt(expected - 1)->GetName(), name);
    EXPECT_EQ(list.GetVarAt(expected - 1)->GetLabel(), "a label");
  }
}

TEST(RQVarList, GivesNullForEveryIndexThatItDoesNotHave) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 0);
  const RQVarList& constList = list;
  for (const int index : {-1, 1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    SCOPED_TRACE(index);
    EXPECT_EQ(list.GetVarAt(index), nullptr);
    EXPECT_EQ(constList.GetVarAt(index), nullptr);
    EXPECT_EQ(list.GetEncoderAt(index), nullptr);
    EXPECT_EQ(list.GetVariable(index), nullptr);
  }
}

TEST(RQVarList, BothFormsOfGetVarAtAndGetVariableGiveTheSameObject) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 0);
  const RQVarList& constList = list;
  EXPECT_EQ(constList.GetVarAt(0), list.GetVarAt(0));
  EXPECT_EQ(static_cast<const IRQVariable*>(list.GetVariable(0)), list.GetVarAt(0));
}

TEST(RQVarList, WhatTheEncoderIsToldCanBeReadBackThroughTheVariable) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 0);
  ASSERT_EQ(list.AddContVar("y", "", IRQVariable::RoleInput), 1);
  IRQEncoder* const encoder = list.GetEncoderAt(1);
  ASSERT_NE(encoder, nullptr);
  EXPECT_NE(encoder, list.GetEncoderAt(0));
  encoder->SetInvalidRange(90, 99);
  EXPECT_EQ(encoder, &list.GetVariable(1)->GetEncoder());
  EXPECT_TRUE(list.GetVariable(1)->GetEncoder().HasInvalidRange());
  EXPECT_FALSE(list.GetVariable(0)->GetEncoder().HasInvalidRange());
}

TEST(RQVarList, EveryAddOperationRefusesAnEmptyName) {
  for (const AddOperation& operation : kAddOperations) {
    SCOPED_TRACE(operation.text);
    RQVarList list;
    ASSERT_EQ(list.AddContVar("first", "", IRQVariable::RoleInput), 0);
    ExpectRefused(list, [&] { return operation.add(list, ""); });
    EXPECT_EQ(operation.add(list, " "), 1) << "a blank is a name";
  }
}

TEST(RQVarList, EveryAddOperationRefusesANameInUseWhoeverUsesIt) {
  for (const AddOperation& user : kAddOperations) {
    for (const AddOperation& operation : kAddOperations) {
      SCOPED_TRACE(std::string(user.text) + ", then " + operation.text);
      RQVarList list;
      ASSERT_EQ(user.add(list, "used"), 0);
      ExpectRefused(list, [&] { return operation.add(list, "used"); });
    }
  }
}

TEST(RQVarList, NamesDifferWhenAnyByteDiffers) {
  RQVarList list;
  int index = 0;
  for (const std::string& name :
       {std::string("a"), std::string("A"), std::string("a "), std::string(" a"), std::string("aa"),
        std::string("a\0", 2), std::string("\xC3\xA4"), std::string("a\xCC\x88")}) {
    EXPECT_EQ(list.AddContVar(name, "", IRQVariable::RoleInput), index++) << name;
  }
}

TEST(RQVarList, VariablesMayShareALabel) {
  RQVarList list;
  EXPECT_EQ(list.AddContVar("a", "same", IRQVariable::RoleInput), 0);
  EXPECT_EQ(list.AddContVar("b", "same", IRQVariable::RoleInput), 1);
}

TEST(RQVarList, RefusesASecondWeight) {
  RQVarList list;
  ASSERT_EQ(list.SetWeightVar("w", "", IRQVariable::RoundingNearest), 0);
  ExpectRefused(list, [&] { return list.SetWeightVar("w2", "", IRQVariable::RoundingNearest); });
  EXPECT_EQ(list.AddContVar("w2", "", IRQVariable::RoleInput), 1) << "the refused name is still free";
}

TEST(RQVarList, TakesAWeightAfterOneWasRefusedForItsName) {
  RQVarList list;
  ASSERT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 0);
  ExpectRefused(list, [&] { return list.SetWeightVar("", "", IRQVariable::RoundingNearest); });
  ExpectRefused(list, [&] { return list.SetWeightVar("x", "", IRQVariable::RoundingNearest); });
  EXPECT_EQ(list.SetWeightVar("w", "", IRQVariable::RoundingNearest), 1);
}

TEST(RQVarList, TheWeightRoleAloneDoesNotCountAsTheWeight) {
  RQVarList list;
  EXPECT_EQ(list.AddContVar("a", "", IRQVariable::RoleFrequencyWeight), 0);
  EXPECT_EQ(list.AddContVar("b", "", IRQVariable::RoleFrequencyWeight), 1);
  EXPECT_EQ(list.SetWeightVar("w", "", IRQVariable::RoundingNearest), 2);
}

TEST(RQVarList, RefusesAMinimumAboveItsMaximum) {
  struct Row {
    double minimum;
    double maximum;
    bool accepted;
  };
  const Row rows[] = {
      {0, 1, true},
      {1, 1, true},
      {0.0, -0.0, true},
      {std::nextafter(1.0, 2.0), 1, false},
      {1, 0, false},
      {kMissing, kHighest, true},
      {kHighest, kMissing, false},
      {0, kMissing, false},
      {-kInfinity, kInfinity, true},
      {kInfinity, -kInfinity, false},
      {kNaN, 1, false},
      {0, kNaN, false},
      {kNaN, kNaN, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.minimum << " to " << row.maximum);
    RQVarList list;
    ASSERT_EQ(list.AddContVar("first", "", IRQVariable::RoleInput), 0);
    const auto addWithCuts = [&] {
      return list.AddContVar("a", "", row.minimum, row.maximum, Numbers{}, false, IRQVariable::RoleInput);
    };
    const auto addWithCount = [&] {
      return list.AddContVar("b", "", row.minimum, row.maximum, IRQVariable::RoleInput, false, 0);
    };
    if (row.accepted) {
      EXPECT_EQ(addWithCuts(), 1);
      EXPECT_EQ(addWithCount(), 2);
    } else {
      ExpectRefused(list, addWithCuts);
      ExpectRefused(list, addWithCount);
      EXPECT_EQ(list.AddContVar("a", "", IRQVariable::RoleInput), 1) << "the refused name is still free";
    }
  }
}

TEST(RQVarList, RefusesCutPointsThatDoNotAscend) {
  const std::pair<Numbers, bool> rows[] = {
      {{}, true},
      {{3}, true},
      {{3, 4}, true},
      {{3, std::nextafter(3.0, 4.0)}, true},
      {{3, 4, 5, 6}, true},
      {{-100, 100}, true},  // margins outside the range are the caller's affair
      {{-kInfinity, 0, kInfinity}, true},
      {{4, 3}, false},
      {{3, 3}, false},
      {{0.0, -0.0}, false},
      {{3, 5, 4}, false},
      {{4, 3, 5}, false},
      {{3, 4, 5, 5}, false},
      {{kNaN}, false},
      {{kNaN, 3}, false},
      {{3, kNaN}, false},
      {{3, kNaN, 4}, false},
  };
  for (const auto& [cutPoints, accepted] : rows) {
    SCOPED_TRACE(::testing::PrintToString(cutPoints));
    RQVarList list;
    ASSERT_EQ(list.AddContVar("first", "", IRQVariable::RoleInput), 0);
    const auto add = [&list, &cuts = cutPoints] {
      return list.AddContVar("x", "", 0, 10, cuts, false, IRQVariable::RoleInput);
    };
    if (accepted) {
      ASSERT_EQ(add(), 1);
      EXPECT_EQ(list.GetVariable(1)->GetCutPoints(), cutPoints);
    } else {
      ExpectRefused(list, add);
      EXPECT_EQ(list.AddContVar("x", "", IRQVariable::RoleInput), 1) << "the refused name is still free";
    }
  }
}

TEST(RQVarList, RefusesLabelsThatAreNotAsManyAsTheValues) {
  for (std::size_t values = 0; values < 4; ++values) {
    for (std::size_t labels = 0; labels < 4; ++labels) {
      SCOPED_TRACE(::testing::Message() << values << " values, " << labels << " labels");
      RQVarList list;
      ASSERT_EQ(list.AddContVar("first", "", IRQVariable::RoleInput), 0);
      const Texts labelList(labels, "label");
      const auto addNumbers = [&] {
        return list.AddCatVar("n", "", Numbers(values, 1.0), labelList, IRQVariable::RoleInput);
      };
      const auto addTexts = [&] {
        return list.AddCatVar("s", "", Texts(values, "v"), labelList, IRQVariable::RoleInput);
      };
      if (values == labels) {
        EXPECT_EQ(addNumbers(), 1);
        EXPECT_EQ(addTexts(), 2);
      } else {
        ExpectRefused(list, addNumbers);
        ExpectRefused(list, addTexts);
        EXPECT_EQ(list.AddContVar("n", "", IRQVariable::RoleInput), 1) << "the refused name is still free";
      }
    }
  }
}

TEST(RQVarList, CategoriesMayBeNoneOrRepeated) {
  RQVarList list;
  EXPECT_EQ(list.AddCatVar("none", "", Numbers{}, IRQVariable::RoleInput), 0);
  EXPECT_EQ(list.AddCatVar("no texts", "", Texts{}, IRQVariable::RoleInput), 1);
  EXPECT_EQ(list.AddCatVar("twice", "", Numbers{1, 1}, IRQVariable::RoleInput), 2);
  EXPECT_EQ(list.AddCatVar("text twice", "", Texts{"a", "a"}, IRQVariable::RoleInput), 3);
}

TEST(RQVarList, VariablesAndEncodersKeepTheirPlacesWhileTheListGrows) {
  constexpr int kCount = 5000;
  RQVarList list;
  std::vector<std::pair<IRQVariable*, IRQEncoder*>> places;
  for (int i = 0; i < kCount; ++i) {
    const std::string name = "a rather long name of a variable, number " + std::to_string(i);
    ASSERT_EQ(list.AddCatVar(name, "", Numbers{1, 2, 3}, IRQVariable::RoleInput), i);
    places.emplace_back(list.GetVarAt(i), list.GetEncoderAt(i));
  }
  ASSERT_EQ(list.Size(), kCount);
  for (int i = 0; i < kCount; ++i) {
    const auto& [variable, encoder] = places[static_cast<std::size_t>(i)];
    ASSERT_EQ(list.GetVarAt(i), variable);
    ASSERT_EQ(list.GetEncoderAt(i), encoder);
    ASSERT_LT(list.AddContVar(variable->GetName(), "", IRQVariable::RoleInput), 0) << variable->GetName();
  }
  EXPECT_EQ(list.Size(), kCount);
}

TEST(RQVarList, TheCallersTextsAndValuesAreCopied) {
  RQVarList list;
  std::string name = "name";
  Numbers values{1, 2};
  Texts labels{"one", "two"};
  ASSERT_EQ(list.AddCatVar(name, name, values, labels, IRQVariable::RoleInput), 0);
  name = "changed";
  values[0] = 9;
  labels[0] = "changed";
  EXPECT_EQ(list.GetVarAt(0)->GetName(), "name");
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "name");
  EXPECT_EQ(list.GetVariable(0)->GetNumericValues(), (Numbers{1, 2}));
  EXPECT_EQ(list.GetVariable(0)->GetLabels(), (Texts{"one", "two"}));
  EXPECT_LT(list.AddContVar("name", "", IRQVariable::RoleInput), 0);
  EXPECT_EQ(list.AddContVar("changed", "", IRQVariable::RoleInput), 1);
}

// Answers every operation with a number of its own.
class AnsweringList : public RQVarList {
 public:
  explicit AnsweringList(bool& destroyed) : fDestroyed(destroyed) {}
  ~AnsweringList() override { fDestroyed = true; }
  int AddCatVar(const std::string&, const std::string&, const Numbers&, Role) override { return 101; }
  int AddCatVar(const std::string&, const std::string&, const Texts&, Role) override { return 102; }
  int AddCatVar(const std::string&, const std::string&, const Numbers&, const Texts&, Role) override { return 103; }
  int AddCatVar(const std::string&, const std::string&, const Texts&, const Texts&, Role) override { return 104; }
  int AddContVar(const std::string&, const std::string&, Role) override { return 105; }
  int AddContVar(const std::string&, const std::string&, double, double, const Numbers&, bool, Role) override {
    return 106;
  }
  int AddContVar(const std::string&, const std::string&, double, double, Role, bool, int) override { return 107; }
  int SetWeightVar(const std::string&, const std::string&, IRQVariable::WRoundingOption) override { return 108; }
  const IRQVariable* GetVarAt(int index) const override { return fOther.GetVarAt(index); }
  IRQVariable* GetVarAt(int index) override { return fOther.GetVarAt(index + 1); }
  IRQEncoder* GetEncoderAt(int index) override { return fOther.GetEncoderAt(index + 2); }
  int Size() const override { return 109; }

  RQVarList& Other() { return fOther; }

 private:
  RQVarList fOther;
  bool& fDestroyed;
};

TEST(RQVarList, ADerivedListCanOverrideEveryOperation) {
  bool destroyed = false;
  auto answering = std::make_unique<AnsweringList>(destroyed);
  RQVarList& other = answering->Other();
  for (const char* name : {"a", "b", "c"}) other.AddContVar(name, "", IRQVariable::RoleInput);
  std::unique_ptr<RQVarList> list = std::move(answering);
  int expected = 101;
  for (const AddOperation& operation : kAddOperations) {
    SCOPED_TRACE(operation.text);
    EXPECT_EQ(operation.add(*list, "x"), expected++);
  }
  EXPECT_EQ(list->Size(), 109);
  EXPECT_EQ(std::as_const(*list).GetVarAt(0)->GetName(), "a");
  EXPECT_EQ(list->GetVarAt(0)->GetName(), "b");
  EXPECT_EQ(list->GetEncoderAt(0), other.GetEncoderAt(2));
  EXPECT_EQ(list->GetVariable(0), nullptr) << "the list itself was told nothing";
  list.reset();
  EXPECT_TRUE(destroyed);
}

// Overrides two of the overloads and leaves the rest to the list.
class RefusingList : public RQVarList {
 public:
  using RQVarList::AddCatVar;
  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values, Role role) override {
    return name == "forbidden" ? -7 : RQVarList::AddCatVar(name, label, values, role);
  }
};

TEST(RQVarList, ADerivedListCanAddRulesAndLeaveTheRestToTheBase) {
  RefusingList derived;
  RQVarList& list = derived;
  EXPECT_EQ(list.AddCatVar("forbidden", "", Numbers{1}, IRQVariable::RoleInput), -7);
  EXPECT_EQ(list.AddCatVar("allowed", "", Numbers{1}, IRQVariable::RoleInput), 0);
  EXPECT_EQ(list.AddCatVar("forbidden", "", Texts{"a"}, IRQVariable::RoleInput), 1);
  EXPECT_EQ(list.Size(), 2);
}

}  // namespace
