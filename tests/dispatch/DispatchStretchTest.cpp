#include <gtest/gtest.h>

#include <stdexcept>

#include "render/DispatchStretch.h"
#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;
using V = ChannelVariant;

template <PixelDepth Depth>
PF_EffectWorld World(Image<Depth>& image) {
  PF_EffectWorld w{};
  w.data = reinterpret_cast<PF_PixelPtr>(image.pixels());
  w.rowbytes = image.stride * int32_t(sizeof(ChannelType<Depth>));
  w.width = image.width;
  w.height = image.height;
  return w;
}

// Dispatches `record` on `input` into a copy of `initial`, whose origin is (originX, originY).
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

// `into` with channel c replaced by that of `from`.
template <PixelDepth Depth>
Image<Depth> WithChannel(Image<Depth> into, const Image<Depth>& from, int c) {
  for (int32_t y = 0; y < into.height; ++y)
    for (int32_t x = 0; x < into.width; ++x)
      into.at(x, y, c) = from.at(x, y, c);
  return into;
}

template <typename T>
class DispatchTest : public testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  static Image<kDepth> Input(uint32_t seed) { return RandomImage<kDepth>(13, 6, seed); }
  static Image<kDepth> Kernel(V v, const StretchRenderRecord& r, const Image<kDepth>& in) {
    return RunKernel<kDepth>(v, r, in);
  }
};

using Depths = testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(DispatchTest, Depths);

TYPED_TEST(DispatchTest, ZeroIntensityIsAnExactCopyInEveryMode) {
  for (int32_t mode = -1; mode <= 8; ++mode) {
    StretchRenderRecord r = RandomRecord(uint32_t(mode + 40));
    r.intensity = 0;
    r.channelMode = mode;
    r.edgeMode = 3;  // a kernel would fade alpha towards the line's end; none may run
    r.transparencyFeather = 100;
    const auto in = TestFixture::Input(3);
    EXPECT_TRUE(SamePixels(Dispatch(r, in, TestFixture::Input(4)), in)) << mode;
  }
}

TYPED_TEST(DispatchTest, EachModeRunsItsKernelsOnTheRightStart) {
  for (uint32_t seed = 0; seed < 8; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.edgeMode = 3;
    const auto in = TestFixture::Input(seed);
    const auto garbage = TestFixture::Input(seed + 500);
    const auto run = [&](V v) { return TestFixture::Kernel(v, r, in); };
    const auto check = [&](ChannelMode mode, const auto& expected) {
      r.channelMode = static_cast<int32_t>(mode);
      EXPECT_TRUE(SamePixels(Dispatch(r, in, garbage), expected))
          << "mode " << r.channelMode << " seed " << seed;
    };
    // Single channels: the whole input, then that channel stretched.
    check(ChannelMode::Red, WithChannel(in, run(V::Red), 1));
    check(ChannelMode::Green, WithChannel(in, run(V::Green), 2));
    check(ChannelMode::Blue, WithChannel(in, run(V::Blue), 3));
    check(ChannelMode::Alpha, WithChannel(in, run(V::Alpha), 0));
    // No-alpha modes keep the input alpha exactly.
    check(ChannelMode::LumaNoAlpha,
          WithChannel(RunKernel<TestFixture::kDepth>(V::LumaNoAlpha, r, in, garbage), in, 0));
    const auto rgb = WithChannel(
        WithChannel(WithChannel(garbage, run(V::Red), 1), run(V::Green), 2), run(V::Blue), 3);
    check(ChannelMode::RgbNoAlpha, WithChannel(rgb, in, 0));
    // RGBA: every channel moved by its own values.
    check(ChannelMode::Rgba, WithChannel(rgb, run(V::Alpha), 0));
    check(ChannelMode::Luma, RunKernel<TestFixture::kDepth>(V::Luma, r, in, garbage));
    // Unknown modes render nothing.
    check(static_cast<ChannelMode>(8), garbage);
  }
}

TYPED_TEST(DispatchTest, IntensityLayerChoice) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  auto layer = RandomImage<kDepth>(20, 9, 5);
  PF_EffectWorld layerWorld = World(layer);
  PF_EffectWorld noData = layerWorld;
  noData.data = nullptr;
  PF_EffectWorld noWidth = layerWorld;
  noWidth.width = 0;
  for (uint32_t seed = 0; seed < 4; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    const auto in = TestFixture::Input(seed);
    const auto self = Dispatch(r, in, in);
    r.intensityLayer = &noData;
    EXPECT_TRUE(SamePixels(Dispatch(r, in, in), self));
    r.intensityLayer = &noWidth;
    EXPECT_TRUE(SamePixels(Dispatch(r, in, in), self));
    r.intensityLayer = &layerWorld;
    EXPECT_TRUE(
        SamePixels(Dispatch(r, in, in, 3, 2), RunKernel<kDepth>(V::Luma, r, in, in, &layer, 3, 2)));
  }
}

TYPED_TEST(DispatchTest, PaddedRowBytesBecomeElementStrides) {
  for (uint32_t seed = 0; seed < 8; ++seed) {
    StretchRenderRecord r = RandomRecord(seed);
    r.channelMode = int32_t(seed);
    const auto in = TestFixture::Input(seed);
    EXPECT_TRUE(SamePixels(Dispatch(r, Padded(in, 8), Padded(in, 4)), Dispatch(r, in, in)));
  }
}

TEST(Dispatch, CopiesOnlyTheOverlapOfDifferentSizes) {
  const auto in = RandomImage<PixelDepth::Depth16>(6, 3, 1);
  const auto before = RandomImage<PixelDepth::Depth16>(4, 5, 2);
  StretchRenderRecord r = DefaultRecord();
  r.intensity = 0;
  const auto out = Dispatch(r, in, before);
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
  EXPECT_TRUE(SamePixels(out, RunKernel<PixelDepth::Depth16>(V::Luma, r, in)));
  EXPECT_THROW(DispatchStretchForDepth(PixelDepth(3), inWorld, outWorld, r, 1.0f),
               std::logic_error);
}

}  // namespace
}  // namespace morvane
