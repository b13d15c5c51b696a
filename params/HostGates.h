// Which controls a host gets depends on its interface version and kind.
#pragma once

#include "host/HostKind.h"
#include "sdk/HostInterface.h"

namespace morvane {

// A host whose effect-interface version is 13.9 or later (a major above 13
// counts whatever its minor).
inline bool IsRecentHost(const PF_InData* in_data) {
  return in_data->version.major > 13 ||
         (in_data->version.major == 13 && in_data->version.minor >= 9);
}

}  // namespace morvane
