// One run, for a profiler that counts instructions: "profile floor|subject plain|bins|filter FIELDS". Let it collect
// inside rqxml_bench::Profiled* only.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "workload.h"

namespace rqxml_bench {

template <class Reader>
[[gnu::noinline]] void Profiled(std::unique_ptr<Reader>& reader, const Document& document) {
  reader = std::make_unique<Reader>();
  reader->Run(document);
}

template <class Reader>
int Profile(const Document& document) {
  std::unique_ptr<Reader> reader;  // its destruction is not counted
  Profiled(reader, document);
  return 0;
}

}  // namespace rqxml_bench

int main(int argc, char** argv) {
  using namespace rqxml_bench;
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s floor|subject plain|bins|filter FIELDS\n", argv[0]);
    return 2;
  }
  const Platform platform;
  for (const Variant variant : kVariants) {
    if (std::strcmp(argv[2], NameOf(variant)) != 0) continue;
    const Document document = MakeDocument(std::strtoul(argv[3], nullptr, 10), variant);
    return std::strcmp(argv[1], "floor") == 0 ? Profile<Floor>(document) : Profile<Subject>(document);
  }
  return 2;
}
