#ifndef RQXML_XML_RQXINPUTTAIL_H
#define RQXML_XML_RQXINPUTTAIL_H

#include <array>
#include <cstddef>
#include <string_view>
#include <xercesc/util/XercesDefs.hpp>

namespace RQXPrsUtil {

/// Remembers how the bytes of an input begin and end, and tells whether they end with a whole character.
///
/// A transcoder that meets an incomplete character at the end of its input makes no progress, which the XML library
/// takes for the end of the document. A well-formed document always ends with '>' or white space.
class RQXInputTail {
 public:
  /// Forgets everything: a new input starts.
  void Restart() { *this = RQXInputTail(); }

  /// Takes note of the next bytes of the input.
  void Add(std::string_view bytes);

  /// True unless the input ends inside a character. `encoding` is the name of the encoding it was decoded with.
  bool EndsWithWholeCharacter(const XMLCh* encoding) const;

 private:
  static constexpr std::size_t kKept = 6;  // the longest sequence that a UTF-8 lead byte announces

  enum class Family { Bytes, Units16, Units32, Ebcdic };
  Family GetFamily() const;
  bool EndsWithWholeUtf8() const;
  bool EndsLikeAscii() const;
  bool EndsLikeUnits(std::size_t size) const;

  std::array<XMLByte, 4> fHead{};
  std::array<XMLByte, kKept> fLast{};  // the last bytes, newest at the end
  std::size_t fTotal = 0;
};

}  // namespace RQXPrsUtil

#endif
