#include "cli/ControlOptionSet.h"

#include <CLI/CLI.hpp>

namespace morvane::cli {
namespace {

const char* ValueText(const ControlDescription& control) {
  switch (control.type) {
    case ControlType::Layer:
      return "FILE";
    case ControlType::Popup:
      return "ITEM";
    case ControlType::Checkbox:
      return "on|off";
    case ControlType::Angle:
      return "DEG";
    case ControlType::Slider:
    case ControlType::Custom:
      break;
  }
  return control.percent ? "PCT" : "X";
}

}  // namespace

void ControlOptionSet::AddTo(CLI::App& command, const std::vector<ControlDescription>& controls,
                             bool withLayers) {
  command_ = &command;
  for (const ControlDescription& control : controls) {
    const bool layer = control.type == ControlType::Layer;
    if (!(IsValueControl(control) || (withLayers && layer))) continue;
    controls_.push_back(control);
    const std::string name = KebabCase(control.name);
    command.add_option("--" + name, text_[name], DescribeControl(control))
        ->group("Controls")
        ->option_text(ValueText(control));
  }
}

const std::string* ControlOptionSet::Given(const ControlDescription& control) const {
  const std::string name = KebabCase(control.name);
  const CLI::Option* option = command_->get_option_no_throw("--" + name);
  return option == nullptr || option->count() == 0 ? nullptr : &text_.at(name);
}

std::vector<ControlSetting> ControlOptionSet::Settings() const {
  std::vector<ControlSetting> settings;
  for (const ControlDescription& control : controls_) {
    const std::string* text = Given(control);
    if (text != nullptr && control.type != ControlType::Layer)
      settings.push_back(ParseControlSetting(control, *text));
  }
  return settings;
}

std::optional<std::string> ControlOptionSet::LayerText() const {
  for (const ControlDescription& control : controls_) {
    const std::string* text = Given(control);
    if (text != nullptr && control.type == ControlType::Layer) return *text;
  }
  return std::nullopt;
}

}  // namespace morvane::cli
