#ifndef TESTS_SUPPORT_GUARDED_TEXT_H
#define TESTS_SUPPORT_GUARDED_TEXT_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string>

namespace rqtest {

/// A zero-terminated copy of a text between pages that must not be touched: a read of the byte behind the terminator
/// (or, on request, of the byte before the text) ends the process.
class GuardedText {
 public:
  enum class Side { kBefore, kBehind };

  explicit GuardedText(const std::string& text, Side side = Side::kBehind) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t size = text.size() + 1;
    const std::size_t room = (size + page - 1) / page * page;
    mapped_ = room + 2 * page;
    memory_ = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED) throw std::bad_alloc();
    char* const usable = static_cast<char*>(memory_) + page;
    if (mprotect(usable, room, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    text_ = side == Side::kBefore ? usable : usable + room - size;
    std::memcpy(text_, text.c_str(), size);
  }
  ~GuardedText() { munmap(memory_, mapped_); }
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;

  const char* Get() const { return text_; }

 private:
  void* memory_ = nullptr;
  std::size_t mapped_ = 0;
  char* text_ = nullptr;
};

}  // namespace rqtest

#endif
