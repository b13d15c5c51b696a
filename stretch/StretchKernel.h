// The StretchKernel family: one routine per pixel depth, intensity origin and channel variant.
#pragma once

#include <cstdint>

#include "render/StretchRenderRecord.h"
#include "stretch/KernelVariant.h"
#include "stretch/PixelTraits.h"

namespace morvane {

// Signature shared by the twelve kernels of one depth. Strides are in channel elements; `record`
// is the kernel's own copy; the last six values are zero (null pixels) for SelfIntensity.
template <PixelDepth Depth>
using StretchKernelFn = void (*)(ChannelType<Depth>* dst, int32_t dstStride,
                                 const ChannelType<Depth>* src, int32_t srcStride, int32_t width,
                                 int32_t height, StretchRenderRecord record, float scale,
                                 const ChannelType<Depth>* layerPixels, int32_t layerWidth,
                                 int32_t layerHeight, int32_t layerStride, int32_t originX,
                                 int32_t originY);

// Renders the whole output image in place: writes only the variant's channels of `dst`, reads
// `src` (and the layer) over width x height. A LayerIntensity kernel given no layer pixels, or a
// layer with no width or height, reads the intensity from the image like SelfIntensity.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
void StretchKernel(ChannelType<Depth>* dst, int32_t dstStride, const ChannelType<Depth>* src,
                   int32_t srcStride, int32_t width, int32_t height, StretchRenderRecord record,
                   float scale, const ChannelType<Depth>* layerPixels, int32_t layerWidth,
                   int32_t layerHeight, int32_t layerStride, int32_t originX, int32_t originY);

// The kernel for (origin, variant) at this depth; null for values outside the enumerations.
// All 36 specialisations are instantiated in the library.
template <PixelDepth Depth>
StretchKernelFn<Depth> SelectStretchKernel(IntensityOrigin origin, ChannelVariant variant);

}  // namespace morvane
