// Images, records and a kernel runner for kernel and dispatcher tests.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "params/ControlTable.h"
#include "render/StretchRenderRecord.h"
#include "stretch/StretchKernel.h"
#include "tests/support/RecordText.h"

namespace morvane::testing_support {

// A four-channel image with a row stride of 4 * width + padding elements; padding holds a
// sentinel so that writes outside the image show.
template <PixelDepth Depth>
struct Image {
  using Channel = ChannelType<Depth>;
  static constexpr Channel kSentinel = static_cast<Channel>(7);

  Image(int32_t w, int32_t h, int32_t padding = 0)
      : width(w), height(h), stride(4 * w + padding), data(size_t(stride) * size_t(h) + 1, 0) {
    for (int32_t y = 0; y < h; ++y)
      for (int32_t e = 4 * w; e < stride; ++e)
        data[size_t(y) * stride + e] = kSentinel;
  }
  Channel& at(int32_t x, int32_t y, int c) { return data[size_t(y) * stride + 4 * x + c]; }
  Channel at(int32_t x, int32_t y, int c) const { return data[size_t(y) * stride + 4 * x + c]; }
  Channel* pixels() { return data.data(); }
  const Channel* pixels() const { return data.data(); }

  int32_t width, height, stride;
  std::vector<Channel> data;
};

// The image as the host's world record, origin at (0, 0).
template <PixelDepth Depth>
PF_EffectWorld World(Image<Depth>& image) {
  PF_EffectWorld w{};
  w.data = reinterpret_cast<PF_PixelPtr>(image.pixels());
  w.rowbytes = image.stride * int32_t(sizeof(ChannelType<Depth>));
  w.width = image.width;
  w.height = image.height;
  return w;
}

// Same channel values, bit for bit (padding is not compared).
template <PixelDepth Depth>
bool SamePixels(const Image<Depth>& a, const Image<Depth>& b) {
  if (a.width != b.width || a.height != b.height) return false;
  for (int32_t y = 0; y < a.height; ++y) {
    if (std::memcmp(&a.data[size_t(y) * a.stride], &b.data[size_t(y) * b.stride],
                    sizeof(ChannelType<Depth>) * 4 * size_t(a.width)) != 0) {
      return false;
    }
  }
  return true;
}

// Random pixels: alpha often opaque, sometimes zero, otherwise random (every branch of the
// intensity weighting); float colour slightly beyond 0 ... 1.
template <PixelDepth Depth>
Image<Depth> RandomImage(int32_t w, int32_t h, uint32_t seed) {
  Image<Depth> img(w, h);
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double white = Depth == PixelDepth::Depth8 ? 255 : Depth == PixelDepth::Depth16 ? 32768 : 1;
  const auto channel = [&](double v) {
    return Depth == PixelDepth::Depth32f ? ChannelType<Depth>(v * 1.4 - 0.2)
                                         : ChannelType<Depth>(v * white + 0.5);
  };
  for (int32_t y = 0; y < h; ++y)
    for (int32_t x = 0; x < w; ++x) {
      const double a = unit(rng);
      img.at(x, y, 0) = a < 0.5 ? ChannelType<Depth>(white)
                                : (a < 0.6 ? ChannelType<Depth>(0) : ChannelType<Depth>(a * white));
      for (int c = 1; c < 4; ++c)
        img.at(x, y, c) = channel(unit(rng));
    }
  return img;
}

// Every stretch control drawn at random within the controls' ranges.
inline StretchRenderRecord RandomRecord(uint32_t seed) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  return test::RecordFrom([&](const Control& control) -> double {
    switch (control.kind) {
      case ControlKind::Popup:
        return static_cast<double>(rng() % static_cast<uint32_t>(PopupItemCount(control)));
      case ControlKind::Angle:
        return std::trunc((unit(rng) * 4.0 - 2.0) * 23592960.0);
      case ControlKind::Checkbox:
        return static_cast<double>(rng() % 2);
      default: {  // half at the default, which keeps the squeezed and plain lines common
        const SliderRange& s = control.slider;
        return unit(rng) < 0.5 ? DefaultValue(control)
                               : s.minimum + unit(rng) * (s.maximum - s.minimum);
      }
    }
  });
}

// Runs the kernel of (Depth, variant) on `src` (LayerIntensity when `layer` is given) over all
// its lines, writing into a copy of `dst`, which it returns.
template <PixelDepth Depth>
Image<Depth> RunKernel(ChannelVariant variant, const StretchRenderRecord& record,
                       const Image<Depth>& src, Image<Depth> dst,
                       const Image<Depth>* layer = nullptr, int32_t originX = 0,
                       int32_t originY = 0) {
  PreparedStretchKernel<Depth> prepared;
  PrepareStretchKernel<Depth>(
      prepared, layer ? IntensityOrigin::LayerIntensity : IntensityOrigin::SelfIntensity, variant,
      {dst.pixels(), dst.stride, src.pixels(), src.stride, src.width, src.height, record, 1.0f,
       layer ? layer->pixels() : nullptr, layer ? layer->width : 0, layer ? layer->height : 0,
       layer ? layer->stride : 0, originX, originY});
  prepared.RenderLines(0, prepared.lineCount());
  return dst;
}
template <PixelDepth Depth>
Image<Depth> RunKernel(ChannelVariant variant, const StretchRenderRecord& r,
                       const Image<Depth>& src) {
  return RunKernel<Depth>(variant, r, src, src);
}

}  // namespace morvane::testing_support
