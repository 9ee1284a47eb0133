#include "RecordingBuffer.h"

#include <utility>

namespace rqtool {

namespace {
constexpr std::size_t kChunkSize = 64 * 1024;
}

void RecordingBuffer::Rewind() {
  fNext = 0;
  setg(nullptr, nullptr, nullptr);
}

RecordingBuffer::int_type RecordingBuffer::underflow() {
  if (fNext == fChunks.size()) {
    std::vector<char> chunk(kChunkSize);
    const std::streamsize length = fSource.sgetn(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    if (length <= 0) return traits_type::eof();
    chunk.resize(static_cast<std::size_t>(length));
    fChunks.push_back(std::move(chunk));
  }
  std::vector<char>& chunk = fChunks[fNext++];
  setg(chunk.data(), chunk.data(), chunk.data() + chunk.size());
  return traits_type::to_int_type(*gptr());
}

}  // namespace rqtool
