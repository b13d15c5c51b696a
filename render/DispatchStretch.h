// Kernel selection: one frame's record turned into calls of the StretchKernel family.
#pragma once

#include "render/StretchRenderRecord.h"
#include "sdk/HostInterface.h"
#include "stretch/KernelVariant.h"

namespace morvane {

// Renders `output` from `input` at one pixel depth: copies the input where the "Channels" mode
// leaves channels untouched (everything when "Morvane Intensity" is 0), picks SelfIntensity or
// LayerIntensity from the record's intensity layer, and calls the mode's kernels in order, each
// with a fresh copy of `record`. Reports nothing. Instantiated for the three depths.
template <PixelDepth Depth>
void DispatchStretch(const PF_EffectWorld& input, PF_EffectWorld& output,
                     StretchRenderRecord record, float scale);

// The one run-time switch on depth; throws std::logic_error for a depth outside PixelDepth.
void DispatchStretchForDepth(PixelDepth depth, const PF_EffectWorld& input, PF_EffectWorld& output,
                             const StretchRenderRecord& record, float scale);

}  // namespace morvane
