#ifndef RQXML_TOOLS_ENCODER_H
#define RQXML_TOOLS_ENCODER_H

#include <unicode/ucnv.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "rqxml/encoding/RQMEMConverter.h"

namespace rqtool {

/// Takes the bytes of a conversion, piece by piece.
using ByteSink = std::function<void(std::string_view)>;

/// Turns UTF-16 into bytes of an encoding, piece by piece, and counts what is replaced on the way. Characters and
/// states reach across pieces.
class Encoder {
 public:
  /// @param converter from OpenEncoding
  explicit Encoder(RQMEM_NAMESPACE::QULTMBConverterHandle converter);

  /// Writes `units`.
  /// @param units what comes next
  /// @param last true when nothing comes after `units`; to be called so once, at the end
  /// @param sink takes the bytes
  void Write(std::u16string_view units, bool last, const ByteSink& sink);

  /// How many characters were replaced, or left out where they are not visible; with each half of a surrogate pair,
  /// which some encodings can write.
  std::uint64_t GetReplaced() const { return fWatch->replaced; }
  /// The first character that was replaced; only when there is one.
  char32_t GetFirstReplaced() const { return fWatch->first; }
  /// How many of the units written are waiting for those behind them.
  std::size_t CountPending() const;
  /// False when Clone must not be called.
  bool IsClonable() const;
  /// An encoder in the same state that has replaced nothing yet.
  Encoder Clone() const;

 private:
  struct Watch {
    UConverterFromUCallback callback = nullptr;  // the library's
    const void* context = nullptr;
    std::uint64_t replaced = 0;
    char32_t first = 0;
  };
  static void Note(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, std::int32_t length,
                   UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error);
  /// What has been written so far.
  struct State {
    bool writesHalves = false;  // of surrogate pairs, as if they were characters
    char16_t lead = 0;          // the first half of a pair that stands last so far, where halves are written
    bool anyUnit = false;
  };
  Encoder(RQMEM_NAMESPACE::QULTMBConverterHandle converter, const Encoder& original);
  void Install();
  void Convert(std::u16string_view units, bool last, const ByteSink& sink);
  bool WritesHalves() const;
  void CountHalves(std::u16string_view units);
  void NoteHalf(char16_t half);
  void End(const ByteSink& sink);
  void EndHz(const ByteSink& sink);

  std::unique_ptr<Watch> fWatch;  // the converter points at it
  RQMEM_NAMESPACE::QULTMBConverterHandle fConverter;
  State fState;
  std::vector<char> fBytes;  // empty until needed: most clones never are
};

}  // namespace rqtool

#endif
