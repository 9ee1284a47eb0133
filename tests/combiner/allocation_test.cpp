// Every allocation of merging and writing fails once: nothing may be left behind but what the library itself leaves,
// and a good status must stand for the whole document.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/combiner/combining.h"
#include "tests/support/failing_heap.h"

namespace {

using namespace rqtest;
using RQCommon::RQStatus;
using RQXPrsUtil::RQXSplitPMMLCombiner;

const std::string& First() {
  static const std::string document =
      InPmml("<Header copyright='long enough for an allocation of its own'/>" +
             Dictionary(NamedField("a name that is too long for a short string", {"a", "b"}) + NamedField("x")) +
             "<TransformationDictionary><DerivedField name='d'/></TransformationDictionary>" +
             Model({"a name that is too long for a short string", "x"}));
  return document;
}

const std::string& Second() {
  static const std::string document =
      InPmml(Dictionary(NamedField("a name that is too long for a short string", {"b", "a value as long as that"}) +
                        NamedField("z", {"1"})) +
             Model({"x", "z"}));
  return document;
}

class CombinerAllocation : public WithFailingHeap {
 protected:
  CombinerAllocation() : WithFailingHeap(First()) {}
};

TEST_F(CombinerAllocation, EachMayFailInMergingAndWriting) {
  const TempFolder folder;
  const std::string first = WriteFile(folder.File("first.pmml"), First());
  const std::string second = WriteFile(folder.File("second.pmml"), Second());
  const std::string out = folder.File("out.pmml");
  RQMTD_NAMESPACE::RQVarList vars;
  AddRegion(vars);
  std::string expected;
  FailEachOnceWithoutLeaks([&](long allocation) {
    std::optional<RQXSplitPMMLCombiner> combiner;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      combiner.emplace(vars);
      RQStatus status = combiner->AddModel(first, {"1"});
      if (status.IsOK()) status = combiner->AddModel(second, {"2"});
      return status.IsOK() ? combiner->ExportMiningModel(out) : status;
    });
    if (combiner) combiner->ExportMiningModel("");
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      if (expected.empty()) expected = ReadFile(out);
      ASSERT_EQ(ReadFile(out), expected) << "a good status for less than the whole, allocation " << allocation;
    }
    // A new combiner works.
    RQXSplitPMMLCombiner again(vars);
    ASSERT_EQ(again.AddModel(first, {"1"}), Ok()) << allocation;
    ASSERT_EQ(again.AddModel(second, {"2"}), Ok()) << allocation;
    ASSERT_EQ(again.ExportMiningModel(out), Ok()) << allocation;
    ASSERT_EQ(ReadFile(out), expected) << allocation;
  });
}

TEST_F(CombinerAllocation, RepeatedMergingDoesNotGrow) {
  const TempFolder folder;
  const std::string first = WriteFile(folder.File("first.pmml"), First());
  RQMTD_NAMESPACE::RQVarList vars;
  AddRegion(vars);
  ExpectNoGrowth([&] {
    RQXSplitPMMLCombiner combiner(vars);
    EXPECT_EQ(combiner.AddModel(first, {"1"}), Ok());
    EXPECT_EQ(combiner.AddModel(first, {"2"}), Ok());
    EXPECT_EQ(combiner.ExportMiningModel(folder.File("out.pmml")), Ok());
  });
}

}  // namespace
