// Whole kernels on small rows whose results are worked out by hand, and the records that must
// leave an image as it is.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

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
D8 GreyRow(const std::vector<int>& grey) {
  D8 img(int32_t(grey.size()), 1);
  for (int32_t x = 0; x < img.width; ++x) {
    img.at(x, 0, 0) = 255;
    for (int c = 1; c < 4; ++c)
      img.at(x, 0, c) = uint8_t(grey[size_t(x)]);
  }
  return img;
}

std::vector<int> Reds(const D8& img) {
  std::vector<int> red;
  for (int32_t x = 0; x < img.width; ++x)
    red.push_back(img.at(x, 0, 1));
  return red;
}

// Every source pixel of length `length`, whatever its intensity.
std::function<void(StretchRenderRecord&)> Length(double length) {
  return [length](StretchRenderRecord& r) { r.pixelSize = length, r.stretchAmount = 0; };
}

TEST(KernelExamples, RowsWorkedByHand) {
  struct Case {
    ChannelVariant variant;
    std::function<void(StretchRenderRecord&)> set;
    std::vector<int> row, red;
  };
  const std::vector<int> ramp = {0, 100, 200, 250, 0, 100, 200, 250};
  const Case cases[] = {
      // Black and white with every control at its default: white pixels last two pixels.
      {ChannelVariant::Luma, [](StretchRenderRecord&) {}, {0, 255, 0, 255}, {0, 255, 128, 0}},
      {ChannelVariant::Red, Length(1.0), ramp, ramp},
      {ChannelVariant::Red, Length(2.5), ramp, {0, 40, 90, 120, 160, 200, 220, 245}},
      {ChannelVariant::Red, Length(3.0), ramp, {0, 33, 67, 100, 133, 167, 200, 217}},
      {ChannelVariant::Red, Length(0.5), {0, 100, 200, 250}, {50, 225, 50, 225}},
      {ChannelVariant::Red, Length(1.5), {0, 100, 200, 250, 0, 100}, {0, 83, 133, 200, 242, 167}},
      {ChannelVariant::Red, Length(0.75), {10, 20, 30, 40}, {13, 27, 39, 13}},
      // Half of every line copied before the stretch begins.
      {ChannelVariant::Red,
       [](StretchRenderRecord& r) { Length(2.0)(r), r.startOffset = 50; },
       {0, 100, 0, 100, 0, 100, 0, 100},
       {0, 100, 0, 100, 0, 50, 100, 50}},
  };
  for (const Case& c : cases) {
    StretchRenderRecord r = DefaultRecord();
    c.set(r);
    EXPECT_EQ(Reds(RunKernel<k8>(c.variant, r, GreyRow(c.row))), c.red)
        << "row of " << c.row.size() << ", first " << c.row[0];
  }
  EXPECT_EQ(StartCount(50, 9), 5);
  EXPECT_EQ(StartCount(250, 9), 9);
  EXPECT_EQ(StartCount(-10, 9), 0);
}

TEST(KernelExamples, ConstantHalfRangeStopsStretchingAfterFiftySteps) {
  StretchRenderRecord r = DefaultRecord();
  Length(0.5)(r);
  r.distributionRange = 0.5;
  D8 in(100, 1);
  for (int32_t x = 0; x < 100; ++x)
    in.at(x, 0, 1) = uint8_t(2 * x);
  const D8 out = RunKernel<k8>(ChannelVariant::Red, r, in);
  // Steps 0 ... 50 are squeezed into 25.5 pixels, later steps have length 1.
  EXPECT_EQ(out.at(24, 0, 1), 97);   // (96 + 98) / 2
  EXPECT_EQ(out.at(25, 0, 1), 101);  // half of source 50, half of source 51
  EXPECT_EQ(out.at(99, 0, 1), 50);   // sources 124 and 125 wrap to 24 and 25
}

TEST(KernelExamples, FloatValuesPassUnclampedAndNanCountsAsZero) {
  Image<PixelDepth::Depth32f> row(4, 1);
  const float red[4] = {0.0f, 2.0f, 0.0f, -0.5f};
  for (int32_t x = 0; x < 4; ++x)
    row.at(x, 0, 0) = 1.0f, row.at(x, 0, 1) = red[x];
  const auto out = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Red, DefaultRecord(), row);
  // 2.0 counts as 1.0 for the look-up (length 2): itself, then half-way to 0.
  EXPECT_EQ(out.at(1, 0, 1), 2.0f);
  EXPECT_EQ(out.at(2, 0, 1), 1.0f);

  Image<PixelDepth::Depth32f> ramp(3, 1);
  Image<PixelDepth::Depth32f> layer(3, 1);
  for (int32_t x = 0; x < 3; ++x) {
    ramp.at(x, 0, 0) = layer.at(x, 0, 0) = layer.at(x, 0, 2) = 1.0f;
    ramp.at(x, 0, 2) = float(x) * 0.25f;
  }
  layer.at(0, 0, 2) = std::nanf("");
  StretchRenderRecord r = DefaultRecord();
  r.curveShape = 1;  // Linear Ramp Down: intensity 0 has length 2, intensity 1 length 1
  const auto driven = RunKernel<PixelDepth::Depth32f>(ChannelVariant::Green, r, ramp, ramp, &layer);
  EXPECT_EQ(driven.at(1, 0, 2), 0.125f);  // half-way from 0 to 0.25
  EXPECT_EQ(driven.at(2, 0, 2), 0.25f);
}

TEST(KernelExamples, RecordsThatLeaveTheImageAsItIs) {
  const std::function<void(StretchRenderRecord&)> cases[] = {
      [](StretchRenderRecord& r) { r.pixelSize = -3; },  // lengths not above 0 count as 1
      [](StretchRenderRecord& r) { r.stretchAmount = std::nan(""); },
      [](StretchRenderRecord& r) {
        r.distributionMode = 2, r.distributionRange = 0, r.stretchAmount = 9;
      },
      [](StretchRenderRecord& r) { r.startOffset = 100; },
  };
  const auto in = RandomImage<k8>(6, 4, 9);
  for (size_t i = 0; i < std::size(cases); ++i) {
    StretchRenderRecord r = DefaultRecord();
    cases[i](r);
    EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, r, in), in)) << "case " << i;
  }
  // Unknown popups: direction acts as Right, edge mode as Wrap, shading as None; a layer
  // without pixels leaves the intensity to the image.
  StretchRenderRecord odd = RandomRecord(4);
  StretchRenderRecord plain = odd;
  odd.direction = 9, odd.edgeMode = -2, odd.shadingMode = 17;
  plain.direction = 0, plain.edgeMode = 0, plain.shadingMode = 0;
  const D8 noLayer(0, 0);
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant::Luma, odd, in, in, &noLayer),
                         RunKernel<k8>(ChannelVariant::Luma, plain, in)));
  // An unknown channel variant writes nothing.
  const auto untouched = RandomImage<k8>(6, 4, 10);
  EXPECT_TRUE(SamePixels(RunKernel<k8>(ChannelVariant(6), plain, in, untouched), untouched));
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
  for (const auto& [direction, pixel, column] : {std::tuple{0, 0, 10}, std::tuple{1, 0, 199},
                                                 std::tuple{1, 5, 194}, std::tuple{0, 195, 199}})
    EXPECT_EQ(LayerColumn(direction, pixel), column) << direction << " at " << pixel;
}

}  // namespace
}  // namespace morvane
