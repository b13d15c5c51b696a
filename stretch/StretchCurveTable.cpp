#include "stretch/StretchCurveTable.h"

#include "stretch/CurveSmoothing.h"
#include "stretch/StretchMath.h"

namespace morvane {

StretchCurveTable BuildStretchCurveTable(StretchRenderRecord& record) {
  const double intensity = record.intensity / 100.0;
  const double amplitude = intensity * record.stretchAmount;
  const double offset = (record.pixelSize - 1.0) * intensity + 1.0;
  const float smoothness = static_cast<float>(record.curveSmoothness * kCurveSmoothnessScale);
  record.curveSmoothness = smoothness;

  const float turns = static_cast<float>(record.curvePhase) / static_cast<float>(kFullTurn);
  const int32_t steps = TruncTo<int32_t>(turns * static_cast<float>(kStretchCurveSize));
  const int32_t rotation = static_cast<int32_t>(ReduceIntoPeriod(steps, kStretchCurveSize));

  // Every neighbour is a plain curve sample, so evaluate each sample once; the smoothing then
  // sums exactly the values SmoothedCurveValue would compute, in the same order.
  const auto shape = static_cast<CurveShape>(record.curveShape);
  StretchCurveTable samples{};
  for (int32_t m = 0; m < kStretchCurveSize; ++m) {
    samples[m] = CurveValue(shape, m, kStretchCurveSize, amplitude, offset, CurveFlags::None);
  }
  const auto sample = [&samples](int32_t m) { return samples[m]; };

  StretchCurveTable table{};
  for (int32_t i = 0; i < kStretchCurveSize; ++i) {
    table[(i + rotation) % kStretchCurveSize] =
        detail::SmoothCurveSample<double>(sample, i, kStretchCurveSize, smoothness);
  }
  return table;
}

}  // namespace morvane
