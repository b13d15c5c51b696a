// Reading a control by its ParamId, in this process against the simulated host: from the
// command's parameter array when there is one, otherwise checked out from the host at the
// command's time and checked in again.
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "hostsim/Host.h"
#include "params/ParamCheckout.h"
#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"

namespace morvane {
namespace {

template <typename F>
PF_Err Raised(F&& read) {
  try {
    read();
  } catch (PF_Err err) {
    return err;
  }
  return PF_Err_NONE;
}

TEST(ParamCheckout, ReadsTheArrayOrTheHostAtTheCommandsTime) {
  hostsim::Host host(hostsim::HostProfile::AfterEffects());
  PF_InData in = host.MakeInData();
  PF_OutData out{};
  PF_ParamDef buffer{};  // first the host's input layer, then the controls, as in the host
  in.inter.add_param(in.effect_ref, -1, &buffer);
  ASSERT_EQ(ParamsSetup(&in, &out, nullptr), PF_Err_NONE);
  EXPECT_NO_THROW(VerifyParamCount(24));
  EXPECT_THROW(VerifyParamCount(25), std::logic_error);
  hostsim::EffectInstance& fx = host.NewInstance();
  host.SetKeyframes(fx, "Morvane", {{0, 1.0}, {24, 7.5}});
  in = host.MakeInData(&fx);
  in.current_time = 48;  // frame 24
  in.time_step = 2;
  std::vector<PF_ParamDef> defs(24);
  std::vector<PF_ParamDef*> array;
  for (PF_ParamDef& def : defs)
    array.push_back(&def);
  host.Calls().Clear();

  EXPECT_EQ(&*CheckedOutParam(&in, array.data(), ParamId::EdgeMode, buffer),
            array.at(static_cast<size_t>(host.PositionOf(fx, "Edge Mode"))));
  EXPECT_EQ(host.Calls().Size(), 0u);
  EXPECT_EQ(CheckedOutParam(&in, nullptr, ParamId::Morvane, buffer)->u.fs_d.value, 7.5);
  EXPECT_EQ(host.Calls().Entries(),
            (std::vector<std::string>{"inter.checkout_param", "inter.checkin_param"}));

  // An array shorter than the control's position is not read past its end.
  in.num_params = host.PositionOf(fx, "Edge Mode");
  EXPECT_EQ(Raised([&] { CheckoutParamById(&in, array.data(), ParamId::EdgeMode, buffer); }),
            PF_Err_INVALID_INDEX);
  // The host's error, and nothing to check in.
  host.Faults().Fail("inter.checkout_param", PF_Interrupt_CANCEL);
  EXPECT_EQ(Raised([&] { CheckedOutParam param(&in, nullptr, ParamId::CurvePhase, buffer); }),
            PF_Interrupt_CANCEL);
  EXPECT_EQ(Raised([&] { CheckoutParamNow(&in, ParamId::CurvePhase, buffer); }),
            PF_Interrupt_CANCEL);
  EXPECT_EQ(host.Calls().Count("inter.checkin_param"), 1);
  EXPECT_TRUE(host.Report().Clean()) << host.Report().Describe();
  // A control no set-up declared; looking it up adds nothing to the table.
  ModuleParamPositionTable().Clear();
  EXPECT_EQ(Raised([&] { CheckoutParamById(&in, array.data(), ParamId::Morvane, buffer); }),
            PF_Err_INVALID_INDEX);
  EXPECT_EQ(ModuleParamPositionTable().Size(), 0u);
}

}  // namespace
}  // namespace morvane
