#ifndef RQXML_ENCODING_RQMEMTRANSCODE_H
#define RQXML_ENCODING_RQMEMTRANSCODE_H

/// @file
/// Conversions between UTF-8 ("8", "U8"), UTF-16 ("16", "U16"), the encoding of a converter ("CodePage") and the
/// product's 8-bit text ("Generic"), which is UTF-8 in UTF-8 mode and in the default converter's encoding otherwise.
///
/// UTF-16 text travels in `wchar_t`, one 16-bit unit in each element. Where `wchar_t` has 32 bits, an input element
/// above 0xFFFF is that code point, and one above 0x10FFFF an illegal sequence.
///
/// Status of every conversion:
/// - 0 clean
/// - 1 the output did not fit and was cut
/// - 2 a working buffer could not be allocated, or a size is beyond `int`; a destination string is empty then
/// - 3 a character was replaced by "?", or the input is malformed, or ICU failed, or there is no default converter;
///   wherever that is in the source, also behind the place where the output was cut
///
/// Malformed UTF-8 or UTF-16 ends a conversion between these two: what stands before it is kept. A conversion from or
/// to a code page replaces it by "?" and goes on. U+FFFD stands for half a surrogate pair that a code page spells, when
/// it is read into UTF-8, and for malformed UTF-8 that is written in a Unicode encoding.
///
/// The converter argument is one of QULTMBConverterNew_8 and its sisters, null for the default converter. It is
/// borrowed, never changed (conversions work on a clone), and may be used by several threads at once.
///
/// Into a buffer: sizes and lengths count elements. Returns the number of elements written, without blanks and
/// terminator. A null destination has no room.
/// - A negative `sourceLength` means that the source ends at its zero. One place of `destinationSize` is kept for the
///   terminating zero, which is written. Otherwise no terminator is written, and every free place gets a blank.
/// - Output that does not fit is cut after the last whole character that fits; the freed places get blanks. In an
///   encoding with shift states the output ends in the initial state, except in x11-compound-text, SCSU and BOCU-1,
///   which end as ICU leaves them.
/// - A plain copy cuts at any byte, with status 0, and puts the terminator of a zero-terminated source just after the
///   copied bytes, which may be the place at index `destinationSize`.
/// - With a `destinationSize` of 0 or less nothing is written, and the converter is not used; the status is 1 if there
///   was text, else 0.
/// - A null source counts as empty. `status` may be null. Source and destination must not overlap.
///
/// Into a string: returns the status. The whole source is converted, zeros included. Source and destination may be the
/// same string.
///
/// Into a new array: a zero-terminated array of exactly the converted length plus one, which the caller releases with
/// `delete[]`; null when there is no memory for it, or a size is beyond `int`. A null source counts as empty. There is
/// no status: what is replaced or malformed cannot be told from the result.
///
/// No conversion throws.

#include <string>

#include "rqxml/common/RQExport.h"

