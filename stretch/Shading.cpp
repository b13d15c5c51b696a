#include "stretch/Shading.h"

#include <algorithm>
#include <cmath>

#include "stretch/StretchMath.h"

namespace morvane {
namespace {

double PatternValue(ShadingMode mode, int32_t i, int32_t size) {
  const double t = static_cast<double>(i) / static_cast<double>(size);
  switch (mode) {
    case ShadingMode::SineWave:
      return std::cos((t + t) * kPi) * 0.5 + 0.5;
    case ShadingMode::TriangleWave:
      return t < 0.5 ? t + t : 1.0 - ((t - 0.5) + (t - 0.5));
    case ShadingMode::LinearRampUp:
      return t;
    case ShadingMode::LinearRampDown:
      return 1.0 - t;
    case ShadingMode::Line:
      if (size == 2) return i == 0 ? 1.0 : 0.0;
      if (size == 3) return i == 0 ? 1.0 : (i == 1 ? 0.5 : 0.0);
      return i == 1 ? 1.0 : (i == 0 || i == 2 ? 0.5 : 0.0);
    case ShadingMode::None:
      break;
  }
  return 1.0;
}

}  // namespace

int32_t ShadingTableSize(int32_t intervalSize, float scale) {
  const int32_t interval = intervalSize == 0 ? 8 : intervalSize;
  const int32_t size = TruncTo<int32_t>(static_cast<double>(interval) * static_cast<double>(scale));
  return std::clamp(size, 2, kMaxShadingTableSize);
}

int32_t ShadingTablePhase(int32_t intervalPhase, int32_t size) {
  const float steps =
      static_cast<float>(intervalPhase) / static_cast<float>(kFullTurn) * static_cast<float>(size);
  return static_cast<int32_t>(ReduceIntoPeriod(TruncTo<int32_t>(steps), size));
}

ShadingTable BuildShadingTable(ShadingMode mode, int32_t intervalSize, int32_t intervalPhase,
                               double opacityPercent, double intensityFraction, float scale) {
  ShadingTable table;
  table.size = ShadingTableSize(intervalSize, scale);
  table.phase = ShadingTablePhase(intervalPhase, table.size);
  const double opacity = opacityPercent / 100.0;
  const double base = (opacity - 1.0) * intensityFraction + 1.0;
  const double weight = 1.0 - base;
  for (int32_t i = 0; i < table.size; ++i) {
    table.entries[(i + table.phase) % table.size] =
        weight * PatternValue(mode, i, table.size) + base;
  }
  return table;
}

}  // namespace morvane
