// The stretch curve: intensity (as a sample index) to stretch length.
#pragma once

#include <array>
#include <cstdint>

namespace morvane {

// "Stretch Curve" popup value minus one.
enum class CurveShape : int32_t {
  LinearRampUp = 0,
  LinearRampDown = 1,
  TriangleWave = 2,
  SineWave = 3,
  ExpUp = 4,    // x^4
  ExpDown = 5,  // 1 - x^4
};

// Evaluation options, an unsigned 8-bit set of bits.
enum class CurveFlags : uint8_t {
  None = 0,
  NoRounding = 1,     // return the value unrounded instead of rounded to 7 decimals
  SineInclusive = 2,  // single precision only: the sine runs over i / (n - 1) instead of i / n
};

constexpr CurveFlags operator|(CurveFlags a, CurveFlags b) {
  return static_cast<CurveFlags>(static_cast<uint8_t>(a) | static_cast<uint8_t>(b));
}

constexpr bool HasFlag(CurveFlags set, CurveFlags flag) {
  return (static_cast<uint8_t>(set) & static_cast<uint8_t>(flag)) != 0;
}

// Number of samples of the table a kernel looks stretch lengths up in.
inline constexpr int32_t kStretchCurveSize = 1024;

// Stretch lengths by intensity index 0 ... 1023 (index m stands for intensity m / 1023).
using StretchCurveTable = std::array<double, kStretchCurveSize>;

// The curve at sample i of n (n >= 2), scaled by amplitude and lifted by offset. An unknown
// shape gives 0 before the offset is added.
double CurveValue(CurveShape shape, int32_t i, int32_t n, double amplitude, double offset,
                  CurveFlags flags);

// The curve at sample i blended between the means over radius K - 1 and K around it, where
// K = ceil(smoothness); the neighbourhood wraps around the ends of the curve. A smoothness
// beyond n - 1 (either sign) is limited to n - 1 first; NaN counts as 0.
double SmoothedCurveValue(CurveShape shape, int32_t i, int32_t n, double amplitude, double offset,
                          float smoothness, CurveFlags flags);

// Single-precision twins, drawn by the curve graph.
float CurveValueF(CurveShape shape, int32_t i, int32_t n, float amplitude, float offset,
                  CurveFlags flags);
float SmoothedCurveValueF(CurveShape shape, int32_t i, int32_t n, float amplitude, float offset,
                          float smoothness, CurveFlags flags);

}  // namespace morvane
