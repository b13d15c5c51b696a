// "Distribution Mode" / "Distribution Range": fading the stretch in or out along a line.
#pragma once

#include <cstdint>

namespace morvane {

enum class DistributionMode : int32_t { Constant = 0, LinearRampUp = 1, LinearRampDown = 2 };

// The distribution length R in stretch steps for lines of `length` pixels. Above a range of 1
// it grows towards L * L + L at range 2 (L * L is formed in 64 bits).
int64_t DistributionPixels(double range, int32_t length);

// Applies the distribution to the stretch length of step j. Unknown modes leave it unchanged.
inline double ApplyDistribution(int32_t mode, double length, int64_t step, int64_t range) {
  switch (static_cast<DistributionMode>(mode)) {
    case DistributionMode::Constant:
      if (step > range) length = 1.0;
      break;
    case DistributionMode::LinearRampUp:
      if (step < range) {
        length = ((length - 1.0) * static_cast<double>(step)) / static_cast<double>(range) + 1.0;
      }
      break;
    case DistributionMode::LinearRampDown:
      if (step < range) {
        length = length + ((1.0 - length) * static_cast<double>(step)) / static_cast<double>(range);
      } else {
        length = 1.0;
      }
      break;
  }
  return length;
}

// A stretch length that is not above 0, or NaN, counts as 1: every line then ends after a
// bounded number of steps whatever the record holds.
inline double GuardStretchLength(double length) {
  return length > 0.0 ? length : 1.0;
}

}  // namespace morvane
