// Turning command-line text into control values.
//
// Every control of the module becomes an option named after it in kebab-case
// ("Morvane Intensity" -> --morvane-intensity); popup items are given in
// kebab-case too. Values are checked against the control's valid range.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/ModuleInfo.h"
#include "params/ControlNames.h"

namespace morvane::cli {

// True for controls a user sets from the command line (not the layer, not the
// custom-drawn controls).
bool IsValueControl(const ControlDescription& control);

struct Keyframe {
  int32_t frame = 0;
  double value = 0.0;
  bool operator==(const Keyframe&) const = default;
};

// One control's setting in the host's own units: popups 1-based, angles 16.16
// fixed-point degrees, checkbox 0 or 1, sliders as given. A single unanimated
// value is one keyframe with `animated` false.
struct ControlSetting {
  int32_t id = 0;
  std::string name;
  ControlType type = ControlType::Slider;
  bool animated = false;
  std::vector<Keyframe> keys;
  bool operator==(const ControlSetting&) const = default;
};

// Parses `text` for `control`: a value, or FRAME:VALUE,FRAME:VALUE,... with
// strictly increasing frames. Throws UsageError naming the option, the control
// and its valid range or items.
ControlSetting ParseControlSetting(const ControlDescription& control, std::string_view text);

// One line describing the values a control takes and its default, for --help.
std::string DescribeControl(const ControlDescription& control);

// The default as the user writes it (kebab-case item, degrees, on/off, number).
std::string FormatDefault(const ControlDescription& control);

}  // namespace morvane::cli
