// Every allocation fails once, and nothing may be left behind. The global operator new is replaced; the XML library's
// memory manager stands on it.

#include <gtest/gtest.h>
#include <link.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/temp_folder.h"

namespace {

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

Heap heap;

/// Stands before each block; as large as the strictest alignment.
struct alignas(std::max_align_t) Header {
  bool library;
};

void* Allocate(std::size_t size, const void* caller) {
  const bool library = heap.IsLibrary(caller);
  if (heap.untilFailure == 0) {
    heap.untilFailure = -1;
    heap.failed = true;
    heap.failedInLibrary = library;
    throw std::bad_alloc();
  }
  if (heap.untilFailure > 0) --heap.untilFailure;
  void* const place = std::malloc(sizeof(Header) + size);
  if (place == nullptr) throw std::bad_alloc();
  auto* const header = new (place) Header{library};
  ++(library ? heap.libraryBlocks : heap.ownBlocks);
  heap.liveBytes += static_cast<long>(malloc_usable_size(place));
  return header + 1;
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  Header* const header = static_cast<Header*>(block) - 1;
  --(header->library ? heap.libraryBlocks : heap.ownBlocks);
  heap.liveBytes -= static_cast<long>(malloc_usable_size(header));
  std::free(header);
}

/// Finds where the XML library's code lies.
void LocateLibrary() {
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

}  // namespace

/// Asked by the address sanitizer when the program starts. The tests count what is left themselves; the XML library
/// leaves much behind when its allocations fail.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() { return "detect_leaks=0"; }

void* operator new(std::size_t size) { return Allocate(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return Allocate(size, __builtin_return_address(0)); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }

namespace {

using RQCommon::RQStatus;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::Ok;
using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQXMLReadWrite;

const std::string& Document() {
  static const std::string document = rqtest::PmmlWithFields(
      rqtest::Field("age of the customer in years", "continuous", "double",
                    "<Value value='-1' property='missing' displayValue='unknown to the people who asked'/>"
                    "<Extension name='invalidRangeLower' value='-10'/>") +
          rqtest::Field("sex", "categorical", "string",
                        "<Value value='m' displayValue='male, as far as anybody could tell'/>"
                        "<Value value='f' displayValue='female'/><Value value='?' property='missing'/>") +
          rqtest::Field("grade", "ordinal", "integer", "<Value value='1'/><Value value='2'/>"),
      "<DerivedField name='binned'><Discretize field='age of the customer in years'>"
      "<DiscretizeBin binValue='younger than thirty years'><Interval rightMargin='30'/></DiscretizeBin>"
      "<DiscretizeBin binValue='thirty years or older'><Interval leftMargin='30'/></DiscretizeBin>"
      "</Discretize></DerivedField>");
  return document;
}

/// What one run came to: an exception of missing memory, or a status.
struct Outcome {
  bool outOfMemory = false;
  RQStatus status;
};

Outcome WithFailureAt(long allocation, const std::function<RQStatus()>& work) {
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
void FailEachOnce(const std::function<void(long)>& round,
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
/// own is made, parses and is destroyed: some of its constructors give nothing back.
long LeftByTheBareLibrary() {
  static const long most = [] {
    long left = 0;
    FailEachOnce(
        [](long allocation) {
          WithFailureAt(allocation, [] {
            xercesc::XercesDOMParser parser;
            const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(Document().data()),
                                                    Document().size(), "bare");
            parser.parse(source);
            return RQStatus();
          });
        },
        [&](long, long, long library) { left = std::max(left, library); });
    return left;
  }();
  return most;
}

class Allocation : public rqtest::WithPlatform {
 protected:
  Allocation() {
    LocateLibrary();
    LeftByTheBareLibrary();
  }

  /// As FailEachOnce; a failure outside the XML library must leave nothing behind, and one inside it nothing but
  /// what the library itself leaves.
  void FailEachOnceWithoutLeaks(const std::function<void(long)>& round) {
    ASSERT_NE(heap.libraryEnd, 0U);
    long failures = 0;
    FailEachOnce(round, [&](long allocation, long own, long library) {
      failures += heap.failed ? 1 : 0;
      ASSERT_EQ(own, 0) << "blocks left after a failure at allocation " << allocation;
      ASSERT_LE(library, heap.failedInLibrary ? LeftByTheBareLibrary() : 0)
          << "blocks of the XML library left after a failure at allocation " << allocation;
    });
    EXPECT_GT(failures, 10);
  }
};

Calls Filled(const RQPMMLParser& parser, bool useBins) {
  rqtest::RecordingVarList vars;
  EXPECT_EQ(parser.FillVarList(vars, {}, useBins), Ok());
  return vars.calls;
}

TEST_F(Allocation, EachMayFailInParsingAndFilling) {
  for (const bool useBins : {false, true}) {
    RQPMMLParser whole;
    ASSERT_EQ(rqtest::Parse(whole, Document()), Ok());
    const Calls expected = Filled(whole, useBins);
    FailEachOnceWithoutLeaks([&](long allocation) {
      RQPMMLParser parser;
      std::istringstream stream(Document());
      rqtest::RecordingVarList vars;
      const Outcome outcome = WithFailureAt(allocation, [&] {
        const RQStatus parsed = parser.ParseToDOM(stream);
        return parsed.IsOK() ? parser.FillVarList(vars, {}, useBins) : parsed;
      });
      if (!outcome.outOfMemory && outcome.status.IsOK()) {
        ASSERT_EQ(vars.calls, expected) << "a good status for less than the whole, allocation " << allocation;
      }
      ASSERT_EQ(rqtest::Parse(parser, Document()), Ok()) << "parse after a failure at allocation " << allocation;
      ASSERT_EQ(Filled(parser, useBins), expected) << "fill after a failure at allocation " << allocation;
    });
  }
}

TEST_F(Allocation, EachMayFailInFillingTheReferenceList) {
  RQPMMLParser parser;
  ASSERT_EQ(rqtest::Parse(parser, Document()), Ok());
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQMTD_NAMESPACE::RQVarList vars;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      return parser.FillVarList(vars, {"sex", "age of the customer in years"}, true);
    });
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      ASSERT_EQ(vars.Size(), 2) << allocation;
      EXPECT_EQ(vars.GetVariable(0)->GetName(), "age of the customer in years");
      EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetBinLabels().size(), 2U);
      EXPECT_EQ(vars.GetVariable(0)->GetEncoder().GetNumMissingValues().size(), 1U);
      EXPECT_TRUE(vars.GetVariable(0)->GetEncoder().HasInvalidRange());
      EXPECT_EQ(vars.GetVariable(1)->GetLabels().size(), 2U);
    }
    EXPECT_EQ(parser.GetStatus(), Ok());
  });
}

