// Suite access against the simulated host's basic suite: what is acquired,
// released and reported on each path.
#include <gtest/gtest.h>

#include <ostream>

#include <optional>
#include <string>

#include "host/Messages.h"
#include "host/ScopedSuite.h"
#include "host/SuiteAccess.h"
#include "host/SuiteCache.h"
#include "hostsim/Host.h"

namespace {

using hostsim::Callback;
using hostsim::FaultKind;
using hostsim::Host;
using hostsim::HostProfile;

constexpr char kHandle[] = kPFHandleSuite;
constexpr int kHandleVersion = kPFHandleSuiteVersion1;
constexpr char kParamUtils[] = kPFParamUtilsSuite;
constexpr int kParamUtilsVersion = kPFParamUtilsSuiteVersion3;

// Runs `body`; the integer it raised, if any.
template <typename F>
std::optional<PF_Err> RaisedBy(F&& body) {
  try {
    body();
  } catch (PF_Err err) {
    return err;
  }
  return std::nullopt;
}

class SuiteAccess : public testing::Test {
 protected:
  Host host_{HostProfile::AfterEffects()};
  PF_InData in_ = host_.MakeInData();
  PF_OutData out_{};
};

TEST_F(SuiteAccess, CacheWithoutBasicSuiteRaisesBadCallbackParam) {
  EXPECT_EQ(RaisedBy([] { morvane::SuiteCache cache(nullptr); }), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(SuiteAccess, CacheAcquiresASuiteOnceAndReleasesItOnce) {
  {
    morvane::SuiteCache cache(in_.pica_basicP);
    const PF_HandleSuite1* first = cache.HandleSuite();
    const PF_HandleSuite1* second = cache.HandleSuite();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(host_.Suites().Acquisitions(kHandle, kHandleVersion), 1);
    EXPECT_EQ(host_.Suites().Releases(kHandle, kHandleVersion), 0);
  }
  EXPECT_EQ(host_.Suites().Releases(kHandle, kHandleVersion), 1);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
}

TEST_F(SuiteAccess, CacheReleasesEachSlotUnderItsOwnNameAndVersion) {
  {
    morvane::SuiteCache cache(in_.pica_basicP);
    cache.ParamUtilsSuite();
    cache.HandleSuite();
  }
  const auto balances = host_.Suites().Balances();
  ASSERT_EQ(balances.size(), 2u);
  for (const auto& b : balances) {
    EXPECT_EQ(b.acquired, 1) << b.key.name;
    EXPECT_EQ(b.released, 1) << b.key.name;
  }
  EXPECT_EQ(host_.Suites().Releases(kParamUtils, kParamUtilsVersion), 1);
}

TEST_F(SuiteAccess, CacheAccessorRaisesBadCallbackParamForAMissingOrNullSuite) {
  host_.Faults().WithholdSuite(kParamUtils, kParamUtilsVersion);
  host_.Faults().NullSuite(kHandle, kHandleVersion);
  {
    morvane::SuiteCache cache(in_.pica_basicP);
    EXPECT_EQ(RaisedBy([&] { cache.ParamUtilsSuite(); }), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(RaisedBy([&] { cache.HandleSuite(); }), PF_Err_BAD_CALLBACK_PARAM);
  }
  EXPECT_EQ(host_.Calls().Count(Callback("basic", "ReleaseSuite")), 0);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
}

TEST_F(SuiteAccess, CacheDestructionSwallowsAFailingRelease) {
  host_.Faults().Inject(Callback("basic", "ReleaseSuite"), {FaultKind::ThrowStdException});
  EXPECT_NO_THROW({
    morvane::SuiteCache cache(in_.pica_basicP);
    cache.HandleSuite();
  });
}

struct ScopedCase {
  friend void PrintTo(const ScopedCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  bool withhold;     // otherwise handed back as null
  bool withOutData;  // whether the caller passes the output record
};

class ScopedSuiteFailure : public SuiteAccess, public testing::WithParamInterface<ScopedCase> {};

TEST_P(ScopedSuiteFailure, RaisesMissingSuiteAndReportsOnlyWithAnOutputRecord) {
  const ScopedCase& c = GetParam();
  if (c.withhold) {
    host_.Faults().WithholdSuite(kHandle, kHandleVersion);
  } else {
    host_.Faults().NullSuite(kHandle, kHandleVersion);
  }
  PF_OutData* out = c.withOutData ? &out_ : nullptr;
  EXPECT_EQ(RaisedBy([&] {
              morvane::ScopedSuite<PF_HandleSuite1> suite(&in_, kHandle, kHandleVersion, out);
            }),
            A_Err_MISSING_SUITE);
  if (c.withOutData) {
    EXPECT_STREQ(out_.return_msg, "Not able to acquire AEFX Suite.");
    EXPECT_EQ(out_.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
    EXPECT_EQ(host_.Calls().Count(Callback("utils", "sprintf")), 1);
  } else {
    EXPECT_STREQ(out_.return_msg, "");
    EXPECT_EQ(out_.out_flags, 0);
  }
  EXPECT_EQ(host_.Calls().Count(Callback("basic", "ReleaseSuite")), 0);
}

INSTANTIATE_TEST_SUITE_P(Paths, ScopedSuiteFailure,
                         testing::Values(ScopedCase{"WithheldWithOutput", true, true},
                                         ScopedCase{"WithheldWithoutOutput", true, false},
                                         ScopedCase{"NullWithOutput", false, true},
                                         ScopedCase{"NullWithoutOutput", false, false}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(SuiteAccess, ScopedSuiteReleasesAtTheEndOfItsBlockAlsoWhenLeftByAnException) {
  EXPECT_EQ(RaisedBy([&] {
              morvane::ScopedSuite<PF_HandleSuite1> suite(&in_, kHandle, kHandleVersion, &out_);
              EXPECT_NE(suite->host_new_handle, nullptr);
              throw PF_Err{PF_Err_OUT_OF_MEMORY};
            }),
            PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host_.Suites().Acquisitions(kHandle, kHandleVersion), 1);
  EXPECT_EQ(host_.Suites().Releases(kHandle, kHandleVersion), 1);
}

struct AcquireCase {
  friend void PrintTo(const AcquireCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  bool basicSuite;
  bool withhold;
  const char* message;  // passed by the caller, may be null
  PF_Err expected;
  const char* shown;  // return_msg afterwards
};

class AcquireOrReport : public SuiteAccess, public testing::WithParamInterface<AcquireCase> {};

TEST_P(AcquireOrReport, AnswersWithAnErrorCodeAndMessage) {
  const AcquireCase& c = GetParam();
  if (!c.basicSuite) in_.pica_basicP = nullptr;
  if (c.withhold) host_.Faults().WithholdSuite(kPFEffectCustomUISuite, 1);
  const void* suite = reinterpret_cast<const void*>(&out_);  // must be overwritten
  const PF_Err err =
      morvane::AcquireSuiteOrReport(&in_, &out_, kPFEffectCustomUISuite, 1, c.message, &suite);
  EXPECT_EQ(err, c.expected);
  EXPECT_STREQ(out_.return_msg, c.shown);
  EXPECT_EQ(out_.out_flags != 0, c.expected != PF_Err_NONE);
  EXPECT_EQ(suite != nullptr, c.expected == PF_Err_NONE);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, AcquireOrReport,
    testing::Values(AcquireCase{"Acquired", true, false, nullptr, PF_Err_NONE, ""},
                    AcquireCase{"MissingSuiteDefaultText", true, true, nullptr,
                                PF_Err_BAD_CALLBACK_PARAM, "Not able to acquire AEFX Suite."},
                    AcquireCase{"MissingSuiteOwnText", true, true, "Own text",
                                PF_Err_BAD_CALLBACK_PARAM, "Own text"},
                    AcquireCase{"NoBasicSuite", false, false, nullptr, PF_Err_BAD_CALLBACK_PARAM,
                                "Not able to acquire AEFX Suite."}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(SuiteAccess, ReleaseOrReportReleasesUnderTheGivenNameAndVersion) {
  const void* suite = nullptr;
  ASSERT_EQ(morvane::AcquireSuiteOrReport(&in_, &out_, kPFEffectCustomUISuite, 1, nullptr, &suite),
            PF_Err_NONE);
  EXPECT_EQ(morvane::ReleaseSuiteOrReport(&in_, &out_, kPFEffectCustomUISuite, 1, nullptr),
            PF_Err_NONE);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
  EXPECT_EQ(out_.out_flags, 0);
}

TEST_F(SuiteAccess, ReleaseOrReportWithoutBasicSuiteReports) {
  in_.pica_basicP = nullptr;
  EXPECT_EQ(morvane::ReleaseSuiteOrReport(&in_, &out_, kPFEffectCustomUISuite, 1, nullptr),
            PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_STREQ(out_.return_msg, "Not able to release AEFX Suite.");
  EXPECT_EQ(out_.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);

  PF_OutData own{};
  EXPECT_EQ(morvane::ReleaseSuiteOrReport(&in_, &own, kPFEffectCustomUISuite, 1, "Own text"),
            PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_STREQ(own.return_msg, "Own text");
}

TEST_F(SuiteAccess, MessagesGoThroughTheHostsFormattingAndCopyCallbacks) {
  morvane::ReportToUser(&in_, &out_, "Formatted");
  EXPECT_EQ(host_.Calls().Count(Callback("utils", "sprintf")), 1);
  EXPECT_STREQ(out_.return_msg, "Formatted");
  PF_OutData copied{};
  morvane::ReportToUserCopied(&in_, &copied, "Copied");
  EXPECT_EQ(host_.Calls().Count(Callback("utils", "strcpy")), 1);
  EXPECT_STREQ(copied.return_msg, "Copied");
  EXPECT_EQ(copied.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

}  // namespace
