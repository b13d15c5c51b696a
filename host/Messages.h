// Messages for the user: written into the output record's return_msg with the
// display flag set; the host shows the text when the command returns.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

inline constexpr char kMsgSuiteAcquireFailed[] = "Not able to acquire AEFX Suite.";
inline constexpr char kMsgSuiteReleaseFailed[] = "Not able to release AEFX Suite.";
inline constexpr char kMsgNullDrawbotSuite[] =
    "NULL suite pointer passed to AEFX_AcquireDrawbotSuites";
inline constexpr char kMsgInternalError[] = "Internal Error";

// Writes `text` through the host's formatting callback, as the format with no
// arguments, and sets PF_OutFlag_DISPLAY_ERROR_MESSAGE.
void ReportToUser(const PF_InData* in_data, PF_OutData* out_data, const char* text);

// The same, copying `text` with the host's string copy instead.
void ReportToUserCopied(const PF_InData* in_data, PF_OutData* out_data, const char* text);

}  // namespace morvane
