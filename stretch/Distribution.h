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

// The controls never give a stretch length below 0.01 ("Pixel Size" >= 0.01 at an intensity of
// at most 100; the curves and the distribution only add to it or pull it towards 1). Records the
// controls cannot produce may give lengths just above 0, and an output pixel takes 1 / length
// steps: such lengths count as half that floor (smoothing and the linear ramps can land a few
// ulps below 0.01 with control values, which must stay untouched), so every line ends after at
// most 200 steps per output pixel. A length not above 0, or NaN, counts as 1.
inline constexpr double kMinStretchLength = 0.005;

inline double GuardStretchLength(double length) {
  if (!(length > 0.0)) return 1.0;
  return length < kMinStretchLength ? kMinStretchLength : length;
}

}  // namespace morvane
