#ifndef RQXML_FUZZ_FUZZ_TARGET_H
#define RQXML_FUZZ_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <string>

/// Called once before the first input: refuses DTDs and starts the XML library for the whole run.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

/// Runs one input; aborts the process when the library breaks a promise.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace rqxml_fuzz {

/// Ends the process with both descriptions unless they are equal.
void CheckEqual(const std::string& actual, const std::string& expected, const char* promise);

/// Ends the process unless the promise holds.
void Check(bool holds, const char* promise);

/// The bytes as text.
inline std::string AsText(const std::uint8_t* data, std::size_t size) {
  return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

}  // namespace rqxml_fuzz

#endif
