#include "rqxml/encoding/RQMEMTranscode.h"

#include "rqxml/encoding/RQMEMConversions.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMShapes.h"

namespace RQMEM_NAMESPACE {

namespace {

using ToUtf16 = Utf8ToUtf16<wchar_t>;
using FromUtf16 = Utf16ToUtf8<wchar_t>;
using PageToUtf16 = CodePageToUtf16<wchar_t>;
using Utf16ToPage = ToCodePage<WideSource>;
using Utf8ToPage = ToCodePage<Utf8Source>;

}  // namespace

int QULTMB16to8(char* destination, int destinationSize, const wchar_t* source, int sourceLength, int* status) {
  return ConvertIntoBuffer<FromUtf16>(destination, destinationSize, source, sourceLength, status);
}

int QULTMB8to16(wchar_t* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  return ConvertIntoBuffer<ToUtf16>(destination, destinationSize, source, sourceLength, status);
}

int QULTMB16toCodePage(void* converter, char* destination, int destinationSize, const wchar_t* source, int sourceLength,
                       int* status) {
  return ConvertIntoBuffer<Utf16ToPage>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMBCodePageto16(void* converter, wchar_t* destination, int destinationSize, const char* source, int sourceLength,
                       int* status) {
  return ConvertIntoBuffer<PageToUtf16>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMB8toCodePage(void* converter, char* destination, int destinationSize, const char* source, int sourceLength,
                      int* status) {
  return ConvertIntoBuffer<Utf8ToPage>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMBCodePageto8(void* converter, char* destination, int destinationSize, const char* source, int sourceLength,
                      int* status) {
  return ConvertIntoBuffer<CodePageToUtf8>(destination, destinationSize, source, sourceLength, status, converter);
}

int QULTMB16toGeneric(char* destination, int destinationSize, const wchar_t* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMB16to8(destination, destinationSize, source, sourceLength, status);
  return QULTMB16toCodePage(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMBGenericto16(wchar_t* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMB8to16(destination, destinationSize, source, sourceLength, status);
  return QULTMBCodePageto16(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMB8toGeneric(char* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return CopyIntoBuffer(destination, destinationSize, source, sourceLength, status);
  return QULTMB8toCodePage(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMBGenericto8(char* destination, int destinationSize, const char* source, int sourceLength, int* status) {
  if (qUTF8mode() != 0) return CopyIntoBuffer(destination, destinationSize, source, sourceLength, status);
  return QULTMBCodePageto8(nullptr, destination, destinationSize, source, sourceLength, status);
}

int QULTMBGenerictoCodePage(void* converter, char* destination, int destinationSize, const char* source,
                            int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMB8toCodePage(converter, destination, destinationSize, source, sourceLength, status);
  return CopyIntoBuffer(destination, destinationSize, source, sourceLength, status);
}

int QULTMBCodePagetoGeneric(void* converter, char* destination, int destinationSize, const char* source,
                            int sourceLength, int* status) {
  if (qUTF8mode() != 0) return QULTMBCodePageto8(converter, destination, destinationSize, source, sourceLength, status);
  return CopyIntoBuffer(destination, destinationSize, source, sourceLength, status);
}

int QULTMBU8ToU16(std::wstring& destination, const std::string& source) {
  return ConvertIntoString<ToUtf16>(destination, source);
}

int QULTMBU16ToU8(std::string& destination, const std::wstring& source) {
  return ConvertIntoString<FromUtf16>(destination, source);
}

int QULTMBCodePageToU16(void* converter, std::wstring& destination, const std::string& source) {
  return ConvertIntoString<PageToUtf16>(destination, source, converter);
}

int QULTMBU16ToCodePage(void* converter, std::string& destination, const std::wstring& source) {
  return ConvertIntoString<Utf16ToPage>(destination, source, converter);
}

int QULTMBCodePageToU8(void* converter, std::string& destination, const std::string& source) {
  return ConvertIntoString<CodePageToUtf8>(destination, source, converter);
}

int QULTMBU8ToCodePage(void* converter, std::string& destination, const std::string& source) {
  return ConvertIntoString<Utf8ToPage>(destination, source, converter);
}

int QULTMBGenericToU16(void* converter, std::wstring& destination, const std::string& source) {
  if (qUTF8mode() != 0) return QULTMBU8ToU16(destination, source);
  return QULTMBCodePageToU16(converter, destination, source);
}

int QULTMBGenericToU16(std::wstring& destination, const std::string& source) {
  return QULTMBGenericToU16(nullptr, destination, source);
}

int QULTMBU16ToGeneric(void* converter, std::string& destination, const std::wstring& source) {
  if (qUTF8mode() != 0) return QULTMBU16ToU8(destination, source);
  return QULTMBU16ToCodePage(converter, destination, source);
}

int QULTMBU16ToGeneric(std::string& destination, const std::wstring& source) {
  return QULTMBU16ToGeneric(nullptr, destination, source);
}

int QULTMBGenericToU8(void* converter, std::string& destination, const std::string& source) {
  if (qUTF8mode() != 0) return CopyIntoString(destination, source);
  return QULTMBCodePageToU8(converter, destination, source);
}

int QULTMBGenericToU8(std::string& destination, const std::string& source) {
  return QULTMBGenericToU8(nullptr, destination, source);
}

int QULTMBU8ToGeneric(void* converter, std::string& destination, const std::string& source) {
  if (qUTF8mode() != 0) return CopyIntoString(destination, source);
  return QULTMBU8ToCodePage(converter, destination, source);
}

int QULTMBU8ToGeneric(std::string& destination, const std::string& source) {
  return QULTMBU8ToGeneric(nullptr, destination, source);
}

int QULTMBCodePageToGeneric(void* converter, std::string& destination, const std::string& source) {
  if (qUTF8mode() != 0) return QULTMBCodePageToU8(converter, destination, source);
  return CopyIntoString(destination, source);
}

int QULTMBCodePageToGeneric(std::string& destination, const std::string& source) {
  return QULTMBCodePageToGeneric(nullptr, destination, source);
}

int QULTMBGenericToCodePage(void* converter, std::string& destination, const std::string& source) {
  if (qUTF8mode() != 0) return QULTMBU8ToCodePage(converter, destination, source);
  return CopyIntoString(destination, source);
}

int QULTMBGenericToCodePage(std::string& destination, const std::string& source) {
  return QULTMBGenericToCodePage(nullptr, destination, source);
}

wchar_t* QULTMBTranscodeU8(const char* source) { return ConvertIntoArray<ToUtf16>(source); }

char* QULTMBTranscodeU8(const wchar_t* source) { return ConvertIntoArray<FromUtf16>(source); }

wchar_t* QULTMBTranscodeCodePage(const char* source) {
  return ConvertIntoArray<PageToUtf16>(source, static_cast<void*>(nullptr));
}

char* QULTMBTranscodeCodePage(const wchar_t* source) {
  return ConvertIntoArray<Utf16ToPage>(source, static_cast<void*>(nullptr));
}

wchar_t* QULTMBTranscodeGeneric(const char* source) {
  return qUTF8mode() != 0 ? QULTMBTranscodeU8(source) : QULTMBTranscodeCodePage(source);
}

char* QULTMBTranscodeGeneric(const wchar_t* source) {
  return qUTF8mode() != 0 ? QULTMBTranscodeU8(source) : QULTMBTranscodeCodePage(source);
}

}  // namespace RQMEM_NAMESPACE
