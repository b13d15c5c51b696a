#include "stretch/StretchCall.h"

#include <algorithm>
#include <cmath>

#include "stretch/Distribution.h"
#include "stretch/PixelTraits.h"
#include "stretch/StretchCurveTable.h"
#include "stretch/StretchMath.h"

namespace morvane {

LayerGeometry ComputeLayerGeometry(Direction direction, int32_t width, int32_t height,
                                   int32_t layerWidth, int32_t layerHeight, int32_t originX,
                                   int32_t originY) {
  const int64_t w = width;
  const int64_t h = height;
  const int64_t lw = layerWidth;
  const int64_t lh = layerHeight;
  const bool inside =
      originX >= 0 && originY >= 0 && lw >= w && lh >= h && w + originX <= lw && h + originY <= lh;
  LayerGeometry g;
  int64_t stepX;
  int64_t stepY;
  if (inside) {
    g.originX = originX;
    g.originY = originY;
    stepX = ((lw - originX) * kLayerOne) / w;
    stepY = ((lh - originY) * kLayerOne) / h;
  } else {
    stepX = (lw * kLayerOne) / w;
    stepY = (lh * kLayerOne) / h;
  }
  const bool rows = direction == Direction::Right || direction == Direction::Left;
  g.alongStep = rows ? stepX : stepY;
  g.crossStep = rows ? stepY : stepX;
  return g;
}

int32_t StartCount(double startOffsetPercent, int32_t length) {
  const double count = std::round(startOffsetPercent / 100.0 * static_cast<double>(length));
  return std::clamp(TruncTo<int32_t>(count), 0, length);
}

void PrepareStretchCall(StretchCall& call, StretchRenderRecord& record, int32_t width,
                        int32_t height, float scale, bool useLayer, int32_t layerWidth,
                        int32_t layerHeight, int32_t originX, int32_t originY) {
  call.intensity = record.intensity / 100.0;

  call.direction = DirectionFromRecord(record.direction);
  const bool rows = call.direction == Direction::Right || call.direction == Direction::Left;
  call.lineCount = rows ? height : width;
  call.length = rows ? width : height;
  call.intensityLength = useLayer ? (rows ? layerWidth : layerHeight) : call.length;

  call.edgeMode = EdgeModeFromRecord(record.edgeMode);

  call.shift = ComputeImageShift(record.imageShiftPhase, call.intensity, call.edgeMode, call.length,
                                 call.intensityLength);
  record.imageShiftPhase = call.shift.scaledPhase;
  const bool sync = record.imageShiftPhaseSync != 0;
  call.intensityStart =
      useLayer ? LayerIntensityStart(call.shift, sync, call.edgeMode, call.intensityLength)
               : SelfIntensityStart(call.shift, sync, call.edgeMode, call.length);

  call.startCount = StartCount(record.startOffset, call.length);
  call.distributionMode = record.distributionMode;
  call.distributionPixels = DistributionPixels(record.distributionRange, call.length);

  call.shading =
      BuildShadingTable(ShadingModeFromRecord(record.shadingMode), record.shadingIntervalSize,
                        record.shadingIntervalPhase, record.shadingOpacity, call.intensity, scale);
  call.shadingChannel = ShadingChannelFromRecord(record.shadingChannels);

  call.featherLength = FeatherLength(record.transparencyFeather, call.length);

  call.curve = BuildStretchCurveTable(record);
  for (std::size_t sum = 0; sum < call.opaqueStretch8.size(); ++sum)
    call.opaqueStretch8[sum] = call.curve[CurveIndex(detail::kSumOver765.values[sum])];

  call.layer = useLayer ? ComputeLayerGeometry(call.direction, width, height, layerWidth,
                                               layerHeight, originX, originY)
                        : LayerGeometry{};
}

}  // namespace morvane
