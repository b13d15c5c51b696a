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
// Parameters are named by their frei0r index, which the caller has checked.
class FreiSettings {
 public:
  FreiSettings();

  // Sliders, angles and the checkbox, from frei0r's double. Ignored for popups.
  void SetNumber(int index, double x);
  // Popups, from an item name; false (value unchanged) when `text` names no item.
  bool SetItem(int index, std::string_view text);

  // The value as frei0r reports it: 0..1 for sliders, turns for angles, 0 or 1 for the
  // checkbox. 0 for popups.
  double Number(int index) const;
  // The current item's kebab-case name (the module's own storage); null for other kinds.
  const char* Item(int index) const;

  // The record a host's read-out gives for these values. No intensity layer.
  StretchRenderRecord Record() const;

 private:
  std::array<double, kParamIdCount> values_{};  // by frei0r index
};

}  // namespace morvane::frei0r
