#include "frei0r/FreiControls.h"

#include <cstdio>
#include <string_view>

#include "frei0r/FreiMapping.h"
#include "params/ControlNames.h"

namespace morvane::frei0r {
namespace {

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::vector<std::string> KebabItems(const Control& control) {
  std::vector<std::string> items;
  for (const std::string_view item : PopupItems(control))
    items.push_back(KebabCase(item));
  return items;
}

std::string Explanation(const Control& control, const std::vector<std::string>& items, double min,
                        double max) {
  const double dephault = DefaultValue(control);
  std::string text = control.summary;
  switch (control.kind) {
    case ControlKind::Popup:
      text += ": ";
      for (std::size_t i = 0; i < items.size(); ++i)
        text += (i == 0 ? "" : i + 1 == items.size() ? " or " : ", ") + items[i];
      return text + " (default " + items[static_cast<std::size_t>(dephault)] + ")";
    case ControlKind::Slider: {
      const char* unit = control.slider.displayFlags == PF_ValueDisplayFlag_PERCENT ? " %" : "";
      const double unitDefault = UnitFromSlider(dephault, min, max);
      text += ": 0..1 is " + Number(min) + ".." + Number(max) + unit + " (default ";
      if (unitDefault != dephault) text += Number(unitDefault) + " = ";
      return text + Number(dephault) + unit + ")";
    }
    case ControlKind::Angle:
      return text + ": 0..1 is one turn, 0..360 degrees (default " +
             Number(TurnsFromAngle(static_cast<int32_t>(dephault))) + ")";
    default:
      return text + (dephault != 0.0 ? " (default on)" : " (default off)");
  }
}

std::vector<FreiControl> MakeFreiControls() {
  std::vector<FreiControl> controls;
  for (const Control* control : ValueControls()) {
    FreiControl frei{control,
                     KebabItems(*control),
                     WrittenDecimal(control->slider.minimum),
                     WrittenDecimal(control->slider.maximum),
                     {}};
    frei.explanation = Explanation(*control, frei.items, frei.min, frei.max);
    controls.push_back(std::move(frei));
  }
  return controls;
}

}  // namespace

std::span<const FreiControl> FreiControls() {
  static const std::vector<FreiControl> controls = MakeFreiControls();
  return controls;
}

}  // namespace morvane::frei0r
