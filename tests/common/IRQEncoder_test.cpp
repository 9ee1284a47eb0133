#include "rqxml/common/IRQEncoder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "virtual_slot.h"

namespace {

using RQMTD_NAMESPACE::IRQEncoder;

static_assert(std::is_abstract_v<IRQEncoder>);
static_assert(std::has_virtual_destructor_v<IRQEncoder>);

class RecordingEncoder : public IRQEncoder {
 public:
  explicit RecordingEncoder(std::vector<std::string>& calls) : fCalls(calls) {}
  ~RecordingEncoder() override { fCalls.push_back("destroyed"); }
  void SetBinLabels(const std::vector<std::string>& labels) override { fCalls.push_back("bins " + labels.at(0)); }
  void AddNumMissingValue(double value, const std::string& label) override {
    fCalls.push_back("number " + std::to_string(value) + " " + label);
  }
  void AddStrMissingValue(const std::string& value, const std::string& label) override {
    fCalls.push_back("text " + value + " " + label);
  }
  void SetInvalidRange(double lower, double upper) override {
    fCalls.push_back("range " + std::to_string(lower) + " " + std::to_string(upper));
  }

 private:
  std::vector<std::string>& fCalls;
};

TEST(IRQEncoder, EveryCallThroughTheInterfaceReachesTheOverride) {
  std::vector<std::string> calls;
  RecordingEncoder recording(calls);
  IRQEncoder& encoder = recording;
  encoder.SetBinLabels({"low", "high"});
  encoder.AddNumMissingValue(-9, "refused");
  encoder.AddStrMissingValue("N/A", "not asked");
  encoder.SetInvalidRange(90, 99);
  EXPECT_EQ(calls, (std::vector<std::string>{"bins low", "number -9.000000 refused", "text N/A not asked",
                                             "range 90.000000 99.000000"}));
}

TEST(IRQEncoder, DestructionThroughTheInterfaceReachesTheDerivedClass) {
  std::vector<std::string> calls;
  std::unique_ptr<IRQEncoder> encoder = std::make_unique<RecordingEncoder>(calls);
  encoder.reset();
  EXPECT_EQ(calls, std::vector<std::string>{"destroyed"});
}

TEST(IRQEncoder, OperationsFollowTheDestructorInTheirFixedOrder) {
  if (!RQ_TEST_SEES_VIRTUAL_SLOTS) GTEST_SKIP() << "the order of virtual operations cannot be seen here";
  EXPECT_EQ(VirtualSlot(&IRQEncoder::SetBinLabels), 2U);
  EXPECT_EQ(VirtualSlot(&IRQEncoder::AddNumMissingValue), 3U);
  EXPECT_EQ(VirtualSlot(&IRQEncoder::AddStrMissingValue), 4U);
  EXPECT_EQ(VirtualSlot(&IRQEncoder::SetInvalidRange), 5U);
}

}  // namespace
