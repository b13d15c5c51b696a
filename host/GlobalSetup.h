// PF_Cmd_GLOBAL_SETUP: the effect's version, capability flags and, in
// Premiere, the pixel formats it renders.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Raises A_Err_MISSING_SUITE (with a message for the user) when a Premiere
// host lacks the pixel-format or utility suite.
PF_Err GlobalSetup(const PF_InData* in_data, PF_OutData* out_data);

}  // namespace morvane
