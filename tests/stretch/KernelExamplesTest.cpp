#include <gtest/gtest.h>

#include <cmath>

#include "stretch/Distribution.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernelImpl.h"
#include "tests/stretch/KernelRunner.h"

namespace morvane {
namespace {

using namespace testing_support;
using D8 = Image<PixelDepth::Depth8>;

D8 Row8(std::initializer_list<int> grey) {
  D8 img(static_cast<int32_t>(grey.size()), 1);
  int32_t x = 0;
  for (int v : grey) {
    img.at(x, 0, 0) = 255;
    for (int c = 1; c < 4; ++c) img.at(x, 0, c) = static_cast<uint8_t>(v);
    ++x;
  }
  return img;
}

TEST(KernelExamples, BlackWhiteRowWithDefaults) {
  const D8 out = RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, DefaultRecord(),
                                               Row8({0, 255, 0, 255}));
  const int expected[] = {0, 255, 128, 0};
  for (int32_t x = 0; x < 4; ++x) {
    EXPECT_EQ(out.at(x, 0, 0), 255);
    for (int c = 1; c < 4; ++c) EXPECT_EQ(out.at(x, 0, c), expected[x]) << x << "/" << c;
  }
}

TEST(KernelExamples, TransparentPixelIsNotStretched) {
  // White but fully transparent: length 1, so the row is copied unchanged.
  D8 row = Row8({255, 0, 255, 0});
  row.at(0, 0, 0) = 0;
  row.at(2, 0, 0) = 0;
  const D8 out = RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, DefaultRecord(), row);
  EXPECT_TRUE(SamePixels(out, row));
}

TEST(KernelExamples, HalfPixelSizeSqueezesTheLineTwice) {
  StretchRenderRecord r = DefaultRecord();
  r.pixelSize = 0.5;
  r.stretchAmount = 0;
  const D8 in = RandomImage<PixelDepth::Depth8>(8, 3, 11);
  const D8 out = RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, r, in);
  for (int32_t y = 0; y < 3; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      const int32_t s = (2 * x) % 8;
      for (int c = 0; c < 4; ++c) {
        const double mean = 0.5 * in.at(s + 1, y, c) + 0.5 * in.at(s, y, c);
        EXPECT_EQ(out.at(x, y, c), std::round(mean)) << x << "," << y << "/" << c;
      }
    }
  }
}

TEST(KernelExamples, FullStartOffsetIsAShiftedCopy) {
  StretchRenderRecord r = DefaultRecord();
  r.startOffset = 100;
  r.imageShiftPhase = 90 * 65536;
  const auto in = RandomImage<PixelDepth::Depth16>(12, 4, 5);
  const auto out = RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in);
  for (int32_t y = 0; y < 4; ++y)
    for (int32_t x = 0; x < 12; ++x)
      for (int c = 0; c < 4; ++c) ASSERT_EQ(out.at(x, y, c), in.at((x + 3) % 12, y, c));
}

TEST(KernelExamples, HalfStartOffsetOfNineCopiesFive) {
  EXPECT_EQ(StartCount(50, 9), 5);
  EXPECT_EQ(StartCount(100, 9), 9);
  EXPECT_EQ(StartCount(250, 9), 9);
  EXPECT_EQ(StartCount(-10, 9), 0);
  StretchRenderRecord r = DefaultRecord();
  r.startOffset = 50;
  r.stretchAmount = 5;
  D8 in = Row8({200, 10, 200, 10, 200, 10, 200, 10, 200});
  const D8 out = RunKernel<PixelDepth::Depth8>(ChannelVariant::Red, r, in);
  for (int32_t x = 0; x < 5; ++x) EXPECT_EQ(out.at(x, 0, 1), in.at(x, 0, 1)) << x;
  EXPECT_NE(out.at(6, 0, 1), in.at(6, 0, 1));
}

