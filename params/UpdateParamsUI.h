// Greying out the controls that belong to a mode that is not chosen.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Answers PF_Cmd_UPDATE_PARAMS_UI and PF_Cmd_USER_CHANGED_PARAM (whose extra
// record it does not need). Disables the four shading settings while "Shading"
// is "None" and "Transparency Feather" while "Edge Mode" is not "Transparent",
// and enables them otherwise. The host is called only for controls whose shown
// state differs from the wanted one; the first failing call stops all later
// calls and is returned. Raises PF_Err_BAD_CALLBACK_PARAM when the parameter
// utility suite is missing.
PF_Err UpdateParamsUI(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[]);

}  // namespace morvane
