#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "render/ReadRenderRecord.h"
#include "tests/params/FakeHost.h"

namespace morvane {
namespace {

using testing::FakeHost;

// The order in which the values are read.
const std::vector<ParamId> kReadOrder{ParamId::Channels,
                                      ParamId::Direction,
                                      ParamId::MorvaneIntensity,
                                      ParamId::Morvane,
                                      ParamId::PixelSize,
                                      ParamId::StretchStartOffset,
                                      ParamId::ImageShiftPhase,
                                      ParamId::ImageShiftPhaseSync,
                                      ParamId::StretchCurve,
                                      ParamId::CurvePhase,
                                      ParamId::CurveSmoothness,
                                      ParamId::Shading,
                                      ParamId::ShadingIntervalSize,
                                      ParamId::ShadingIntervalPhase,
                                      ParamId::ShadingChannels,
                                      ParamId::EdgeMode,
                                      ParamId::DistributionMode,
                                      ParamId::DistributionRange,
                                      ParamId::ShadingOpacity,
                                      ParamId::TransparencyFeather};

class ReadRenderRecordTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
    input.output_request.rect = {3, 4, 50, 60};
    input.output_request.field = PF_Field_UPPER;
    input.output_request.channel_mask = PF_ChannelMask_RED;
    extra.input = &input;
    extra.output = &output;
    extra.cb = &host.preRenderCallbacks;
    std::memset(&record, 0xA5, sizeof record);
  }

  PF_ParamDef& Param(ParamId id) { return host.At(ParamPosition(id)); }

  FakeHost host;
  PF_PreRenderInput input{};
  PF_PreRenderOutput output{};
  PF_PreRenderExtra extra{};
  StretchRenderRecord record;
};

TEST_F(ReadRenderRecordTest, PreRenderReadsInOrderChecksEachInAndRequestsTheLayer) {
  ReadRenderRecord(&host.in_data, nullptr, &extra, record);

  std::vector<A_long> expected;
  for (ParamId id : kReadOrder)
    expected.push_back(ParamPosition(id));
  EXPECT_EQ(host.checkouts, expected);
  EXPECT_EQ(host.checkedIn.size(), kReadOrder.size());
  EXPECT_EQ(host.OpenCheckouts(), 0);

  ASSERT_EQ(host.layerCheckouts.size(), 1u);
  const FakeHost::LayerCheckout& layer = host.layerCheckouts[0];
  EXPECT_EQ(layer.index, ParamPosition(ParamId::IntensitySource));
  EXPECT_EQ(layer.id, ParamPosition(ParamId::IntensitySource));
  EXPECT_EQ(std::memcmp(&layer.request, &input.output_request, sizeof layer.request), 0);
  EXPECT_EQ(record.intensityLayer, nullptr);
  PF_ParamDef zero;
  std::memset(&zero, 0, sizeof zero);
  EXPECT_EQ(std::memcmp(&record.intensityLayerParam, &zero, sizeof zero), 0);
}

// An array shorter than the set-up's list (a host that never ran this module's parameter
// set-up gives the input layer alone) is never read past its end.
TEST_F(ReadRenderRecordTest, ArrayShorterThanTheDeclaredListFails) {
  auto array = host.ParamArray();
  for (const A_long entries : {1, 2, 5}) {
    host.in_data.num_params = entries;
    try {
      ReadRenderRecord(&host.in_data, array.data(), nullptr, record);
      ADD_FAILURE() << entries << " entries read without error";
    } catch (PF_Err err) {
      EXPECT_EQ(err, PF_Err_INVALID_INDEX);
    }
  }
  EXPECT_EQ(host.OpenCheckouts(), 0);
}

