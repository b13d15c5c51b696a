// The stages of a line, each against its worked values: stretch curve, edge modes, image shift,
// shading, distribution and the intensity of a pixel.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

#include "params/ControlTable.h"
#include "stretch/Distribution.h"
#include "stretch/EdgeModes.h"
#include "stretch/ImageShift.h"
#include "stretch/PixelTraits.h"
#include "stretch/Shading.h"
#include "stretch/StretchCurve.h"
#include "stretch/StretchCurveTable.h"

namespace morvane {
namespace {

using S = CurveShape;
using E = EdgeMode;
constexpr CurveFlags kRounded = CurveFlags::None;
constexpr int32_t kDegree = 65536;

TEST(StretchCurve, WorkedValues) {
  const std::tuple<S, int32_t, double, double, CurveFlags, double> cases[] = {
      {S::LinearRampUp, 1, 1, 0, kRounded, 0.0009775},
      {S::LinearRampUp, 1, 1, 0, CurveFlags::NoRounding, 1.0 / 1023.0},
      {S::LinearRampUp, 1, 1, 1, kRounded, 1.0009775},
      {S::TriangleWave, 511, 1, 0, kRounded, 0.9990225},
      {S::TriangleWave, 512, 1, 0, kRounded, 0.9990225},
      {S::SineWave, 0, 2, 0, kRounded, 1.0},
      {S::SineWave, 256, 2, 0, kRounded, 2.0},
      {S::SineWave, 1023, 2, 0, CurveFlags::SineInclusive, 0.9938641},  // ignored in double
      {S::ExpDown, 1023, 2, 1, kRounded, 1.0},
      {static_cast<S>(9), 300, 5, 1.25, kRounded, 1.25},  // unknown shape: the offset only
  };
  for (const auto& [shape, i, amplitude, offset, flags, expected] : cases)
    EXPECT_EQ(CurveValue(shape, i, 1024, amplitude, offset, flags), expected)
        << int(shape) << " at " << i;
  EXPECT_EQ(CurveValueF(S::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded), 1.0009775f);
  EXPECT_EQ(CurveValueF(S::SineWave, 1023, 1024, 2.0f, 0.0f, CurveFlags::SineInclusive), 1.0f);
}

TEST(StretchCurve, SmoothingBlendsTheMeansOfTwoRadii) {
  // Linear Ramp Up, amplitude 1, offset 1 around sample 0: neighbours wrap to 1023, 1022, ...
  const double mean3 = (1.0 + 2.0 + 1.0009775) / 3.0;
  const double mean5 = (1.0 + 1.9990225 + 2.0 + 1.0009775 + 1.0019550) / 5.0;
  for (const auto& [smoothness, expected] :
       {std::pair{0.0f, 1.0}, std::pair{1.0f, 1.0}, std::pair{0.999f, 1.3333255118},
        std::pair{2.0f, mean3}, std::pair{1.5f, 0.5 * mean3 + 0.5 * mean5}})
    EXPECT_NEAR(SmoothedCurveValue(S::LinearRampUp, 0, 1024, 1, 1, smoothness, kRounded), expected,
                1e-9)
        << smoothness;
  // Beyond the curve, smoothness is held at n - 1.
  EXPECT_EQ(SmoothedCurveValue(S::ExpUp, 5, 1024, 3, 1, 5000.0f, kRounded),
            SmoothedCurveValue(S::ExpUp, 5, 1024, 3, 1, 1023.0f, kRounded));
  // The single-precision twin sums and blends in float.
  const float outer =
      ((1.0f + 2.0f) + CurveValueF(S::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded)) / 3.0f;
  EXPECT_EQ(SmoothedCurveValueF(S::LinearRampUp, 0, 1024, 1.0f, 1.0f, 0.999f, kRounded),
            1.0f * (1.0f - 0.999f) + outer * 0.999f);
}

TEST(StretchCurve, TableRotatesWithThePhaseAndScalesWithIntensity) {
  // One phase step is 23592960 / 1024 = 23040; -1 step lands one lower than a plain modulo.
  for (const auto& [phase, sampleZero] :
       {std::pair{0, 0}, std::pair{23040, 1}, std::pair{-23040, 1022}, std::pair{-23592960, 1023},
        std::pair{23592960, 0}, std::pair{5898240, 256}}) {
    StretchRenderRecord r = DefaultRecord();
    r.curvePhase = phase;
    const StretchCurveTable t = BuildStretchCurveTable(r);
    EXPECT_EQ(t[sampleZero], 1.0) << phase;
    EXPECT_EQ(t[(sampleZero + 1) % 1024], 1.0009775) << phase;
    EXPECT_EQ(t[(sampleZero + 1023) % 1024], 2.0) << phase;
  }
  StretchRenderRecord r = DefaultRecord();
  r.curveShape = int32_t(S::SineWave), r.stretchAmount = 4, r.pixelSize = 0.5, r.intensity = 80;
  r.curveSmoothness = 1.3;
  const StretchCurveTable t = BuildStretchCurveTable(r);
  const auto smoothness = static_cast<float>(1.3 * 10.778947830200195);
  for (int32_t i : {0, 13, 1023})
    EXPECT_EQ(t[i], SmoothedCurveValue(S::SineWave, i, 1024, 0.8 * 4, (0.5 - 1.0) * 0.8 + 1.0,
                                       smoothness, kRounded));
  r.intensity = 0;  // no effect: every length 1
  for (double v : BuildStretchCurveTable(r))
    ASSERT_EQ(v, 1.0);
}

TEST(EdgeModes, PositionsOnALineOfFive) {
  const std::pair<E, std::vector<int32_t>> cases[] = {
      {E::Wrap, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}},
      {E::Mirror, {0, 1, 2, 3, 4, 3, 2, 1, 0, 1}},
      {E::RepeatLast, {0, 1, 2, 3, 4, 4, 4, 4, 4, 4}},
      {E::Transparent, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}}};
  for (const auto& [mode, indices] : cases)
    for (size_t k = 0; k < indices.size(); ++k) {
      EXPECT_EQ(ResolveLinePosition(mode, 5, int64_t(k)), indices[k]) << int(mode) << " " << k;
      EXPECT_EQ(ResolveLinePosition(mode, 1, int64_t(k)), 0) << "one-pixel line";
    }
  // Fractional layer positions under Mirror turn at the last pixel.
  for (const auto& [position, length, pixel] :
       {std::tuple{4 * 4096, 5, 4}, std::tuple{4 * 4096 + 1, 5, 3}, std::tuple{5 * 4096, 5, 3},
        std::tuple{5 * 4096 + 1, 5, 2}, std::tuple{4096 + 100, 1, 0}})
    EXPECT_EQ(
        LayerPixelOnLine(
            ResolveIntensityPosition(E::Mirror, EdgePeriod(E::Mirror, length), position), length),
        pixel)
        << position;
}

