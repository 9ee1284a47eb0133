#ifndef RQXML_TOOLS_REPLACEMENTTRACE_H
#define RQXML_TOOLS_REPLACEMENTTRACE_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Decoder.h"
#include "Encoder.h"

namespace rqtool {

/// Finds where in the input the first character stands that a conversion replaces. It converts byte by byte, since ICU
/// tells neither the place of what a callback is called for nor that of a character across two pieces.
class ReplacementTrace {
 public:
  /// Converts `bytes`.
  /// @param decoder and
  /// @param encoder in the state that they have after all bytes before
  /// @param bytes what comes next
  /// @param offset where `bytes` stand in the input
  /// @param last true when nothing comes after `bytes`
  /// @param sink takes the result
  void Convert(Decoder& decoder, Encoder& encoder, std::string_view bytes, std::uint64_t offset, bool last,
               const ByteSink& sink);

  /// The place of the first byte of the first character that was replaced; nothing when there is none.
  std::optional<std::uint64_t> GetFirst() const { return fFirst; }

 private:
  struct Unit {
    char16_t unit;
    std::uint64_t origin;  // where its character begins
  };

  void Step(Decoder& decoder, Encoder& encoder, std::string_view bytes, std::uint64_t place, bool last,
            const ByteSink& sink);
  void Encode(Encoder& encoder, std::u16string_view units, std::uint64_t origin, const ByteSink& sink);
  void NoteReplacedBy(const Encoder& encoder, std::uint64_t before);
  void KeepPending(const Encoder& encoder);

  std::vector<Unit> fPending;  // the units that the encoder holds back
  std::optional<std::uint64_t> fFirst;
};

}  // namespace rqtool

#endif
