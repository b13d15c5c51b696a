// Renders after a parameter set-up that failed part-way, or that never came (the fuzzer: add_param
// refused, or a render sent first). The controls not declared have no position, and every read of
// one fell back to position 0, the input layer: values were taken from the layer's definition, and
// the "Intensity Source" layer was checked out under checkout id 0, the input's own id, which the
// host refused as a second checkout of that id. Such a render must end with an error code and
// leave the host's books balanced, also when an earlier host in the same process declared the
// whole list (the module's positions outlive one host).
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "hostsim/Host.h"

namespace {

using hostsim::HostProfile;

struct Session {
  const char* label;
  bool premiere;  // a single-call render, else a smart render
  int declared;   // the controls the host accepts before refusing; -1: no parameter set-up
  bool earlierHost = false;  // a host that declared everything came and went before
  PF_Err err = PF_Err_NONE;  // the render's error; PF_Err_NONE: any error
  friend void PrintTo(const Session& s, std::ostream* os) { *os << s.label; }
};

class IncompleteParamsSetup : public testing::TestWithParam<Session> {};

TEST_P(IncompleteParamsSetup, RenderFailsWithoutMisusingCheckouts) {
  const Session& s = GetParam();
  const HostProfile profile = s.premiere ? HostProfile::Premiere() : HostProfile::AfterEffects();
  if (s.earlierHost) {
    hostsim::Host first(profile);
    first.Load(MORVANE_MODULE_PATH);
    ASSERT_EQ(first.Register(), A_Err_NONE);
    ASSERT_EQ(first.GlobalSetup().err, PF_Err_NONE);
    ASSERT_EQ(first.ParamsSetup().err, PF_Err_NONE);
    ASSERT_EQ(first.GlobalSetdown().err, PF_Err_NONE);
  }
  hostsim::Host host(profile);
  host.Load(MORVANE_MODULE_PATH);
  ASSERT_EQ(host.Register(), A_Err_NONE);
  ASSERT_EQ(host.GlobalSetup().err, PF_Err_NONE);
  if (s.declared >= 0) {
    host.Faults().Fail(hostsim::Callback("inter", "add_param"), PF_Err_OUT_OF_MEMORY, s.declared);
    ASSERT_NE(host.ParamsSetup().err, PF_Err_NONE);
    host.Faults().Clear();
  }
  hostsim::EffectInstance& instance = host.NewInstance();
  ASSERT_EQ(host.SequenceSetup(instance).err, PF_Err_NONE);
  PF_EffectWorld* input = host.Worlds().Create(8, 4, hostsim::PixelDepth::Bits8);
  PF_Err err = PF_Err_NONE;
  if (s.premiere) {
    hostsim::LegacyFrame frame;
    frame.input = input;
    err = host.RenderLegacy(instance, frame).err;
  } else {
    hostsim::SmartFrame frame;
    frame.input = input;
    const hostsim::SmartFrameResult result = host.RenderSmart(instance, frame);
    EXPECT_FALSE(result.rendered);
    err = result.preRenderErr;
  }
  EXPECT_NE(err, PF_Err_NONE);
  if (s.err != PF_Err_NONE) {
    EXPECT_EQ(err, s.err);
  }
  ASSERT_EQ(host.SequenceSetdown(instance).err, PF_Err_NONE);
  host.Worlds().Dispose(input);
  EXPECT_TRUE(host.Report().Clean()) << host.Report().Describe();
}

// Nothing declared; "Direction" only; "Direction" and "Intensity Source"; ten controls; no set-up.
INSTANTIATE_TEST_SUITE_P(
    Sessions, IncompleteParamsSetup,
    testing::Values(
        Session{"SmartNothingDeclared", false, 0}, Session{"SmartDirectionOnly", false, 1},
        Session{"SmartUpToTheLayer", false, 2}, Session{"SmartTenControls", false, 10},
        Session{"PremiereNothingDeclared", true, 0}, Session{"PremiereDirectionOnly", true, 1},
        Session{"PremiereUpToTheLayer", true, 2}, Session{"PremiereTenControls", true, 10},
        Session{"PremiereNoSetup", true, -1, false, PF_Err_INVALID_INDEX},
        Session{"PremiereNoSetupAfterAnEarlierHost", true, -1, true, PF_Err_INVALID_INDEX}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