TEST(Distribution, Lengths) {
  EXPECT_EQ(DistributionPixels(0.5, 100), 50);
  EXPECT_EQ(DistributionPixels(1.5, 100), 175);  // A = 100 + 100, (200 - 150) * 0.5 + 150
  EXPECT_EQ(DistributionPixels(2.0, 100), 10100);
  EXPECT_EQ(DistributionPixels(2.0, 100000), int64_t{100000} * 100000 + 100000);
  EXPECT_EQ(DistributionPixels(std::nan(""), 100), 0);
}

struct DistributionCase {
  int32_t mode;
  int64_t step;
  double expected;
};

TEST(Distribution, ModesPullTowardsOne) {
  for (const DistributionCase& c :
       {DistributionCase{0, 50, 3.0}, DistributionCase{0, 51, 1.0}, DistributionCase{1, 0, 1.0},
        DistributionCase{1, 25, 2.0}, DistributionCase{1, 50, 3.0}, DistributionCase{2, 0, 3.0},
        DistributionCase{2, 25, 2.0}, DistributionCase{2, 50, 1.0}, DistributionCase{7, 99, 3.0}}) {
    EXPECT_EQ(ApplyDistribution(c.mode, 3.0, c.step, 50), c.expected)
        << "mode " << c.mode << " step " << c.step;
  }
  EXPECT_EQ(ApplyDistribution(2, 3.0, 0, 0), 1.0);
  EXPECT_EQ(GuardStretchLength(0.0), 1.0);
  EXPECT_EQ(GuardStretchLength(-2.0), 1.0);
  EXPECT_EQ(GuardStretchLength(std::nan("")), 1.0);
  EXPECT_EQ(GuardStretchLength(0.01), 0.01);
}

