// What the effect module tells the host about itself: its registration and its
// controls. Filled from the loaded module by the render backend, never from a
// copy kept in this tool.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace morvane::cli {

enum class ControlType { Popup, Slider, Angle, Checkbox, Layer, Custom };

struct ControlDescription {
  int32_t id = 0;        // the control's disk ID
  int32_t position = 0;  // index in the host's parameter list
  std::string name;      // as shown to the user
  ControlType type = ControlType::Custom;
  double validMin = 0.0;  // sliders
  double validMax = 0.0;
  double defaultValue = 0.0;       // popup: 1-based item; angle: degrees; checkbox: 0 or 1
  int precision = 0;               // sliders: decimal places shown
  bool percent = false;            // sliders shown with a percent sign
  std::vector<std::string> items;  // popup items as shown
};

struct ModuleInfo {
  std::string path;  // the module file loaded
  std::string name;
  std::string category;
  std::string matchName;
  std::string version;  // major.minor.bug stage build
  uint32_t outFlags = 0;
  uint32_t outFlags2 = 0;
  std::vector<std::string> outFlagNames;  // the set flags by name, when known
  std::vector<std::string> outFlag2Names;
  std::vector<ControlDescription> controls;  // in the host's parameter order, input layer excluded
};

}  // namespace morvane::cli
