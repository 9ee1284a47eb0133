#ifndef TESTS_SUPPORT_FAILING_HEAP_H
#define TESTS_SUPPORT_FAILING_HEAP_H

// Replaces the global operator new, on which the XML library's memory manager stands, so that a test can make each
// allocation fail once and count what is left behind. Include it in exactly one source of a program: it defines the
// operators.

#include <gtest/gtest.h>
#include <link.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "rqxml/common/RQStatus.h"
#include "tests/support/platform.h"

namespace rqtest {

/// What the replaced operators keep; constant-initialised, so that it is there before anything allocates.
struct Heap {
  long ownBlocks = 0;
  long libraryBlocks = 0;
  long liveBytes = 0;
  /// Allocations left until one fails; negative for never.
  long untilFailure = -1;
  /// Whether one failed, and whether the XML library had asked for it.
  bool failed = false;
  bool failedInLibrary = false;
  /// Where the code of the XML library lies.
  std::uintptr_t libraryBegin = 0;
  std::uintptr_t libraryEnd = 0;

  bool IsLibrary(const void* caller) const {
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    return address >= libraryBegin && address < libraryEnd;
  }
  long LiveBlocks() const { return ownBlocks + libraryBlocks; }
};

inline Heap heap;

/// Stands before each block; as large as the strictest alignment.
struct alignas(std::max_align_t) BlockHeader {
  bool library;
};

inline void* Allocate(std::size_t size, const void* caller) {
  const bool library = heap.IsLibrary(caller);
  if (heap.untilFailure == 0) {
    heap.untilFailure = -1;
    heap.failed = true;
    heap.failedInLibrary = library;
    throw std::bad_alloc();
  }
  if (heap.untilFailure > 0) --heap.untilFailure;
  void* const place = std::malloc(sizeof(BlockHeader) + size);
  if (place == nullptr) throw std::bad_alloc();
  auto* const header = new (place) BlockHeader{library};
  ++(library ? heap.libraryBlocks : heap.ownBlocks);
  heap.liveBytes += static_cast<long>(malloc_usable_size(place));
  return header + 1;
}

inline void Free(void* block) noexcept {
  if (block == nullptr) return;
  BlockHeader* const header = static_cast<BlockHeader*>(block) - 1;
  --(header->library ? heap.libraryBlocks : heap.ownBlocks);
  heap.liveBytes -= static_cast<long>(malloc_usable_size(header));
  std::free(header);
}

/// Finds where the XML library's code lies.
inline void LocateLibrary() {
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void*) {
        if (std::strstr(info->dlpi_name, "libxerces-c") == nullptr) return 0;
        for (int i = 0; i < info->dlpi_phnum; ++i) {
          const auto& segment = info->dlpi_phdr[i];
          if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0) continue;
          heap.libraryBegin = info->dlpi_addr + segment.p_vaddr;
          heap.libraryEnd = heap.libraryBegin + segment.p_memsz;
        }
        return 1;
      },
      nullptr);
}

/// What one run came to: an exception of missing memory, or a status.
struct Outcome {
  bool outOfMemory = false;
  RQCommon::RQStatus status;
};

inline Outcome WithFailureAt(long allocation, const std::function<RQCommon::RQStatus()>& work) {
  Outcome outcome;
  heap.untilFailure = allocation;
  try {
    outcome.status = work();
  } catch (const std::bad_alloc&) {
    outcome.outOfMemory = true;
  } catch (const xercesc::OutOfMemoryException&) {
    outcome.outOfMemory = true;
  }
  heap.untilFailure = -1;
  return outcome;
}

/// Runs `round` with failure at allocation 0, 1, ... until a round ends without any, and hands each failure's number
/// and the blocks that it left behind to `check`.
inline void FailEachOnce(const std::function<void(long)>& round,
                         const std::function<void(long allocation, long own, long library)>& check) {
  round(-1);  // what the library creates once and keeps
  for (long allocation = 0;; ++allocation) {
    heap.failed = false;
    heap.failedInLibrary = false;
    const long own = heap.ownBlocks;
    const long library = heap.libraryBlocks;
    round(allocation);
    const long ownLeft = heap.ownBlocks - own;
    const long libraryLeft = heap.libraryBlocks - library;
    check(allocation, ownLeft, libraryLeft);
    if (!heap.failed || ::testing::Test::HasFatalFailure()) break;
  }
}

/// The most blocks that the XML library itself leaves behind when one of its allocations fails while a parser of its
/// own is made, parses the document and is destroyed: some of its constructors give nothing back.
inline long LeftByTheBareLibrary(const std::string& document) {
  long left = 0;
  FailEachOnce(
      [&](long allocation) {
        WithFailureAt(allocation, [&] {
          xercesc::XercesDOMParser parser;
          const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                                                  "bare");
          parser.parse(source);
          return RQCommon::RQStatus();
        });
      },
      [&](long, long, long library) { left = std::max(left, library); });
  return left;
}

/// A fixture whose tests make allocations fail.
class WithFailingHeap : public WithPlatform {
 protected:
  /// @param document what the parses of the program's tests read
  explicit WithFailingHeap(const std::string& document) {
    LocateLibrary();
    static const long left = LeftByTheBareLibrary(document);
    leftByTheBareLibrary_ = left;
  }

  /// As FailEachOnce; a failure outside the XML library must leave nothing behind, and one inside it nothing but
  /// what the library itself leaves.
  void FailEachOnceWithoutLeaks(const std::function<void(long)>& round) {
    ASSERT_NE(heap.libraryEnd, 0U);
    long failures = 0;
    FailEachOnce(round, [&](long allocation, long own, long library) {
      failures += heap.failed ? 1 : 0;
      ASSERT_EQ(own, 0) << "blocks left after a failure at allocation " << allocation;
      ASSERT_LE(library, heap.failedInLibrary ? leftByTheBareLibrary_ : 0)
          << "blocks of the XML library left after a failure at allocation " << allocation;
    });
    EXPECT_GT(failures, 10);
  }

  /// Live bytes after the fiftieth round must be about those after the third.
  static void ExpectNoGrowth(const std::function<void()>& round) {
    for (int i = 0; i < 3; ++i) round();
    const long early = heap.liveBytes;
    for (int i = 3; i < 50; ++i) round();
    EXPECT_LE(heap.liveBytes, early + early / 10);
  }

 private:
  long leftByTheBareLibrary_ = 0;
};

}  // namespace rqtest

/// Asked by the leak checker when the program ends, whatever its options say. The tests count what is left themselves;
/// the XML library leaves much behind when its allocations fail.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off() { return 1; }

void* operator new(std::size_t size) { return rqtest::Allocate(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return rqtest::Allocate(size, __builtin_return_address(0)); }
void operator delete(void* block) noexcept { rqtest::Free(block); }
void operator delete[](void* block) noexcept { rqtest::Free(block); }
void operator delete(void* block, std::size_t) noexcept { rqtest::Free(block); }
void operator delete[](void* block, std::size_t) noexcept { rqtest::Free(block); }

#endif
