#ifndef TESTS_SUPPORT_FAILING_START_H
#define TESTS_SUPPORT_FAILING_START_H

// The program's own definition of the XML library's start stands before the library's, so that a test can make it fail.
// Include it in exactly one source of a program whose symbols are exported, and link the loader's library.

#include <dlfcn.h>

#include <stdexcept>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#define INITIALIZE_NAME "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE"

namespace rqtest {

constexpr long kNever = -1;
/// How many starts still succeed before all fail.
inline long startsBeforeFailure = kNever;

/// Lets the fixture hold the library, and makes every start after that fail.
class FailingStart {
 public:
  FailingStart() { startsBeforeFailure = 1; }
  ~FailingStart() { startsBeforeFailure = kNever; }
  FailingStart(const FailingStart&) = delete;
  FailingStart& operator=(const FailingStart&) = delete;
};

}  // namespace rqtest

extern "C" __attribute__((visibility("default"))) void InterposedInitialize(
    const char* locale, const char* nlsHome, xercesc::PanicHandler* panicHandler,
    xercesc::MemoryManager* memoryManager) __asm__(INITIALIZE_NAME);
extern "C" __attribute__((visibility("default"))) void InterposedInitialize(const char* locale, const char* nlsHome,
                                                                            xercesc::PanicHandler* panicHandler,
                                                                            xercesc::MemoryManager* memoryManager) {
  using rqtest::startsBeforeFailure;
  if (startsBeforeFailure == 0) {
    throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Scan_CouldNotOpenSource,
                                    xercesc::XMLPlatformUtils::fgMemoryManager);
  }
  if (startsBeforeFailure > 0) --startsBeforeFailure;
  void* const real = dlsym(RTLD_NEXT, INITIALIZE_NAME);
  if (real == nullptr) throw std::runtime_error("the library's start is not found");
  reinterpret_cast<decltype(&InterposedInitialize)>(real)(locale, nlsHome, panicHandler, memoryManager);
}

#endif
