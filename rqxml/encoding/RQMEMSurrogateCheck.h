#ifndef RQXML_ENCODING_RQMEMSURROGATECHECK_H
#define RQXML_ENCODING_RQMEMSURROGATECHECK_H

#include <unicode/utf16.h>

namespace RQMEM_NAMESPACE {

/// Whether UTF-16 text, which comes in pieces, has half a surrogate pair. Some encodings can spell one, and ICU passes
/// it on without a word.
class SurrogateCheck {
 public:
  void Read(const char16_t* begin, const char16_t* end) {
    for (; begin != end; ++begin) {
      const bool second = fInPair && U16_IS_TRAIL(*begin);
      if (!second && (fInPair || U16_IS_TRAIL(*begin))) fMetHalf = true;
      fInPair = U16_IS_LEAD(*begin);
    }
  }
  /// To be called when all text has been read.
  bool HasHalf() const { return fMetHalf || fInPair; }

 private:
  bool fInPair = false;
  bool fMetHalf = false;
};

}  // namespace RQMEM_NAMESPACE

#endif
