// Properties every member of the kernel family must have, on random images and random settings
// at every depth.
#include <gtest/gtest.h>

#include <optional>

#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;

constexpr std::pair<int32_t, int32_t> kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {5, 3}, {16, 9}, {33, 4}};
constexpr uint32_t kCases = 96;

template <typename T>
class KernelInvariants : public testing::Test {
 protected:
  static constexpr PixelDepth kDepth = T::value;
  using Img = Image<kDepth>;

  // A random image, output start, record and variant; odd seeds add a layer of another size at
  // origin (0, 0).
  struct Case {
    Img image, initial;
    std::optional<Img> layer;
    StretchRenderRecord record;
    ChannelVariant variant;

    template <typename Map>
    Img Run(int32_t direction, Map map) const {
      StretchRenderRecord r = record;
      r.direction = direction;
      const std::optional<Img> mapped = layer ? std::optional<Img>(map(*layer)) : std::nullopt;
      return RunKernel<kDepth>(variant, r, map(image), map(initial), mapped ? &*mapped : nullptr);
    }
  };

  static Case Make(uint32_t seed) {
    const auto [w, h] = kSizes[seed % std::size(kSizes)];
    Case c{RandomImage<kDepth>(w, h, seed), RandomImage<kDepth>(w, h, seed + 1000), std::nullopt,
           RandomRecord(seed), ChannelVariant((seed / 2) % 6)};
    if (seed % 2) c.layer = RandomImage<kDepth>(1 + (seed * 7) % 19, 1 + (seed * 5) % 13, seed);
    return c;
  }
};

using Depths = testing::Types<std::integral_constant<PixelDepth, PixelDepth::Depth8>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth16>,
                              std::integral_constant<PixelDepth, PixelDepth::Depth32f>>;
TYPED_TEST_SUITE(KernelInvariants, Depths);

const auto kSame = [](const auto& image) { return image; };

// Left and Up are exact mirrors of Right and Down; Down is Right on the transposed image.
TYPED_TEST(KernelInvariants, DirectionsAreMirrorsAndTransposes) {
  const auto mirror = [](const auto& image) { return MirrorX(image); };
  const auto transpose = [](const auto& image) { return Transpose(image); };
  const auto flip = [](const auto& image) {
    return Remap(image, image.width, image.height, [&](int32_t x, int32_t y) {
      return std::pair{x, image.height - 1 - y};
    });
  };
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::Make(seed);
    ASSERT_TRUE(SamePixels(c.Run(1, kSame), MirrorX(c.Run(0, mirror)))) << "seed " << seed;
    ASSERT_TRUE(SamePixels(c.Run(2, kSame), Transpose(c.Run(0, transpose)))) << "seed " << seed;
    ASSERT_TRUE(SamePixels(c.Run(3, kSame), flip(c.Run(2, flip)))) << "seed " << seed;
  }
}

TYPED_TEST(KernelInvariants, WritesOnlyTheVariantsChannels) {
  for (uint32_t seed = 0; seed < kCases; ++seed) {
    const auto c = TestFixture::Make(seed);
    const auto out = c.Run(int32_t(seed % 4), kSame);
    const int v = static_cast<int>(c.variant);
    const auto written = [&](int ch) {
      return c.variant == ChannelVariant::Luma || (ch == 0 && c.variant == ChannelVariant::Alpha) ||
             (ch > 0 && (c.variant == ChannelVariant::LumaNoAlpha || v == ch));
    };
    for (int32_t y = 0; y < out.height; ++y)
      for (int32_t x = 0; x < out.width; ++x)
        for (int ch = 0; ch < 4; ++ch) {
          if (written(ch)) continue;
          ASSERT_EQ(out.at(x, y, ch), c.initial.at(x, y, ch)) << seed;
        }
  }
}

TYPED_TEST(KernelInvariants, PaddedStridesGiveTheSamePixels) {
  for (uint32_t seed = 0; seed < kCases / 2; ++seed) {
    const auto c = TestFixture::Make(seed);
    const auto padded =
        c.Run(int32_t(seed % 4), [](const auto& image) { return Padded(image, 12); });
    ASSERT_TRUE(SamePixels(c.Run(int32_t(seed % 4), kSame), padded)) << "seed " << seed;
    for (int32_t y = 0; y < padded.height; ++y)
      for (int32_t e = 4 * padded.width; e < padded.stride; ++e)
        ASSERT_EQ(padded.data[size_t(y) * padded.stride + e], TestFixture::Img::kSentinel);
  }
}

TYPED_TEST(KernelInvariants, OnePixelImageWithDefaultsIsUnchanged) {
  const auto pixel = RandomImage<TestFixture::kDepth>(1, 1, 3);
  for (int v = 0; v < 6; ++v)
    for (int32_t direction = 0; direction < 4; ++direction)
      for (int32_t edge = 0; edge < 4; ++edge) {
        StretchRenderRecord r = DefaultRecord();
        r.direction = direction, r.edgeMode = edge, r.stretchAmount = 7;
        ASSERT_TRUE(SamePixels(RunKernel<TestFixture::kDepth>(ChannelVariant(v), r, pixel), pixel));
      }
}

}  // namespace
}  // namespace morvane
