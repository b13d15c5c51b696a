// Frames and settings shared by the kernel benchmark and the profiling driver.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <random>
#include <tuple>
#include <vector>

#include "params/ControlTable.h"
#include "render/StretchRenderRecord.h"
#include "stretch/PixelTraits.h"

namespace morvane::bench {

constexpr double WhiteOf(PixelDepth depth) {
  return depth == PixelDepth::Depth8 ? 255.0 : depth == PixelDepth::Depth16 ? 32768.0 : 1.0;
}

// A frame owning its pixels, seen by the dispatcher as a host image.
template <PixelDepth Depth>
struct Frame {
  using Channel = ChannelType<Depth>;
  Frame(int32_t w, int32_t h) : width(w), height(h), pixels(size_t(w) * size_t(h) * 4) {}

  PF_EffectWorld World() {
    PF_EffectWorld world{};
    world.data = reinterpret_cast<PF_PixelPtr>(pixels.data());
    world.rowbytes = width * 4 * static_cast<int32_t>(sizeof(Channel));
    world.width = width;
    world.height = height;
    return world;
  }

  int32_t width;
  int32_t height;
  std::vector<Channel> pixels;
};

// What a frame shows: footage-like content, or uniform random channels (the worst case for
// any data-dependent branch).
enum class Content : int32_t { Footage = 0, Noise = 1 };

template <PixelDepth Depth>
ChannelType<Depth> StoreUnit(double unit) {
  unit = std::clamp(unit, 0.0, 1.0);
  if constexpr (Depth == PixelDepth::Depth32f) {
    return static_cast<float>(unit);
  } else {
    return static_cast<ChannelType<Depth>>(unit * WhiteOf(Depth) + 0.5);
  }
}

// Smooth gradients, a few hard-edged shapes, a soft alpha falloff and mild noise.
template <PixelDepth Depth>
std::unique_ptr<Frame<Depth>> MakeFootage(int32_t w, int32_t h, uint32_t seed) {
  auto frame = std::make_unique<Frame<Depth>>(w, h);
  std::mt19937 rng(seed);
  std::normal_distribution<double> noise(0.0, 0.015);
  for (int32_t y = 0; y < h; ++y) {
    const double v = double(y) / h;
    for (int32_t x = 0; x < w; ++x) {
      const double u = double(x) / w;
      double rgb[3] = {0.15 + 0.6 * u, 0.2 + 0.5 * v, 0.55 - 0.35 * u * v};
      // A bright disc and a dark bar with hard edges.
      const double dx = u - 0.35;
      const double dy = v - 0.45;
      if (dx * dx + dy * dy < 0.04) rgb[0] = 0.95, rgb[1] = 0.85, rgb[2] = 0.3;
      if (u > 0.62 && u < 0.7) rgb[0] = rgb[1] = rgb[2] = 0.05;
      if (std::fmod(u * 9.0 + v * 3.0, 1.0) < 0.04) rgb[2] = 0.9;
      const double alpha = std::clamp(2.5 - 3.0 * std::hypot(u - 0.5, v - 0.5), 0.0, 1.0);
      auto* p = &frame->pixels[(size_t(y) * w + x) * 4];
      p[0] = StoreUnit<Depth>(alpha);
      for (int c = 0; c < 3; ++c)
        p[1 + c] = StoreUnit<Depth>(rgb[c] + noise(rng));
    }
  }
  return frame;
}

// Every channel, alpha included, uniformly random over 0 ... white.
template <PixelDepth Depth>
std::unique_ptr<Frame<Depth>> MakeNoise(int32_t w, int32_t h, uint32_t seed) {
  auto frame = std::make_unique<Frame<Depth>>(w, h);
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (auto& channel : frame->pixels)
    channel = StoreUnit<Depth>(unit(rng));
  return frame;
}

// Frames are built once per size, content and seed and kept for the whole run.
template <PixelDepth Depth>
Frame<Depth>& CachedFrame(int32_t w, int32_t h, Content content, uint32_t seed) {
  static std::map<std::tuple<int32_t, int32_t, Content, uint32_t>, std::unique_ptr<Frame<Depth>>>
      cache;
  auto& slot = cache[{w, h, content, seed}];
  if (!slot) {
    slot =
        content == Content::Noise ? MakeNoise<Depth>(w, h, seed) : MakeFootage<Depth>(w, h, seed);
  }
  return *slot;
}

inline StretchRenderRecord DefaultSettings(ChannelMode mode) {
  StretchRenderRecord r = DefaultRecord();
  r.channelMode = static_cast<int32_t>(mode);
  return r;
}

// The control sets the benchmark cases render.
enum class Settings : int32_t {
  Default = 0,
  Heavy = 1,     // "Morvane" 16, smoothness 8, Sine Wave shading at 50 % on RGB, Mirror, Up,
                 // and an Intensity Source layer of another size
  Down = 2,      // the defaults with Direction Down: lines are columns
  Squeezed = 3,  // the defaults with Pixel Size 0.4: most output pixels take several steps
};

inline const char* SettingsName(Settings settings) {
  constexpr const char* kNames[] = {"default", "heavy", "Direction Down", "Pixel Size 0.4"};
  return kNames[static_cast<int32_t>(settings)];
}

inline StretchRenderRecord SettingsRecord(Settings settings, ChannelMode mode,
                                          PF_EffectWorld* layer) {
  StretchRenderRecord r = DefaultSettings(mode);
  switch (settings) {
    case Settings::Heavy:
      r.stretchAmount = 16;
      r.curveSmoothness = 8;
      r.shadingMode = 1;
      r.shadingOpacity = 50;
      r.shadingChannels = 1;
      r.edgeMode = 1;
      r.direction = 3;
      r.intensityLayer = layer;
      break;
    case Settings::Down:
      r.direction = 2;
      break;
    case Settings::Squeezed:
      r.pixelSize = 0.4;
      break;
    case Settings::Default:
      break;
  }
  return r;
}

// CPU time of this thread: the machine may be shared, so throughput is measured in the
// thread's own time rather than wall-clock time.
inline double ThreadSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

}  // namespace morvane::bench
