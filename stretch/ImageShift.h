// "Image Shift Phase": where every line starts reading its source pixels.
#pragma once

#include <cstdint>

#include "stretch/EdgeModes.h"

namespace morvane {

struct ImageShift {
  int32_t scaledPhase = 0;       // the angle scaled by the intensity, 16.16 degrees
  float turns = 0.0f;            // scaledPhase in whole turns
  int32_t shiftPixels = 0;       // shift on the image line, not yet reduced
  int32_t layerShiftPixels = 0;  // shift on the intensity line, not yet reduced
  int32_t imageShiftOffset = 0;  // shiftPixels brought into 0 ... L - 1; anchors the shading
  int32_t layerShiftOffset = 0;  // layerShiftPixels brought into 0 ... Ls - 1
  int32_t mirrorTurn = 0;        // 1 when a Mirror line starts in the reflected half
  int64_t colourStart = 0;       // unresolved start of the source position on every line
  int64_t layerStart = 0;        // unresolved start on the intensity layer line, fixed point
};

// Computes the shift of one kernel call from the record's angle, the intensity fraction I and
// the (already normalised) edge mode, for image lines of `length` and intensity lines of
// `intensityLength` pixels.
ImageShift ComputeImageShift(int32_t imageShiftPhase, double intensityFraction, EdgeMode mode,
                             int32_t length, int32_t intensityLength);

// Start of the whole intensity position on the image's own line: the resolved colour start when
// "Image Shift Phase Sync" is on, else the line's starting edge.
int64_t SelfIntensityStart(const ImageShift& shift, bool sync, EdgeMode mode, int32_t length);

// Start of the fixed-point intensity position on a layer line: the resolved layer start when
// sync is on, else 0.
int64_t LayerIntensityStart(const ImageShift& shift, bool sync, EdgeMode mode,
                            int32_t intensityLength);

}  // namespace morvane
