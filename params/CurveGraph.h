// The picture of the "Curve Graph" control: the current stretch curve drawn in grey.
#pragma once

#include <array>
#include <cstdint>

#include "params/CustomControl.h"
#include "sdk/HostInterface.h"
#include "stretch/StretchCurve.h"

namespace morvane {

// The graph samples the curve in this many columns (its heights run 0 ... 95).
inline constexpr int32_t kCurveGraphColumns = 96;
// The picture, in pixels, and the twice as fine canvas it is filtered down from.
inline constexpr int32_t kCurveGraphSize = 50;
inline constexpr int32_t kCurveGraphCanvasSize = 100;
inline constexpr int32_t kCurveGraphPictureBytes = kCurveGraphSize * kCurveGraphSize * 4;

// The column the curve's first sample lands in for a "Curve Phase" angle (16.16 fixed-point
// degrees); negative phases land one column below the usual remainder.
int32_t CurveGraphColumnOffset(PF_Fixed phase);

// Grey level for each filtered ink sum 0 ... 255: 64 for no ink rising to 223.
std::array<uint8_t, 256> CurveGraphGreyRamp();

// Renders the 50 x 50 picture (10000 bytes, straight BGRA with every byte of a pixel equal)
// for the given curve. Returns 1, or 0 when the canvas cannot be allocated.
int32_t RenderCurveGraphPicture(uint8_t* picture, CurveShape shape, PF_Fixed phase,
                                float smoothness);

// The curve graph's render routine: reads the descriptor's shape, phase and smoothness controls
// from `params` and renders the picture. Raises a host error from a parameter checkout as an
// integer exception.
int32_t RenderCurveGraph(uint8_t* picture, PF_InData* in_data, PF_ParamDef* params[],
                         const CustomControl& control);

}  // namespace morvane
