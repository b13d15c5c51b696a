#include "frei0r/editors/EditorControls.h"

#include <cstdio>
#include <string_view>

#include "frei0r/FreiMapping.h"
#include "sdk/FixedDegrees.h"

namespace morvane::frei0r {
namespace {

// An angle's slider spans this many turns either way.
constexpr double kAngleTurns = 10.0;

std::vector<std::string> DisplayItems(const Control& control) {
  std::vector<std::string> items;
  std::string_view rest = control.popupItems;
  for (std::size_t bar = 0; bar != std::string_view::npos; rest.remove_prefix(bar + 1)) {
    bar = rest.find('|');
    items.emplace_back(rest.substr(0, bar));
    if (bar == std::string_view::npos) break;
  }
  return items;
}

EditorControl Made(const FreiControl& frei) {
  const Control& control = *frei.control;
  const double dephault = DefaultValue(control);
  const bool timeVaries = (control.flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0;
  EditorControl editor{&frei, Widget::Slider, {}};
  switch (control.kind) {
    case ControlKind::Popup:
      editor.widget = Widget::List;
      editor.displayItems = DisplayItems(control);
      editor.defaultItem = static_cast<int>(dephault);
      break;
    case ControlKind::Slider:
      editor.min = frei.min, editor.max = frei.max, editor.dephault = dephault;
      editor.factor = frei.max - frei.min, editor.offset = frei.min;
      editor.decimals = control.slider.precision;
      editor.suffix = control.slider.displayFlags == PF_ValueDisplayFlag_PERCENT ? "%" : "";
      editor.keyframable = timeVaries;
      break;
    case ControlKind::Angle:
      editor.min = -360.0 * kAngleTurns, editor.max = 360.0 * kAngleTurns;
      editor.dephault = DegreesFromFixed(static_cast<int32_t>(dephault));
      editor.factor = 360.0;
      editor.decimals = kAngleDecimals;
      editor.suffix = "°";
      editor.keyframable = timeVaries;
      break;
    default:
      editor.widget = Widget::Checkbox;
      editor.dephault = dephault;
      break;
  }
  return editor;
}

}  // namespace

std::vector<EditorControl> EditorControls() {
  std::vector<EditorControl> controls;
  for (const FreiControl& frei : FreiControls())
    controls.push_back(Made(frei));
  return controls;
}

std::string DecimalText(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  std::string out = text;
  if (out.find('.') != std::string::npos) {
    out.erase(out.find_last_not_of('0') + 1);
    if (out.back() == '.') out.pop_back();
  }
  return out == "-0" ? "0" : out;
}

}  // namespace morvane::frei0r
