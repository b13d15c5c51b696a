// "Distribution Mode" / "Distribution Range": fading the stretch in or out along a line.
#pragma once

#include <cstdint>

namespace morvane {

enum class DistributionMode : int32_t { Constant = 0, LinearRampUp = 1, LinearRampDown = 2 };

// The distribution length R in stretch steps for lines of `length` pixels. Above a range of 1
// it grows towards L * L + L at range 2 (L * L is formed in 64 bits).
int64_t DistributionPixels(double range, int32_t length);

// Applies the distribution to the stretch length of step j. Unknown modes leave it unchanged.
[[gnu::always_inline]] inline double ApplyDistribution(int32_t mode, double length, int64_t step,
                                                       int64_t range) {
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

// The controls never give a stretch length below 0.01 (Pixel Size >= 0.01 at an intensity of
// at most 100; curves and distribution only add to it or pull it towards 1). Values they cannot
// produce may give lengths just above 0, and an output pixel takes 1 / length steps: such
// lengths count as half that floor, so every line ends after at most 200 steps per output pixel
// whatever the record holds. (Half the floor, because smoothing means and the linear ramps can
// land a few ulps below 0.01 with control values.) Lengths not above 0, and NaN, count as 1.
inline constexpr double kMinStretchLength = 0.005;

[[gnu::always_inline]] inline double GuardStretchLength(double length) {
  if (!(length > 0.0)) return 1.0;
  return length < kMinStretchLength ? kMinStretchLength : length;
}

}  // namespace morvane
