#include <gtest/gtest.h>

#include <vector>

#include "stretch/EdgeModes.h"

namespace morvane {
namespace {

struct SequenceCase {
  const char* name;
  EdgeMode mode;
  std::vector<int32_t> indices;  // positions 0, 1, 2, ...
};

class ResolveSequenceTest : public testing::TestWithParam<SequenceCase> {};

TEST_P(ResolveSequenceTest, LineOfFive) {
  const SequenceCase& c = GetParam();
  for (size_t k = 0; k < c.indices.size(); ++k) {
    EXPECT_EQ(ResolveLinePosition(c.mode, 5, static_cast<int64_t>(k)), c.indices[k]) << k;
  }
}

INSTANTIATE_TEST_SUITE_P(
    EveryMode, ResolveSequenceTest,
    testing::Values(SequenceCase{"Wrap", EdgeMode::Wrap, {0, 1, 2, 3, 4, 0, 1, 2, 3, 4, 0}},
                    SequenceCase{"Mirror", EdgeMode::Mirror, {0, 1, 2, 3, 4, 3, 2, 1, 0, 1, 2}},
                    SequenceCase{"RepeatLast", EdgeMode::RepeatLast, {0, 1, 2, 3, 4, 4, 4, 4, 4}},
                    SequenceCase{"Transparent", EdgeMode::Transparent, {0, 1, 2, 3, 4, 0, 1, 2}}),
    [](const testing::TestParamInfo<SequenceCase>& info) { return std::string(info.param.name); });

TEST(EdgePeriod, SubstitutesForOnePixelLines) {
  EXPECT_EQ(EdgePeriod(EdgeMode::Wrap, 5), 5);
  EXPECT_EQ(EdgePeriod(EdgeMode::Mirror, 5), 8);
  EXPECT_EQ(EdgePeriod(EdgeMode::RepeatLast, 5), 4);
  EXPECT_EQ(EdgePeriod(EdgeMode::Transparent, 5), 5);
  EXPECT_EQ(EdgePeriod(EdgeMode::Mirror, 1), 2);
  EXPECT_EQ(EdgePeriod(EdgeMode::RepeatLast, 1), 1);
  EXPECT_EQ(EdgeModeFromRecord(7), EdgeMode::Wrap);
  EXPECT_EQ(EdgeModeFromRecord(-1), EdgeMode::Wrap);
}

// Runs a walker from `start` and checks every step against direct resolution.
template <EdgeMode Mode>
void ExpectWalkerMatches(int32_t length, int64_t start, int steps) {
  LinePositionWalker<Mode> walker(length, start);
  for (int s = 0; s < steps; ++s) {
    ASSERT_EQ(walker.Index(), ResolveLinePosition(Mode, length, start + s))
        << "L " << length << " start " << start << " step " << s;
    walker.Advance();
  }
}

TEST(LinePositionWalker, AgreesWithResolutionInEveryMode) {
  for (int32_t length : {1, 2, 3, 5, 8}) {
    for (int64_t start = 0; start < 2 * length + 1; ++start) {
      ExpectWalkerMatches<EdgeMode::Wrap>(length, start, 40);
      ExpectWalkerMatches<EdgeMode::Mirror>(length, start, 40);
      ExpectWalkerMatches<EdgeMode::RepeatLast>(length, start, 40);
      ExpectWalkerMatches<EdgeMode::Transparent>(length, start, 40);
    }
  }
}

TEST(LinePositionWalker, OnePixelLineReadsThatPixelInEveryMode) {
  for (int64_t k : {0, 1, 2, 3, 17}) {
    for (int32_t mode = 0; mode < 4; ++mode) {
      EXPECT_EQ(ResolveLinePosition(static_cast<EdgeMode>(mode), 1, k), 0);
    }
  }
}

struct FadeCase {
  const char* name;
  int32_t length;
  double featherPercent;
  std::vector<double> fades;  // positions 0, 1, 2, ...
};

class EdgeFadeTest : public testing::TestWithParam<FadeCase> {};

TEST_P(EdgeFadeTest, FadesTowardsTheFarEnd) {
  const FadeCase& c = GetParam();
  const int32_t feather = FeatherLength(c.featherPercent, c.length);
  LinePositionWalker<EdgeMode::Transparent> walker(c.length, 0);
  for (size_t k = 0; k < c.fades.size(); ++k) {
    EXPECT_EQ(EdgeFade(c.length, feather, static_cast<int64_t>(k)), c.fades[k]) << k;
    EXPECT_EQ(walker.Fade(feather), c.fades[k]) << k;
    walker.Advance();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Feathers, EdgeFadeTest,
    testing::Values(FadeCase{"Forty", 5, 40, {1, 1, 1, 1, 0.5, 0, 0, 0}},
                    FadeCase{"Zero", 5, 0, {1, 1, 1, 1, 1, 0, 0}},
                    FadeCase{"Hundred", 4, 100, {1, 0.75, 0.5, 0.25, 0, 0}},
                    FadeCase{"Thirds", 3, 100, {1, static_cast<double>(2.0f / 3.0f),
                                                static_cast<double>(1.0f / 3.0f), 0}}),
    [](const testing::TestParamInfo<FadeCase>& info) { return std::string(info.param.name); });

TEST(EdgeFade, OtherModesNeverFade) {
  LinePositionWalker<EdgeMode::Wrap> wrap(4, 3);
  LinePositionWalker<EdgeMode::Mirror> mirror(4, 3);
  for (int s = 0; s < 6; ++s, wrap.Advance(), mirror.Advance()) {
    EXPECT_EQ(wrap.Fade(4), 1.0);
    EXPECT_EQ(mirror.Fade(4), 1.0);
  }
}

constexpr int64_t Fixed(double pixels) { return static_cast<int64_t>(pixels * 4096.0); }

TEST(ResolveIntensityPosition, FractionalMirrorTurnsAtTheLastPixel) {
  const int64_t period = EdgePeriod(EdgeMode::Mirror, 5);
  const auto pixel = [&](int64_t p) {
    return LayerPixelOnLine(ResolveIntensityPosition(EdgeMode::Mirror, period, p), 5);
  };
  EXPECT_EQ(pixel(Fixed(4.0)), 4);
  EXPECT_EQ(pixel(Fixed(4.0) + 1), 3);
  EXPECT_EQ(pixel(Fixed(5.0)), 3);
  EXPECT_EQ(pixel(Fixed(5.0) + 1), 2);
  EXPECT_EQ(pixel(Fixed(8.0)), 0);
  EXPECT_EQ(pixel(Fixed(9.5)), 1);
}

TEST(ResolveIntensityPosition, WrapAndRepeatLast) {
  EXPECT_EQ(ResolveIntensityPosition(EdgeMode::Wrap, 5, Fixed(7.25)), Fixed(2.25));
  EXPECT_EQ(ResolveIntensityPosition(EdgeMode::Transparent, 5, Fixed(7.25)), Fixed(2.25));
  EXPECT_EQ(ResolveIntensityPosition(EdgeMode::RepeatLast, 4, Fixed(7.25)), Fixed(4.0));
  EXPECT_EQ(ResolveIntensityPosition(EdgeMode::RepeatLast, 4, Fixed(2.5)), Fixed(2.5));
}

TEST(ResolveIntensityPosition, OnePixelLayerLineStaysOnItsPixel) {
  for (int32_t mode = 0; mode < 4; ++mode) {
    const auto m = static_cast<EdgeMode>(mode);
    for (int64_t p : {Fixed(0.0), Fixed(0.5), Fixed(1.0), Fixed(1.5), Fixed(3.0)}) {
      EXPECT_EQ(LayerPixelOnLine(ResolveIntensityPosition(m, EdgePeriod(m, 1), p), 1), 0)
          << mode << " " << p;
    }
  }
}

template <EdgeMode Mode>
void ExpectLayerWalkerMatches(int32_t length, int64_t step, int64_t start) {
  LayerPositionWalker<Mode> walker(length, step, start);
  const int64_t period = EdgePeriod(Mode, length);
  for (int s = 0; s < 60; ++s) {
    const int64_t p = start + s * step;
    ASSERT_EQ(walker.Pixel(), LayerPixelOnLine(ResolveIntensityPosition(Mode, period, p), length))
        << "Ls " << length << " step " << step << " s " << s;
    walker.Advance();
  }
}

TEST(LayerPositionWalker, AgreesWithResolutionInEveryMode) {
  for (int32_t length : {1, 2, 5, 9}) {
    for (int64_t step : {int64_t{0}, int64_t{1}, int64_t{1000}, int64_t{4096}, int64_t{7782},
                         int64_t{length} * 4096}) {
      for (int64_t start : {int64_t{0}, int64_t{4095}, int64_t{length} * 4096 - 1}) {
        ExpectLayerWalkerMatches<EdgeMode::Wrap>(length, step, start);
        ExpectLayerWalkerMatches<EdgeMode::Mirror>(length, step, start);
        ExpectLayerWalkerMatches<EdgeMode::RepeatLast>(length, step, start);
      }
    }
  }
}

}  // namespace
}  // namespace morvane
