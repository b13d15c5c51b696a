// Where a line's intensities are read: the image's own line, or the matching line of the
// "Intensity Source" layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "stretch/EdgeModes.h"
#include "stretch/KernelIsa.h"
#include "stretch/PixelTraits.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernel.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

using morvane::KernelImages;

// Intensity read from the image's own line at a whole position. The intensity is never faded,
// so Transparent samples like Wrap.
template <typename Channel, EdgeMode Mode>
class SelfIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  SelfIntensitySource() = default;
  SelfIntensitySource(const StretchCall& call, const KernelImages<Channel>&, const Channel* line,
                      std::ptrdiff_t pixelStep, int32_t)
      : walker_(line, pixelStep, LinePositionWalker<kMode>(call.length, call.intensityStart)) {}

  [[gnu::always_inline]] const Channel* Pixel() const { return walker_.Pixel(); }
  [[gnu::always_inline]] void Advance() { walker_.Advance(); }
  // Runs of pixels that lie one after another, as LinePixelWalker.
  [[gnu::always_inline]] bool ForwardFor(int32_t n) const { return walker_.ForwardFor(n); }
  [[gnu::always_inline]] std::ptrdiff_t Step() const { return walker_.Step(); }
  [[gnu::always_inline]] void SkipForward(int32_t n) { walker_.SkipForward(n); }

 private:
  LinePixelWalker<kMode, Channel> walker_;
};

// Intensity read from the layer line that corresponds to an image line, at a fixed-point
// position. Along the line pixels are counted from the layer's origin (Right, Down) or back
// from its far edge (Left, Up); every sample stays inside the layer.
template <typename Channel, EdgeMode Mode>
class LayerIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  LayerIntensitySource() = default;
  LayerIntensitySource(const StretchCall& call, const KernelImages<Channel>& images, const Channel*,
                       std::ptrdiff_t, int32_t line)
      : walker_(call.intensityLength, call.layer.alongStep, call.intensityStart) {
    const bool rows = !AlongColumns(call.direction);
    const bool forward = call.direction == Direction::Right || call.direction == Direction::Down;
    const int64_t crossOrigin = rows ? call.layer.originY : call.layer.originX;
    const int32_t crossExtent = rows ? images.layerHeight : images.layerWidth;
    const int64_t cross = std::clamp<int64_t>(
        (int64_t{line} * call.layer.crossStep + crossOrigin * kLayerOne) >> kLayerFractionBits, 0,
        crossExtent - 1);
    extent_ = rows ? images.layerWidth : images.layerHeight;
    origin_ = forward ? (rows ? call.layer.originX : call.layer.originY) : extent_ - 1;
    sign_ = forward ? 1 : -1;
    base_ = images.layer + (rows ? cross * images.layerStride : cross * 4);
    step_ = rows ? 4 : images.layerStride;
  }

  [[gnu::always_inline]] const Channel* Pixel() const {
    const int32_t along = std::clamp(origin_ + sign_ * walker_.Pixel(), 0, extent_ - 1);
    return base_ + along * step_;
  }
  [[gnu::always_inline]] void Advance() { walker_.Advance(); }

 private:
  LayerPositionWalker<kMode> walker_;
  const Channel* base_ = nullptr;
  std::ptrdiff_t step_ = 0;
  int32_t origin_ = 0;
  int32_t sign_ = 1;
  int32_t extent_ = 1;
};

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
