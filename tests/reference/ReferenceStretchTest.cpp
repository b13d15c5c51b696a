// Checks the reference model against hand-worked values, stage by stage and on
// whole images, so that a disagreement with the optimised kernels can be
// attributed with confidence.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "tests/reference/ReferenceStretch.h"

namespace morvane::reference {
namespace {

constexpr int32_t kDegree = 65536;

// ---- Stretch curve -------------------------------------------------------------

struct CurveCase {
  int32_t shape;
  int32_t i;
  double amplitude;
  uint8_t flags;
  double expected;
};

class CurveValueTest : public ::testing::TestWithParam<CurveCase> {};

TEST_P(CurveValueTest, MatchesWorkedValue) {
  const CurveCase c = GetParam();
  EXPECT_EQ(CurveValue(c.shape, c.i, 1024, c.amplitude, 0.0, c.flags), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CurveValueTest,
    ::testing::Values(CurveCase{0, 1, 1.0, 0, 0.0009775}, CurveCase{0, 1, 1.0, 1, 1.0 / 1023.0},
                      CurveCase{3, 0, 2.0, 0, 1.0}, CurveCase{3, 256, 2.0, 0, 2.0},
                      CurveCase{2, 511, 1.0, 0, 0.9990225}, CurveCase{2, 512, 1.0, 0, 0.9990225},
                      CurveCase{2, 1023, 1.0, 0, 0.0}, CurveCase{1, 0, 3.0, 0, 3.0},
                      CurveCase{4, 1023, 2.0, 0, 2.0}, CurveCase{5, 1023, 2.0, 0, 0.0},
                      CurveCase{17, 500, 2.0, 0, 0.0}));

TEST(SmoothedCurveValue, WholeSmoothnessAveragesOneRadiusLess) {
  const double centre = CurveValue(0, 100, 1024, 1.0, 1.0, 0);
  EXPECT_EQ(SmoothedCurveValue(0, 100, 1024, 1.0, 1.0, 0.0f, 0), centre);
  EXPECT_EQ(SmoothedCurveValue(0, 100, 1024, 1.0, 1.0, 1.0f, 0), centre);
  const double three =
      (CurveValue(0, 100, 1024, 1.0, 1.0, 0) + CurveValue(0, 99, 1024, 1.0, 1.0, 0) +
       CurveValue(0, 101, 1024, 1.0, 1.0, 0)) /
      3.0;
  EXPECT_NEAR(SmoothedCurveValue(0, 100, 1024, 1.0, 1.0, 2.0f, 0), three, 1e-15);
  EXPECT_NEAR(SmoothedCurveValue(0, 100, 1024, 1.0, 1.0, 0.999f, 0), three, 1e-6);
  // 1.5: half the three-sample mean, half the five-sample mean.
  const double five =
      (3.0 * three + CurveValue(0, 98, 1024, 1.0, 1.0, 0) + CurveValue(0, 102, 1024, 1.0, 1.0, 0)) /
      5.0;
  EXPECT_NEAR(SmoothedCurveValue(0, 100, 1024, 1.0, 1.0, 1.5f, 0), 0.5 * three + 0.5 * five, 1e-15);
}

TEST(SmoothedCurveValue, NeighbourhoodWrapsAroundTheEnds) {
  EXPECT_NEAR(SmoothedCurveValue(0, 0, 1024, 1.0, 1.0, 0.999f, 0), 1.3333255, 5e-8);
}

TEST(CurveTable, DefaultsRunFromOneToTwo) {
  const std::array<double, 1024> table = CurveTable(Settings{});
  EXPECT_EQ(table[0], 1.0);
  EXPECT_EQ(table[1], 1.0009775);
  EXPECT_EQ(table[1023], 2.0);
  for (int m = 0; m < 1024; ++m) {
    ASSERT_EQ(table[static_cast<std::size_t>(m)], std::round((m / 1023.0 + 1.0) * 1e7) / 1e7);
  }
}

TEST(CurveTable, PhaseRotatesWithTheOneLessNegativeRule) {
  Settings settings;
  const std::array<double, 1024> plain = CurveTable(settings);
  settings.curvePhase = -23040;  // one phase step back
  const std::array<double, 1024> back = CurveTable(settings);
  EXPECT_EQ(back[1022], plain[0]);
  EXPECT_EQ(back[0], plain[2]);
  settings.curvePhase = 360 * kDegree;  // a whole turn
  EXPECT_EQ(CurveTable(settings), plain);
}

TEST(CurveTable, ZeroIntensityIsNoStretchWhateverTheShape) {
  Settings settings;
  settings.intensity = 0.0;
  settings.curveShape = 3;
  settings.stretchAmount = 40.0;
  settings.curveSmoothness = 5.0;
  settings.curvePhase = 77 * kDegree;
  for (const double length : CurveTable(settings)) {
    ASSERT_EQ(length, 1.0);
  }
}

// ---- Edges ---------------------------------------------------------------------

struct ResolveCase {
  int32_t edgeMode;
  std::vector<int64_t> expected;  // positions 0..9 on a line of 5
};

class ResolveLineTest : public ::testing::TestWithParam<ResolveCase> {};

TEST_P(ResolveLineTest, PositionsZeroToNineOnFivePixels) {
  const ResolveCase c = GetParam();
  for (int64_t k = 0; k < 10; ++k) {
    EXPECT_EQ(ResolveLinePosition(c.edgeMode, 5, k), c.expected[static_cast<std::size_t>(k)])
        << "position " << k;
    EXPECT_EQ(ResolveLinePosition(c.edgeMode, 1, k), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, ResolveLineTest,
                         ::testing::Values(ResolveCase{kWrap, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}},
                                           ResolveCase{kMirror, {0, 1, 2, 3, 4, 3, 2, 1, 0, 1}},
                                           ResolveCase{kRepeatLast, {0, 1, 2, 3, 4, 4, 4, 4, 4, 4}},
                                           ResolveCase{kTransparent,
                                                       {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}},
                                           ResolveCase{9, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4}}));

TEST(ResolveLayerPosition, FractionalMirrorTouchesTheLastPixelOnlyAtTheTurn) {
  EXPECT_EQ(ResolveLayerPosition(kMirror, 5, 4 * 4096) / 4096, 4);
  EXPECT_EQ(ResolveLayerPosition(kMirror, 5, 4 * 4096 + 1) / 4096, 3);
  EXPECT_EQ(ResolveLayerPosition(kMirror, 5, 5 * 4096) / 4096, 3);
  EXPECT_EQ(ResolveLayerPosition(kMirror, 5, 5 * 4096 + 1) / 4096, 2);
  EXPECT_EQ(ResolveLayerPosition(kWrap, 5, 7 * 4096 + 5), 2 * 4096 + 5);
  EXPECT_EQ(ResolveLayerPosition(kRepeatLast, 5, 9 * 4096), 4 * 4096);
}

struct FadeCase {
  int32_t length;
  double feather;
  std::vector<double> expected;  // positions 0..
};

class EdgeFadeTest : public ::testing::TestWithParam<FadeCase> {};

TEST_P(EdgeFadeTest, FadesTowardsTheFarEnd) {
  const FadeCase c = GetParam();
  const int32_t F = FeatherLength(c.feather, c.length);
  for (std::size_t k = 0; k < c.expected.size(); ++k) {
    EXPECT_EQ(EdgeFade(kTransparent, c.length, F, static_cast<int64_t>(k)), c.expected[k])
        << "position " << k;
    EXPECT_EQ(EdgeFade(kMirror, c.length, F, static_cast<int64_t>(k)), 1.0);
  }
}

INSTANTIATE_TEST_SUITE_P(Feathers, EdgeFadeTest,
                         ::testing::Values(FadeCase{5, 40.0, {1.0, 1.0, 1.0, 1.0, 0.5, 0.0, 0.0}},
                                           FadeCase{4, 100.0, {1.0, 0.75, 0.5, 0.25, 0.0}},
                                           FadeCase{5, 0.0, {1.0, 1.0, 1.0, 1.0, 1.0, 0.0}}));

// ---- Image shift ---------------------------------------------------------------

struct ShiftCase {
  int32_t phase;
  double intensity;
  int32_t edgeMode;
  int32_t imageShiftOffset;
  int32_t mirrorTurn;
  int64_t firstResolved;  // colour start resolved on the line of 100
};

class ImageShiftTest : public ::testing::TestWithParam<ShiftCase> {};

TEST_P(ImageShiftTest, LineOfOneHundred) {
  const ShiftCase c = GetParam();
  Settings settings;
  settings.imageShiftPhase = c.phase;
  settings.intensity = c.intensity;
  settings.edgeMode = c.edgeMode;
  const Shift s = ImageShift(settings, 100, 100);
  EXPECT_EQ(s.imageShiftOffset, c.imageShiftOffset);
  EXPECT_EQ(s.mirrorTurn, c.mirrorTurn);
  EXPECT_EQ(ResolveLinePosition(c.edgeMode, 100, s.colourStart), c.firstResolved);
}

INSTANTIATE_TEST_SUITE_P(Phases, ImageShiftTest,
                         ::testing::Values(ShiftCase{0, 100.0, kWrap, 0, 0, 0},
                                           ShiftCase{90 * kDegree, 100.0, kWrap, 25, 0, 25},
                                           ShiftCase{-90 * kDegree, 100.0, kWrap, 74, 0, 74},
                                           ShiftCase{-1 * kDegree, 100.0, kWrap, 0, 0, 0},
                                           ShiftCase{90 * kDegree, 50.0, kWrap, 12, 0, 12},
                                           ShiftCase{450 * kDegree, 100.0, kWrap, 25, 0, 25},
                                           ShiftCase{360 * kDegree, 100.0, kMirror, 0, 1, 98},
                                           ShiftCase{-90 * kDegree, 100.0, kMirror, 74, 1, 24},
                                           ShiftCase{-360 * kDegree, 100.0, kMirror, 99, 0, 99}));

TEST(ImageShift, ScaledPhaseAndMirroredRunBackwards) {
  Settings settings;
  settings.imageShiftPhase = 90 * kDegree;
  settings.intensity = 50.0;
  EXPECT_EQ(ImageShift(settings, 100, 100).scaledPhase, 2949120);
  settings.intensity = 100.0;
  settings.imageShiftPhase = 360 * kDegree;
  settings.edgeMode = kMirror;
  const Shift s = ImageShift(settings, 100, 100);
  EXPECT_EQ(s.colourStart, 100);
  EXPECT_EQ(ResolveLinePosition(kMirror, 100, s.colourStart + 1), 97);
  EXPECT_EQ(ResolveLinePosition(kMirror, 100, s.colourStart + 2), 96);
}

TEST(ImageShift, LayerLineStart) {
  Settings settings;
  settings.imageShiftPhase = -90 * kDegree;
  const Shift wrap = ImageShift(settings, 100, 200);
  EXPECT_EQ(wrap.layerShiftPixels, -50);
  EXPECT_EQ(wrap.layerShiftOffset, 149);
  settings.edgeMode = kMirror;
  EXPECT_EQ(ImageShift(settings, 100, 200).layerStart, 349 * 4096);
}

// ---- Shading -------------------------------------------------------------------

struct ShadingCase {
  int32_t mode;
  int32_t size;
  double opacity;
  int32_t phase;
  float scale;
  std::vector<double> expected;
};

class ShadingTableTest : public ::testing::TestWithParam<ShadingCase> {};

TEST_P(ShadingTableTest, Entries) {
  const ShadingCase c = GetParam();
  Settings settings;
  settings.shadingMode = c.mode;
  settings.shadingIntervalSize = c.size;
  settings.shadingOpacity = c.opacity;
  settings.shadingIntervalPhase = c.phase;
  EXPECT_EQ(ShadingTable(settings, c.scale), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, ShadingTableTest,
    ::testing::Values(
        ShadingCase{3, 4, 0.0, 0, 1.0f, {0.0, 0.25, 0.5, 0.75}},
        ShadingCase{4, 4, 0.0, 0, 1.0f, {1.0, 0.75, 0.5, 0.25}},
        ShadingCase{5, 4, 0.0, 0, 1.0f, {0.5, 1.0, 0.5, 0.0}},
        ShadingCase{5, 3, 0.0, 0, 1.0f, {1.0, 0.5, 0.0}},
        ShadingCase{5, 2, 0.0, 0, 1.0f, {1.0, 0.0}},
        ShadingCase{3, 4, 50.0, 0, 1.0f, {0.5, 0.625, 0.75, 0.875}},
        ShadingCase{2, 4, 100.0, 0, 1.0f, {1.0, 1.0, 1.0, 1.0}},
        ShadingCase{0, 4, 37.0, 0, 1.0f, {1.0, 1.0, 1.0, 1.0}},
        ShadingCase{
            3, 8, 0.0, 90 * kDegree, 1.0f, {0.75, 0.875, 0.0, 0.125, 0.25, 0.375, 0.5, 0.625}},
        ShadingCase{
            3, 8, 0.0, -45 * kDegree, 1.0f, {0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 0.0, 0.125}},
        ShadingCase{3, 10, 0.0, 0, 0.5f, {0.0, 0.2, 0.4, 0.6, 0.8}},
        ShadingCase{5, 2, 0.0, 0, 0.5f, {1.0, 0.0}},
        ShadingCase{3, 0, 0.0, 0, 0.5f, {0.0, 0.25, 0.5, 0.75}}));  // size 0 counts as 8

TEST(ShadingTable, CappedAt256Entries) {
  Settings settings;
  settings.shadingMode = 3;
  settings.shadingIntervalSize = 256;
  EXPECT_EQ(ShadingTable(settings, 4.0f).size(), 256u);
}

// ---- Mapping quantities --------------------------------------------------------

TEST(MappingQuantities, StartCountRoundsHalfAwayAndClamps) {
  EXPECT_EQ(StartCount(50.0, 9), 5);
  EXPECT_EQ(StartCount(100.0, 9), 9);
  EXPECT_EQ(StartCount(130.0, 9), 9);
  EXPECT_EQ(StartCount(-10.0, 9), 0);
}

TEST(MappingQuantities, DistributionRanges) {
  EXPECT_EQ(DistributionPixels(0.5, 100), 50);
  EXPECT_EQ(DistributionPixels(2.0, 100), 100 * 100 + 100);
  EXPECT_EQ(DistributionPixels(0.0, 100), 0);
  // Constant at 0.5 on 100: steps 0 to 50 keep the curve's length.
  EXPECT_EQ(Distribute(0, 50, 50, 1.8), 1.8);
  EXPECT_EQ(Distribute(0, 50, 51, 1.8), 1.0);
  EXPECT_EQ(Distribute(1, 4, 0, 3.0), 1.0);
  EXPECT_EQ(Distribute(1, 4, 2, 3.0), 2.0);
  EXPECT_EQ(Distribute(1, 4, 4, 3.0), 3.0);
  EXPECT_EQ(Distribute(2, 4, 0, 3.0), 3.0);
  EXPECT_EQ(Distribute(2, 4, 2, 3.0), 2.0);
  EXPECT_EQ(Distribute(2, 0, 0, 3.0), 1.0);
  EXPECT_EQ(Distribute(7, 0, 5, 3.0), 3.0);
}

TEST(MappingQuantities, LayerSteps) {
  EXPECT_EQ(LayerSampling(100, 10, 200, 10, 0, 0).xStep, 8192);
  const LayerGeometry inside = LayerSampling(100, 10, 200, 10, 10, 0);
  EXPECT_EQ(inside.xStep, 7782);
  EXPECT_EQ(inside.layerOriginX, 10);
  const LayerGeometry spread = LayerSampling(100, 10, 50, 5, 60, 0);  // does not fit
  EXPECT_EQ(spread.layerOriginX, 0);
  EXPECT_EQ(spread.xStep, 2048);
  EXPECT_EQ(spread.yStep, 2048);
}

TEST(Intensity, DepthCases) {
  const uint8_t red8[4] = {128, 255, 0, 0};
  EXPECT_EQ(CurveIndex(MeasureIntensity<uint8_t>(Variant::Red, red8)), 513);
  const uint8_t clear8[4] = {0, 255, 255, 255};
  EXPECT_EQ(MeasureIntensity<uint8_t>(Variant::Luma, clear8), 0.0);
  const uint8_t white8[4] = {255, 255, 255, 255};
  EXPECT_EQ(MeasureIntensity<uint8_t>(Variant::Luma, white8), 1.0);
  const uint16_t red16[4] = {32768, 32768, 0, 0};
  EXPECT_EQ(MeasureIntensity<uint16_t>(Variant::Red, red16), 1.0);
  const float bright[4] = {1.0f, 2.0f, 0.0f, 0.0f};
  EXPECT_EQ(MeasureIntensity<float>(Variant::Red, bright), 2.0);
  EXPECT_EQ(CurveIndex(2.0), 1023);
  EXPECT_EQ(CurveIndex(0.5), 511);
  EXPECT_EQ(CurveIndex(-0.5), 0);
  EXPECT_EQ(CurveIndex(std::nan("")), 0);
  const float halfAlpha[4] = {0.5f, 0.2f, 0.4f, 0.9f};
  EXPECT_EQ(MeasureIntensity<float>(Variant::Alpha, halfAlpha), 0.5);
}

// ---- Resampler -----------------------------------------------------------------

struct ResampleCase {
  std::vector<double> values;
  double length;
  std::vector<uint8_t> expected;
};

class ResampleLineTest : public ::testing::TestWithParam<ResampleCase> {};

TEST_P(ResampleLineTest, EightBitLine) {
  const ResampleCase c = GetParam();
  EXPECT_EQ(ResampleLine<uint8_t>(c.values, {c.length}, static_cast<int32_t>(c.expected.size())),
            c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, ResampleLineTest,
    ::testing::Values(ResampleCase{{0, 100, 200, 250}, 1.0, {0, 100, 200, 250}},
                      ResampleCase{{0, 100, 200, 250}, 2.5, {0, 40, 90, 120, 160, 200, 220, 245}},
                      ResampleCase{{0, 100, 200, 250}, 3.0, {0, 33, 67, 100, 133, 167, 200, 217}},
                      ResampleCase{{0, 100, 200, 250}, 0.5, {50, 225, 50, 225}},
                      ResampleCase{{0, 100, 200, 250}, 1.5, {0, 83, 133, 200, 242, 167}},
                      ResampleCase{{10, 20, 30, 40}, 0.75, {13, 27, 39, 13}}));

TEST(LineResampler, ExactBoundaryLeavesNoCarry) {
  const std::vector<double> one{1.0};
  std::vector<double> emitted;
  LineResampler r(1, 3);
  auto sink = [&](int32_t, const std::vector<double>& v) { emitted.push_back(v[0]); };
  r.Step(0.5, {10.0}, {20.0}, one, one, sink);
  r.Step(0.5, {20.0}, {30.0}, one, one, sink);
  ASSERT_EQ(emitted.size(), 1u);
  EXPECT_EQ(emitted[0], 15.0);
  EXPECT_EQ(r.LinePosition(), 1.0);
  r.Step(1.0, {30.0}, {40.0}, one, one, sink);
  ASSERT_EQ(emitted.size(), 2u);
  EXPECT_EQ(emitted[1], 30.0);
}

TEST(LineResampler, RemainderThreshold) {
  const std::vector<double> one{1.0};
  int emitted = 0;
  auto sink = [&](int32_t, const std::vector<double>&) { ++emitted; };
  LineResampler kept(1, 4);
  kept.Step(1.999995, {10.0}, {20.0}, one, one, sink);
  EXPECT_EQ(emitted, 2);  // 0.999995 is written out at once
  emitted = 0;
  LineResampler carried(1, 4);
  carried.Step(1.99998, {10.0}, {20.0}, one, one, sink);
  EXPECT_EQ(emitted, 1);  // 0.99998 waits for the next piece
}

TEST(LineResampler, FullLineDropsTheRestOfTheSpan) {
  const std::vector<double> one{1.0};
  std::vector<int32_t> indices;
  LineResampler r(1, 2);
  r.Step(5.0, {0.0}, {100.0}, one, one,
         [&](int32_t index, const std::vector<double>&) { indices.push_back(index); });
  EXPECT_EQ(indices, (std::vector<int32_t>{0, 1}));
  EXPECT_TRUE(r.Full());
}

TEST(ConvertEmitted, RoundsHalfAwayAndSaturates) {
  EXPECT_EQ(ConvertEmitted<uint8_t>(12.5), 13);
  EXPECT_EQ(ConvertEmitted<uint8_t>(12.49), 12);
  EXPECT_EQ(ConvertEmitted<uint8_t>(300.0), 255);
  EXPECT_EQ(ConvertEmitted<uint8_t>(-0.4), 0);
  EXPECT_EQ(ConvertEmitted<uint16_t>(40000.0), 32768);
  EXPECT_EQ(ConvertEmitted<uint16_t>(16383.5), 16384);
  EXPECT_EQ(ConvertEmitted<float>(1.0 / 3.0), static_cast<float>(1.0 / 3.0));
  EXPECT_EQ(ConvertEmitted<float>(7.5), 7.5f);
}

}  // namespace
}  // namespace morvane::reference
