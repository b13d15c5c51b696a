// The effect's about text.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Writes the about text into the output record's return_msg with the host's
// formatting callback. For PF_Cmd_ABOUT the host shows return_msg as its about
// box; a caller outside that command also sets PF_OutFlag_DISPLAY_ERROR_MESSAGE
// so that the host shows the text.
PF_Err ShowAbout(const PF_InData* in_data, PF_OutData* out_data);

}  // namespace morvane
