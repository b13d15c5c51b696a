#include "frei0r/FreiControls.h"

namespace morvane::frei0r {
namespace {

constexpr std::array<const char*, 4> kDirections = {"right", "left", "down", "up"};
constexpr std::array<const char*, 8> kChannels = {"luma", "rgba",  "red",           "green",
                                                  "blue", "alpha", "luma-no-alpha", "rgb-no-alpha"};
constexpr std::array<const char*, 6> kCurves = {
    "linear-ramp-up", "linear-ramp-down", "triangle-wave", "sine-wave", "exp-up", "exp-down"};
constexpr std::array<const char*, 3> kDistributions = {"constant", "linear-ramp-up",
                                                       "linear-ramp-down"};
constexpr std::array<const char*, 6> kShadings = {
    "none", "sine-wave", "triangle-wave", "linear-ramp-up", "linear-ramp-down", "line"};
constexpr std::array<const char*, 2> kShadingChannels = {"alpha", "rgb"};
constexpr std::array<const char*, 4> kEdgeModes = {"wrap", "mirror", "repeat-last", "transparent"};

constexpr FreiControl Popup(const char* name, const char* explanation,
                            std::span<const char* const> items) {
  return {name, explanation, FreiKind::Popup, 0.0, 0.0, 0.0, items};
}
constexpr FreiControl Slider(const char* name, const char* explanation, double min, double max,
                             double dephault) {
  return {name, explanation, FreiKind::Slider, min, max, dephault, {}};
}
constexpr FreiControl Angle(const char* name, const char* explanation) {
  return {name, explanation, FreiKind::Angle, 0.0, 0.0, 0.0, {}};
}

const std::array<FreiControl, kFreiParamCount> kControls = {
    Popup("Direction", "Direction of the stretch: right, left, down or up (default right)",
          kDirections),
    Popup("Channels",
          "Channels that are measured and stretched: luma, rgba, red, green, blue, alpha, "
          "luma-no-alpha or rgb-no-alpha (default luma)",
          kChannels),
    Slider("Morvane Intensity",
           "Strength of the whole effect: 0..1 is 0..100 % (default 1 = 100 %; 0 leaves the "
           "image unchanged)",
           0.0, 100.0, 100.0),
    Slider("Morvane", "Stretch amount: 0..1 is 0..64 (default 0.015625 = 1)", 0.0, 64.0, 1.0),
    Slider("Pixel Size",
           "Length of a pixel before stretching: 0..1 is 0.01..16 pixels (default 1 pixel)", 0.01,
           16.0, 1.0),
    Popup("Stretch Curve",
          "Curve from a pixel's intensity to its stretch: linear-ramp-up, linear-ramp-down, "
          "triangle-wave, sine-wave, exp-up or exp-down (default linear-ramp-up)",
          kCurves),
    Angle("Curve Phase",
          "Phase of the stretch curve: 0..1 is one turn, 0..360 degrees (default 0)"),
    Slider("Curve Smoothness", "Smoothing of the stretch curve: 0..1 is 0..16 (default 0)", 0.0,
           16.0, 0.0),
    Slider("Stretch Start Offset",
           "Share of every line copied unstretched before the stretch starts: 0..1 is "
           "0..100 % (default 0)",
           0.0, 100.0, 0.0),
    Popup("Distribution Mode",
          "How the stretch is spread along a line: constant, linear-ramp-up or "
          "linear-ramp-down (default constant)",
          kDistributions),
    Slider("Distribution Range",
           "Length of the distribution along the line: 0..1 is 0..2 (default 1 = 2)", 0.0, 2.0,
           2.0),
    Angle("Image Shift Phase",
          "Slides the image along the line: 0..1 is one turn, 0..360 degrees (default 0)"),
    {"Image Shift Phase Sync",
     "Shift the intensity measurement with the image (default on)",
     FreiKind::Checkbox,
     0.0,
     0.0,
     1.0,
     {}},
    Popup("Shading",
          "Shading pattern over the streaks: none, sine-wave, triangle-wave, linear-ramp-up, "
          "linear-ramp-down or line (default none)",
          kShadings),
    Slider("Shading Interval Size",
           "Period of the shading pattern: 0..1 is 2..256 pixels, truncated to whole pixels "
           "(default 10 pixels)",
           2.0, 256.0, 10.0),
    Angle("Shading Interval Phase",
          "Phase of the shading pattern: 0..1 is one turn, 0..360 degrees (default 0)"),
    Popup("Shading Channel(s)", "Channels the shading darkens: alpha or rgb (default alpha)",
          kShadingChannels),
    Slider("Shading Opacity", "Strength of the shading: 0..1 is 0..100 % (default 0)", 0.0, 100.0,
           0.0),
    Popup("Edge Mode",
          "What lies beyond the end of a line: wrap, mirror, repeat-last or transparent "
          "(default wrap)",
          kEdgeModes),
    Slider("Transparency Feather", "Feather of the transparent edge: 0..1 is 0..100 % (default 0)",
           0.0, 100.0, 0.0),
};

}  // namespace

const std::array<FreiControl, kFreiParamCount>& FreiControls() {
  return kControls;
}

}  // namespace morvane::frei0r
