// The prepared kernel: the call set-up and the choice of line routine. Included only by the
// files that instantiate it.
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

// Instantiates the prepared kernel of one depth and its baseline line routines.
#define MORVANE_INSTANTIATE_STRETCH_KERNELS(DEPTH)                                          \
  template class PreparedStretchKernel<DEPTH>;                                              \
  MORVANE_DEFINE_LINE_ROUTINES(BaselineLineRoutines, DEPTH)                                 \
  template void PrepareStretchKernel<DEPTH>(PreparedStretchKernel<DEPTH>&, IntensityOrigin, \
                                            ChannelVariant, const KernelArguments<DEPTH>&);

}  // namespace morvane
