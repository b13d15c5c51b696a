// Frame throughput of DispatchStretch, single-threaded, on images that look like footage and on
// one random-noise worst case, with the default controls, a heavy set, Direction Down and Pixel
// Size 0.4 (a case's "heavy" or "settings" argument is a Settings value). Each case reports, in
// the thread's CPU time:
//   MPix/s   output megapixels per second;
//   xCopy    its time relative to a plain copy of the same frame (the memory floor);
//   vsRemap  its throughput relative to a bilinear cv::remap of the same frame with a horizontal
//            displacement map on one thread, measured in the same case (only when the benchmark
//            was built with OpenCV); RemapMPix/s is the remap's own throughput.
// The band cases render the 4K frame through DispatchStretchInBands on 1 and 2 simulated host
// threads, in wall-clock time, with the speed-up over the single call ("xOneThread").
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include "bench/BenchFrames.h"
#include "render/DispatchStretch.h"

#if MORVANE_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace morvane::bench {
namespace {

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

#if MORVANE_BENCH_OPENCV
template <PixelDepth Depth>
constexpr int kCvType = Depth == PixelDepth::Depth8    ? CV_8UC4
                        : Depth == PixelDepth::Depth16 ? CV_16UC4
                                                       : CV_32FC4;

// Seconds per frame of cv::remap on the frame: bilinear, four channels, each pixel displaced
// along its row by up to 12 pixels according to its luma, on the calling thread only.
template <PixelDepth Depth>
double RemapSeconds(Frame<Depth>& from, Frame<Depth>& to) {
  cv::setNumThreads(0);
  const cv::Mat src(from.height, from.width, kCvType<Depth>, from.pixels.data());
  cv::Mat dst(to.height, to.width, kCvType<Depth>, to.pixels.data());
  cv::Mat mapX(from.height, from.width, CV_32FC1);
  cv::Mat mapY(from.height, from.width, CV_32FC1);
  const double white = WhiteOf(Depth);
  for (int32_t y = 0; y < from.height; ++y) {
    for (int32_t x = 0; x < from.width; ++x) {
      const auto* p = &from.pixels[(size_t(y) * from.width + x) * 4];
      const double luma = (double(p[1]) + double(p[2]) + double(p[3])) / (3.0 * white);
      mapX.at<float>(y, x) = static_cast<float>(x - 12.0 * luma);
      mapY.at<float>(y, x) = static_cast<float>(y);
    }
  }
  int frames = 0;
  const double start = ThreadSeconds();
  double elapsed = 0.0;
  while (elapsed < 0.3 || frames < 3) {
    cv::remap(src, dst, mapX, mapY, cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    benchmark::DoNotOptimize(to.pixels.data());
    benchmark::ClobberMemory();
    ++frames;
    elapsed = ThreadSeconds() - start;
  }
  return elapsed / frames;
}
#endif

template <PixelDepth Depth>
void BM_DispatchStretch(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const auto height = static_cast<int32_t>(state.range(1));
  const auto mode = static_cast<ChannelMode>(state.range(2));
  const auto settings = static_cast<Settings>(state.range(3));
  const auto content = static_cast<Content>(state.range(4));

  Frame<Depth>& input = CachedFrame<Depth>(width, height, content, 1);
  Frame<Depth> output(width, height);
  Frame<Depth>& layerFrame = CachedFrame<Depth>(width * 2 / 3, height * 2 / 3, content, 2);
  PF_EffectWorld in = input.World();
  PF_EffectWorld out = output.World();
  PF_EffectWorld layer = layerFrame.World();
  const StretchRenderRecord record = SettingsRecord(settings, mode, &layer);
  state.SetLabel(SettingsName(settings));

  const double copySeconds = CopySeconds(input, output);
#if MORVANE_BENCH_OPENCV
  const double remapSeconds = RemapSeconds(input, output);
#endif
  const double start = ThreadSeconds();
  for (auto _ : state) {
    DispatchStretch<Depth>(in, out, record, 1.0f);
    benchmark::DoNotOptimize(output.pixels.data());
    benchmark::ClobberMemory();
  }
  const double seconds = ThreadSeconds() - start;
  const double frames = double(state.iterations());
  const double megapixels = double(width) * double(height) * 1e-6;
  state.counters["MPix/s"] = megapixels * frames / seconds;
  state.counters["xCopy"] = seconds / frames / copySeconds;
#if MORVANE_BENCH_OPENCV
  state.counters["RemapMPix/s"] = megapixels / remapSeconds;
  state.counters["vsRemap"] = remapSeconds / (seconds / frames);
#endif
}

// The host's iterate_generic as a host would serve it: iteration i on worker i mod n, worker 0
// being the calling thread (threads started for the call). Host callbacks carry no context, so
// the worker count is a file-level setting of this benchmark.
int gBandWorkers = 1;

PF_Err IterateOnWorkers(A_long iterations, void* refcon, HostBandRunner::BandFn fn) {
  const int workers = gBandWorkers;
  const auto work = [&](int t) {
    for (A_long i = t; i < iterations; i += workers)
      fn(refcon, t, i, iterations);
  };
  std::vector<std::thread> threads;
  for (int t = 1; t < workers; ++t)
    threads.emplace_back(work, t);
  work(0);
  for (auto& thread : threads)
    thread.join();
  return PF_Err_NONE;
}

// DispatchStretchInBands on `threads` host threads, in wall-clock time ("MPix/s"), and its
// speed-up over the single-call DispatchStretch measured in the same case ("xOneThread").
template <PixelDepth Depth>
void BM_DispatchStretchBands(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const auto height = static_cast<int32_t>(state.range(1));
  gBandWorkers = static_cast<int>(state.range(2));
  Frame<Depth>& input = CachedFrame<Depth>(width, height, Content::Footage, 1);
  Frame<Depth> output(width, height);
  PF_EffectWorld in = input.World();
  PF_EffectWorld out = output.World();
  const StretchRenderRecord record = DefaultSettings(ChannelMode::Luma);
  HostBandRunner host;
  host.iterateGeneric = &IterateOnWorkers;

  const auto wall = [] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  };
  double single = 1e30;
  for (int i = 0; i < 3; ++i) {
    const double start = wall();
    DispatchStretch<Depth>(in, out, record, 1.0f);
    single = std::min(single, wall() - start);
  }
  const double start = wall();
  for (auto _ : state) {
    DispatchStretchInBands<Depth>(in, out, record, 1.0f, host);
    benchmark::DoNotOptimize(output.pixels.data());
    benchmark::ClobberMemory();
  }
  const double seconds = (wall() - start) / double(state.iterations());
  state.counters["MPix/s"] = double(width) * double(height) * 1e-6 / seconds;
  state.counters["xOneThread"] = single / seconds;
}

void Cases(benchmark::internal::Benchmark* b) {
  b->ArgNames({"w", "h", "mode", "heavy", "noise"});
  const auto footage = static_cast<int64_t>(Content::Footage);
  const auto noise = static_cast<int64_t>(Content::Noise);
  for (const auto& [w, h] : {std::pair{1920, 1080}, std::pair{3840, 2160}}) {
    for (ChannelMode mode : {ChannelMode::Luma, ChannelMode::Rgba}) {
      for (int heavy : {0, 1})
        b->Args({w, h, static_cast<int64_t>(mode), heavy, footage});
    }
  }
  for (int heavy : {0, 1})
    b->Args({3840, 2160, static_cast<int64_t>(ChannelMode::Luma), heavy, noise});
  b->Unit(benchmark::kMillisecond)->MinTime(0.5);
}

// Columns, and steps shorter than a pixel, at 4K on footage.
void MoreCases(benchmark::internal::Benchmark* b) {
  b->ArgNames({"w", "h", "mode", "settings", "noise"});
  for (const Settings settings : {Settings::Down, Settings::Squeezed})
    b->Args({3840, 2160, static_cast<int64_t>(ChannelMode::Luma), static_cast<int64_t>(settings),
             static_cast<int64_t>(Content::Footage)});
  b->Unit(benchmark::kMillisecond)->MinTime(0.5);
}

BENCHMARK(BM_DispatchStretch<PixelDepth::Depth8>)->Apply(Cases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth16>)->Apply(Cases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth32f>)->Apply(Cases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth8>)->Apply(MoreCases);
BENCHMARK(BM_DispatchStretch<PixelDepth::Depth32f>)->Apply(MoreCases);

void BandCases(benchmark::internal::Benchmark* b) {
  b->ArgNames({"w", "h", "threads"});
  for (int threads : {1, 2})
    b->Args({3840, 2160, threads});
  b->Unit(benchmark::kMillisecond)->MinTime(0.5)->UseRealTime();
}
BENCHMARK(BM_DispatchStretchBands<PixelDepth::Depth8>)->Apply(BandCases);
BENCHMARK(BM_DispatchStretchBands<PixelDepth::Depth32f>)->Apply(BandCases);

}  // namespace
}  // namespace morvane::bench

BENCHMARK_MAIN();
