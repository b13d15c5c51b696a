// frei0r parameter values to the effect's control values and the render record.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "frei0r/FreiMapping.h"
#include "frei0r/FreiSettings.h"

namespace morvane::frei0r {
namespace {

struct NumberCase {
  std::string label;
  FreiParam param;
  double x;
  std::function<double(const StretchRenderRecord&)> field;
  double expected;
};

std::ostream& operator<<(std::ostream& os, const NumberCase& c) {
  return os << c.label;
}

class NumberMapping : public ::testing::TestWithParam<NumberCase> {};

TEST_P(NumberMapping, GivesTheRecordValue) {
  const NumberCase& c = GetParam();
  FreiSettings settings;
  settings.SetNumber(c.param, c.x);
  EXPECT_EQ(c.field(settings.Record()), c.expected);
}

const auto kIntensity = [](const StretchRenderRecord& r) { return r.intensity; };
const auto kAmount = [](const StretchRenderRecord& r) { return r.stretchAmount; };
const auto kPixelSize = [](const StretchRenderRecord& r) { return r.pixelSize; };
const auto kRange = [](const StretchRenderRecord& r) { return r.distributionRange; };
const auto kInterval = [](const StretchRenderRecord& r) { return double(r.shadingIntervalSize); };
const auto kCurvePhase = [](const StretchRenderRecord& r) { return double(r.curvePhase); };
const auto kShiftPhase = [](const StretchRenderRecord& r) { return double(r.imageShiftPhase); };
const auto kShadePhase = [](const StretchRenderRecord& r) {
  return double(r.shadingIntervalPhase);
};
const auto kSync = [](const StretchRenderRecord& r) { return double(r.imageShiftPhaseSync); };
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInt32Max = std::numeric_limits<int32_t>::max();
constexpr double kInt32Min = std::numeric_limits<int32_t>::min();

INSTANTIATE_TEST_SUITE_P(
    Sliders, NumberMapping,
    ::testing::Values(
        NumberCase{"IntensityHalfIs50Percent", FreiParam::MorvaneIntensity, 0.5, kIntensity, 50.0},
        NumberCase{"IntensityAboveOneClamps", FreiParam::MorvaneIntensity, 1.5, kIntensity, 100.0},
        NumberCase{"IntensityNaNIsMin", FreiParam::MorvaneIntensity, kNaN, kIntensity, 0.0},
        NumberCase{"MorvaneQuarterIs16", FreiParam::Morvane, 0.25, kAmount, 16.0},
        NumberCase{"MorvaneNegativeClamps", FreiParam::Morvane, -0.2, kAmount, 0.0},
        NumberCase{"PixelSizeZeroIsMin", FreiParam::PixelSize, 0.0, kPixelSize, 0.01},
        NumberCase{"PixelSizeOneIsExactlyMax", FreiParam::PixelSize, 1.0, kPixelSize, 16.0},
        NumberCase{"PixelSizeBelowZeroClamps", FreiParam::PixelSize, -3.0, kPixelSize, 0.01},
        NumberCase{"RangeThreeQuarters", FreiParam::DistributionRange, 0.75, kRange, 1.5},
        NumberCase{"IntervalHalfIs129", FreiParam::ShadingIntervalSize, 0.5, kInterval, 129.0},
        // 2 + 0.01 * 254 = 4.54 pixels, truncated as the host read-out does.
        NumberCase{"IntervalTruncates", FreiParam::ShadingIntervalSize, 0.01, kInterval, 4.0},
        NumberCase{"IntervalMaxIs256", FreiParam::ShadingIntervalSize, 9.0, kInterval, 256.0}),
    [](const auto& info) { return info.param.label; });

INSTANTIATE_TEST_SUITE_P(
    AnglesAndCheckbox, NumberMapping,
    ::testing::Values(
        NumberCase{"QuarterTurnIs90Degrees", FreiParam::CurvePhase, 0.25, kCurvePhase, 5898240.0},
        NumberCase{"NegativeTurnIsMinus360", FreiParam::ImageShiftPhase, -1.0, kShiftPhase,
                   -23592960.0},
        NumberCase{"SeveralTurnsAreKept", FreiParam::ShadingIntervalPhase, 2.5, kShadePhase,
                   58982400.0},
        // 2^-20 turns are exactly 22.5 fixed-point units: half away from zero, not to even.
        NumberCase{"HalfRoundsAwayFromZero", FreiParam::CurvePhase, 1.0 / 1048576.0, kCurvePhase,
                   23.0},
        NumberCase{"NegativeHalfRoundsAwayFromZero", FreiParam::CurvePhase, -1.0 / 1048576.0,
                   kCurvePhase, -23.0},
        NumberCase{"TooManyTurnsSaturate", FreiParam::CurvePhase, 1000.0, kCurvePhase, kInt32Max},
        NumberCase{"TooManyNegativeTurnsSaturate", FreiParam::CurvePhase, -1000.0, kCurvePhase,
                   kInt32Min},
        NumberCase{"AngleNaNIsZero", FreiParam::CurvePhase, kNaN, kCurvePhase, 0.0},
        NumberCase{"BoolBelowHalfIsOff", FreiParam::ImageShiftPhaseSync, 0.49, kSync, 0.0},
        NumberCase{"BoolHalfIsOn", FreiParam::ImageShiftPhaseSync, 0.5, kSync, 1.0}),
    [](const auto& info) { return info.param.label; });

TEST(FreiSettings, DefaultsAreTheControlsDefaults) {
  const StretchRenderRecord r = FreiSettings().Record();
  EXPECT_EQ(r.direction, 0);
  EXPECT_EQ(r.channelMode, 0);
  EXPECT_EQ(r.intensity, 100.0);
  EXPECT_EQ(r.stretchAmount, 1.0);
  EXPECT_EQ(r.pixelSize, 1.0);
  EXPECT_EQ(r.curveShape, 0);
  EXPECT_EQ(r.curvePhase, 0);
  EXPECT_EQ(r.curveSmoothness, 0.0);
  EXPECT_EQ(r.startOffset, 0.0);
  EXPECT_EQ(r.distributionMode, 0);
  EXPECT_EQ(r.distributionRange, 2.0);
  EXPECT_EQ(r.imageShiftPhase, 0);
  EXPECT_EQ(r.imageShiftPhaseSync, 1);
  EXPECT_EQ(r.shadingMode, 0);
  EXPECT_EQ(r.shadingIntervalSize, 10);
  EXPECT_EQ(r.shadingIntervalPhase, 0);
  EXPECT_EQ(r.shadingChannels, 0);
  EXPECT_EQ(r.shadingOpacity, 0.0);
  EXPECT_EQ(r.edgeMode, 0);
  EXPECT_EQ(r.transparencyFeather, 0.0);
  EXPECT_EQ(r.intensityLayer, nullptr);
}

TEST(FreiSettings, DefaultsReportAsUnitValues) {
  const FreiSettings settings;
  EXPECT_EQ(settings.Number(FreiParam::MorvaneIntensity), 1.0);
  EXPECT_EQ(settings.Number(FreiParam::Morvane), 1.0 / 64.0);
  EXPECT_EQ(settings.Number(FreiParam::DistributionRange), 1.0);
  EXPECT_EQ(settings.Number(FreiParam::ShadingIntervalSize), 8.0 / 254.0);
  EXPECT_EQ(settings.Number(FreiParam::ImageShiftPhaseSync), 1.0);
  EXPECT_STREQ(settings.Item(FreiParam::EdgeMode), "wrap");
}

TEST(FreiSettings, UnitValuesReportBack) {
  FreiSettings settings;
  settings.SetNumber(FreiParam::PixelSize, 0.3);
  settings.SetNumber(FreiParam::CurvePhase, 0.25);
  EXPECT_DOUBLE_EQ(settings.Number(FreiParam::PixelSize), 0.3);
  EXPECT_EQ(settings.Number(FreiParam::CurvePhase), 0.25);
}

struct ItemCase {
  FreiParam param;
  const char* text;
  int32_t StretchRenderRecord::*field;
  int32_t expected;
};

class PopupItems : public ::testing::TestWithParam<ItemCase> {};

TEST_P(PopupItems, SelectTheZeroBasedItem) {
  const ItemCase& c = GetParam();
  FreiSettings settings;
  EXPECT_TRUE(settings.SetItem(c.param, c.text));
  EXPECT_EQ(settings.Record().*c.field, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    KebabAndDisplayNames, PopupItems,
    ::testing::Values(
        ItemCase{FreiParam::Direction, "up", &StretchRenderRecord::direction, 3},
        ItemCase{FreiParam::Channels, "rgb-no-alpha", &StretchRenderRecord::channelMode, 7},
        ItemCase{FreiParam::Channels, "Luma (no Alpha)", &StretchRenderRecord::channelMode, 6},
        ItemCase{FreiParam::StretchCurve, "exp-down", &StretchRenderRecord::curveShape, 5},
        ItemCase{FreiParam::DistributionMode, "Linear Ramp Down",
                 &StretchRenderRecord::distributionMode, 2},
        ItemCase{FreiParam::Shading, "line", &StretchRenderRecord::shadingMode, 5},
        ItemCase{FreiParam::ShadingChannels, "RGB", &StretchRenderRecord::shadingChannels, 1},
        ItemCase{FreiParam::EdgeMode, "repeat_last", &StretchRenderRecord::edgeMode, 2}));

TEST(FreiSettings, UnknownItemKeepsTheValue) {
  FreiSettings settings;
  ASSERT_TRUE(settings.SetItem(FreiParam::Direction, "down"));
  EXPECT_FALSE(settings.SetItem(FreiParam::Direction, "sideways"));
  EXPECT_FALSE(settings.SetItem(FreiParam::Direction, ""));
  EXPECT_EQ(settings.Record().direction, 2);
  EXPECT_FALSE(settings.SetItem(FreiParam::PixelSize, "right"));
}

TEST(FreiMapping, KebabCase) {
  EXPECT_EQ(KebabCase("Shading Channel(s)"), "shading-channels");
  EXPECT_EQ(KebabCase("  Luma (no Alpha) "), "luma-no-alpha");
  EXPECT_EQ(KebabCase("RGB_no--alpha"), "rgb-no-alpha");
}

}  // namespace
}  // namespace morvane::frei0r
