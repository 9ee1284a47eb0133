#ifndef TESTS_SUPPORT_ADDRESS_SANITIZER_H
#define TESTS_SUPPORT_ADDRESS_SANITIZER_H

#if defined(__SANITIZE_ADDRESS__)
#define RQTEST_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RQTEST_ADDRESS_SANITIZER 1
#endif
#endif

namespace rqtest {

/// True in builds with the address sanitizer, which takes more address space than a test may want to allow.
#ifdef RQTEST_ADDRESS_SANITIZER
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

}  // namespace rqtest

#endif
