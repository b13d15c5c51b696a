// A whole session in each host: every suite given back under the name and
// version it was taken with, and no handle left behind.
#include <gtest/gtest.h>

#include <set>

#include "ModuleHost.h"

namespace {

using hostsim::SuiteKey;
using morvane_test::AllProfiles;
using morvane_test::ModuleHost;
using morvane_test::ProfileCase;
using morvane_test::SequenceZeros;

class Lifecycle : public testing::TestWithParam<ProfileCase> {};

TEST_P(Lifecycle, LeavesSuitesBalancedAndNoHandles) {
  ModuleHost m(GetParam().make());
  hostsim::Host& host = m.host;
  ASSERT_EQ(m.registered, A_Err_NONE);
  ASSERT_EQ(host.GlobalSetup().err, PF_Err_NONE);
  ASSERT_EQ(host.ParamsSetup().err, PF_Err_NONE);

  hostsim::EffectInstance& first = host.NewInstance();
  ASSERT_EQ(host.SequenceSetup(first).err, PF_Err_NONE);
  ASSERT_EQ(host.SequenceFlatten(first).err, PF_Err_NONE);
  const hostsim::FlatCopy saved = host.GetFlattenedSequenceData(first);
  ASSERT_EQ(saved.result.err, PF_Err_NONE);
  EXPECT_EQ(saved.bytes, SequenceZeros());

  // The saved project opened again.
  hostsim::EffectInstance& reopened = host.OpenInstance(saved.bytes);
  ASSERT_EQ(host.SequenceResetup(reopened).err, PF_Err_NONE);
  ASSERT_EQ(host.About().err, PF_Err_NONE);

  ASSERT_EQ(host.SequenceSetdown(first).err, PF_Err_NONE);
  ASSERT_EQ(host.SequenceSetdown(reopened).err, PF_Err_NONE);
  ASSERT_EQ(host.GlobalSetdown().err, PF_Err_NONE);

  const hostsim::SessionReport report = host.Report();
  EXPECT_TRUE(report.Clean()) << report.Describe();

  std::set<SuiteKey> taken;
  for (const auto& b : host.Suites().Balances()) {
    taken.insert(b.key);
    EXPECT_EQ(b.acquired, b.released) << b.key.name;
  }
  std::set<SuiteKey> expected{{kPFHandleSuite, 2}};
  if (host.Profile().IsPremiere()) {
    expected.insert({kPFPixelFormatSuite, 1});
    expected.insert({kPFUtilitySuite, 4});
  }
  EXPECT_EQ(taken, expected);
  EXPECT_EQ(host.Suites().Acquisitions(kPFHandleSuite, 2), 2);  // flatten and flat copy
}

INSTANTIATE_TEST_SUITE_P(Hosts, Lifecycle, testing::ValuesIn(AllProfiles()),
                         morvane_test::ProfileName);

}  // namespace
