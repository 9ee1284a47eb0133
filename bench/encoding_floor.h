#ifndef RQXML_BENCH_ENCODING_FLOOR_H
#define RQXML_BENCH_ENCODING_FLOOR_H

// What ICU alone, and the runtime's iconv, cost for a conversion into a buffer that is large enough. Each function
// converts the whole source and returns how many units it wrote.

#include <iconv.h>
#include <unicode/ucnv.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace rqxml_bench {

struct CloseIcu {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using IcuConverter = std::unique_ptr<UConverter, CloseIcu>;

/// A converter with "?" for what its encoding lacks, as this library's converters have it.
IcuConverter OpenIcu(const char* name);

/// A clone that is closed at the end of the expression that makes it. Threads that share a converter need one for each
/// conversion; to open one by its name instead costs more.
IcuConverter CloneIcu(const IcuConverter& converter);

/// The UTF-16 between ICU and text in wchar_t. It is kept from call to call: a program that converts often would keep
/// it too, so that the floor pays for no memory.
using Pivot = std::vector<char16_t>;

// UTF-8 and UTF-16: ICU's functions for strings, the fastest it has. For wchar_t, a loop that the compiler turns into
// vector instructions copies the 16-bit units.

int IcuFrom8(char16_t* target, int room, const char* source, int length);
int IcuFrom8(Pivot& pivot, wchar_t* target, int room, const char* source, int length);
int IcuTo8(char* target, int room, const char16_t* source, int length);
int IcuTo8(Pivot& pivot, char* target, int room, const wchar_t* source, int length);

// Code pages and UTF-16: a clone, a callback that notes whether something is replaced, as the library's status tells
// it, one call for the whole text, close. For wchar_t in pieces that stay in the cache, which is faster than one large
// piece.

int IcuFromPage(const IcuConverter& page, char16_t* target, int room, const char* source, int length);
int IcuFromPage(const IcuConverter& page, wchar_t* target, int room, const char* source, int length);
int IcuToPage(const IcuConverter& page, char* target, int room, const char16_t* source, int length);
int IcuToPage(const IcuConverter& page, char* target, int room, const wchar_t* source, int length);

// Code pages and UTF-8: a clone and its callback, the algorithmic UTF-8 functions, which take ICU's direct ways where
// there are some and need no second converter, close.

int IcuFromPageTo8(const IcuConverter& page, char* target, int room, const char* source, int length);
int IcuFrom8ToPage(const IcuConverter& page, char* target, int room, const char* source, int length);

/// The runtime's converter, opened once and put into its initial state for each text.
class Iconv {
 public:
  Iconv(const char* from, const char* to) : fHandle(iconv_open(to, from)) {}
  ~Iconv() {
    if (fHandle != kNone) iconv_close(fHandle);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  /// False when the text has a character that the target encoding lacks, and for an encoding that iconv does not know.
  bool Convert(const void* source, std::size_t bytes, void* target, std::size_t room) const;

 private:
  inline static const iconv_t kNone = reinterpret_cast<iconv_t>(-1);
  iconv_t fHandle;
};

}  // namespace rqxml_bench

#endif
