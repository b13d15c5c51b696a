#include <gtest/gtest.h>

#include "stretch/ImageShift.h"

namespace morvane {
namespace {

constexpr int32_t Degrees(int32_t d) { return d * 65536; }

struct ShiftCase {
  const char* name;
  int32_t phase;
  double intensity;  // fraction
  EdgeMode mode;
  int32_t shiftPixels;
  int32_t imageShiftOffset;
  int32_t mirrorTurn;
  int64_t colourStart;
  int32_t firstPixel;  // the colour start resolved
  int32_t secondPixel;
};

class ImageShiftTest : public testing::TestWithParam<ShiftCase> {};

TEST_P(ImageShiftTest, LineOfHundred) {
  const ShiftCase& c = GetParam();
  const ImageShift s = ComputeImageShift(c.phase, c.intensity, c.mode, 100, 100);
  EXPECT_EQ(s.shiftPixels, c.shiftPixels);
  EXPECT_EQ(s.imageShiftOffset, c.imageShiftOffset);
  EXPECT_EQ(s.mirrorTurn, c.mirrorTurn);
  EXPECT_EQ(s.colourStart, c.colourStart);
  EXPECT_EQ(ResolveLinePosition(c.mode, 100, s.colourStart), c.firstPixel);
  EXPECT_EQ(ResolveLinePosition(c.mode, 100, s.colourStart + 1), c.secondPixel);
}

INSTANTIATE_TEST_SUITE_P(
    WorkedExamples, ImageShiftTest,
    testing::Values(
        ShiftCase{"None", 0, 1.0, EdgeMode::Wrap, 0, 0, 0, 0, 0, 1},
        ShiftCase{"Quarter", Degrees(90), 1.0, EdgeMode::Wrap, 25, 25, 0, 25, 25, 26},
        ShiftCase{"MinusQuarterIsOneLess", Degrees(-90), 1.0, EdgeMode::Wrap, -25, 74, 0, 74, 74,
                  75},
        ShiftCase{"MinusOneDegreeTruncatesToNothing", Degrees(-1), 1.0, EdgeMode::Wrap, 0, 0, 0, 0,
                  0, 1},
        ShiftCase{"QuarterAtHalfIntensity", Degrees(90), 0.5, EdgeMode::Wrap, 12, 12, 0, 12, 12,
                  13},
        ShiftCase{"MoreThanATurn", Degrees(450), 1.0, EdgeMode::Wrap, 125, 25, 0, 25, 25, 26},
        ShiftCase{"MirrorOneTurn", Degrees(360), 1.0, EdgeMode::Mirror, 100, 0, 1, 100, 98, 97},
        ShiftCase{"MirrorMinusQuarter", Degrees(-90), 1.0, EdgeMode::Mirror, -25, 74, 1, 174, 24,
                  23},
        ShiftCase{"MirrorMinusOneTurn", Degrees(-360), 1.0, EdgeMode::Mirror, -100, 99, 0, 99, 99,
                  98},
        ShiftCase{"MirrorOneAndAQuarter", Degrees(450), 1.0, EdgeMode::Mirror, 125, 25, 1, 125, 73,
                  72},
        ShiftCase{"TransparentHasNoMirrorTurn", Degrees(360), 1.0, EdgeMode::Transparent, 100, 0, 0,
                  0, 0, 1}),
    [](const testing::TestParamInfo<ShiftCase>& info) { return std::string(info.param.name); });

TEST(ImageShift, ScaledPhaseAndTurns) {
  const ImageShift s = ComputeImageShift(Degrees(90), 0.5, EdgeMode::Wrap, 100, 100);
  EXPECT_EQ(s.scaledPhase, 2949120);
  EXPECT_EQ(s.turns, 0.125f);
}

TEST(ImageShift, LayerLineOfTwoHundred) {
  const ImageShift wrap = ComputeImageShift(Degrees(-90), 1.0, EdgeMode::Wrap, 100, 200);
  EXPECT_EQ(wrap.layerShiftPixels, -50);
  EXPECT_EQ(wrap.layerShiftOffset, 149);
  EXPECT_EQ(wrap.layerStart, 149 * 4096);
  const ImageShift mirror = ComputeImageShift(Degrees(-90), 1.0, EdgeMode::Mirror, 100, 200);
  EXPECT_EQ(mirror.layerStart, 349 * 4096);
  // 349 on a mirror period of 398 resolves to 398 - 349 = 49.
  EXPECT_EQ(LayerIntensityStart(mirror, true, EdgeMode::Mirror, 200), 49 * 4096);
  EXPECT_EQ(LayerIntensityStart(mirror, false, EdgeMode::Mirror, 200), 0);
}

TEST(ImageShift, SyncStartFollowsTheResolvedColourStart) {
  const ImageShift quarter = ComputeImageShift(Degrees(90), 1.0, EdgeMode::Wrap, 100, 100);
  EXPECT_EQ(SelfIntensityStart(quarter, true, EdgeMode::Wrap, 100), 25);
  EXPECT_EQ(SelfIntensityStart(quarter, false, EdgeMode::Wrap, 100), 0);
  const ImageShift mirror = ComputeImageShift(Degrees(-90), 1.0, EdgeMode::Mirror, 100, 100);
  EXPECT_EQ(SelfIntensityStart(mirror, true, EdgeMode::Mirror, 100), 24);
}

}  // namespace
}  // namespace morvane
