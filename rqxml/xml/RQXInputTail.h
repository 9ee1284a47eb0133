#ifndef RQXML_XML_RQXINPUTTAIL_H
#define RQXML_XML_RQXINPUTTAIL_H

#include <array>
#include <cstddef>
#include <string_view>

#include "rqxml/xml/RQXEncodingFamily.h"

namespace RQXPrsUtil {

/// Remembers how the bytes of an input begin and end, and tells whether they end with a whole character.
///
/// A transcoder that meets an incomplete character at the end of its input makes no progress, which the XML library
/// takes for the end of the document. What it passes over cannot be told from the outside, but a well-formed document
/// ends with '>' or white space (in XML 1.1 also with NEL or the line separator).
class RQXInputTail {
 public:
  /// Forgets everything: a new input starts.
  void Restart() { *this = RQXInputTail(); }

  /// Takes note of the next bytes of the input.
  void Add(std::string_view bytes);

  /// True unless the input ends inside a character. `encoding` is the name of the encoding it was decoded with.
  bool EndsWithWholeCharacter(const XMLCh* encoding, bool version11) const;

 private:
  static constexpr std::size_t kKept = 6;  // the longest sequence that a UTF-8 lead byte announces

  bool EndsWithWholeUtf8() const;
  bool EndsWithWholeUnit(RQXEncodingFamily family, bool version11) const;

  std::array<XMLByte, 4> fHead{};
  std::array<XMLByte, kKept> fLast{};  // the last bytes, newest at the end
  std::size_t fTotal = 0;
};

}  // namespace RQXPrsUtil

#endif
