// Makes every single allocation of an operation fail once, until the operation succeeds. This program replaces operator
// new, also for the library under test.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "rqxml/common/RQUniStats.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/common/RQXMLFormat.h"

namespace {

constexpr long kNever = -1;

// How many allocations still succeed before one fails.
long gUntilFailure = kNever;
long gAllocations = 0;
long gReleases = 0;

void* Allocate(std::size_t size) {
  if (gUntilFailure == 0) {
    gUntilFailure = kNever;
    throw std::bad_alloc();
  }
  if (gUntilFailure > 0) --gUntilFailure;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++gAllocations;
  return memory;
}

void Release(void* memory) noexcept {
  if (memory != nullptr) ++gReleases;
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { Release(memory); }
void operator delete[](void* memory) noexcept { Release(memory); }
void operator delete(void* memory, std::size_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Release(memory); }

namespace {

using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQEncoder;
using RQMTD_NAMESPACE::RQUniStats;
using RQMTD_NAMESPACE::RQVariable;
using RQMTD_NAMESPACE::RQVarList;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// Texts that do not fit into the string object, so that each copy allocates.
const std::string kName = "a name that is too long for the string object itself";
const std::string kLabel = "a label that is too long for the string object itself";
const Numbers kNumbers{1, 2, 3};
const Texts kTexts{"a first text that is too long for the object", "a second text that is too long for the object",
                   "short"};

// Runs the operation with the n-th allocation failing, for n = 1, 2, ..., until it succeeds; after each failure the
// check runs. Returns how often the operation failed.
template <typename Operation, typename Check>
int FailEachAllocation(Operation operation, Check check) {
  constexpr int kTooMany = 1000;
  for (int failures = 0; failures < kTooMany; ++failures) {
    gUntilFailure = failures;
    try {
      operation();
      gUntilFailure = kNever;
      return failures;
    } catch (const std::bad_alloc&) {
      gUntilFailure = kNever;
    }
    check();
  }
  ADD_FAILURE() << "the operation never succeeded";
  return kTooMany;
}

struct AddOperation {
  const char* text;
  int fewestAllocations;  // the variable and what it copies
  int (*add)(RQVarList& list);
};

const AddOperation kAddOperations[] = {
    {"numeric categories", 4,
     [](RQVarList& list) { return list.AddCatVar(kName, kLabel, kNumbers, IRQVariable::RoleInput); }},
    {"string categories", 6,
     [](RQVarList& list) { return list.AddCatVar(kName, kLabel, kTexts, IRQVariable::RoleInput); }},
    {"labelled numeric categories", 7,
     [](RQVarList& list) { return list.AddCatVar(kName, kLabel, kNumbers, kTexts, IRQVariable::RoleInput); }},
    {"labelled string categories", 9,
     [](RQVarList& list) { return list.AddCatVar(kName, kLabel, kTexts, kTexts, IRQVariable::RoleInput); }},
    {"continuous", 3, [](RQVarList& list) { return list.AddContVar(kName, kLabel, IRQVariable::RoleInput); }},
    {"continuous with cut points", 4,
     [](RQVarList& list) { return list.AddContVar(kName, kLabel, 0, 9, kNumbers, true, IRQVariable::RoleInput); }},
    {"continuous with count", 3,
     [](RQVarList& list) { return list.AddContVar(kName, kLabel, 0, 9, IRQVariable::RoleInput, true, 2); }},
    {"weight", 3, [](RQVarList& list) { return list.SetWeightVar(kName, kLabel, IRQVariable::RoundingNearest); }},
};

void AddPlain(RQVarList& list, int count) {
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(list.AddContVar("v" + std::to_string(i), "", IRQVariable::RoleInput), i);
  }
}

std::vector<const IRQVariable*> Variables(const RQVarList& list) {
  std::vector<const IRQVariable*> variables;
  for (int i = 0; i < list.Size(); ++i) variables.push_back(list.GetVarAt(i));
  return variables;
}

// Every allocation of one add operation fails in turn while the list holds so many variables.
void FailEachAllocationOfAdding(const AddOperation& operation, int size) {
  RQVarList list;
  AddPlain(list, size);
  const auto before = Variables(list);
  int index = -1;
  const int failures = FailEachAllocation([&] { index = operation.add(list); },
                                          [&] {
                                            ASSERT_EQ(list.Size(), size);
                                            ASSERT_EQ(Variables(list), before);
                                            ASSERT_EQ(list.GetVarAt(size), nullptr);
                                            ASSERT_EQ(list.GetEncoderAt(size), nullptr);
                                          });
  EXPECT_GE(failures, operation.fewestAllocations);
  EXPECT_EQ(index, size) << "the name, or the weight, counts as used after a failure";
  EXPECT_EQ(list.Size(), size + 1);
  EXPECT_LT(operation.add(list), 0) << "the name is not known after success";
}

TEST(Memory, AnAddThatRunsOutOfMemoryHasAddedNothingAtEverySizeOfTheList) {
  for (const AddOperation& operation : kAddOperations) {
    for (int size = 0; size < 70; ++size) {
      SCOPED_TRACE(::testing::Message() << operation.text << ", " << size << " variables");
      FailEachAllocationOfAdding(operation, size);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

TEST(Memory, AListGrowsOnNormallyAfterAFailureOfEveryAllocation) {
  RQVarList list;
  for (int i = 0; i < 200; ++i) {
    const std::string name = "a name that is too long for the string object, number " + std::to_string(i);
    int index = -1;
    FailEachAllocation([&] { index = list.AddCatVar(name, kLabel, kTexts, IRQVariable::RoleInput); },
                       [&] { ASSERT_EQ(list.Size(), i); });
    ASSERT_EQ(index, i);
  }
  for (int i = 0; i < list.Size(); ++i) {
    ASSERT_EQ(list.GetVariable(i)->GetStringValues(), kTexts);
    ASSERT_LT(list.AddContVar(list.GetVarAt(i)->GetName(), "", IRQVariable::RoleInput), 0);
  }
}

TEST(Memory, ARefusalTakesNoMemory) {
  RQVarList list;
  ASSERT_EQ(list.SetWeightVar(kName, kLabel, IRQVariable::RoundingNearest), 0);
  for (const AddOperation& operation : kAddOperations) {
    const long before = gAllocations;
    EXPECT_LT(operation.add(list), 0);
    EXPECT_EQ(gAllocations, before) << operation.text;
  }
}

TEST(Memory, AListThatCannotBeMadeThrows) {
  std::unique_ptr<RQVarList> list;
  const int failures = FailEachAllocation([&] { list = std::make_unique<RQVarList>(); }, [&] { ASSERT_FALSE(list); });
  EXPECT_GE(failures, 1);
  EXPECT_EQ(list->Size(), 0);
}

TEST(Memory, EverythingIsGivenBack) {
  const long before = gAllocations - gReleases;
  {
    RQVarList list;
    for (const AddOperation& operation : kAddOperations) {
      int index = -1;
      FailEachAllocation([&] { index = operation.add(list); }, [] {});
    }
    list.GetEncoderAt(0)->SetBinLabels(kTexts);
    list.GetEncoderAt(0)->AddStrMissingValue(kName, kLabel);
    RQUniStats stats(kName, 3, RQUniStats::SummStats(), kNumbers, Numbers{1, 2});
    RQUniStats copy;
    copy = stats;
  }
  EXPECT_EQ(gAllocations - gReleases, before);
}

TEST(Memory, AnEncoderThatRunsOutOfMemoryIsAsItWas) {
  // The first fits where an old label stands, the second does not.
  const Texts otherLabels{"x", kName + kName};
  RQEncoder encoder;
  int failures =
      FailEachAllocation([&] { encoder.SetInvalidRange(1, 2); }, [&] { ASSERT_FALSE(encoder.HasInvalidRange()); });
  EXPECT_GE(failures, 1);
  FailEachAllocation([&] { encoder.SetBinLabels(kTexts); }, [&] { ASSERT_TRUE(encoder.GetBinLabels().empty()); });
  failures = FailEachAllocation([&] { encoder.SetBinLabels(otherLabels); },
                                [&] { ASSERT_EQ(encoder.GetBinLabels(), kTexts); });
  EXPECT_EQ(failures, 2);
  EXPECT_EQ(encoder.GetBinLabels(), otherLabels);
  for (std::size_t i = 0; i < 5; ++i) {
    failures = FailEachAllocation([&] { encoder.AddNumMissingValue(1, kLabel); },
                                  [&] { ASSERT_EQ(encoder.GetNumMissingValues().size(), i); });
    EXPECT_GE(failures, 1);
    failures = FailEachAllocation([&] { encoder.AddStrMissingValue(kName, kLabel); },
                                  [&] { ASSERT_EQ(encoder.GetStrMissingValues().size(), i); });
    EXPECT_GE(failures, 2);
  }
  for (const auto& [value, label] : encoder.GetNumMissingValues()) EXPECT_EQ(label, kLabel) << value;
  for (const auto& [value, label] : encoder.GetStrMissingValues()) EXPECT_EQ(value + label, kName + kLabel);
  EXPECT_EQ(encoder.GetInvalidUpper(), 2);
}

TEST(Memory, AFreshEncoderThatRunsOutOfMemoryStillKnowsNothing) {
  const std::function<void(RQEncoder&)> operations[] = {
      [](RQEncoder& encoder) { encoder.SetBinLabels(kTexts); },
      [](RQEncoder& encoder) { encoder.AddNumMissingValue(1, kLabel); },
      [](RQEncoder& encoder) { encoder.AddStrMissingValue(kName, kLabel); },
      [](RQEncoder& encoder) { encoder.SetInvalidRange(1, 2); },
  };
  for (const auto& operation : operations) {
    RQEncoder encoder;
    const int failures = FailEachAllocation([&] { operation(encoder); },
                                            [&] {
                                              ASSERT_TRUE(encoder.GetBinLabels().empty());
                                              ASSERT_TRUE(encoder.GetNumMissingValues().empty());
                                              ASSERT_TRUE(encoder.GetStrMissingValues().empty());
                                              ASSERT_FALSE(encoder.HasInvalidRange());
                                            });
    EXPECT_GE(failures, 1);
  }
}

TEST(Memory, AssigningStatisticsThatRunsOutOfMemoryLeavesTheOldOnes) {
  const RQUniStats original(kName, 3, RQUniStats::SummStats(), kNumbers, Numbers{1, 2});
  RQUniStats stats(kLabel, 7, Numbers{7});
  const int failures = FailEachAllocation([&] { stats = original; },
                                          [&] {
                                            ASSERT_EQ(stats.GetName(), kLabel);
                                            ASSERT_EQ(stats.GetTotalFrequency(), 7);
                                            ASSERT_EQ(stats.GetFrequencies(), Numbers{7});
                                            ASSERT_FALSE(stats.IsContinuous());
                                            ASSERT_TRUE(stats.IsValid());
                                          });
  EXPECT_EQ(failures, 3);
  EXPECT_EQ(stats.GetName(), kName);
  EXPECT_EQ(stats.GetCutPoints(), kNumbers);
}

TEST(Memory, AFormatThatRunsOutOfMemoryLeavesTheBufferAlone) {
  std::vector<char> buffer(32, '#');
  std::string text;
  const int failures = FailEachAllocation([&] { text = RQXML_NAMESPACE::Format(1.0 / 3, false, buffer.data()); },
                                          [&] { ASSERT_EQ(buffer, std::vector<char>(32, '#')); });
  EXPECT_EQ(failures, 1);
  EXPECT_EQ(text, "0.3333333333333333");
  EXPECT_EQ(std::string(buffer.data()), text);
}

TEST(Memory, FormatTakesNoneForShortTexts) {
  std::vector<char> buffer(32);
  const long before = gAllocations;
  EXPECT_EQ(RQXML_NAMESPACE::Format(12.5, false, buffer.data()), "12.5");
  EXPECT_EQ(gAllocations, before);
}

}  // namespace
