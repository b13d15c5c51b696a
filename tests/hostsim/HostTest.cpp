// The simulated host's own bookkeeping: handles, suites, faults and the
// end-of-session report, driven directly through the records it hands out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <thread>
#include <vector>

#include "hostsim/Host.h"

namespace {

using hostsim::Callback;
using hostsim::Host;
using hostsim::HostProfile;

class HostBookkeeping : public testing::Test {
 protected:
  Host host_{HostProfile::AfterEffects()};
  PF_InData in_ = host_.MakeInData();
};

TEST_F(HostBookkeeping, OnlyOneHostIsActiveAtATime) {
  EXPECT_EQ(Host::Active(), &host_);
  EXPECT_THROW(Host second(HostProfile::Premiere()), std::logic_error);
  EXPECT_EQ(Host::Active(), &host_);
}

TEST_F(HostBookkeeping, HandlesAreFreshlyFilledResizableAndTracked) {
  PF_Handle h = in_.utils->host_new_handle(8);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(host_.Handles().Bytes(h), std::vector<uint8_t>(8, 0xCD));
  static_cast<uint8_t*>(*h)[0] = 42;
  PF_Handle same = h;
  ASSERT_EQ(in_.utils->host_resize_handle(16, &same), PF_Err_NONE);
  EXPECT_EQ(same, h);
  EXPECT_EQ(in_.utils->host_get_handle_size(h), 16u);
  EXPECT_EQ(host_.Handles().Bytes(h)[0], 42);
  EXPECT_EQ(host_.Handles().Bytes(h)[15], 0xCD);

  in_.utils->host_lock_handle(h);
  const hostsim::SessionReport report = host_.Report();
  ASSERT_EQ(report.leakedHandles.size(), 1u);
  EXPECT_EQ(report.leakedHandles[0].size, 16u);
  EXPECT_EQ(report.leakedHandles[0].lockCount, 1);
  EXPECT_THAT(report.Describe(), testing::HasSubstr("handle #1 of 16 bytes never disposed of"));

  in_.utils->host_unlock_handle(h);
  in_.utils->host_dispose_handle(h);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
}

TEST_F(HostBookkeeping, MisuseOfHandlesIsReported) {
  PF_Handle h = in_.utils->host_new_handle(4);
  in_.utils->host_dispose_handle(h);
  in_.utils->host_dispose_handle(h);
  in_.utils->host_unlock_handle(host_.Handles().New(1));
  const auto problems = host_.Report().problems;
  ASSERT_EQ(problems.size(), 2u);
  EXPECT_THAT(problems[0], testing::HasSubstr("dispose of unknown handle"));
  EXPECT_THAT(problems[1], testing::HasSubstr("not locked"));
}

TEST_F(HostBookkeeping, SuitesAreCountedPerNameAndVersion) {
  const SPBasicSuite* basic = in_.pica_basicP;
  const void* suite = nullptr;
  ASSERT_EQ(basic->AcquireSuite(kPFHandleSuite, 2, &suite), 0);
  EXPECT_NE(suite, nullptr);
  ASSERT_EQ(basic->AcquireSuite(kPFHandleSuite, 2, &suite), 0);
  EXPECT_EQ(basic->ReleaseSuite(kPFHandleSuite, 2), 0);
  // A release under another version does not balance the first.
  basic->ReleaseSuite(kPFHandleSuite, 1);

  const auto unbalanced = host_.Report().unbalancedSuites;
  ASSERT_EQ(unbalanced.size(), 2u);
  EXPECT_EQ(unbalanced[0].key.version, 1);
  EXPECT_EQ(unbalanced[0].released, 1);
  EXPECT_EQ(unbalanced[1].key.version, 2);
  EXPECT_EQ(unbalanced[1].acquired, 2);
  EXPECT_EQ(unbalanced[1].released, 1);
}

struct SuiteCase {
  const char* label;
  const char* name;
  int32_t version;
  bool inAfterEffects;
  bool inPremiere;
  friend void PrintTo(const SuiteCase& c, std::ostream* os) { *os << c.label; }
};

class ServedSuite : public testing::TestWithParam<SuiteCase> {};

TEST_P(ServedSuite, IsServedByTheHostsThatOfferIt) {
  for (const bool premiere : {false, true}) {
    Host host(premiere ? HostProfile::Premiere() : HostProfile::AfterEffects());
    const void* suite = nullptr;
    const SPErr err = host.BasicSuite()->AcquireSuite(GetParam().name, GetParam().version, &suite);
    const bool offered = premiere ? GetParam().inPremiere : GetParam().inAfterEffects;
    EXPECT_EQ(err == 0, offered) << (premiere ? "Premiere" : "After Effects");
    EXPECT_EQ(suite != nullptr, offered);
    if (offered) host.BasicSuite()->ReleaseSuite(GetParam().name, GetParam().version);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Suites, ServedSuite,
    testing::Values(SuiteCase{"PixelFormat1", kPFPixelFormatSuite, 1, false, true},
                    SuiteCase{"Utility4", kPFUtilitySuite, 4, false, true},
                    SuiteCase{"Handle2", kPFHandleSuite, 2, true, true},
                    SuiteCase{"World2", kPFWorldSuite, 2, true, true},
                    SuiteCase{"ParamUtils3", kPFParamUtilsSuite, 3, true, true},
                    SuiteCase{"CustomUI1", kPFEffectCustomUISuite, 1, true, true},
                    SuiteCase{"Draw1", kDRAWBOT_DrawSuite, 1, true, true},
                    SuiteCase{"Supplier1", kDRAWBOT_SupplierSuite, 1, true, true},
                    SuiteCase{"Surface2", kDRAWBOT_SurfaceSuite, 2, true, true},
                    SuiteCase{"Path1", kDRAWBOT_PathSuite, 1, true, true},
                    SuiteCase{"HandleWrongVersion", kPFHandleSuite, 1, false, false}),
    [](const auto& info) { return std::string(info.param.label); });

struct StrikeCase {
  const char* label;
  int skip;
  int times;
  std::vector<bool> fails;  // per call
  friend void PrintTo(const StrikeCase& c, std::ostream* os) { *os << c.label; }
};

class FaultTiming : public testing::TestWithParam<StrikeCase> {};

TEST_P(FaultTiming, StrikesAfterSkippedCallsForAsManyCallsAsAsked) {
  Host host(HostProfile::AfterEffects());
  host.Faults().Fail(Callback("utils", "host_new_handle"), PF_Err_OUT_OF_MEMORY, GetParam().skip,
                     GetParam().times);
  PF_InData in = host.MakeInData();
  for (size_t call = 0; call < GetParam().fails.size(); ++call) {
    PF_Handle h = in.utils->host_new_handle(1);
    EXPECT_EQ(h == nullptr, GetParam().fails[call]) << "call " << call;
    if (h != nullptr) in.utils->host_dispose_handle(h);
  }
}

INSTANTIATE_TEST_SUITE_P(Timing, FaultTiming,
                         testing::Values(StrikeCase{"Always", 0, -1, {true, true, true}},
                                         StrikeCase{"Once", 0, 1, {true, false, false}},
                                         StrikeCase{
                                             "SecondAndThird", 1, 2, {false, true, true, false}}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(HostBookkeeping, TheFormattingCallbackReportsOverlongText) {
  char buffer[PF_MAX_EFFECT_MSG_LEN + 1];
  const std::string longText(300, 'x');
  EXPECT_EQ(in_.utils->ansi.sprintf(buffer, "%s", longText.c_str()), 300);
  EXPECT_EQ(std::string(buffer), std::string(PF_MAX_EFFECT_MSG_LEN, 'x'));
  EXPECT_THAT(host_.Report().Describe(), testing::HasSubstr("more than 255"));
}

TEST_F(HostBookkeeping, CallbacksWithAForeignEffectRefAreReported) {
  PF_ParamDef def{};
  EXPECT_EQ(in_.inter.add_param(reinterpret_cast<PF_ProgPtr>(&def), -1, &def), PF_Err_NONE);
  EXPECT_THAT(host_.Report().Describe(), testing::HasSubstr("unknown effect_ref"));
}

TEST(HostRecords, TheInputRecordCarriesTheProfile) {
  for (const auto& [make, applId, minor] : {std::tuple{&HostProfile::AfterEffects, 'FXTC', 27},
                                            {&HostProfile::AfterEffects13_23, 'FXTC', 23},
                                            {&HostProfile::OlderHost, 'FXTC', 8},
                                            {&HostProfile::Premiere, 'PrMr', 27}}) {
    Host host(make());
    const PF_InData in = host.MakeInData();
    EXPECT_EQ(in.appl_id, applId) << host.Profile().label;
    EXPECT_EQ(in.version.major, 13) << host.Profile().label;
    EXPECT_EQ(in.version.minor, minor) << host.Profile().label;
    EXPECT_EQ(in.pica_basicP, host.BasicSuite());
    EXPECT_NE(in.utils->ansi.sprintf, nullptr);
    EXPECT_NE(in.inter.add_param, nullptr);
  }
}

TEST_F(HostBookkeeping, WorldsReportTheirFormatInEachHostsTerms) {
  for (const auto& [depth, rowbytes, ae, pr] :
       {std::tuple{hostsim::PixelDepth::Bits8, 4 * 10 + 12, PF_PixelFormat_ARGB32,
                   PrPixelFormat_ARGB_4444_8u},
        {hostsim::PixelDepth::Bits16, 8 * 10 + 12, PF_PixelFormat_ARGB64,
         PrPixelFormat_ARGB_4444_16u},
        {hostsim::PixelDepth::Float32, 16 * 10 + 12, PF_PixelFormat_ARGB128,
         PrPixelFormat_ARGB_4444_32f}}) {
    PF_EffectWorld* world = host_.Worlds().Create(10, 3, depth, 12);
    EXPECT_EQ(world->rowbytes, rowbytes);
    EXPECT_EQ(host_.Worlds().AeFormat(world), ae);
    EXPECT_EQ(host_.Worlds().PremiereFormat(world), pr);
    EXPECT_TRUE(host_.Worlds().Dispose(world));
  }
  EXPECT_EQ(host_.Worlds().LiveCount(), 0u);
}

}  // namespace

namespace {

// Render threads call the host at the same time; the books must still balance.
TEST(HostThreads, BookkeepingHoldsUnderConcurrentCalls) {
  Host host(HostProfile::Premiere());
  const PF_InData in = host.MakeInData();
  constexpr int kThreads = 4;
  constexpr int kRounds = 200;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&in] {
      for (int i = 0; i < kRounds; ++i) {
        const void* suite = nullptr;
        in.pica_basicP->AcquireSuite(kPFHandleSuite, 2, &suite);
        const auto* handles = static_cast<const PF_HandleSuite1*>(suite);
        PF_Handle h = handles->host_new_handle(64);
        handles->host_lock_handle(h);
        handles->host_unlock_handle(h);
        handles->host_dispose_handle(h);
        in.pica_basicP->ReleaseSuite(kPFHandleSuite, 2);
      }
    });
  }
  for (std::thread& t : threads)
    t.join();
  EXPECT_EQ(host.Suites().Acquisitions(kPFHandleSuite, 2), kThreads * kRounds);
  EXPECT_EQ(host.Handles().Allocations(), static_cast<uint64_t>(kThreads * kRounds));
  EXPECT_TRUE(host.Report().Clean()) << host.Report().Describe();
}

}  // namespace
