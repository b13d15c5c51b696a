// A test fixture holding the built module on the simulated host with one effect instance, set up
// as a host does before its first render. Needs MORVANE_MODULE_PATH and MORVANE_PIPL_PATH.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "hostsim/Host.h"
#include "tests/support/PaintWorld.h"

namespace morvane::testing {

class HostedSession : public ::testing::Test {
 protected:
  // Loads the module on a host with `profile`: registration, global and parameter set-up, one
  // instance with its sequence data. A failed step fails the test and stops here.
  void Start(const hostsim::HostProfile& profile) {
    host_.emplace(profile);
    host_->Load(MORVANE_MODULE_PATH, MORVANE_PIPL_PATH);
    ASSERT_EQ(host_->Register(), A_Err_NONE);
    ASSERT_EQ(host_->GlobalSetup().err, PF_Err_NONE);
    ASSERT_EQ(host_->ParamsSetup().err, PF_Err_NONE);
    instance_ = &host_->NewInstance();
    ASSERT_EQ(host_->SequenceSetup(*instance_).err, PF_Err_NONE);
  }

  // Sets the instance and the globals down; both must succeed, the host must have seen every
  // checkout returned, and only the worlds the test made may be left.
  void Finish() {
    EXPECT_EQ(host_->SequenceSetdown(*instance_).err, PF_Err_NONE);
    EXPECT_EQ(host_->GlobalSetdown().err, PF_Err_NONE);
    const hostsim::SessionReport report = host_->Report();
    EXPECT_TRUE(report.Clean()) << report.Describe();
    EXPECT_EQ(host_->Worlds().LiveCount(), worldsKept_);
  }

  // A host world painted with seeded content.
  PF_EffectWorld* NewLayer(int32_t width, int32_t height, hostsim::PixelDepth depth, uint32_t seed,
                           int32_t padding = 12) {
    PF_EffectWorld* world = host_->Worlds().Create(width, height, depth, padding);
    PaintWorld(*world, depth, seed);
    ++worldsKept_;
    return world;
  }

  std::optional<hostsim::Host> host_;
  hostsim::EffectInstance* instance_ = nullptr;
  std::size_t worldsKept_ = 0;
};

}  // namespace morvane::testing
