#include "fuzz_target.h"

#include <cstdio>
#include <cstdlib>
#include <xercesc/util/PlatformUtils.hpp>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  // No DTD: no entity bombs, no files of other people, no network.
  setenv("XERCES_DISABLE_DTD", "1", 1);
  xercesc::XMLPlatformUtils::Initialize();
  return 0;
}

namespace rqxml_fuzz {

void CheckEqual(const std::string& actual, const std::string& expected, const char* promise) {
  if (actual == expected) return;
  std::fprintf(stderr, "broken promise: %s\n--- expected\n%s\n--- actual\n%s\n", promise, expected.c_str(),
               actual.c_str());
  std::abort();
}

void Check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

}  // namespace rqxml_fuzz
