#ifndef TESTS_SUPPORT_COMMA_LOCALE_H
#define TESTS_SUPPORT_COMMA_LOCALE_H

#include <stdlib.h>

#include <clocale>
#include <optional>
#include <string>

namespace rqtest {

/// Sets the locale with a decimal comma that the build made for the tests, for as long as the object lives.
class CommaLocale {
 public:
  CommaLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    const char* const path = getenv("LOCPATH");
    if (path != nullptr) path_ = path;
    setenv("LOCPATH", RQXML_TEST_LOCALE_DIR, 1);
    set_ = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
  }
  ~CommaLocale() {
    std::setlocale(LC_ALL, before_.c_str());
    path_ ? setenv("LOCPATH", path_->c_str(), 1) : unsetenv("LOCPATH");
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  /// True when the locale is in force.
  bool IsSet() const { return set_ && std::string(std::localeconv()->decimal_point) == ","; }

 private:
  std::string before_;
  std::optional<std::string> path_;
  bool set_ = false;
};

}  // namespace rqtest

#endif
