#include <gtest/gtest.h>

#include "params/ParamCheckout.h"
#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "tests/params/FakeHost.h"

namespace morvane {
namespace {

using testing::FakeHost;

class ParamCheckout : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
    host.in_data.current_time = 48;
    host.in_data.time_step = 2;
    host.in_data.time_scale = 25;
  }
  FakeHost host;
};

TEST_F(ParamCheckout, ByIdReturnsTheArrayEntryWithoutAskingTheHost) {
  std::vector<PF_ParamDef*> array = host.ParamArray();
  PF_ParamDef buffer;
  PF_ParamDef* def = CheckoutParamById(&host.in_data, array.data(), ParamId::EdgeMode, buffer);
  EXPECT_EQ(def, array[static_cast<std::size_t>(ParamPosition(ParamId::EdgeMode))]);
  EXPECT_TRUE(host.checkouts.empty());
}

TEST_F(ParamCheckout, ByIdWithoutArrayAsksTheHostAtTheCurrentTime) {
  host.At(ParamPosition(ParamId::Morvane)).u.fs_d.value = 7.5;
  PF_ParamDef buffer;
  PF_ParamDef* def = CheckoutParamById(&host.in_data, nullptr, ParamId::Morvane, buffer);
  EXPECT_EQ(def, &buffer);
  EXPECT_EQ(def->u.fs_d.value, 7.5);
  ASSERT_EQ(host.checkouts.size(), 1u);
  EXPECT_EQ(host.checkouts[0], ParamPosition(ParamId::Morvane));
  EXPECT_EQ(host.checkoutTimes[0].time, 48);
  EXPECT_EQ(host.checkoutTimes[0].step, 2);
  EXPECT_EQ(host.checkoutTimes[0].scale, 25u);
}

TEST_F(ParamCheckout, HostErrorIsRaisedAsItsValue) {
  host.checkoutErrors[ParamPosition(ParamId::CurvePhase)] = PF_Interrupt_CANCEL;
  PF_ParamDef buffer;
  try {
    CheckoutParamById(&host.in_data, nullptr, ParamId::CurvePhase, buffer);
    FAIL() << "no exception";
  } catch (PF_Err err) {
    EXPECT_EQ(err, PF_Interrupt_CANCEL);
  }
  EXPECT_THROW(CheckoutParamNow(&host.in_data, ParamId::CurvePhase, buffer), PF_Err);
}

TEST_F(ParamCheckout, CheckedOutParamChecksInOnlyWhatTheHostHandedOut) {
  PF_ParamDef buffer;
  {
    const CheckedOutParam param(&host.in_data, nullptr, ParamId::Shading, buffer);
    EXPECT_EQ(param->u.pd.value, 1);
    EXPECT_TRUE(host.checkedIn.empty());
  }
  ASSERT_EQ(host.checkedIn.size(), 1u);
  EXPECT_EQ(host.checkedIn[0], &buffer);

  std::vector<PF_ParamDef*> array = host.ParamArray();
  { const CheckedOutParam param(&host.in_data, array.data(), ParamId::Shading, buffer); }
  EXPECT_EQ(host.checkedIn.size(), 1u);
  EXPECT_EQ(host.OpenCheckouts(), 0);
}

}  // namespace
}  // namespace morvane
