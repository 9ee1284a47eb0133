#ifndef RQXML_ENCODING_RQMEMCHAR16_H
#define RQXML_ENCODING_RQMEMCHAR16_H

/// @file
/// The conversions of RQMEMTranscode.h for UTF-16 in `char16_t`, with the same rules. Functions that would differ from
/// those in their result alone have names that end in `ToChar16`.

#include <string>

#include "rqxml/common/RQExport.h"

namespace RQMEM_NAMESPACE {

/// @name Into a buffer
/// @{

/// UTF-16 to UTF-8.
RQ_API int QULTMB16to8(char* destination, int destinationSize, const char16_t* source, int sourceLength, int* status);

/// UTF-8 to UTF-16.
RQ_API int QULTMB8to16(char16_t* destination, int destinationSize, const char* source, int sourceLength, int* status);

/// UTF-16 to the converter's encoding.
RQ_API int QULTMB16toCodePage(void* converter, char* destination, int destinationSize, const char16_t* source,
                              int sourceLength, int* status);

/// The converter's encoding to UTF-16.
RQ_API int QULTMBCodePageto16(void* converter, char16_t* destination, int destinationSize, const char* source,
                              int sourceLength, int* status);

/// UTF-16 to generic text.
RQ_API int QULTMB16toGeneric(char* destination, int destinationSize, const char16_t* source, int sourceLength,
                             int* status);

/// Generic text to UTF-16.
RQ_API int QULTMBGenericto16(char16_t* destination, int destinationSize, const char* source, int sourceLength,
                             int* status);

/// @}

/// @name Into a string
/// @{

/// UTF-8 to UTF-16.
RQ_API int QULTMBU8ToU16(std::u16string& destination, const std::string& source);

/// UTF-16 to UTF-8.
RQ_API int QULTMBU16ToU8(std::string& destination, const std::u16string& source);

/// The converter's encoding to UTF-16.
RQ_API int QULTMBCodePageToU16(void* converter, std::u16string& destination, const std::string& source);

/// UTF-16 to the converter's encoding.
RQ_API int QULTMBU16ToCodePage(void* converter, std::string& destination, const std::u16string& source);

/// Generic text to UTF-16.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBGenericToU16(void* converter, std::u16string& destination, const std::string& source);

/// Generic text to UTF-16.
RQ_API int QULTMBGenericToU16(std::u16string& destination, const std::string& source);

/// UTF-16 to generic text.
/// @param converter used outside UTF-8 mode; null for the default converter
/// @param destination receives the result
/// @param source what is converted
RQ_API int QULTMBU16ToGeneric(void* converter, std::string& destination, const std::u16string& source);

/// UTF-16 to generic text.
RQ_API int QULTMBU16ToGeneric(std::string& destination, const std::u16string& source);

/// @}

/// @name Into a new array
/// @{

/// UTF-8 to UTF-16.
RQ_API char16_t* QULTMBTranscodeU8ToChar16(const char* source);

/// UTF-16 to UTF-8.
RQ_API char* QULTMBTranscodeU8(const char16_t* source);

/// The default converter's encoding to UTF-16.
RQ_API char16_t* QULTMBTranscodeCodePageToChar16(const char* source);

/// UTF-16 to the default converter's encoding.
RQ_API char* QULTMBTranscodeCodePage(const char16_t* source);

/// Generic text to UTF-16.
RQ_API char16_t* QULTMBTranscodeGenericToChar16(const char* source);

/// UTF-16 to generic text.
RQ_API char* QULTMBTranscodeGeneric(const char16_t* source);

/// @}

}  // namespace RQMEM_NAMESPACE

#endif
