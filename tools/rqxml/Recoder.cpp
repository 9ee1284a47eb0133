#include "Recoder.h"

#include <utility>

namespace rqtool {

using RQMEM_NAMESPACE::QULTMBConverterHandle;

Recoder::Recoder(QULTMBConverterHandle from, QULTMBConverterHandle to)
    : fDecoder(std::move(from)), fEncoder(std::move(to)) {}

// Until something is replaced the state before each block is kept: to find the place, that block is converted again,
// byte by byte. So is one that leaves units to the next block, since they may turn out to be what is replaced.
void Recoder::Convert(std::string_view block, bool last, const ByteSink& sink) {
  const bool clonable = fDecoder.IsClonable() && fEncoder.IsClonable();
  if (fTrace.GetFirst()) {
    ConvertWhole(block, last, sink);
  } else if (!clonable) {
    fTrace.Convert(fDecoder, fEncoder, block, fRead, last, sink);
  } else {
    Decoder decoder = fDecoder.Clone();
    Encoder encoder = fEncoder.Clone();
    ConvertWhole(block, last, sink);
    if (GetReplaced() > 0 || fEncoder.CountPending() > 0) {
      fTrace.Convert(decoder, encoder, block, fRead, last, [](std::string_view) {});
    }
  }
  fRead += block.size();
}

void Recoder::ConvertWhole(std::string_view block, bool last, const ByteSink& sink) {
  for (bool more = true; more;) {
    const Decoder::Piece piece = fDecoder.Take(block, last);
    more = piece.more;
    fEncoder.Write(piece.units, last && !more, sink);
  }
}

}  // namespace rqtool
