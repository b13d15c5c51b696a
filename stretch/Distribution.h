// "Distribution Mode" / "Distribution Range": fading the stretch in or out along a line.
#pragma once

#include <cstdint>
#include <type_traits>

namespace morvane {

enum class DistributionMode : int32_t { Constant = 0, LinearRampUp = 1, LinearRampDown = 2 };

// A mode value outside the enumeration: it leaves every step's length as it is. Records the
// controls cannot produce land here, and so do chunks of steps a mode would leave unchanged.
inline constexpr int32_t kUnchangingDistributionMode = -1;

// The distribution length R in stretch steps for lines of `length` pixels. Above a range of 1
// it grows towards L * L + L at range 2 (L * L is formed in 64 bits).
int64_t DistributionPixels(double range, int32_t length);

// Applies distribution mode kMode to the stretch length of step j of a distribution length R;
// a value outside the enumeration leaves it unchanged. For one step or for lanes of several:
// j is the step's whole number in double (exact), R the same in double.
template <DistributionMode kMode, typename T>
[[gnu::always_inline]] inline T ApplyDistribution(T length, T step, double range) {
  if constexpr (kMode == DistributionMode::Constant) {
    return step > range ? T{} + 1.0 : length;
  } else if constexpr (kMode == DistributionMode::LinearRampUp) {
    return step < range ? ((length - 1.0) * step) / range + 1.0 : length;
  } else if constexpr (kMode == DistributionMode::LinearRampDown) {
    return step < range ? length + ((1.0 - length) * step) / range : T{} + 1.0;
  } else {
    return length;
  }
}

// Calls f(std::integral_constant<DistributionMode, mode>) for the record's mode (any value
// outside the enumeration as one that changes nothing).
template <typename F>
[[gnu::always_inline]] inline auto WithDistributionMode(int32_t mode, F&& f) {
  using M = DistributionMode;
  switch (static_cast<M>(mode)) {
    case M::Constant:
      return f(std::integral_constant<M, M::Constant>{});
    case M::LinearRampUp:
      return f(std::integral_constant<M, M::LinearRampUp>{});
    case M::LinearRampDown:
      return f(std::integral_constant<M, M::LinearRampDown>{});
  }
  return f(std::integral_constant<M, static_cast<M>(kUnchangingDistributionMode)>{});
}

// The mode to apply to steps first ... last (whole numbers in double) of a distribution length
// R: `mode`, or a value outside the enumeration where `mode` leaves all of those steps' lengths as
// they are (Constant before R is passed, LinearRampUp once R is reached), so that a chunk of such
// steps skips the comparison.
inline int32_t DistributionModeFor(int32_t mode, double first, double last, double range) {
  const auto m = static_cast<DistributionMode>(mode);
  const bool unchanged = (m == DistributionMode::Constant && !(last > range)) ||
                         (m == DistributionMode::LinearRampUp && !(first < range));
  return unchanged ? kUnchangingDistributionMode : mode;
}

// Applies the record's distribution mode to the stretch length of step j.
inline double ApplyDistribution(int32_t mode, double length, int64_t step, int64_t range) {
  return WithDistributionMode(mode, [&](auto m) {
    return ApplyDistribution<decltype(m)::value>(length, static_cast<double>(step),
                                                 static_cast<double>(range));
  });
}

// The controls never give a stretch length below 0.01 (Pixel Size >= 0.01 at an intensity of
// at most 100; curves and distribution only add to it or pull it towards 1). Values they cannot
// produce may give lengths just above 0, and an output pixel takes 1 / length steps: such
// lengths count as half that floor, so every line ends after at most 200 steps per output pixel
// whatever the record holds. (Half the floor, because smoothing means and the linear ramps can
// land a few ulps below 0.01 with control values.) Lengths not above 0, and NaN, count as 1.
inline constexpr double kMinStretchLength = 0.005;

template <typename T>
[[gnu::always_inline]] inline T GuardStretchLength(T length) {
  return length > 0.0 ? (length < kMinStretchLength ? T{} + kMinStretchLength : length) : T{} + 1.0;
}

}  // namespace morvane
