// What went wrong between the effect and the host during a session.
#pragma once

#include <string>
#include <vector>

#include "hostsim/HandleTable.h"
#include "hostsim/SuiteRegistry.h"

namespace hostsim {

struct SessionReport {
  std::vector<SuiteBalance> unbalancedSuites;
  std::vector<HandleInfo> leakedHandles;
  std::vector<std::string> problems;  // misuse of handles, refs, parameters, flags

  bool Clean() const {
    return unbalancedSuites.empty() && leakedHandles.empty() && problems.empty();
  }
  std::string Describe() const;
};

}  // namespace hostsim
