#include "render/DispatchStretch.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>

#include "stretch/StretchKernel.h"

namespace morvane {
namespace {

template <PixelDepth Depth>
struct DepthLayout;
template <>
struct DepthLayout<PixelDepth::Depth8> {
  static constexpr int kStrideShift = 0;
};
template <>
struct DepthLayout<PixelDepth::Depth16> {
  static constexpr int kStrideShift = 1;
};
template <>
struct DepthLayout<PixelDepth::Depth32f> {
  static constexpr int kStrideShift = 2;
};

// An image seen as channel elements of one depth.
template <PixelDepth Depth>
struct ImageView {
  using Channel = ChannelType<Depth>;

  explicit ImageView(const PF_EffectWorld& world)
      : data(reinterpret_cast<Channel*>(reinterpret_cast<char*>(world.data))),
        stride(world.rowbytes >> DepthLayout<Depth>::kStrideShift),
        width(world.width),
        height(world.height) {}

  Channel* Row(int32_t row) const { return data + std::ptrdiff_t{row} * stride; }

  Channel* data;
  int32_t stride;  // channel elements
  int32_t width;
  int32_t height;
};

// Copies the rows and columns present in both images: all four channels, or alpha only.
template <PixelDepth Depth>
void CopyImage(const ImageView<Depth>& from, const ImageView<Depth>& to, bool alphaOnly) {
  const int32_t rows = std::min(from.height, to.height);
  const int32_t columns = std::min(from.width, to.width);
  if (rows <= 0 || columns <= 0) return;
  for (int32_t row = 0; row < rows; ++row) {
    const auto* in = from.Row(row);
    auto* out = to.Row(row);
    if (alphaOnly) {
      for (int32_t x = 0; x < columns; ++x)
        out[4 * x] = in[4 * x];
    } else if (in != out) {
      std::memcpy(out, in, std::size_t(columns) * 4 * sizeof(*in));
    }
  }
}

}  // namespace

template <PixelDepth Depth>
void DispatchStretch(const PF_EffectWorld& input, PF_EffectWorld& output,
                     StretchRenderRecord record, float scale) {
  if (input.data == nullptr || output.data == nullptr) return;
  const ImageView<Depth> in(input);
  const ImageView<Depth> out(output);
  const auto mode = static_cast<ChannelMode>(record.channelMode);

  const bool wholeCopy = mode == ChannelMode::Red || mode == ChannelMode::Green ||
                         mode == ChannelMode::Blue || mode == ChannelMode::Alpha;
  if (wholeCopy || record.intensity == 0.0) CopyImage(in, out, false);
  if (record.intensity == 0.0) return;
  if (mode == ChannelMode::LumaNoAlpha || mode == ChannelMode::RgbNoAlpha) {
    CopyImage(in, out, true);
  }

  // A layer with no pixels counts as no layer.
  const PF_EffectWorld* layer = record.intensityLayer;
  const bool useLayer =
      layer != nullptr && layer->data != nullptr && layer->width > 0 && layer->height > 0;
  const IntensityOrigin origin =
      useLayer ? IntensityOrigin::LayerIntensity : IntensityOrigin::SelfIntensity;
  const ChannelType<Depth>* layerPixels = nullptr;
  int32_t layerWidth = 0;
  int32_t layerHeight = 0;
  int32_t layerStride = 0;
  int32_t originX = 0;
  int32_t originY = 0;
  if (useLayer) {
    const ImageView<Depth> view(*layer);
    layerPixels = view.data;
    layerWidth = view.width;
    layerHeight = view.height;
    layerStride = view.stride;
    originX = output.origin_x;
    originY = output.origin_y;
  }

  // The kernels read the input over the area they write. The render commands give input and
  // output the same size; should they ever differ, only the rows and columns present in both
  // images are rendered, so nothing is read past the input's edges.
  const int32_t width = std::min(in.width, out.width);
  const int32_t height = std::min(in.height, out.height);

  // The kernel takes the record by value: every call gets a fresh copy of this frame's values.
  const auto run = [&](ChannelVariant variant) {
    SelectStretchKernel<Depth>(origin, variant)(out.data, out.stride, in.data, in.stride, width,
                                                height, record, scale, layerPixels, layerWidth,
                                                layerHeight, layerStride, originX, originY);
  };

  using V = ChannelVariant;
  switch (mode) {
    case ChannelMode::Luma:
      run(V::Luma);
      break;
    case ChannelMode::Rgba:
      run(V::Alpha);
      run(V::Red);
      run(V::Green);
      run(V::Blue);
      break;
    case ChannelMode::Red:
      run(V::Red);
      break;
    case ChannelMode::Green:
      run(V::Green);
      break;
    case ChannelMode::Blue:
      run(V::Blue);
      break;
    case ChannelMode::Alpha:
      run(V::Alpha);
      break;
    case ChannelMode::LumaNoAlpha:
      run(V::LumaNoAlpha);
      break;
    case ChannelMode::RgbNoAlpha:
      run(V::Red);
      run(V::Green);
      run(V::Blue);
      break;
  }
}

template void DispatchStretch<PixelDepth::Depth8>(const PF_EffectWorld&, PF_EffectWorld&,
                                                  StretchRenderRecord, float);
template void DispatchStretch<PixelDepth::Depth16>(const PF_EffectWorld&, PF_EffectWorld&,
                                                   StretchRenderRecord, float);
template void DispatchStretch<PixelDepth::Depth32f>(const PF_EffectWorld&, PF_EffectWorld&,
                                                    StretchRenderRecord, float);

void DispatchStretchForDepth(PixelDepth depth, const PF_EffectWorld& input, PF_EffectWorld& output,
                             const StretchRenderRecord& record, float scale) {
  switch (depth) {
    case PixelDepth::Depth8:
      DispatchStretch<PixelDepth::Depth8>(input, output, record, scale);
      return;
    case PixelDepth::Depth16:
      DispatchStretch<PixelDepth::Depth16>(input, output, record, scale);
      return;
    case PixelDepth::Depth32f:
      DispatchStretch<PixelDepth::Depth32f>(input, output, record, scale);
      return;
  }
  throw std::logic_error("DispatchStretchForDepth: unknown pixel depth");
}

}  // namespace morvane
