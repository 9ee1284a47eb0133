#ifndef RQXML_ENCODING_RQMEMSHAPES_H
#define RQXML_ENCODING_RQMEMSHAPES_H

// The three shapes of a conversion: into a buffer, into a string, into a new array. Conversions are described in
// RQMEMConversions.h.

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include "rqxml/encoding/RQMEMSources.h"

namespace RQMEM_NAMESPACE {

constexpr int kClean = 0;
constexpr int kCut = 1;
constexpr int kNoMemory = 2;
constexpr int kProblem = 3;

inline void SetStatus(int* status, int value) {
  if (status != nullptr) *status = value;
}

/// The source of a buffer or array conversion; a negative length: up to the zero.
template <class Unit>
Text<Unit> SourceText(const Unit* source, int length) {
  if (source == nullptr) return {nullptr, nullptr};
  if (length < 0) return {source, source + std::char_traits<Unit>::length(source)};
  return {source, source + length};
}

template <class Unit>
Text<Unit> SourceText(const std::basic_string<Unit>& source) {
  return {source.data(), source.data() + source.size()};
}

/// The place for the output of a buffer conversion.
template <class Out>
struct Buffer {
  Out* begin;
  int size;
  bool terminated;  ///< as the source is

  bool Usable() const { return begin != nullptr && size > 0; }
  Out* Limit() const { return begin + size - (terminated ? 1 : 0); }
};

/// Writes the blanks and the terminator.
template <class Out>
int Complete(const Buffer<Out>& buffer, Out* end, bool cut) {
  Out* const filled = cut || !buffer.terminated ? std::fill_n(end, buffer.Limit() - end, Out{' '}) : end;
  if (buffer.terminated) *filled = Out{0};
  return static_cast<int>(end - buffer.begin);
}

/// Converts on without keeping the output, since a problem counts wherever it is.
/// @return whether there was any output
template <class Conversion>
bool Drain(Conversion& conversion) {
  constexpr std::size_t kSize = 512;
  using Out = typename Conversion::Out;
  std::array<Out, kSize> scratch;
  bool any = false;
  for (bool more = true; more;) {
    Out* end = scratch.data();
    more = conversion.Next(end, end + scratch.size());
    any = any || end != scratch.data();
  }
  return any;
}

template <class Conversion>
int IntoBuffer(Conversion&& conversion, const Buffer<typename std::decay_t<Conversion>::Out>& buffer, int* status) {
  auto* end = buffer.begin;
  bool cut = conversion.Next(end, buffer.Limit());
  if (cut) {
    conversion.MarkCut();
    cut = Drain(conversion);
    if (cut) conversion.CutToWhole(buffer.begin, end, buffer.Limit());
  }
  SetStatus(status, conversion.Problem() ? kProblem : cut ? kCut : kClean);
  return Complete(buffer, end, cut);
}

/// As IntoBuffer, with the conversion made of the arguments where there is room for anything.
template <class Conversion, class Unit, class... Converter>
int ConvertIntoBuffer(typename Conversion::Out* destination, int size, const Unit* source, int length, int* status,
                      Converter... converter) {
  const Buffer<typename Conversion::Out> buffer{destination, size, length < 0};
  const Text<Unit> text = SourceText(source, length);
  if (!buffer.Usable()) {
    SetStatus(status, text.Empty() ? kClean : kCut);
    return 0;
  }
  return IntoBuffer(Conversion(converter..., text), buffer, status);
}

/// A plain copy keeps no place for the terminator.
inline int CopyIntoBuffer(char* destination, int size, const char* source, int length, int* status) {
  const Buffer<char> buffer{destination, size, length < 0};
  const Text<char> text = SourceText(source, length);
  if (!buffer.Usable()) {
    SetStatus(status, text.Empty() ? kClean : kCut);
    return 0;
  }
  const std::size_t count = std::min(text.Length(), static_cast<std::size_t>(buffer.size));
  char* const end = std::copy_n(text.begin, count, buffer.begin);
  if (buffer.terminated)
    *end = 0;
  else
    std::fill_n(end, static_cast<std::size_t>(buffer.size) - count, ' ');
  SetStatus(status, kClean);
  return static_cast<int>(count);
}

/// How much room a conversion into a string asks for: what its largest result can need, and how much of it the stack
/// gives.
template <class Out>
struct Room {
  static constexpr std::size_t kUnitsEach = 1;
  static constexpr std::size_t kOnStack = 2050 / 2;
};
template <>
struct Room<char> {
  static constexpr std::size_t kUnitsEach = 4;
  static constexpr std::size_t kOnStack = 1025;
};

/// The working buffer of a conversion into a string: on the stack where a small one is enough.
template <class Out>
class WorkingBuffer {
 public:
  explicit WorkingBuffer(std::size_t needed)
      : fHeap(needed > fStack.size() ? new (std::nothrow) Out[std::min(needed, kLargest)] : nullptr),
        fBegin(needed > fStack.size() ? fHeap.get() : fStack.data()),
        fSize(needed > fStack.size() ? std::min(needed, kLargest) : fStack.size()) {}

