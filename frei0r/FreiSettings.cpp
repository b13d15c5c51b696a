#include "frei0r/FreiSettings.h"

#include <cmath>

#include "frei0r/FreiMapping.h"

namespace morvane::frei0r {

FreiSettings::FreiSettings() {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const FreiControl& control = FreiControls()[i];
    values_[i] =
        control.kind == FreiKind::Angle ? std::round(control.dephault * 65536.0) : control.dephault;
  }
}

void FreiSettings::SetNumber(FreiParam param, double x) {
  const FreiControl& control = ControlOf(param);
  double& value = values_[static_cast<std::size_t>(param)];
  switch (control.kind) {
    case FreiKind::Slider:
      value = SliderFromUnit(x, control.min, control.max);
      break;
    case FreiKind::Angle:
      value = AngleFromTurns(x);
      break;
    case FreiKind::Checkbox:
      value = CheckboxFromBool(x) ? 1.0 : 0.0;
      break;
    case FreiKind::Popup:
      break;
  }
}

bool FreiSettings::SetItem(FreiParam param, std::string_view text) {
  const FreiControl& control = ControlOf(param);
  if (control.kind != FreiKind::Popup) return false;
  const auto item = FindPopupItem(control.items, text);
  if (!item) return false;
  values_[static_cast<std::size_t>(param)] = *item;
  return true;
}

double FreiSettings::Number(FreiParam param) const {
  const FreiControl& control = ControlOf(param);
  switch (control.kind) {
    case FreiKind::Slider:
      return UnitFromSlider(Value(param), control.min, control.max);
    case FreiKind::Angle:
      return TurnsFromAngle(Whole(param));
    case FreiKind::Checkbox:
      return Value(param);
    case FreiKind::Popup:
      break;
  }
  return 0.0;
}

const char* FreiSettings::Item(FreiParam param) const {
  const FreiControl& control = ControlOf(param);
  if (control.kind != FreiKind::Popup) return nullptr;
  return control.items[static_cast<std::size_t>(Whole(param))];
}

StretchRenderRecord FreiSettings::Record() const {
  StretchRenderRecord record{};
  record.channelMode = Whole(FreiParam::Channels);
  record.intensity = Value(FreiParam::MorvaneIntensity);
  record.direction = Whole(FreiParam::Direction);
  record.stretchAmount = Value(FreiParam::Morvane);
  record.pixelSize = Value(FreiParam::PixelSize);
  record.startOffset = Value(FreiParam::StretchStartOffset);
  record.curveShape = Whole(FreiParam::StretchCurve);
  record.curvePhase = Whole(FreiParam::CurvePhase);
  record.curveSmoothness = Value(FreiParam::CurveSmoothness);
  record.distributionMode = Whole(FreiParam::DistributionMode);
  record.distributionRange = Value(FreiParam::DistributionRange);
  record.imageShiftPhase = Whole(FreiParam::ImageShiftPhase);
  record.imageShiftPhaseSync = Whole(FreiParam::ImageShiftPhaseSync);
  record.shadingMode = Whole(FreiParam::Shading);
  record.shadingIntervalSize = Whole(FreiParam::ShadingIntervalSize);
  record.shadingIntervalPhase = Whole(FreiParam::ShadingIntervalPhase);
  record.shadingOpacity = Value(FreiParam::ShadingOpacity);
  record.shadingChannels = Whole(FreiParam::ShadingChannels);
  record.edgeMode = Whole(FreiParam::EdgeMode);
  record.transparencyFeather = Value(FreiParam::TransparencyFeather);
  return record;
}

}  // namespace morvane::frei0r
