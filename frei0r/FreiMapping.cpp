#include "frei0r/FreiMapping.h"

#include <cctype>
#include <cmath>
#include <limits>

namespace morvane::frei0r {

double SliderFromUnit(double x, double min, double max) {
  if (!(x > 0.0)) return min;  // also NaN
  if (x >= 1.0) return max;
  return min + x * (max - min);
}

double UnitFromSlider(double value, double min, double max) {
  return max > min ? (value - min) / (max - min) : 0.0;
}

int32_t AngleFromTurns(double turns) {
  if (std::isnan(turns)) return 0;
  const double degrees = turns * 360.0;
  const double fixed = std::round(degrees * 65536.0);
  if (fixed >= double(std::numeric_limits<int32_t>::max()))
    return std::numeric_limits<int32_t>::max();
  if (fixed <= double(std::numeric_limits<int32_t>::min()))
    return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(fixed);
}

double TurnsFromAngle(int32_t fixed) {
  return double(fixed) / 65536.0 / 360.0;
}

bool CheckboxFromBool(double x) {
  return x >= 0.5;
}

std::string KebabCase(std::string_view text) {
  std::string out;
  bool pendingDash = false;
  for (const char c : text) {
    const auto u = static_cast<unsigned char>(c);
    if (c == '(' || c == ')') continue;
    if (std::isalnum(u)) {
      if (pendingDash && !out.empty()) out += '-';
      pendingDash = false;
      out += static_cast<char>(std::tolower(u));
    } else {
      pendingDash = true;
    }
  }
  return out;
}

std::optional<int> FindPopupItem(std::span<const char* const> items, std::string_view text) {
  const std::string wanted = KebabCase(text);
  for (std::size_t i = 0; i < items.size(); ++i)
    if (wanted == items[i]) return static_cast<int>(i);
  return std::nullopt;
}

}  // namespace morvane::frei0r
