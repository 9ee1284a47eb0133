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
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s floor|subject plain|bins|filter FIELDS\n", argv[0]);
    return 2;
  }
  const rqxml_bench::Platform platform;
  for (const rqxml_bench::Variant variant : rqxml_bench::kVariants) {
    if (std::strcmp(argv[2], rqxml_bench::NameOf(variant)) != 0) continue;
    const rqxml_bench::Document document = rqxml_bench::MakeDocument(std::strtoul(argv[3], nullptr, 10), variant);
    return std::strcmp(argv[1], "floor") == 0 ? rqxml_bench::Profile<rqxml_bench::Floor>(document)
                                              : rqxml_bench::Profile<rqxml_bench::Subject>(document);
  }
  return 2;
}
