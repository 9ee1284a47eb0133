#ifndef TESTS_SUPPORT_STREAMS_H
#define TESTS_SUPPORT_STREAMS_H

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace rqtest {

/// What FailingBuf throws when its good bytes are used up.
struct ReadFailure : std::runtime_error {
  ReadFailure() : std::runtime_error("the disk is gone") {}
};

/// Hands out bytes in chunks of a given size and cannot be positioned.
class ChunkedBuf : public std::streambuf {
 public:
  ChunkedBuf(std::string bytes, std::size_t chunk) : bytes_(std::move(bytes)), chunk_(chunk) {}

 protected:
  int_type underflow() override {
    if (next_ == bytes_.size()) return AtEnd();
    const std::size_t size = std::min(chunk_, bytes_.size() - next_);
    char* const begin = bytes_.data() + next_;
    setg(begin, begin, begin + size);
    next_ += size;
    return traits_type::to_int_type(*begin);
  }
  virtual int_type AtEnd() { return traits_type::eof(); }

 private:
  std::string bytes_;
  std::size_t chunk_;
  std::size_t next_ = 0;
};

/// Throws behind its last byte: the stream on top goes bad, or passes the exception on when its mask says so.
class FailingBuf : public ChunkedBuf {
 public:
  explicit FailingBuf(std::string bytes) : ChunkedBuf(std::move(bytes), 4096) {}

 protected:
  int_type AtEnd() override { throw ReadFailure(); }
};

}  // namespace rqtest

#endif
