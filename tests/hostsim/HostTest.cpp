// The simulated host's own bookkeeping, which the other tests rely on: handles and leaks, suites
// per name and version, which host serves which suite, injected faults, the session report.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "hostsim/Host.h"

namespace {

using hostsim::Host;
using hostsim::HostProfile;
using testing::HasSubstr;

class Bookkeeping : public testing::Test {
 protected:
  Host host_{HostProfile::AfterEffects()};
  PF_InData in_ = host_.MakeInData();
  const PF_UtilCallbacks& utils_ = *in_.utils;
};

TEST_F(Bookkeeping, OneHostAtATime) {
  EXPECT_THROW(Host second(HostProfile::Premiere()), std::logic_error);
  EXPECT_EQ(Host::Active(), &host_);
}

TEST_F(Bookkeeping, HandlesAreFreshResizableAndEveryLeakOrMisuseIsReported) {
  PF_Handle h = utils_.host_new_handle(8);
  EXPECT_EQ(host_.Handles().Bytes(h), std::vector<uint8_t>(8, 0xCD));
  static_cast<uint8_t*>(*h)[0] = 42;
  PF_Handle moved = h;
  ASSERT_EQ(utils_.host_resize_handle(16, &moved), PF_Err_NONE);
  std::vector<uint8_t> resized(16, 0xCD);
  resized[0] = 42;
  EXPECT_EQ(moved, h);
  EXPECT_EQ(host_.Handles().Bytes(h), resized);
  EXPECT_EQ(utils_.host_get_handle_size(h), 16u);
  utils_.host_lock_handle(h);
  EXPECT_EQ(host_.Report().Describe(),
            "handle #1 of 16 bytes never disposed of (locked 1 times)\n");
  utils_.host_unlock_handle(h);
  utils_.host_dispose_handle(h);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();

  utils_.host_dispose_handle(h);
  utils_.host_unlock_handle(host_.Handles().New(1));
  const std::vector<std::string> problems = host_.Report().problems;
  ASSERT_EQ(problems.size(), 2u);
  EXPECT_THAT(problems[0], HasSubstr("dispose of unknown handle"));
  EXPECT_THAT(problems[1], HasSubstr("not locked"));
}

TEST_F(Bookkeeping, SuitesBalanceOnlyUnderTheirOwnNameAndVersion) {
  const void* suite = nullptr;
  ASSERT_EQ(in_.pica_basicP->AcquireSuite(kPFHandleSuite, 2, &suite), 0);
  ASSERT_EQ(in_.pica_basicP->AcquireSuite(kPFHandleSuite, 2, &suite), 0);
  EXPECT_NE(suite, nullptr);
  in_.pica_basicP->ReleaseSuite(kPFHandleSuite, 2);
  in_.pica_basicP->ReleaseSuite(kPFHandleSuite, 1);
  EXPECT_EQ(host_.Report().Describe(),
            "suite \"PF Handle Suite\" version 1: acquired 0, released 1\n"
            "suite \"PF Handle Suite\" version 2: acquired 2, released 1\n");
}

TEST_F(Bookkeeping, MisuseOfTheCallbacksIsReported) {
  char text[PF_MAX_EFFECT_MSG_LEN + 1];
  EXPECT_EQ(utils_.ansi.sprintf(text, "%s", std::string(300, 'x').c_str()), 300);
  EXPECT_EQ(std::string(text), std::string(PF_MAX_EFFECT_MSG_LEN, 'x'));
  PF_ParamDef def{};
  EXPECT_EQ(in_.inter.add_param(reinterpret_cast<PF_ProgPtr>(&def), -1, &def), PF_Err_NONE);
  EXPECT_THAT(host_.Report().Describe(), HasSubstr("more than 255"));
  EXPECT_THAT(host_.Report().Describe(), HasSubstr("unknown effect_ref"));
}

// Premiere alone serves the pixel-format and utility suites; a suite exists only in its version.
TEST(ServedSuites, AreThoseOfTheHostsKind) {
  const std::tuple<const char*, int32_t, bool, bool> suites[] = {
      {kPFPixelFormatSuite, 1, false, true},
      {kPFUtilitySuite, 4, false, true},
      {kPFHandleSuite, 2, true, true},
      {kPFHandleSuite, 1, false, false}};
  for (const auto& [name, version, inAfterEffects, inPremiere] : suites) {
    for (const bool premiere : {false, true}) {
      Host host(premiere ? HostProfile::Premiere() : HostProfile::AfterEffects());
      const void* suite = nullptr;
      const bool served = host.BasicSuite()->AcquireSuite(name, version, &suite) == 0;
      EXPECT_EQ(served, premiere ? inPremiere : inAfterEffects) << name << " " << version;
      EXPECT_EQ(suite != nullptr, served);
      if (served) host.BasicSuite()->ReleaseSuite(name, version);
    }
  }
}

TEST(Faults, StrikeAfterTheSkippedCallsForAsManyCallsAsAsked) {
  const std::tuple<int, int, std::vector<bool>> plans[] = {{0, -1, {true, true, true}},
                                                           {0, 1, {true, false, false}},
                                                           {1, 2, {false, true, true, false}}};
  for (const auto& [skip, times, fails] : plans) {
    Host host(HostProfile::AfterEffects());
    host.Faults().Fail(hostsim::Callback("utils", "host_new_handle"), 4, skip, times);
    const PF_InData in = host.MakeInData();
    for (const bool fail : fails) {
      PF_Handle h = in.utils->host_new_handle(1);
      EXPECT_EQ(h == nullptr, fail) << skip << " " << times;
      if (h != nullptr) in.utils->host_dispose_handle(h);
    }
  }
}

}  // namespace
