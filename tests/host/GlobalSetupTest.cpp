// Global set-up in each host: version and flag words, and the pixel formats
// declared only to Premiere.
#include <gtest/gtest.h>

#include <ostream>

#include "ModuleHost.h"

namespace {

using hostsim::SuiteEvent;
using hostsim::SuiteKey;
using morvane_test::AllProfiles;
using morvane_test::ModuleHost;
using morvane_test::ProfileCase;

class GlobalSetup : public testing::TestWithParam<ProfileCase> {};

TEST_P(GlobalSetup, DeclaresVersionFlagsAndOnlyInPremiereThePixelFormats) {
  ModuleHost m(GetParam().make());
  const hostsim::CommandResult result = m.host.GlobalSetup();
  ASSERT_EQ(result.err, PF_Err_NONE);
  EXPECT_EQ(result.out.my_version, 0x000B0601u);
  EXPECT_EQ(result.out.out_flags, 0x06008000);
  EXPECT_EQ(result.out.out_flags2, 0x08801410);

  const hostsim::PixelFormatLog formats = m.host.PixelFormats();
  if (m.host.Profile().IsPremiere()) {
    EXPECT_EQ(formats.clears, 1);
    EXPECT_EQ(formats.supported,
              (std::vector<PrPixelFormat>{PrPixelFormat_ARGB_4444_8u, PrPixelFormat_ARGB_4444_16u,
                                          PrPixelFormat_ARGB_4444_32f}));
    EXPECT_TRUE(formats.checkedOutFramesMatchRenderFormat);
    // The utility suite is given back before the pixel-format suite.
    const SuiteKey pixel{kPFPixelFormatSuite, 1};
    const SuiteKey utility{kPFUtilitySuite, 4};
    const auto events = m.host.Suites().Events();
    ASSERT_EQ(events.size(), 4u);
    EXPECT_EQ(events[0].key, pixel);
    EXPECT_EQ(events[1].key, utility);
    EXPECT_EQ(events[2].kind, SuiteEvent::Released);
    EXPECT_EQ(events[2].key, utility);
    EXPECT_EQ(events[3].kind, SuiteEvent::Released);
    EXPECT_EQ(events[3].key, pixel);
  } else {
    EXPECT_EQ(formats.clears, 0);
    EXPECT_TRUE(formats.supported.empty());
    EXPECT_FALSE(formats.checkedOutFramesMatchRenderFormat);
    EXPECT_TRUE(m.host.Suites().Events().empty());
  }
  // Also: the words equal the property list's, compared by the host.
  EXPECT_TRUE(m.host.Report().Clean()) << m.host.Report().Describe();
}

INSTANTIATE_TEST_SUITE_P(Hosts, GlobalSetup, testing::ValuesIn(AllProfiles()),
                         morvane_test::ProfileName);

struct MissingSuiteCase {
  friend void PrintTo(const MissingSuiteCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  const char* suite;
  int32_t version;
};

class PremiereWithoutSuite : public testing::TestWithParam<MissingSuiteCase> {};

TEST_P(PremiereWithoutSuite, FailsWithMissingSuiteAndTellsTheUser) {
  ModuleHost m(hostsim::HostProfile::Premiere());
  m.host.Faults().WithholdSuite(GetParam().suite, GetParam().version);
  const hostsim::CommandResult result = m.host.GlobalSetup();
  EXPECT_EQ(result.err, A_Err_MISSING_SUITE);
  EXPECT_EQ(result.Message(), "Not able to acquire AEFX Suite.");
  EXPECT_TRUE(result.ShowsMessage());
  // Whatever was taken before the failure is given back.
  EXPECT_TRUE(m.host.Report().Clean()) << m.host.Report().Describe();
}

INSTANTIATE_TEST_SUITE_P(Suites, PremiereWithoutSuite,
                         testing::Values(MissingSuiteCase{"PixelFormat", kPFPixelFormatSuite, 1},
                                         MissingSuiteCase{"Utility", kPFUtilitySuite, 4}),
                         [](const auto& info) { return std::string(info.param.label); });

}  // namespace