TEST_F(ReadRenderRecordTest, ArrayServesTheValuesAndTheHostOnlyTheLayer) {
  Param(ParamId::Channels).u.pd.value = 8;
  Param(ParamId::Direction).u.pd.value = 4;
  Param(ParamId::MorvaneIntensity).u.fs_d.value = 50.0;
  Param(ParamId::CurvePhase).u.ad.value = 90 * 65536;
  Param(ParamId::ImageShiftPhase).u.ad.value = -360 * 65536;
  Param(ParamId::ShadingIntervalSize).u.fs_d.value = 2.99;
  Param(ParamId::EdgeMode).u.pd.value = 4;
  std::vector<PF_ParamDef*> array = host.ParamArray();
  ReadRenderRecord(&host.in_data, array.data(), nullptr, record);

  EXPECT_EQ(record.channelMode, 7);
  EXPECT_EQ(record.direction, 3);
  EXPECT_EQ(record.intensity, 50.0);
  EXPECT_EQ(record.curvePhase, 5898240);
  EXPECT_EQ(record.imageShiftPhase, -23592960);
  EXPECT_EQ(record.shadingIntervalSize, 2);
  EXPECT_EQ(record.edgeMode, 3);

  ASSERT_EQ(host.checkouts.size(), 1u);
  EXPECT_EQ(host.checkouts[0], ParamPosition(ParamId::IntensitySource));
  EXPECT_EQ(record.intensityLayer, &record.intensityLayerParam.u.ld);
  EXPECT_TRUE(host.checkedIn.empty()) << "the layer stays out until ReleaseIntensityLayer";
  ReleaseIntensityLayer(&host.in_data, nullptr, record);
  ASSERT_EQ(host.checkedIn.size(), 1u);
  EXPECT_EQ(host.checkedIn[0], &record.intensityLayerParam);
}

TEST_F(ReadRenderRecordTest, WholeSliderTruncatesTowardZero) {
  for (const auto& [value, expected] : {std::pair{10.9, 10}, {256.0, 256}, {2.0, 2}}) {
    Param(ParamId::ShadingIntervalSize).u.fs_d.value = value;
    std::vector<PF_ParamDef*> array = host.ParamArray();
    ReadRenderRecord(&host.in_data, array.data(), nullptr, record);
    EXPECT_EQ(record.shadingIntervalSize, expected) << value;
    ReleaseIntensityLayer(&host.in_data, nullptr, record);
  }
}

TEST_F(ReadRenderRecordTest, FirstHostErrorStopsTheReadOutWithEverythingCheckedIn) {
  Param(ParamId::StretchCurve).u.pd.value = 3;
  Param(ParamId::CurveSmoothness).u.fs_d.value = 5.0;
  host.checkoutErrors[ParamPosition(ParamId::CurvePhase)] = PF_Interrupt_CANCEL;
  try {
    ReadRenderRecord(&host.in_data, nullptr, &extra, record);
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, PF_Interrupt_CANCEL);
  }
  EXPECT_EQ(host.checkouts.size(), 10u);
  EXPECT_EQ(host.checkedIn.size(), 9u);
  EXPECT_EQ(host.OpenCheckouts(), 0);
  EXPECT_TRUE(host.layerCheckouts.empty());
  EXPECT_EQ(record.curveShape, 2);
  EXPECT_EQ(record.curveSmoothness, 0.0) << "later fields stay unread (zero)";
  EXPECT_EQ(record.transparencyFeather, 0.0);
}

TEST_F(ReadRenderRecordTest, LayerErrorsAreRaised) {
  host.layerCheckoutErrors[ParamPosition(ParamId::IntensitySource)] = PF_Err_OUT_OF_MEMORY;
  EXPECT_THROW(ReadRenderRecord(&host.in_data, nullptr, &extra, record), PF_Err);
  EXPECT_EQ(host.OpenCheckouts(), 0);

  host.checkoutErrors[ParamPosition(ParamId::IntensitySource)] = PF_Err_INVALID_INDEX;
  std::vector<PF_ParamDef*> array = host.ParamArray();
  try {
    ReadRenderRecord(&host.in_data, array.data(), nullptr, record);
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, PF_Err_INVALID_INDEX);
  }
}

TEST_F(ReadRenderRecordTest, IntensityLayerPixelsAndTheirRelease) {
  PF_SmartRenderExtra smart{};
  smart.cb = &host.smartRenderCallbacks;
  const A_long id = ParamPosition(ParamId::IntensitySource);
  PF_EffectWorld layer{};
  host.pixels[id] = &layer;
  std::memset(&record, 0, sizeof record);
  CheckoutIntensityLayerPixels(&host.in_data, &smart, record);
  EXPECT_EQ(record.intensityLayer, &layer);
  ReleaseIntensityLayer(&host.in_data, &smart, record);
  EXPECT_EQ(host.pixelsCheckedIn, std::vector<A_long>{id});

  host.pixelsErrors[id] = PF_Err_OUT_OF_MEMORY;
  EXPECT_THROW(CheckoutIntensityLayerPixels(&host.in_data, &smart, record), PF_Err);
  EXPECT_EQ(record.intensityLayer, nullptr);
}

}  // namespace
}  // namespace morvane
