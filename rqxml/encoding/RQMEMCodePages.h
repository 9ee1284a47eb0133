#ifndef RQXML_ENCODING_RQMEMCODEPAGES_H
#define RQXML_ENCODING_RQMEMCODEPAGES_H

#include <optional>
#include <string>

namespace RQMEM_NAMESPACE {

/// The number that a name is: digits alone, with a value from 1 to 99999.
std::optional<int> CodePageNumber(const char* name);

/// The name that ICU opens a code page by; empty when ICU knows none.
std::string CodePageName(int number);

/// The size of the place for a converter's name, with its terminating zero.
constexpr int kConverterNameSize = 60;

/// True for a name of printable ASCII that fits. Encodings have no other names.
bool IsPlainConverterName(const char* name);

}  // namespace RQMEM_NAMESPACE

#endif
