#include <gtest/gtest.h>

#include <cmath>

#include "stretch/Distribution.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernelImpl.h"
#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;
using D8 = Image<PixelDepth::Depth8>;
constexpr auto k8 = PixelDepth::Depth8;

// An opaque grey row.
D8 GreyRow(std::initializer_list<int> grey) {
  D8 img(int32_t(grey.size()), 1);
  int32_t x = 0;
  for (int v : grey) {
    img.at(x, 0, 0) = 255;
    for (int c = 1; c < 4; ++c)
      img.at(x, 0, c) = uint8_t(v);
    ++x;
  }
  return img;
}

TEST(KernelExamples, BlackWhiteRowWithDefaults) {
  const D8 out = RunKernel<k8>(ChannelVariant::Luma, DefaultRecord(), GreyRow({0, 255, 0, 255}));
  EXPECT_TRUE(SamePixels(out, GreyRow({0, 255, 128, 0})));
  // A white but fully transparent pixel has length 1: nothing moves.
  D8 clear = GreyRow({0, 255, 0, 255});
  clear.at(1, 0, 0) = clear.at(3, 0, 0) = 0;
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, DefaultRecord(), clear), clear));
}

TEST(KernelExamples, HalfPixelSizeSqueezesTheLineTwice) {
  StretchRenderRecord r = DefaultRecord();
  r.pixelSize = 0.5;
  r.stretchAmount = 0;
  const D8 in = RandomImage<k8>(8, 3, 11);
  const D8 out = RunKernel<k8>(ChannelVariant::Luma, r, in);
  for (int32_t y = 0; y < 3; ++y)
    for (int32_t x = 0; x < 8; ++x)
      for (int c = 0; c < 4; ++c) {
        const int32_t s = (2 * x) % 8;
        EXPECT_EQ(out.at(x, y, c), std::round(0.5 * in.at(s + 1, y, c) + 0.5 * in.at(s, y, c)));
      }
}

TEST(KernelExamples, StartOffsets) {
  StretchRenderRecord r = DefaultRecord();
  r.startOffset = 100;
  r.imageShiftPhase = 90 * 65536;
  const auto in = RandomImage<PixelDepth::Depth16>(12, 4, 5);
  const auto shifted = Remap(in, 12, 4, [](int32_t x, int32_t y) {
    return std::pair{(x + 3) % 12, y};
  });
  EXPECT_TRUE(SamePixels(RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in), shifted));

  EXPECT_EQ(StartCount(50, 9), 5);
  EXPECT_EQ(StartCount(250, 9), 9);
  EXPECT_EQ(StartCount(-10, 9), 0);
  r = DefaultRecord();
  r.startOffset = 50;
  r.stretchAmount = 5;
  const D8 row = GreyRow({200, 10, 200, 10, 200, 10, 200, 10, 200});
  const D8 out = RunKernel<k8>(ChannelVariant::Red, r, row);
  for (int32_t x = 0; x < 5; ++x)
    EXPECT_EQ(out.at(x, 0, 1), row.at(x, 0, 1)) << x;
  EXPECT_NE(out.at(6, 0, 1), row.at(6, 0, 1));
}

TEST(Distribution, RangeAndModes) {
  EXPECT_EQ(DistributionPixels(0.5, 100), 50);
  EXPECT_EQ(DistributionPixels(1.5, 100), 175);  // A = 100 + 100, (200 - 150) * 0.5 + 150
  EXPECT_EQ(DistributionPixels(2.0, 100000), int64_t{100000} * 100000 + 100000);
  for (const auto& [mode, step, expected] :
       {std::tuple{0, 50, 3.0}, std::tuple{0, 51, 1.0}, std::tuple{1, 0, 1.0},
        std::tuple{1, 25, 2.0}, std::tuple{1, 50, 3.0}, std::tuple{2, 0, 3.0},
        std::tuple{2, 25, 2.0}, std::tuple{2, 50, 1.0}, std::tuple{7, 99, 3.0}}) {
    EXPECT_EQ(ApplyDistribution(mode, 3.0, step, 50), expected) << mode << " " << step;
  }
  EXPECT_EQ(ApplyDistribution(2, 3.0, 0, 0), 1.0);
}

