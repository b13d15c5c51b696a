#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "render/DispatchStretch.h"
#include "render/ReadRenderRecord.h"
#include "render/SmartRender.h"
#include "render/UnionRect.h"
#include "tests/params/FakeHost.h"
#include "tests/render/TestImage.h"

namespace morvane {
namespace {

using testing::FakeHost;
using testing::TestImage;

bool SameRect(const PF_LRect& a, const PF_LRect& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

struct UnionCase {
  PF_LRect source;
  PF_LRect destination;
  PF_LRect expected;
};

TEST(UnionRect, Cases) {
  const UnionCase cases[] = {
      {{0, 0, 10, 10}, {0, 0, 0, 0}, {0, 0, 10, 10}},      // empty destination takes the source
      {{5, 5, 5, 9}, {3, 3, 3, 3}, {5, 5, 5, 9}},          // ... even an empty one
      {{0, 0, 10, 10}, {5, -2, 20, 8}, {0, -2, 20, 10}},   // bounding box
      {{0, 0, 0, 10}, {5, -2, 20, 8}, {5, -2, 20, 8}},     // empty source changes nothing
      {{0, 4, 10, 4}, {1, 1, 2, 2}, {1, 1, 2, 2}},         // empty by height
      {{-4, -4, -1, -1}, {2, 2, 1, 5}, {-4, -4, -1, -1}},  // destination empty by width
  };
  for (const UnionCase& c : cases) {
    PF_LRect destination = c.destination;
    UnionRect(c.source, destination);
    EXPECT_TRUE(SameRect(destination, c.expected))
        << destination.left << "," << destination.top << "," << destination.right << ","
        << destination.bottom;
  }
}

class SmartRenderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
    preInput.output_request.rect = {0, 0, kWidth, kHeight};
    preExtra = {&preInput, &preOutput, &host.preRenderCallbacks};
    host.checkoutResultRect = {0, 0, kWidth, kHeight};
    host.checkoutMaxResultRect = {-2, -2, kWidth + 2, kHeight + 2};
    host.pixels[0] = &input.world;
    host.output = &output.world;
    renderExtra = {&renderInput, &host.smartRenderCallbacks};
  }

  PF_ParamDef& Param(ParamId id) { return host.At(ParamPosition(id)); }

  PF_Err PreRender() { return SmartPreRender(&host.in_data, &host.out_data, &preExtra); }

  PF_Err Render() {
    renderInput.pre_render_data = preOutput.pre_render_data;
    return SmartRender(&host.in_data, &host.out_data, nullptr, &renderExtra);
  }

  void DeletePreRenderData() {
    ASSERT_NE(preOutput.delete_pre_render_data_func, nullptr);
    preOutput.delete_pre_render_data_func(preOutput.pre_render_data);
  }

  void ExpectBalanced() {
    EXPECT_EQ(host.OpenCheckouts(), 0);
    EXPECT_EQ(host.locks, host.unlocks);
    std::vector<A_long> out = host.pixelsCheckedOut;
    std::vector<A_long> in = host.pixelsCheckedIn;
    std::sort(out.begin(), out.end());
    std::sort(in.begin(), in.end());
    EXPECT_EQ(out, in);
    EXPECT_EQ(host.acquired, host.released);
  }

