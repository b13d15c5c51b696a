// Builds the per-call table of stretch lengths from a kernel's record copy.
#pragma once

#include "render/StretchRenderRecord.h"
#include "stretch/StretchCurve.h"

namespace morvane {

// Factor that scales "Curve Smoothness" into curve samples (the float value of 1024 / 95).
inline constexpr double kCurveSmoothnessScale = 10.778947830200195;

// Fills the 1024 stretch lengths: amplitude and offset from "Morvane Intensity", "Morvane" and
// "Pixel Size", smoothed by the scaled "Curve Smoothness" and rotated by "Curve Phase". The scaled
// smoothness replaces `curveSmoothness` in `record`, which is the kernel's own copy.
StretchCurveTable BuildStretchCurveTable(StretchRenderRecord& record);

}  // namespace morvane
