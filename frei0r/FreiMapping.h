// Conversions between frei0r parameter values and the effect's control values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace morvane::frei0r {

// How far a host that writes its doubles with 6 decimals (Kdenlive saves projects so) may move a
// value on the way: half a unit in the sixth decimal, and a little for the double's own rounding.
inline constexpr double kSixDecimalsError = 0.5000005e-6;

// Angles show tenths of a degree in the editors' panels.
inline constexpr int kAngleDecimals = 1;

// The multiple of 10^-decimals nearest to `value` when it lies within `tolerance` of it (so a
// value the user typed comes back as typed, exactly as its decimal text reads); else `value`.
double NearestShown(double value, int decimals, double tolerance);

// min + x * (max - min) with x clamped to 0..1 (NaN counts as 0); exactly min at 0 and max at 1.
double SliderFromUnit(double x, double min, double max);

// A slider's value from frei0r's 0..1 as the module keeps it: a whole-number control rounded
// half away from zero, any other taken to the nearest value with `decimals` decimals that a
// 6-decimal host could have meant.
double SliderFromHost(double x, double min, double max, int decimals, bool whole);

// The inverse, for reporting a slider value back to the host as 0..1.
double UnitFromSlider(double value, double min, double max);

// Turns (0..1 is one turn) to the host's 16.16 fixed-point degrees: degrees = turns * 360, taken
// to the nearest tenth a 6-decimal host could have meant, then degrees * 65536 rounded half away
// from zero. Saturates at the 32-bit limits; NaN gives 0.
int32_t AngleFromTurns(double turns);

// 16.16 fixed-point degrees back to turns.
double TurnsFromAngle(int32_t fixed);

// frei0r's bool: [0, 0.5[ is false, [0.5, 1] is true.
bool CheckboxFromBool(double x);

// The 0-based item of `items` (kebab-case) that `text` names in any spelling of the same
// kebab-case; nullopt for no item.
std::optional<int> FindPopupItem(std::span<const std::string> items, std::string_view text);

}  // namespace morvane::frei0r
