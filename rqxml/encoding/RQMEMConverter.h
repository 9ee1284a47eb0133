#ifndef RQXML_ENCODING_RQMEMCONVERTER_H
#define RQXML_ENCODING_RQMEMCONVERTER_H

/// @file
/// The process's locale and system encoding, converters, the default converter and the UTF-8 mode.
///
/// Threads: the first use of the locale, the system encoding and the default converter is guarded, and the UTF-8 mode
/// is atomic. Conversions work on clones, so that they may run in several threads, also with one converter. Not safe
/// beside other threads: EnableLocale (and the first SystemEncoding) while others read the locale or the environment,
/// QULTMBSetDefaultConverter and QULTMBConverterClose while others use the converter that they close.

#include "rqxml/common/RQExport.h"

/// A converter of ICU.
struct UConverter;

namespace RQMEM_NAMESPACE {

/// Puts the runtime's locale into a usable state; only the first call in the process does anything.
///
/// Sets the numeric category to "C". Where the character-type category is "C", as at the start of a program, it then
/// sets all categories to "en_US" and LC_ALL=en_US in the environment. A locale that is not there is passed over.
RQ_API void EnableLocale();

/// The encoding part of the character-type locale: what follows the first point in its name, "CP1252" when there is no
/// point. Calls EnableLocale. The first call decides; the text lives as long as the process.
RQ_API const char* SystemEncoding();

/// Opens a converter for a code-page number ("1252") or an encoding name, given in the system's code page.
///
/// Digits alone, with a value from 1 to 99999, are a code-page number. Characters that an encoding lacks become the
/// byte 3F, or the encoding's own substitute where it takes no single byte; some that are not visible vanish. A caller
/// who uses the converter with ICU directly finds the status -100 after an unassigned and -101 after an illegal
/// character, except where ICU loses them; QULTMB... functions report every replaced character.
/// @param name the name; null opens the encoding of the default converter, or ICU's default one if there is none yet
/// @return a converter of ICU, which the caller closes (QULTMBConverterClose); null when it cannot be opened
RQ_API void* QULTMBConverterNew_C(const char* name);

/// As QULTMBConverterNew_C, for a name in UTF-8, which is converted by the default converter first.
/// @return null, too, when the name is malformed, changes in the conversion or takes more than 59 bytes
RQ_API void* QULTMBConverterNew_8(const char* name);

/// QULTMBConverterNew_8 in UTF-8 mode, else QULTMBConverterNew_C.
RQ_API void* QULTMBConverterNew_A(const char* name);

/// Closes a converter that a QULTMBConverterNew function made, never the default one; null is allowed.
RQ_API void QULTMBConverterClose(void* converter);

/// The default converter, made by the first call that needs it: ICU's default one, which is UTF-8 on Linux.
///
/// It belongs to the library and is valid until QULTMBSetDefaultConverter replaces it. Null when ICU cannot make it.
RQ_API UConverter* QULTMBGetDefaultConverter();

/// Replaces the default converter, and closes the old one. A null name makes a new one of the same encoding.
/// @param name a code-page number or encoding name, printable ASCII of at most 59 bytes, which is not converted
/// @return false when no such converter can be opened; nothing has changed then
RQ_API bool QULTMBSetDefaultConverter(const char* name);

/// How many times the default converter was made: 0 before it is needed, 1 after, one more for each replacement.
RQ_API int QULTMBDefaultConverterID();

/// 1 when UTF-8 mode is on, as at the start, else 0: whether "generic" 8-bit text is UTF-8 or in the encoding of the
/// default converter.
RQ_API int qUTF8mode();

/// Switches UTF-8 mode on (any value but 0) or off, for later calls.
RQ_API void SetUTF8mode(int on);

/// Owns a converter and closes it.
class QULTMBConverterHandle {
 public:
  /// Takes ownership of a converter that a QULTMBConverterNew function made; null for none.
  explicit QULTMBConverterHandle(void* converter = nullptr) noexcept : fConverter(converter) {}
  ~QULTMBConverterHandle() { QULTMBConverterClose(fConverter); }
  QULTMBConverterHandle(const QULTMBConverterHandle&) = delete;
  QULTMBConverterHandle& operator=(const QULTMBConverterHandle&) = delete;
  /// Leaves the other one empty.
  QULTMBConverterHandle(QULTMBConverterHandle&& other) noexcept : fConverter(other.Release()) {}
  /// Closes the own converter, and leaves the other one empty.
  QULTMBConverterHandle& operator=(QULTMBConverterHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }

  /// The converter, still owned; null for none.
  void* Get() const noexcept { return fConverter; }
  /// True when there is a converter.
  explicit operator bool() const noexcept { return fConverter != nullptr; }
  /// Hands the converter to the caller.
  void* Release() noexcept {
    void* const released = fConverter;
    fConverter = nullptr;
    return released;
  }
  /// Closes the converter and takes ownership of another one.
  void Reset(void* converter = nullptr) noexcept {
    QULTMBConverterClose(fConverter);
    fConverter = converter;
  }

 private:
  void* fConverter;
};

}  // namespace RQMEM_NAMESPACE

#endif
