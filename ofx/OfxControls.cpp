#include "ofx/OfxControls.h"

#include <cmath>
#include <string_view>

#include "ofx/HostSuites.h"
#include "params/ControlNames.h"
#include "sdk/FixedDegrees.h"

namespace morvane::ofx {
namespace {

std::vector<OfxControl> MakeOfxControls() {
  std::vector<OfxControl> controls;
  for (const Control* control : ValueControls()) {
    controls.push_back({control, LowerCamelCase(control->name), {}});
    for (const std::string_view item : PopupItems(*control))
      controls.back().options.emplace_back(item);
  }
  return controls;
}

void DescribeSlider(const PropertySet& props, const SliderRange& slider) {
  props.SetDouble(kOfxParamPropDefault, WrittenDecimal(slider.dephault));
  props.SetDouble(kOfxParamPropMin, WrittenDecimal(slider.minimum));
  props.SetDouble(kOfxParamPropMax, WrittenDecimal(slider.maximum));
  props.SetDouble(kOfxParamPropDisplayMin, WrittenDecimal(slider.minimum));
  props.SetDouble(kOfxParamPropDisplayMax, WrittenDecimal(slider.maximum));
  props.SetDouble(kOfxParamPropIncrement, std::pow(10.0, -slider.precision));
  props.SetInt(kOfxParamPropDigits, slider.precision);
}

}  // namespace

std::span<const OfxControl> OfxControls() {
  static const std::vector<OfxControl> controls = MakeOfxControls();
  return controls;
}

const char* ParamType(const Control& control) {
  switch (control.kind) {
    case ControlKind::Popup:
      return kOfxParamTypeChoice;
    case ControlKind::Checkbox:
      return kOfxParamTypeBoolean;
    default:
      return kOfxParamTypeDouble;
  }
}

void DefineParameters(OfxParamSetHandle parameters) {
  for (const OfxControl& ofx : OfxControls()) {
    const Control& control = *ofx.control;
    OfxPropertySetHandle handle = nullptr;
    Check(
        Suites().parameters->paramDefine(parameters, ParamType(control), ofx.name.c_str(), &handle),
        "paramDefine");
    const PropertySet props(handle);
    props.SetString(kOfxPropLabel, control.name);
    props.SetString(kOfxParamPropScriptName, ofx.name.c_str());
    props.SetString(kOfxParamPropHint, control.summary);
    const double dephault = DefaultValue(control);
    switch (control.kind) {
      case ControlKind::Popup:
        for (std::size_t i = 0; i < ofx.options.size(); ++i)
          props.SetString(kOfxParamPropChoiceOption, ofx.options[i].c_str(), static_cast<int>(i));
        props.SetInt(kOfxParamPropDefault, static_cast<int>(dephault));
        break;
      case ControlKind::Slider:
        DescribeSlider(props, control.slider);
        break;
      case ControlKind::Angle:
        props.SetString(kOfxParamPropDoubleType, kOfxParamDoubleTypeAngle);
        props.SetDouble(kOfxParamPropDefault, DegreesFromFixed(static_cast<int32_t>(dephault)));
        props.SetDouble(kOfxParamPropDisplayMin, 0.0);
        props.SetDouble(kOfxParamPropDisplayMax, 360.0);
        break;
      case ControlKind::Checkbox:
        props.SetInt(kOfxParamPropDefault, static_cast<int>(dephault));
        props.SetInt(kOfxParamPropAnimates, 0);
        break;
      default:
        break;
    }
  }
}

std::vector<OfxParamHandle> ParameterHandles(OfxParamSetHandle parameters) {
  std::vector<OfxParamHandle> handles;
  for (const OfxControl& ofx : OfxControls()) {
    OfxParamHandle handle = nullptr;
    Check(Suites().parameters->paramGetHandle(parameters, ofx.name.c_str(), &handle, nullptr),
          ofx.name.c_str());
    handles.push_back(handle);
  }
  return handles;
}

double ValueAt(const OfxControl& ofx, OfxParamHandle handle, OfxTime time) {
  const auto* parameters = Suites().parameters;
  switch (ofx.control->kind) {
    case ControlKind::Popup:
    case ControlKind::Checkbox: {
      int value = 0;
      Check(parameters->paramGetValueAtTime(handle, time, &value), ofx.name.c_str());
      if (ofx.control->kind == ControlKind::Checkbox) return value != 0 ? 1.0 : 0.0;
      if (value < 0 || static_cast<std::size_t>(value) >= ofx.options.size())
        throw OfxFailure(kOfxStatFailed, ofx.name + ": no option " + std::to_string(value));
      return value;
    }
    default: {
      double value = 0.0;
      Check(parameters->paramGetValueAtTime(handle, time, &value), ofx.name.c_str());
      if (ofx.control->kind == ControlKind::Angle) return SaturatedFixedFromDegrees(value);
      // A host keeps a slider inside its range; one that does not gets the nearest end.
      const double minimum = WrittenDecimal(ofx.control->slider.minimum);
      const double maximum = WrittenDecimal(ofx.control->slider.maximum);
      if (!(value >= minimum)) return minimum;  // also NaN
      return value > maximum ? maximum : value;
    }
  }
}

StretchRenderRecord RecordAt(std::span<const OfxParamHandle> handles, OfxTime time) {
  StretchRenderRecord record{};
  const auto controls = OfxControls();
  for (std::size_t i = 0; i < controls.size(); ++i)
    StoreValue(*controls[i].control, ValueAt(controls[i], handles[i], time), record);
  return record;
}

}  // namespace morvane::ofx
