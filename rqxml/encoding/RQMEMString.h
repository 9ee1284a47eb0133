#ifndef RQXML_ENCODING_RQMEMSTRING_H
#define RQXML_ENCODING_RQMEMSTRING_H

/// @file
/// Byte-string functions that never split a multibyte character, in three families:
///
/// - `_8`: the text is UTF-8, whatever the locale.
/// - `_C`: the text is in the runtime's character-type locale. The caseless comparisons and `QULTMBU32Get_C` read it
///   through the default converter instead (`QULTMBGetDefaultConverter`), whose encoding need not be the locale's.
/// - `_A`: the `_8` function of the same name while UTF-8 mode is on (`qUTF8mode`), else the `_C` function.
///
/// Texts end at a zero byte or earlier, at the length that is given; a zero byte ends a text within its length too.
/// Nothing is read behind the zero byte, also not where a character that begins before it is announced to be longer;
/// `QULTMBU32Get_C` with an `end` is the exception. A pointer that is returned points into the text that was handed in.
/// Unless stated otherwise no pointer may be null. No function allocates, except that ICU does where a converter is
/// cloned, or the default one is made; none throws.
///
/// The functions keep no state and may run in several threads while nobody changes the locale, UTF-8 mode or the
/// default converter. `QULTMBmblen_C` shares the state of the runtime's `mblen`. What goes through the default
/// converter makes it when there is none yet, which belongs to the start of the process.

#include <cstddef>

#include "rqxml/common/RQExport.h"

