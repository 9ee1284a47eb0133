#ifndef RQXML_ENCODING_RQMEMCLONE_H
#define RQXML_ENCODING_RQMEMCLONE_H

#include <unicode/ucnv.h>

#include <memory>

namespace RQMEM_NAMESPACE {

/// Closes a converter.
struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

/// Owns a converter.
using OwnedConverter = std::unique_ptr<UConverter, CloseConverter>;

struct ConverterTraits;

/// What a clone is for.
enum class Direction { FromUnicode, ToUnicode };

/// A clone of a converter for one conversion in one direction; it records substitutions. Made anew for each conversion,
/// so that the converter itself may serve several threads.
class ConverterClone {
 public:
  /// Of the default converter, which is made if there is none; for reading.
  ConverterClone();
  /// @param converter what to clone
  /// @param traits    its traits
  /// @param direction what the clone can be used for
  ConverterClone(const UConverter& converter, const ConverterTraits& traits, Direction direction);
  ConverterClone(const ConverterClone&) = delete;
  ConverterClone& operator=(const ConverterClone&) = delete;

  /// False when there is no such converter, or ICU cannot clone it.
  explicit operator bool() const { return fClone != nullptr; }
  /// The clone, in its initial state.
  UConverter* Get() const { return fClone.get(); }
  /// True when a character has been replaced since the clone was made.
  bool Replaced() const { return fReplaced; }

 private:
  void Set(const UConverter& converter, const ConverterTraits& traits, Direction direction);

  bool fReplaced = false;
  OwnedConverter fClone;  // closed first: ICU calls the callbacks then
};

/// True when the text that the converter has read so far ends inside a character; for HZ and UTF-7.
bool IsInsideCharacter(const UConverter& converter);

/// A converter for UTF-8 for one conversion of text that is UTF-8 by its meaning: what is malformed becomes U+FFFD.
class Utf8Clone {
 public:
  explicit Utf8Clone(Direction direction);
  Utf8Clone(const Utf8Clone&) = delete;
  Utf8Clone& operator=(const Utf8Clone&) = delete;

  explicit operator bool() const { return fClone != nullptr; }
  UConverter* Get() const { return fClone.get(); }
  bool Replaced() const { return fReplaced; }

 private:
  bool fReplaced = false;
  OwnedConverter fClone;
};

}  // namespace RQMEM_NAMESPACE

#endif
