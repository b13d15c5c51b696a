#include "cli/Downsample.h"

#include <gtest/gtest.h>

namespace morvane::cli {
namespace {

// A width x height image whose channel c of pixel (x, y) is f(x, y, c).
template <typename Channel, typename F>
Pixels<Channel> Make(int32_t width, int32_t height, F f) {
  Pixels<Channel> p(width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int c = 0; c < 4; ++c)
        p.Row(y)[4 * x + c] = static_cast<Channel>(f(x, y, c));
    }
  }
  return p;
}

TEST(Downsample, SizeIsRoundedUpAndEdgeBoxesAverageOnlyInsidePixels) {
  // 5 x 3 at factor 2 -> 3 x 2; the last column and row boxes are partial.
  const auto src = Make<uint8_t>(5, 3, [](int x, int y, int c) { return 10 * x + 50 * y + c; });
  const ArgbImage out = Downsample(ArgbImage{src}, 2);
  const auto& p = std::get<Pixels<uint8_t>>(out.pixels);
  ASSERT_EQ(p.width, 3);
  ASSERT_EQ(p.height, 2);
  EXPECT_EQ(p.Row(0)[0], 30);           // (0 + 10 + 50 + 60) / 4
  EXPECT_EQ(p.Row(0)[4 * 2], 65);       // x = 4 only: (40 + 90) / 2
  EXPECT_EQ(p.Row(1)[4 * 1 + 3], 128);  // y = 2 only: (123 + 133) / 2
  EXPECT_EQ(p.Row(1)[4 * 2 + 1], 141);  // the single pixel (4, 2): 140 + 1
}

TEST(Downsample, RoundsHalfAwayFromZeroAtEightAndSixteenBits) {
  // Means of 2.5 and 32766.5 round up; half to even would give 2 and 32766.
  const auto eight = Make<uint8_t>(2, 1, [](int x, int, int) { return 2 + x; });
  EXPECT_EQ(std::get<Pixels<uint8_t>>(Downsample(ArgbImage{eight}, 2).pixels).values,
            (std::vector<uint8_t>{3, 3, 3, 3}));
  const auto sixteen = Make<uint16_t>(2, 1, [](int x, int, int) { return 32766 + x; });
  EXPECT_EQ(std::get<Pixels<uint16_t>>(Downsample(ArgbImage{sixteen}, 2).pixels).values,
            (std::vector<uint16_t>{32767, 32767, 32767, 32767}));
  const auto odd = Make<uint16_t>(2, 2, [](int x, int y, int) { return 1 + 2 * x + y; });
  EXPECT_EQ(std::get<Pixels<uint16_t>>(Downsample(ArgbImage{odd}, 2).pixels).values[0], 3);  // 2.5
}

TEST(Downsample, FloatMeanIsTakenInDoubleAndNotRounded) {
  // Summed in float, 1 + 5e-8 + 5e-8 would stay 1 and the mean would be 1/3.
  const auto src = Make<float>(3, 1, [](int x, int, int) { return x == 0 ? 1.0f : 5e-8f; });
  const ArgbImage out = Downsample(ArgbImage{src}, 3);
  const auto& p = std::get<Pixels<float>>(out.pixels);
  ASSERT_EQ(p.width, 1);
  const float expected = static_cast<float>((1.0 + 2.0 * double(5e-8f)) / 3.0);
  EXPECT_NE(expected, 1.0f / 3.0f);
  EXPECT_EQ(p.values[0], expected);
}

TEST(Downsample, FactorOneAndLargeFactorsKeepShapes) {
  const auto src = Make<uint16_t>(7, 4, [](int x, int y, int c) { return x * 100 + y * 10 + c; });
  EXPECT_EQ(Downsample(ArgbImage{src}, 1), ArgbImage{src});
  const ArgbImage whole = Downsample(ArgbImage{src}, 8);
  EXPECT_EQ(whole.width(), 1);
  EXPECT_EQ(whole.height(), 1);
  // Mean of x*100 + y*10 over 7 x 4 = 300 + 15.
  EXPECT_EQ(std::get<Pixels<uint16_t>>(whole.pixels).values[0], 315);
}

}  // namespace
}  // namespace morvane::cli
