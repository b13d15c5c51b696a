#include "stretch/ImageShift.h"

#include <cstdlib>

namespace morvane {

ImageShift ComputeImageShift(int32_t imageShiftPhase, double intensityFraction, EdgeMode mode,
                             int32_t length, int32_t intensityLength) {
  ImageShift s;
  s.scaledPhase = TruncTo<int32_t>(static_cast<double>(imageShiftPhase) * intensityFraction);
  s.turns = static_cast<float>(s.scaledPhase) / static_cast<float>(kFullTurn);
  s.shiftPixels = TruncTo<int32_t>(static_cast<float>(length) * s.turns);
  s.layerShiftPixels = TruncTo<int32_t>(static_cast<float>(intensityLength) * s.turns);
  s.imageShiftOffset = static_cast<int32_t>(ReduceIntoPeriod(s.shiftPixels, length));
  s.layerShiftOffset = static_cast<int32_t>(ReduceIntoPeriod(s.layerShiftPixels, intensityLength));

  if (mode == EdgeMode::Mirror) {
    const int32_t wholeTurns = TruncTo<int32_t>(s.turns);
    s.mirrorTurn = wholeTurns % 2;
    if (s.shiftPixels < 0) s.mirrorTurn = std::abs(s.mirrorTurn) ^ 1;
  }
  s.colourStart = int64_t{s.imageShiftOffset} + int64_t{s.mirrorTurn} * length;
  s.layerStart =
      (int64_t{s.layerShiftOffset} + int64_t{s.mirrorTurn} * intensityLength) * kLayerOne;
  return s;
}

int64_t SelfIntensityStart(const ImageShift& shift, bool sync, EdgeMode mode, int32_t length) {
  return sync ? ResolveLinePosition(mode, length, shift.colourStart) : 0;
}

int64_t LayerIntensityStart(const ImageShift& shift, bool sync, EdgeMode mode,
                            int32_t intensityLength) {
  return sync ? ResolveIntensityPosition(mode, EdgePeriod(mode, intensityLength), shift.layerStart)
              : 0;
}

}  // namespace morvane