namespace RQMEM_NAMESPACE {

/// @name Into a buffer
/// @{

/// UTF-16 to UTF-8.
RQ_API int QULTMB16to8(char* destination, int destinationSize, const wchar_t* source, int sourceLength, int* status);

/// UTF-8 to UTF-16.
RQ_API int QULTMB8to16(wchar_t* destination, int destinationSize, const char* source, int sourceLength, int* status);

/// UTF-16 to the converter's encoding.
RQ_API int QULTMB16toCodePage(void* converter, char* destination, int destinationSize, const wchar_t* source,
                              int sourceLength, int* status);

/// The converter's encoding to UTF-16.
RQ_API int QULTMBCodePageto16(void* converter, wchar_t* destination, int destinationSize, const char* source,
                              int sourceLength, int* status);

/// UTF-8 to the converter's encoding.
RQ_API int QULTMB8toCodePage(void* converter, char* destination, int destinationSize, const char* source,
                             int sourceLength, int* status);

/// The converter's encoding to UTF-8.
RQ_API int QULTMBCodePageto8(void* converter, char* destination, int destinationSize, const char* source,
                             int sourceLength, int* status);

/// UTF-16 to generic text.
RQ_API int QULTMB16toGeneric(char* destination, int destinationSize, const wchar_t* source, int sourceLength,
                             int* status);

/// Generic text to UTF-16.
RQ_API int QULTMBGenericto16(wchar_t* destination, int destinationSize, const char* source, int sourceLength,
                             int* status);

/// UTF-8 to generic text; a plain copy in UTF-8 mode.
RQ_API int QULTMB8toGeneric(char* destination, int destinationSize, const char* source, int sourceLength, int* status);

/// Generic text to UTF-8; a plain copy in UTF-8 mode.
RQ_API int QULTMBGenericto8(char* destination, int destinationSize, const char* source, int sourceLength, int* status);

/// Generic text to the converter's encoding; a plain copy outside UTF-8 mode, whatever the converter.
RQ_API int QULTMBGenerictoCodePage(void* converter, char* destination, int destinationSize, const char* source,
                                   int sourceLength, int* status);

/// The converter's encoding to generic text; a plain copy outside UTF-8 mode, whatever the converter.
RQ_API int QULTMBCodePagetoGeneric(void* converter, char* destination, int destinationSize, const char* source,
                                   int sourceLength, int* status);

/// @}

/// @name Into a string
/// @{

/// UTF-8 to UTF-16.
RQ_API int QULTMBU8ToU16(std::wstring& destination, const std::string& source);

/// UTF-16 to UTF-8.
RQ_API int QULTMBU16ToU8(std::string& destination, const std::wstring& source);

/// The converter's encoding to UTF-16.
RQ_API int QULTMBCodePageToU16(void* converter, std::wstring& destination, const std::string& source);

/// UTF-16 to the converter's encoding.
RQ_API int QULTMBU16ToCodePage(void* converter, std::string& destination, const std::wstring& source);

/// The converter's encoding to UTF-8.
RQ_API int QULTMBCodePageToU8(void* converter, std::string& destination, const std::string& source);

/// UTF-8 to the converter's encoding.
RQ_API int QULTMBU8ToCodePage(void* converter, std::string& destination, const std::string& source);

/// Generic text to UTF-16.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBGenericToU16(void* converter, std::wstring& destination, const std::string& source);

/// Generic text to UTF-16.
RQ_API int QULTMBGenericToU16(std::wstring& destination, const std::string& source);

/// UTF-16 to generic text.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBU16ToGeneric(void* converter, std::string& destination, const std::wstring& source);

/// UTF-16 to generic text.
RQ_API int QULTMBU16ToGeneric(std::string& destination, const std::wstring& source);

/// Generic text to UTF-8; a plain copy in UTF-8 mode.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBGenericToU8(void* converter, std::string& destination, const std::string& source);

/// Generic text to UTF-8; a plain copy in UTF-8 mode.
RQ_API int QULTMBGenericToU8(std::string& destination, const std::string& source);

/// UTF-8 to generic text; a plain copy in UTF-8 mode.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBU8ToGeneric(void* converter, std::string& destination, const std::string& source);

/// UTF-8 to generic text; a plain copy in UTF-8 mode.
RQ_API int QULTMBU8ToGeneric(std::string& destination, const std::string& source);

/// The converter's encoding to generic text; a plain copy outside UTF-8 mode.
/// @param converter used in UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBCodePageToGeneric(void* converter, std::string& destination, const std::string& source);

/// The converter's encoding to generic text; a plain copy outside UTF-8 mode.
RQ_API int QULTMBCodePageToGeneric(std::string& destination, const std::string& source);

/// Generic text to the converter's encoding; a plain copy outside UTF-8 mode.
/// @param converter used in UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBGenericToCodePage(void* converter, std::string& destination, const std::string& source);

/// Generic text to the converter's encoding; a plain copy outside UTF-8 mode.
RQ_API int QULTMBGenericToCodePage(std::string& destination, const std::string& source);

/// @}

/// @name Into a new array
/// @{

/// UTF-8 to UTF-16.
RQ_API wchar_t* QULTMBTranscodeU8(const char* source);

/// UTF-16 to UTF-8.
RQ_API char* QULTMBTranscodeU8(const wchar_t* source);

/// The default converter's encoding to UTF-16.
RQ_API wchar_t* QULTMBTranscodeCodePage(const char* source);

/// UTF-16 to the default converter's encoding.
RQ_API char* QULTMBTranscodeCodePage(const wchar_t* source);

/// Generic text to UTF-16.
RQ_API wchar_t* QULTMBTranscodeGeneric(const char* source);

/// UTF-16 to generic text.
RQ_API char* QULTMBTranscodeGeneric(const wchar_t* source);

/// @}

}  // namespace RQMEM_NAMESPACE

#endif
