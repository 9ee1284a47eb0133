#include "Encoding.h"

#include <new>

#include "Failure.h"

namespace rqtool {

using RQMEM_NAMESPACE::QULTMBConverterHandle;

QULTMBConverterHandle OpenEncoding(const std::string& name, const std::string& option) {
  QULTMBConverterHandle converter(RQMEM_NAMESPACE::QULTMBConverterNew_8(name.c_str()));
  if (converter && !name.empty()) return converter;
  constexpr std::size_t kLongest = 59;  // of the names that the library takes
  throw Failure(ExitCode::WrongUsage,
                {.what = (option.empty() ? "" : option + ": ") + "there is no encoding \"" + name + '"' +
                         (name.size() > kLongest ? ": a name has at most 59 bytes" : ""),
                 .hint = "rqxml encodings tells the code pages, rqxml encodings --all each name"});
}

UConverter& ConverterOf(const QULTMBConverterHandle& handle) { return *static_cast<UConverter*>(handle.Get()); }

std::string CanonicalName(const UConverter& converter) {
  UErrorCode error = U_ZERO_ERROR;
  const char* const name = ucnv_getName(&converter, &error);
  return U_SUCCESS(error) && name != nullptr ? name : "";
}

bool IsClonable(const UConverter& converter) { return ucnv_getType(&converter) != UCNV_COMPOUND_TEXT; }

QULTMBConverterHandle CloneConverter(const UConverter& converter) {
  UErrorCode error = U_ZERO_ERROR;
#if U_ICU_VERSION_MAJOR_NUM >= 71
  QULTMBConverterHandle clone(ucnv_clone(&converter, &error));
#else
  QULTMBConverterHandle clone(ucnv_safeClone(&converter, nullptr, nullptr, &error));
#endif
  if (!clone || U_FAILURE(error)) throw std::bad_alloc();
  return clone;
}

void FailConversion(const UConverter& converter, UErrorCode error) {
  throw Failure(ExitCode::Refused, {.what = CanonicalName(converter) + ": ICU cannot go on: " + u_errorName(error),
                                    .hint = "check that the text is in the encoding that --from names"});
}

}  // namespace rqtool