  static constexpr A_long kWidth = 6;
  static constexpr A_long kHeight = 3;
  FakeHost host;
  PF_PreRenderInput preInput{};
  PF_PreRenderOutput preOutput{};
  PF_PreRenderExtra preExtra{};
  PF_SmartRenderInput renderInput{};
  PF_SmartRenderExtra renderExtra{};
  TestImage input{PixelDepth::Depth8, kWidth, kHeight, 8, 1};
  TestImage output{PixelDepth::Depth8, kWidth, kHeight, 4, 2};
};

TEST_F(SmartRenderTest, PreRenderHandsOverTheRecordAndAsksForExactlyTheRequest) {
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  ASSERT_NE(preOutput.pre_render_data, nullptr);
  EXPECT_EQ(host.handlesAllocated, 1);
  EXPECT_EQ(host.handlesDisposed, 0);
  ASSERT_EQ(host.layerCheckouts.size(), 2u);
  EXPECT_EQ(host.layerCheckouts[1].index, 0);
  EXPECT_EQ(host.layerCheckouts[1].id, 0);
  EXPECT_EQ(std::memcmp(&host.layerCheckouts[1].request, &preInput.output_request,
                        sizeof(PF_RenderRequest)),
            0);
  // Empty result rectangles become exactly the checkout's.
  EXPECT_TRUE(SameRect(preOutput.result_rect, host.checkoutResultRect));
  EXPECT_TRUE(SameRect(preOutput.max_result_rect, host.checkoutMaxResultRect));
  EXPECT_EQ(preOutput.flags, 0);
  EXPECT_EQ(preOutput.solid, 0);
  ExpectBalanced();

  DeletePreRenderData();
  EXPECT_EQ(host.handlesDisposed, 1);
}

TEST_F(SmartRenderTest, PreRenderFailingAfterTheAllocationLeavesNothingBehind) {
  host.checkoutErrors[ParamPosition(ParamId::ShadingOpacity)] = PF_Interrupt_CANCEL;
  EXPECT_THROW(PreRender(), PF_Err);
  EXPECT_EQ(host.handlesAllocated, 1);
  EXPECT_EQ(host.handlesDisposed, 1);
  EXPECT_EQ(preOutput.pre_render_data, nullptr);
  EXPECT_EQ(preOutput.delete_pre_render_data_func, nullptr);
  ExpectBalanced();
}

TEST_F(SmartRenderTest, PreRenderInputRefusalIsReturnedAndTheDataDisposed) {
  host.layerCheckoutErrors[0] = PF_Err_OUT_OF_MEMORY;
  preOutput.result_rect = {1, 1, 2, 2};
  EXPECT_EQ(PreRender(), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.handlesDisposed, host.handlesAllocated);
  EXPECT_EQ(preOutput.pre_render_data, nullptr);
  EXPECT_TRUE(SameRect(preOutput.result_rect, PF_LRect{1, 1, 2, 2}));
  EXPECT_TRUE(SameRect(preOutput.max_result_rect, PF_LRect{0, 0, 0, 0}));
  ExpectBalanced();
}

TEST_F(SmartRenderTest, PreRenderWithoutMemory) {
  host.failNewHandle = true;
  EXPECT_EQ(PreRender(), PF_Err_OUT_OF_MEMORY);
  EXPECT_TRUE(host.checkouts.empty());
  EXPECT_EQ(preOutput.pre_render_data, nullptr);
  ExpectBalanced();
}

TEST_F(SmartRenderTest, RenderEqualsTheDispatcherWithTheHorizontalScale) {
  Param(ParamId::Morvane).u.fs_d.value = 2.5;
  Param(ParamId::Shading).u.pd.value = 3;
  Param(ParamId::ShadingOpacity).u.fs_d.value = 80.0;
  Param(ParamId::ShadingIntervalSize).u.fs_d.value = 4.0;
  host.in_data.downsample_x = {1, 2};
  host.in_data.downsample_y = {1, 3};
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  ASSERT_EQ(Render(), PF_Err_NONE);
  ExpectBalanced();
  EXPECT_EQ(host.pixelsCheckedIn,
            (std::vector<A_long>{ParamPosition(ParamId::IntensitySource), 0}));

  std::vector<PF_ParamDef*> array = host.ParamArray();
  StretchRenderRecord record;
  ReadRenderRecord(&host.in_data, array.data(), nullptr, record);
  record.intensityLayer = nullptr;
  std::memset(&record.intensityLayerParam, 0, sizeof record.intensityLayerParam);
  TestImage expected{PixelDepth::Depth8, kWidth, kHeight, 4, 2};
  DispatchStretchForDepth(PixelDepth::Depth8, input.world, expected.world, record, 0.5f);
  EXPECT_EQ(output.bytes, expected.bytes);

  TestImage fullScale{PixelDepth::Depth8, kWidth, kHeight, 4, 2};
  DispatchStretchForDepth(PixelDepth::Depth8, input.world, fullScale.world, record, 1.0f);
  EXPECT_NE(fullScale.bytes, expected.bytes) << "the frame must depend on the scale";
  DeletePreRenderData();
}

TEST_F(SmartRenderTest, UnknownPixelFormatLeavesTheOutputAndChecksEverythingIn) {
  for (PF_PixelFormat format : {PF_PixelFormat_BGRA32, PF_PixelFormat_INVALID}) {
    host.worldFormat = format;
    const std::vector<uint8_t> before = output.bytes;
    ASSERT_EQ(PreRender(), PF_Err_NONE);
    EXPECT_EQ(Render(), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_EQ(output.bytes, before);
    ExpectBalanced();
    DeletePreRenderData();
  }
}

TEST_F(SmartRenderTest, UnlockablePreRenderDataFailsBeforeAnyCheckout) {
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  host.failLockHandle = true;
  EXPECT_EQ(Render(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_TRUE(host.pixelsCheckedOut.empty());
  ExpectBalanced();
  DeletePreRenderData();
}

TEST_F(SmartRenderTest, MissingOutputRendersNothing) {
  host.output = nullptr;
  const std::vector<uint8_t> before = output.bytes;
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  EXPECT_EQ(Render(), PF_Err_NONE);
  EXPECT_EQ(host.pixelsCheckedOut, std::vector<A_long>{0});
  ExpectBalanced();
  DeletePreRenderData();
}

TEST_F(SmartRenderTest, IntensityLayerErrorEndsTheFrameWithInputCheckedIn) {
  host.pixelsErrors[ParamPosition(ParamId::IntensitySource)] = PF_Err_OUT_OF_MEMORY;
  const std::vector<uint8_t> before = output.bytes;
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  try {
    Render();
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, PF_Err_OUT_OF_MEMORY);
  }
  EXPECT_EQ(output.bytes, before);
  ExpectBalanced();
  DeletePreRenderData();
}

TEST_F(SmartRenderTest, MissingWorldSuiteIsReportedWithEverythingCheckedIn) {
  host.extraSuites.erase(std::string(kPFWorldSuite) + "/" + std::to_string(kPFWorldSuiteVersion2));
  ASSERT_EQ(PreRender(), PF_Err_NONE);
  try {
    Render();
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, A_Err_MISSING_SUITE);
  }
  EXPECT_STREQ(host.out_data.return_msg, "Not able to acquire AEFX Suite.");
  EXPECT_NE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
  ExpectBalanced();
  DeletePreRenderData();
}

TEST_F(SmartRenderTest, HundredFramesLeaveNoHandle) {
  for (int frame = 0; frame < 100; ++frame) {
    host.in_data.current_time = frame;
    ASSERT_EQ(PreRender(), PF_Err_NONE);
    ASSERT_EQ(Render(), PF_Err_NONE);
    DeletePreRenderData();
  }
  EXPECT_EQ(host.handlesAllocated, 100);
  EXPECT_EQ(host.handlesDisposed, 100);
  ExpectBalanced();
}

}  // namespace
}  // namespace morvane
