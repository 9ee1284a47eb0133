#ifndef RQXML_TESTS_COMMON_VIRTUAL_SLOT_H
#define RQXML_TESTS_COMMON_VIRTUAL_SLOT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

// The place of a virtual operation in the table of virtual operations, where the platform lets one see it: the first
// word of a pointer to a virtual member is one more than the offset into the table. A virtual destructor takes the
// slots 0 and 1.
#if defined(__x86_64__) && defined(__GNUC__)
#define RQ_TEST_SEES_VIRTUAL_SLOTS 1
#else
#define RQ_TEST_SEES_VIRTUAL_SLOTS 0
#endif

template <typename Member>
std::size_t VirtualSlot(Member member) {
  std::uintptr_t word = 0;
  static_assert(sizeof(member) >= sizeof(word));
  std::memcpy(&word, &member, sizeof(word));
  return static_cast<std::size_t>(word - 1) / sizeof(void*);
}

#endif
