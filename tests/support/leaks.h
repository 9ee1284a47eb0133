#ifndef TESTS_SUPPORT_LEAKS_H
#define TESTS_SUPPORT_LEAKS_H

#include "tests/support/address_sanitizer.h"

#ifdef RQTEST_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace rqtest {

/// While it lives the leak checker looks away. For steps in which the XML library itself loses memory: some bytes for
/// each external DTD, and some for an input whose very first read throws.
class LeaksOfTheLibrary {
 public:
#ifdef RQTEST_ADDRESS_SANITIZER
  LeaksOfTheLibrary() { __lsan_disable(); }
  ~LeaksOfTheLibrary() { __lsan_enable(); }
#else
  LeaksOfTheLibrary() {}
  ~LeaksOfTheLibrary() {}
#endif
  LeaksOfTheLibrary(const LeaksOfTheLibrary&) = delete;
  LeaksOfTheLibrary& operator=(const LeaksOfTheLibrary&) = delete;
};

}  // namespace rqtest

#endif
