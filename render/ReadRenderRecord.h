// Filling one frame's render record from the host, and giving the intensity
// layer back afterwards.
#pragma once

#include "render/StretchRenderRecord.h"
#include "sdk/HostInterface.h"

namespace morvane {

// Sets the record to zero, then reads the twenty value parameters (from
// `params` when given, otherwise by host checkouts at the current time, each
// checked in again once copied) and finally the "Intensity Source" layer: with
// a pre-render extra it is checked out for the output request (its pixels
// follow at render time), without one its definition is checked out into
// `intensityLayerParam` and `intensityLayer` points at its image. The first
// host error is raised as an integer exception (PF_Err).
void ReadRenderRecord(PF_InData* in_data, PF_ParamDef* params[], PF_PreRenderExtra* extra,
                      StretchRenderRecord& record);

// Fetches the pixels of the layer checked out at pre-render into
// `intensityLayer` (null stays null when the host fails). A host error is
// raised as an integer exception.
void CheckoutIntensityLayerPixels(PF_InData* in_data, PF_SmartRenderExtra* extra,
                                  StretchRenderRecord& record);

// Gives the intensity layer back: its pixels with an extra, its definition
// without one. The host's answer is not examined.
void ReleaseIntensityLayer(PF_InData* in_data, PF_SmartRenderExtra* extra,
                           StretchRenderRecord& record);

}  // namespace morvane
