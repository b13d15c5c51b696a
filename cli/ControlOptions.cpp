#include "cli/ControlOptions.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "cli/Errors.h"
#include "sdk/FixedDegrees.h"

namespace morvane::cli {

namespace {

// Shortest text that reads back as `v`; ranges come from single-precision
// declarations, so they are printed as floats ("0.01", not "0.0099999998").
std::string FormatNumber(double v, bool asFloat) {
  char buffer[64];
  const auto result = asFloat ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(v))
                              : std::to_chars(buffer, buffer + sizeof buffer, v);
  return std::string(buffer, result.ptr);
}

std::optional<double> ParseNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0.0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<int32_t> ParseFrame(std::string_view text) {
  int32_t value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

std::string Trim(std::string_view text) {
  while (!text.empty() && text.front() == ' ')
    text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ')
    text.remove_suffix(1);
  return std::string(text);
}

std::string JoinItems(const ControlDescription& control, std::string_view separator) {
  std::string joined;
  for (const std::string& item : control.items) {
    if (!joined.empty()) joined += separator;
    joined += KebabCase(item);
  }
  return joined;
}

std::string Prefix(const ControlDescription& control) {
  return "--" + KebabCase(control.name) + ": \"" + control.name + "\"";
}

std::string RangeText(const ControlDescription& control) {
  return FormatNumber(control.validMin, true) + " to " + FormatNumber(control.validMax, true) +
         (control.percent ? " %" : "");
}

// One value in host units, or a UsageError.
double ParseValue(const ControlDescription& control, std::string_view raw) {
  const std::string text = Trim(raw);
  switch (control.type) {
    case ControlType::Popup: {
      const std::string wanted = KebabCase(text);
      for (std::size_t i = 0; i < control.items.size(); ++i) {
        if (KebabCase(control.items[i]) == wanted && !wanted.empty()) return double(i + 1);
      }
      throw UsageError(Prefix(control) + " has no item '" + text +
                       "'; valid items: " + JoinItems(control, ", "));
    }
    case ControlType::Checkbox:
      if (text == "on") return 1.0;
      if (text == "off") return 0.0;
      throw UsageError(Prefix(control) + " is on or off, not '" + text + "'");
    case ControlType::Angle: {
      const auto degrees = ParseNumber(text);
      if (!degrees)
        throw UsageError(Prefix(control) + " needs an angle in degrees, not '" + text + "'");
      const auto fixed = FixedFromDegrees(*degrees);
      if (!fixed) {
        throw UsageError(Prefix(control) + " must be from -32768 to 32767.99998 degrees, got " +
                         text);
      }
      return double(*fixed);
    }
    case ControlType::Slider: {
      std::string_view number = text;
      if (control.percent && !number.empty() && number.back() == '%') number.remove_suffix(1);
      const auto value = ParseNumber(number);
      if (!value) throw UsageError(Prefix(control) + " needs a number, not '" + text + "'");
      if (*value < control.validMin || *value > control.validMax) {
        throw UsageError(Prefix(control) + " must be from " + RangeText(control) + ", got " + text);
      }
      return *value;
    }
    case ControlType::Layer:
    case ControlType::Custom:
      break;
  }
  throw UsageError(Prefix(control) + " cannot be set from the command line");
}

}  // namespace

bool IsValueControl(const ControlDescription& control) {
  return control.type != ControlType::Layer && control.type != ControlType::Custom;
}

ControlSetting ParseControlSetting(const ControlDescription& control, std::string_view text) {
  ControlSetting setting{control.id, control.name, control.type, false, {}};
  if (text.find(':') == std::string_view::npos) {
    setting.keys.push_back({0, ParseValue(control, text)});
    return setting;
  }
  setting.animated = true;
  while (true) {
    const std::size_t comma = text.find(',');
    const std::string_view key = text.substr(0, comma);
    const std::size_t colon = key.find(':');
    const auto frame =
        colon == std::string_view::npos ? std::nullopt : ParseFrame(Trim(key.substr(0, colon)));
    if (!frame) {
      throw UsageError(Prefix(control) + " keyframe '" + std::string(key) + "' is not FRAME:VALUE");
    }
    if (!setting.keys.empty() && *frame <= setting.keys.back().frame) {
      throw UsageError(Prefix(control) + " keyframe frames must increase, " +
                       std::to_string(*frame) + " follows " +
                       std::to_string(setting.keys.back().frame));
    }
    setting.keys.push_back({*frame, ParseValue(control, key.substr(colon + 1))});
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  return setting;
}

std::string FormatDefault(const ControlDescription& control) {
  switch (control.type) {
    case ControlType::Popup: {
      const auto index = static_cast<std::size_t>(control.defaultValue);
      return index >= 1 && index <= control.items.size() ? KebabCase(control.items[index - 1])
                                                         : "?";
    }
    case ControlType::Checkbox:
      return control.defaultValue != 0.0 ? "on" : "off";
    case ControlType::Slider:
      return FormatNumber(control.defaultValue, true);
    case ControlType::Angle:
      return FormatNumber(control.defaultValue, false);
    case ControlType::Layer:
    case ControlType::Custom:
      break;
  }
  return "";
}

std::string DescribeControl(const ControlDescription& control) {
  const std::string name = "\"" + control.name + "\": ";
  const std::string dflt = " (default " + FormatDefault(control) + ")";
  switch (control.type) {
    case ControlType::Popup:
      return name + JoinItems(control, "|") + dflt;
    case ControlType::Checkbox:
      return name + "on|off" + dflt;
    case ControlType::Slider:
      return name + RangeText(control) + dflt;
    case ControlType::Angle:
      return name + "angle in degrees" + dflt;
    case ControlType::Layer:
      return name + "image file, any size (default none)";
    case ControlType::Custom:
      break;
  }
  return name;
}

}  // namespace morvane::cli
