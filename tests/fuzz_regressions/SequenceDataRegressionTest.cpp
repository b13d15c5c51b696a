// Sessions the command-interface fuzzer found misbehaving, replayed through the simulated host.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "hostsim/Host.h"

namespace {

using hostsim::EffectInstance;
using hostsim::Host;

constexpr size_t kSequenceDataSize = 296;

// A project may store flat sequence data of another size (an older or damaged project; the
// re-set-up of an instance keeps the handle as it is). Flattening copied 296 bytes out of the
// handle whatever its size, reading past its end (fuzzer: a project with no bytes at all). The
// copy holds what the handle has, and zeros after it.
class ShortSequenceData : public testing::TestWithParam<size_t> {
 protected:
  ShortSequenceData() {
    host_.Load(MORVANE_MODULE_PATH);
    host_.Register();
    for (size_t i = 0; i < GetParam(); ++i)
      saved_.push_back(static_cast<uint8_t>(0x30 + i % 64));
    expected_ = saved_;
    expected_.resize(kSequenceDataSize, 0);
  }

  Host host_{hostsim::HostProfile::AfterEffects()};
  std::vector<uint8_t> saved_;
  std::vector<uint8_t> expected_;
};

TEST_P(ShortSequenceData, FlatCopyHoldsTheSavedBytesThenZeros) {
  EffectInstance& instance = host_.OpenInstance(saved_);
  ASSERT_EQ(host_.SequenceResetup(instance).err, PF_Err_NONE);
  const hostsim::FlatCopy copy = host_.GetFlattenedSequenceData(instance);
  ASSERT_EQ(copy.result.err, PF_Err_NONE);
  EXPECT_EQ(copy.bytes, expected_);
  EXPECT_EQ(host_.Handles().Bytes(instance.SequenceData()), saved_);
  ASSERT_EQ(host_.SequenceSetdown(instance).err, PF_Err_NONE);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
}

TEST_P(ShortSequenceData, FlattenReplacesTheHandleWithAFull296Bytes) {
  EffectInstance& instance = host_.OpenInstance(saved_);
  ASSERT_EQ(host_.SequenceFlatten(instance).err, PF_Err_NONE);
  EXPECT_EQ(host_.Handles().Bytes(instance.SequenceData()), expected_);
  ASSERT_EQ(host_.SequenceSetdown(instance).err, PF_Err_NONE);
  EXPECT_TRUE(host_.Report().Clean()) << host_.Report().Describe();
}

INSTANTIATE_TEST_SUITE_P(Sizes, ShortSequenceData,
                         testing::Values(size_t{0}, size_t{10}, size_t{295}),
                         [](const testing::TestParamInfo<size_t>& info) {
                           return std::to_string(info.param) + "Bytes";
                         });

}  // namespace