// The walkers keep the resolved position incrementally; they must agree with resolving afresh.
template <E Mode>
void ExpectWalkersMatch(int32_t length) {
  for (int64_t start = 0; start <= 2 * length; ++start) {
    LinePositionWalker<Mode> walker(length, start);
    const std::vector<int> line(length);
    LinePixelWalker<Mode, int> pixel(line.data(), 1, walker);
    for (int s = 0; s < 40; ++s, walker.Advance(), pixel.Advance()) {
      ASSERT_EQ(walker.Index(), ResolveLinePosition(Mode, length, start + s)) << length;
      ASSERT_EQ(pixel.Pixel() - line.data(), walker.Index()) << length << " start " << start;
    }
  }
  for (const int64_t start :
       {int64_t{0}, int64_t{4095}, 4096 * int64_t{length} - 1, 4096 * 2 * int64_t{length} + 17})
    for (int64_t step : {0, 1, 1000, 4096, 7782, 4096 * length, 3 * 4096 * length + 5}) {
      LayerPositionWalker<Mode> walker(length, step, start);
      for (int s = 0; s < 60; ++s, walker.Advance())
        ASSERT_EQ(
            walker.Pixel(),
            LayerPixelOnLine(
                ResolveIntensityPosition(Mode, EdgePeriod(Mode, length), start + s * step), length))
            << length << " start " << start << " step " << step;
    }
}

TEST(EdgeModes, WalkersAgreeWithResolution) {
  for (int32_t length : {1, 2, 3, 5, 8, 97}) {
    ExpectWalkersMatch<E::Wrap>(length);
    ExpectWalkersMatch<E::Mirror>(length);
    ExpectWalkersMatch<E::RepeatLast>(length);
    ExpectWalkersMatch<E::Transparent>(length);
  }
}

