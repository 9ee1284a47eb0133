#ifndef RQXML_ENCODING_EXTNAMESTR_H
#define RQXML_ENCODING_EXTNAMESTR_H

#include <memory>
#include <string>

#include "rqxml/common/RQExport.h"

namespace RQMEM_NAMESPACE {

/// One name (of a variable, a file, a label) in every encoding that the product needs.
///
/// UTF-8 is the authoritative form. The others are derived from it: that of the default converter's code page, UTF-16
/// and that of the system encoding. Statuses are those of RQMEMTranscode.h, which are the only errors; std::bad_alloc
/// passes through where there is no memory for the name itself. Converters are borrowed for the call.
///
/// An object is used by one thread at a time, also where it is const: the getters refresh what is derived. The texts
/// that the getters hand out are valid until the object is changed, refreshed or destroyed.
class RQ_API ExtNameStr {
 public:
  /// An empty name.
  ExtNameStr();
  /// Copies the name with all its forms, and the error code.
  ExtNameStr(const ExtNameStr& other);
  /// Takes the name with all its forms; the other one is empty afterwards.
  ExtNameStr(ExtNameStr&& other) noexcept;
  /// Copies the name with all its forms, and the error code.
  ExtNameStr& operator=(const ExtNameStr& other);
  /// Takes the name with all its forms; the other one is empty afterwards.
  ExtNameStr& operator=(ExtNameStr&& other) noexcept;
  ~ExtNameStr();

  /// Exchanges two names with all their forms.
  void Swap(ExtNameStr& other) noexcept;

  /// Makes the name empty.
  void Clear();
  /// True when the name is empty.
  bool Empty() const;

  /// Sets the name from UTF-8.
  void SetU8(const std::string& text);
  /// Sets the name from the encoding of a converter; null for the default converter.
  void SetCP(const std::string& text, void* converter);
  /// Sets the name from generic text: UTF-8 in UTF-8 mode, else in the default converter's encoding.
  void SetGeneric(const std::string& text);
  /// Sets the name from UTF-16, one 16-bit unit in each element.
  void SetU16(const std::wstring& text);
  /// Sets the name from the system encoding. GetU16 keeps the previous name until the next other setter. The error code
  /// is the status of the default converter's form; that the text is malformed is not recorded.
  void SetSystem(const std::string& text);

  /// The name in UTF-8.
  const std::string& GetU8() const;
  /// As GetU8, zero-terminated.
  const char* GetU8Z() const;
  /// The name in the default converter's encoding. When that converter has been replaced since, this form and that in
  /// the system encoding are made anew, and the error code is the first status of the two that is not 0.
  const std::string& GetCP() const;
  /// As GetCP, zero-terminated.
  const char* GetCPZ() const;
  /// The name converted afresh into the encoding of a converter; null for the default converter. The error code is
  /// then the status of this conversion.
  std::string GetCP(void* converter) const;
  /// GetU8 in UTF-8 mode, else GetCP.
  const std::string& GetGeneric() const;
  /// As GetGeneric, zero-terminated.
  const char* GetGenericZ() const;
  /// The name in UTF-16, one 16-bit unit in each element.
  const std::wstring& GetU16() const;
  /// As GetU16, zero-terminated.
  const wchar_t* GetU16Z() const;
  /// The name in the system encoding: the text of SetSystem as it was given, until GetCP makes the forms anew.
  const std::string& GetSystem() const;
  /// As GetSystem, zero-terminated.
  const char* GetSystemZ() const;

  /// The status of the last conversion that was recorded. After a setter other than SetSystem it is that from UTF-8 to
  /// UTF-16, not that of the setter's own conversion: a character that the code page lacks is no error here. GetCP, and
  /// GetGeneric outside UTF-8 mode, may change it.
  int ErrorCode() const;

 private:
  struct Representation;

  RQ_LOCAL Representation& Rep() const;

  mutable std::unique_ptr<Representation> fRep;  // null in an object that was moved from, until it is used again
};

/// Exchanges two names with all their forms.
inline void swap(ExtNameStr& left, ExtNameStr& right) noexcept { left.Swap(right); }

/// Names are compared by their UTF-8 form, which orders them by code point.
inline bool operator==(const ExtNameStr& left, const ExtNameStr& right) { return left.GetU8() == right.GetU8(); }
inline bool operator!=(const ExtNameStr& left, const ExtNameStr& right) { return !(left == right); }
inline bool operator<(const ExtNameStr& left, const ExtNameStr& right) { return left.GetU8() < right.GetU8(); }
inline bool operator>(const ExtNameStr& left, const ExtNameStr& right) { return right < left; }
inline bool operator<=(const ExtNameStr& left, const ExtNameStr& right) { return !(right < left); }
inline bool operator>=(const ExtNameStr& left, const ExtNameStr& right) { return !(left < right); }

}  // namespace RQMEM_NAMESPACE

#endif
