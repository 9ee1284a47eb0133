#ifndef RQXML_TOOLS_DECODER_H
#define RQXML_TOOLS_DECODER_H

#include <unicode/ucnv.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "rqxml/encoding/RQMEMConverter.h"

namespace rqtool {

/// Turns bytes of an encoding into UTF-16, piece by piece, and counts what is replaced on the way. Characters and
/// states reach across pieces.
class Decoder {
 public:
  /// @param converter from OpenEncoding
  explicit Decoder(RQMEM_NAMESPACE::QULTMBConverterHandle converter);

  /// UTF-16 units; they are valid until the next call.
  struct Piece {
    std::u16string_view units;
    bool more;  ///< call again: there was no room for all of it
  };

  /// Takes bytes away from the beginning of `bytes`, and hands out what they mean.
  /// @param bytes what comes next
  /// @param last true when nothing comes after `bytes`; to be called so once, at the end
  Piece Take(std::string_view& bytes, bool last);

  /// How many sequences of bytes were replaced.
  std::uint64_t GetReplaced() const { return fWatch->replaced; }
  /// How many bytes before the end of the bytes taken the first of them began, when it was replaced; only when there is
  /// one.
  std::uint64_t GetFirstDistance() const { return static_cast<std::uint64_t>(fWatch->firstDistance); }
  /// How many of the bytes taken are the beginning of a character.
  std::uint64_t CountPending() const;
  /// True when the last byte taken is a character that waits for the next one, which may change it.
  bool HoldsCharacter() const;
  /// False when Clone must not be called.
  bool IsClonable() const;
  /// A decoder in the same state that has replaced nothing yet.
  Decoder Clone() const;

  const UConverter& GetConverter() const;

 private:
  struct Watch {
    UConverterToUCallback callback = nullptr;  // the library's
    const void* context = nullptr;
    std::uint64_t replaced = 0;
    std::ptrdiff_t firstDistance = 0;
  };
  static void Note(const void* context, UConverterToUnicodeArgs* args, const char* bytes, std::int32_t length,
                   UConverterCallbackReason reason, UErrorCode* error);
  Decoder(RQMEM_NAMESPACE::QULTMBConverterHandle converter, const Watch& watch);
  void Install();
  Piece Convert(std::string_view& bytes, bool last);
  Piece TakeForgottenEnd();
  bool IsInsideCharacter() const;

  std::unique_ptr<Watch> fWatch;  // the converter points at it
  RQMEM_NAMESPACE::QULTMBConverterHandle fConverter;
  std::vector<char16_t> fUnits;  // empty until needed: most clones never are
};

}  // namespace rqtool

#endif
