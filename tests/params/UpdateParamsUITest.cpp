#include <gtest/gtest.h>

#include <vector>

#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "params/UpdateParamsUI.h"
#include "tests/params/FakeHost.h"

namespace morvane {
namespace {

using testing::FakeHost;

constexpr A_long kShadingNone = 1;
constexpr A_long kShadingSine = 2;
constexpr A_long kShadingTriangle = 3;
constexpr A_long kEdgeWrap = 1;
constexpr A_long kEdgeMirror = 2;
constexpr A_long kEdgeRepeatLast = 3;
constexpr A_long kEdgeTransparent = 4;

class UpdateParamsUITest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
  }

  // Runs one UI update and applies the accepted changes the way a host would.
  PF_Err Update() {
    const std::size_t before = host.uiUpdates.size();
    std::vector<PF_ParamDef*> array = host.ParamArray();
    const PF_Err err = UpdateParamsUI(&host.in_data, &host.out_data, array.data());
    for (std::size_t i = before; i < host.uiUpdates.size(); ++i) {
      if (!host.uiUpdateErrors.contains(i)) {
        host.At(host.uiUpdates[i].position).ui_flags = host.uiUpdates[i].uiFlags;
      }
    }
    lastCalls.assign(host.uiUpdates.begin() + static_cast<std::ptrdiff_t>(before),
                     host.uiUpdates.end());
    return err;
  }

  void SetPopup(ParamId id, A_long value) { host.At(ParamPosition(id)).u.pd.value = value; }

  static FakeHost::UIUpdate Call(ParamId id, PF_ParamUIFlags flags) {
    return {ParamPosition(id), flags};
  }

  void ExpectLastCalls(const std::vector<FakeHost::UIUpdate>& expected) {
    ASSERT_EQ(lastCalls.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(lastCalls[i].position, expected[i].position) << "call " << i;
      EXPECT_EQ(lastCalls[i].uiFlags, expected[i].uiFlags) << "call " << i;
    }
  }

  FakeHost host;
  std::vector<FakeHost::UIUpdate> lastCalls;
};

TEST_F(UpdateParamsUITest, FreshInstanceDisablesShadingGroupThenFeather) {
  ASSERT_EQ(Update(), PF_Err_NONE);
  ExpectLastCalls({Call(ParamId::ShadingIntervalSize, PF_PUI_DISABLED),
                   Call(ParamId::ShadingIntervalPhase, PF_PUI_DISABLED),
                   Call(ParamId::ShadingChannels, PF_PUI_DISABLED),
                   Call(ParamId::ShadingOpacity, PF_PUI_DISABLED),
                   Call(ParamId::TransparencyFeather, PF_PUI_DISABLED)});
  EXPECT_EQ(host.acquired[kPFParamUtilsSuite], 1);
  EXPECT_EQ(host.released[kPFParamUtilsSuite], 1);

  ASSERT_EQ(Update(), PF_Err_NONE);
  ExpectLastCalls({});
  EXPECT_EQ(host.acquired[kPFParamUtilsSuite], 1) << "no change, no suite";
  EXPECT_EQ(host.out_data.out_flags, 0);
}

TEST_F(UpdateParamsUITest, EnableAndDisableSequences) {
  ASSERT_EQ(Update(), PF_Err_NONE);

  struct Step {
    ParamId popup;
    A_long value;
    std::vector<FakeHost::UIUpdate> calls;
  };
  const std::vector<Step> steps{
      {ParamId::Shading,
       kShadingSine,
       {Call(ParamId::ShadingIntervalSize, 0), Call(ParamId::ShadingIntervalPhase, 0),
        Call(ParamId::ShadingChannels, 0), Call(ParamId::ShadingOpacity, 0)}},
      {ParamId::Shading, kShadingTriangle, {}},
      {ParamId::EdgeMode, kEdgeTransparent, {Call(ParamId::TransparencyFeather, 0)}},
      {ParamId::EdgeMode, kEdgeMirror, {Call(ParamId::TransparencyFeather, PF_PUI_DISABLED)}},
      {ParamId::EdgeMode, kEdgeRepeatLast, {}},
      {ParamId::EdgeMode, kEdgeWrap, {}},
      {ParamId::Shading,
       kShadingNone,
       {Call(ParamId::ShadingIntervalSize, PF_PUI_DISABLED),
        Call(ParamId::ShadingIntervalPhase, PF_PUI_DISABLED),
        Call(ParamId::ShadingChannels, PF_PUI_DISABLED),
        Call(ParamId::ShadingOpacity, PF_PUI_DISABLED)}},
  };
  for (std::size_t i = 0; i < steps.size(); ++i) {
    SCOPED_TRACE(i);
    SetPopup(steps[i].popup, steps[i].value);
    ASSERT_EQ(Update(), PF_Err_NONE);
    ExpectLastCalls(steps[i].calls);
  }
}

TEST_F(UpdateParamsUITest, DisablingLeavesValuesUntouched) {
  host.At(ParamPosition(ParamId::TransparencyFeather)).u.fs_d.value = 50.0;
  SetPopup(ParamId::EdgeMode, kEdgeTransparent);
  ASSERT_EQ(Update(), PF_Err_NONE);
  SetPopup(ParamId::EdgeMode, kEdgeWrap);
  ASSERT_EQ(Update(), PF_Err_NONE);
  SetPopup(ParamId::EdgeMode, kEdgeTransparent);
  ASSERT_EQ(Update(), PF_Err_NONE);
  EXPECT_EQ(host.At(ParamPosition(ParamId::TransparencyFeather)).u.fs_d.value, 50.0);
}

TEST_F(UpdateParamsUITest, FirstFailingCallStopsAllLaterCalls) {
  host.uiUpdateErrors[1] = PF_Err_OUT_OF_MEMORY;
  EXPECT_EQ(Update(), PF_Err_OUT_OF_MEMORY);
  ExpectLastCalls({Call(ParamId::ShadingIntervalSize, PF_PUI_DISABLED),
                   Call(ParamId::ShadingIntervalPhase, PF_PUI_DISABLED)});
}

TEST_F(UpdateParamsUITest, FeatherFailureIsReturned) {
  SetPopup(ParamId::Shading, kShadingSine);
  host.uiUpdateErrors[0] = PF_Err_INVALID_INDEX;
  EXPECT_EQ(Update(), PF_Err_INVALID_INDEX);
  ExpectLastCalls({Call(ParamId::TransparencyFeather, PF_PUI_DISABLED)});
}

TEST_F(UpdateParamsUITest, OnlyTheExactDisabledWordCountsAsDisabled) {
  for (ParamId id : {ParamId::ShadingIntervalSize, ParamId::TransparencyFeather}) {
    host.At(ParamPosition(id)).ui_flags = PF_PUI_DISABLED | PF_PUI_ECW_SEPARATOR;
  }
  ASSERT_EQ(Update(), PF_Err_NONE);
  EXPECT_EQ(lastCalls.size(), 5u);
  for (const FakeHost::UIUpdate& call : lastCalls)
    EXPECT_EQ(call.uiFlags, PF_PUI_DISABLED);
}

TEST_F(UpdateParamsUITest, MissingSuiteRaisesBadCallbackParam) {
  host.offerParamUtils = false;
  std::vector<PF_ParamDef*> array = host.ParamArray();
  try {
    UpdateParamsUI(&host.in_data, &host.out_data, array.data());
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
  }
  EXPECT_EQ(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
}

}  // namespace
}  // namespace morvane
