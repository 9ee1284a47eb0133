#ifndef TESTS_SUPPORT_TEST_LOCALE_H
#define TESTS_SUPPORT_TEST_LOCALE_H

#include <stdlib.h>

#include <clocale>
#include <optional>
#include <string>

namespace rqtest {

/// Sets one of the locales that the build made for the tests (cmake/TestLocales.cmake), in all categories, for as long
/// as the object lives.
class TestLocale {
 public:
  explicit TestLocale(const std::string& name) : before_(std::setlocale(LC_ALL, nullptr)) {
    const char* const path = getenv("LOCPATH");
    if (path != nullptr) path_ = path;
    setenv("LOCPATH", RQXML_TEST_LOCALE_DIR, 1);
    set_ = std::setlocale(LC_ALL, name.c_str()) != nullptr;
  }
  ~TestLocale() {
    std::setlocale(LC_ALL, before_.c_str());
    path_ ? setenv("LOCPATH", path_->c_str(), 1) : unsetenv("LOCPATH");
  }
  TestLocale(const TestLocale&) = delete;
  TestLocale& operator=(const TestLocale&) = delete;

  /// True when the locale is in force.
  bool IsSet() const { return set_; }

 private:
  std::string before_;
  std::optional<std::string> path_;
  bool set_ = false;
};

}  // namespace rqtest

#endif
