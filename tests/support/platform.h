#ifndef TESTS_SUPPORT_PLATFORM_H
#define TESTS_SUPPORT_PLATFORM_H

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

namespace rqtest {

/// Holds the XML platform as long as it lives.
class PlatformGuard {
 public:
  PlatformGuard() { xercesc::XMLPlatformUtils::Initialize(); }
  ~PlatformGuard() { xercesc::XMLPlatformUtils::Terminate(); }
  PlatformGuard(const PlatformGuard&) = delete;
  PlatformGuard& operator=(const PlatformGuard&) = delete;
};

/// True while anybody holds the XML platform.
inline bool PlatformIsUp() { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; }

/// A test fixture whose tests run with the platform held.
class WithPlatform : public ::testing::Test {
 private:
  PlatformGuard platform_;
};

}  // namespace rqtest

#endif
