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

/// A clone of a converter for one conversion; it records substitutions. Made anew for each conversion, so that the
/// converter itself may serve several threads.
class ConverterClone {
 public:
  /// @param converter what to clone; null for the default converter, which is made if there is none
  explicit ConverterClone(void* converter);
  ConverterClone(const ConverterClone&) = delete;
  ConverterClone& operator=(const ConverterClone&) = delete;

  /// False when there is no such converter, or ICU cannot clone it.
  explicit operator bool() const { return fClone != nullptr; }
  /// The clone, in its initial state.
  UConverter* Get() const { return fClone.get(); }
  /// True when a character has been replaced since the clone was made.
  bool Replaced() const { return fReplaced; }

 private:
  bool fReplaced = false;
  OwnedConverter fClone;  // closed first: ICU calls the callbacks then
};

}  // namespace RQMEM_NAMESPACE

#endif
