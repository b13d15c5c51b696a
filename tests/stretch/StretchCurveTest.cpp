#include <gtest/gtest.h>

#include "stretch/StretchCurve.h"
#include "stretch/StretchCurveTable.h"

namespace morvane {
namespace {

constexpr CurveFlags kRounded = CurveFlags::None;
using S = CurveShape;

struct CurveCase {
  CurveShape shape;
  int32_t i;
  double amplitude, offset;
  CurveFlags flags;
  double expected;
};

TEST(CurveValue, WorkedValues) {
  for (const CurveCase& c : {
           CurveCase{S::LinearRampUp, 1, 1, 0, kRounded, 0.0009775},
           CurveCase{S::LinearRampUp, 1, 1, 0, CurveFlags::NoRounding, 1.0 / 1023.0},
           CurveCase{S::LinearRampUp, 1, 1, 1, kRounded, 1.0009775},
           CurveCase{S::TriangleWave, 511, 1, 0, kRounded, 0.9990225},
           CurveCase{S::TriangleWave, 512, 1, 0, kRounded, 0.9990225},
           CurveCase{S::SineWave, 0, 2, 0, kRounded, 1.0},
           CurveCase{S::SineWave, 256, 2, 0, kRounded, 2.0},
           CurveCase{S::SineWave, 1023, 2, 0, CurveFlags::SineInclusive, 0.9938641},  // ignored
           CurveCase{S::ExpDown, 1023, 2, 1, kRounded, 1.0},
           CurveCase{static_cast<S>(9), 300, 5, 1.25, kRounded, 1.25},  // unknown: offset only
       }) {
    EXPECT_EQ(CurveValue(c.shape, c.i, 1024, c.amplitude, c.offset, c.flags), c.expected)
        << static_cast<int>(c.shape) << " at " << c.i;
  }
}

TEST(SmoothedCurveValue, BlendsTheMeansOfTwoRadii) {
  // LinearRampUp, amplitude 1, offset 1 around sample 0: neighbours wrap to 1023, 1022, ...
  const double mean3 = (1.0 + 2.0 + 1.0009775) / 3.0;
  const double mean5 = (1.0 + 1.9990225 + 2.0 + 1.0009775 + 1.0019550) / 5.0;
  for (const auto& [smoothness, expected] :
       {std::pair{0.0f, 1.0}, std::pair{1.0f, 1.0}, std::pair{0.999f, 1.3333255118},
        std::pair{2.0f, mean3}, std::pair{1.5f, 0.5 * mean3 + 0.5 * mean5}}) {
    EXPECT_NEAR(SmoothedCurveValue(S::LinearRampUp, 0, 1024, 1, 1, smoothness, kRounded), expected,
                1e-9)
        << smoothness;
  }
}

TEST(SmoothedCurveValue, SmoothnessBeyondTheCurveIsHeldAtNMinusOne) {
  for (int32_t i : {0, 5, 1023}) {
    const double limit = SmoothedCurveValue(S::ExpUp, i, 1024, 3, 1, 1023.0f, kRounded);
    EXPECT_EQ(SmoothedCurveValue(S::ExpUp, i, 1024, 3, 1, 5000.0f, kRounded), limit);
  }
  EXPECT_EQ(SmoothedCurveValue(S::LinearRampUp, 0, 4, 3, 0, 100.0f, kRounded),
            SmoothedCurveValue(S::LinearRampUp, 0, 4, 3, 0, 3.0f, kRounded));
}

TEST(CurveValueF, SinglePrecisionTwins) {
  EXPECT_EQ(CurveValueF(S::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded), 1.0009775f);
  // Only the single-precision sine honours the inclusive flag: the period closes at n - 1.
  EXPECT_EQ(CurveValueF(S::SineWave, 1023, 1024, 2.0f, 0.0f, CurveFlags::SineInclusive), 1.0f);
  EXPECT_EQ(CurveValueF(S::SineWave, 1023, 1024, 2.0f, 0.0f, kRounded), 0.9938641f);
  // Sums and blend in float differ from the double result narrowed afterwards.
  const float outer =
      ((1.0f + 2.0f) + CurveValueF(S::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded)) / 3.0f;
  const float expected = 1.0f * (1.0f - 0.999f) + outer * 0.999f;
  const float actual = SmoothedCurveValueF(S::LinearRampUp, 0, 1024, 1.0f, 1.0f, 0.999f, kRounded);
  EXPECT_EQ(actual, expected);
  EXPECT_NE(actual, static_cast<float>(
                        SmoothedCurveValue(S::LinearRampUp, 0, 1024, 1, 1, 0.999f, kRounded)));
}

StretchRenderRecord Defaults() {
  StretchRenderRecord r{};
  r.intensity = 100;
  r.stretchAmount = 1;
  r.pixelSize = 1;
  return r;
}

TEST(StretchCurveTable, PhaseRotatesTheDefaultRamp) {
  // One phase step is 23592960 / 1024 = 23040; -1 step lands one lower than a plain modulo.
  for (const auto& [phase, indexOfSampleZero] :
       {std::pair{0, 0}, std::pair{23040, 1}, std::pair{-23040, 1022}, std::pair{-23592960, 1023},
        std::pair{23592960, 0}, std::pair{5898240, 256}}) {
    StretchRenderRecord r = Defaults();
    r.curvePhase = phase;
    const StretchCurveTable t = BuildStretchCurveTable(r);
    EXPECT_EQ(t[indexOfSampleZero], 1.0) << phase;
    EXPECT_EQ(t[(indexOfSampleZero + 1) % 1024], 1.0009775) << phase;
    EXPECT_EQ(t[(indexOfSampleZero + 1023) % 1024], 2.0) << phase;
  }
}

TEST(StretchCurveTable, ZeroIntensityIsAllOnes) {
  for (int32_t shape = 0; shape < 6; ++shape) {
    StretchRenderRecord r = Defaults();
    r.intensity = 0;
    r.stretchAmount = 12;
    r.pixelSize = 3;
    r.curveShape = shape;
    r.curvePhase = 1234567;
    r.curveSmoothness = 2.5;
    for (double v : BuildStretchCurveTable(r))
      ASSERT_EQ(v, 1.0) << shape;
  }
}

TEST(StretchCurveTable, ScaledSmoothnessAndAmplitude) {
  StretchRenderRecord r = Defaults();
  r.curveShape = static_cast<int32_t>(S::SineWave);
  r.stretchAmount = 4;
  r.pixelSize = 0.5;
  r.intensity = 80;
  r.curveSmoothness = 1.3;
  const StretchCurveTable t = BuildStretchCurveTable(r);
  const float smoothness = static_cast<float>(1.3 * 10.778947830200195);
  EXPECT_EQ(r.curveSmoothness, static_cast<double>(smoothness));
  for (int32_t i : {0, 13, 1023}) {
    EXPECT_EQ(t[i], SmoothedCurveValue(S::SineWave, i, 1024, 0.8 * 4, (0.5 - 1.0) * 0.8 + 1.0,
                                       smoothness, kRounded));
  }
}

}  // namespace
}  // namespace morvane
