#include "hostsim/CallbackEntry.h"

#include <cstdio>
#include <cstdlib>

#include "hostsim/Host.h"

namespace hostsim {

Host& CallbackEntry::Active() {
  Host* host = Host::Active();
  if (host == nullptr) {
    std::fprintf(stderr, "hostsim: a host callback was called with no active host\n");
    std::abort();
  }
  return *host;
}

std::optional<int32_t> CallbackEntry::Enter(const std::string& function) {
  Host& host = Active();
  host.Calls().Record(function);
  return host.Faults().Strike(function);
}

}  // namespace hostsim
