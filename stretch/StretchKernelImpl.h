// The kernel template behind every StretchKernel. Included only by the files that instantiate
// the family; depth, intensity origin, channel variant and (inside a call) edge mode are template
// parameters, so the per-step loop has no branch on any of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "stretch/Distribution.h"
#include "stretch/EdgeModes.h"
#include "stretch/LineResampler.h"
#include "stretch/PixelTraits.h"
#include "stretch/Shading.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernel.h"

namespace morvane::detail {

// One line's placement in memory, in channel elements: its first pixel in the direction of
// travel, the distance between consecutive lines, and between consecutive pixels of a line.
struct LineLayout {
  std::ptrdiff_t first;
  std::ptrdiff_t lineStep;
  std::ptrdiff_t pixelStep;
};

inline LineLayout ImageLineLayout(Direction direction, std::ptrdiff_t stride, int32_t width,
                                  int32_t height) {
  switch (direction) {
    case Direction::Left:
      return {std::ptrdiff_t{width - 1} * 4, stride, -4};
    case Direction::Down:
      return {0, 4, stride};
    case Direction::Up:
      return {std::ptrdiff_t{height - 1} * stride, 4, -stride};
    case Direction::Right:
      break;
  }
  return {0, stride, 4};
}

// Where a kernel reads and writes: the images with their strides in channel elements, and the
// intensity layer when there is one.
template <typename Channel>
struct KernelImages {
  Channel* dst;
  std::ptrdiff_t dstStride;
  const Channel* src;
  std::ptrdiff_t srcStride;
  int32_t width;
  int32_t height;
  const Channel* layer;
  std::ptrdiff_t layerStride;
  int32_t layerWidth;
  int32_t layerHeight;
};

// Intensity read from the image's own line at a whole position. The intensity is never faded,
// so Transparent samples like Wrap.
template <typename Channel, EdgeMode Mode>
class SelfIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  SelfIntensitySource(const StretchCall& call, const KernelImages<Channel>&, const Channel* line,
                      std::ptrdiff_t pixelStep, int32_t)
      : line_(line), step_(pixelStep), walker_(call.length, call.intensityStart) {}

  const Channel* Pixel() const { return line_ + walker_.Index() * step_; }
  void Advance() { walker_.Advance(); }

 private:
  const Channel* line_;
  std::ptrdiff_t step_;
  LinePositionWalker<kMode> walker_;
};

