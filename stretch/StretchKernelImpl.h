// The kernel family behind every StretchKernel: the call set-up, the choice of line routine and
// the whole-image kernels. Included only by the files that instantiate the family.
#pragma once

#include <cstdint>

#include "stretch/PixelTraits.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernel.h"
#include "stretch/StretchLines.h"

namespace morvane {

template <PixelDepth Depth>
void PreparedStretchKernel<Depth>::RenderLines(int32_t first, int32_t last) const {
  if (lines_ != nullptr && first < last) lines_(call_, images_, first, last);
}

template <PixelDepth Depth>
void PrepareStretchKernel(PreparedStretchKernel<Depth>& prepared, IntensityOrigin origin,
                          ChannelVariant variant, const KernelArguments<Depth>& arguments) {
  auto [dst, dstStride, src, srcStride, width, height, record, scale, layerPixels, layerWidth,
        layerHeight, layerStride, originX, originY] = arguments;
  prepared.lines_ = nullptr;
  const auto v = static_cast<int32_t>(variant);
  if (v < 0 || v > 5) return;
  if (origin != IntensityOrigin::SelfIntensity && origin != IntensityOrigin::LayerIntensity) return;
  if (width <= 0 || height <= 0 || dst == nullptr || src == nullptr) return;
  // A layer kernel without layer pixels reads the intensity from the image.
  const bool useLayer = origin == IntensityOrigin::LayerIntensity && layerPixels != nullptr &&
                        layerWidth > 0 && layerHeight > 0;
  if (!useLayer) layerPixels = nullptr, layerWidth = layerHeight = layerStride = 0;

  PrepareStretchCall(prepared.call_, record, width, height, scale, useLayer, layerWidth,
                     layerHeight, originX, originY);
  prepared.images_ = {dst,    dstStride,   src,         srcStride,  width,
                      height, layerPixels, layerStride, layerWidth, layerHeight};

  prepared.variantIndex_ = v;
  prepared.useLayer_ = useLayer;
  prepared.lines_ = prepared.PickLines(*FastestLineRoutines<Depth>());
}

template <PixelDepth Depth>
bool PreparedStretchKernel<Depth>::UseInstructionSet(KernelInstructionSet instructionSet) {
  const LineRoutines<Depth>* routines = LineRoutinesFor<Depth>(instructionSet);
  if (lines_ == nullptr || routines == nullptr) return false;
  lines_ = PickLines(*routines);
  return true;
}

template <PixelDepth Depth>
LineRangeFn<Depth> PreparedStretchKernel<Depth>::PickLines(
    const LineRoutines<Depth>& routines) const {
  return (useLayer_ ? routines.layer : routines.self)[variantIndex_](call_);
}

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
void StretchKernel(ChannelType<Depth>* dst, int32_t dstStride, const ChannelType<Depth>* src,
                   int32_t srcStride, int32_t width, int32_t height, StretchRenderRecord record,
                   float scale, const ChannelType<Depth>* layerPixels, int32_t layerWidth,
                   int32_t layerHeight, int32_t layerStride, int32_t originX, int32_t originY) {
  // The prepared call holds the tables (about 10 KB) in this call's frame: no heap allocation.
  PreparedStretchKernel<Depth> prepared;
  PrepareStretchKernel<Depth>(
      prepared, Origin, Variant,
      {dst, dstStride, src, srcStride, width, height, record, scale, layerPixels, layerWidth,
       layerHeight, layerStride, originX, originY});
  prepared.RenderLines(0, prepared.lineCount());
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
#define MORVANE_INSTANTIATE_STRETCH_KERNELS(DEPTH)                                             \
  MORVANE_INSTANTIATE_STRETCH_ORIGIN(DEPTH, IntensityOrigin::SelfIntensity)                    \
  MORVANE_INSTANTIATE_STRETCH_ORIGIN(DEPTH, IntensityOrigin::LayerIntensity)                   \
  template StretchKernelFn<DEPTH> SelectStretchKernel<DEPTH>(IntensityOrigin, ChannelVariant); \
  template class PreparedStretchKernel<DEPTH>;                                                 \
  MORVANE_DEFINE_LINE_ROUTINES(BaselineLineRoutines, DEPTH)                                    \
  template void PrepareStretchKernel<DEPTH>(PreparedStretchKernel<DEPTH>&, IntensityOrigin,    \
                                            ChannelVariant, const KernelArguments<DEPTH>&);

}  // namespace morvane