TEST(KernelExamples, ConstantHalfRangeStopsStretchingAfterFiftySteps) {
  StretchRenderRecord r = DefaultRecord();
  r.distributionRange = 0.5;
  r.pixelSize = 0.5;
  r.stretchAmount = 0;
  // Steps 0 ... 50 are squeezed to 0.5 (25.5 pixels), then lengths are 1.
  D8 in(100, 1);
  for (int32_t x = 0; x < 100; ++x) {
    in.at(x, 0, 0) = 255;
    in.at(x, 0, 1) = static_cast<uint8_t>(2 * x);
  }
  const D8 out = RunKernel<PixelDepth::Depth8>(ChannelVariant::Red, r, in);
  EXPECT_EQ(out.at(0, 0, 1), 1);  // (0 + 2) / 2
  EXPECT_EQ(out.at(24, 0, 1), 97);
  EXPECT_EQ(out.at(25, 0, 1), 101);  // half of source 50, half of source 51
  EXPECT_EQ(out.at(26, 0, 1), 104);  // 51 interpolated towards 52, then half of 52
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

TEST(LayerGeometry, StepsAndOrigins) {
  const LayerGeometry twice = ComputeLayerGeometry(Direction::Right, 100, 50, 200, 100, 0, 0);
  EXPECT_EQ(twice.alongStep, 8192);
  EXPECT_EQ(twice.crossStep, 8192);
  const LayerGeometry inside = ComputeLayerGeometry(Direction::Right, 100, 50, 200, 50, 10, 0);
  EXPECT_EQ(inside.alongStep, 7782);
  EXPECT_EQ(inside.crossStep, 4096);
  EXPECT_EQ(inside.originX, 10);
  const LayerGeometry down = ComputeLayerGeometry(Direction::Down, 100, 50, 200, 50, 10, 0);
  EXPECT_EQ(down.alongStep, 4096);
  EXPECT_EQ(down.crossStep, 7782);
  // Not inside the layer at its origin: the whole layer is spread over the output.
  const LayerGeometry spread = ComputeLayerGeometry(Direction::Right, 100, 50, 200, 50, 150, 0);
  EXPECT_EQ(spread.originX, 0);
  EXPECT_EQ(spread.alongStep, 8192);
  const LayerGeometry smaller = ComputeLayerGeometry(Direction::Up, 100, 50, 30, 20, 0, 0);
  EXPECT_EQ(smaller.alongStep, (20 * 4096) / 50);
}

// The layer pixel the first intensity sample of line 0 reads, as a column.
int32_t FirstLayerColumn(int32_t direction, int64_t startPixels) {
  StretchRenderRecord r = DefaultRecord();
  r.direction = direction;
  D8 layer(200, 1);
  StretchCall call;
  PrepareStretchCall(call, r, 100, 1, 1.0f, true, 200, 1, 10, 0);
  call.intensityStart = startPixels * 4096;
  const detail::KernelImages<uint8_t> images{nullptr, 0,   nullptr, 0,   100,
                                             1,       layer.pixels(), layer.stride, 200, 1};
  const detail::LayerIntensitySource<uint8_t, EdgeMode::Wrap> source(call, images, nullptr, 0, 0);
  return static_cast<int32_t>((source.Pixel() - layer.pixels()) / 4);
}

TEST(LayerSampling, LineStartsAtOriginForRightAndFarEdgeForLeft) {
  EXPECT_EQ(FirstLayerColumn(0, 0), 10);
  EXPECT_EQ(FirstLayerColumn(1, 0), 199);
  EXPECT_EQ(FirstLayerColumn(1, 5), 194);
  // Counted from a positive origin, a late position would pass the far edge: it is clamped.
  EXPECT_EQ(FirstLayerColumn(0, 195), 199);
}

TEST(Intensity, DepthSpecificCases) {
  const uint8_t red8[4] = {128, 255, 0, 0};
  const double v8 = MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Red>(red8);
  EXPECT_EQ(v8, 128.0 * (255.0 / 255.0) / 255.0);
  EXPECT_EQ(CurveIndex(v8), 513);
  const uint8_t clear8[4] = {0, 255, 255, 255};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Luma>(clear8)), 0.0);
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Alpha>(clear8)), 0.0);
  const uint8_t opaque8[4] = {255, 51, 102, 153};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Luma>(opaque8)), 306.0 / 765.0);
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Blue>(opaque8)), 153.0 / 255.0);

  const uint16_t red16[4] = {32768, 32768, 0, 0};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::Red>(red16)), 1.0);
  const uint16_t half16[4] = {16384, 32768, 32768, 32768};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::LumaNoAlpha>(half16)), 0.5);
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth16, ChannelVariant::Alpha>(half16)), 0.5);

  const float bright[4] = {1.0f, 2.0f, 0.0f, 0.0f};
  const double vf = MeasureIntensity<PixelDepth::Depth32f, ChannelVariant::Red>(bright);
  EXPECT_EQ(vf, 2.0);
  EXPECT_EQ(CurveIndex(vf), 1023);
  const float halfAlpha[4] = {0.5f, 0.0f, 0.0f, 0.75f};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth32f, ChannelVariant::Blue>(halfAlpha)), 0.375);
  EXPECT_EQ(CurveIndex(-0.5), 0);
  EXPECT_EQ(CurveIndex(std::nan("")), 0);
  EXPECT_EQ(CurveIndex(0.5), 511);
}

TEST(KernelExamples, FloatValuesPassThroughUnclamped) {
  Image<PixelDepth::Depth32f> row(4, 1);
  const float red[4] = {0.0f, 2.0f, 0.0f, -0.5f};
  for (int32_t x = 0; x < 4; ++x) {
    row.at(x, 0, 0) = 1.0f;
    row.at(x, 0, 1) = red[x];
  }
  const auto out = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Red, DefaultRecord(), row);
  // 2.0 counts as 1.0 for the look-up (length 2): itself, then half-way to 0.
  EXPECT_EQ(out.at(0, 0, 1), 0.0f);
  EXPECT_EQ(out.at(1, 0, 1), 2.0f);
  EXPECT_EQ(out.at(2, 0, 1), 1.0f);
  EXPECT_EQ(out.at(3, 0, 1), 0.0f);
}