TEST(EdgeModes, TransparentFade) {
  const std::tuple<int32_t, double, std::vector<double>> cases[] = {
      {5, 40, {1, 1, 1, 1, 0.5, 0, 0}},
      {5, 0, {1, 1, 1, 1, 1, 0, 0}},
      {4, 100, {1, 0.75, 0.5, 0.25, 0, 0}}};
  for (const auto& [length, featherPercent, fades] : cases) {
    const int32_t feather = FeatherLength(featherPercent, length);
    LinePositionWalker<E::Transparent> walker(length, 0);
    for (size_t k = 0; k < fades.size(); ++k, walker.Advance())
      EXPECT_EQ(walker.Fade(feather), fades[k]) << length << "/" << featherPercent << " " << k;
  }
  EXPECT_EQ(EdgeFade(3, 3, 1), static_cast<double>(2.0f / 3.0f)) << "divided in float";
}

TEST(ImageShift, StartsOnALineOfHundred) {
  const std::tuple<int32_t, double, E, int32_t, int32_t, int32_t, int32_t, int32_t> cases[] = {
      // phase, intensity, mode: shift, offset, mirror turn, first and second pixel
      {90, 1.0, E::Wrap, 25, 25, 0, 25, 26},     {-90, 1.0, E::Wrap, -25, 74, 0, 74, 75},
      {-1, 1.0, E::Wrap, 0, 0, 0, 0, 1},         {90, 0.5, E::Wrap, 12, 12, 0, 12, 13},
      {450, 1.0, E::Wrap, 125, 25, 0, 25, 26},   {360, 1.0, E::Mirror, 100, 0, 1, 98, 97},
      {-90, 1.0, E::Mirror, -25, 74, 1, 24, 23}, {-360, 1.0, E::Mirror, -100, 99, 0, 99, 98},
      {450, 1.0, E::Mirror, 125, 25, 1, 73, 72}, {360, 1.0, E::Transparent, 100, 0, 0, 0, 1}};
  for (const auto& [degrees, intensity, mode, shift, offset, turn, first, second] : cases) {
    const ImageShift s = ComputeImageShift(degrees * kDegree, intensity, mode, 100, 100);
    SCOPED_TRACE(::testing::Message() << degrees << " deg, mode " << int(mode));
    EXPECT_EQ(std::tuple(s.shiftPixels, s.imageShiftOffset, s.mirrorTurn),
              std::tuple(shift, offset, turn));
    EXPECT_EQ(s.colourStart, offset + 100 * turn);
    EXPECT_EQ(ResolveLinePosition(mode, 100, s.colourStart), first);
    EXPECT_EQ(ResolveLinePosition(mode, 100, s.colourStart + 1), second);
    EXPECT_EQ(SelfIntensityStart(s, true, mode, 100), first);
    EXPECT_EQ(SelfIntensityStart(s, false, mode, 100), 0);
  }
  EXPECT_EQ(ComputeImageShift(90 * kDegree, 0.5, E::Wrap, 100, 100).scaledPhase, 2949120);
  // A layer line of 200 under an output line of 100.
  const ImageShift wrap = ComputeImageShift(-90 * kDegree, 1.0, E::Wrap, 100, 200);
  EXPECT_EQ(std::pair(wrap.layerShiftPixels, wrap.layerShiftOffset), std::pair(-50, 149));
  const ImageShift mirror = ComputeImageShift(-90 * kDegree, 1.0, E::Mirror, 100, 200);
  EXPECT_EQ(mirror.layerStart, 349 * 4096);
  EXPECT_EQ(LayerIntensityStart(mirror, true, E::Mirror, 200), 49 * 4096);  // 398 - 349
}

