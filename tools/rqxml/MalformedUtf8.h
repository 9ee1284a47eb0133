#ifndef RQXML_TOOLS_MALFORMEDUTF8_H
#define RQXML_TOOLS_MALFORMEDUTF8_H

#include <cstdint>
#include <istream>
#include <optional>

#include "Failure.h"

namespace rqtool {

/// True when the XML document that `in` holds from its current position on is to be read as UTF-8: it has no mark of
/// another encoding and declares none.
bool IsMeantAsUtf8(std::istream& in);

/// A byte that does not continue UTF-8, or begins a character that is not continued.
struct MalformedByte {
  std::uint8_t value = 0;
  Place place;  ///< of the character that it stands for; columns count as the XML library counts them
};

/// Finds the first byte that is no UTF-8, from the current position on. Reads no further than a little beyond it.
std::optional<MalformedByte> FindMalformedUtf8(std::istream& in);

}  // namespace rqtool

#endif
