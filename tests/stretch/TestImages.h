// Images and records for kernel and dispatcher tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "render/StretchRenderRecord.h"
#include "stretch/KernelVariant.h"
#include "stretch/PixelTraits.h"

namespace morvane::testing_support {

template <PixelDepth Depth>
constexpr double kWhite = Depth == PixelDepth::Depth8    ? 255.0
                          : Depth == PixelDepth::Depth16 ? 32768.0
                                                         : 1.0;

// A four-channel image with a row stride of 4 * width + padding elements. Padding elements hold
// a sentinel so that writes outside the image can be detected.
template <PixelDepth Depth>
struct Image {
  using Channel = ChannelType<Depth>;
  static constexpr Channel kSentinel = static_cast<Channel>(7);

  Image(int32_t w, int32_t h, int32_t padding = 0)
      : width(w), height(h), stride(4 * w + padding),
        data(static_cast<size_t>(stride) * static_cast<size_t>(h > 0 ? h : 0) + 1, kSentinel) {
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < 4 * width; ++x) data[size_t(y) * stride + x] = 0;
    }
  }

  Channel& at(int32_t x, int32_t y, int c) { return data[size_t(y) * stride + 4 * x + c]; }
  Channel at(int32_t x, int32_t y, int c) const { return data[size_t(y) * stride + 4 * x + c]; }
  Channel* pixels() { return data.data(); }
  const Channel* pixels() const { return data.data(); }

  int32_t width;
  int32_t height;
  int32_t stride;
  std::vector<Channel> data;
};

// Same size and same channel values, compared bit for bit (padding is not compared).
template <PixelDepth Depth>
bool SamePixels(const Image<Depth>& a, const Image<Depth>& b) {
  if (a.width != b.width || a.height != b.height) return false;
  for (int32_t y = 0; y < a.height; ++y) {
    if (std::memcmp(&a.data[size_t(y) * a.stride], &b.data[size_t(y) * b.stride],
                    sizeof(typename Image<Depth>::Channel) * 4 * size_t(a.width)) != 0) {
      return false;
    }
  }
  return true;
}

template <PixelDepth Depth>
typename Image<Depth>::Channel ChannelFromUnit(double unit) {
  if constexpr (Depth == PixelDepth::Depth32f) {
    return static_cast<float>(unit);
  } else {
    return static_cast<typename Image<Depth>::Channel>(unit * kWhite<Depth> + 0.5);
  }
}

// Random pixels: colour anywhere in range (float slightly beyond it), alpha often opaque, sometimes
// zero, otherwise random, so every branch of the intensity weighting is exercised.
template <PixelDepth Depth>
Image<Depth> RandomImage(int32_t w, int32_t h, uint32_t seed, int32_t padding = 0) {
  Image<Depth> img(w, h, padding);
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < w; ++x) {
      const double a = unit(rng);
      img.at(x, y, 0) = ChannelFromUnit<Depth>(a < 0.5 ? 1.0 : (a < 0.6 ? 0.0 : unit(rng)));
      for (int c = 1; c < 4; ++c) {
        double v = unit(rng);
        if constexpr (Depth == PixelDepth::Depth32f) v = v * 1.4 - 0.2;
        img.at(x, y, c) = ChannelFromUnit<Depth>(v);
      }
    }
  }
  return img;
}

template <PixelDepth Depth>
Image<Depth> MirrorX(const Image<Depth>& in) {
  Image<Depth> out(in.width, in.height);
  for (int32_t y = 0; y < in.height; ++y)
    for (int32_t x = 0; x < in.width; ++x)
      for (int c = 0; c < 4; ++c) out.at(in.width - 1 - x, y, c) = in.at(x, y, c);
  return out;
}

template <PixelDepth Depth>
Image<Depth> MirrorY(const Image<Depth>& in) {
  Image<Depth> out(in.width, in.height);
  for (int32_t y = 0; y < in.height; ++y)
    for (int32_t x = 0; x < in.width; ++x)
      for (int c = 0; c < 4; ++c) out.at(x, in.height - 1 - y, c) = in.at(x, y, c);
  return out;
}

template <PixelDepth Depth>
Image<Depth> Transpose(const Image<Depth>& in) {
  Image<Depth> out(in.height, in.width);
  for (int32_t y = 0; y < in.height; ++y)
    for (int32_t x = 0; x < in.width; ++x)
      for (int c = 0; c < 4; ++c) out.at(y, x, c) = in.at(x, y, c);
  return out;
}

// The controls at their defaults: intensity 100, "Morvane" 1, "Pixel Size" 1, Right, Wrap,
// Linear Ramp Up, range 2, sync on, interval 10.
inline StretchRenderRecord DefaultRecord() {
  StretchRenderRecord r{};
  r.intensity = 100;
  r.stretchAmount = 1;
  r.pixelSize = 1;
  r.distributionRange = 2;
  r.imageShiftPhaseSync = 1;
  r.shadingIntervalSize = 10;
  return r;
}

// A record with every stretch control drawn at random within the controls' ranges.
inline StretchRenderRecord RandomRecord(uint32_t seed) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const auto pick = [&](int n) { return static_cast<int32_t>(rng() % uint32_t(n)); };
  const auto angle = [&] { return static_cast<int32_t>((unit(rng) * 4.0 - 2.0) * 23592960.0); };
  StretchRenderRecord r = DefaultRecord();
  r.intensity = pick(3) == 0 ? 100.0 : unit(rng) * 100.0;
  r.stretchAmount = unit(rng) * 6.0;
  r.pixelSize = 0.2 + unit(rng) * 2.0;
  r.startOffset = pick(3) == 0 ? unit(rng) * 50.0 : 0.0;
  r.curveShape = pick(6);
  r.curvePhase = angle();
  r.curveSmoothness = unit(rng) * 3.0;
  r.distributionMode = pick(3);
  r.distributionRange = unit(rng) * 2.0;
  r.imageShiftPhase = angle();
  r.imageShiftPhaseSync = pick(2);
  r.shadingMode = pick(6);
  r.shadingIntervalSize = 2 + pick(20);
  r.shadingIntervalPhase = angle();
  r.shadingOpacity = unit(rng) * 100.0;
  r.shadingChannels = pick(2);
  r.edgeMode = pick(4);
  r.transparencyFeather = unit(rng) * 100.0;
  return r;
}

}  // namespace morvane::testing_support
