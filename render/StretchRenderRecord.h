// One frame's parameter values, carried from the host read-out to the kernels.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

// The eight "Channels" choices, in popup order.
enum class ChannelMode : int32_t {
  Luma = 0,
  Rgba = 1,
  Red = 2,
  Green = 3,
  Blue = 4,
  Alpha = 5,
  LumaNoAlpha = 6,
  RgbNoAlpha = 7,
};

// Values arrive nearly raw from the host: popups 0-based, "Shading Interval Size"
// truncated to whole pixels, everything else (percentages, 16.16 angles, slider
// values) unchanged. The kernels own all scaling. A value-initialised record
// (`StretchRenderRecord record{};`) is all zero.
struct StretchRenderRecord {
  int32_t channelMode;              // a ChannelMode
  double intensity;                 // "Morvane Intensity", percent
  int32_t direction;                // 0 Right, 1 Left, 2 Down, 3 Up
  double stretchAmount;             // "Morvane"
  double pixelSize;                 // "Pixel Size"
  double startOffset;               // "Stretch Start Offset", percent
  int32_t curveShape;               // a CurveShape
  int32_t curvePhase;               // 16.16 degrees
  double curveSmoothness;           // "Curve Smoothness"
  int32_t distributionMode;         // 0 Constant, 1 Linear Ramp Up, 2 Linear Ramp Down
  double distributionRange;         // "Distribution Range"
  int32_t imageShiftPhase;          // 16.16 degrees
  int32_t imageShiftPhaseSync;      // checkbox, 0 off
  int32_t shadingMode;              // a ShadingMode
  int32_t shadingIntervalSize;      // whole pixels at full resolution
  int32_t shadingIntervalPhase;     // 16.16 degrees
  double shadingOpacity;            // percent
  int32_t shadingChannels;          // a ShadingChannel
  int32_t edgeMode;                 // an EdgeMode
  double transparencyFeather;       // percent
  PF_EffectWorld* intensityLayer;   // not owned; null or an image whose data may be null
  PF_ParamDef intensityLayerParam;  // filled by the single-call render only
};

}  // namespace morvane
