// DispatchStretchInBands on a simulated host pool: bit-identical to DispatchStretch with any
// number of host threads or none, and stopped between bands when the host cancels. The
// dispatcher's choice of area and depth.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "render/DispatchStretch.h"
#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;

// The simulated host: iterate_generic hands iteration i to worker i mod workers, worker 0 being
// the calling thread; abort cancels from its `cancelAt`-th call on (never when 0). Host
// callbacks are plain function pointers, so their settings live here.
std::atomic<int> gWorkers{1};
std::atomic<int> gAbortCalls{0};
std::atomic<int> gCancelAt{0};
std::atomic<int> gOffThreadAborts{0};
thread_local bool tWorkerZero = false;

PF_Err PoolIterate(A_long iterations, void* refcon, HostBandRunner::BandFn fn) {
  const int workers = gWorkers;
  std::atomic<PF_Err> first{PF_Err_NONE};
  const auto work = [&](int t) {
    tWorkerZero = t == 0;
    for (A_long i = t; i < iterations; i += workers) {
      const PF_Err err = fn(refcon, t, i, iterations);
      PF_Err none = PF_Err_NONE;
      if (err != PF_Err_NONE) first.compare_exchange_strong(none, err);
    }
  };
  std::vector<std::thread> threads;
  for (int t = 1; t < workers; ++t)
    threads.emplace_back(work, t);
  work(0);
  for (auto& thread : threads)
    thread.join();
  return first;
}

PF_Err FailingIterate(A_long, void*, HostBandRunner::BandFn) {
  return PF_Err_OUT_OF_MEMORY;
}

PF_Err CountingAbort(PF_ProgPtr) {
  if (!tWorkerZero) ++gOffThreadAborts;
  const int call = ++gAbortCalls;
  return gCancelAt != 0 && call >= gCancelAt ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

HostBandRunner Runner(bool pool) {
  HostBandRunner host;
  host.iterateGeneric = pool ? &PoolIterate : nullptr;
  host.abort = &CountingAbort;
  return host;
}

template <typename T>
class DispatchBands : public ::testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  using Img = Image<kDepth>;

  void SetUp() override {
    gAbortCalls = 0;
    gCancelAt = 0;
    gOffThreadAborts = 0;
    tWorkerZero = true;
  }

  static Img Plain(const StretchRenderRecord& r, Img input, Img output) {
    PF_EffectWorld in = World(input);
    PF_EffectWorld out = World(output);
    DispatchStretch<kDepth>(in, out, r, 1.0f);
    return output;
  }
  static PF_Err Banded(const StretchRenderRecord& r, Img input, Img& output, bool pool) {
    PF_EffectWorld in = World(input);
    PF_EffectWorld out = World(output);
    return DispatchStretchInBands<kDepth>(in, out, r, 1.0f, Runner(pool));
  }
};

using Depths = ::testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                                std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                                std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(DispatchBands, Depths);

TYPED_TEST(DispatchBands, EveryModeMatchesTheSingleCallWithAnyWorkerCount) {
  using Img = typename TestFixture::Img;
  for (uint32_t seed = 0; seed < 48; ++seed) {
    // Lines of several bands in both orientations, a layer every other case.
    const Img input = RandomImage<TestFixture::kDepth>(40 + seed % 50, 70 + seed % 41, seed);
    const Img initial = RandomImage<TestFixture::kDepth>(input.width, input.height, seed + 1);
    Img layer = RandomImage<TestFixture::kDepth>(33, 57, seed + 2);
    PF_EffectWorld layerWorld = World(layer);
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = int32_t(seed % 8);
    r.direction = int32_t((seed / 8) % 4);
    if (seed % 2) r.intensityLayer = &layerWorld;
    const Img expected = TestFixture::Plain(r, input, initial);
    for (int workers : {0, 1, 2, 3}) {
      gWorkers = std::max(workers, 1);
      Img out = initial;
      ASSERT_EQ(TestFixture::Banded(r, input, out, workers > 0), PF_Err_NONE);
      ASSERT_TRUE(SamePixels(out, expected)) << "seed " << seed << ", workers " << workers;
    }
  }
  EXPECT_EQ(gOffThreadAborts, 0) << "only thread 0 may ask the host";
}

TYPED_TEST(DispatchBands, ZeroIntensityCopiesWithoutBands) {
  const auto input = RandomImage<TestFixture::kDepth>(9, 70, 4);
  auto out = RandomImage<TestFixture::kDepth>(9, 70, 5);
  StretchRenderRecord r = DefaultRecord();
  r.intensity = 0;
  EXPECT_EQ(TestFixture::Banded(r, input, out, true), PF_Err_NONE);
  EXPECT_TRUE(SamePixels(out, input));
  EXPECT_EQ(gAbortCalls, 0);
}

