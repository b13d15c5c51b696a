#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "stretch/LineResampler.h"

namespace morvane {
namespace {

// Resamples one 8-bit channel of `source` (wrapping beyond its end), every step of `length`,
// into an output line of `outputLength` pixels with multipliers 1.
std::vector<int> Resample(const std::vector<double>& source, double length, size_t outputLength) {
  std::vector<uint8_t> pixels(4 * outputLength, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Red> cursor(pixels.data(), 4,
                                                               int32_t(outputLength));
  LineResampler<double> resampler;
  resampler.ResetLine();
  const size_t n = source.size();
  for (size_t j = 0;
       !resampler.Step(length, {source[j % n]}, {source[(j + 1) % n]}, {1.0}, {1.0}, cursor); ++j) {
  }
  std::vector<int> red;
  for (size_t i = 0; i < outputLength; ++i)
    red.push_back(pixels[4 * i + 1]);
  return red;
}

TEST(LineResampler, WorkedLines) {
  const std::vector<double> ramp = {0, 100, 200, 250};
  EXPECT_EQ(Resample(ramp, 1.0, 6), (std::vector<int>{0, 100, 200, 250, 0, 100}));
  EXPECT_EQ(Resample(ramp, 2.5, 8), (std::vector<int>{0, 40, 90, 120, 160, 200, 220, 245}));
  EXPECT_EQ(Resample(ramp, 3.0, 8), (std::vector<int>{0, 33, 67, 100, 133, 167, 200, 217}));
  EXPECT_EQ(Resample(ramp, 0.5, 4), (std::vector<int>{50, 225, 50, 225}));
  EXPECT_EQ(Resample(ramp, 1.5, 6), (std::vector<int>{0, 83, 133, 200, 242, 167}));
  EXPECT_EQ(Resample({10, 20, 30, 40}, 0.75, 4), (std::vector<int>{13, 27, 39, 13}));
}

struct CountingSink {
  int emitted = 0;
  int capacity = 100;
  double last = 0.0;
  double put = 0.0;
  bool Emit(double v) {
    last = v;
    return ++emitted == capacity;
  }
  void Put(double v) { put = v; }
  void Skip(int32_t count) {
    if (count == 1) last = put, ++emitted;
  }
  bool Full() const { return emitted == capacity; }
};

TEST(LineResampler, ExactBoundaryLeavesNoCarry) {
  LineResampler<double> r;
  CountingSink sink;
  r.ResetLine();
  r.Step(0.25, {40}, {80}, {1}, {1}, sink);
  EXPECT_EQ(r.carry(), 10.0);
  r.Step(0.75, {80}, {0}, {1}, {1}, sink);
  EXPECT_EQ(sink.emitted, 1);
  EXPECT_EQ(sink.last, 70.0);
  EXPECT_EQ(r.carry(), 0.0);
  EXPECT_EQ(r.linePosition(), 1.0);
}

TEST(LineResampler, RemainderThreshold) {
  for (const auto& [length, emitted] : {std::pair{1.999995, 2}, std::pair{1.99998, 1}}) {
    LineResampler<double> r;
    CountingSink sink;
    r.ResetLine();
    r.Step(length, {100}, {100}, {1}, {1}, sink);
    EXPECT_EQ(sink.emitted, emitted) << length;
    EXPECT_EQ(r.carry() > 0.0, emitted == 1) << length;
  }
}

TEST(LineResampler, LineFillingMidSpanDropsTheRest) {
  LineResampler<double> r;
  CountingSink sink;
  sink.capacity = 2;
  r.ResetLine();
  EXPECT_TRUE(r.Step(5.0, {0}, {100}, {1}, {1}, sink));
  EXPECT_EQ(sink.emitted, 2);
  EXPECT_EQ(sink.last, 20.0);
}

TEST(LineResampler, MultipliersWeightCurrentAndNext) {
  // Current shaded by 0.5, next by 1: V(u) = ((200 - 50) u) / 3 + 50.
  std::vector<uint8_t> pixels(12, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Alpha> cursor(pixels.data(), 4, 3);
  LineResampler<double> r;
  r.ResetLine();
  EXPECT_TRUE(r.Step(3.0, {100}, {200}, {0.5}, {1.0}, cursor));
  EXPECT_EQ((std::vector<int>{pixels[0], pixels[4], pixels[8], pixels[1]}),
            (std::vector<int>{50, 100, 150, 0}));
}

TEST(Conversion, RoundsHalfAwayFromZeroAndSaturates) {
  for (const auto& [value, depth8, depth16] :
       {std::tuple{0.49999999999999994, 0, 0}, std::tuple{2.5, 3, 3}, std::tuple{254.5, 255, 255},
        std::tuple{256.7, 255, 257}, std::tuple{32767.5, 255, 32768},
        std::tuple{40000.0, 255, 32768}, std::tuple{-3.0, 0, 0}, std::tuple{std::nan(""), 0, 0}}) {
    EXPECT_EQ(DepthTraits<PixelDepth::Depth8>::Store(value), depth8) << value;
    EXPECT_EQ(DepthTraits<PixelDepth::Depth16>::Store(value), depth16) << value;
  }
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::Store(-2.5), -2.5f);
  EXPECT_EQ(DepthTraits<PixelDepth::Depth32f>::Store(0.1), 0.1f);

  // A carry overshooting white (multiplier above 1) saturates instead of wrapping. (The buffer
  // has room for a second pixel that a one-pixel line never writes.)
  std::vector<uint8_t> pixels(8, 0);
  OutputCursor<PixelDepth::Depth8, ChannelVariant::Red> cursor(pixels.data(), 4, 1);
  LineResampler<double> r;
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
  EXPECT_EQ((std::vector<int>(pixels.begin(), pixels.end())),
            (std::vector<int>{10922, 1, 2, 3}));  // 32768 / 3 = 10922.67
}

}  // namespace
}  // namespace morvane
