#include <gtest/gtest.h>

#include <cstdint>
#include <cmath>
#include <vector>

#include "stretch/LineResampler.h"

namespace morvane {
namespace {

// Resamples one 8-bit channel: source values (wrapping beyond their end) with one length per
// step, into an output line of `outputLength` pixels, multipliers 1.
std::vector<int> Resample(const std::vector<double>& source, const std::vector<double>& lengths,
                          int32_t outputLength) {
  std::vector<uint8_t> pixels(4 * outputLength, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Red> cursor(pixels.data(), 4, outputLength);
  LineResampler<1> resampler;
  resampler.ResetLine();
  const size_t n = source.size();
  for (size_t j = 0;; ++j) {
    const double length = lengths[j % lengths.size()];
    if (resampler.Step(length, {source[j % n]}, {source[(j + 1) % n]}, {1.0}, {1.0}, cursor)) break;
  }
  std::vector<int> red;
  for (int32_t i = 0; i < outputLength; ++i) red.push_back(pixels[4 * i + 1]);
  return red;
}

struct ResampleCase {
  const char* name;
  std::vector<double> source;
  double length;
  std::vector<int> expected;
};

class ResampleTest : public testing::TestWithParam<ResampleCase> {};

TEST_P(ResampleTest, WorkedLine) {
  const ResampleCase& c = GetParam();
  EXPECT_EQ(Resample(c.source, {c.length}, static_cast<int32_t>(c.expected.size())), c.expected);
}

const std::vector<double> kRamp = {0, 100, 200, 250};

INSTANTIATE_TEST_SUITE_P(
    WorkedExamples, ResampleTest,
    testing::Values(
        ResampleCase{"Unit", kRamp, 1.0, {0, 100, 200, 250, 0, 100}},
        ResampleCase{"TwoAndAHalf", kRamp, 2.5, {0, 40, 90, 120, 160, 200, 220, 245}},
        ResampleCase{"Three", kRamp, 3.0, {0, 33, 67, 100, 133, 167, 200, 217}},
        ResampleCase{"Half", kRamp, 0.5, {50, 225, 50, 225}},
        ResampleCase{"OneAndAHalf", kRamp, 1.5, {0, 83, 133, 200, 242, 167}},
        ResampleCase{"ThreeQuarters", {10, 20, 30, 40}, 0.75, {13, 27, 39, 13}}),
    [](const testing::TestParamInfo<ResampleCase>& info) { return std::string(info.param.name); });

// Counts emitted pixels and keeps the last one.
struct CountingSink {
  int emitted = 0;
  int capacity = 100;
  double last = 0.0;
  bool Emit(const ChannelValues<1>& v) {
    ++emitted;
    last = v[0];
    return emitted == capacity;
  }
};

TEST(LineResampler, ExactBoundaryLeavesNoCarry) {
  LineResampler<1> r;
  CountingSink sink;
  r.ResetLine();
  EXPECT_FALSE(r.Step(0.25, {40}, {80}, {1}, {1}, sink));
  EXPECT_EQ(sink.emitted, 0);
  EXPECT_EQ(r.carry()[0], 10.0);
  EXPECT_FALSE(r.Step(0.75, {80}, {0}, {1}, {1}, sink));
  EXPECT_EQ(sink.emitted, 1);
  EXPECT_EQ(sink.last, 70.0);
  EXPECT_EQ(r.carry()[0], 0.0);
  EXPECT_EQ(r.linePosition(), 1.0);
}

TEST(LineResampler, RemainderThreshold) {
  {
    LineResampler<1> r;
    CountingSink sink;
    r.ResetLine();
    r.Step(1.999995, {100}, {100}, {1}, {1}, sink);
    EXPECT_EQ(sink.emitted, 2) << "a remainder of 0.999995 is written at once";
    EXPECT_EQ(r.carry()[0], 0.0);
    EXPECT_EQ(r.linePosition(), 2.0);
  }
  {
    LineResampler<1> r;
    CountingSink sink;
    r.ResetLine();
    r.Step(1.99998, {100}, {100}, {1}, {1}, sink);
    EXPECT_EQ(sink.emitted, 1) << "a remainder of 0.99998 is carried";
    EXPECT_DOUBLE_EQ(r.carry()[0], 100 * 0.99998);
  }
}

TEST(LineResampler, LineFillingMidSpanDropsTheRest) {
  LineResampler<1> r;
  CountingSink sink;
  sink.capacity = 2;
  r.ResetLine();
  EXPECT_TRUE(r.Step(5.0, {0}, {100}, {1}, {1}, sink));
  EXPECT_EQ(sink.emitted, 2);
  EXPECT_EQ(sink.last, 20.0);
}

TEST(LineResampler, CopiedPixelsAdvanceThePosition) {
  LineResampler<1> r;
  CountingSink sink;
  r.ResetLine();
  r.AdvanceCopied();
  r.AdvanceCopied();
  r.Step(0.5, {10}, {20}, {1}, {1}, sink);
  EXPECT_EQ(r.linePosition(), 2.5);
}

TEST(LineResampler, MultipliersWeightCurrentAndNext) {
  // Length 3 from 100 to 200, current shaded by 0.5, next by 1: V(u) = ((200 - 50) u) / 3 + 50.
  std::vector<uint8_t> pixels(12, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Alpha> cursor(pixels.data(), 4, 3);
  LineResampler<1> r;
  r.ResetLine();
  EXPECT_TRUE(r.Step(3.0, {100}, {200}, {0.5}, {1.0}, cursor));
  EXPECT_EQ(pixels[0], 50);
  EXPECT_EQ(pixels[4], 100);
  EXPECT_EQ(pixels[8], 150);
  EXPECT_EQ(pixels[1], 0) << "only the variant's channel is written";
}

TEST(LineResampler, ChannelsShareDecisionsButNotValues) {
  std::vector<uint8_t> pixels(8, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Luma> cursor(pixels.data(), 4, 2);
  LineResampler<4> r;
  r.ResetLine();
  r.Step(2.0, {255, 0, 100, 200}, {255, 100, 0, 0}, {1, 0.5, 0.5, 0.5}, {1, 1, 1, 1}, cursor);
  EXPECT_EQ((std::vector<int>(pixels.begin(), pixels.end())),
            (std::vector<int>{255, 0, 50, 100, 255, 50, 25, 50}));
}

struct StoreCase {
  double value;
  int depth8;
  int depth16;
};

TEST(Conversion, RoundsHalfAwayFromZeroAndSaturates) {
  for (const StoreCase& c :
       {StoreCase{0.0, 0, 0}, StoreCase{0.49999999999999994, 0, 0}, StoreCase{0.5, 1, 1},
        StoreCase{2.5, 3, 3}, StoreCase{254.5, 255, 255}, StoreCase{255.49, 255, 255},
        StoreCase{256.7, 255, 257}, StoreCase{32767.5, 255, 32768},
        StoreCase{32768.4, 255, 32768}, StoreCase{40000.0, 255, 32768}, StoreCase{-0.4, 0, 0},
        StoreCase{-3.0, 0, 0}, StoreCase{std::nan(""), 0, 0}}) {
    EXPECT_EQ(DepthTraits<PixelDepth::Depth8>::Store(c.value), c.depth8) << c.value;
    EXPECT_EQ(DepthTraits<PixelDepth::Depth16>::Store(c.value), c.depth16) << c.value;
  }
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::Store(1.75), 1.75f);
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::Store(-2.5), -2.5f);
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::Store(0.1), 0.1f);
}

TEST(Conversion, EmittedValueAboveWhiteSaturates) {
  // A carry that overshoots white (as the cut line fraction can produce) must not wrap.
  std::vector<uint8_t> pixels(4, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Red> cursor(pixels.data(), 4, 1);
  LineResampler<1> r;
  r.ResetLine();
  r.Step(0.9, {255}, {255}, {1.2}, {1}, cursor);
  EXPECT_TRUE(r.Step(0.5, {255}, {255}, {1.2}, {1}, cursor));
  EXPECT_EQ(pixels[1], 255);
}

TEST(Conversion, StartCopyTruncatesFadedAlpha) {
  std::vector<uint16_t> pixels(4, 7);
  const uint16_t source[4] = {32768, 1, 2, 3};
  OutputCursor<PixelDepth::Depth16, ChannelVariant::Luma> cursor(pixels.data(), 4, 1);
  EXPECT_TRUE(cursor.Copy(source, 1.0 / 3.0));
  EXPECT_EQ(pixels[0], 10922);  // 32768 / 3 = 10922.67, truncated
  EXPECT_EQ(pixels[1], 1);
  EXPECT_EQ(pixels[3], 3);
  EXPECT_EQ(DepthTraits<PixelDepth::Depth8>::ScaleAlpha(255, 0.5), 127);
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::ScaleAlpha(0.75f, 0.5), 0.375f);
}

}  // namespace
}  // namespace morvane
