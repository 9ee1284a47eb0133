#ifndef RQXML_XML_RQXTEXT_H
#define RQXML_XML_RQXTEXT_H

#include <memory>
#include <string>
#include <string_view>
#include <xercesc/util/XMLString.hpp>

namespace RQXPrsUtil {

/// Gives a string of the XML library back to it.
struct RQXStringReleaser {
  void operator()(XMLCh* string) const { xercesc::XMLString::release(&string); }
};
/// Owns a string that the XML library handed out.
using RQXOwnedString = std::unique_ptr<XMLCh, RQXStringReleaser>;

/// True when both strings have the same units; null counts as empty.
inline bool XStrEquals(const XMLCh* a, const XMLCh* b) {
  if (a == b) return true;
  if (!a) return *b == 0;
  if (!b) return *a == 0;
  while (*a == *b) {
    if (*a == 0) return true;
    ++a;
    ++b;
  }
  return false;
}

/// Sets `text` to what ToUTF8(string) returns, in the room that it already has where that is enough.
void AssignUTF8(const XMLCh* string, std::string& text);

/// The units of ToUTF16(string) before the terminating zero.
std::u16string DecodeUTF8(const char* string);

/// The units before the terminating zero; empty for null.
inline std::u16string_view AsView(const XMLCh* string) {
  return string ? std::u16string_view(string) : std::u16string_view();
}

/// The bytes of the units, as a key.
inline std::string_view AsBytes(std::u16string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(XMLCh)};
}

}  // namespace RQXPrsUtil

#endif
