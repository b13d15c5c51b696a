#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "stretch/Shading.h"

namespace morvane {
namespace {

struct TableCase {
  const char* name;
  ShadingMode mode;
  int32_t intervalSize;
  double opacity;
  std::vector<double> entries;
};

class ShadingTableTest : public testing::TestWithParam<TableCase> {};

TEST_P(ShadingTableTest, FullIntensityScaleOne) {
  const TableCase& c = GetParam();
  const ShadingTable t = BuildShadingTable(c.mode, c.intervalSize, 0, c.opacity, 1.0, 1.0f);
  ASSERT_EQ(t.size, static_cast<int32_t>(c.entries.size()));
  for (int32_t i = 0; i < t.size; ++i) EXPECT_EQ(t.entries[i], c.entries[i]) << i;
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, ShadingTableTest,
    testing::Values(
        TableCase{"RampUp", ShadingMode::LinearRampUp, 4, 0, {0.0, 0.25, 0.5, 0.75}},
        TableCase{"RampDown", ShadingMode::LinearRampDown, 4, 0, {1.0, 0.75, 0.5, 0.25}},
        TableCase{"LineOfFour", ShadingMode::Line, 4, 0, {0.5, 1.0, 0.5, 0.0}},
        TableCase{"LineOfSix", ShadingMode::Line, 6, 0, {0.5, 1.0, 0.5, 0.0, 0.0, 0.0}},
        TableCase{"LineOfThree", ShadingMode::Line, 3, 0, {1.0, 0.5, 0.0}},
        TableCase{"LineOfTwo", ShadingMode::Line, 2, 0, {1.0, 0.0}},
        TableCase{"HalfOpacity", ShadingMode::LinearRampUp, 4, 50, {0.5, 0.625, 0.75, 0.875}},
        TableCase{"FullOpacityIsNoShade", ShadingMode::TriangleWave, 4, 100, {1, 1, 1, 1}},
        TableCase{"NoneIsNoShade", ShadingMode::None, 3, 0, {1, 1, 1}},
        TableCase{"Triangle", ShadingMode::TriangleWave, 4, 0, {0.0, 0.5, 1.0, 0.5}},
        TableCase{"Sine", ShadingMode::SineWave, 2, 0, {1.0, 0.0}}),
    [](const testing::TestParamInfo<TableCase>& info) { return std::string(info.param.name); });

TEST(ShadingTable, SineUsesTheShortPi) {
  const ShadingTable t = BuildShadingTable(ShadingMode::SineWave, 4, 0, 0, 1.0, 1.0f);
  EXPECT_EQ(t.entries[1], std::cos((0.25 + 0.25) * 3.14159265359) * 0.5 + 0.5);
  EXPECT_NE(t.entries[1], 0.5);
}

TEST(ShadingTable, IntensityWeakensThePattern) {
  // b = (0 - 1) * 0.5 + 1 = 0.5.
  const ShadingTable t = BuildShadingTable(ShadingMode::LinearRampUp, 4, 0, 0, 0.5, 1.0f);
  EXPECT_EQ(t.entries[0], 0.5);
  EXPECT_EQ(t.entries[2], 0.75);
}

struct SizeCase {
  int32_t intervalSize;
  float scale;
  int32_t size;
};

TEST(ShadingTable, SizeFromIntervalAndScale) {
  for (const SizeCase& c : {SizeCase{10, 0.5f, 5}, SizeCase{2, 0.5f, 2}, SizeCase{0, 1.0f, 8},
                            SizeCase{0, 0.25f, 2}, SizeCase{256, 1.0f, 256},
                            SizeCase{256, 2.0f, 256}, SizeCase{-5, 1.0f, 2},
                            SizeCase{7, 0.999f, 6}}) {
    EXPECT_EQ(ShadingTableSize(c.intervalSize, c.scale), c.size)
        << c.intervalSize << " x " << c.scale;
  }
}

struct PhaseCase {
  int32_t phase;
  int32_t size;
  int32_t rotation;
};

TEST(ShadingTable, PhaseRotatesWithTheNegativeRule) {
  for (const PhaseCase& c : {PhaseCase{5898240, 8, 2}, PhaseCase{-2949120, 8, 6},
                             PhaseCase{0, 8, 0}, PhaseCase{23592960, 8, 0},
                             PhaseCase{-23592960, 8, 7}}) {
    EXPECT_EQ(ShadingTablePhase(c.phase, c.size), c.rotation) << c.phase;
  }
  const ShadingTable t = BuildShadingTable(ShadingMode::LinearRampUp, 8, 5898240, 0, 1.0, 1.0f);
  EXPECT_EQ(t.entries[2], 0.0);
  EXPECT_EQ(t.entries[3], 0.125);
  EXPECT_EQ(t.entries[1], 0.875);
}

TEST(ShadeWalker, ReadsCurrentAndNextFromTheImageShift) {
  const ShadingTable t = BuildShadingTable(ShadingMode::LinearRampUp, 4, 0, 0, 1.0, 1.0f);
  ShadeWalker walker(t, 7);  // 7 mod 4 = 3
  const double expected[][2] = {{0.75, 0.0}, {0.0, 0.25}, {0.25, 0.5}, {0.5, 0.75}, {0.75, 0.0}};
  for (const auto& e : expected) {
    EXPECT_EQ(walker.Current(), e[0]);
    EXPECT_EQ(walker.Next(), e[1]);
    walker.Advance();
  }
}

TEST(RouteShades, ColourOrAlpha) {
  const StepMultipliers rgb = RouteShades(ShadingChannel::RGB, 0.25, 0.5);
  EXPECT_EQ(rgb.colourCurrent, 0.25);
  EXPECT_EQ(rgb.colourNext, 0.5);
  EXPECT_EQ(rgb.alphaCurrent, 1.0);
  EXPECT_EQ(rgb.alphaNext, 1.0);
  const StepMultipliers alpha = RouteShades(ShadingChannel::Alpha, 0.25, 0.5);
  EXPECT_EQ(alpha.colourCurrent, 1.0);
  EXPECT_EQ(alpha.alphaCurrent, 0.25);
  EXPECT_EQ(alpha.alphaNext, 0.5);
  EXPECT_EQ(ShadingChannelFromRecord(4), ShadingChannel::Alpha);
  EXPECT_EQ(ShadingModeFromRecord(6), ShadingMode::None);
}

}  // namespace
}  // namespace morvane
