// Frame throughput of DispatchStretch, single-threaded, on images that look like footage.
// Each case reports output megapixels per second ("MPix/s") and its time relative to a plain
// copy of the same frame measured in the same run ("xCopy"), both in the thread's CPU time.
#include <benchmark/benchmark.h>

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

#include "render/DispatchStretch.h"
#include "stretch/PixelTraits.h"

namespace morvane {
namespace {

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

// Smooth gradients, a few hard-edged shapes, a soft alpha falloff and mild noise.
template <PixelDepth Depth>
std::unique_ptr<Frame<Depth>> MakeFootage(int32_t w, int32_t h, uint32_t seed) {
  auto frame = std::make_unique<Frame<Depth>>(w, h);
  std::mt19937 rng(seed);
  std::normal_distribution<double> noise(0.0, 0.015);
  const double white = WhiteOf(Depth);
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
      const auto store = [&](double unit) {
        unit = std::clamp(unit, 0.0, 1.0);
        if constexpr (Depth == PixelDepth::Depth32f) {
          return static_cast<float>(unit);
        } else {
          return static_cast<ChannelType<Depth>>(unit * white + 0.5);
        }
      };
      p[0] = store(alpha);
      for (int c = 0; c < 3; ++c)
        p[1 + c] = store(rgb[c] + noise(rng));
    }
  }
  return frame;
}

template <PixelDepth Depth>
Frame<Depth>& CachedFootage(int32_t w, int32_t h, uint32_t seed) {
  static std::map<std::tuple<int32_t, int32_t, uint32_t>, std::unique_ptr<Frame<Depth>>> cache;
  auto& slot = cache[{w, h, seed}];
  if (!slot) slot = MakeFootage<Depth>(w, h, seed);
  return *slot;
}

StretchRenderRecord DefaultSettings(ChannelMode mode) {
  StretchRenderRecord r{};
  r.channelMode = static_cast<int32_t>(mode);
  r.intensity = 100;
  r.stretchAmount = 1;
  r.pixelSize = 1;
  r.distributionRange = 2;
  r.imageShiftPhaseSync = 1;
  r.shadingIntervalSize = 10;
  return r;
}

// "Morvane" 16, smoothness 8, Sine Wave shading at 50 % on RGB, Mirror, Up, and an
// Intensity Source layer of another size.
StretchRenderRecord HeavySettings(ChannelMode mode, PF_EffectWorld* layer) {
  StretchRenderRecord r = DefaultSettings(mode);
  r.stretchAmount = 16;
  r.curveSmoothness = 8;
  r.shadingMode = 1;
  r.shadingOpacity = 50;
  r.shadingChannels = 1;
  r.edgeMode = 1;
  r.direction = 3;
  r.intensityLayer = layer;
  return r;
}

// CPU time of this thread: the machine may be shared, so throughput is measured in the
// thread's own time rather than wall-clock time.
double ThreadSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Seconds for one plain row-by-row copy of the frame (best of several).
template <PixelDepth Depth>
double CopySeconds(Frame<Depth>& from, Frame<Depth>& to) {
  double best = 1e30;
  for (int i = 0; i < 5; ++i) {
    const double start = ThreadSeconds();
    const size_t row = size_t(from.width) * 4;
    for (int32_t y = 0; y < from.height; ++y) {
      std::memcpy(&to.pixels[y * row], &from.pixels[y * row], row * sizeof(from.pixels[0]));
    }
    benchmark::DoNotOptimize(to.pixels.data());
    benchmark::ClobberMemory();
    best = std::min(best, ThreadSeconds() - start);
  }
  return best;
}

template <PixelDepth Depth>
void BM_DispatchStretch(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const auto height = static_cast<int32_t>(state.range(1));
  const auto mode = static_cast<ChannelMode>(state.range(2));
  const bool heavy = state.range(3) != 0;

  Frame<Depth>& input = CachedFootage<Depth>(width, height, 1);
  Frame<Depth> output(width, height);
  Frame<Depth>& layerFrame = CachedFootage<Depth>(width * 2 / 3, height * 2 / 3, 2);
  PF_EffectWorld in = input.World();
  PF_EffectWorld out = output.World();
  PF_EffectWorld layer = layerFrame.World();
  const StretchRenderRecord record = heavy ? HeavySettings(mode, &layer) : DefaultSettings(mode);

  const double copySeconds = CopySeconds(input, output);
  const double start = ThreadSeconds();
  for (auto _ : state) {
    DispatchStretch<Depth>(in, out, record, 1.0f);
    benchmark::DoNotOptimize(output.pixels.data());
    benchmark::ClobberMemory();
  }
  const double seconds = ThreadSeconds() - start;
  const double frames = double(state.iterations());
  state.counters["MPix/s"] = double(width) * double(height) * 1e-6 * frames / seconds;
  state.counters["xCopy"] = seconds / frames / copySeconds;
}

void Cases(benchmark::internal::Benchmark* b) {
  b->ArgNames({"w", "h", "mode", "heavy"});
  for (const auto& [w, h] : {std::pair{1920, 1080}, std::pair{3840, 2160}}) {
    for (ChannelMode mode : {ChannelMode::Luma, ChannelMode::Rgba}) {
      for (int heavy : {0, 1})
        b->Args({w, h, static_cast<int64_t>(mode), heavy});
    }
  }
  b->Unit(benchmark::kMillisecond)->MinTime(0.5);
}

BENCHMARK(BM_DispatchStretch<PixelDepth::Depth8>)->Apply(Cases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth16>)->Apply(Cases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth32f>)->Apply(Cases);

}  // namespace
}  // namespace morvane

BENCHMARK_MAIN();
