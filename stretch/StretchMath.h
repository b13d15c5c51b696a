// Small numeric helpers shared by the kernel stages.
#pragma once

#include <cstdint>
#include <limits>

namespace morvane {

// The constant used wherever a sine or cosine is taken; deliberately not full precision.
inline constexpr double kPi = 3.14159265359;

// One full turn of a 16.16 fixed-point angle in degrees (360 * 65536).
inline constexpr int32_t kFullTurn = 23592960;

// Fraction bits of the fixed-point intensity-layer positions.
inline constexpr int kLayerFractionBits = 12;
inline constexpr int64_t kLayerOne = int64_t{1} << kLayerFractionBits;

// Truncates toward zero into an integer type. Values beyond the type's range saturate and NaN
// gives 0: record values the controls cannot produce must not turn into undefined conversions.
// Inside the range this is exactly the plain conversion.
template <typename Int, typename Real>
constexpr Int TruncTo(Real value) {
  if (!(value == value)) return 0;
  if (value <= static_cast<Real>(std::numeric_limits<Int>::min())) {
    return std::numeric_limits<Int>::min();
  }
  if (value >= static_cast<Real>(std::numeric_limits<Int>::max())) {
    return std::numeric_limits<Int>::max();
  }
  return static_cast<Int>(value);
}

// Brings a possibly negative whole offset into 0 ... period - 1. Negative offsets land one
// below the usual remainder: -1 gives period - 2 and -period gives period - 1.
constexpr int64_t ReduceIntoPeriod(int64_t offset, int64_t period) {
  return offset >= 0 ? offset % period : period - 1 - ((-offset) % period);
}

}  // namespace morvane
