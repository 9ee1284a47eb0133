#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "rqxml/encoding/RQMEMConverter.h"

namespace RQMEM_NAMESPACE {

namespace {

void PrepareLocale() {
  std::setlocale(LC_NUMERIC, "C");
  const char* const current = std::setlocale(LC_CTYPE, nullptr);
  if (current == nullptr || std::strcmp(current, "C") != 0) return;
  std::setlocale(LC_ALL, "en_US");
  setenv("LC_ALL", "en_US", 1);
}

std::string LocaleEncoding() {
  EnableLocale();
  const char* const current = std::setlocale(LC_CTYPE, nullptr);
  const char* const point = current == nullptr ? nullptr : std::strchr(current, '.');
  return point == nullptr ? "CP1252" : point + 1;
}

}  // namespace

void EnableLocale() {
  static const bool done = [] {
    PrepareLocale();
    return true;
  }();
  static_cast<void>(done);
}

const char* SystemEncoding() {
  // Never destroyed: other static objects may ask for it in their destructors.
  alignas(std::string) static std::byte place[sizeof(std::string)];
  static const std::string& encoding = *std::construct_at(reinterpret_cast<std::string*>(place), LocaleEncoding());
  return encoding.c_str();
}

}  // namespace RQMEM_NAMESPACE