TEST_F(Allocation, EachMayFailInConstruction) {
  FailEachOnceWithoutLeaks([](long allocation) {
    WithFailureAt(allocation, [] { return RQPMMLParser().GetStatus(); });
    EXPECT_EQ(RQPMMLParser().GetStatus(), Ok());
  });
}

TEST_F(Allocation, EachMayFailInParsingAndWritingFiles) {
  const rqtest::TempFolder folder;
  const std::string in = rqtest::WriteFile(folder.File("in.xml"), Document());
  const std::string out = folder.File("out.xml");
  std::string expected;
  FailEachOnceWithoutLeaks([&](long allocation) {
    RQXMLReadWrite reader;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      const RQStatus parsed = reader.ParseToDOM(in);
      return parsed.IsOK() ? reader.WriteFromDOM(out, nullptr) : parsed;
    });
    if (!outcome.outOfMemory && outcome.status.IsOK()) {
      if (expected.empty()) expected = rqtest::ReadFile(out);
      ASSERT_EQ(rqtest::ReadFile(out), expected) << "a good status for less than the whole, allocation " << allocation;
    }
    ASSERT_EQ(reader.ParseToDOM(in), Ok()) << "parse after a failure at allocation " << allocation;
    ASSERT_EQ(reader.WriteFromDOM(out, nullptr), Ok()) << "write after a failure at allocation " << allocation;
    ASSERT_EQ(rqtest::ReadFile(out), expected) << "write after a failure at allocation " << allocation;
  });
}

