#ifndef TESTS_SUPPORT_COMMA_LOCALE_H
#define TESTS_SUPPORT_COMMA_LOCALE_H

#include <clocale>
#include <string>

#include "tests/support/test_locale.h"

namespace rqtest {

/// Sets the locale with a decimal comma that the build made for the tests, for as long as the object lives.
class CommaLocale {
 public:
  /// True when the locale is in force.
  bool IsSet() const { return locale_.IsSet() && std::string(std::localeconv()->decimal_point) == ","; }

 private:
  TestLocale locale_{"de_DE.UTF-8"};
};

}  // namespace rqtest

#endif