TEST(Shading, Tables) {
  using M = ShadingMode;
  const std::tuple<M, int32_t, int32_t, double, std::vector<double>> cases[] = {
      {M::LinearRampUp, 4, 0, 0, {0.0, 0.25, 0.5, 0.75}},
      {M::LinearRampDown, 4, 0, 0, {1.0, 0.75, 0.5, 0.25}},
      {M::Line, 4, 0, 0, {0.5, 1.0, 0.5, 0.0}},
      {M::Line, 6, 0, 0, {0.5, 1.0, 0.5, 0.0, 0.0, 0.0}},
      {M::Line, 3, 0, 0, {1.0, 0.5, 0.0}},
      {M::Line, 2, 0, 0, {1.0, 0.0}},
      {M::LinearRampUp, 4, 0, 50, {0.5, 0.625, 0.75, 0.875}},
      {M::TriangleWave, 4, 0, 0, {0.0, 0.5, 1.0, 0.5}},
      {M::TriangleWave, 4, 0, 100, {1, 1, 1, 1}},
      {M::None, 3, 0, 0, {1, 1, 1}},
      {M::SineWave, 2, 0, 0, {1.0, 0.0}},
      {M::LinearRampUp, 8, 90 * kDegree, 0, {0.75, 0.875, 0.0, 0.125, 0.25, 0.375, 0.5, 0.625}},
  };
  for (const auto& [mode, interval, phase, opacity, entries] : cases) {
    const ShadingTable t = BuildShadingTable(mode, interval, phase, opacity, 1.0, 1.0f);
    ASSERT_EQ(t.size, int32_t(entries.size()));
    for (int32_t i = 0; i < t.size; ++i)
      EXPECT_EQ(t.entries[i], entries[i]) << int(mode) << " entry " << i;
  }
  for (const auto& [interval, scale, size] :
       {std::tuple{10, 0.5f, 5}, std::tuple{2, 0.5f, 2}, std::tuple{0, 1.0f, 8},
        std::tuple{256, 2.0f, 256}, std::tuple{-5, 1.0f, 2}, std::tuple{7, 0.999f, 6}})
    EXPECT_EQ(ShadingTableSize(interval, scale), size) << interval << " x " << scale;
  for (const auto& [phase, entry] :
       {std::pair{5898240, 2}, std::pair{-2949120, 6}, std::pair{-23592960, 7}})
    EXPECT_EQ(ShadingTablePhase(phase, 8), entry) << phase;
  // Look-ups start at the image shift and wrap: entries 3, 0, 1 of a four-entry ramp.
  const ShadingTable ramp = BuildShadingTable(M::LinearRampUp, 4, 0, 0, 1.0, 1.0f);
  ShadeWalker walker(ramp, 7);
  EXPECT_EQ(std::pair(walker.Current(), walker.Next()), std::pair(0.75, 0.0));
  walker.Advance();
  EXPECT_EQ(std::pair(walker.Current(), walker.Next()), std::pair(0.0, 0.25));
}

TEST(Distribution, RangeAndModes) {
  EXPECT_EQ(DistributionPixels(0.5, 100), 50);
  EXPECT_EQ(DistributionPixels(1.5, 100), 175);  // A = 100 + 100, (200 - 150) * 0.5 + 150
  EXPECT_EQ(DistributionPixels(2.0, 100000), int64_t{100000} * 100000 + 100000);
  for (const auto& [mode, step, range, expected] :
       {std::tuple{0, 50, 50, 3.0}, std::tuple{0, 51, 50, 1.0}, std::tuple{1, 0, 50, 1.0},
        std::tuple{1, 25, 50, 2.0}, std::tuple{1, 50, 50, 3.0}, std::tuple{2, 0, 50, 3.0},
        std::tuple{2, 25, 50, 2.0}, std::tuple{2, 50, 50, 1.0}, std::tuple{7, 99, 50, 3.0},
        std::tuple{2, 0, 0, 1.0}, std::tuple{1, 10, 40, 1.5}})
    EXPECT_EQ(ApplyDistribution(mode, 3.0, step, range), expected) << mode << " " << step;
}

TEST(Intensity, OfAPixelAtEachDepth) {
  const uint8_t red8[4] = {128, 255, 0, 0};
  EXPECT_EQ(CurveIndex(MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Red>(red8)), 513);
  const uint8_t clear8[4] = {0, 255, 255, 255};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Luma>(clear8)), 0.0);
  const uint8_t opaque8[4] = {255, 51, 102, 153};
  EXPECT_EQ((MeasureIntensity<PixelDepth::Depth8, ChannelVariant::Luma>(opaque8)), 306.0 / 765.0);
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
                                 std::pair{-0.5, 0}, std::pair{std::nan(""), 0}})
    EXPECT_EQ(CurveIndex(v), index) << v;
}

}  // namespace
}  // namespace morvane
