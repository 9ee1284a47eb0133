#include "rqxml/encoding/RQMEMConverter.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "rqxml/encoding/RQMEMCaseless.h"
#include "rqxml/encoding/RQMEMClone.h"
#include "rqxml/encoding/RQMEMCodePages.h"
#include "rqxml/encoding/RQMEMSubstitution.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace RQMEM_NAMESPACE {

namespace {

std::atomic<UConverter*> gDefaultConverter{nullptr};
std::atomic<int> gDefaultConverterID{0};
std::atomic<int> gUTF8mode{1};

std::mutex& DefaultConverterMutex() {
  static std::mutex mutex;
  return mutex;
}

/// Null for ICU's default. A warning (a name that several encodings share) is no failure.
OwnedConverter Open(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  OwnedConverter converter(ucnv_open(name, &error));
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

/// In any case of its letters, which the locale has no say in: Turkish pairs them otherwise.
bool IsWindowsNameOfLatin1(std::string_view name) {
  constexpr std::string_view kName = "windows-28591";
  const auto isSame = [](char given, char lower) {
    return caseless::LowerAscii(static_cast<unsigned char>(given)) == lower;
  };
  return std::equal(name.begin(), name.end(), kName.begin(), kName.end(), isSame);
}

OwnedConverter OpenNamed(const char* name) {
  if (const auto number = CodePageNumber(name)) {
    const std::string known = CodePageName(*number);
    return known.empty() ? nullptr : Open(known.c_str());
  }
  OwnedConverter converter = Open(name);
  if (!converter && IsWindowsNameOfLatin1(name)) converter = Open("ISO-8859-1");
  return converter;
}

OwnedConverter OpenLikeDefault() {
  const UConverter* const current = gDefaultConverter;
  UErrorCode error = U_ZERO_ERROR;
  return Open(current == nullptr ? nullptr : ucnv_getName(current, &error));
}

OwnedConverter New(const char* name) {
  OwnedConverter converter = name == nullptr ? OpenLikeDefault() : OpenNamed(name);
  if (converter) InstallSubstitution(*converter);
  return converter;
}

/// The caller holds the mutex.
void StoreDefault(OwnedConverter converter) {
  const OwnedConverter old(gDefaultConverter.exchange(converter.release()));
  ++gDefaultConverterID;
}

}  // namespace

void* QULTMBConverterNew_C(const char* name) { return New(name).release(); }

void* QULTMBConverterNew_8(const char* name) {
  if (name == nullptr) return QULTMBConverterNew_C(nullptr);
  std::array<char, kConverterNameSize> converted;
  int status = 0;
  QULTMB8toCodePage(nullptr, converted.data(), kConverterNameSize, name, -1, &status);
  return status == 0 ? QULTMBConverterNew_C(converted.data()) : nullptr;
}

void* QULTMBConverterNew_A(const char* name) {
  return qUTF8mode() != 0 ? QULTMBConverterNew_8(name) : QULTMBConverterNew_C(name);
}

void QULTMBConverterClose(void* converter) { ucnv_close(static_cast<UConverter*>(converter)); }

UConverter* QULTMBGetDefaultConverter() {
  if (UConverter* const existing = gDefaultConverter) return existing;
  const std::lock_guard lock(DefaultConverterMutex());
  if (UConverter* const existing = gDefaultConverter) return existing;
  if (OwnedConverter made = New(nullptr)) StoreDefault(std::move(made));
  return gDefaultConverter;
}

bool QULTMBSetDefaultConverter(const char* name) {
  if (name != nullptr && !IsPlainConverterName(name)) return false;
  const std::lock_guard lock(DefaultConverterMutex());
  OwnedConverter made = New(name);
  if (!made) return false;
  StoreDefault(std::move(made));
  return true;
}

int QULTMBDefaultConverterID() { return gDefaultConverterID; }

int qUTF8mode() { return gUTF8mode; }

void SetUTF8mode(int on) { gUTF8mode = on != 0 ? 1 : 0; }

}  // namespace RQMEM_NAMESPACE
