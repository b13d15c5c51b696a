#include "stretch/StretchCurve.h"

#include <cmath>

#include "stretch/CurveSmoothing.h"
#include "stretch/StretchMath.h"

namespace morvane {

double CurveValue(CurveShape shape, int32_t i, int32_t n, double amplitude, double offset,
                  CurveFlags flags) {
  const double x = static_cast<double>(i) / static_cast<double>(n - 1);
  const double u = static_cast<double>(i) / static_cast<double>(n);
  double y = 0.0;
  switch (shape) {
    case CurveShape::LinearRampUp:
      y = x * amplitude;
      break;
    case CurveShape::LinearRampDown:
      y = (1.0 - x) * amplitude;
      break;
    case CurveShape::TriangleWave: {
      const double t = 0.5 > x ? x + x : 1.0 - 2.0 * (x - 0.5);
      y = t * amplitude;
      break;
    }
    case CurveShape::SineWave: {
      const double h = amplitude * 0.5;
      y = std::sin(2.0 * (u * kPi)) * h + h;
      break;
    }
    case CurveShape::ExpUp:
      y = ((x * x) * x) * x * amplitude;
      break;
    case CurveShape::ExpDown:
      y = (1.0 - ((x * x) * x) * x) * amplitude;
      break;
  }
  y = y + offset;
  if (HasFlag(flags, CurveFlags::NoRounding)) return y;
  return std::round(y * 10000000.0) / 10000000.0;
}

float CurveValueF(CurveShape shape, int32_t i, int32_t n, float amplitude, float offset,
                  CurveFlags flags) {
  const double id = static_cast<double>(i);
  const float x = static_cast<float>(id / static_cast<double>(static_cast<float>(n - 1)));
  const float u = static_cast<float>(id / static_cast<double>(static_cast<float>(n)));
  float y = 0.0f;
  switch (shape) {
    case CurveShape::LinearRampUp:
      y = x * amplitude;
      break;
    case CurveShape::LinearRampDown:
      y = (1.0f - x) * amplitude;
      break;
    case CurveShape::TriangleWave: {
      const float t =
          0.5f > x ? x + x : 1.0f - 2.0f * static_cast<float>(static_cast<double>(x) - 0.5);
      y = t * amplitude;
      break;
    }
    case CurveShape::SineWave: {
      const double h = static_cast<double>(amplitude * 0.5f);
      const double w = static_cast<double>(HasFlag(flags, CurveFlags::SineInclusive) ? x : u);
      y = static_cast<float>(std::sin(2.0 * (w * kPi)) * h + h);
      break;
    }
    case CurveShape::ExpUp:
      y = ((x * x) * x) * x * amplitude;
      break;
    case CurveShape::ExpDown:
      y = (1.0f - ((x * x) * x) * x) * amplitude;
      break;
  }
  y = y + offset;
  if (HasFlag(flags, CurveFlags::NoRounding)) return y;
  return std::roundf(y * 10000000.0f) / 10000000.0f;
}

double SmoothedCurveValue(CurveShape shape, int32_t i, int32_t n, double amplitude, double offset,
                          float smoothness, CurveFlags flags) {
  const auto sample = [&](int32_t m) { return CurveValue(shape, m, n, amplitude, offset, flags); };
  return detail::SmoothCurveSample<double>(sample, i, n, smoothness);
}

float SmoothedCurveValueF(CurveShape shape, int32_t i, int32_t n, float amplitude, float offset,
                          float smoothness, CurveFlags flags) {
  const auto sample = [&](int32_t m) { return CurveValueF(shape, m, n, amplitude, offset, flags); };
  return detail::SmoothCurveSample<float>(sample, i, n, smoothness);
}

}  // namespace morvane
