// The program's own definition of the XML library's start stands before the library's, so that a test can make it fail.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

#define INITIALIZE_NAME "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE"

namespace {
constexpr long kNever = -1;
/// How many starts still succeed before all fail.
long startsBeforeFailure = kNever;
}  // namespace

extern "C" __attribute__((visibility("default"))) void InterposedInitialize(
    const char* locale, const char* nlsHome, xercesc::PanicHandler* panicHandler,
    xercesc::MemoryManager* memoryManager) __asm__(INITIALIZE_NAME);
extern "C" __attribute__((visibility("default"))) void InterposedInitialize(const char* locale, const char* nlsHome,
                                                                            xercesc::PanicHandler* panicHandler,
                                                                            xercesc::MemoryManager* memoryManager) {
  if (startsBeforeFailure == 0) {
    throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Scan_CouldNotOpenSource,
                                    xercesc::XMLPlatformUtils::fgMemoryManager);
  }
  if (startsBeforeFailure > 0) --startsBeforeFailure;
  void* const real = dlsym(RTLD_NEXT, INITIALIZE_NAME);
  if (real == nullptr) throw std::runtime_error("the library's start is not found");
  reinterpret_cast<decltype(&InterposedInitialize)>(real)(locale, nlsHome, panicHandler, memoryManager);
}

namespace {

using rqtest::Failure;
using RQXPrsUtil::RQSettingsParser;

/// Lets the fixture hold the library, and makes every start after that fail.
class FailingStart {
 public:
  FailingStart() { startsBeforeFailure = 1; }
  ~FailingStart() { startsBeforeFailure = kNever; }
  FailingStart(const FailingStart&) = delete;
  FailingStart& operator=(const FailingStart&) = delete;
};

class SettingsStartFailure : private FailingStart, public rqtest::WithSettings {};

TEST_F(SettingsStartFailure, IsReportedByEveryOperationAndTouchesNoStream) {
  EXPECT_EQ(parser_.GetStatus(), Failure(103));
  ExpectEveryGetterGives(Failure(103));
  ExpectBothFillsGive(Failure(103));
  std::istringstream stream(rqtest::Settings(rqtest::Valued("p", "1")));
  EXPECT_EQ(parser_.ParseToDOM(stream), Failure(103));
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.tellg(), std::streampos(0));
  EXPECT_EQ(parser_.GetStatus(), Failure(103));
  ExpectEveryGetterGives(Failure(103));
  ExpectBothFillsGive(Failure(103));
}

}  // namespace
