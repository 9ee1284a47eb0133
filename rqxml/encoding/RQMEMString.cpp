// The _A family: one of the other two.

#include "rqxml/encoding/RQMEMString.h"

#include "rqxml/encoding/RQMEMConverter.h"

namespace RQMEM_NAMESPACE {

char* QULTMBstrchr_A(const char* s, unsigned int c) {
  return qUTF8mode() != 0 ? QULTMBstrchr_8(s, c) : QULTMBstrchr_C(s, c);
}

char* QULTMBstrrchr_A(const char* s, unsigned int c) {
  return qUTF8mode() != 0 ? QULTMBstrrchr_8(s, c) : QULTMBstrrchr_C(s, c);
}

std::size_t QULTMBstrcspn_A(const char* s, const char* reject) {
  return qUTF8mode() != 0 ? QULTMBstrcspn_8(s, reject) : QULTMBstrcspn_C(s, reject);
}

char* QULTMBstrncpy_A(char* dst, const char* src, std::size_t n) {
  return qUTF8mode() != 0 ? QULTMBstrncpy_8(dst, src, n) : QULTMBstrncpy_C(dst, src, n);
}

int QULTMBqstricmp_A(const char* a, int lenA, const char* b, int lenB, int* status) {
  return qUTF8mode() != 0 ? QULTMBqstricmp_8(a, lenA, b, lenB, status) : QULTMBqstricmp_C(a, lenA, b, lenB, status);
}

int QULTMBstrnicmp_A(const char* a, const char* b, std::size_t n) {
  return qUTF8mode() != 0 ? QULTMBstrnicmp_8(a, b, n) : QULTMBstrnicmp_C(a, b, n);
}

char* QULTMBstrinc_A(const char* s) { return qUTF8mode() != 0 ? QULTMBstrinc_8(s) : QULTMBstrinc_C(s); }

char* QULTMBAnsiPrev_A(const char* start, const char* p) {
  return qUTF8mode() != 0 ? QULTMBAnsiPrev_8(start, p) : QULTMBAnsiPrev_C(start, p);
}

}  // namespace RQMEM_NAMESPACE
