#include "rqxml/encoding/RQMEMChar16.h"

#include "rqxml/encoding/RQMEMConversions.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMShapes.h"

namespace RQMEM_NAMESPACE {

namespace {

using ToUtf16 = Utf8ToUtf16<char16_t>;
using FromUtf16 = Utf16ToUtf8<char16_t>;
using PageToUtf16 = CodePageToUtf16<char16_t>;
using Utf16ToPage = ToCodePage<Char16Source>;

}  // namespace

int QULTMB16to8(char* destination, int destinationSize, const char16_t* source, int sourceLength, int* status) {
  return ConvertIntoBuffer<FromUtf16>(destination, destinationSize, source, sourceLength, status);
}

int QULTMB8to16(char16_t* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  return ConvertIntoBuffer<ToUtf16>(destination, destinationSize, source, sourceLength, status);
}

int QULTMB16toCodePage(void* converter, char* destination, int destinationSize, const char16_t* source,
                       int sourceLength, int* status) {
  return ConvertIntoBuffer<Utf16ToPage>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMBCodePageto16(void* converter, char16_t* destination, int destinationSize, const char* source,
                       int sourceLength, int* status) {
  return ConvertIntoBuffer<PageToUtf16>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMB16toGeneric(char* destination, int destinationSize, const char16_t* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMB16to8(destination, destinationSize, source, sourceLength, status);
  return QULTMB16toCodePage(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMBGenericto16(char16_t* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMB8to16(destination, destinationSize, source, sourceLength, status);
  return QULTMBCodePageto16(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMBU8ToU16(std::u16string& destination, const std::string& source) {
  return ConvertIntoString<ToUtf16>(destination, source);
}

int QULTMBU16ToU8(std::string& destination, const std::u16string& source) {
  return ConvertIntoString<FromUtf16>(destination, source);
}

int QULTMBCodePageToU16(void* converter, std::u16string& destination, const std::string& source) {
  return ConvertIntoString<PageToUtf16>(destination, source, converter);
}

int QULTMBU16ToCodePage(void* converter, std::string& destination, const std::u16string& source) {
  return ConvertIntoString<Utf16ToPage>(destination, source, converter);
}

int QULTMBGenericToU16(void* converter, std::u16string& destination, const std::string& source) {
  if (qUTF8mode() != 0) return QULTMBU8ToU16(destination, source);
  return QULTMBCodePageToU16(converter, destination, source);
}

int QULTMBGenericToU16(std::u16string& destination, const std::string& source) {
  return QULTMBGenericToU16(nullptr, destination, source);
}

int QULTMBU16ToGeneric(void* converter, std::string& destination, const std::u16string& source) {
  if (qUTF8mode() != 0) return QULTMBU16ToU8(destination, source);
  return QULTMBU16ToCodePage(converter, destination, source);
}

int QULTMBU16ToGeneric(std::string& destination, const std::u16string& source) {
  return QULTMBU16ToGeneric(nullptr, destination, source);
}

char16_t* QULTMBTranscodeU8ToChar16(const char* source) { return ConvertIntoArray<ToUtf16>(source); }

char* QULTMBTranscodeU8(const char16_t* source) { return ConvertIntoArray<FromUtf16>(source); }

char16_t* QULTMBTranscodeCodePageToChar16(const char* source) {
  return ConvertIntoArray<PageToUtf16>(source, static_cast<void*>(nullptr));
}

char* QULTMBTranscodeCodePage(const char16_t* source) {
  return ConvertIntoArray<Utf16ToPage>(source, static_cast<void*>(nullptr));
}

char16_t* QULTMBTranscodeGenericToChar16(const char* source) {
  return qUTF8mode() != 0 ? QULTMBTranscodeU8ToChar16(source) : QULTMBTranscodeCodePageToChar16(source);
}

char* QULTMBTranscodeGeneric(const char16_t* source) {
  return qUTF8mode() != 0 ? QULTMBTranscodeU8(source) : QULTMBTranscodeCodePage(source);
}

}  // namespace RQMEM_NAMESPACE
