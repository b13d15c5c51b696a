#include "frei0r/FreiMapping.h"

#include <cmath>

#include "params/ControlNames.h"
#include "sdk/FixedDegrees.h"

namespace morvane::frei0r {

double SliderFromUnit(double x, double min, double max) {
  if (!(x > 0.0)) return min;  // also NaN
  if (x >= 1.0) return max;
  return min + x * (max - min);
}

double NearestShown(double value, int decimals, double tolerance) {
  const double scale = std::pow(10.0, decimals);
  const double shown = std::round(value * scale) / scale;  // exact scale: the decimal's double
  return std::abs(shown - value) <= tolerance ? shown : value;
}

double SliderFromHost(double x, double min, double max, int decimals, bool whole) {
  const double value = SliderFromUnit(x, min, max);
  return whole ? std::round(value) : NearestShown(value, decimals, kSixDecimalsError * (max - min));
}

double UnitFromSlider(double value, double min, double max) {
  return max > min ? (value - min) / (max - min) : 0.0;
}

int32_t AngleFromTurns(double turns) {
  const double degrees = turns * 360.0;
  return SaturatedFixedFromDegrees(
      NearestShown(degrees, kAngleDecimals, kSixDecimalsError * 360.0));
}

double TurnsFromAngle(int32_t fixed) {
  return DegreesFromFixed(fixed) / 360.0;
}

bool CheckboxFromBool(double x) {
  return x >= 0.5;
}

std::optional<int> FindPopupItem(std::span<const std::string> items, std::string_view text) {
  const std::string wanted = KebabCase(text);
  for (std::size_t i = 0; i < items.size(); ++i)
    if (wanted == items[i]) return static_cast<int>(i);
  return std::nullopt;
}

}  // namespace morvane::frei0r