namespace RQMEM_NAMESPACE {

// ---- UTF-8 ----

/// The length of the character at `s` in bytes, as its first byte announces it: 1 for a byte below C2 or above F4
/// (the zero byte included), else 2 to 4, shortened to the bytes before the zero byte. The bytes that follow are not
/// validated.
RQ_API std::size_t QULTMBmbclen_8(const char* s);

/// The length of the well-formed character at `s` within `n` bytes: 1 to 4; 0 when `s` is null or at a zero byte or `n`
/// is 0; -1 for a sequence that is malformed or longer than `n`. Overlong forms and surrogates are malformed.
RQ_API int QULTMBmblen_8(const char* s, std::size_t n);

/// The first character of `s` whose code point is `c`, or null. A `c` below 128 is searched as the runtime's `strchr`
/// does, so that 0 finds the terminator; otherwise the text is divided into characters by their first bytes alone
/// (below C0 one byte, which stands for itself; below E0 two; below F0 three; else four), without validation. A
/// character that the terminator cuts is none that can be found.
RQ_API char* QULTMBstrchr_8(const char* s, unsigned int c);

/// As `QULTMBstrchr_8`, the last such character.
RQ_API char* QULTMBstrrchr_8(const char* s, unsigned int c);

/// The byte offset of the first character of `s` whose code point occurs in `reject`, or the byte length of `s`. Both
/// texts are divided into characters as in `QULTMBstrchr_8`.
RQ_API std::size_t QULTMBstrcspn_8(const char* s, const char* reject);

/// Copies at most `n` bytes of `src`, as many as end with a whole character: a malformed or cut sequence, a surrogate
/// or a noncharacter at the end is dropped, and again what then stands at the end. The rest of the `n` bytes is filled
/// with zero bytes; a copy of `n` bytes gets no terminator. A null `src` counts as empty; nothing happens when `dst` is
/// null or `n` is 0. The two may overlap.
/// @returns `dst`
RQ_API char* QULTMBstrncpy_8(char* dst, const char* src, std::size_t n);

/// 1 when the texts are equal after the simple lower-casing of each character, else 0. A byte that belongs to no
/// well-formed character equals only the same such byte. A proper prefix is not equal.
/// @param a      a text
/// @param lenA   its length in bytes; negative: up to the zero byte
/// @param b      another text
/// @param lenB   its length in bytes; negative: up to the zero byte
/// @param status null, or receives 3 when a malformed sequence was met up to the first difference, else 0
RQ_API int QULTMBqstricmp_8(const char* a, int lenA, const char* b, int lenB, int* status);

/// 0 when the first `n` bytes of the texts are equal as in `QULTMBqstricmp_8`; else negative or positive as the first
/// character that differs comes earlier or later in code point order once it is lower-cased. The end of a text comes
/// before every character, a malformed byte after all of them. A character that `n` cuts is malformed.
RQ_API int QULTMBstrnicmp_8(const char* a, const char* b, std::size_t n);

/// `s` plus `QULTMBmbclen_8(s)`; 1 behind the terminator when `s` points at it.
RQ_API char* QULTMBstrinc_8(const char* s);

/// The start index of the character of `s` that ends just before byte `i`. Where that is malformed, a surrogate or a
/// noncharacter, `i - 1`; 0 for 0. Reads no byte at or behind `i`, and at most four before it, which are the caller's:
/// a zero byte does not end the text here.
RQ_API std::size_t QULTMBPreviousIndex_8(const char* s, std::size_t i);

/// The character before `p` in the text that begins at `start`, by `QULTMBPreviousIndex_8`; `p` itself when it is null
/// or equals `start`. Any other `p` points behind `start`, into the text or at its end.
RQ_API char* QULTMBAnsiPrev_8(const char* start, const char* p);

// ---- the runtime's locale ----

/// 2 when the byte at `s` is a lead byte (`QULTMBIsLeadByte_C`) and no zero byte follows, else 1.
RQ_API std::size_t QULTMBmbclen_C(const char* s);

/// The runtime's `mblen(s, n)`, with its null pointers and its shared state.
RQ_API int QULTMBmblen_C(const char* s, std::size_t n);

/// The first character of `s` whose first byte is the low byte of `c`; else the terminator when `c` is 0, or null. A
/// sequence that the locale does not know is divided into single bytes.
RQ_API char* QULTMBstrchr_C(const char* s, unsigned int c);

/// As `QULTMBstrchr_C`, the last such character. Behind a match the search goes on with the next byte, also inside a
/// longer character.
RQ_API char* QULTMBstrrchr_C(const char* s, unsigned int c);

/// The byte offset of the first character of `s` that occurs in `reject`, or the byte length of `s`. A byte that
/// belongs to no character of the locale counts as one.
RQ_API std::size_t QULTMBstrcspn_C(const char* s, const char* reject);

/// Copies at most `n` bytes of `src`, as many as end with a whole character of the locale, and fills the rest of the
/// `n` bytes with zero bytes; a copy of `n` bytes gets no terminator. The beginning of a character whose end is not
/// among them is dropped, also where the text itself ends inside it. Nothing happens when `dst` or `src` is null or `n`
/// is 0. The two may overlap.
/// @returns `dst`
RQ_API char* QULTMBstrncpy_C(char* dst, const char* src, std::size_t n);

/// As `QULTMBqstricmp_8` for text in the encoding of the default converter. A sequence that is malformed or unassigned
/// there equals only the same bytes. Where no default converter can be opened, all bytes count as malformed.
RQ_API int QULTMBqstricmp_C(const char* a, int lenA, const char* b, int lenB, int* status);

/// As `QULTMBstrnicmp_8` for text in the encoding of the default converter.
RQ_API int QULTMBstrnicmp_C(const char* a, const char* b, std::size_t n);

/// `s` plus `QULTMBmbclen_C(s)`; 1 behind the terminator when `s` points at it.
RQ_API char* QULTMBstrinc_C(const char* s);

/// The start index of the character of `s` that holds byte `i`, where a lead byte and the byte behind it are one
/// character and any other byte is one. The text's length when `i` is not below it; 0 when `s` is null.
RQ_API std::size_t QULTMBFindStart_C(const char* s, std::size_t i);

/// The character before `p` in the text that begins at `start`, by `QULTMBFindStart_C`; `p` itself when it is null or
/// equals `start`. Any other `p` points behind `start`, into the text or at its end.
RQ_API char* QULTMBAnsiPrev_C(const char* start, const char* p);

/// Reads one character through the default converter, in its initial state.
/// @param codePoint receives the character, 0 when there is none; not null
/// @param s         the text
/// @param offset    the byte offset of the character
/// @param end       the byte offset of the text's end: all bytes before it can be read, and a zero byte among those
///                  that belong to the character does not end it; negative: the zero byte at or behind `offset`
/// @returns the bytes read; 0 when `end` is not above `offset` or a zero byte stands there; -1 when the sequence is
///          malformed, unassigned or cut, or half a surrogate pair, or when there is no converter. In ISCII, where a
///          character may change with the next one, ICU reads that one too.
RQ_API int QULTMBU32Get_C(int* codePoint, const char* s, int offset, int end);

/// 1 when the byte `c` is a lead byte: the locale's longest character has two bytes, and `c` alone is the beginning of
/// one. 0 otherwise, also when `c` is above 255.
RQ_API int QULTMBIsLeadByte_C(unsigned int c);

// ---- 8-bit text: UTF-8 in UTF-8 mode, else the runtime's locale ----

/// `QULTMBstrchr_8` in UTF-8 mode, else `QULTMBstrchr_C`.
RQ_API char* QULTMBstrchr_A(const char* s, unsigned int c);

/// `QULTMBstrrchr_8` in UTF-8 mode, else `QULTMBstrrchr_C`.
RQ_API char* QULTMBstrrchr_A(const char* s, unsigned int c);

/// `QULTMBstrcspn_8` in UTF-8 mode, else `QULTMBstrcspn_C`.
RQ_API std::size_t QULTMBstrcspn_A(const char* s, const char* reject);

/// `QULTMBstrncpy_8` in UTF-8 mode, else `QULTMBstrncpy_C`: a null `src` counts as empty in UTF-8 mode, and leaves
/// `dst` alone outside it.
RQ_API char* QULTMBstrncpy_A(char* dst, const char* src, std::size_t n);

/// `QULTMBqstricmp_8` in UTF-8 mode, else `QULTMBqstricmp_C`.
RQ_API int QULTMBqstricmp_A(const char* a, int lenA, const char* b, int lenB, int* status);

/// `QULTMBstrnicmp_8` in UTF-8 mode, else `QULTMBstrnicmp_C`.
RQ_API int QULTMBstrnicmp_A(const char* a, const char* b, std::size_t n);

/// `QULTMBstrinc_8` in UTF-8 mode, else `QULTMBstrinc_C`.
RQ_API char* QULTMBstrinc_A(const char* s);

/// `QULTMBAnsiPrev_8` in UTF-8 mode, else `QULTMBAnsiPrev_C`.
RQ_API char* QULTMBAnsiPrev_A(const char* start, const char* p);

}  // namespace RQMEM_NAMESPACE

#endif