  explicit operator bool() const { return fBegin != nullptr; }
  Out* Begin() const { return fBegin; }
  Out* End() const { return fBegin + fSize; }

 private:
  /// Longer text goes through in pieces.
  static constexpr std::size_t kLargest = 16384;

  std::array<Out, Room<Out>::kOnStack> fStack;
  const std::unique_ptr<Out[]> fHeap;
  Out* const fBegin;
  const std::size_t fSize;
};

template <class Out, class Conversion>
void AppendAll(std::basic_string<Out>& destination, Conversion& conversion, const WorkingBuffer<Out>& working) {
  for (bool more = true; more;) {
    Out* end = working.Begin();
    more = conversion.Next(end, working.End());
    destination.append(working.Begin(), end);
  }
}

/// The destination is not the source.
template <class Conversion, class Unit, class... Converter>
int ConvertIntoOther(std::basic_string<typename Conversion::Out>& destination, const std::basic_string<Unit>& source,
                     Converter... converter) {
  using Out = typename Conversion::Out;
  destination.clear();
  constexpr std::size_t kUnitsEach = Room<Out>::kUnitsEach;
  if (source.size() > (INT_MAX - 1) / kUnitsEach) return kNoMemory;
  const WorkingBuffer<Out> working(source.size() * kUnitsEach + 1);
  if (!working) return kNoMemory;
  try {
    Conversion conversion(converter..., SourceText(source));
    AppendAll(destination, conversion, working);
    return conversion.Problem() ? kProblem : kClean;
  } catch (const std::bad_alloc&) {
    destination.clear();
    return kNoMemory;
  }
}

template <class Conversion, class Unit, class... Converter>
int ConvertIntoString(std::basic_string<typename Conversion::Out>& destination, const std::basic_string<Unit>& source,
                      Converter... converter) {
  if constexpr (std::is_same_v<typename Conversion::Out, Unit>) {
    if (&destination == &source) {
      std::string result;
      const int status = ConvertIntoOther<Conversion>(result, source, converter...);
      destination.swap(result);
      return status;
    }
  }
  return ConvertIntoOther<Conversion>(destination, source, converter...);
}

/// The whole text, as it is.
inline int CopyIntoString(std::string& destination, const std::string& source) {
  if (source.size() > INT_MAX) {
    destination.clear();
    return kNoMemory;
  }
  try {
    destination = source;
    return kClean;
  } catch (const std::bad_alloc&) {
    destination.clear();
    return kNoMemory;
  }
}

/// A conversion's whole output with a terminating zero.
template <class Out, class Conversion>
Out* NewArray(Conversion& conversion, const WorkingBuffer<Out>& working) {
  std::basic_string<Out> before;  // stays empty where the working buffer holds everything
  Out* end = working.Begin();
  while (conversion.Next(end, working.End())) {
    before.append(working.Begin(), end);
    end = working.Begin();
  }
  const auto last = static_cast<std::size_t>(end - working.Begin());
  std::unique_ptr<Out[]> array(new Out[before.size() + last + 1]);
  Out* const behind = std::copy(before.begin(), before.end(), array.get());
  *std::copy_n(working.Begin(), last, behind) = Out{0};
  return array.release();
}

/// A new array with a terminating zero; null when there is no memory.
template <class Conversion, class Unit, class... Converter>
typename Conversion::Out* ConvertIntoArray(const Unit* source, Converter... converter) {
  using Out = typename Conversion::Out;
  const Text<Unit> text = SourceText(source, -1);
  constexpr std::size_t kUnitsEach = Room<Out>::kUnitsEach;
  if (text.Length() > (INT_MAX - 1) / kUnitsEach) return nullptr;
  const WorkingBuffer<Out> working(text.Length() * kUnitsEach + 1);
  if (!working) return nullptr;
  try {
    Conversion conversion(converter..., text);
    return NewArray(conversion, working);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace RQMEM_NAMESPACE

#endif
