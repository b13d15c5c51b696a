// The header banner control: a stored picture drawn in the control's title row (or, in the
// hosts that show it as a named control, in its control area).
#pragma once

#include "params/EventDrawing.h"
#include "sdk/HostInterface.h"

namespace morvane {

// The stored banner: 320 x 17 pixels, straight BGRA.
BgraPicture HeaderBannerPicture();

// Draws `picture` at the top-left corner of the area being drawn (the control frame for the
// control area, the title frame for the title row) and marks the event handled when there was
// no error. Returns the first error met.
PF_Err DrawHeader(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                  PF_EventExtra* extra, const BgraPicture& picture);

}  // namespace morvane