// Intensity read from the layer line that corresponds to an image line, at a fixed-point
// position. Along the line pixels are counted from the layer's origin (Right, Down) or back
// from its far edge (Left, Up); every sample stays inside the layer.
template <typename Channel, EdgeMode Mode>
class LayerIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  LayerIntensitySource(const StretchCall& call, const KernelImages<Channel>& images, const Channel*,
                       std::ptrdiff_t, int32_t line)
      : walker_(call.intensityLength, call.layer.alongStep, call.intensityStart) {
    const bool rows = call.direction == Direction::Right || call.direction == Direction::Left;
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

  const Channel* Pixel() const {
    const int32_t along = std::clamp(origin_ + sign_ * walker_.Pixel(), 0, extent_ - 1);
    return base_ + along * step_;
  }
  void Advance() { walker_.Advance(); }

 private:
  LayerPositionWalker<kMode> walker_;
  const Channel* base_ = nullptr;
  std::ptrdiff_t step_ = 0;
  int32_t origin_ = 0;
  int32_t sign_ = 1;
  int32_t extent_ = 1;
};

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode>
void StretchLines(const StretchCall& call, const KernelImages<ChannelType<Depth>>& images) {
  using Channel = ChannelType<Depth>;
  constexpr int kCount = kChannelCount<Variant>;
  constexpr auto kChannels = VariantTraits<Variant>::kChannels;
  using Values = ChannelValues<kCount>;
  using IntensitySource =
      std::conditional_t<Origin == IntensityOrigin::LayerIntensity,
                         LayerIntensitySource<Channel, Mode>, SelfIntensitySource<Channel, Mode>>;

  const LineLayout out =
      ImageLineLayout(call.direction, images.dstStride, images.width, images.height);
  const LineLayout in =
      ImageLineLayout(call.direction, images.srcStride, images.width, images.height);
  const int32_t length = call.length;
  const int32_t feather = call.featherLength;
  const int32_t startCount = call.startCount;
  const int32_t distributionMode = call.distributionMode;
  const int64_t distributionPixels = call.distributionPixels;
  const ShadingChannel shadingChannel = call.shadingChannel;
  const double* curve = call.curve.data();

  LineResampler<kCount> resampler;
  for (int32_t line = 0; line < call.lineCount; ++line) {
    const Channel* source = images.src + in.first + std::ptrdiff_t{line} * in.lineStep;
    OutputCursor<Depth, Variant> cursor(
        images.dst + out.first + std::ptrdiff_t{line} * out.lineStep, out.pixelStep, length);
    LinePositionWalker<Mode> colour(length, call.shift.colourStart);
    LinePositionWalker<Mode> next(length, call.shift.colourStart + 1);
    IntensitySource intensity(call, images, source, in.pixelStep, line);
    resampler.ResetLine();

    // Start-offset copy: unstretched, unshaded, alpha faded by the edge.
    for (int32_t i = 0; i < startCount; ++i) {
      cursor.Copy(source + colour.Index() * in.pixelStep, colour.Fade(feather));
      colour.Advance();
      next.Advance();
      intensity.Advance();
      resampler.AdvanceCopied();
    }
    if (startCount >= length) continue;

    ShadeWalker shade(call.shading, call.shift.imageShiftOffset);
    for (int64_t step = 0;; ++step) {
      const double measured = MeasureIntensity<Depth, Variant>(intensity.Pixel());
      intensity.Advance();
      double stretch = curve[CurveIndex(measured)];
      stretch = ApplyDistribution(distributionMode, stretch, step, distributionPixels);
      stretch = GuardStretchLength(stretch);

      const StepMultipliers m = RouteShades(shadingChannel, shade.Current(), shade.Next());
      const double alphaCurrent = m.alphaCurrent * colour.Fade(feather);
      const double alphaNext = m.alphaNext * next.Fade(feather);

      const Channel* currentPixel = source + colour.Index() * in.pixelStep;
      const Channel* nextPixel = source + next.Index() * in.pixelStep;
      Values current;
      Values following;
      Values currentMul;
      Values nextMul;
      for (int k = 0; k < kCount; ++k) {
        const int c = kChannels[k];
        current[k] = static_cast<double>(currentPixel[c]);
        following[k] = static_cast<double>(nextPixel[c]);
        currentMul[k] = c == kAlpha ? alphaCurrent : m.colourCurrent;
        nextMul[k] = c == kAlpha ? alphaNext : m.colourNext;
      }
      if (resampler.Step(stretch, current, following, currentMul, nextMul, cursor)) break;

      colour.Advance();
      next.Advance();
      shade.Advance();
    }
  }
}

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
void RunStretchKernel(ChannelType<Depth>* dst, int32_t dstStride, const ChannelType<Depth>* src,
                      int32_t srcStride, int32_t width, int32_t height, StretchRenderRecord& record,
                      float scale, const ChannelType<Depth>* layerPixels, int32_t layerWidth,
                      int32_t layerHeight, int32_t layerStride, int32_t originX, int32_t originY) {
  if (width <= 0 || height <= 0 || dst == nullptr || src == nullptr) return;
  constexpr bool kFromLayer = Origin == IntensityOrigin::LayerIntensity;
  if constexpr (kFromLayer) {
    if (layerPixels == nullptr || layerWidth <= 0 || layerHeight <= 0) {
      RunStretchKernel<Depth, IntensityOrigin::SelfIntensity, Variant>(
          dst, dstStride, src, srcStride, width, height, record, scale, nullptr, 0, 0, 0, 0, 0);
      return;
    }
  }

  // Tables live in this call's frame (about 10 KB): no heap allocation.
  StretchCall call;
  PrepareStretchCall(call, record, width, height, scale, kFromLayer, layerWidth, layerHeight,
                     originX, originY);
  const KernelImages<ChannelType<Depth>> images{dst,        dstStride,  src,         srcStride,
                                                width,      height,     layerPixels, layerStride,
                                                layerWidth, layerHeight};
  switch (call.edgeMode) {
    case EdgeMode::Mirror:
      StretchLines<Depth, Origin, Variant, EdgeMode::Mirror>(call, images);
      break;
    case EdgeMode::RepeatLast:
      StretchLines<Depth, Origin, Variant, EdgeMode::RepeatLast>(call, images);
      break;
    case EdgeMode::Transparent:
      StretchLines<Depth, Origin, Variant, EdgeMode::Transparent>(call, images);
      break;
    case EdgeMode::Wrap:
      StretchLines<Depth, Origin, Variant, EdgeMode::Wrap>(call, images);
      break;
  }
}

}  // namespace morvane::detail

