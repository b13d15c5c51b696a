#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "render/DispatchStretch.h"
#include "render/LegacyRender.h"
#include "render/ReadRenderRecord.h"
#include "tests/params/FakeHost.h"
#include "tests/render/TestImage.h"

namespace morvane {
namespace {

using testing::FakeHost;
using testing::TestImage;

constexpr A_long kPremiere = 0x50724D72;

class LegacyRenderTest : public ::testing::TestWithParam<PixelDepth> {
 protected:
  void SetUp() override {
    host.SetHost(kPremiere, 13, 27);
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
    host.At(0).u.ld = input.world;
    host.in_data.width = 2 * kWidth;  // the output is rendered at half size
    Param(ParamId::Morvane).u.fs_d.value = 2.5;
    Param(ParamId::Shading).u.pd.value = 3;
    Param(ParamId::ShadingOpacity).u.fs_d.value = 80.0;
    Param(ParamId::ShadingIntervalSize).u.fs_d.value = 4.0;
    host.premiereFormat = FormatOf(GetParam());
  }

  static PrPixelFormat FormatOf(PixelDepth depth) {
    switch (depth) {
      case PixelDepth::Depth8:
        return PrPixelFormat_ARGB_4444_8u;
      case PixelDepth::Depth16:
        return PrPixelFormat_ARGB_4444_16u;
      default:
        return PrPixelFormat_ARGB_4444_32f;
    }
  }

  PF_ParamDef& Param(ParamId id) { return host.At(ParamPosition(id)); }

  PF_Err Render() {
    std::vector<PF_ParamDef*> array = host.ParamArray();
    return LegacyRender(&host.in_data, &host.out_data, array.data(), &output.world);
  }

  std::vector<uint8_t> Expected(float scale) {
    std::vector<PF_ParamDef*> array = host.ParamArray();
    StretchRenderRecord record;
    ReadRenderRecord(&host.in_data, array.data(), nullptr, record);
    ReleaseIntensityLayer(&host.in_data, nullptr, record);
    TestImage expected = output;
    DispatchStretchForDepth(GetParam(), input.world, expected.world, record, scale);
    return expected.bytes;
  }

  void ExpectAllCheckedIn() {
    EXPECT_EQ(host.OpenCheckouts(), 0);
    EXPECT_EQ(host.acquired, host.released);
  }

  static constexpr A_long kWidth = 5;
  static constexpr A_long kHeight = 4;
  FakeHost host;
  TestImage input{GetParam(), kWidth, kHeight, 12, 7};
  TestImage output{GetParam(), kWidth, kHeight, 0, 8};
};

TEST_P(LegacyRenderTest, RendersAtTheOutputsDepthAndWidthScale) {
  const std::vector<uint8_t> expected = Expected(0.5f);
  ASSERT_NE(expected, Expected(1.0f)) << "the frame must depend on the scale";
  host.checkouts.clear();
  host.checkedIn.clear();

  ASSERT_EQ(Render(), PF_Err_NONE);
  EXPECT_EQ(output.bytes, expected);
  EXPECT_EQ(host.checkouts, (std::vector<A_long>{ParamPosition(ParamId::IntensitySource), 0}));
  ExpectAllCheckedIn();
}

TEST_P(LegacyRenderTest, UnknownFormatChecksBothLayersIn) {
  host.premiereFormat = PrPixelFormat_BGRA_4444_8u;
  const std::vector<uint8_t> before = output.bytes;
  EXPECT_EQ(Render(), PF_Err_UNRECOGNIZED_PARAM_TYPE);
  EXPECT_EQ(output.bytes, before);
  ExpectAllCheckedIn();
}

TEST_P(LegacyRenderTest, RefusedInputIsReturnedAndTheLayerCheckedIn) {
  host.checkoutErrors[0] = PF_Err_OUT_OF_MEMORY;
  const std::vector<uint8_t> before = output.bytes;
  EXPECT_EQ(Render(), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(output.bytes, before);
  ExpectAllCheckedIn();
}

TEST_P(LegacyRenderTest, LayerErrorEndsTheCommandBeforeAnySuite) {
  host.checkoutErrors[ParamPosition(ParamId::IntensitySource)] = PF_Err_INVALID_INDEX;
  EXPECT_THROW(Render(), PF_Err);
  EXPECT_TRUE(host.acquired.empty());
  ExpectAllCheckedIn();
}

TEST_P(LegacyRenderTest, AfterEffectsLeavesTheOutputAsGiven) {
  host.SetHost(0x46585443, 13, 27);
  const std::vector<uint8_t> before = output.bytes;
  EXPECT_EQ(Render(), PF_Err_NONE);
  EXPECT_EQ(output.bytes, before);
  EXPECT_TRUE(host.checkouts.empty());
}

INSTANTIATE_TEST_SUITE_P(Depths, LegacyRenderTest,
                         ::testing::Values(PixelDepth::Depth8, PixelDepth::Depth16,
                                           PixelDepth::Depth32f),
                         [](const ::testing::TestParamInfo<PixelDepth>& info) {
                           return std::string(info.param == PixelDepth::Depth8    ? "Depth8"
                                              : info.param == PixelDepth::Depth16 ? "Depth16"
                                                                                  : "Depth32f");
                         });

}  // namespace
}  // namespace morvane
