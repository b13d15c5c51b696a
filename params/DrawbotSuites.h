// The host's Drawbot drawing suites, taken as one group for drawing a custom control.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Acquires "DRAWBOT Draw Suite" 1, "DRAWBOT Supplier Suite" 1, "DRAWBOT Surface Suite" 2 and
// "DRAWBOT Path Suite" 1, in that order, into `suites` (the pen and image members stay null).
// A null `suites` gives PF_Err_UNRECOGNIZED_PARAM_TYPE with the message "NULL suite pointer
// passed to AEFX_AcquireDrawbotSuites"; a missing basic suite or a suite the host does not hand
// out gives PF_Err_BAD_CALLBACK_PARAM with "Not able to acquire AEFX Suite.". Acquisition stops
// at the first failure, and the suites acquired before it are given back, so a failed call
// holds nothing and must not be followed by AEFX_ReleaseDrawbotSuites.
PF_Err AEFX_AcquireDrawbotSuites(const PF_InData* in_data, PF_OutData* out_data,
                                 DRAWBOT_Suites* suites);

// Releases the four suites with the versions they were acquired with. Without a basic suite it
// posts "Not able to release AEFX Suite." once per suite. Always returns PF_Err_NONE.
PF_Err AEFX_ReleaseDrawbotSuites(const PF_InData* in_data, PF_OutData* out_data);

}  // namespace morvane
