// Which host the effect is running in, as told by the input record.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// appl_id of Premiere Pro (and Elements): 'PrMr'.
inline constexpr A_long kPremiereApplId = 0x50724D72;

inline bool IsPremiereHost(const PF_InData* in_data) {
  return in_data->appl_id == kPremiereApplId;
}

}  // namespace morvane
