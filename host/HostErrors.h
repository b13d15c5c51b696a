// How the effect reports failure to the host: an error code as the command's
// result, raised from deep inside a handler as an integer exception.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Raises `err` as an integer exception. The dispatcher returns the carried
// value to the host as the command's result.
[[noreturn]] inline void ThrowHostError(PF_Err err) {
  throw err;
}

}  // namespace morvane