// Rows [32 * band, 32 * band + 32) of `a` and `b` are the same.
template <typename Img>
bool SameBand(const Img& a, const Img& b, int32_t band) {
  for (int32_t y = 32 * band; y < std::min(32 * band + 32, a.height); ++y)
    for (int32_t x = 0; x < a.width; ++x)
      for (int c = 0; c < 4; ++c)
        if (a.at(x, y, c) != b.at(x, y, c)) return false;
  return true;
}

TYPED_TEST(DispatchBands, CancelStopsBetweenBands) {
  // Twelve bands of rows; the host cancels at its fourth question: the one asked before the
  // render, then one before each of thread 0's bands.
  const auto input = RandomImage<TestFixture::kDepth>(24, 12 * 32, 8);
  const auto initial = RandomImage<TestFixture::kDepth>(24, 12 * 32, 9);
  StretchRenderRecord r = DefaultRecord();
  r.stretchAmount = 3;
  const auto full = TestFixture::Plain(r, input, initial);
  for (int workers : {0, 2}) {
    gWorkers = std::max(workers, 1);
    gAbortCalls = 0;
    gCancelAt = 4;
    auto out = initial;
    EXPECT_EQ(TestFixture::Banded(r, input, out, workers > 0), PF_Interrupt_CANCEL);
    EXPECT_EQ(gAbortCalls, 4) << "no question after the answer was cancel";
    // Thread 0 takes bands 0, w, 2w, ...: the first two are rendered, its later ones are not.
    const int32_t step = std::max(workers, 1);
    EXPECT_TRUE(SameBand(out, full, 0));
    EXPECT_TRUE(SameBand(out, full, step));
    for (int32_t band = 2 * step; band < 12; band += step)
      EXPECT_TRUE(SameBand(out, initial, band)) << "band " << band << ", workers " << workers;
  }
}

TYPED_TEST(DispatchBands, HostErrorsAreReturned) {
  auto input = RandomImage<TestFixture::kDepth>(8, 8, 1);
  auto out = input;
  PF_EffectWorld in = World(input);
  PF_EffectWorld o = World(out);
  HostBandRunner host;
  host.iterateGeneric = &FailingIterate;
  EXPECT_EQ(DispatchStretchInBands<TestFixture::kDepth>(in, o, DefaultRecord(), 1.0f, host),
            PF_Err_OUT_OF_MEMORY);
  // Without an abort callback every band is rendered.
  host.iterateGeneric = nullptr;
  EXPECT_EQ(DispatchStretchInBands<TestFixture::kDepth>(in, o, DefaultRecord(), 1.0f, host),
            PF_Err_NONE);
  EXPECT_TRUE(SamePixels(out, TestFixture::Plain(DefaultRecord(), input, input)));
}

TEST(Dispatch, CopiesOnlyTheOverlapOfDifferentSizes) {
  const auto in = RandomImage<PixelDepth::Depth16>(6, 3, 1);
  const auto before = RandomImage<PixelDepth::Depth16>(4, 5, 2);
  StretchRenderRecord r = DefaultRecord();
  r.intensity = 0;
  auto input = in;
  auto out = before;
  PF_EffectWorld inWorld = World(input);
  PF_EffectWorld outWorld = World(out);
  DispatchStretch<PixelDepth::Depth16>(inWorld, outWorld, r, 1.0f);
  for (int32_t y = 0; y < 5; ++y)
    for (int32_t x = 0; x < 4; ++x)
      for (int c = 0; c < 4; ++c)
        ASSERT_EQ(out.at(x, y, c), y < 3 ? in.at(x, y, c) : before.at(x, y, c));
}

TEST(Dispatch, ForDepthRoutesAndRejectsUnknownDepths) {
  auto in = RandomImage<PixelDepth::Depth16>(5, 4, 1);
  auto out = in;
  const StretchRenderRecord r = RandomRecord(3);
  PF_EffectWorld inWorld = World(in);
  PF_EffectWorld outWorld = World(out);
  DispatchStretchForDepth(PixelDepth::Depth16, inWorld, outWorld, r, 1.0f);
  EXPECT_TRUE(SamePixels(out, RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in)));
  EXPECT_THROW(DispatchStretchForDepth(PixelDepth(3), inWorld, outWorld, r, 1.0f),
               std::logic_error);
}

}  // namespace
}  // namespace morvane
