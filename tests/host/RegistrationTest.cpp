// Loading and registration of the module as each host does it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "ModuleHost.h"

namespace {

using morvane_test::AllProfiles;
using morvane_test::ModuleHost;
using morvane_test::ProfileCase;

class Registration : public testing::TestWithParam<ProfileCase> {};

TEST_P(Registration, RegistersTheEffectAsItsPropertyListDescribesIt) {
  ModuleHost m(GetParam().make());
  ASSERT_EQ(m.registered, A_Err_NONE);
  const hostsim::Registration& r = m.host.Registered();
  EXPECT_EQ(r.calls, 1);
  EXPECT_TRUE(r.matchedHostPointer);
  EXPECT_EQ(r.name, "Morvane");
  EXPECT_EQ(r.matchName, "morvane");
  EXPECT_EQ(r.category, "Orbrenn");
  EXPECT_EQ(r.entryPoint, "EffectMain");
  EXPECT_EQ(r.kind, 0x65464B54);  // 'eFKT'
  EXPECT_EQ(r.apiVersionMajor, 13);
  EXPECT_EQ(r.apiVersionMinor, 27);
  EXPECT_EQ(r.reservedInfo, 8);
  // The host compares the registration with the property list.
  EXPECT_TRUE(m.host.Report().Clean()) << m.host.Report().Describe();
}

INSTANTIATE_TEST_SUITE_P(Hosts, Registration, testing::ValuesIn(AllProfiles()),
                         morvane_test::ProfileName);

TEST(RegistrationResult, IsWhatTheHostsCallbackReturns) {
  hostsim::Host host(hostsim::HostProfile::AfterEffects());
  host.Load(morvane_test::ModulePath());
  host.Faults().Fail(hostsim::Callback("registration", "PF_PluginDataCB"), 7);
  EXPECT_EQ(host.Register(), 7);
}

TEST(ModuleExports, ResolvesBothEntryPointsAndNothingInternal) {
  void* library = dlopen(morvane_test::ModulePath(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_NE(dlsym(library, "PluginDataEntryFunction"), nullptr);
  EXPECT_NE(dlsym(library, "EffectMain"), nullptr);
  for (const char* internal : {"_ZN7morvane15DispatchCommandERKNS_11CommandArgsE",
                               "_ZN7morvane11GlobalSetupEPK9PF_InDataP10PF_OutData",
                               "_ZN7morvane10SuiteCacheC1EPK12SPBasicSuite"}) {
    EXPECT_EQ(dlsym(library, internal), nullptr) << internal;
  }
  dlclose(library);
}

}  // namespace