TEST(KernelGuards, NanIntensityCountsAsZero) {
  Image<PixelDepth::Depth32f> row(3, 1);
  Image<PixelDepth::Depth32f> layer(3, 1);
  for (int32_t x = 0; x < 3; ++x) {
    row.at(x, 0, 0) = 1.0f;
    row.at(x, 0, 2) = static_cast<float>(x) * 0.25f;
    layer.at(x, 0, 0) = 1.0f;
    layer.at(x, 0, 2) = 1.0f;
  }
  layer.at(0, 0, 2) = std::nanf("");
  StretchRenderRecord r = DefaultRecord();
  r.curveShape = 1;  // Linear Ramp Down: intensity 0 has length 2, intensity 1 length 1
  const auto out = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Green, r, row, row, &layer);
  EXPECT_EQ(out.at(0, 0, 2), 0.0f);
  EXPECT_EQ(out.at(1, 0, 2), 0.125f);  // half-way from 0 to 0.25
  EXPECT_EQ(out.at(2, 0, 2), 0.25f);
}

TEST(KernelGuards, OutOfRangeRecordValuesStillRender) {
  const auto in = RandomImage<PixelDepth::Depth8>(6, 4, 9);
  StretchRenderRecord r = DefaultRecord();
  r.pixelSize = -3;  // every length below zero counts as 1
  EXPECT_TRUE(SamePixels(RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, r, in), in));
  r = DefaultRecord();
  r.stretchAmount = std::nan("");
  EXPECT_TRUE(SamePixels(RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, r, in), in));

  // Unknown popups: direction acts as Right, edge mode as Wrap, shading as None.
  StretchRenderRecord odd = RandomRecord(4);
  odd.direction = 9;
  odd.edgeMode = -2;
  odd.shadingMode = 17;
  StretchRenderRecord plain = odd;
  plain.direction = 0;
  plain.edgeMode = 0;
  plain.shadingMode = 0;
  EXPECT_TRUE(SamePixels(RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, odd, in),
                         RunKernel<PixelDepth::Depth8>(ChannelVariant::Luma, plain, in)));
}

TEST(KernelGuards, ZeroSizedImageRendersNothing) {
  D8 in(0, 3);
  D8 out(0, 3);
  const auto kernel =
      SelectStretchKernel<PixelDepth::Depth8>(IntensityOrigin::SelfIntensity, ChannelVariant::Luma);
  kernel(out.pixels(), 0, in.pixels(), 0, 0, 3, DefaultRecord(), 1.0f, nullptr, 0, 0, 0, 0, 0);
  kernel(out.pixels(), 8, in.pixels(), 8, 2, 0, DefaultRecord(), 1.0f, nullptr, 0, 0, 0, 0, 0);
  EXPECT_EQ(out.data.back(), D8::kSentinel);
  EXPECT_EQ(SelectStretchKernel<PixelDepth::Depth8>(IntensityOrigin::SelfIntensity,
                                                    static_cast<ChannelVariant>(6)),
            nullptr);
}

TEST(KernelGuards, LayerKernelWithoutLayerPixelsReadsTheImage) {
  const auto in = RandomImage<PixelDepth::Depth16>(7, 3, 21);
  const StretchRenderRecord r = RandomRecord(8);
  const auto self = RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in);
  auto viaLayer = in;
  SelectStretchKernel<PixelDepth::Depth16>(IntensityOrigin::LayerIntensity, ChannelVariant::Luma)(
      viaLayer.pixels(), viaLayer.stride, in.pixels(), in.stride, 7, 3, r, 1.0f, in.pixels(), 0, 3,
      in.stride, 0, 0);
  EXPECT_TRUE(SamePixels(self, viaLayer));
}

}  // namespace
}  // namespace morvane