namespace morvane {

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
void StretchKernel(ChannelType<Depth>* dst, int32_t dstStride, const ChannelType<Depth>* src,
                   int32_t srcStride, int32_t width, int32_t height, StretchRenderRecord record,
                   float scale, const ChannelType<Depth>* layerPixels, int32_t layerWidth,
                   int32_t layerHeight, int32_t layerStride, int32_t originX, int32_t originY) {
  detail::RunStretchKernel<Depth, Origin, Variant>(dst, dstStride, src, srcStride, width, height,
                                                   record, scale, layerPixels, layerWidth,
                                                   layerHeight, layerStride, originX, originY);
}

template <PixelDepth Depth>
StretchKernelFn<Depth> SelectStretchKernel(IntensityOrigin origin, ChannelVariant variant) {
  using Origin = IntensityOrigin;
  using V = ChannelVariant;
  constexpr StretchKernelFn<Depth> kSelf[] = {
      &StretchKernel<Depth, Origin::SelfIntensity, V::Luma>,
      &StretchKernel<Depth, Origin::SelfIntensity, V::Red>,
      &StretchKernel<Depth, Origin::SelfIntensity, V::Green>,
      &StretchKernel<Depth, Origin::SelfIntensity, V::Blue>,
      &StretchKernel<Depth, Origin::SelfIntensity, V::Alpha>,
      &StretchKernel<Depth, Origin::SelfIntensity, V::LumaNoAlpha>};
  constexpr StretchKernelFn<Depth> kLayer[] = {
      &StretchKernel<Depth, Origin::LayerIntensity, V::Luma>,
      &StretchKernel<Depth, Origin::LayerIntensity, V::Red>,
      &StretchKernel<Depth, Origin::LayerIntensity, V::Green>,
      &StretchKernel<Depth, Origin::LayerIntensity, V::Blue>,
      &StretchKernel<Depth, Origin::LayerIntensity, V::Alpha>,
      &StretchKernel<Depth, Origin::LayerIntensity, V::LumaNoAlpha>};
  const auto v = static_cast<int32_t>(variant);
  if (v < 0 || v > 5) return nullptr;
  if (origin == Origin::SelfIntensity) return kSelf[v];
  if (origin == Origin::LayerIntensity) return kLayer[v];
  return nullptr;
}

// Instantiates the twelve kernels of one depth and their selector.
#define MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, VARIANT)                               \
  template void StretchKernel<DEPTH, ORIGIN, VARIANT>(                                           \
      ChannelType<DEPTH>*, int32_t, const ChannelType<DEPTH>*, int32_t, int32_t, int32_t,        \
      StretchRenderRecord, float, const ChannelType<DEPTH>*, int32_t, int32_t, int32_t, int32_t, \
      int32_t);
#define MORVANE_INSTANTIATE_STRETCH_ORIGIN(DEPTH, ORIGIN)                  \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::Luma)  \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::Red)   \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::Green) \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::Blue)  \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::Alpha) \
  MORVANE_INSTANTIATE_STRETCH_KERNEL(DEPTH, ORIGIN, ChannelVariant::LumaNoAlpha)
#define MORVANE_INSTANTIATE_STRETCH_KERNELS(DEPTH)                           \
  MORVANE_INSTANTIATE_STRETCH_ORIGIN(DEPTH, IntensityOrigin::SelfIntensity)  \
  MORVANE_INSTANTIATE_STRETCH_ORIGIN(DEPTH, IntensityOrigin::LayerIntensity) \
  template StretchKernelFn<DEPTH> SelectStretchKernel<DEPTH>(IntensityOrigin, ChannelVariant);

}  // namespace morvane
