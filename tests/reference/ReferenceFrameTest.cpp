// Whole-frame behaviour of the reference model on small hand-made images.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "tests/reference/ReferenceStretch.h"

namespace morvane::reference {
namespace {

constexpr int32_t kDegree = 65536;

template <typename T>
struct Buffer {
  int32_t width;
  int32_t height;
  int32_t stride;
  std::vector<T> pixels;

  Buffer(int32_t w, int32_t h, int32_t padding = 0)
      : width(w),
        height(h),
        stride(w * 4 + padding),
        pixels(static_cast<std::size_t>(stride) * static_cast<std::size_t>(h), T{}) {}

  T* At(int32_t x, int32_t y) {
    return pixels.data() + static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x) * 4;
  }
  void Set(int32_t x, int32_t y, T a, T r, T g, T b) {
    T* p = At(x, y);
    p[0] = a;
    p[1] = r;
    p[2] = g;
    p[3] = b;
  }
  ConstImage<T> In() const { return {pixels.data(), stride, width, height}; }
  Image<T> Out() { return {pixels.data(), stride, width, height}; }
};

// A deterministic, varied 8-bit test image.
Buffer<uint8_t> Pattern(int32_t w, int32_t h, int seed) {
  Buffer<uint8_t> image(w, h);
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < w; ++x) {
      const int v = (x * 37 + y * 91 + seed * 13) % 256;
      image.Set(x, y, static_cast<uint8_t>(x % 3 == 0 ? 255 : 200 - v % 50),
                static_cast<uint8_t>(v), static_cast<uint8_t>((v * 7) % 256),
                static_cast<uint8_t>(255 - v));
    }
  }
  return image;
}

Buffer<uint8_t> Render(const Buffer<uint8_t>& input, const Settings& settings) {
  Buffer<uint8_t> output(input.width, input.height);
  Dispatch<uint8_t>(input.In(), output.Out(), settings, 1.0f, nullptr, 0, 0);
  return output;
}

TEST(ReferenceFrame, BlackWhiteRowWithDefaults) {
  Buffer<uint8_t> input(4, 1);
  input.Set(0, 0, 255, 0, 0, 0);
  input.Set(1, 0, 255, 255, 255, 255);
  input.Set(2, 0, 255, 0, 0, 0);
  input.Set(3, 0, 255, 255, 255, 255);
  Buffer<uint8_t> output = Render(input, Settings{});
  const uint8_t expected[4] = {0, 255, 128, 0};
  for (int32_t x = 0; x < 4; ++x) {
    EXPECT_EQ(output.At(x, 0)[0], 255);
    for (int c = 1; c < 4; ++c) {
      EXPECT_EQ(output.At(x, 0)[c], expected[x]) << "pixel " << x << " channel " << c;
    }
  }
}

TEST(ReferenceFrame, HalfPixelSizeSqueezesPairs) {
  const Buffer<uint8_t> input = Pattern(8, 2, 1);
  Settings settings;
  settings.stretchAmount = 0.0;
  settings.pixelSize = 0.5;
  const Buffer<uint8_t> output = Render(input, settings);
  Buffer<uint8_t> in = input;
  Buffer<uint8_t> out = output;
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      const int32_t a = (2 * x) % 8;
      for (int c = 0; c < 4; ++c) {
        const double mean = in.At(a, y)[c] * 0.5 + in.At(a + 1, y)[c] * 0.5;
        EXPECT_EQ(out.At(x, y)[c], static_cast<uint8_t>(std::round(mean)));
      }
    }
  }
}

TEST(ReferenceFrame, FullStartOffsetIsAShiftedCopy) {
  Buffer<uint8_t> input = Pattern(8, 3, 2);
  Settings settings;
  settings.startOffset = 100.0;
  settings.imageShiftPhase = 90 * kDegree;  // two pixels on a row of eight
  Buffer<uint8_t> output = Render(input, settings);
  for (int32_t y = 0; y < 3; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(output.At(x, y)[c], input.At((x + 2) % 8, y)[c]);
      }
    }
  }
}

