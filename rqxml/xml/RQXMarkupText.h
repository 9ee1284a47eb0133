#ifndef RQXML_XML_RQXMARKUPTEXT_H
#define RQXML_XML_RQXMARKUPTEXT_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "rqxml/xml/RQXEncodingFamily.h"

namespace RQXPrsUtil {

/// Shows the bytes of an input as text in which markup characters are ASCII, whatever the encoding. Everything that
/// is no ASCII character comes out as some byte above 0x7F.
class RQXMarkupText {
 public:
  /// A new input starts.
  void Restart() { *this = RQXMarkupText(); }

  /// The text of the next bytes, and of those before that were too few to be understood; valid until the next call,
  /// or as long as the bytes.
  std::string_view Add(std::string_view bytes);

 private:
  std::string_view Convert(std::string_view bytes);

  std::array<XMLByte, 4> fHead{};
  std::size_t fHeadLength = 0;
  RQXEncodingFamily fFamily = RQXEncodingFamily::Ascii;
  std::array<XMLByte, 4> fUnit{};  // the bytes of a unit that is not whole yet
  std::size_t fPending = 0;
  std::string fText;
};

}  // namespace RQXPrsUtil

#endif
