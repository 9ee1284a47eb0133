#include "ReplacementTrace.h"

#include <algorithm>
#include <cstddef>

namespace rqtool {

namespace {

constexpr std::uint64_t kUtf32Size = 4;

// Where the character begins that the byte at `place` belongs to. UTF-32 that begins with its byte order mark keeps the
// bytes of the mark for itself.
std::uint64_t CharacterStart(const Decoder& decoder, std::uint64_t place) {
  const std::uint64_t start = place - std::min(place, decoder.CountPending());
  return ucnv_getType(&decoder.GetConverter()) == UCNV_UTF32 ? start - start % kUtf32Size : start;
}

// Where the first sequence begins that `decoder` replaced when it had taken the bytes up to `end`. Some encodings hold
// bytes back that ICU does not count.
std::uint64_t ReplacedStart(const Decoder& decoder, std::uint64_t origin, std::uint64_t end) {
  return std::min(origin, end - std::min(end, decoder.GetFirstDistance()));
}

bool IsLead(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsTrail(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

char32_t CodePoint(char16_t unit, char16_t next) {
  if (!IsLead(unit) || !IsTrail(next)) return unit;
  return 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) + static_cast<char32_t>(next - 0xDC00);
}

}  // namespace

void ReplacementTrace::Convert(Decoder& decoder, Encoder& encoder, std::string_view bytes, std::uint64_t offset,
                               bool last, const ByteSink& sink) {
  KeepPending(encoder);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    Step(decoder, encoder, bytes.substr(i, 1), offset + i, false, sink);
  }
  if (!last) return;
  Step(decoder, encoder, {}, offset + bytes.size(), true, sink);
  const std::uint64_t before = encoder.GetReplaced();
  encoder.Write({}, true, sink);
  NoteReplacedBy(encoder, before);
}

void ReplacementTrace::Step(Decoder& decoder, Encoder& encoder, std::string_view bytes, std::uint64_t place, bool last,
                            const ByteSink& sink) {
  const bool known = fFirst.has_value();
  const std::uint64_t before = decoder.GetReplaced();
  const std::uint64_t end = place + bytes.size();
  const std::uint64_t origin = CharacterStart(decoder, place);
  const std::uint64_t unitOrigin = decoder.HoldsCharacter() ? place - 1 : origin;
  for (bool more = true; more;) {
    const Decoder::Piece piece = decoder.Take(bytes, last);
    Encode(encoder, piece.units, unitOrigin, sink);
    more = piece.more;
  }
  if (known || decoder.GetReplaced() == before) return;
  const std::uint64_t start = origin < place ? origin : ReplacedStart(decoder, origin, end);
  fFirst = std::min(fFirst.value_or(start), start);  // a unit that waited for the rest of its pair stands before
}

void ReplacementTrace::Encode(Encoder& encoder, std::u16string_view units, std::uint64_t origin, const ByteSink& sink) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    fPending.push_back({units[i], origin});
    const std::uint64_t before = encoder.GetReplaced();
    encoder.Write(units.substr(i, 1), false, sink);
    NoteReplacedBy(encoder, before);
    KeepPending(encoder);
  }
}

// What was replaced is one of the units that were held back, or the one behind them.
void ReplacementTrace::NoteReplacedBy(const Encoder& encoder, std::uint64_t before) {
  if (fFirst || encoder.GetReplaced() == before || fPending.empty()) return;
  fFirst = fPending.front().origin;
  for (std::size_t i = 0; i < fPending.size(); ++i) {
    const char16_t next = i + 1 < fPending.size() ? fPending[i + 1].unit : u'\0';
    if (CodePoint(fPending[i].unit, next) != encoder.GetFirstReplaced()) continue;
    fFirst = fPending[i].origin;
    return;
  }
}

void ReplacementTrace::KeepPending(const Encoder& encoder) {
  const std::size_t pending = std::min(fPending.size(), encoder.CountPending());
  fPending.erase(fPending.begin(), fPending.end() - static_cast<std::ptrdiff_t>(pending));
}

}  // namespace rqtool
