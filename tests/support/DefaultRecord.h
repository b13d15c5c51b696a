// The render record a host hands the kernels when every control is at its default.
#pragma once

#include "render/StretchRenderRecord.h"

namespace morvane::testing_support {

// Morvane Intensity 100 %, Morvane 1, Pixel Size 1, Distribution Range 2, Image Shift Phase Sync
// on, Shading Interval Size 10; every popup at its first item and everything else 0.
inline StretchRenderRecord DefaultRecord() {
  StretchRenderRecord r{};
  r.intensity = 100.0;
  r.stretchAmount = 1.0;
  r.pixelSize = 1.0;
  r.distributionRange = 2.0;
  r.imageShiftPhaseSync = 1;
  r.shadingIntervalSize = 10;
  return r;
}

}  // namespace morvane::testing_support
