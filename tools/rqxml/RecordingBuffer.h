#ifndef RQXML_TOOLS_RECORDINGBUFFER_H
#define RQXML_TOOLS_RECORDINGBUFFER_H

#include <cstddef>
#include <deque>
#include <streambuf>
#include <vector>

namespace rqtool {

/// Hands on the bytes of a source that can be read once only, such as a pipe, and remembers them, so that they can be
/// read again from the beginning.
class RecordingBuffer : public std::streambuf {
 public:
  /// Reads from `source`, which must outlive this object.
  explicit RecordingBuffer(std::streambuf& source) : fSource(source) {}

  /// Goes back to the first byte.
  void Rewind();

 protected:
  int_type underflow() override;

 private:
  std::streambuf& fSource;
  std::deque<std::vector<char>> fChunks;  // none is empty; they stay where they are when others follow
  std::size_t fNext = 0;                  // the chunk to hand out next
};

}  // namespace rqtool

#endif
