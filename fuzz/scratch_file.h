#ifndef RQXML_FUZZ_SCRATCH_FILE_H
#define RQXML_FUZZ_SCRATCH_FILE_H

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz_target.h"

namespace rqxml_fuzz {

/// A file in memory, gone with the process. Each title is another file.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& title) : fPath("/dev/shm/rqxml_fuzz_" + title + std::to_string(getpid())) {}
  ~ScratchFile() { std::remove(fPath.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& Path() const { return fPath; }
  void Write(const std::string& text) const {
    std::ofstream out(fPath, std::ios::binary | std::ios::trunc);
    out << text;
    Check(out.good(), "the scratch file can be written");
  }

 private:
  std::string fPath;
};

}  // namespace rqxml_fuzz

#endif
