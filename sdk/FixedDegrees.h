// Angles as the host keeps them: degrees in 16.16 fixed point (PF_Fixed).
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace morvane {

// degrees * 65536 rounded half away from zero; nullopt when that does not fit 32 bits (or for
// NaN).
inline std::optional<int32_t> FixedFromDegrees(double degrees) {
  const double fixed = std::round(degrees * 65536.0);
  if (!(fixed >= double(std::numeric_limits<int32_t>::min()) &&
        fixed <= double(std::numeric_limits<int32_t>::max()))) {
    return std::nullopt;
  }
  return static_cast<int32_t>(fixed);
}

// The same, saturated at the 32-bit limits; NaN gives 0.
inline int32_t SaturatedFixedFromDegrees(double degrees) {
  if (std::isnan(degrees)) return 0;
  if (const auto fixed = FixedFromDegrees(degrees)) return *fixed;
  return degrees < 0 ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int32_t>::max();
}

inline double DegreesFromFixed(int32_t fixed) {
  return double(fixed) / 65536.0;
}

}  // namespace morvane
