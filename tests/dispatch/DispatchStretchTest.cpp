#include <gtest/gtest.h>

#include <stdexcept>

#include "render/DispatchStretch.h"
#include "tests/stretch/KernelRunner.h"

namespace morvane {
namespace {

using namespace testing_support;

template <PixelDepth Depth>
PF_EffectWorld World(Image<Depth>& image) {
  PF_EffectWorld w{};
  w.data = reinterpret_cast<PF_PixelPtr>(image.pixels());
  w.rowbytes = image.stride * static_cast<int32_t>(sizeof(ChannelType<Depth>));
  w.width = image.width;
  w.height = image.height;
  return w;
}

// Runs the dispatcher on `input` into a copy of `initial` and returns the output.
template <PixelDepth Depth>
Image<Depth> Dispatch(const StretchRenderRecord& record, Image<Depth> input, Image<Depth> initial,
                      int32_t originX = 0, int32_t originY = 0) {
  PF_EffectWorld in = World(input);
  PF_EffectWorld out = World(initial);
  out.origin_x = originX;
  out.origin_y = originY;
  DispatchStretch<Depth>(in, out, record, 1.0f);
  return initial;
}

// Copies channel `c` of `from` into `into`.
template <PixelDepth Depth>
void TakeChannel(Image<Depth>& into, const Image<Depth>& from, int c) {
  for (int32_t y = 0; y < into.height; ++y)
    for (int32_t x = 0; x < into.width; ++x) into.at(x, y, c) = from.at(x, y, c);
}

template <typename T>
class DispatchTest : public testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  using Img = Image<kDepth>;
  static Img Input(uint32_t seed) { return RandomImage<kDepth>(13, 6, seed); }
  static Img Garbage(uint32_t seed) { return RandomImage<kDepth>(13, 6, seed + 500); }
};

using Depths = testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(DispatchTest, Depths);

TYPED_TEST(DispatchTest, ZeroIntensityIsAnExactCopyInEveryMode) {
  for (int32_t mode = -1; mode <= 8; ++mode) {
    StretchRenderRecord r = RandomRecord(static_cast<uint32_t>(mode + 40));
    r.intensity = 0;
    r.channelMode = mode;
    // A kernel would fade alpha towards the line's end here; none may run.
    r.edgeMode = 3;
    r.transparencyFeather = 100;
    const auto in = TestFixture::Input(3);
    EXPECT_TRUE(SamePixels(Dispatch(r, in, TestFixture::Garbage(3)), in)) << mode;
  }
}

TYPED_TEST(DispatchTest, SingleChannelModesChangeOnlyTheirChannel) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  const std::pair<ChannelMode, ChannelVariant> modes[] = {
      {ChannelMode::Red, ChannelVariant::Red},
      {ChannelMode::Green, ChannelVariant::Green},
      {ChannelMode::Blue, ChannelVariant::Blue},
      {ChannelMode::Alpha, ChannelVariant::Alpha}};
  for (uint32_t seed = 0; seed < 8; ++seed) {
    for (const auto& [mode, variant] : modes) {
      StretchRenderRecord r = RandomRecord(seed);
      r.channelMode = static_cast<int32_t>(mode);
      const auto in = TestFixture::Input(seed);
      // Everything is the input except the variant's channel, which the kernel writes.
      auto expected = in;
      const auto stretched = RunKernel<kDepth>(variant, r, in);
      const int c = variant == ChannelVariant::Alpha ? 0 : static_cast<int>(variant);
      TakeChannel(expected, stretched, c);
      EXPECT_TRUE(SamePixels(Dispatch(r, in, TestFixture::Garbage(seed)), expected)) << seed;
    }
  }
}

TYPED_TEST(DispatchTest, NoAlphaModesKeepInputAlpha) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  for (uint32_t seed = 0; seed < 8; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.edgeMode = 3;  // the one mode that would fade a stretched alpha
    const auto in = TestFixture::Input(seed);
    const auto garbage = TestFixture::Garbage(seed);

    r.channelMode = static_cast<int32_t>(ChannelMode::LumaNoAlpha);
    auto expected = RunKernel<kDepth>(ChannelVariant::LumaNoAlpha, r, in, garbage);
    TakeChannel(expected, in, 0);
    EXPECT_TRUE(SamePixels(Dispatch(r, in, garbage), expected)) << seed;

    r.channelMode = static_cast<int32_t>(ChannelMode::RgbNoAlpha);
    expected = garbage;
    TakeChannel(expected, in, 0);
    for (auto v : {ChannelVariant::Red, ChannelVariant::Green, ChannelVariant::Blue}) {
      TakeChannel(expected, RunKernel<kDepth>(v, r, in), static_cast<int>(v));
    }
    EXPECT_TRUE(SamePixels(Dispatch(r, in, garbage), expected)) << seed;
  }
}

