// One run, for a profiler that counts instructions: "profile_settings floor|data|derived FIELDS" or "profile_settings
// parameters PARAMETERS". Let it collect inside rqxml_bench::Profiled* only.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "settings_documents.h"
#include "settings_workload.h"
#include "workload.h"

namespace rqxml_bench {

template <class Step>
[[gnu::noinline]] void Profiled(Step step) {
  step();
}

int Profile(const std::string& what, std::size_t count) {
  const Document document = what == "parameters" ? MakeParameterSettings(count) : MakeFieldSettings(count);
  Floor floor;
  if (what == "floor") {
    Profiled([&] { floor.Run(document); });
    return 0;
  }
  SettingsSubject settings(document);
  if (what == "data") Profiled([&] { settings.FillData(); });
  if (what == "derived") Profiled([&] { settings.FillDerived(); });
  if (what == "parameters") Profiled([&] { settings.ReadParameters(count); });
  return 0;
}

}  // namespace rqxml_bench

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s floor|data|derived FIELDS, or %s parameters PARAMETERS\n", argv[0], argv[0]);
    return 2;
  }
  const rqxml_bench::Platform platform;
  return rqxml_bench::Profile(argv[1], std::strtoul(argv[2], nullptr, 10));
}
