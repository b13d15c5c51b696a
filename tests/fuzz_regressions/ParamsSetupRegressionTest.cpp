// Renders after a parameter set-up that failed part-way (the fuzzer: add_param refused, then a
// smart render). The controls not declared have no position, and every read of one fell back to
// position 0, the input layer: values were taken from the layer's definition, and the
// "Intensity Source" layer was checked out under checkout id 0, the input's own id, which the
// host refused as a second checkout of that id. Such a render must end with an error code and
// leave the host's books balanced.
#include <gtest/gtest.h>

#include <string>

#include "hostsim/Host.h"

namespace {

using hostsim::Callback;
using hostsim::EffectInstance;
using hostsim::Host;

class IncompleteParamsSetup : public testing::TestWithParam<int> {
 protected:
  explicit IncompleteParamsSetup(
      hostsim::HostProfile profile = hostsim::HostProfile::AfterEffects())
      : host_(std::move(profile)) {}

  // Global set-up, then a parameter set-up whose add_param succeeds GetParam() times only.
  void SetUpEffect() {
    host_.Load(MORVANE_MODULE_PATH);
    ASSERT_EQ(host_.Register(), A_Err_NONE);
    ASSERT_EQ(host_.GlobalSetup().err, PF_Err_NONE);
    host_.Faults().Fail(Callback("inter", "add_param"), PF_Err_OUT_OF_MEMORY, GetParam());
    ASSERT_NE(host_.ParamsSetup().err, PF_Err_NONE);
    host_.Faults().Clear();
    instance_ = &host_.NewInstance();
    ASSERT_EQ(host_.SequenceSetup(*instance_).err, PF_Err_NONE);
    input_ = host_.Worlds().Create(8, 4, hostsim::PixelDepth::Bits8);
  }

  void ExpectCleanSession() {
    ASSERT_EQ(host_.SequenceSetdown(*instance_).err, PF_Err_NONE);
    host_.Worlds().Dispose(input_);
    const hostsim::SessionReport report = host_.Report();
    EXPECT_TRUE(report.Clean()) << report.Describe();
  }

  Host host_;
  EffectInstance* instance_ = nullptr;
  PF_EffectWorld* input_ = nullptr;
};

TEST_P(IncompleteParamsSetup, SmartRenderFailsWithoutMisusingCheckouts) {
  SetUpEffect();
  hostsim::SmartFrame frame;
  frame.input = input_;
  const hostsim::SmartFrameResult result = host_.RenderSmart(*instance_, frame);
  EXPECT_NE(result.preRenderErr, PF_Err_NONE);
  EXPECT_FALSE(result.rendered);
  ExpectCleanSession();
}

class IncompleteParamsSetupInPremiere : public IncompleteParamsSetup {
 protected:
  IncompleteParamsSetupInPremiere() : IncompleteParamsSetup(hostsim::HostProfile::Premiere()) {}
};

TEST_P(IncompleteParamsSetupInPremiere, SingleCallRenderFailsInsteadOfReadingTheInputLayer) {
  SetUpEffect();
  hostsim::LegacyFrame frame;
  frame.input = input_;
  EXPECT_NE(host_.RenderLegacy(*instance_, frame).err, PF_Err_NONE);
  ExpectCleanSession();
}

// A host that renders before ever sending the parameter set-up (the command fuzzer's order): the
// array holds the input layer alone, and the render must fail rather than read past it, also
// when an earlier host in the same process declared the whole list (the module's positions
// outlive one host).
class NoParamsSetup : public testing::TestWithParam<bool> {};

TEST_P(NoParamsSetup, SingleCallRenderFailsWithTheInputLayerAlone) {
  if (GetParam()) {
    Host first(hostsim::HostProfile::Premiere());
    first.Load(MORVANE_MODULE_PATH);
    ASSERT_EQ(first.Register(), A_Err_NONE);
    ASSERT_EQ(first.GlobalSetup().err, PF_Err_NONE);
    ASSERT_EQ(first.ParamsSetup().err, PF_Err_NONE);
    ASSERT_EQ(first.GlobalSetdown().err, PF_Err_NONE);
  }
  Host host(hostsim::HostProfile::Premiere());
  host.Load(MORVANE_MODULE_PATH);
  ASSERT_EQ(host.Register(), A_Err_NONE);
  ASSERT_EQ(host.GlobalSetup().err, PF_Err_NONE);
  EffectInstance& instance = host.NewInstance();
  ASSERT_EQ(host.SequenceSetup(instance).err, PF_Err_NONE);
  hostsim::LegacyFrame frame;
  frame.input = host.Worlds().Create(8, 4, hostsim::PixelDepth::Bits8);
  EXPECT_EQ(host.RenderLegacy(instance, frame).err, PF_Err_INVALID_INDEX);
  ASSERT_EQ(host.SequenceSetdown(instance).err, PF_Err_NONE);
  host.Worlds().Dispose(frame.input);
  const hostsim::SessionReport report = host.Report();
  EXPECT_TRUE(report.Clean()) << report.Describe();
}

INSTANTIATE_TEST_SUITE_P(AfterAnEarlierHost, NoParamsSetup, testing::Bool());

std::string DeclaredName(const testing::TestParamInfo<int>& info) {
  return std::to_string(info.param) + "Declared";
}

// Nothing declared; "Direction" only; "Direction" and "Intensity Source"; ten controls.
INSTANTIATE_TEST_SUITE_P(Controls, IncompleteParamsSetup, testing::Values(0, 1, 2, 10),
                         DeclaredName);
INSTANTIATE_TEST_SUITE_P(Controls, IncompleteParamsSetupInPremiere, testing::Values(0, 1, 2, 10),
                         DeclaredName);

}  // namespace
