// The effect's controls as frei0r parameters: every control with a value, in declaration order,
// with its items in kebab-case and an explanation of how frei0r's value maps onto it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "params/ControlTable.h"

namespace morvane::frei0r {

struct FreiControl {
  const Control* control;
  std::vector<std::string> items;  // popups: the items in kebab-case, in popup order
  // Sliders: the range, each end the decimal number the single-precision declaration was
  // written as (0.01, not 0.0099999998).
  double min = 0.0;
  double max = 0.0;
  std::string explanation;  // what the value does and how 0..1 maps onto it
};

// All parameters in frei0r index order.
std::span<const FreiControl> FreiControls();

}  // namespace morvane::frei0r
