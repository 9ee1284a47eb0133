#ifndef RQXML_ENCODING_RQMEMLOCALE_H
#define RQXML_ENCODING_RQMEMLOCALE_H

/// @file
/// Internal: the characters of the runtime's character-type locale, and the flag that makes every byte one.

#include <cstddef>

namespace RQMEM_NAMESPACE::locale {

/// Not zero: the locale is a single-byte one, and the _C functions (and the _A ones outside UTF-8 mode) that divide
/// text by the locale take each byte as a character. Those that go through the default converter, and QULTMBmblen_C,
/// ask the converter and the runtime as ever. Nothing sets it: the ways for longer characters are right for single
/// bytes too.
extern int gSingleByte;

/// True when the byte leads a character of two bytes, in a locale that has no longer ones.
bool IsLeadByte(unsigned char byte);

/// The length of the character at `s`, which is not at the zero byte, within `n` bytes: 1 as well for a byte that
/// belongs to no character of the locale; 0 where the `n` bytes are the beginning of a longer character.
///
/// Starts from the initial state and keeps none, unlike `mblen`, so that threads do not disturb each other.
std::size_t LengthWithin(const char* s, std::size_t n);

/// The length of the character at `s`, which is not at the zero byte, of at most five bytes and within the text: 1 as
/// well where the locale knows none.
std::size_t LengthAt(const char* s);

}  // namespace RQMEM_NAMESPACE::locale

#endif
