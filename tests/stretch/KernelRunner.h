// Calls one StretchKernel on test images.
#pragma once

#include "stretch/StretchKernel.h"
#include "tests/stretch/TestImages.h"

namespace morvane::testing_support {

struct LayerArgs {
  int32_t originX = 0;
  int32_t originY = 0;
};

// Runs the kernel of (Depth, variant) reading `src` (and `layer` when given, as LayerIntensity)
// and writing into a copy of `dst`, which it returns.
template <PixelDepth Depth>
Image<Depth> RunKernel(ChannelVariant variant, const StretchRenderRecord& record,
                       const Image<Depth>& src, Image<Depth> dst,
                       const Image<Depth>* layer = nullptr, LayerArgs at = {},
                       float scale = 1.0f) {
  const auto kernel = SelectStretchKernel<Depth>(
      layer ? IntensityOrigin::LayerIntensity : IntensityOrigin::SelfIntensity, variant);
  kernel(dst.pixels(), dst.stride, src.pixels(), src.stride, src.width, src.height, record, scale,
         layer ? layer->pixels() : nullptr, layer ? layer->width : 0, layer ? layer->height : 0,
         layer ? layer->stride : 0, layer ? at.originX : 0, layer ? at.originY : 0);
  return dst;
}

template <PixelDepth Depth>
Image<Depth> RunKernel(ChannelVariant variant, const StretchRenderRecord& record,
                       const Image<Depth>& src) {
  return RunKernel<Depth>(variant, record, src, src);
}

}  // namespace morvane::testing_support
