// What every callback and suite function of the simulated host does first: find the host whose
// callbacks these are, record the call and apply any fault injected into it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hostsim {

class Host;

struct CallbackEntry {
  // The active host. A callback called with none ends the program: there is nothing to answer.
  static Host& Active();
  // Records the call of `function`; the error an injected fault makes it return, if any
  // (throwing faults throw here).
  static std::optional<int32_t> Enter(const std::string& function);
};

}  // namespace hostsim
