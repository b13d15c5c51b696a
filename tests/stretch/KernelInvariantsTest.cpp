// Properties every member of the kernel family must have, checked on random images and random
// settings at every depth.
#include <gtest/gtest.h>

#include <optional>

#include "tests/stretch/KernelRunner.h"

namespace morvane {
namespace {

using namespace testing_support;

constexpr ChannelVariant kVariants[] = {ChannelVariant::Luma,  ChannelVariant::Red,
                                        ChannelVariant::Green, ChannelVariant::Blue,
                                        ChannelVariant::Alpha, ChannelVariant::LumaNoAlpha};

struct Size {
  int32_t width;
  int32_t height;
};
constexpr Size kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {5, 3}, {16, 9}, {33, 4}};

template <typename T>
class KernelInvariants : public testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  using Img = Image<kDepth>;

  // One random case: image, settings, variant and (every other case) a layer at origin (0, 0)
  // of another size.
  struct Case {
    Img image;
    Img initial;  // what the output holds before the kernel runs
    std::optional<Img> layer;
    StretchRenderRecord record;
    ChannelVariant variant;
  };

  static Case MakeCase(uint32_t seed) {
    const Size size = kSizes[seed % std::size(kSizes)];
    Case c{RandomImage<kDepth>(size.width, size.height, seed),
           RandomImage<kDepth>(size.width, size.height, seed + 1000), std::nullopt,
           RandomRecord(seed), kVariants[(seed / 2) % std::size(kVariants)]};
    if (seed % 2 == 1) {
      c.layer = RandomImage<kDepth>(1 + (seed * 7) % 19, 1 + (seed * 5) % 13, seed + 2000);
    }
    return c;
  }

  static Img Run(const Case& c, int32_t direction, const Img& image, const Img& initial,
                 const std::optional<Img>& layer) {
    StretchRenderRecord r = c.record;
    r.direction = direction;
    return RunKernel<kDepth>(c.variant, r, image, initial, layer ? &*layer : nullptr);
  }

  template <typename Map>
  static std::optional<Img> MapLayer(const std::optional<Img>& layer, Map map) {
    return layer ? std::optional<Img>(map(*layer)) : std::nullopt;
  }
};

using Depths = testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(KernelInvariants, Depths);

constexpr uint32_t kCases = 96;

TYPED_TEST(KernelInvariants, LeftIsTheMirrorOfRight) {
  using Img = typename TestFixture::Img;
  const auto mirror = [](const Img& i) { return MirrorX(i); };
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::MakeCase(seed);
    const Img left = TestFixture::Run(c, 1, c.image, c.initial, c.layer);
    const Img right = TestFixture::Run(c, 0, MirrorX(c.image), MirrorX(c.initial),
                                       TestFixture::MapLayer(c.layer, mirror));
    ASSERT_TRUE(SamePixels(left, MirrorX(right))) << "seed " << seed;
  }
}

TYPED_TEST(KernelInvariants, DownIsTheTransposeOfRight) {
  using Img = typename TestFixture::Img;
  const auto transpose = [](const Img& i) { return Transpose(i); };
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::MakeCase(seed);
    const Img down = TestFixture::Run(c, 2, c.image, c.initial, c.layer);
    const Img right = TestFixture::Run(c, 0, Transpose(c.image), Transpose(c.initial),
                                       TestFixture::MapLayer(c.layer, transpose));
    ASSERT_TRUE(SamePixels(down, Transpose(right))) << "seed " << seed;
  }
}

TYPED_TEST(KernelInvariants, UpIsTheMirrorOfDown) {
  using Img = typename TestFixture::Img;
  const auto flip = [](const Img& i) { return MirrorY(i); };
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::MakeCase(seed);
    const Img up = TestFixture::Run(c, 3, c.image, c.initial, c.layer);
    const Img down = TestFixture::Run(c, 2, MirrorY(c.image), MirrorY(c.initial),
                                      TestFixture::MapLayer(c.layer, flip));
    ASSERT_TRUE(SamePixels(up, MirrorY(down))) << "seed " << seed;
  }
}

TYPED_TEST(KernelInvariants, WritesOnlyTheVariantsChannels) {
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::MakeCase(seed);
    const auto out = TestFixture::Run(c, static_cast<int32_t>(seed % 4), c.image, c.initial,
                                      c.layer);
    bool written[4] = {false, false, false, false};
    for (int ch : (c.variant == ChannelVariant::Luma          ? std::vector<int>{0, 1, 2, 3}
                   : c.variant == ChannelVariant::LumaNoAlpha ? std::vector<int>{1, 2, 3}
                   : c.variant == ChannelVariant::Alpha       ? std::vector<int>{0}
                                                              : std::vector<int>{
                                                                    static_cast<int>(c.variant)})) {
      written[ch] = true;
    }
    for (int32_t y = 0; y < out.height; ++y)
      for (int32_t x = 0; x < out.width; ++x)
        for (int ch = 0; ch < 4; ++ch)
          if (!written[ch]) {
            ASSERT_EQ(out.at(x, y, ch), c.initial.at(x, y, ch)) << "seed " << seed;
          }
  }
}

TYPED_TEST(KernelInvariants, PaddedStridesGiveTheSamePixels) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  using Img = typename TestFixture::Img;
  for (uint32_t seed = 0; seed < kCases / 2; ++seed) {
    const auto c = TestFixture::MakeCase(seed);
    const auto pad = [](const Img& i, int32_t padding) {
      Img p(i.width, i.height, padding);
      for (int32_t y = 0; y < i.height; ++y)
        for (int32_t x = 0; x < i.width; ++x)
          for (int ch = 0; ch < 4; ++ch) p.at(x, y, ch) = i.at(x, y, ch);
      return p;
    };
    const auto layer = TestFixture::MapLayer(c.layer, [&](const Img& i) { return pad(i, 12); });
    const Img tight = TestFixture::Run(c, static_cast<int32_t>(seed % 4), c.image, c.initial,
                                       c.layer);
    const Img padded = TestFixture::Run(c, static_cast<int32_t>(seed % 4), pad(c.image, 4),
                                        pad(c.initial, 8), layer);
    ASSERT_TRUE(SamePixels(tight, padded)) << "seed " << seed;
    for (int32_t y = 0; y < padded.height; ++y)
      for (int32_t e = 4 * padded.width; e < padded.stride; ++e)
        ASSERT_EQ(padded.data[size_t(y) * padded.stride + e], Img::kSentinel);
  }
  (void)kDepth;
}

TYPED_TEST(KernelInvariants, OnePixelImageWithDefaultsIsUnchanged) {
  constexpr PixelDepth kDepth = TestFixture::kDepth;
  for (uint32_t seed = 0; seed < 8; ++seed) {
    const auto pixel = RandomImage<kDepth>(1, 1, seed);
    for (ChannelVariant v : kVariants) {
      for (int32_t direction = 0; direction < 4; ++direction) {
        for (int32_t edge = 0; edge < 4; ++edge) {
          StretchRenderRecord r = DefaultRecord();
          r.direction = direction;
          r.edgeMode = edge;
          r.stretchAmount = 7;
          ASSERT_TRUE(SamePixels(RunKernel<kDepth>(v, r, pixel), pixel));
        }
      }
    }
  }
}

}  // namespace
}  // namespace morvane
