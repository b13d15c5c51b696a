// libFuzzer target: the built module driven through the simulated host by a random session
// (see CommandSession). EffectMain must never throw (an exception that escapes ends the
// process), must answer with a host error code, and must leave nothing behind: every suite
// released, every checkout checked in, no handle or image beyond what the host owns.
#include <dlfcn.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

#include "fuzz/CommandSession.h"
#include "hostsim/Host.h"

namespace {

hostsim::HostProfile PickProfile(FuzzedDataProvider& data) {
  switch (data.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return hostsim::HostProfile::AfterEffects();
    case 1:
      return hostsim::HostProfile::AfterEffects13_23();
    case 2:
      return hostsim::HostProfile::OlderHost();
    default:
      break;
  }
  return hostsim::HostProfile::Premiere();
}

}  // namespace

// The module stays loaded for the whole run: each session's host loads and unloads it, and
// unloading an instrumented library under the fuzzer would leave its coverage counters dangling.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  if (dlopen(MORVANE_MODULE_PATH, RTLD_NOW | RTLD_NODELETE) == nullptr) {
    std::fprintf(stderr, "cannot load %s: %s\n", MORVANE_MODULE_PATH, dlerror());
    std::abort();
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  FuzzedDataProvider data(bytes, size);
  hostsim::Host host(PickProfile(data));
  host.Load(MORVANE_MODULE_PATH, MORVANE_PIPL_PATH);
  if (data.ConsumeIntegralInRange(0, 7) != 0) host.Register();

  constexpr hostsim::PixelDepth kDepths[] = {
      hostsim::PixelDepth::Bits8, hostsim::PixelDepth::Bits16, hostsim::PixelDepth::Float32};
  morvane::fuzz::CommandSession session(host, data, kDepths[data.ConsumeIntegralInRange(0, 2)]);
  for (int step = 0; step < 48 && data.remaining_bytes() > 0; ++step)
    session.Step();

  const auto problems = session.Finish();
  if (!problems.empty()) {
    std::fprintf(stderr, "The effect misbehaved towards the host (%s):\n",
                 host.Profile().label.c_str());
    for (const std::string& p : problems)
      std::fprintf(stderr, "  %s\n", p.c_str());
    std::fprintf(stderr, "Session:\n");
    for (const std::string& line : session.Log())
      std::fprintf(stderr, "  %s\n", line.c_str());
    std::abort();
  }
  return 0;
}
