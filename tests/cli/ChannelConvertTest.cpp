#include "cli/ChannelConvert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "cli/Pixels.h"

namespace morvane::cli {
namespace {

TEST(ChannelConvert, SixteenBitFileRoundTripKeepsEveryInternalValue) {
  for (uint32_t x = 0; x <= 32768; ++x) {
    const uint16_t file = InternalSixteenToFile(uint16_t(x));
    ASSERT_EQ(FileSixteenToInternal(file), x) << "internal " << x << " file " << file;
  }
}

TEST(ChannelConvert, FloatRoundTripKeepsEveryEightAndSixteenBitValue) {
  for (uint32_t v = 0; v <= 255; ++v) {
    ASSERT_EQ(FloatToEight(EightToFloat(uint8_t(v))), v);
    ASSERT_EQ((ConvertChannel<uint8_t>(ConvertChannel<uint16_t>(uint8_t(v)))), v);
  }
  for (uint32_t x = 0; x <= 32768; ++x) {
    ASSERT_EQ(FloatToSixteen(SixteenToFloat(uint16_t(x))), x);
  }
}

struct FloatCase {
  float in;
  int eight;
  int sixteen;
};

// Exact halves on the 16-bit scale tell half-away-from-zero from half-to-even.
class FloatToInteger : public testing::TestWithParam<FloatCase> {};

TEST_P(FloatToInteger, RoundsHalfAwayFromZeroAndClamps) {
  EXPECT_EQ(FloatToEight(GetParam().in), GetParam().eight);
  EXPECT_EQ(FloatToSixteen(GetParam().in), GetParam().sixteen);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FloatToInteger,
    testing::Values(FloatCase{0.0f, 0, 0}, FloatCase{1.0f, 255, 32768},
                    FloatCase{0.5f, 128, 16384},                 // 127.5 -> 128
                    FloatCase{1.0f / 65536.0f, 0, 1},            // 0.5 -> 1, not 0
                    FloatCase{5.0f / 65536.0f, 0, 3},            // 2.5 -> 3, not 2
                    FloatCase{65535.0f / 65536.0f, 255, 32768},  // 32767.5 -> 32768
                    FloatCase{-0.25f, 0, 0}, FloatCase{2.0f, 255, 32768},
                    FloatCase{std::numeric_limits<float>::quiet_NaN(), 0, 0},
                    FloatCase{std::numeric_limits<float>::infinity(), 255, 32768}));

struct SixteenCase {
  int file;
  int internal;
};

class SixteenBitFile : public testing::TestWithParam<SixteenCase> {};

TEST_P(SixteenBitFile, MapsToTheInternalScale) {
  EXPECT_EQ(FileSixteenToInternal(uint16_t(GetParam().file)), GetParam().internal);
}

INSTANTIATE_TEST_SUITE_P(Cases, SixteenBitFile,
                         testing::Values(SixteenCase{0, 0}, SixteenCase{1, 1},  // 0.50001
                                         SixteenCase{2, 1}, SixteenCase{3, 2},  // 1.50002
                                         SixteenCase{32767, 16384}, SixteenCase{32768, 16384},
                                         SixteenCase{65534, 32767},  // 32767.49999
                                         SixteenCase{65535, 32768}));

TEST(ChannelConvert, InternalSixteenToFileRoundsAndClamps) {
  EXPECT_EQ(InternalSixteenToFile(0), 0);
  EXPECT_EQ(InternalSixteenToFile(1), 2);          // 1.99997
  EXPECT_EQ(InternalSixteenToFile(16384), 32768);  // exactly 32767.5
  EXPECT_EQ(InternalSixteenToFile(32768), 65535);
  EXPECT_EQ(InternalSixteenToFile(40000), 65535);
}

TEST(ChannelConvert, EightToSixteenGoesThroughFloat) {
  for (uint32_t v = 0; v <= 255; ++v) {
    const double viaFloat = std::round(double(float(v) / 255.0f) * 32768.0);
    ASSERT_EQ(ConvertChannel<uint16_t>(uint8_t(v)), uint16_t(viaFloat)) << v;
  }
}

TEST(FileToEffect, ReordersRgbaToArgbAndConvertsEachChannel) {
  Pixels<uint16_t> file(1, 1);
  file.values = {65535, 32768, 1, 0};  // R G B A in file units
  const ArgbImage at16 = FileToEffect(FileImage{file}, Depth::Depth16);
  EXPECT_EQ(std::get<Pixels<uint16_t>>(at16.pixels).values,
            (std::vector<uint16_t>{0, 32768, 16384, 1}));
  const ArgbImage at8 = FileToEffect(FileImage{file}, Depth::Depth8);
  EXPECT_EQ(std::get<Pixels<uint8_t>>(at8.pixels).values, (std::vector<uint8_t>{0, 255, 128, 0}));
  const ArgbImage atFloat = FileToEffect(FileImage{file}, Depth::Depth32f);
  EXPECT_EQ(std::get<Pixels<float>>(atFloat.pixels).values,
            (std::vector<float>{0.0f, 1.0f, 0.5f, 1.0f / 32768.0f}));
}

TEST(EffectToFile, ReordersArgbToRgbaAndConvertsEachChannel) {
  Pixels<float> effect(1, 1);
  effect.values = {0.25f, 1.5f, -1.0f, 0.5f};  // A R G B
  const FileImage at16 = EffectToFile(ArgbImage{effect}, Depth::Depth16);
  EXPECT_EQ(std::get<Pixels<uint16_t>>(at16.pixels).values,
            (std::vector<uint16_t>{65535, 0, 32768, 16384}));
  const FileImage at8 = EffectToFile(ArgbImage{effect}, Depth::Depth8);
  EXPECT_EQ(std::get<Pixels<uint8_t>>(at8.pixels).values, (std::vector<uint8_t>{255, 0, 128, 64}));
  const FileImage atFloat = EffectToFile(ArgbImage{effect}, Depth::Depth32f);
  EXPECT_EQ(std::get<Pixels<float>>(atFloat.pixels).values,
            (std::vector<float>{1.5f, -1.0f, 0.5f, 0.25f}));  // float is never clamped
}

}  // namespace
}  // namespace morvane::cli
