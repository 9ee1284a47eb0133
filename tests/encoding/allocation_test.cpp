// Replaces the global operator new, to make allocations fail.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "rqxml/encoding/ExtNameStr.h"
#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace {

// Allocations left until each one fails; negative for never.
long gLeft = -1;
long gBlocks = 0;
std::size_t gLastArray = 0;

void* Allocate(std::size_t size) {
  if (gLeft == 0) return nullptr;
  if (gLeft > 0) --gLeft;
  void* const place = std::malloc(size == 0 ? 1 : size);
  if (place != nullptr) ++gBlocks;
  return place;
}

void Free(void* place) {
  if (place == nullptr) return;
  --gBlocks;
  std::free(place);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const place = Allocate(size);
  if (place == nullptr) throw std::bad_alloc();
  return place;
}
void* operator new[](std::size_t size) {
  gLastArray = size;
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* place) noexcept { Free(place); }
void operator delete[](void* place) noexcept { Free(place); }
void operator delete(void* place, std::size_t) noexcept { Free(place); }
void operator delete[](void* place, std::size_t) noexcept { Free(place); }
void operator delete(void* place, const std::nothrow_t&) noexcept { Free(place); }
void operator delete[](void* place, const std::nothrow_t&) noexcept { Free(place); }

namespace {

using namespace RQMEM_NAMESPACE;

// Runs the work with no allocation allowed after so many.
template <class Work>
auto WithAllocations(long count, Work work) {
  struct Guard {
    ~Guard() { gLeft = -1; }
  } guard;
  gLeft = count;
  return work();
}

class Allocation : public testing::Test {
 protected:
  Allocation() { QULTMBGetDefaultConverter(); }
  const QULTMBConverterHandle latin_{QULTMBConverterNew_8("1252")};
};

TEST_F(Allocation, LongTextWithoutWorkingBufferGives2AndAnEmptyDestination) {
  const std::string utf8(1025, 'a');
  const std::wstring wide(257, L'a');
  std::wstring wideResult(5000, L'x');
  std::string result(5000, 'x');
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU8ToU16(wideResult, utf8); }), 2);
  EXPECT_TRUE(wideResult.empty());
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU16ToU8(result, wide); }), 2);
  EXPECT_TRUE(result.empty());
  result = "before";
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU8ToCodePage(latin_.Get(), result, utf8); }), 2);
  EXPECT_TRUE(result.empty());
  result = "before";
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU16ToCodePage(latin_.Get(), result, wide); }), 2);
  EXPECT_TRUE(result.empty());
  result = "before";
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBCodePageToU8(latin_.Get(), result, utf8); }), 2);
  EXPECT_TRUE(result.empty());
  wideResult = L"before";
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBCodePageToU16(latin_.Get(), wideResult, utf8); }), 2);
  EXPECT_TRUE(wideResult.empty());
  std::string copied = "before";
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBGenericToU8(copied, utf8); }), 2);
  EXPECT_TRUE(copied.empty());
}

TEST_F(Allocation, ShortTextNeedsNoMemoryBesideItsDestination) {
  const std::string utf8(1024, 'a');
  const std::wstring wide(256, L'a');
  std::wstring wideResult;
  wideResult.reserve(2000);
  std::string result;
  result.reserve(2000);
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU8ToU16(wideResult, utf8); }), 0);
  EXPECT_EQ(wideResult.size(), 1024U);
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU16ToU8(result, wide); }), 0);
  EXPECT_EQ(result.size(), 256U);
}

TEST_F(Allocation, DestinationWithoutMemoryGives2AndIsEmpty) {
  const std::string utf8(100, 'a');
  std::wstring result;
  EXPECT_EQ(WithAllocations(0, [&] { return QULTMBU8ToU16(result, utf8); }), 2);
  EXPECT_TRUE(result.empty());
}

TEST_F(Allocation, DestinationIsEmptyWhereMemoryFailsMidway) {
  const std::string utf8(40000, 'a');
  for (long count = 0; count < 3; ++count) {
    std::wstring result;
    EXPECT_EQ(WithAllocations(count, [&] { return QULTMBU8ToU16(result, utf8); }), 2) << count;
    EXPECT_TRUE(result.empty()) << count;
  }
}

TEST_F(Allocation, NewArrayIsNullAtAnyFailure) {
  for (const std::size_t length : {1U, 300U, 2000U, 40000U}) {
    const std::wstring wide(length, L'\u4e2d');
    const long before = gBlocks;
    long count = 0;
    for (;; ++count) {
      const std::unique_ptr<char[]> made(WithAllocations(count, [&] { return QULTMBTranscodeU8(wide.c_str()); }));
      if (made) break;
    }
    EXPECT_EQ(gBlocks, before);
    EXPECT_GE(count, 1);
  }
}

TEST_F(Allocation, NewArrayHasPlacesForTheTextAndItsTerminatorAlone) {
  for (const std::size_t length : {0U, 1U, 300U, 2000U, 40000U}) {
    const std::string utf8(length, 'a');
    const std::wstring wide(length, L'a');
    const std::unique_ptr<wchar_t[]> widened(QULTMBTranscodeU8(utf8.c_str()));
    EXPECT_EQ(gLastArray, (length + 1) * sizeof(wchar_t));
    const std::unique_ptr<char[]> narrowed(QULTMBTranscodeU8(wide.c_str()));
    EXPECT_EQ(gLastArray, length + 1);
    const std::unique_ptr<char16_t[]> sixteen(QULTMBTranscodeCodePageToChar16(utf8.c_str()));
    EXPECT_EQ(gLastArray, (length + 1) * sizeof(char16_t));
    const std::unique_ptr<char[]> page(QULTMBTranscodeCodePage(wide.c_str()));
    EXPECT_EQ(gLastArray, length + 1);
  }
}

TEST_F(Allocation, FailureInANameLeaksNothing) {
  SystemEncoding();  // is kept for the life of the process
  const std::string text(3000, 'a');
  const long before = gBlocks;
  for (long count = 0; count < 40; ++count) {
    try {
      WithAllocations(count, [&] {
        ExtNameStr name;
        name.SetU8(text);
        return 0;
      });
    } catch (const std::bad_alloc&) {
      EXPECT_LT(count, 5);
    }
    ASSERT_EQ(gBlocks, before) << count;
  }
}

}  // namespace
