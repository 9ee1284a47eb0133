#ifndef TESTS_SUPPORT_FILES_H
#define TESTS_SUPPORT_FILES_H

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace rqtest {

/// The bytes of a file.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot open " + path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Replaces the bytes of a file, and hands out its path.
inline std::string WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
  return path;
}

/// The path of a file below tests/data.
inline std::string DataFile(const std::string& name) { return std::string(RQXML_TEST_DATA_DIR) + "/" + name; }

}  // namespace rqtest

#endif
