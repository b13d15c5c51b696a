// The suite helpers and messages against the simulated host's records, on the paths the module's
// commands do not reach: no basic suite, no utility callbacks, a suite handed back as null.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "host/Messages.h"
#include "host/ScopedSuite.h"
#include "host/SuiteAccess.h"
#include "host/SuiteCache.h"
#include "hostsim/Host.h"

namespace {

using hostsim::Host;
using morvane::AcquireSuiteOrReport;
using morvane::ReleaseSuiteOrReport;
using Handles = morvane::ScopedSuite<PF_HandleSuite1>;

constexpr char kUI[] = kPFEffectCustomUISuite;  // version 1
constexpr char kHandle[] = kPFHandleSuite;      // version 2
constexpr char kNoSuite[] = "Not able to acquire AEFX Suite.";
constexpr PF_Err kNone = PF_Err_NONE;
constexpr PF_Err kBadParam = PF_Err_BAD_CALLBACK_PARAM;

void NoBasicSuite(Host&, PF_InData& in) {
  in.pica_basicP = nullptr;
}

struct Case {
  const char* label;
  void (*arrange)(Host&, PF_InData&);
  PF_Err (*act)(PF_InData*, PF_OutData*);  // a raised integer counts as the result
  PF_Err err;
  const char* message;  // return_msg afterwards, shown whenever it is not empty
  const char* suites;   // "+" for each acquisition, "-" for each release
  friend void PrintTo(const Case& c, std::ostream* os) { *os << c.label; }
};

const void* suite = nullptr;  // what the acquiring helpers hand back

const Case kCases[] = {
    {"CacheWithoutBasicSuite", NoBasicSuite,
     [](PF_InData* in, PF_OutData*) { return morvane::SuiteCache(in->pica_basicP), kNone; },
     kBadParam, "", ""},
    {"ScopedNullWithOutput", [](Host& h, PF_InData&) { h.Faults().NullSuite(kHandle, 2); },
     [](PF_InData* in, PF_OutData* out) { return Handles(in, kHandle, 2, out), kNone; },
     A_Err_MISSING_SUITE, kNoSuite, ""},
    {"AcquireAndRelease", nullptr,
     [](PF_InData* in, PF_OutData* out) {
       const PF_Err err = AcquireSuiteOrReport(in, out, kUI, 1, nullptr, &suite);
       EXPECT_NE(suite, nullptr);
       return err != kNone ? err : ReleaseSuiteOrReport(in, out, kUI, 1, nullptr);
     },
     kNone, "", "+-"},
    {"AcquireWithheld", [](Host& h, PF_InData&) { h.Faults().WithholdSuite(kUI, 1); },
     [](PF_InData* in, PF_OutData* out) {
       suite = out;  // must come back null
       const PF_Err err = AcquireSuiteOrReport(in, out, kUI, 1, nullptr, &suite);
       EXPECT_EQ(suite, nullptr);
       return err;
     },
     kBadParam, kNoSuite, ""},
    {"AcquireWithoutBasicSuite", NoBasicSuite,
     [](PF_InData* in, PF_OutData* out) {
       return AcquireSuiteOrReport(in, out, kUI, 1, nullptr, &suite);
     },
     kBadParam, kNoSuite, ""},
    {"ReleaseWithoutBasicSuite", NoBasicSuite,
     [](PF_InData* in, PF_OutData* out) { return ReleaseSuiteOrReport(in, out, kUI, 1, nullptr); },
     kBadParam, "Not able to release AEFX Suite.", ""},
    // A host without utility callbacks still gets the text.
    {"MessageWithoutUtilityCallbacks", [](Host&, PF_InData& in) { in.utils = nullptr; },
     [](PF_InData* in, PF_OutData* out) { return morvane::ReportToUser(in, out, "Plain"), kNone; },
     kNone, "Plain", ""},
};

class SuiteAccess : public testing::TestWithParam<Case> {};

TEST_P(SuiteAccess, AnswersAndReportsAsTheCaseSays) {
  const Case& c = GetParam();
  Host host(hostsim::HostProfile::AfterEffects());
  PF_InData in = host.MakeInData();
  PF_OutData out{};
  if (c.arrange != nullptr) c.arrange(host, in);
  PF_Err err = kNone;
  try {
    err = c.act(&in, &out);
  } catch (PF_Err raised) {
    err = raised;
  }
  EXPECT_EQ(err, c.err);
  EXPECT_STREQ(out.return_msg, c.message);
  EXPECT_EQ(out.out_flags, *c.message ? PF_OutFlag_DISPLAY_ERROR_MESSAGE : 0);
  std::string suites;
  for (const hostsim::SuiteEvent& e : host.Suites().Events())
    suites += e.kind == e.Acquired ? '+' : '-';
  EXPECT_EQ(suites, c.suites);
}

INSTANTIATE_TEST_SUITE_P(Cases, SuiteAccess, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.label); });

}  // namespace
