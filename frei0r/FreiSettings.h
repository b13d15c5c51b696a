// One instance's parameter values and the render record they give.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "frei0r/FreiControls.h"
#include "render/StretchRenderRecord.h"

namespace morvane::frei0r {

// Values are kept in the controls' own units (0-based item, slider value, 16.16 degrees,
// 0 or 1), so the defaults are exactly the controls' defaults whatever 0..1 value maps to them.
class FreiSettings {
 public:
  FreiSettings();

  // Sliders, angles and the checkbox, from frei0r's double. Ignored for popups.
  void SetNumber(FreiParam param, double x);
  // Popups, from an item name; false (value unchanged) when `text` names no item.
  bool SetItem(FreiParam param, std::string_view text);

  // The value as frei0r reports it: 0..1 for sliders, turns for angles, 0 or 1 for the
  // checkbox. 0 for popups.
  double Number(FreiParam param) const;
  // The current item's kebab-case name (static storage); null for other kinds.
  const char* Item(FreiParam param) const;

  // The record as the host read-out fills it: popups 0-based, "Shading Interval Size"
  // truncated toward zero, percentages, slider values and angles unchanged. No intensity layer.
  StretchRenderRecord Record() const;

 private:
  double Value(FreiParam param) const { return values_[static_cast<std::size_t>(param)]; }
  int32_t Whole(FreiParam param) const { return static_cast<int32_t>(Value(param)); }

  std::array<double, kFreiParamCount> values_;
};

}  // namespace morvane::frei0r
