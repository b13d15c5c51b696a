// Conversions between frei0r parameter values and the effect's control values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace morvane::frei0r {

// min + x * (max - min) with x clamped to 0..1 (NaN counts as 0); exactly min at 0 and max at 1.
double SliderFromUnit(double x, double min, double max);

// The inverse, for reporting a slider value back to the host as 0..1.
double UnitFromSlider(double value, double min, double max);

// Turns (0..1 is one turn) to the host's 16.16 fixed-point degrees: degrees = turns * 360, then
// degrees * 65536 rounded half away from zero. Saturates at the 32-bit limits; NaN gives 0.
int32_t AngleFromTurns(double turns);

// 16.16 fixed-point degrees back to turns.
double TurnsFromAngle(int32_t fixed);

// frei0r's bool: [0, 0.5[ is false, [0.5, 1] is true.
bool CheckboxFromBool(double x);

// The 0-based item of `items` (kebab-case) that `text` names in any spelling of the same
// kebab-case; nullopt for no item.
std::optional<int> FindPopupItem(std::span<const std::string> items, std::string_view text);

}  // namespace morvane::frei0r
