// The curve graph's picture, the banner's picture, the double-click timing and the drawing
// suites' acquisition, each as a table of worked values.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "params/CurveGraph.h"
#include "params/CustomUIEvent.h"
#include "params/DrawbotSuites.h"
#include "params/HeaderBanner.h"
#include "params/tools/HeaderBannerArt.h"
#include "tests/customui/Pictures.h"

namespace morvane {
namespace {

using testing::CurveGraphLook;
using testing::Digest;
using testing::kCurveGraphs;

TEST(CurveGraphColumnOffset, FollowsThePhaseRoundingNegativesDown) {
  // 96 columns a turn; -3.75 degrees (k = -1) lands at 94, one column below the remainder 95.
  // clang-format off
  const std::array<std::array<int32_t, 2>, 9> kCases = {{{0, 0}, {90 * 65536, 24}, {245760, 1},
      {245759, 0}, {-245760, 94}, {360 * 65536, 0}, {-360 * 65536, 95}, {450 * 65536, 24},
      {-90 * 65536, 71}}};
  // clang-format on
  for (const auto& [phase, column] : kCases)
    EXPECT_EQ(CurveGraphColumnOffset(phase), column) << phase;
}

class CurveGraphPicture : public ::testing::TestWithParam<CurveGraphLook> {};

TEST_P(CurveGraphPicture, IsTheAcceptedPicture) {
  const CurveGraphLook& c = GetParam();
  std::vector<uint8_t> bytes(kCurveGraphPictureBytes, 0xAB);
  ASSERT_EQ(
      RenderCurveGraphPicture(bytes.data(), c.shape, PF_Fixed(c.degrees * 65536), c.smoothness), 1);
  EXPECT_EQ(Digest(bytes), c.digest);
}

INSTANTIATE_TEST_SUITE_P(Looks, CurveGraphPicture, ::testing::ValuesIn(kCurveGraphs));

TEST(HeaderBanner, StoredPictureIsTheAcceptedOneAndTheGeneratorsOutput) {
  const BgraPicture stored = HeaderBannerPicture();
  ASSERT_EQ(stored.width * stored.height, kHeaderBannerWidth * kHeaderBannerHeight);
  EXPECT_EQ(Digest(stored.pixels, std::size_t(stored.width * stored.height * 4)),
            testing::kHeaderBanner);
  EXPECT_EQ(Digest(PaintHeaderBanner()), testing::kHeaderBanner)
      << "params/HeaderBanner.inc is stale: build morvane_regenerate_header_banner";
}

TEST(DoubleClickDetector, PairsClicksUnder32TicksApartModulo32Bits) {
  const struct {
    std::vector<uint32_t> clicks;
    std::vector<bool> doubles;
  } kCases[] = {
      // clang-format off
      {{100, 131}, {false, true}}, {{100, 132}, {false, false}}, {{100, 100}, {false, true}},
      {{0xFFFFFFF0u, 0x0Eu}, {false, true}},  // 30 ticks across the wrap
      {{0xFFFFFFF0u, 0x10u}, {false, false}}, {{200, 150}, {false, false}},  // earlier: far
      {{30}, {true}}, {{31}, {false}},  // fresh, the last click counts as 0xFFFFFFFF
      {{5000, 5010, 5020, 5030}, {false, true, false, true}},  // a pair starts afresh
      // clang-format on
  };
  for (const auto& c : kCases) {
    DoubleClickDetector detector;
    for (std::size_t i = 0; i < c.clicks.size(); ++i)
      EXPECT_EQ(detector.Click(c.clicks[i]), c.doubles[i]) << c.clicks[0] << " click " << i;
  }
}

// A host without a basic suite (a record of zeros), or a call without a suite set.
TEST(DrawbotSuites, MissingSuiteSetOrBasicSuiteIsReported) {
  const struct {
    bool acquire, suiteSet;
    PF_Err err;
    const char* message;
  } kCases[] = {{true, false, PF_Err_UNRECOGNIZED_PARAM_TYPE,
                 "NULL suite pointer passed to AEFX_AcquireDrawbotSuites"},
                {true, true, PF_Err_BAD_CALLBACK_PARAM, "Not able to acquire AEFX Suite."},
                {false, true, PF_Err_NONE, "Not able to release AEFX Suite."}};
  for (const auto& c : kCases) {
    const PF_InData in{};
    PF_OutData out{};
    DRAWBOT_Suites suites{};
    EXPECT_EQ(c.acquire ? AEFX_AcquireDrawbotSuites(&in, &out, c.suiteSet ? &suites : nullptr)
                        : AEFX_ReleaseDrawbotSuites(&in, &out),
              c.err);
    EXPECT_STREQ(out.return_msg, c.message);
    EXPECT_TRUE(out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
  }
}

}  // namespace
}  // namespace morvane
