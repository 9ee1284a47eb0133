#ifndef RQXML_FUZZ_BYTE_STREAMS_H
#define RQXML_FUZZ_BYTE_STREAMS_H

#include <algorithm>
#include <istream>
#include <streambuf>
#include <string>

namespace rqxml_fuzz {

/// A stream buffer over a text that never has more than `chunk` bytes ready.
class ChunkedBuffer final : public std::streambuf {
 public:
  ChunkedBuffer(const std::string& text, std::size_t chunk) : fText(text), fChunk(chunk) {}

 protected:
  int_type underflow() override {
    if (fNext >= fText.size()) return traits_type::eof();
    const std::size_t count = std::min(fChunk, fText.size() - fNext);
    char* const start = const_cast<char*>(fText.data()) + fNext;  // the get area is never written to
    setg(start, start, start + count);
    fNext += count;
    return traits_type::to_int_type(*start);
  }

 private:
  const std::string& fText;
  const std::size_t fChunk;
  std::size_t fNext = 0;
};

}  // namespace rqxml_fuzz

#endif
