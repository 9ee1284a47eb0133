#ifndef RQXML_TOOLS_RECODER_H
#define RQXML_TOOLS_RECODER_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "Decoder.h"
#include "Encoder.h"
#include "ReplacementTrace.h"
#include "rqxml/encoding/RQMEMConverter.h"

namespace rqtool {

/// Turns text of one encoding into another, block by block: what the result says does not depend on where the blocks
/// end, nor do its bytes, except in SCSU and LMBCS, which write one text in several ways. Memory is needed for a block,
/// not for the text. Malformed text, and characters that the other encoding lacks, are replaced as the library replaces
/// them on the way to UTF-16 and from there. Half a surrogate pair that the other encoding can write is written, and
/// counts as replaced.
class Recoder {
 public:
  /// Both from OpenEncoding.
  Recoder(RQMEM_NAMESPACE::QULTMBConverterHandle from, RQMEM_NAMESPACE::QULTMBConverterHandle to);

  /// Converts the next block.
  /// @param block any bytes, also none
  /// @param last true when nothing comes after `block`; to be called so once, at the end
  /// @param sink takes the result, in pieces
  /// @throws Failure (Refused) when ICU cannot go on
  void Convert(std::string_view block, bool last, const ByteSink& sink);

  /// How many bytes were converted.
  std::uint64_t GetRead() const { return fRead; }
  /// How many characters or malformed sequences were replaced.
  std::uint64_t GetReplaced() const { return fDecoder.GetReplaced() + fEncoder.GetReplaced(); }
  /// Where the first of them begins, in bytes of the input from 0; nothing when there is none.
  std::optional<std::uint64_t> GetFirstReplaced() const { return fTrace.GetFirst(); }

 private:
  void ConvertWhole(std::string_view block, bool last, const ByteSink& sink);

  Decoder fDecoder;
  Encoder fEncoder;
  ReplacementTrace fTrace;
  std::uint64_t fRead = 0;
};

}  // namespace rqtool

#endif
