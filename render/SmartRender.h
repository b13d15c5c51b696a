// The two-phase smart render: pre-render reads the frame's parameters and
// states the input it needs, render produces the output.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// PF_Cmd_SMART_PRE_RENDER: reads the record into a new host handle, checks out
// the input over exactly the host's output request and reports the result
// rectangles. On success the handle is handed to the host as pre-render data
// together with its disposal routine; on any failure it is disposed of before
// returning. Returns the input checkout's answer or PF_Err_OUT_OF_MEMORY; may
// raise a host error as an integer exception.
PF_Err SmartPreRender(PF_InData* in_data, PF_OutData* out_data, PF_PreRenderExtra* extra);

// PF_Cmd_SMART_RENDER: takes the record back, checks out input, output and the
// intensity layer's pixels, renders at the input's depth and checks everything
// in again, also when the command ends by an exception.
PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                   PF_SmartRenderExtra* extra);

}  // namespace morvane
