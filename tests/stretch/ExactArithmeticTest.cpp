// The kernel's faster forms of its arithmetic against the plain formulas they replace: every
// value must be bit-identical.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "stretch/ChannelQuad.h"
#include "stretch/LinePositionMath.h"
#include "stretch/PixelTraits.h"

namespace morvane {
namespace {

bool SameBits(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(ExactArithmetic, TenMillionthsEqualsTheDivisionForEveryCutValue) {
  volatile double divisor = 10000000.0;  // keeps the compiler from folding the reference
  int64_t mismatches = 0;
  for (int32_t n = 0; n < 10000000; ++n) {
    const double d = n;
    if (!SameBits(TenMillionths(d), d / divisor)) ++mismatches;
  }
  EXPECT_EQ(mismatches, 0);
}

TEST(ExactArithmetic, CutAndTruncationMatchFloorAndCast) {
  std::mt19937_64 rng(11);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  // clang-format off
  std::vector<double> fractions = {0.0, std::numeric_limits<double>::denorm_min(), 1e-7,
      std::nextafter(1e-7, 0.0), 0.5, 0.0009775, std::nextafter(1.0, 0.0), 0.9999999,
      std::nextafter(0.9999999, 1.0)};
  // clang-format on
  for (int i = 0; i < 200000; ++i)
    fractions.push_back(unit(rng));
  for (int i = 0; i < 20000; ++i) {
    // Fractions on and next to the 1e-7 grid, where the cut decides.
    const double grid = double(rng() % 10000000) / 10000000.0;
    fractions.push_back(grid);
    fractions.push_back(std::nextafter(grid, 0.0));
    fractions.push_back(std::nextafter(grid, 1.0));
  }
  for (const double f : fractions) {
    if (!(f >= 0.0 && f < 1.0)) continue;
    const double plain = std::floor(f * 10000000.0) / 10000000.0;
    ASSERT_TRUE(SameBits(CutToSevenDecimals(f), plain)) << f;
  }
  for (const double x : {0.0, 0.25, 1.0, 1.5, 2.999999999, 4095.75, 2147483647.0, 1e9 + 0.5}) {
    EXPECT_EQ(TruncateNonNegative(x), static_cast<double>(static_cast<int32_t>(x))) << x;
  }
}

TEST(ExactArithmetic, QuotientTablesHoldTheRunTimeQuotients) {
  volatile double white = 255.0;
  volatile double threeWhites = 765.0;
  for (int i = 0; i < 256; ++i)
    EXPECT_TRUE(SameBits(detail::kChannelOver255.values[i], i / white)) << i;
  for (int i = 0; i < 766; ++i)
    EXPECT_TRUE(SameBits(detail::kSumOver765.values[i], i / threeWhites)) << i;
}

// Values around every rounding and saturation boundary of both integer depths.
std::vector<double> StoreCases() {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  // clang-format off
  std::vector<double> v = {0.0, -0.0, 0.49999999999999994, 0.5, std::nextafter(0.5, 1.0), -0.5,
      -3.0, std::nan(""), kInf, -kInf, 254.5, std::nextafter(254.5, 0.0), 255.0,
      255.49999999999997, 256.7, 32767.5, std::nextafter(32767.5, 0.0), 32768.0, 32768.49,
      40000.0, 1e300};
  // clang-format on
  std::mt19937_64 rng(5);
  std::uniform_real_distribution<double> range(-10.0, 33000.0);
  for (int i = 0; i < 20000; ++i) {
    const double x = range(rng);
    v.push_back(x);
    const double half = std::floor(x) + 0.5;
    v.push_back(half);
    v.push_back(std::nextafter(half, 0.0));
    v.push_back(std::nextafter(half, 1e9));
  }
  return v;
}

template <PixelDepth Depth>
void ExpectQuadStoresLikeScalar() {
  using Channel = ChannelType<Depth>;
  const std::vector<double> values = StoreCases();
  for (size_t i = 0; i + 4 <= values.size(); i += 3) {
    const ChannelQuad q{DoublePair{values[i], values[i + 1]},
                        DoublePair{values[i + 2], values[i + 3]}};
    Channel all[4];
    Channel colour[4] = {Channel(7), Channel(7), Channel(7), Channel(7)};
    StoreQuad<Depth, true>(all, q);
    StoreQuad<Depth, false>(colour, q);
    for (int c = 0; c < 4; ++c) {
      const Channel expected = DepthTraits<Depth>::Store(values[i + c]);
      ASSERT_EQ(std::memcmp(&all[c], &expected, sizeof expected), 0) << values[i + c];
      const Channel kept = c == 0 ? Channel(7) : expected;
      ASSERT_EQ(std::memcmp(&colour[c], &kept, sizeof kept), 0) << values[i + c];
    }
  }
}

TEST(ExactArithmetic, QuadStoresConvertLikeTheScalarStore) {
  ExpectQuadStoresLikeScalar<PixelDepth::Depth8>();
  ExpectQuadStoresLikeScalar<PixelDepth::Depth16>();
  ExpectQuadStoresLikeScalar<PixelDepth::Depth32f>();
}

TEST(ExactArithmetic, ScalarStoreRoundsHalfAwayAndSaturates) {
  for (const double x : StoreCases()) {
    // The plain rule: saturate to 0 ... white (NaN to 0), then round half away from zero.
    const auto plain = [&](double white) {
      const double low = x > 0.0 ? x : 0.0;
      const double clamped = low < white ? low : white;
      return static_cast<int32_t>(std::round(clamped));
    };
    ASSERT_EQ(DepthTraits<PixelDepth::Depth8>::Store(x), plain(255.0)) << x;
    ASSERT_EQ(DepthTraits<PixelDepth::Depth16>::Store(x), plain(32768.0)) << x;
  }
}

TEST(ExactArithmetic, QuadLoadsConvertEveryChannel) {
  const uint8_t p8[4] = {0, 1, 128, 255};
  const uint16_t p16[4] = {0, 1, 32768, 65535};
  const float p32[4] = {-1.5f, 0.1f, 2.0f, std::numeric_limits<float>::infinity()};
  const ChannelQuad q8 = LoadQuad<PixelDepth::Depth8>(p8);
  const ChannelQuad q16 = LoadQuad<PixelDepth::Depth16>(p16);
  const ChannelQuad q32 = LoadQuad<PixelDepth::Depth32f>(p32);
  for (int c = 0; c < 4; ++c) {
    EXPECT_EQ(q8[c], double(p8[c]));
    EXPECT_EQ(q16[c], double(p16[c]));
    EXPECT_EQ(q32[c], double(p32[c]));
  }
}

}  // namespace
}  // namespace morvane
