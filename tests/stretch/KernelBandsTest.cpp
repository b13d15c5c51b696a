// The line routines of every instruction-set build write the same bits. (Bands of a prepared
// kernel against the whole call: DispatchBandsTest.)
#include <gtest/gtest.h>

#include <optional>

#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;

template <typename T>
class KernelBands : public ::testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  using Img = Image<kDepth>;

  struct Case {
    Img image;
    Img initial;
    std::optional<Img> layer;
    int32_t originX = 0;
    int32_t originY = 0;
    StretchRenderRecord record;
    ChannelVariant variant;
  };

  // Random images, records and variants in every direction and edge mode; one-pixel lines,
  // layers of other sizes and layers holding the output at an origin.
  static Case Make(uint32_t seed) {
    constexpr std::pair<int32_t, int32_t> kSizes[] = {{1, 1},  {1, 9},  {9, 1},  {5, 3},
                                                      {16, 9}, {33, 4}, {7, 40}, {70, 6}};
    const auto [w, h] = kSizes[seed % std::size(kSizes)];
    Case c{RandomImage<kDepth>(w, h, seed),
           RandomImage<kDepth>(w, h, seed + 1000),
           std::nullopt,
           0,
           0,
           RandomRecord(seed),
           ChannelVariant((seed / 3) % 6)};
    c.record.direction = int32_t(seed % 4);
    c.record.edgeMode = int32_t((seed / 4) % 4);
    if (seed % 3 == 1)
      c.layer = RandomImage<kDepth>(1 + (seed * 7) % 23, 1 + (seed * 5) % 17, seed);
    if (seed % 3 == 2) {
      c.layer = RandomImage<kDepth>(w + 5, h + 3, seed);
      c.originX = int32_t(seed % 6);
      c.originY = int32_t(seed % 4);
    }
    return c;
  }

  static void Prepare(const Case& c, Img& out, PreparedStretchKernel<kDepth>& prepared) {
    const Img* layer = c.layer ? &*c.layer : nullptr;
    PrepareStretchKernel<kDepth>(
        prepared, layer ? IntensityOrigin::LayerIntensity : IntensityOrigin::SelfIntensity,
        c.variant,
        {out.pixels(), out.stride, c.image.pixels(), c.image.stride, c.image.width, c.image.height,
         c.record, 1.0f, layer ? layer->pixels() : nullptr, layer ? layer->width : 0,
         layer ? layer->height : 0, layer ? layer->stride : 0, c.originX, c.originY});
  }
};

using Depths = ::testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                                std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                                std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(KernelBands, Depths);

TYPED_TEST(KernelBands, EveryInstructionSetBuildWritesTheSameBits) {
#if defined(MORVANE_AVX2_KERNELS)
  const bool avx2Expected = __builtin_cpu_supports("avx2");
#else
  const bool avx2Expected = false;
#endif
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  ASSERT_EQ(LineRoutinesFor<kDepth>(KernelInstructionSet::Avx2) != nullptr, avx2Expected);
  if (!avx2Expected) GTEST_SKIP() << "no AVX2 build of the line routines here";
  for (uint32_t seed = 0; seed < 480; ++seed) {
    auto c = TestFixture::Make(seed);
    if (seed % 2 == 1) {
      // Longer lines, so that many steps share one chunk of each pass.
      c.image = RandomImage<kDepth>(97, 5, seed);
      c.initial = RandomImage<kDepth>(97, 5, seed + 1);
    }
    auto baseline = c.initial;
    auto avx2 = c.initial;
    PreparedStretchKernel<kDepth> prepared;
    TestFixture::Prepare(c, baseline, prepared);
    ASSERT_TRUE(prepared.UseInstructionSet(KernelInstructionSet::Baseline));
    prepared.RenderLines(0, prepared.lineCount());
    TestFixture::Prepare(c, avx2, prepared);
    ASSERT_TRUE(prepared.UseInstructionSet(KernelInstructionSet::Avx2));
    prepared.RenderLines(0, prepared.lineCount());
    ASSERT_TRUE(SamePixels(baseline, avx2)) << "seed " << seed;
  }
}

TYPED_TEST(KernelBands, NothingToRenderPreparesNoLines) {
  const auto image = RandomImage<TestFixture::kDepth>(4, 3, 1);
  auto out = image;
  PreparedStretchKernel<TestFixture::kDepth> prepared;
  PrepareStretchKernel<TestFixture::kDepth>(prepared, IntensityOrigin::SelfIntensity,
                                            ChannelVariant(6),
                                            {out.pixels(), out.stride, image.pixels(), image.stride,
                                             4, 3, DefaultRecord(), 1.0f, nullptr, 0, 0, 0, 0, 0});
  EXPECT_EQ(prepared.lineCount(), 0);
  PrepareStretchKernel<TestFixture::kDepth>(prepared, IntensityOrigin::SelfIntensity,
                                            ChannelVariant::Luma,
                                            {out.pixels(), out.stride, image.pixels(), image.stride,
                                             0, 3, DefaultRecord(), 1.0f, nullptr, 0, 0, 0, 0, 0});
  EXPECT_EQ(prepared.lineCount(), 0);
  EXPECT_FALSE(prepared.UseInstructionSet(KernelInstructionSet::Baseline));
  prepared.RenderLines(0, 10);
  EXPECT_TRUE(SamePixels(out, image));
}

}  // namespace
}  // namespace morvane
