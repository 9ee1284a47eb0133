#ifndef RQXML_ENCODING_RQMEMUTF16_H
#define RQXML_ENCODING_RQMEMUTF16_H

#include <cstddef>

namespace RQMEM_NAMESPACE {

/// Why a conversion stopped.
enum class Stop {
  AtEnd,      ///< everything is converted
  Full,       ///< the next character does not fit
  Malformed,  ///< the source stands at something that is no character
};

/// UTF-8 to UTF-16, one 16-bit unit in each element (wchar_t or char16_t). Both cursors are moved past what was
/// converted; only whole characters are written.
template <class Unit>
Stop DecodeUtf8(const char*& source, const char* end, Unit*& target, Unit* limit);

/// UTF-16 to UTF-8, as DecodeUtf8. An element above 0xFFFF is that code point.
template <class Unit>
Stop EncodeUtf8(const Unit*& source, const Unit* end, char*& target, char* limit);

/// How many bytes one replacement stands for where DecodeUtf8 met malformed text: the longest beginning of a character,
/// at least one byte.
std::size_t MalformedLength(const char* source, const char* end);

/// The length in bytes of what stands at `source`: a character or what MalformedLength counts.
std::size_t Utf8StepLength(const char* source, const char* end);

/// Copies elements that are wider than 16 bits to plain 16-bit units. False when one of them does not fit in 16 bits;
/// the target is of no use then.
bool NarrowPlain(const wchar_t* source, std::size_t length, char16_t* target);

/// As NarrowPlain, for any elements, as many as fit; both cursors are moved. Elements that are no character (halves of
/// surrogate pairs, values above 0x10FFFF) become surrogates that combine with none of their neighbours.
/// @param previous the unit that stands before the target
void Narrow(const wchar_t*& source, const wchar_t* end, char16_t*& target, char16_t* limit, char16_t previous);

/// How many of the first elements are below 0x80.
template <class Unit>
std::size_t AsciiLength(const Unit* source, std::size_t length);

/// How many of the first elements are in 0x20 to 0x7E.
template <class Unit>
std::size_t PrintableLength(const Unit* source, std::size_t length);

}  // namespace RQMEM_NAMESPACE

#endif
