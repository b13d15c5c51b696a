// The read-out of the controls for a smart render, in this process against the simulated host:
// every value checked out in the fixed order below and checked in again, and the "Intensity
// Source" requested for the area the host asks of the effect. (What the values become is seen in
// the renders of the command-line and end-to-end tests.)
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "hostsim/Host.h"
#include "params/ParamsSetup.h"
#include "render/ReadRenderRecord.h"

namespace morvane {
namespace {

const char* const kReadOrder[] = {"Channels",
                                  "Direction",
                                  "Morvane Intensity",
                                  "Morvane",
                                  "Pixel Size",
                                  "Stretch Start Offset",
                                  "Image Shift Phase",
                                  "Image Shift Phase Sync",
                                  "Stretch Curve",
                                  "Curve Phase",
                                  "Curve Smoothness",
                                  "Shading",
                                  "Shading Interval Size",
                                  "Shading Interval Phase",
                                  "Shading Channel(s)",
                                  "Edge Mode",
                                  "Distribution Mode",
                                  "Distribution Range",
                                  "Shading Opacity",
                                  "Transparency Feather"};

// The host's checkout_param, with the positions asked for noted on the way.
std::vector<PF_ParamIndex> gCheckouts;
decltype(PF_InteractCallbacks::checkout_param) gHostCheckout = nullptr;
PF_Err NotingCheckout(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                      PF_ParamDef* def) {
  gCheckouts.push_back(index);
  return gHostCheckout(ref, index, time, step, scale, def);
}

struct LayerRequest {
  PF_ParamIndex index;
  A_long id;
  PF_RenderRequest request;
};
std::vector<LayerRequest> gLayerRequests;
PF_Err NotingLayerCheckout(PF_ProgPtr, PF_ParamIndex index, A_long id,
                           const PF_RenderRequest* request, A_long, A_long, A_u_long,
                           PF_CheckoutResult*) {
  gLayerRequests.push_back({index, id, *request});
  return PF_Err_NONE;
}

TEST(ReadRenderRecord, ReadsEveryControlInOrderAndRequestsTheLayerForTheAreaAsked) {
  hostsim::Host host(hostsim::HostProfile::AfterEffects());
  PF_InData in = host.MakeInData();
  PF_OutData out{};
  PF_ParamDef inputLayer{};  // the host's input layer comes first
  in.inter.add_param(in.effect_ref, -1, &inputLayer);
  ASSERT_EQ(ParamsSetup(&in, &out, nullptr), PF_Err_NONE);
  hostsim::EffectInstance& fx = host.NewInstance();
  in = host.MakeInData(&fx);
  gHostCheckout = in.inter.checkout_param;
  in.inter.checkout_param = &NotingCheckout;
  PF_PreRenderCallbacks callbacks{};
  callbacks.checkout_layer = &NotingLayerCheckout;
  PF_PreRenderInput input{};
  input.output_request.rect = {3, 4, 50, 60};
  input.output_request.field = PF_Field_UPPER;
  input.output_request.channel_mask = PF_ChannelMask_RED;
  PF_PreRenderOutput output{};
  PF_PreRenderExtra extra{};
  extra.input = &input;
  extra.output = &output;
  extra.cb = &callbacks;
  host.Calls().Clear();

  StretchRenderRecord record{};
  ReadRenderRecord(&in, nullptr, &extra, record);

  std::vector<PF_ParamIndex> expected;
  for (const char* name : kReadOrder)
    expected.push_back(host.PositionOf(fx, name));
  EXPECT_EQ(gCheckouts, expected);
  EXPECT_EQ(host.Calls().Count("inter.checkin_param"), int(std::size(kReadOrder)));
  const PF_ParamIndex layer = host.PositionOf(fx, "Intensity Source");
  ASSERT_EQ(gLayerRequests.size(), 1u);
  EXPECT_EQ(gLayerRequests[0].index, layer);
  EXPECT_EQ(gLayerRequests[0].id, layer);
  EXPECT_EQ(
      std::memcmp(&gLayerRequests[0].request, &input.output_request, sizeof input.output_request),
      0);
  EXPECT_EQ(record.intensityLayer, nullptr) << "its pixels come with the render";
  EXPECT_TRUE(host.Report().Clean()) << host.Report().Describe();
}

}  // namespace
}  // namespace morvane