TEST_F(Allocation, EachMayFailWhileAMalformedDocumentIsRefused) {
  FailEachOnceWithoutLeaks([](long allocation) {
    RQXMLReadWrite reader;
    std::istringstream stream("<a><b>text</c></a>");
    bool malformed = false;
    const Outcome outcome = WithFailureAt(allocation, [&] {
      try {
        return reader.ParseToDOM(stream);
      } catch (const xercesc::SAXParseException&) {
        malformed = true;
        return Failure(104);
      }
    });
    EXPECT_TRUE(outcome.outOfMemory || !outcome.status.IsOK()) << allocation;
    EXPECT_TRUE(malformed || heap.failed) << allocation;
    EXPECT_EQ(reader.GetDocument(), nullptr) << allocation;
  });
}

// Memory over many parses

const std::string& LargeDocument() {
  static const std::string document = [] {
    std::string fields;
    for (int i = 0; i < 300; ++i) {
      fields += rqtest::Field("field" + std::to_string(i), "categorical", "string", "<Value value='a'/>");
    }
    return rqtest::PmmlWithFields(fields);
  }();
  return document;
}

/// Live bytes after the third and after the fiftieth round.
void ExpectNoGrowth(const std::function<void()>& round) {
  for (int i = 0; i < 3; ++i) round();
  const long early = heap.liveBytes;
  for (int i = 3; i < 50; ++i) round();
  EXPECT_LE(heap.liveBytes, early + early / 10);
}

TEST_F(Allocation, FiftyParsesOfOneReaderHoldNoMoreThanAFew) {
  RQXMLReadWrite reader;
  ExpectNoGrowth([&] {
    std::istringstream stream(LargeDocument());
    ASSERT_EQ(reader.ParseToDOM(stream), Ok());
  });
}

TEST_F(Allocation, FiftyParsesOfOnePmmlParserHoldNoMoreThanAFew) {
  RQPMMLParser parser;
  ExpectNoGrowth([&] { ASSERT_EQ(rqtest::Parse(parser, LargeDocument()), Ok()); });
}

TEST_F(Allocation, FiftyFailedParsesHoldNoMoreThanAFew) {
  RQPMMLParser parser;
  RQXMLReadWrite reader;
  const std::string malformed = LargeDocument().substr(0, LargeDocument().size() - 10);
  const std::string wrongRoot = "<x>" + LargeDocument() + "</x>";
  ExpectNoGrowth([&] {
    EXPECT_THROW(rqtest::Parse(parser, malformed), xercesc::SAXParseException);
    EXPECT_EQ(rqtest::Parse(parser, wrongRoot), Failure(105));
    EXPECT_EQ(rqtest::Parse(parser, LargeDocument() + "\xC0\x80"), Failure(104));
    std::istringstream stream(malformed);
    EXPECT_THROW(reader.ParseToDOM(stream), xercesc::SAXParseException);
    EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  });
}

TEST_F(Allocation, ParseThatFailsGivesTheDocumentBeforeItBack) {
  RQXMLReadWrite reader;
  EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  const long empty = heap.liveBytes;
  std::istringstream stream(LargeDocument());
  ASSERT_EQ(reader.ParseToDOM(stream), Ok());
  const long full = heap.liveBytes;
  ASSERT_GT(full, empty + 100000);
  EXPECT_EQ(reader.ParseToDOM("/nonexistent/a.xml"), Failure(104));
  EXPECT_LT(heap.liveBytes, empty + (full - empty) / 4);
}

TEST_F(Allocation, FiftyFillsHoldNothing) {
  RQPMMLParser parser;
  ASSERT_EQ(rqtest::Parse(parser, Document()), Ok());
  rqtest::RecordingVarList discarded;
  ASSERT_EQ(parser.FillVarList(discarded, {}, true), Ok());
  const long before = heap.LiveBlocks();
  for (int i = 0; i < 50; ++i) Filled(parser, true);
  EXPECT_EQ(heap.LiveBlocks(), before);
}

}  // namespace
