#include "cli/InfoCommand.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <ostream>

#include "cli/ControlOptions.h"

namespace morvane::cli {

namespace {

std::string Hex(uint32_t value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%08X", value);
  return buffer;
}

std::string FlagText(uint32_t value, const std::vector<std::string>& names) {
  std::string text = Hex(value);
  for (std::size_t i = 0; i < names.size(); ++i)
    text += (i == 0 ? "  " : " | ") + names[i];
  return text;
}

std::string_view TypeName(ControlType type) {
  switch (type) {
    case ControlType::Popup:
      return "popup";
    case ControlType::Slider:
      return "slider";
    case ControlType::Angle:
      return "angle";
    case ControlType::Checkbox:
      return "checkbox";
    case ControlType::Layer:
      return "layer";
    case ControlType::Custom:
      return "custom";
  }
  return "?";
}

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}

}  // namespace

InfoCommand::InfoCommand(CLI::App& app)
    : command_(app.add_subcommand(
          "info", "Show the effect's registration and controls, read from the module")) {
  module_.AddTo(*command_);
}

int InfoCommand::Run(const CommandStreams& streams) {
  const auto backend = module_.Open();
  PrintModuleInfo(streams.out, backend->Info(), backend->Profile());
  return 0;
}

void PrintModuleInfo(std::ostream& out, const ModuleInfo& info, HostProfile profile) {
  out << "Effect\n"
      << "  name         " << info.name << "\n"
      << "  category     " << info.category << "\n"
      << "  match name   " << info.matchName << "\n"
      << "  version      " << info.version << "\n"
      << "  module       " << info.path << "\n"
      << "  flags        " << FlagText(info.outFlags, info.outFlagNames) << "\n"
      << "  flags 2      " << FlagText(info.outFlags2, info.outFlag2Names) << "\n\n"
      << "Controls in host " << HostProfileName(profile) << " (position, disk ID, option)\n";
  for (const ControlDescription& control : info.controls) {
    const bool settable = IsValueControl(control) || control.type == ControlType::Layer;
    std::string line = "  " + Padded(std::to_string(control.position), 4) +
                       Padded(std::to_string(control.id), 4) +
                       Padded(settable ? "--" + KebabCase(control.name) : "", 28) +
                       Padded(std::string(TypeName(control.type)), 10);
    if (control.type == ControlType::Custom) {
      line += control.name.empty() ? "(untitled)" : "\"" + control.name + "\"";
      line += " drawn by the effect";
    } else {
      line += DescribeControl(control);
    }
    out << line << "\n";
  }
}

}  // namespace morvane::cli
