// Edge modes, image shift and shading.
#include <gtest/gtest.h>

#include <vector>

#include "stretch/EdgeModes.h"
#include "stretch/ImageShift.h"
#include "stretch/Shading.h"

namespace morvane {
namespace {

using E = EdgeMode;

TEST(EdgeModes, ResolutionOnALineOfFive) {
  const std::pair<E, std::vector<int32_t>> cases[] = {
      {E::Wrap, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}},
      {E::Mirror, {0, 1, 2, 3, 4, 3, 2, 1, 0, 1}},
      {E::RepeatLast, {0, 1, 2, 3, 4, 4, 4, 4, 4, 4}},
      {E::Transparent, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}}};
  for (const auto& [mode, indices] : cases) {
    for (size_t k = 0; k < indices.size(); ++k) {
      EXPECT_EQ(ResolveLinePosition(mode, 5, int64_t(k)), indices[k]) << int(mode) << " " << k;
      EXPECT_EQ(ResolveLinePosition(mode, 1, int64_t(k)), 0) << "one-pixel line";
    }
  }
}

// The walkers keep the resolved value incrementally; they must agree with resolving afresh.
template <E Mode>
void ExpectWalkersMatch(int32_t length) {
  for (int64_t start = 0; start <= 2 * length; ++start) {
    LinePositionWalker<Mode> walker(length, start);
    for (int s = 0; s < 40; ++s, walker.Advance()) {
      ASSERT_EQ(walker.Index(), ResolveLinePosition(Mode, length, start + s)) << length;
    }
  }
  // Fixed-point starts inside, at the end of and beyond the first period, with fraction bits.
  const int64_t starts[] = {0, 4095, 4096 * int64_t{length} - 1, 4096 * 2 * int64_t{length} + 17};
  for (const int64_t start : starts) {
    for (int64_t step : {0, 1, 1000, 4096, 7782, 4096 * length, 3 * 4096 * length + 5}) {
      LayerPositionWalker<Mode> walker(length, step, start);
      for (int s = 0; s < 60; ++s, walker.Advance()) {
        const int64_t p = start + s * step;
        ASSERT_EQ(
            walker.Pixel(),
            LayerPixelOnLine(ResolveIntensityPosition(Mode, EdgePeriod(Mode, length), p), length))
            << length << " start " << start << " step " << step;
      }
    }
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

TEST(EdgeModes, FractionalMirrorTurnsAtTheLastPixel) {
  const auto pixel = [](int64_t p, int32_t length) {
    const E m = E::Mirror;
    return LayerPixelOnLine(ResolveIntensityPosition(m, EdgePeriod(m, length), p), length);
  };
  EXPECT_EQ(pixel(4 * 4096, 5), 4);
  EXPECT_EQ(pixel(4 * 4096 + 1, 5), 3);
  EXPECT_EQ(pixel(5 * 4096, 5), 3);
  EXPECT_EQ(pixel(5 * 4096 + 1, 5), 2);
  EXPECT_EQ(pixel(4096 + 100, 1), 0) << "the substitute period alone would give pixel 1";
}

TEST(EdgeModes, TransparentFade) {
  const std::pair<int32_t, double> lines[] = {{5, 40}, {5, 0}, {4, 100}};
  const std::vector<double> fades[] = {
      {1, 1, 1, 1, 0.5, 0, 0}, {1, 1, 1, 1, 1, 0, 0}, {1, 0.75, 0.5, 0.25, 0, 0}};
  for (int c = 0; c < 3; ++c) {
    const auto [length, featherPercent] = lines[c];
    const int32_t feather = FeatherLength(featherPercent, length);
    LinePositionWalker<E::Transparent> walker(length, 0);
    for (size_t k = 0; k < fades[c].size(); ++k, walker.Advance()) {
      EXPECT_EQ(walker.Fade(feather), fades[c][k]) << length << "/" << featherPercent << " " << k;
    }
  }
  EXPECT_EQ(EdgeFade(3, 3, 1), static_cast<double>(2.0f / 3.0f)) << "divided in float";
}

constexpr int32_t Degrees(int32_t d) {
  return d * 65536;
}

TEST(ImageShift, LineOfHundred) {
  struct Case {
    int32_t phase;
    double intensity;
    E mode;
    int32_t shiftPixels, offset, mirrorTurn, firstPixel, secondPixel;
  };
  for (const Case& c : {Case{Degrees(90), 1.0, E::Wrap, 25, 25, 0, 25, 26},
                        Case{Degrees(-90), 1.0, E::Wrap, -25, 74, 0, 74, 75},
                        Case{Degrees(-1), 1.0, E::Wrap, 0, 0, 0, 0, 1},
                        Case{Degrees(90), 0.5, E::Wrap, 12, 12, 0, 12, 13},
                        Case{Degrees(450), 1.0, E::Wrap, 125, 25, 0, 25, 26},
                        Case{Degrees(360), 1.0, E::Mirror, 100, 0, 1, 98, 97},
                        Case{Degrees(-90), 1.0, E::Mirror, -25, 74, 1, 24, 23},
                        Case{Degrees(-360), 1.0, E::Mirror, -100, 99, 0, 99, 98},
                        Case{Degrees(450), 1.0, E::Mirror, 125, 25, 1, 73, 72},
                        Case{Degrees(360), 1.0, E::Transparent, 100, 0, 0, 0, 1}}) {
    const ImageShift s = ComputeImageShift(c.phase, c.intensity, c.mode, 100, 100);
    SCOPED_TRACE(testing::Message() << c.phase / 65536 << " deg, mode " << int(c.mode));
    EXPECT_EQ(s.shiftPixels, c.shiftPixels);
    EXPECT_EQ(s.imageShiftOffset, c.offset);
    EXPECT_EQ(s.mirrorTurn, c.mirrorTurn);
    EXPECT_EQ(s.colourStart, c.offset + 100 * c.mirrorTurn);
    EXPECT_EQ(ResolveLinePosition(c.mode, 100, s.colourStart), c.firstPixel);
    EXPECT_EQ(ResolveLinePosition(c.mode, 100, s.colourStart + 1), c.secondPixel);
    EXPECT_EQ(SelfIntensityStart(s, true, c.mode, 100), c.firstPixel);
    EXPECT_EQ(SelfIntensityStart(s, false, c.mode, 100), 0);
  }
  EXPECT_EQ(ComputeImageShift(Degrees(90), 0.5, E::Wrap, 100, 100).scaledPhase, 2949120);
}

TEST(ImageShift, LayerLineOfTwoHundred) {
  const ImageShift wrap = ComputeImageShift(Degrees(-90), 1.0, E::Wrap, 100, 200);
  EXPECT_EQ(wrap.layerShiftPixels, -50);
  EXPECT_EQ(wrap.layerShiftOffset, 149);
  const ImageShift mirror = ComputeImageShift(Degrees(-90), 1.0, E::Mirror, 100, 200);
  EXPECT_EQ(mirror.layerStart, 349 * 4096);
  EXPECT_EQ(LayerIntensityStart(mirror, true, E::Mirror, 200), 49 * 4096);  // 398 - 349
}

TEST(Shading, Tables) {
  struct Case {
    ShadingMode mode;
    int32_t interval;
    double opacity;
    std::vector<double> entries;
  };
  using M = ShadingMode;
  for (const Case& c :
       {Case{M::LinearRampUp, 4, 0, {0.0, 0.25, 0.5, 0.75}},
        Case{M::LinearRampDown, 4, 0, {1.0, 0.75, 0.5, 0.25}},
        Case{M::Line, 4, 0, {0.5, 1.0, 0.5, 0.0}},
        Case{M::Line, 6, 0, {0.5, 1.0, 0.5, 0.0, 0.0, 0.0}}, Case{M::Line, 3, 0, {1.0, 0.5, 0.0}},
        Case{M::Line, 2, 0, {1.0, 0.0}}, Case{M::LinearRampUp, 4, 50, {0.5, 0.625, 0.75, 0.875}},
        Case{M::TriangleWave, 4, 0, {0.0, 0.5, 1.0, 0.5}},
        Case{M::TriangleWave, 4, 100, {1, 1, 1, 1}}, Case{M::None, 3, 0, {1, 1, 1}},
        Case{M::SineWave, 2, 0, {1.0, 0.0}}}) {
    const ShadingTable t = BuildShadingTable(c.mode, c.interval, 0, c.opacity, 1.0, 1.0f);
    ASSERT_EQ(t.size, int32_t(c.entries.size()));
    for (int32_t i = 0; i < t.size; ++i)
      EXPECT_EQ(t.entries[i], c.entries[i]) << int(c.mode);
  }
}

TEST(Shading, SizeAndPhase) {
  for (const auto& [interval, scale, size] :
       {std::tuple{10, 0.5f, 5}, std::tuple{2, 0.5f, 2}, std::tuple{0, 1.0f, 8},
        std::tuple{256, 2.0f, 256}, std::tuple{-5, 1.0f, 2}, std::tuple{7, 0.999f, 6}}) {
    EXPECT_EQ(ShadingTableSize(interval, scale), size) << interval << " x " << scale;
  }
  EXPECT_EQ(ShadingTablePhase(5898240, 8), 2);
  EXPECT_EQ(ShadingTablePhase(-2949120, 8), 6);
  EXPECT_EQ(ShadingTablePhase(-23592960, 8), 7);
  const ShadingTable t = BuildShadingTable(ShadingMode::LinearRampUp, 8, 5898240, 0, 1.0, 1.0f);
  EXPECT_EQ(t.entries[2], 0.0) << "the pattern starts on entry r";
  EXPECT_EQ(t.entries[1], 0.875);
  // Lookups start at the image shift: entries 3 and 0 of a four-entry table for offset 7.
  const ShadingTable ramp = BuildShadingTable(ShadingMode::LinearRampUp, 4, 0, 0, 1.0, 1.0f);
  ShadeWalker walker(ramp, 7);
  EXPECT_EQ(walker.Current(), 0.75);
  EXPECT_EQ(walker.Next(), 0.0);
  walker.Advance();
  EXPECT_EQ(walker.Current(), 0.0);
  EXPECT_EQ(walker.Next(), 0.25);
}

}  // namespace
}  // namespace morvane
