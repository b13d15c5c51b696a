// The single-call render, as Premiere sends it.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// PF_Cmd_RENDER: in Premiere reads the record from the parameter array, checks
// out the effect's own layer, renders at the output's depth and checks both
// layers in again, also when the command ends by an exception. In any other
// host it does nothing: those render through the smart render.
PF_Err LegacyRender(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                    PF_LayerDef* output);

}  // namespace morvane
