// The neighbourhood mean behind SmoothedCurveValue, shared by the per-sample functions and the
// table builder (which feeds it precomputed samples instead of re-evaluating the curve).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace morvane::detail {

// `sample(m)` returns the (rounded) curve value at sample m; Real is double or float and sets
// the precision of the sums and of the blend.
template <typename Real, typename Sample>
Real SmoothCurveSample(const Sample& sample, int32_t i, int32_t n, float smoothness) {
  // Beyond n - 1 a neighbour index would leave the curve after the single wrap below.
  const float limit = static_cast<float>(n - 1);
  if (!(smoothness == smoothness)) smoothness = 0.0f;
  smoothness = std::clamp(smoothness, -limit, limit);

  const int32_t radius = static_cast<int32_t>(std::ceil(smoothness));
  const float fractionF = smoothness - std::trunc(smoothness);
  const Real fraction = static_cast<Real>(fractionF);

  const Real centre = sample(i);
  Real innerSum = centre;
  Real outerSum = centre;
  int32_t innerCount = 1;
  int32_t outerCount = 1;
  if (!(-radius > radius)) {
    for (int32_t j = -radius; j <= radius; ++j) {
      if (j == 0) continue;
      int32_t m = i + j;
      if (m >= 0) {
        m %= n;
      } else {
        m += n;
      }
      const Real c = sample(m);
      if (j != -radius && j != radius) {
        innerSum += c;
        ++innerCount;
      }
      outerSum += c;
      ++outerCount;
    }
  }
  return (innerSum / static_cast<Real>(innerCount)) * (Real{1} - fraction) +
         (outerSum / static_cast<Real>(outerCount)) * fraction;
}

}  // namespace morvane::detail
