#include <gtest/gtest.h>

#include <cmath>

#include "stretch/StretchCurve.h"
#include "stretch/StretchCurveTable.h"

namespace morvane {
namespace {

constexpr CurveFlags kRounded = CurveFlags::None;

struct CurveCase {
  const char* name;
  CurveShape shape;
  int32_t i;
  double amplitude;
  double offset;
  CurveFlags flags;
  double expected;
};

class CurveValueTest : public testing::TestWithParam<CurveCase> {};

TEST_P(CurveValueTest, MatchesWorkedValue) {
  const CurveCase& c = GetParam();
  EXPECT_EQ(CurveValue(c.shape, c.i, 1024, c.amplitude, c.offset, c.flags), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    WorkedValues, CurveValueTest,
    testing::Values(
        CurveCase{"RampFirstStep", CurveShape::LinearRampUp, 1, 1, 0, kRounded, 0.0009775},
        CurveCase{"RampUnrounded", CurveShape::LinearRampUp, 1, 1, 0, CurveFlags::NoRounding,
                  1.0 / 1023.0},
        CurveCase{"RampWithOffset", CurveShape::LinearRampUp, 1, 1, 1, kRounded, 1.0009775},
        CurveCase{"RampEnd", CurveShape::LinearRampUp, 1023, 1, 1, kRounded, 2.0},
        CurveCase{"RampDownStart", CurveShape::LinearRampDown, 0, 3, 0.5, kRounded, 3.5},
        CurveCase{"TriangleBelowHalf", CurveShape::TriangleWave, 511, 1, 0, kRounded, 0.9990225},
        CurveCase{"TriangleAtHalf", CurveShape::TriangleWave, 512, 1, 0, kRounded, 0.9990225},
        CurveCase{"SineStartsAtHalf", CurveShape::SineWave, 0, 2, 0, kRounded, 1.0},
        CurveCase{"SinePeakAtQuarter", CurveShape::SineWave, 256, 2, 0, kRounded, 2.0},
        CurveCase{"SineIgnoresInclusiveFlag", CurveShape::SineWave, 1023, 2, 0,
                  CurveFlags::SineInclusive, 0.9938641},
        CurveCase{"ExpUpIsFourthPower", CurveShape::ExpUp, 1023, 2, 0, kRounded, 2.0},
        CurveCase{"ExpDownEnd", CurveShape::ExpDown, 1023, 2, 1, kRounded, 1.0},
        CurveCase{"UnknownShapeIsOffsetOnly", static_cast<CurveShape>(9), 300, 5, 1.25, kRounded,
                  1.25}),
    [](const testing::TestParamInfo<CurveCase>& info) { return std::string(info.param.name); });

struct SmoothingCase {
  const char* name;
  float smoothness;
  double expected;
};

// LinearRampUp, amplitude 1, offset 1 around sample 0: the neighbours wrap to 1023, 1022, ...
double Ramp(int32_t i) {
  return CurveValue(CurveShape::LinearRampUp, i, 1024, 1, 1, kRounded);
}

class SmoothedCurveTest : public testing::TestWithParam<SmoothingCase> {};

TEST_P(SmoothedCurveTest, BlendsNeighbourMeans) {
  const SmoothingCase& c = GetParam();
  EXPECT_NEAR(SmoothedCurveValue(CurveShape::LinearRampUp, 0, 1024, 1, 1, c.smoothness, kRounded),
              c.expected, 1e-9);
}

const double kMean3 = (1.0 + 2.0 + 1.0009775) / 3.0;
const double kMean5 = (1.0 + 1.9990225 + 2.0 + 1.0009775 + 1.0019550) / 5.0;

INSTANTIATE_TEST_SUITE_P(
    WorkedValues, SmoothedCurveTest,
    testing::Values(SmoothingCase{"Zero", 0.0f, 1.0}, SmoothingCase{"One", 1.0f, 1.0},
                    SmoothingCase{"AlmostOne", 0.999f, 1.3333255118},
                    SmoothingCase{"Two", 2.0f, kMean3},
                    SmoothingCase{"OneAndAHalf", 1.5f, 0.5 * kMean3 + 0.5 * kMean5}),
    [](const testing::TestParamInfo<SmoothingCase>& info) { return std::string(info.param.name); });

TEST(SmoothedCurve, SmoothnessBeyondTheCurveIsHeldAtNMinusOne) {
  for (int32_t i : {0, 5, 1023}) {
    const double limit = SmoothedCurveValue(CurveShape::ExpUp, i, 1024, 3, 1, 1023.0f, kRounded);
    EXPECT_EQ(SmoothedCurveValue(CurveShape::ExpUp, i, 1024, 3, 1, 5000.0f, kRounded), limit);
    EXPECT_EQ(SmoothedCurveValue(CurveShape::ExpUp, i, 1024, 3, 1, 1023.5f, kRounded), limit);
  }
  // With only four samples the radius stops at 3 and every neighbour stays on the curve.
  EXPECT_EQ(SmoothedCurveValue(CurveShape::LinearRampUp, 0, 4, 3, 0, 100.0f, kRounded),
            SmoothedCurveValue(CurveShape::LinearRampUp, 0, 4, 3, 0, 3.0f, kRounded));
}

TEST(SmoothedCurve, NegativeSmoothnessOfOneOrMoreReturnsCentre) {
  EXPECT_EQ(SmoothedCurveValue(CurveShape::SineWave, 7, 1024, 2, 0, -1.0f, kRounded),
            CurveValue(CurveShape::SineWave, 7, 1024, 2, 0, kRounded));
}

TEST(SmoothedCurve, NeighbourSumsUseRoundedSamplesInOrder) {
  // Smoothness 0.5 at sample 10: inner mean is the centre, outer the 3-sample mean.
  const double c = Ramp(10);
  const double outer = ((c + Ramp(9)) + Ramp(11)) / 3.0;
  EXPECT_EQ(SmoothedCurveValue(CurveShape::LinearRampUp, 10, 1024, 1, 1, 0.5f, kRounded),
            c * (1.0 - 0.5) + outer * 0.5);
}

TEST(CurveValueF, SingleCurveMatchesDoubleWhereTheyAgree) {
  EXPECT_EQ(CurveValueF(CurveShape::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded), 1.0009775f);
  EXPECT_EQ(CurveValueF(CurveShape::SineWave, 256, 1024, 2.0f, 0.0f, kRounded), 2.0f);
  EXPECT_EQ(CurveValueF(CurveShape::TriangleWave, 512, 1024, 1.0f, 0.0f, kRounded), 0.9990225f);
}

TEST(CurveValueF, InclusiveSineRunsOverIOverNMinusOne) {
  // With the flag the last sample closes the period: back to the midpoint h.
  EXPECT_EQ(CurveValueF(CurveShape::SineWave, 1023, 1024, 2.0f, 0.0f, CurveFlags::SineInclusive),
            1.0f);
  EXPECT_EQ(CurveValueF(CurveShape::SineWave, 1023, 1024, 2.0f, 0.0f, kRounded), 0.9938641f);
}

TEST(CurveValueF, SmoothedTwinSumsAndBlendsInSinglePrecision) {
  const float centre = 1.0f;
  const float outer = ((centre + 2.0f) +
                       CurveValueF(CurveShape::LinearRampUp, 1, 1024, 1.0f, 1.0f, kRounded)) /
                      3.0f;
  const float phi = 0.999f;
  const float expected = centre * (1.0f - phi) + outer * phi;
  const float actual =
      SmoothedCurveValueF(CurveShape::LinearRampUp, 0, 1024, 1.0f, 1.0f, 0.999f, kRounded);
  EXPECT_EQ(actual, expected);
  // The double curve narrowed afterwards is a different float.
  EXPECT_NE(actual, static_cast<float>(SmoothedCurveValue(CurveShape::LinearRampUp, 0, 1024, 1, 1,
                                                          0.999f, kRounded)));
}

StretchRenderRecord DefaultRecord() {
  StretchRenderRecord r{};
  r.intensity = 100;
  r.stretchAmount = 1;
  r.pixelSize = 1;
  return r;
}

TEST(StretchCurveTable, DefaultsRunFromOneToTwo) {
  StretchRenderRecord r = DefaultRecord();
  const StretchCurveTable t = BuildStretchCurveTable(r);
  EXPECT_EQ(t[0], 1.0);
  EXPECT_EQ(t[1], 1.0009775);
  EXPECT_EQ(t[511], 1.4995112);
  EXPECT_EQ(t[1023], 2.0);
}

struct PhaseCase {
  const char* name;
  int32_t curvePhase;
  int32_t indexOfSampleZero;
};

class CurvePhaseTest : public testing::TestWithParam<PhaseCase> {};

TEST_P(CurvePhaseTest, RotatesTable) {
  StretchRenderRecord r = DefaultRecord();
  r.curvePhase = GetParam().curvePhase;
  const StretchCurveTable t = BuildStretchCurveTable(r);
  const int32_t at = GetParam().indexOfSampleZero;
  EXPECT_EQ(t[at], 1.0);
  EXPECT_EQ(t[(at + 1) % 1024], 1.0009775);
  EXPECT_EQ(t[(at + 1023) % 1024], 2.0);
}

// One phase step is 23592960 / 1024 = 23040.
INSTANTIATE_TEST_SUITE_P(
    Rotations, CurvePhaseTest,
    testing::Values(PhaseCase{"None", 0, 0}, PhaseCase{"OneStep", 23040, 1},
                    PhaseCase{"MinusOneStepIsOneLess", -23040, 1022},
                    PhaseCase{"MinusWholeTurn", -23592960, 1023},
                    PhaseCase{"WholeTurnIsNoRotation", 23592960, 0},
                    PhaseCase{"QuarterTurn", 5898240, 256}),
    [](const testing::TestParamInfo<PhaseCase>& info) { return std::string(info.param.name); });

TEST(StretchCurveTable, ZeroIntensityIsAllOnes) {
  for (int32_t shape = 0; shape < 6; ++shape) {
    StretchRenderRecord r = DefaultRecord();
    r.intensity = 0;
    r.stretchAmount = 12;
    r.pixelSize = 3;
    r.curveShape = shape;
    r.curvePhase = 1234567;
    r.curveSmoothness = 2.5;
    const StretchCurveTable t = BuildStretchCurveTable(r);
    for (double v : t) ASSERT_EQ(v, 1.0) << "shape " << shape;
  }
}

TEST(StretchCurveTable, SmoothnessIsScaledAndMatchesSmoothedCurveValue) {
  StretchRenderRecord r = DefaultRecord();
  r.curveShape = static_cast<int32_t>(CurveShape::SineWave);
  r.stretchAmount = 4;
  r.pixelSize = 0.5;
  r.intensity = 80;
  r.curveSmoothness = 1.3;
  const StretchCurveTable t = BuildStretchCurveTable(r);
  const float smoothness = static_cast<float>(1.3 * 10.778947830200195);
  EXPECT_EQ(r.curveSmoothness, static_cast<double>(smoothness));
  const double amplitude = 0.8 * 4;
  const double offset = (0.5 - 1.0) * 0.8 + 1.0;
  for (int32_t i : {0, 1, 13, 500, 1022, 1023}) {
    EXPECT_EQ(t[i], SmoothedCurveValue(CurveShape::SineWave, i, 1024, amplitude, offset, smoothness,
                                       kRounded))
        << i;
  }
}

}  // namespace
}  // namespace morvane
