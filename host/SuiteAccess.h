// Suite acquisition and release that answer with an error code instead of
// raising, for handlers that carry on after a missing suite.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

// Fills `suite` and returns PF_Err_NONE; when there is no basic suite or the
// host hands back no suite, writes `message` (or "Not able to acquire AEFX
// Suite.") into `out_data` and returns PF_Err_BAD_CALLBACK_PARAM. Raises nothing.
PF_Err AcquireSuiteOrReport(const PF_InData* in_data, PF_OutData* out_data, const char* name,
                            int32_t version, const char* message, const void** suite);

// Releases the suite and returns PF_Err_NONE; without a basic suite writes
// `message` (or "Not able to release AEFX Suite.") and returns
// PF_Err_BAD_CALLBACK_PARAM. Raises nothing.
PF_Err ReleaseSuiteOrReport(const PF_InData* in_data, PF_OutData* out_data, const char* name,
                            int32_t version, const char* message);

}  // namespace morvane
