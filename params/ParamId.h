// Identifiers of the effect's controls. The value of each is also the control's
// disk ID (`uu.id`), under which saved projects store its value, so the numbers
// must never change. The numbering is not the display order.
#pragma once

#include <cstdint>

namespace morvane {

enum class ParamId : int32_t {
  Direction = 1,
  Morvane = 2,
  PixelSize = 3,
  StretchCurve = 4,
  CurvePhase = 5,
  StretchStartOffset = 6,
  DistributionMode = 7,
  DistributionRange = 8,
  ImageShiftPhase = 9,
  ImageShiftPhaseSync = 10,
  Shading = 11,
  ShadingIntervalSize = 12,
  ShadingIntervalPhase = 13,
  ShadingChannels = 14,
  ShadingOpacity = 15,
  EdgeMode = 16,
  TransparencyFeather = 17,
  IntensitySource = 18,
  Header = 19,
  CurveSmoothness = 20,
  CurveGraph = 21,
  Channels = 22,
  MorvaneIntensity = 23,
};

// Number of controls the effect can declare (the host's input layer not counted).
inline constexpr int32_t kParamIdCount = 23;

constexpr int32_t ToInt(ParamId id) {
  return static_cast<int32_t>(id);
}

}  // namespace morvane
