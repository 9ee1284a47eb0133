#ifndef RQXML_ENCODING_RQMEMHZSHIFT_H
#define RQXML_ENCODING_RQMEMHZSHIFT_H

#include <string_view>

namespace RQMEM_NAMESPACE {

/// Whether text in HZ, which comes in pieces, ends in the shifted state. ICU leaves it there.
class HzShift {
 public:
  /// What brings shifted text back.
  static constexpr std::string_view kBack = "~}";

  void Read(std::string_view piece) {
    for (const char byte : piece) {
      if (fFirst == 0) {  // ASCII, or the first of two bytes
        if (fShifted || byte == '~') fFirst = byte;
        continue;
      }
      if (fFirst == '~' && (byte == '{' || byte == '}')) fShifted = byte == '{';
      fFirst = 0;
    }
  }
  bool IsShifted() const { return fShifted; }

 private:
  bool fShifted = false;
  char fFirst = 0;
};

}  // namespace RQMEM_NAMESPACE

#endif
