#include "params/ControlDeclarations.h"

#include <array>
#include <cstring>

namespace morvane {
namespace {

constexpr PF_ParamFlags kCollapse = PF_ParamFlag_COLLAPSE_TWIRLY;
constexpr PF_ValueDisplayFlags kPercent = PF_ValueDisplayFlag_PERCENT;
constexpr PF_ValueDisplayFlags kPlain = PF_ValueDisplayFlag_NONE;

constexpr ControlDeclaration Popup(ParamId id, const char* name, const char* items,
                                   A_short numChoices) {
  return {id, name, PF_Param_POPUP, 0, items, numChoices, {}};
}

constexpr ControlDeclaration Slider(ParamId id, const char* name, PF_ParamFlags flags,
                                    SliderDeclaration slider) {
  return {id, name, PF_Param_FLOAT_SLIDER, flags, nullptr, 0, slider};
}

constexpr ControlDeclaration Angle(ParamId id, const char* name) {
  return {id, name, PF_Param_ANGLE, kCollapse, nullptr, 0, {}};
}

constexpr std::array kBeforeCurveGraph{
    Popup(ParamId::Direction, "Direction", "Right|Left|Down|Up", 4),
    ControlDeclaration{
        ParamId::IntensitySource, "Intensity Source", PF_Param_LAYER, 0, nullptr, 0, {}},
    Popup(ParamId::Channels, "Channels",
          "Luma|RGBA|Red|Green|Blue|Alpha|Luma (no Alpha)|RGB (no Alpha)", 8),
    Slider(ParamId::MorvaneIntensity, "Morvane Intensity", kCollapse, {0, 100, 100, 1, kPercent}),
    Slider(ParamId::Morvane, "Morvane", kCollapse, {0, 64, 1, 3, kPlain}),
    Slider(ParamId::PixelSize, "Pixel Size", kCollapse, {0.01f, 16, 1, 3, kPlain}),
    Popup(ParamId::StretchCurve, "Stretch Curve",
          "Linear Ramp Up|Linear Ramp Down|Triangle Wave|Sine Wave|Exp Up|Exp Down", 6),
    Angle(ParamId::CurvePhase, "Curve Phase"),
    Slider(ParamId::CurveSmoothness, "Curve Smoothness", 0, {0, 16, 0, 3, kPlain}),
};

constexpr std::array kAfterCurveGraph{
    Slider(ParamId::StretchStartOffset, "Stretch Start Offset", kCollapse,
           {0, 100, 0, 1, kPercent}),
    Popup(ParamId::DistributionMode, "Distribution Mode",
          "Constant|Linear Ramp Up|Linear Ramp Down", 3),
    Slider(ParamId::DistributionRange, "Distribution Range", kCollapse, {0, 2, 2, 3, kPlain}),
    Angle(ParamId::ImageShiftPhase, "Image Shift Phase"),
    ControlDeclaration{ParamId::ImageShiftPhaseSync,
                       "Image Shift Phase Sync",
                       PF_Param_CHECKBOX,
                       PF_ParamFlag_CANNOT_INTERP,
                       nullptr,
                       0,
                       {}},
    Popup(ParamId::Shading, "Shading",
          "None|Sine Wave|Triangle Wave|Linear Ramp Up|Linear Ramp Down|Line", 6),
    Slider(ParamId::ShadingIntervalSize, "Shading Interval Size", kCollapse,
           {2, 256, 10, 0, kPlain}),
    Angle(ParamId::ShadingIntervalPhase, "Shading Interval Phase"),
    Popup(ParamId::ShadingChannels, "Shading Channel(s)", "Alpha|RGB", 2),
    Slider(ParamId::ShadingOpacity, "Shading Opacity", kCollapse, {0, 100, 0, 1, kPercent}),
    Popup(ParamId::EdgeMode, "Edge Mode", "Wrap|Mirror|Repeat Last|Transparent", 4),
    Slider(ParamId::TransparencyFeather, "Transparency Feather", kCollapse,
           {0, 100, 0, 1, kPercent}),
};

// Every slider tolerates the same curve error when the host draws its graph.
constexpr PF_FpShort kCurveTolerance = 0.05f;

}  // namespace

std::span<const ControlDeclaration> ControlsBeforeCurveGraph() {
  return kBeforeCurveGraph;
}

std::span<const ControlDeclaration> ControlsAfterCurveGraph() {
  return kAfterCurveGraph;
}

void FillDefinition(const ControlDeclaration& control, PF_ParamDef& def) {
  std::memset(&def, 0, sizeof def);
  def.param_type = control.type;
  def.flags = control.flags;
  def.uu.id = ToInt(control.id);
  switch (control.type) {
    case PF_Param_POPUP:
      def.u.pd.num_choices = control.numChoices;
      def.u.pd.dephault = 1;
      def.u.pd.value = 1;
      def.u.pd.u.namesptr = control.popupItems;
      break;
    case PF_Param_FLOAT_SLIDER: {
      const SliderDeclaration& slider = control.slider;
      def.u.fs_d.valid_min = slider.minimum;
      def.u.fs_d.slider_min = slider.minimum;
      def.u.fs_d.valid_max = slider.maximum;
      def.u.fs_d.slider_max = slider.maximum;
      def.u.fs_d.value = slider.dephault;
      def.u.fs_d.dephault = slider.dephault;
      def.u.fs_d.precision = slider.precision;
      def.u.fs_d.display_flags = slider.displayFlags;
      def.u.fs_d.curve_tolerance = kCurveTolerance;
      break;
    }
    case PF_Param_CHECKBOX:
      def.u.bd.value = 1;
      def.u.bd.dephault = 1;
      def.u.bd.u.nameptr = "";
      break;
    case PF_Param_LAYER:
      def.u.ld.dephault = PF_LayerDefault_NONE;
      break;
    default:  // angles: value and default 0 degrees, which the clearing gave
      break;
  }
}

}  // namespace morvane
