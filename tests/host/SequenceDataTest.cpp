// The per-instance sequence data through set-up, re-set-up, flattening, flat
// copies and set-down.
#include <gtest/gtest.h>

#include <ostream>

#include "ModuleHost.h"

namespace {

using hostsim::Callback;
using hostsim::EffectInstance;
using hostsim::SuiteFunction;
using morvane_test::ModuleHost;
using morvane_test::SequenceZeros;

const std::string kSuiteNewHandle = SuiteFunction(kPFHandleSuite, 2, "host_new_handle");
const std::string kSuiteLockHandle = SuiteFunction(kPFHandleSuite, 2, "host_lock_handle");

class SequenceData : public testing::Test {
 protected:
  hostsim::HandleTable& Handles() { return m_.host.Handles(); }
  std::vector<uint8_t> BytesOf(const EffectInstance& instance) {
    return Handles().Bytes(instance.SequenceData());
  }

  ModuleHost m_{hostsim::HostProfile::AfterEffects()};
};

TEST_F(SequenceData, SetupCreates296ZeroBytes) {
  EffectInstance& instance = m_.host.NewInstance();
  const hostsim::CommandResult result = m_.host.SequenceSetup(instance);
  ASSERT_EQ(result.err, PF_Err_NONE);
  EXPECT_EQ(result.out.flat_sdata_size, 296);
  ASSERT_TRUE(Handles().Contains(instance.SequenceData()));
  // The host hands out memory filled with 0xCD; the effect clears it.
  EXPECT_EQ(BytesOf(instance), SequenceZeros());
  EXPECT_EQ(Handles().Live().at(0).lockCount, 0);
  EXPECT_FALSE(result.ShowsMessage());
}

TEST_F(SequenceData, SetupWithoutMemoryReportsInternalError) {
  m_.host.Faults().Fail(Callback("utils", "host_new_handle"), PF_Err_OUT_OF_MEMORY);
  EffectInstance& instance = m_.host.NewInstance();
  const hostsim::CommandResult result = m_.host.SequenceSetup(instance);
  EXPECT_EQ(result.err, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(result.Message(), "Internal Error");
  EXPECT_TRUE(result.ShowsMessage());
  EXPECT_EQ(m_.host.Calls().Count(Callback("utils", "strcpy")), 1);
  EXPECT_EQ(instance.SequenceData(), nullptr);
}

struct ExistingDataCase {
  friend void PrintTo(const ExistingDataCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  size_t size;
  int resizes;
};

class SetupWithExistingData : public SequenceData,
                              public testing::WithParamInterface<ExistingDataCase> {};

TEST_P(SetupWithExistingData, KeepsTheHandleAndBringsItTo296Bytes) {
  EffectInstance& instance = m_.host.OpenInstance(std::vector<uint8_t>(GetParam().size, 0x5A));
  const PF_Handle before = instance.SequenceData();
  ASSERT_EQ(m_.host.SequenceSetup(instance).err, PF_Err_NONE);
  EXPECT_EQ(instance.SequenceData(), before);
  EXPECT_EQ(Handles().Size(before), 296u);
  EXPECT_EQ(m_.host.Calls().Count(Callback("utils", "host_resize_handle")), GetParam().resizes);
  EXPECT_EQ(Handles().LiveCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Sizes, SetupWithExistingData,
                         testing::Values(ExistingDataCase{"Smaller", 10, 1},
                                         ExistingDataCase{"Larger", 1000, 1},
                                         ExistingDataCase{"Exact", 296, 0}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(SequenceData, ResetupWithDataDoesNothing) {
  const std::vector<uint8_t> saved(296, 0x5A);
  EffectInstance& instance = m_.host.OpenInstance(saved);
  const PF_Handle before = instance.SequenceData();
  m_.host.Calls().Clear();
  const hostsim::CommandResult result = m_.host.SequenceResetup(instance);
  EXPECT_EQ(result.err, PF_Err_NONE);
  EXPECT_EQ(instance.SequenceData(), before);
  EXPECT_EQ(BytesOf(instance), saved);
  EXPECT_EQ(m_.host.Calls().Size(), 0u);
}

TEST_F(SequenceData, ResetupWithoutDataSetsUp) {
  EffectInstance& instance = m_.host.NewInstance();
  ASSERT_EQ(m_.host.SequenceResetup(instance).err, PF_Err_NONE);
  EXPECT_EQ(BytesOf(instance), SequenceZeros());
}

TEST_F(SequenceData, FlattenWithoutDataIsAnInternalError) {
  EffectInstance& instance = m_.host.NewInstance();
  EXPECT_EQ(m_.host.SequenceFlatten(instance).err, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(m_.host.Suites().Events().size(), 0u);
}

TEST_F(SequenceData, FlattenOfAHandleWithoutMemoryLeavesItInPlace) {
  const PF_Handle empty = Handles().NewWithoutData();
  EffectInstance& instance = m_.host.OpenInstance(empty);
  EXPECT_EQ(m_.host.SequenceFlatten(instance).err, PF_Err_NONE);
  EXPECT_EQ(instance.SequenceData(), empty);
  EXPECT_TRUE(Handles().Contains(empty));
  EXPECT_EQ(Handles().LiveCount(), 1u);
}

TEST_F(SequenceData, FlattenReplacesTheDataByAnIdenticalUnlockedCopy) {
  EffectInstance& instance = m_.host.NewInstance();
  ASSERT_EQ(m_.host.SequenceSetup(instance).err, PF_Err_NONE);
  const PF_Handle before = instance.SequenceData();
  ASSERT_EQ(m_.host.SequenceFlatten(instance).err, PF_Err_NONE);
  EXPECT_NE(instance.SequenceData(), before);
  EXPECT_FALSE(Handles().Contains(before));
  EXPECT_EQ(BytesOf(instance), SequenceZeros());
  ASSERT_EQ(Handles().Live().size(), 1u);
  EXPECT_EQ(Handles().Live()[0].lockCount, 0);
  EXPECT_EQ(m_.host.Suites().Acquisitions(kPFHandleSuite, 2), 1);
  EXPECT_EQ(m_.host.Suites().Releases(kPFHandleSuite, 2), 1);
}

struct FlattenFaultCase {
  friend void PrintTo(const FlattenFaultCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  void (*arm)(hostsim::FaultPlan&);
  PF_Err expected;
};

class FlattenFault : public SequenceData, public testing::WithParamInterface<FlattenFaultCase> {};

TEST_P(FlattenFault, KeepsTheInstancesDataAndLeaksNothing) {
  EffectInstance& instance = m_.host.NewInstance();
  ASSERT_EQ(m_.host.SequenceSetup(instance).err, PF_Err_NONE);
  const PF_Handle before = instance.SequenceData();
  GetParam().arm(m_.host.Faults());
  const hostsim::CommandResult result = m_.host.SequenceFlatten(instance);
  EXPECT_EQ(result.err, GetParam().expected);
  EXPECT_FALSE(result.ShowsMessage());
  EXPECT_EQ(instance.SequenceData(), before);
  EXPECT_EQ(Handles().LiveCount(), 1u);
  EXPECT_TRUE(m_.host.Suites().Unbalanced().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Faults, FlattenFault,
    testing::Values(
        FlattenFaultCase{"NoHandleSuite",
                         [](hostsim::FaultPlan& f) { f.WithholdSuite(kPFHandleSuite, 2); },
                         PF_Err_BAD_CALLBACK_PARAM},
        FlattenFaultCase{"NullHandleSuite",
                         [](hostsim::FaultPlan& f) { f.NullSuite(kPFHandleSuite, 2); },
                         PF_Err_BAD_CALLBACK_PARAM},
        FlattenFaultCase{
            "NoNewHandle",
            [](hostsim::FaultPlan& f) { f.Fail(kSuiteNewHandle, PF_Err_OUT_OF_MEMORY); },
            PF_Err_INTERNAL_STRUCT_DAMAGED},
        FlattenFaultCase{"LockFails", [](hostsim::FaultPlan& f) { f.Fail(kSuiteLockHandle, 1); },
                         PF_Err_NONE}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(SequenceData, FlatCopyIsADistinctHandleWithIdenticalBytes) {
  EffectInstance& instance = m_.host.NewInstance();
  ASSERT_EQ(m_.host.SequenceSetup(instance).err, PF_Err_NONE);
  const PF_Handle own = instance.SequenceData();
  const hostsim::FlatCopy copy = m_.host.GetFlattenedSequenceData(instance);
  ASSERT_EQ(copy.result.err, PF_Err_NONE);
  ASSERT_NE(copy.handle, nullptr);
  EXPECT_NE(copy.handle, own);
  EXPECT_EQ(copy.bytes, SequenceZeros());
  EXPECT_EQ(instance.SequenceData(), own);
  EXPECT_EQ(BytesOf(instance), SequenceZeros());
  EXPECT_EQ(Handles().LiveCount(), 1u);  // the host disposed of its copy
}

TEST_F(SequenceData, SetdownDisposesOfTheData) {
  EffectInstance& instance = m_.host.NewInstance();
  ASSERT_EQ(m_.host.SequenceSetup(instance).err, PF_Err_NONE);
  const hostsim::CommandResult result = m_.host.SequenceSetdown(instance);
  EXPECT_EQ(result.err, PF_Err_NONE);
  EXPECT_EQ(result.out.sequence_data, nullptr);
  EXPECT_EQ(Handles().LiveCount(), 0u);
  EXPECT_TRUE(m_.host.Report().Clean()) << m_.host.Report().Describe();
}

TEST_F(SequenceData, SetdownWithoutDataDisposesOfNothing) {
  EffectInstance& instance = m_.host.NewInstance();
  EXPECT_EQ(m_.host.SequenceSetdown(instance).err, PF_Err_NONE);
  EXPECT_EQ(m_.host.Calls().Count(Callback("utils", "host_dispose_handle")), 0);
}

}  // namespace
