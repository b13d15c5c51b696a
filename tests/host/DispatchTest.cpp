// What EffectMain answers: unknown commands, the about text and the mapping of
// whatever a handler raises to the host's error code.
#include <gtest/gtest.h>

#include <ostream>

#include <cstring>

#include "ModuleHost.h"

namespace {

using hostsim::Callback;
using hostsim::FaultKind;
using morvane_test::ModuleHost;

class UnknownCommand : public testing::TestWithParam<PF_Cmd> {};

TEST_P(UnknownCommand, AnswersNoneAndChangesNothing) {
  ModuleHost m(hostsim::HostProfile::AfterEffects());
  hostsim::EffectInstance& instance = m.host.NewInstance();
  ASSERT_EQ(m.host.SequenceSetup(instance).err, PF_Err_NONE);
  m.host.Calls().Clear();
  m.host.Suites().ResetCounts();

  PF_InData in = m.host.MakeInData(&instance);
  PF_OutData out = m.host.MakeOutData(in);
  std::memset(out.return_msg, 'x', sizeof out.return_msg - 1);
  const PF_InData inBefore = in;
  const PF_OutData outBefore = out;
  EXPECT_EQ(m.host.Send(GetParam(), in, out), PF_Err_NONE);
  EXPECT_EQ(std::memcmp(&in, &inBefore, sizeof in), 0);
  EXPECT_EQ(std::memcmp(&out, &outBefore, sizeof out), 0);
  EXPECT_EQ(m.host.Calls().Size(), 0u);
  EXPECT_TRUE(m.host.Suites().Events().empty());
  EXPECT_EQ(m.host.Handles().LiveCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Commands, UnknownCommand,
                         testing::Values(PF_Cmd_UNUSED_0, PF_Cmd_GLOBAL_SETDOWN, PF_Cmd_DO_DIALOG,
                                         PF_Cmd_FRAME_SETUP, PF_Cmd_FRAME_SETDOWN,
                                         PF_Cmd_GET_EXTERNAL_DEPENDENCIES,
                                         PF_Cmd_QUERY_DYNAMIC_FLAGS, PF_Cmd_ARBITRARY_CALLBACK,
                                         PF_Cmd_TRANSLATE_PARAMS_TO_PREFS, PF_Cmd_NUM_CMDS, 1000,
                                         -1));

TEST(About, WritesATextNamingTheEffectWithTheHostsFormatting) {
  ModuleHost m(hostsim::HostProfile::AfterEffects());
  const hostsim::CommandResult result = m.host.About();
  EXPECT_EQ(result.err, PF_Err_NONE);
  EXPECT_NE(result.Message().find("Morvane"), std::string::npos) << result.Message();
  EXPECT_NE(result.Message().find("1.6.0"), std::string::npos) << result.Message();
  EXPECT_EQ(m.host.Calls().Count(Callback("utils", "sprintf")), 1);
  // For PF_Cmd_ABOUT the host shows return_msg itself.
  EXPECT_FALSE(result.ShowsMessage());
  EXPECT_TRUE(m.host.Report().Clean()) << m.host.Report().Describe();
}

struct RaisedCase {
  friend void PrintTo(const RaisedCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  hostsim::Fault fault;
  PF_Err expected;
};

class RaisedByHandler : public testing::TestWithParam<RaisedCase> {};

// The host's allocation callback is made to throw inside sequence set-up; the
// exception passes through the handler to the dispatcher.
TEST_P(RaisedByHandler, BecomesTheCommandsResult) {
  ModuleHost m(hostsim::HostProfile::AfterEffects());
  m.host.Faults().Inject(Callback("utils", "host_new_handle"), GetParam().fault);
  hostsim::EffectInstance& instance = m.host.NewInstance();
  EXPECT_EQ(m.host.SequenceSetup(instance).err, GetParam().expected);
  EXPECT_EQ(m.host.Handles().LiveCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Exceptions, RaisedByHandler,
    testing::Values(RaisedCase{"IntegerCarriesItsValue", {FaultKind::ThrowInteger, 7}, 7},
                    RaisedCase{"IntegerBadCallbackParam", {FaultKind::ThrowInteger, 516}, 516},
                    RaisedCase{"NegativeInteger", {FaultKind::ThrowInteger, -3}, -3},
                    RaisedCase{"StandardException", {FaultKind::ThrowStdException}, 512},
                    RaisedCase{"UnknownType", {FaultKind::ThrowForeign, 7}, 512}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
