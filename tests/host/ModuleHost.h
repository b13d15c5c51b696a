// A simulated host with the built module loaded, for tests that reach the
// effect only through its entry points.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include <string>
#include <vector>

#include "hostsim/Host.h"

namespace morvane_test {

inline const char* ModulePath() {
  return MORVANE_MODULE_PATH;
}

struct ProfileCase {
  friend void PrintTo(const ProfileCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  hostsim::HostProfile (*make)();
};

inline const std::vector<ProfileCase>& AllProfiles() {
  static const std::vector<ProfileCase> profiles{
      {"AfterEffects13_27", hostsim::HostProfile::AfterEffects},
      {"AfterEffects13_23", hostsim::HostProfile::AfterEffects13_23},
      {"OlderHost13_8", hostsim::HostProfile::OlderHost},
      {"Premiere", hostsim::HostProfile::Premiere},
  };
  return profiles;
}

inline std::string ProfileName(const testing::TestParamInfo<ProfileCase>& info) {
  return info.param.label;
}

// Loads and registers the module in the given host.
class ModuleHost {
 public:
  explicit ModuleHost(hostsim::HostProfile profile) : host(std::move(profile)) {
    host.Load(ModulePath());
    registered = host.Register();
  }
  hostsim::Host host;
  A_Err registered;
};

inline const std::vector<uint8_t>& SequenceZeros() {
  static const std::vector<uint8_t> zeros(296, 0);
  return zeros;
}

}  // namespace morvane_test
