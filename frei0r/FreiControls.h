// The effect's controls as frei0r parameters: order, names, explanations, ranges and defaults.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace morvane::frei0r {

// How a control is handed over through the frei0r interface.
enum class FreiKind {
  Popup,     // string parameter holding a kebab-case item name
  Slider,    // double 0..1 mapped linearly onto the slider range
  Angle,     // double, 0..1 is one turn
  Checkbox,  // bool
};

// The parameters in frei0r index order: the effect's controls without the layer, the header
// and the curve graph.
enum class FreiParam : int {
  Direction,
  Channels,
  MorvaneIntensity,
  Morvane,
  PixelSize,
  StretchCurve,
  CurvePhase,
  CurveSmoothness,
  StretchStartOffset,
  DistributionMode,
  DistributionRange,
  ImageShiftPhase,
  ImageShiftPhaseSync,
  Shading,
  ShadingIntervalSize,
  ShadingIntervalPhase,
  ShadingChannels,
  ShadingOpacity,
  EdgeMode,
  TransparencyFeather,
};

inline constexpr int kFreiParamCount = 20;

struct FreiControl {
  const char* name;         // the control's name as the effect shows it
  const char* explanation;  // what the value does and how 0..1 maps onto it
  FreiKind kind;
  double min;  // slider range (sliders only)
  double max;
  // Default in the control's own units: 0-based item (popups), slider value, degrees (angles),
  // 0 or 1 (checkbox).
  double dephault;
  std::span<const char* const> items;  // kebab-case popup items, in popup order
};

// All parameters, indexed by FreiParam.
const std::array<FreiControl, kFreiParamCount>& FreiControls();

inline const FreiControl& ControlOf(FreiParam param) {
  return FreiControls()[static_cast<std::size_t>(param)];
}

}  // namespace morvane::frei0r
