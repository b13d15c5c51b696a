#include "frei0r/FreiSettings.h"

#include "frei0r/FreiMapping.h"

namespace morvane::frei0r {
namespace {

const FreiControl& At(int index) {
  return FreiControls()[static_cast<std::size_t>(index)];
}

}  // namespace

FreiSettings::FreiSettings() {
  for (std::size_t i = 0; i < FreiControls().size(); ++i)
    values_[i] = DefaultValue(*FreiControls()[i].control);
}

void FreiSettings::SetNumber(int index, double x) {
  const FreiControl& control = At(index);
  double& value = values_[static_cast<std::size_t>(index)];
  switch (control.control->kind) {
    case ControlKind::Slider:
      value = SliderFromHost(x, control.min, control.max, control.control->slider.precision,
                             control.control->field.whole != nullptr);
      break;
    case ControlKind::Angle:
      value = AngleFromTurns(x);
      break;
    case ControlKind::Checkbox:
      value = CheckboxFromBool(x) ? 1.0 : 0.0;
      break;
    default:
      break;
  }
}

bool FreiSettings::SetItem(int index, std::string_view text) {
  const auto item = FindPopupItem(At(index).items, text);
  if (!item) return false;
  values_[static_cast<std::size_t>(index)] = *item;
  return true;
}

double FreiSettings::Number(int index) const {
  const FreiControl& control = At(index);
  const double value = values_[static_cast<std::size_t>(index)];
  switch (control.control->kind) {
    case ControlKind::Slider:
      return UnitFromSlider(value, control.min, control.max);
    case ControlKind::Angle:
      return TurnsFromAngle(static_cast<int32_t>(value));
    case ControlKind::Checkbox:
      return value;
    default:
      return 0.0;
  }
}

const char* FreiSettings::Item(int index) const {
  const FreiControl& control = At(index);
  if (control.items.empty()) return nullptr;
  return control.items[static_cast<std::size_t>(values_[static_cast<std::size_t>(index)])].c_str();
}

StretchRenderRecord FreiSettings::Record() const {
  StretchRenderRecord record{};
  for (std::size_t i = 0; i < FreiControls().size(); ++i)
    StoreValue(*FreiControls()[i].control, values_[i], record);
  return record;
}

}  // namespace morvane::frei0r
