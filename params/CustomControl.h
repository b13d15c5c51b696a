// A control of the Effect Controls panel that the effect draws itself, and its drawing.
#pragma once

#include <cstdint>

#include "params/ParamId.h"
#include "sdk/HostInterface.h"

namespace morvane {

struct CustomControl;

// Fills `picture` (width x height straight BGRA pixels, rows following each other directly).
// Returns 1 when the picture was rendered, 0 when it could not be.
using CustomControlRender = int32_t (*)(uint8_t* picture, PF_InData* in_data, PF_ParamDef* params[],
                                        const CustomControl& control);

// Built afresh for every event. The controls the picture is made from are named by ParamId.
struct CustomControl {
  int32_t position;  // in the host's parameter list; 0 when the control is not declared
  int32_t width;
  int32_t height;
  CustomControlRender render;
  ParamId shape;
  ParamId phase;
  ParamId smoothness;
};

// The descriptor of the "Curve Graph" control.
CustomControl CurveGraphControl();

// Renders the control's picture and draws it into the event's control area through the host's
// drawing suites. Marks the event handled when it ends without error and returns the first
// error met. A picture buffer that cannot be allocated draws nothing and is no error.
PF_Err DrawCustomControl(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                         PF_EventExtra* extra, const CustomControl& control);

}  // namespace morvane