TYPED_TEST(DispatchTest, RgbaMovesEachChannelByItsOwnValues) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  for (uint32_t seed = 0; seed < 8; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = static_cast<int32_t>(ChannelMode::Rgba);
    const auto in = TestFixture::Input(seed);
    auto expected = TestFixture::Garbage(seed);
    TakeChannel(expected, RunKernel<kDepth>(ChannelVariant::Alpha, r, in), 0);
    TakeChannel(expected, RunKernel<kDepth>(ChannelVariant::Red, r, in), 1);
    TakeChannel(expected, RunKernel<kDepth>(ChannelVariant::Green, r, in), 2);
    TakeChannel(expected, RunKernel<kDepth>(ChannelVariant::Blue, r, in), 3);
    EXPECT_TRUE(SamePixels(Dispatch(r, in, TestFixture::Garbage(seed)), expected)) << seed;

    r.channelMode = static_cast<int32_t>(ChannelMode::Luma);
    EXPECT_TRUE(SamePixels(Dispatch(r, in, TestFixture::Garbage(seed)),
                           RunKernel<kDepth>(ChannelVariant::Luma, r, in,
                                             TestFixture::Garbage(seed))));
  }
}

TEST(Dispatch, BrightRedTravelsFurtherThanDarkBlue) {
  Image<PixelDepth::Depth8> in(8, 1);
  for (int32_t x = 0; x < 8; ++x) {
    in.at(x, 0, 0) = 255;
    in.at(x, 0, 1) = x % 2 ? 255 : 0;
    in.at(x, 0, 3) = x % 2 ? 40 : 0;
  }
  StretchRenderRecord r = DefaultRecord();
  r.channelMode = static_cast<int32_t>(ChannelMode::Rgba);
  r.stretchAmount = 3;
  const auto out = Dispatch(r, in, in);
  // Red 255 gets length 4, blue 40 about 1.5: pixel 3 lies inside red's span from pixel 1 but
  // already past blue's.
  EXPECT_EQ(out.at(3, 0, 1), 128);
  EXPECT_NE(out.at(3, 0, 3), 20);
  EXPECT_EQ(out.at(3, 0, 0), 255);
}

TYPED_TEST(DispatchTest, LayerWithoutPixelsCountsAsNoLayer) {
  auto layerImage = TestFixture::Input(77);
  PF_EffectWorld noData = World(layerImage);
  noData.data = nullptr;
  PF_EffectWorld noWidth = World(layerImage);
  noWidth.width = 0;
  for (uint32_t seed = 0; seed < 4; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = static_cast<int32_t>(ChannelMode::Luma);
    const auto in = TestFixture::Input(seed);
    const auto without = Dispatch(r, in, in);
    r.intensityLayer = &noData;
    EXPECT_TRUE(SamePixels(Dispatch(r, in, in), without));
    r.intensityLayer = &noWidth;
    EXPECT_TRUE(SamePixels(Dispatch(r, in, in), without));
  }
}

TYPED_TEST(DispatchTest, LayerSelectsLayerKernelsWithTheOutputOrigin) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  auto layer = RandomImage<kDepth>(20, 9, 5, 4);
  PF_EffectWorld layerWorld = World(layer);
  for (uint32_t seed = 0; seed < 4; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = static_cast<int32_t>(ChannelMode::Luma);
    r.intensityLayer = &layerWorld;
    const auto in = TestFixture::Input(seed);
    const auto expected = RunKernel<kDepth>(ChannelVariant::Luma, r, in, in, &layer, {3, 2});
    EXPECT_TRUE(SamePixels(Dispatch(r, in, in, 3, 2), expected)) << seed;
  }
}

TYPED_TEST(DispatchTest, PaddedRowBytesBecomeElementStrides) {
  using Img = typename TestFixture::Img;
  for (uint32_t seed = 0; seed < 4; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = static_cast<int32_t>(seed % 8);
    const Img in = TestFixture::Input(seed);
    Img paddedIn(in.width, in.height, 8);
    Img paddedOut(in.width, in.height, 4);
    for (int32_t y = 0; y < in.height; ++y)
      for (int32_t x = 0; x < in.width; ++x)
        for (int c = 0; c < 4; ++c) paddedIn.at(x, y, c) = paddedOut.at(x, y, c) = in.at(x, y, c);
    EXPECT_TRUE(SamePixels(Dispatch(r, paddedIn, paddedOut), Dispatch(r, in, in))) << seed;
  }
}

TEST(Dispatch, UnknownChannelModeRendersNothing) {
  const auto in = RandomImage<PixelDepth::Depth8>(5, 4, 1);
  const auto before = RandomImage<PixelDepth::Depth8>(5, 4, 2);
  for (int32_t mode : {8, -1, 1000}) {
    StretchRenderRecord r = DefaultRecord();
    r.channelMode = mode;
    EXPECT_TRUE(SamePixels(Dispatch(r, in, before), before)) << mode;
  }
}

TEST(Dispatch, CopiesOnlyTheOverlapOfDifferentSizes) {
  auto in = RandomImage<PixelDepth::Depth16>(6, 3, 1);
  auto out = RandomImage<PixelDepth::Depth16>(4, 5, 2);
  const auto before = out;
  StretchRenderRecord r = DefaultRecord();
  r.intensity = 0;
  PF_EffectWorld inWorld = World(in);
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
  StretchRenderRecord r = RandomRecord(3);
  r.channelMode = static_cast<int32_t>(ChannelMode::Luma);
  PF_EffectWorld inWorld = World(in);
  PF_EffectWorld outWorld = World(out);
  DispatchStretchForDepth(PixelDepth::Depth16, inWorld, outWorld, r, 1.0f);
  EXPECT_TRUE(SamePixels(out, RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in)));
  EXPECT_THROW(
      DispatchStretchForDepth(static_cast<PixelDepth>(3), inWorld, outWorld, r, 1.0f),
      std::logic_error);
}

}  // namespace
}  // namespace morvane
