// The effect's controls as OpenFX parameters, made from the table of controls in its order:
// popups as Choice (options: the items' names), sliders as Double in the control's own units,
// angles as Double of the angle type in degrees, the checkbox as Boolean. The "Intensity Source"
// layer is a clip, not a parameter; the header banner and the curve graph are custom UI of the
// other hosts and are left out. Parameters are named for scripts: the command-line option names
// in lowerCamelCase ("pixelSize"); their labels are the controls' names.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <ofxCore.h>
#include <ofxParam.h>

#include "params/ControlTable.h"

namespace morvane::ofx {

struct OfxControl {
  const Control* control;
  std::string name;                  // the script name
  std::vector<std::string> options;  // popups: the items, in popup order
};

// Every control with a value, in declaration order.
std::span<const OfxControl> OfxControls();

// The OpenFX parameter type of a control (kOfxParamTypeChoice, ...).
const char* ParamType(const Control& control);

// Declares every parameter in `parameters` (an effect descriptor's parameter set).
void DefineParameters(OfxParamSetHandle parameters);

// The handles of an instance's parameters, in OfxControls() order.
std::vector<OfxParamHandle> ParameterHandles(OfxParamSetHandle parameters);

// A control's value at `time`, in the control's own units (0-based item, slider value, 16.16
// degrees, 0 or 1).
double ValueAt(const OfxControl& control, OfxParamHandle handle, OfxTime time);

// The record every parameter's value at `time` gives; no intensity layer.
StretchRenderRecord RecordAt(std::span<const OfxParamHandle> handles, OfxTime time);

}  // namespace morvane::ofx
