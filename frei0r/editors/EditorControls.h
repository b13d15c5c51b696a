// The frei0r parameters as an editor's panel shows them: in the user's units (percent, degrees,
// pixels), with popup items by their display names, and the linear map an editor applies to
// reach the module's 0..1.
#pragma once

#include <string>
#include <vector>

#include "frei0r/FreiControls.h"

namespace morvane::frei0r {

enum class Widget { List, Slider, Checkbox };

struct EditorControl {
  const FreiControl* frei;
  Widget widget;
  std::vector<std::string> displayItems;  // lists: the popup's own item names
  int defaultItem = 0;                    // lists
  // Sliders and the checkbox, in the user's units: user = module * factor + offset.
  double min = 0.0, max = 1.0, dephault = 0.0;
  double factor = 1.0, offset = 0.0;
  int decimals = 0;
  const char* suffix = "";
  bool keyframable = false;

  const char* Name() const { return frei->control->name; }
  // The module's value for a value in the user's units, as the editor sends it.
  double ModuleValue(double user) const { return (user - offset) / factor; }
};

// Every frei0r parameter, in frei0r index order.
std::vector<EditorControl> EditorControls();

// `value` with up to `decimals` decimals, no trailing zeros, in the C locale ("15.99", "0").
std::string DecimalText(double value, int decimals);

}  // namespace morvane::frei0r
