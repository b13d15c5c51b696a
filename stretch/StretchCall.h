// Everything a kernel call fixes before its first line.
#pragma once

#include <array>
#include <cstdint>

#include "render/StretchRenderRecord.h"
#include "stretch/EdgeModes.h"
#include "stretch/ImageShift.h"
#include "stretch/Shading.h"
#include "stretch/StretchCurve.h"

namespace morvane {

enum class Direction : int32_t { Right = 0, Left = 1, Down = 2, Up = 3 };

// Values the popup cannot produce act as Right.
constexpr Direction DirectionFromRecord(int32_t value) {
  return value >= 0 && value <= 3 ? static_cast<Direction>(value) : Direction::Right;
}

// Whether lines run down or up the image: each pixel of a line a row away from the last.
constexpr bool AlongColumns(Direction direction) {
  return direction == Direction::Down || direction == Direction::Up;
}

// Where the intensity layer is sampled: positions in layer pixels with 12 fraction bits.
struct LayerGeometry {
  int32_t originX = 0;    // layer column of the output's left edge
  int32_t originY = 0;    // layer row of the output's top edge
  int64_t alongStep = 0;  // layer distance per source pixel along a line
  int64_t crossStep = 0;  // layer distance per line
};

// The layer region from the output's origin to the layer's far edges (or, when the output does
// not lie inside the layer at its origin, the whole layer) mapped linearly onto the output.
LayerGeometry ComputeLayerGeometry(Direction direction, int32_t width, int32_t height,
                                   int32_t layerWidth, int32_t layerHeight, int32_t originX,
                                   int32_t originY);

// startOffset / 100 * L rounded half away from zero, kept within 0 ... L.
int32_t StartCount(double startOffsetPercent, int32_t length);

struct StretchCall {
  double intensity = 0.0;  // I = "Morvane Intensity" / 100
  Direction direction = Direction::Right;
  EdgeMode edgeMode = EdgeMode::Wrap;
  int32_t lineCount = 0;
  int32_t length = 0;           // L
  int32_t intensityLength = 0;  // Ls
  ImageShift shift;
  int64_t intensityStart = 0;  // whole position (self) or fixed point (layer)
  int32_t startCount = 0;
  int32_t distributionMode = 0;
  int64_t distributionPixels = 0;
  ShadingTable shading;
  ShadingChannel shadingChannel = ShadingChannel::Alpha;
  int32_t featherLength = 0;
  StretchCurveTable curve{};
  // The curve's stretch length of an opaque 8-bit pixel by the sum of its three colour channels
  // (a single channel c, or an alpha, at the sum 3c: c / 255 and 3c / 765 are the same double).
  std::array<double, 766> opaqueStretch8{};
  LayerGeometry layer;
};

// The call set-up, in order: intensity, line geometry, edge periods, image shift, start count,
// distribution, shading table, feather, curve table, layer geometry. Overwrites
// `imageShiftPhase` and `curveSmoothness` of `record` (the kernel's own copy). With
// `useLayer` false the layer values are ignored and the intensity line is the image's own.
void PrepareStretchCall(StretchCall& call, StretchRenderRecord& record, int32_t width,
                        int32_t height, float scale, bool useLayer, int32_t layerWidth,
                        int32_t layerHeight, int32_t originX, int32_t originY);

}  // namespace morvane
