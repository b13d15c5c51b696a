#include "params/ControlTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

namespace morvane {
namespace {

using Record = StretchRenderRecord;

constexpr PF_ParamFlags kCollapse = PF_ParamFlag_COLLAPSE_TWIRLY;
constexpr PF_ValueDisplayFlags kPercent = PF_ValueDisplayFlag_PERCENT;
constexpr PF_ValueDisplayFlags kPlain = PF_ValueDisplayFlag_NONE;

constexpr Control Popup(ParamId id, const char* name, const char* items, int readOrder,
                        int32_t Record::*field, const char* summary) {
  return {id, name, ControlKind::Popup, 0, items, {}, readOrder, {field, nullptr}, summary};
}

constexpr Control Slider(ParamId id, const char* name, PF_ParamFlags flags, SliderRange slider,
                         int readOrder, RecordField field, const char* summary) {
  return {id, name, ControlKind::Slider, flags, nullptr, slider, readOrder, field, summary};
}

constexpr Control Angle(ParamId id, const char* name, int readOrder, int32_t Record::*field,
                        const char* summary) {
  return {id, name,      ControlKind::Angle, kCollapse, nullptr,
          {}, readOrder, {field, nullptr},   summary};
}

constexpr Control Custom(ParamId id, const char* name, ControlKind kind, PF_ParamFlags flags,
                         const char* summary) {
  return {id, name, kind, flags, nullptr, {}, -1, {}, summary};
}

constexpr RecordField Real(double Record::*field) {
  return {nullptr, field};
}

// Declaration order. The read order is the order in which a render checks the values out.
constexpr std::array kControls{
    Custom(ParamId::Header, "About", ControlKind::Header, 0, "About the effect"),
    Popup(ParamId::Direction, "Direction", "Right|Left|Down|Up", 1, &Record::direction,
          "Direction of the stretch"),
    Custom(ParamId::IntensitySource, "Intensity Source", ControlKind::Layer, 0,
           "Another layer whose pixels drive the stretch"),
    Popup(ParamId::Channels, "Channels",
          "Luma|RGBA|Red|Green|Blue|Alpha|Luma (no Alpha)|RGB (no Alpha)", 0, &Record::channelMode,
          "Channels that are measured and stretched"),
    Slider(ParamId::MorvaneIntensity, "Morvane Intensity", kCollapse, {0, 100, 100, 1, kPercent}, 2,
           Real(&Record::intensity), "Strength of the whole effect"),
    Slider(ParamId::Morvane, "Morvane", kCollapse, {0, 64, 1, 3, kPlain}, 3,
           Real(&Record::stretchAmount), "Stretch amount"),
    Slider(ParamId::PixelSize, "Pixel Size", kCollapse, {0.01f, 16, 1, 3, kPlain}, 4,
           Real(&Record::pixelSize), "Length of a pixel before stretching, in pixels"),
    Popup(ParamId::StretchCurve, "Stretch Curve",
          "Linear Ramp Up|Linear Ramp Down|Triangle Wave|Sine Wave|Exp Up|Exp Down", 8,
          &Record::curveShape, "Curve from a pixel's intensity to its stretch"),
    Angle(ParamId::CurvePhase, "Curve Phase", 9, &Record::curvePhase, "Phase of the stretch curve"),
    Slider(ParamId::CurveSmoothness, "Curve Smoothness", 0, {0, 16, 0, 3, kPlain}, 10,
           Real(&Record::curveSmoothness), "Smoothing of the stretch curve"),
    Custom(ParamId::CurveGraph, "Curve Graph", ControlKind::CurveGraph,
           PF_ParamFlag_CANNOT_TIME_VARY, "The stretch curve as a picture"),
    Slider(ParamId::StretchStartOffset, "Stretch Start Offset", kCollapse, {0, 100, 0, 1, kPercent},
           5, Real(&Record::startOffset),
           "Share of every line copied unstretched before the stretch starts"),
    Popup(ParamId::DistributionMode, "Distribution Mode",
          "Constant|Linear Ramp Up|Linear Ramp Down", 16, &Record::distributionMode,
          "How the stretch is spread along a line"),
    Slider(ParamId::DistributionRange, "Distribution Range", kCollapse, {0, 2, 2, 3, kPlain}, 17,
           Real(&Record::distributionRange), "Length of the distribution along the line"),
    Angle(ParamId::ImageShiftPhase, "Image Shift Phase", 6, &Record::imageShiftPhase,
          "Slides the image along the line"),
    Control{ParamId::ImageShiftPhaseSync,
            "Image Shift Phase Sync",
            ControlKind::Checkbox,
            PF_ParamFlag_CANNOT_INTERP,
            nullptr,
            {},
            7,
            {&Record::imageShiftPhaseSync, nullptr},
            "Shift the intensity measurement with the image"},
    Popup(ParamId::Shading, "Shading",
          "None|Sine Wave|Triangle Wave|Linear Ramp Up|Linear Ramp Down|Line", 11,
          &Record::shadingMode, "Shading pattern over the streaks"),
    Slider(ParamId::ShadingIntervalSize, "Shading Interval Size", kCollapse,
           {2, 256, 10, 0, kPlain}, 12, {&Record::shadingIntervalSize, nullptr},
           "Period of the shading pattern in whole pixels"),
    Angle(ParamId::ShadingIntervalPhase, "Shading Interval Phase", 13,
          &Record::shadingIntervalPhase, "Phase of the shading pattern"),
    Popup(ParamId::ShadingChannels, "Shading Channel(s)", "Alpha|RGB", 14, &Record::shadingChannels,
          "Channels the shading darkens"),
    Slider(ParamId::ShadingOpacity, "Shading Opacity", kCollapse, {0, 100, 0, 1, kPercent}, 18,
           Real(&Record::shadingOpacity), "Strength of the shading"),
    Popup(ParamId::EdgeMode, "Edge Mode", "Wrap|Mirror|Repeat Last|Transparent", 15,
          &Record::edgeMode, "What lies beyond the end of a line"),
    Slider(ParamId::TransparencyFeather, "Transparency Feather", kCollapse,
           {0, 100, 0, 1, kPercent}, 19, Real(&Record::transparencyFeather),
           "Feather of the transparent edge"),
};
static_assert(kControls.size() == kParamIdCount, "every ParamId is declared once");

constexpr bool HasValue(const Control& control) {
  return control.kind == ControlKind::Popup || control.kind == ControlKind::Slider ||
         control.kind == ControlKind::Angle || control.kind == ControlKind::Checkbox;
}

constexpr std::size_t kValueCount =
    std::count_if(kControls.begin(), kControls.end(), [](const Control& c) { return HasValue(c); });

constexpr std::array<const Control*, kValueCount> kValueControls = [] {
  std::array<const Control*, kValueCount> controls{};
  std::size_t next = 0;
  for (const Control& control : kControls)
    if (HasValue(control)) controls[next++] = &control;
  return controls;
}();

constexpr std::array<const Control*, kValueCount> kReadOrder = [] {
  std::array<const Control*, kValueCount> controls = kValueControls;
  std::sort(controls.begin(), controls.end(),
            [](const Control* a, const Control* b) { return a->readOrder < b->readOrder; });
  return controls;
}();

constexpr bool ReadOrderIsComplete() {
  for (std::size_t i = 0; i < kReadOrder.size(); ++i)
    if (kReadOrder[i]->readOrder != static_cast<int>(i)) return false;
  return true;
}
static_assert(ReadOrderIsComplete(), "a render reads every value once, in a complete order");

// Every slider tolerates the same curve error when the host draws its graph.
constexpr PF_FpShort kCurveTolerance = 0.05f;

}  // namespace

std::span<const Control> Controls() {
  return kControls;
}

std::span<const Control* const> ControlsInReadOrder() {
  return kReadOrder;
}

std::span<const Control* const> ValueControls() {
  return kValueControls;
}

A_short PopupItemCount(const Control& control) {
  return static_cast<A_short>(PopupItems(control).size());
}

std::vector<std::string_view> PopupItems(const Control& control) {
  std::vector<std::string_view> items;
  if (control.kind != ControlKind::Popup) return items;
  std::string_view rest = control.popupItems;
  for (std::size_t bar = rest.find('|'); bar != std::string_view::npos; bar = rest.find('|')) {
    items.push_back(rest.substr(0, bar));
    rest.remove_prefix(bar + 1);
  }
  items.push_back(rest);
  return items;
}

double DefaultValue(const Control& control) {
  switch (control.kind) {
    case ControlKind::Slider:
      return control.slider.dephault;
    case ControlKind::Checkbox:
      return 1.0;
    default:  // the first item of a popup, 0 degrees
      return 0.0;
  }
}

double WrittenDecimal(PF_FpShort value) {
  char text[32];
  const auto written = std::to_chars(text, text + sizeof text, value);
  double decimal = 0.0;
  std::from_chars(text, written.ptr, decimal);
  return decimal;
}

double ValueOf(const Control& control, const PF_ParamDef& def) {
  switch (control.kind) {
    case ControlKind::Popup:
      return def.u.pd.value - 1;
    case ControlKind::Slider:
      return def.u.fs_d.value;
    case ControlKind::Angle:
      return def.u.ad.value;
    case ControlKind::Checkbox:
      return def.u.bd.value;
    default:
      return 0.0;
  }
}

void StoreValue(const Control& control, double value, StretchRenderRecord& record) {
  if (control.field.real != nullptr) record.*control.field.real = value;
  if (control.field.whole != nullptr) record.*control.field.whole = static_cast<int32_t>(value);
}

StretchRenderRecord DefaultRecord() {
  StretchRenderRecord record{};
  for (const Control* control : kValueControls)
    StoreValue(*control, DefaultValue(*control), record);
  return record;
}

void FillDefinition(const Control& control, PF_ParamDef& def) {
  std::memset(&def, 0, sizeof def);
  def.flags = control.flags;
  def.uu.id = ToInt(control.id);
  switch (control.kind) {
    case ControlKind::Popup:
      def.param_type = PF_Param_POPUP;
      def.u.pd.num_choices = PopupItemCount(control);
      def.u.pd.dephault = static_cast<A_short>(DefaultValue(control) + 1);
      def.u.pd.value = def.u.pd.dephault;
      def.u.pd.u.namesptr = control.popupItems;
      break;
    case ControlKind::Slider: {
      const SliderRange& slider = control.slider;
      def.param_type = PF_Param_FLOAT_SLIDER;
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
    case ControlKind::Checkbox:
      def.param_type = PF_Param_CHECKBOX;
      def.u.bd.value = static_cast<A_long>(DefaultValue(control));
      def.u.bd.dephault = static_cast<PF_Boolean>(def.u.bd.value);
      def.u.bd.u.nameptr = "";
      break;
    case ControlKind::Layer:
      def.param_type = PF_Param_LAYER;
      def.u.ld.dephault = PF_LayerDefault_NONE;
      break;
    case ControlKind::Angle:  // value and default 0 degrees, which the clearing gave
      def.param_type = PF_Param_ANGLE;
      break;
    case ControlKind::Header:
    case ControlKind::CurveGraph:
      break;
  }
}

}  // namespace morvane
