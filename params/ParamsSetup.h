// Declaration of the effect's controls at PF_Cmd_PARAMS_SETUP.
#pragma once

#include "params/ControlTable.h"
#include "params/ParamId.h"
#include "sdk/HostInterface.h"

namespace morvane {

// Declares every control the host supports, fills the module's position table,
// sets `num_params` and checks the count. An error of `add_param` for an
// ordinary control is returned at once. Raises std::logic_error on a count
// mismatch.
PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[]);

// Declares the header banner (named only in the host that shows it as a control)
// and registers its custom-UI events. Returns whether the host accepted the
// control; a refused control takes no place in the host's list.
bool AddHeaderControl(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      const Control& header);

// Declares a custom-UI control of the given name, size and parameter flags and
// registers its events with the same size. The control carries arbitrary data
// in Premiere and no data elsewhere. Returns whether the host accepted it.
bool AddCurveGraphControl(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                          ParamId id, const char* name, A_short width, A_short height,
                          PF_ParamFlags flags);

}  // namespace morvane
