// Who holds the XML library. A program of its own: an exception of the library keeps it up for the whole process.

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "tests/combiner/combining.h"
#include "tests/support/platform.h"

namespace {

using namespace rqtest;
using RQXPrsUtil::RQXSplitPMMLCombiner;

class Platform : public Combining {};

TEST_F(Platform, IsHeldByTheCombinerAsLongAsItLives) {
  ASSERT_FALSE(PlatformIsUp());
  {
    RQXSplitPMMLCombiner combiner(vars_);
    EXPECT_TRUE(PlatformIsUp());
    ASSERT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), {"1"}), Ok());
    EXPECT_TRUE(PlatformIsUp());
    ASSERT_EQ(combiner.AddModel(File("a.pmml"), {"2"}), Ok());
    EXPECT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
    EXPECT_TRUE(PlatformIsUp());
  }
  EXPECT_FALSE(PlatformIsUp());
}

TEST_F(Platform, IsLeftToOthersWhoHoldIt) {
  const PlatformGuard guard;
  { const RQXSplitPMMLCombiner combiner(vars_); }
  EXPECT_TRUE(PlatformIsUp());
}

TEST_F(Platform, CombinersMayDieInAnyOrder) {
  const std::string source = WriteFile(File("a.pmml"), Source({"x"}));
  std::optional<RQXSplitPMMLCombiner> first(vars_);
  std::optional<RQXSplitPMMLCombiner> second(vars_);
  ASSERT_EQ(first->AddModel(source, {"1"}), Ok());
  ASSERT_EQ(second->AddModel(source, {"2"}), Ok());
  ASSERT_EQ(first->ExportMiningModel(""), Ok());
  first.reset();
  EXPECT_EQ(second->AddModel(source, {"1"}), Ok());
  EXPECT_EQ(second->ExportMiningModel(File("out.pmml")), Ok());
  EXPECT_EQ(second->GetNModels(), 2);
  second.reset();
  EXPECT_FALSE(PlatformIsUp());
}

// A list that fails while it is read.
struct FailingList final : RQMTD_NAMESPACE::RQVarList {
  const RQMTD_NAMESPACE::IRQVariable* GetVarAt(int) const override { throw std::runtime_error("unreadable"); }
  RQMTD_NAMESPACE::IRQVariable* GetVarAt(int) override { return nullptr; }
  int Size() const override { return 1; }
};

TEST_F(Platform, IsNotHeldByACombinerThatCouldNotBeMade) {
  ASSERT_FALSE(PlatformIsUp());
  const FailingList list;
  EXPECT_THROW(RQXSplitPMMLCombiner combiner(list), std::runtime_error);
  EXPECT_FALSE(PlatformIsUp());
}

}  // namespace