TEST(KernelExamples, ConstantHalfRangeStopsStretchingAfterFiftySteps) {
  StretchRenderRecord r = DefaultRecord();
  r.distributionRange = 0.5;
  r.pixelSize = 0.5;
  r.stretchAmount = 0;
  D8 in(100, 1);
  for (int32_t x = 0; x < 100; ++x)
    in.at(x, 0, 1) = uint8_t(2 * x);
  const D8 out = RunKernel<k8>(ChannelVariant::Red, r, in);
  // Steps 0 ... 50 are squeezed into 25.5 pixels, later steps have length 1.
  EXPECT_EQ(out.at(24, 0, 1), 97);   // (96 + 98) / 2
  EXPECT_EQ(out.at(25, 0, 1), 101);  // half of source 50, half of source 51
  EXPECT_EQ(out.at(99, 0, 1), 50);   // sources 124 and 125 wrap to 24 and 25
}

TEST(KernelExamples, LinearRampDownAtRangeZeroDoesNotStretch) {
  StretchRenderRecord r = DefaultRecord();
  r.distributionMode = 2;
  r.distributionRange = 0;
  r.stretchAmount = 9;
  const auto in = RandomImage<PixelDepth::Depth32f>(9, 5, 3);
  EXPECT_TRUE(SamePixels(RunKernel<PixelDepth::Depth32f>(ChannelVariant::Luma, r, in), in));
}

// The layer column that line 0's sample at `pixel` along the line reads (layer 200 x 1,
// output 100 x 1 at origin (10, 0)).
int32_t LayerColumn(int32_t direction, int64_t pixel) {
  StretchRenderRecord r = DefaultRecord();
  r.direction = direction;
  D8 layer(200, 1);
  StretchCall call;
  PrepareStretchCall(call, r, 100, 1, 1.0f, true, 200, 1, 10, 0);
  EXPECT_EQ(call.layer.alongStep, 7782);  // (190 * 4096) / 100
  call.intensityStart = pixel * 4096;
  const detail::KernelImages<uint8_t> images{nullptr,      0,   nullptr, 0, 100, 1, layer.pixels(),
                                             layer.stride, 200, 1};
  const detail::LayerIntensitySource<uint8_t, EdgeMode::Wrap> source(call, images, nullptr, 0, 0);
  return int32_t((source.Pixel() - layer.pixels()) / 4);
}

TEST(LayerSampling, GeometryAndStartColumns) {
  EXPECT_EQ(ComputeLayerGeometry(Direction::Right, 100, 50, 200, 100, 0, 0).alongStep, 8192);
  const LayerGeometry down = ComputeLayerGeometry(Direction::Down, 100, 50, 200, 50, 10, 0);
  EXPECT_EQ(down.crossStep, 7782);
  EXPECT_EQ(down.originX, 10);
  const LayerGeometry spread = ComputeLayerGeometry(Direction::Right, 100, 50, 200, 50, 150, 0);
  EXPECT_EQ(spread.originX, 0);
  EXPECT_EQ(spread.alongStep, 8192);
  EXPECT_EQ(LayerColumn(0, 0), 10);
  EXPECT_EQ(LayerColumn(1, 0), 199);
  EXPECT_EQ(LayerColumn(1, 5), 194);
  EXPECT_EQ(LayerColumn(0, 195), 199) << "clamped into the layer";
}