TEST(ReferenceFrame, RampDownWithZeroRangeDoesNotStretch) {
  Buffer<uint8_t> input = Pattern(9, 4, 3);
  Settings settings;
  settings.stretchAmount = 12.0;
  settings.distributionMode = 2;
  settings.distributionRange = 0.0;
  Buffer<uint8_t> output = Render(input, settings);
  EXPECT_EQ(output.pixels, input.pixels);
}

TEST(ReferenceFrame, TransparentStartCopyTruncatesTheFadedAlpha) {
  Buffer<uint8_t> input(5, 1);
  for (int32_t x = 0; x < 5; ++x) {
    input.Set(x, 0, 201, 10, 20, 30);
  }
  Settings settings;
  settings.startOffset = 100.0;
  settings.edgeMode = kTransparent;
  settings.transparencyFeather = 100.0;  // fades 1, 0.8, 0.6, 0.4, 0.2
  Buffer<uint8_t> output = Render(input, settings);
  // 201 x 0.8 = 160.8 and 201 x 0.6 = 120.6 are cut, not rounded.
  const uint8_t alpha[5] = {201, 160, 120, 80, 40};
  for (int32_t x = 0; x < 5; ++x) {
    EXPECT_EQ(output.At(x, 0)[0], alpha[x]) << x;
    EXPECT_EQ(output.At(x, 0)[3], 30);
  }
}

// Left is the mirror image of Right; Down the transpose of Right.
TEST(ReferenceFrame, DirectionsAreMirrorsAndTransposes) {
  Settings settings;
  settings.stretchAmount = 3.5;
  settings.curveShape = 3;
  settings.imageShiftPhase = -70 * kDegree;
  settings.shadingMode = 2;
  settings.shadingIntervalSize = 5;
  settings.shadingChannels = 1;
  settings.edgeMode = kMirror;
  settings.startOffset = 20.0;
  const Buffer<uint8_t> input = Pattern(11, 6, 4);
  const Buffer<uint8_t> right = Render(input, settings);

  Buffer<uint8_t> mirrored(11, 6);
  Buffer<uint8_t> transposed(6, 11);
  Buffer<uint8_t> in = input;
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 11; ++x) {
      for (int c = 0; c < 4; ++c) {
        mirrored.At(10 - x, y)[c] = in.At(x, y)[c];
        transposed.At(y, x)[c] = in.At(x, y)[c];
      }
    }
  }
  settings.direction = 1;
  Buffer<uint8_t> left = Render(mirrored, settings);
  settings.direction = 2;
  Buffer<uint8_t> down = Render(transposed, settings);
  Buffer<uint8_t> r = right;
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 11; ++x) {
      for (int c = 0; c < 4; ++c) {
        ASSERT_EQ(left.At(10 - x, y)[c], r.At(x, y)[c]);
        ASSERT_EQ(down.At(y, x)[c], r.At(x, y)[c]);
      }
    }
  }
}

// A layer twice as wide with the output at (10, 0): Right starts sampling the
// layer at column 10, Left at its last column.
TEST(ReferenceFrame, LayerLineStartColumns) {
  Buffer<uint8_t> input(100, 1);
  for (int32_t x = 0; x < 100; ++x) {
    input.Set(x, 0, 255, static_cast<uint8_t>(2 * x), 0, 0);
  }
  Settings settings;
  settings.channelMode = 2;  // Red
  settings.imageShiftPhaseSync = 0;
  for (const int32_t direction : {0, 1}) {
    Buffer<uint8_t> layer(200, 1);
    const int32_t white = direction == 0 ? 10 : 199;
    for (int32_t x = 0; x < 200; ++x) {
      layer.Set(x, 0, 255, x == white ? 255 : 0, 0, 0);
    }
    settings.direction = direction;
    Buffer<uint8_t> output(100, 1);
    const ConstImage<uint8_t> l = layer.In();
    Dispatch<uint8_t>(input.In(), output.Out(), settings, 1.0f, &l, 10, 0);
    // The first source pixel lasts two output pixels, interpolated half-way.
    const int32_t first = direction == 0 ? 0 : 99;
    const int32_t second = direction == 0 ? 1 : 98;
    const int32_t third = direction == 0 ? 2 : 97;
    EXPECT_EQ(output.At(first, 0)[1], input.At(first, 0)[1]);
    EXPECT_EQ(output.At(second, 0)[1], (input.At(first, 0)[1] + input.At(second, 0)[1]) / 2);
    EXPECT_EQ(output.At(third, 0)[1], input.At(second, 0)[1]);
  }
}

