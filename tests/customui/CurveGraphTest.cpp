#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <vector>

#include "params/CurveGraph.h"

namespace morvane {
namespace {

constexpr int32_t kSize = kCurveGraphSize;
constexpr int32_t kInner = 48;  // filtered pixels per row and column
constexpr PF_Fixed kDegree = 65536;

// The 50 x 50 picture, one grey level per pixel after checking that all four bytes agree.
class Picture {
 public:
  Picture(CurveShape shape, PF_Fixed phase, float smoothness)
      : bytes_(kCurveGraphPictureBytes, 0xAB) {
    EXPECT_EQ(RenderCurveGraphPicture(bytes_.data(), shape, phase, smoothness), 1);
  }
  uint8_t Grey(int32_t x, int32_t y) const { return bytes_[Offset(x, y)]; }
  bool Uniform(int32_t x, int32_t y) const {
    const std::size_t at = Offset(x, y);
    return bytes_[at] == bytes_[at + 1] && bytes_[at] == bytes_[at + 2] &&
           bytes_[at] == bytes_[at + 3];
  }
  const std::vector<uint8_t>& Bytes() const { return bytes_; }

 private:
  static std::size_t Offset(int32_t x, int32_t y) {
    return static_cast<std::size_t>((y * kSize + x) * 4);
  }
  std::vector<uint8_t> bytes_;
};

TEST(CurveGraphGreyRamp, RunsFromBackgroundToFullInk) {
  const std::array<uint8_t, 256> ramp = CurveGraphGreyRamp();
  EXPECT_EQ(ramp[0], 64);     // no ink: the background
  EXPECT_EQ(ramp[7], 70);     // one canvas byte of weight 1
  EXPECT_EQ(ramp[224], 220);  // a fully inked neighbourhood
  EXPECT_EQ(ramp[255], 223);
  for (std::size_t s = 1; s < ramp.size(); ++s)
    EXPECT_LE(ramp[s - 1], ramp[s]) << s;
}

// phase (16.16 degrees) -> first column of the curve
class ColumnOffsetTest : public ::testing::TestWithParam<std::tuple<PF_Fixed, int32_t>> {};

TEST_P(ColumnOffsetTest, FollowsThePhase) {
  EXPECT_EQ(CurveGraphColumnOffset(std::get<0>(GetParam())), std::get<1>(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Phases, ColumnOffsetTest,
    ::testing::Values(std::make_tuple(0, 0), std::make_tuple(90 * kDegree, 24),
                      std::make_tuple(-245760, 94),          // -3.75 degrees: k = -1
                      std::make_tuple(245760, 1),            // +3.75 degrees
                      std::make_tuple(245759, 0),            // just short of one column
                      std::make_tuple(360 * kDegree, 0),     // a full turn
                      std::make_tuple(-360 * kDegree, 95),   // k = -96: one below 0
                      std::make_tuple(450 * kDegree, 24),    // a turn and a quarter
                      std::make_tuple(-90 * kDegree, 71)));  // k = -24

TEST(CurveGraphPicture, LinearRampAtPhaseZeroIsTheRisingDiagonal) {
  const Picture picture(CurveShape::LinearRampUp, 0, 0.0f);
  // The curve's ink lies where canvas row + column is 97 ... 100, i.e. around picture pixels
  // with x + y = 47; everything away from it is background.
  for (int32_t x = 0; x < kInner; ++x) {
    int32_t brightest = 0;
    for (int32_t y = 0; y < kInner; ++y) {
      if (picture.Grey(x, y) > picture.Grey(x, brightest)) brightest = y;
      if (std::abs(x + y - 47) > 2) {
        EXPECT_EQ(picture.Grey(x, y), 64) << x << "," << y;
      }
    }
    EXPECT_NEAR(brightest + x, 47, 1) << "column " << x;
    EXPECT_GT(picture.Grey(x, brightest), 64) << "column " << x;
  }
  // Canvas column d holds ink in rows 97 - d ... 100 - d (the point of height d - 2 and the run
  // up to height d - 1). Pixel (10, 37) filters rows 75 ... 78 of columns 21 ... 24: weights
  // 2+2+1, 2+3+3+2, 2+3+3 and 1+2, together 26, so the ink sum is 7 * 26 = 182.
  EXPECT_EQ(picture.Grey(10, 37), CurveGraphGreyRamp()[182]);
}

TEST(CurveGraphPicture, BackgroundIsGreyWithEqualAlpha) {
  const Picture picture(CurveShape::LinearRampUp, 0, 0.0f);
  // Top-left corner, far from the curve.
  for (int32_t y = 0; y < 10; ++y) {
    for (int32_t x = 0; x < 10; ++x) {
      EXPECT_EQ(picture.Grey(x, y), 64);
      EXPECT_TRUE(picture.Uniform(x, y));
    }
  }
}

TEST(CurveGraphPicture, PhaseNinetyDegreesMovesTheCurveByTwelvePixels) {
  const Picture base(CurveShape::LinearRampUp, 0, 0.0f);
  const Picture turned(CurveShape::LinearRampUp, 90 * kDegree, 0.0f);
  // 24 graph columns are 24 canvas columns, 12 picture pixels. Compared away from the seams where
  // the curve wraps round (graph columns 95 | 0 unturned, 23 | 24 turned) and the right edge.
  for (int32_t x = 2; x <= 34; ++x) {
    for (int32_t y = 0; y < kInner; ++y) {
      EXPECT_EQ(turned.Grey(x + 12, y), base.Grey(x, y)) << x << "," << y;
    }
  }
  // Left of the seam lies the end of the ramp, at the top.
  EXPECT_GT(turned.Grey(9, 1), 64);
  EXPECT_EQ(base.Grey(9, 1), 64);
}

TEST(CurveGraphPicture, SmallNegativePhaseMovesTheCurveTwoColumnsLeft) {
  const Picture base(CurveShape::TriangleWave, 0, 0.0f);
  const Picture turned(CurveShape::TriangleWave, -245760, 0.0f);  // offset 94: 2 columns left
  for (int32_t x = 2; x <= 44; ++x) {
    for (int32_t y = 0; y < kInner; ++y) {
      EXPECT_EQ(turned.Grey(x, y), base.Grey(x + 1, y)) << x << "," << y;
    }
  }
}

TEST(CurveGraphPicture, SmoothnessIsTheSampleRadiusUnscaled) {
  // Smoothness 2 averages column 0 with its wrapped neighbours 95 and 1: height
  // round((0 + 95 + 1) / 3) = 32, the top of the ink in pixel column 0 at canvas row 64 (the run
  // down to column 1's height 1), which pixel row 31 covers and row 29 does not. A wider
  // average (smoothness 3 gives 38) reaches row 29; one scaled to the render's table (some 21
  // columns each way) stays near height 47, far above row 31.
  const Picture sharp(CurveShape::LinearRampUp, 0, 0.0f);
  const Picture smooth(CurveShape::LinearRampUp, 0, 2.0f);
  const Picture wider(CurveShape::LinearRampUp, 0, 3.0f);
  EXPECT_EQ(sharp.Grey(0, 31), 64);
  EXPECT_GT(smooth.Grey(0, 31), 64);
  EXPECT_EQ(smooth.Grey(0, 29), 64);
  EXPECT_GT(wider.Grey(0, 29), 64);
}

// Every shape at several phases: all pixels uniform, last two rows and columns transparent.
class CurveGraphShapeTest
    : public ::testing::TestWithParam<std::tuple<CurveShape, PF_Fixed, float>> {};

TEST_P(CurveGraphShapeTest, EdgesTransparentAndPixelsGrey) {
  const auto [shape, phase, smoothness] = GetParam();
  const Picture picture(shape, phase, smoothness);
  int inked = 0;
  for (int32_t y = 0; y < kSize; ++y) {
    for (int32_t x = 0; x < kSize; ++x) {
      EXPECT_TRUE(picture.Uniform(x, y)) << x << "," << y;
      if (x >= kInner || y >= kInner) {
        EXPECT_EQ(picture.Grey(x, y), 0) << x << "," << y;
      } else {
        EXPECT_GE(picture.Grey(x, y), 64) << x << "," << y;
        EXPECT_LE(picture.Grey(x, y), 223) << x << "," << y;
        inked += picture.Grey(x, y) > 64 ? 1 : 0;
      }
    }
  }
  // A continuous curve crosses every pixel column at least once.
  EXPECT_GE(inked, kInner);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CurveGraphShapeTest,
    ::testing::Combine(::testing::Values(CurveShape::LinearRampUp, CurveShape::LinearRampDown,
                                         CurveShape::TriangleWave, CurveShape::SineWave,
                                         CurveShape::ExpUp, CurveShape::ExpDown),
                       ::testing::Values(0, 45 * kDegree, -200 * kDegree),
                       ::testing::Values(0.0f, 3.5f, 16.0f)));

TEST(CurveGraphPicture, FlatStretchesInkThreeRowsDeep) {
  // "Linear Ramp Down" mirrored about the vertical: the diagonal falls from top-left.
  const Picture up(CurveShape::LinearRampUp, 0, 0.0f);
  const Picture down(CurveShape::LinearRampDown, 0, 0.0f);
  EXPECT_EQ(down.Grey(2, 45), 64);
  EXPECT_GT(down.Grey(2, 1), 64);
  EXPECT_GT(up.Grey(2, 45), 64);
}

}  // namespace
}  // namespace morvane