TEST(Intensity, DepthSpecificCases) {
  const uint8_t red8[4] = {128, 255, 0, 0};
  EXPECT_EQ(CurveIndex(MeasureIntensity<k8, ChannelVariant::Red>(red8)), 513);
  const uint8_t clear8[4] = {0, 255, 255, 255};
  EXPECT_EQ((MeasureIntensity<k8, ChannelVariant::Luma>(clear8)), 0.0);
  const uint8_t opaque8[4] = {255, 51, 102, 153};
  EXPECT_EQ((MeasureIntensity<k8, ChannelVariant::Luma>(opaque8)), 306.0 / 765.0);
  const uint16_t red16[4] = {32768, 32768, 0, 0};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::Red>(red16)), 1.0);
  const uint16_t half16[4] = {16384, 32768, 32768, 32768};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::LumaNoAlpha>(half16)), 0.5);
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::Alpha>(half16)), 0.5);
  const float bright[4] = {1.0f, 2.0f, 0.0f, 0.0f};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth32f, ChannelVariant::Red>(bright)), 2.0);
  const float halfAlpha[4] = {0.5f, 0.0f, 0.0f, 0.75f};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth32f, ChannelVariant::Blue>(halfAlpha)), 0.375);
  for (const auto& [v, index] : {std::pair{2.0, 1023}, std::pair{1.0, 1023}, std::pair{0.5, 511},
                                 std::pair{-0.5, 0}, std::pair{std::nan(""), 0}}) {
    EXPECT_EQ(CurveIndex(v), index) << v;
  }
}

TEST(KernelExamples, FloatValuesPassThroughUnclamped) {
  Image<PixelDepth::Depth32f> row(4, 1);
  const float red[4] = {0.0f, 2.0f, 0.0f, -0.5f};
  for (int32_t x = 0; x < 4; ++x)
    row.at(x, 0, 0) = 1.0f, row.at(x, 0, 1) = red[x];
  const auto out = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Red, DefaultRecord(), row);
  // 2.0 counts as 1.0 for the look-up (length 2): itself, then half-way to 0.
  EXPECT_EQ(out.at(1, 0, 1), 2.0f);
  EXPECT_EQ(out.at(2, 0, 1), 1.0f);
}

TEST(KernelGuards, NanIntensityCountsAsZero) {
  Image<PixelDepth::Depth32f> row(3, 1);
  Image<PixelDepth::Depth32f> layer(3, 1);
  for (int32_t x = 0; x < 3; ++x) {
    row.at(x, 0, 0) = layer.at(x, 0, 0) = layer.at(x, 0, 2) = 1.0f;
    row.at(x, 0, 2) = float(x) * 0.25f;
  }
  layer.at(0, 0, 2) = std::nanf("");
  StretchRenderRecord r = DefaultRecord();
  r.curveShape = 1;  // Linear Ramp Down: intensity 0 has length 2, intensity 1 length 1
  const auto out = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Green, r, row, row, &layer);
  EXPECT_EQ(out.at(1, 0, 2), 0.125f);  // half-way from 0 to 0.25
  EXPECT_EQ(out.at(2, 0, 2), 0.25f);
}

TEST(KernelGuards, OutOfRangeRecordValues) {
  const auto in = RandomImage<k8>(6, 4, 9);
  StretchRenderRecord r = DefaultRecord();
  r.pixelSize = -3;  // lengths not above 0 count as 1
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, r, in), in));
  r = DefaultRecord();
  r.stretchAmount = std::nan("");
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, r, in), in));

  // Unknown popups: direction acts as Right, edge mode as Wrap, shading as None.
  StretchRenderRecord odd = RandomRecord(4);
  StretchRenderRecord plain = odd;
  odd.direction = 9, odd.edgeMode = -2, odd.shadingMode = 17;
  plain.direction = 0, plain.edgeMode = 0, plain.shadingMode = 0;
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, odd, in),
                         RunKernel<k8>(ChannelVariant::Luma, plain, in)));

  // No pixels: nothing is written. A layer kernel without a layer reads the image.
  D8 empty(0, 3);
  RunKernel<k8>(ChannelVariant::Luma, r, empty);
  EXPECT_EQ(SelectStretchKernel<k8>(IntensityOrigin::SelfIntensity, ChannelVariant(6)), nullptr);
  const D8 noLayer(0, 0);
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, odd, in, in, &noLayer),
                         RunKernel<k8>(ChannelVariant::Luma, odd, in)));
}

}  // namespace
}  // namespace morvane