// ---- Dispatch --------------------------------------------------------------------

class DispatchModeTest : public ::testing::TestWithParam<int32_t> {};

TEST_P(DispatchModeTest, ZeroIntensityCopiesAndUntouchedChannelsKeepTheInput) {
  const int32_t mode = GetParam();
  Buffer<uint8_t> input = Pattern(7, 5, 5);
  Settings settings;
  settings.channelMode = mode;
  settings.stretchAmount = 6.0;
  settings.intensity = 0.0;
  EXPECT_EQ(Render(input, settings).pixels, input.pixels);

  settings.intensity = 80.0;
  Buffer<uint8_t> output = Render(input, settings);
  std::vector<int> kept;
  switch (mode) {
    case 2:
      kept = {0, 2, 3};
      break;
    case 3:
      kept = {0, 1, 3};
      break;
    case 4:
      kept = {0, 1, 2};
      break;
    case 5:
      kept = {1, 2, 3};
      break;
    case 6:
    case 7:
      kept = {0};
      break;
    default:
      break;
  }
  bool changed = false;
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 7; ++x) {
      for (int c = 0; c < 4; ++c) {
        const bool same = output.At(x, y)[c] == input.At(x, y)[c];
        changed = changed || !same;
        if (std::find(kept.begin(), kept.end(), c) != kept.end()) {
          ASSERT_TRUE(same) << "mode " << mode << " channel " << c;
        }
      }
    }
  }
  EXPECT_TRUE(changed);
}

INSTANTIATE_TEST_SUITE_P(Modes, DispatchModeTest, ::testing::Range(0, 8));

TEST(Dispatch, UnknownChannelModeRendersNothing) {
  Buffer<uint8_t> input = Pattern(4, 4, 6);
  Settings settings;
  settings.channelMode = 8;
  EXPECT_EQ(Render(input, settings).pixels, std::vector<uint8_t>(input.pixels.size(), 0));
}

TEST(Dispatch, LayerWithoutPixelsCountsAsNoLayer) {
  Buffer<uint8_t> input = Pattern(6, 3, 7);
  Settings settings;
  settings.stretchAmount = 4.0;
  Buffer<uint8_t> expected = Render(input, settings);
  Buffer<uint8_t> layer = Pattern(3, 3, 8);
  for (const ConstImage<uint8_t> l : {ConstImage<uint8_t>{nullptr, 12, 3, 3},
                                      ConstImage<uint8_t>{layer.pixels.data(), 12, 0, 3}}) {
    Buffer<uint8_t> output(6, 3);
    Dispatch<uint8_t>(input.In(), output.Out(), settings, 1.0f, &l, 0, 0);
    EXPECT_EQ(output.pixels, expected.pixels);
  }
}

TEST(Dispatch, RgbaStretchesEveryChannelFromTheUnchangedInput) {
  Buffer<uint8_t> input = Pattern(9, 4, 9);
  Settings settings;
  settings.stretchAmount = 5.0;
  settings.channelMode = 1;
  Buffer<uint8_t> rgba = Render(input, settings);
  // Each single-channel mode runs the same kernel on the same input.
  const int32_t single[4] = {5, 2, 3, 4};
  for (int c = 0; c < 4; ++c) {
    settings.channelMode = single[c];
    Buffer<uint8_t> one = Render(input, settings);
    for (int32_t y = 0; y < 4; ++y) {
      for (int32_t x = 0; x < 9; ++x) {
        ASSERT_EQ(rgba.At(x, y)[c], one.At(x, y)[c]) << "channel " << c;
      }
    }
  }
}

}  // namespace
}  // namespace morvane::reference
