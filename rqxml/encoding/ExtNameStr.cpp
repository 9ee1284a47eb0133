#include "rqxml/encoding/ExtNameStr.h"

#include <utility>

#include "rqxml/encoding/RQMEMCodePages.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMSubstitution.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace RQMEM_NAMESPACE {

namespace {

/// The converter for the system encoding, opened by its name as it stands, and kept: opening one for each name would
/// cost more than all conversions of the name. Null when there is none.
void* KeptSystemConverter() {
  static void* const converter = QULTMBConverterNew_C(SystemEncoding());
  return converter;
}

/// True when the system encoding's name is the same in UTF-8 and in the default converter's encoding.
bool IsNameSameInDefault() {
  const UConverter* const converter = QULTMBGetDefaultConverter();
  if (converter == nullptr || TraitsOf(*converter).ascii == AsciiRange::None) return false;
  static const bool isPlain = IsPlainConverterName(SystemEncoding());
  return isPlain;
}

/// A converter for the system encoding, as QULTMBConverterNew_A opens it.
class SystemConverter {
 public:
  SystemConverter() : fIsKept(qUTF8mode() == 0 || IsNameSameInDefault()) {
    if (!fIsKept) fOwn.Reset(QULTMBConverterNew_8(SystemEncoding()));
  }

  /// Null: the default converter serves.
  void* Get() const { return fIsKept ? KeptSystemConverter() : fOwn.Get(); }

 private:
  const bool fIsKept;
  QULTMBConverterHandle fOwn;
};

}  // namespace

struct ExtNameStr::Representation {
  std::string U8;
  std::string CP;
  int stamp = -1;
  int error = 0;
  std::wstring U16;
  std::string System;

  /// The forms in the default converter's encoding and in the system encoding.
  void RefreshCodePages() {
    stamp = QULTMBDefaultConverterID();
    error = QULTMBU8ToCodePage(nullptr, CP, U8);
    const int status = QULTMBU8ToCodePage(SystemConverter().Get(), System, U8);
    if (error == 0) error = status;
  }

  /// Everything. The error is that of the UTF-16 form, whatever the code pages lack.
  void Refresh() {
    RefreshCodePages();
    error = QULTMBU8ToU16(U16, U8);
  }

  void RefreshIfReplaced() {
    if (stamp != QULTMBDefaultConverterID()) RefreshCodePages();
  }
};

ExtNameStr::Representation& ExtNameStr::Rep() const {
  if (!fRep) fRep = std::make_unique<Representation>();
  return *fRep;
}

ExtNameStr::ExtNameStr() : fRep(std::make_unique<Representation>()) {}

ExtNameStr::ExtNameStr(const ExtNameStr& other) : fRep(std::make_unique<Representation>()) { *this = other; }

ExtNameStr::ExtNameStr(ExtNameStr&& other) noexcept = default;

ExtNameStr& ExtNameStr::operator=(const ExtNameStr& other) {
  if (this != &other) Rep() = other.Rep();
  return *this;
}

ExtNameStr& ExtNameStr::operator=(ExtNameStr&& other) noexcept = default;

ExtNameStr::~ExtNameStr() = default;

void ExtNameStr::Swap(ExtNameStr& other) noexcept { fRep.swap(other.fRep); }

void ExtNameStr::Clear() {
  Rep().error = 0;
  Rep().U8.clear();
  Rep().Refresh();
}

bool ExtNameStr::Empty() const { return Rep().U8.empty(); }

void ExtNameStr::SetU8(const std::string& text) {
  Rep().error = 0;
  Rep().U8 = text;
  Rep().Refresh();
}

void ExtNameStr::SetCP(const std::string& text, void* converter) {
  Rep().error = QULTMBCodePageToU8(converter, Rep().U8, text);
  Rep().Refresh();
}

void ExtNameStr::SetGeneric(const std::string& text) {
  Rep().error = QULTMBGenericToU8(Rep().U8, text);
  Rep().Refresh();
}

void ExtNameStr::SetU16(const std::wstring& text) {
  Rep().error = QULTMBU16ToU8(Rep().U8, text);
  Rep().Refresh();
}

void ExtNameStr::SetSystem(const std::string& text) {
  std::string kept = text;  // the argument may be one of the own forms
  Rep().RefreshCodePages();
  Rep().System = std::move(kept);
  QULTMBCodePageToU8(SystemConverter().Get(), Rep().U8, Rep().System);
  Rep().error = QULTMBU8ToCodePage(nullptr, Rep().CP, Rep().U8);
}

const std::string& ExtNameStr::GetU8() const { return Rep().U8; }

const char* ExtNameStr::GetU8Z() const { return GetU8().c_str(); }

const std::string& ExtNameStr::GetCP() const {
  Rep().RefreshIfReplaced();
  return Rep().CP;
}

const char* ExtNameStr::GetCPZ() const { return GetCP().c_str(); }

std::string ExtNameStr::GetCP(void* converter) const {
  std::string converted;
  Rep().error = QULTMBU8ToCodePage(converter, converted, Rep().U8);
  return converted;
}

const std::string& ExtNameStr::GetGeneric() const { return qUTF8mode() != 0 ? GetU8() : GetCP(); }

const char* ExtNameStr::GetGenericZ() const { return GetGeneric().c_str(); }

const std::wstring& ExtNameStr::GetU16() const { return Rep().U16; }

const wchar_t* ExtNameStr::GetU16Z() const { return GetU16().c_str(); }

const std::string& ExtNameStr::GetSystem() const { return Rep().System; }

const char* ExtNameStr::GetSystemZ() const { return GetSystem().c_str(); }

int ExtNameStr::ErrorCode() const { return Rep().error; }

}  // namespace RQMEM_NAMESPACE
