// The built module on the simulated host with and without the host's threads: every render is
// bit-identical whatever the number of threads, and a render the host cancels ends with
// PF_Interrupt_CANCEL having checked everything in.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "hostsim/Host.h"
#include "tests/support/HostedSession.h"

namespace morvane {
namespace {

using hostsim::HostProfile;

class HostBands : public testing::HostedSession {
 protected:
  // The module set up on a host with `profile`, with a look of long stretches, shading and a
  // mirrored edge.
  void StartWithLook(const HostProfile& profile) {
    Start(profile);
    ASSERT_FALSE(HasFatalFailure());
    host_->SetValue(*instance_, "Morvane", 6.0);
    host_->SetValue(*instance_, "Curve Smoothness", 2.0);
    host_->SetValue(*instance_, "Image Shift Phase", 100.0);
    host_->SetValue(*instance_, "Shading", 2);
    host_->SetValue(*instance_, "Edge Mode", 2);
  }

  void TearDown() override {
    if (host_) Finish();
  }

  hostsim::SmartFrameResult Smart(const PF_EffectWorld* input) {
    hostsim::SmartFrame frame;
    frame.input = input;
    return host_->RenderSmart(*instance_, frame);
  }
};

constexpr hostsim::PixelDepth kDepths[] = {hostsim::PixelDepth::Bits8, hostsim::PixelDepth::Bits16,
                                           hostsim::PixelDepth::Float32};

TEST_F(HostBands, SmartRenderIsBitIdenticalOnAnyNumberOfHostThreads) {
  StartWithLook(HostProfile::AfterEffects());
  for (const hostsim::PixelDepth depth : kDepths) {
    for (int direction : {1, 3}) {  // rows (Right) and columns (Down), several bands each
      host_->SetValue(*instance_, "Direction", direction);
      for (int channels : {1, 2}) {  // "Luma" and "RGBA": one kernel and four per band
        host_->SetValue(*instance_, "Channels", channels);
        const PF_EffectWorld* input = NewLayer(101, 150, depth, uint32_t(7 * direction + channels));
        host_->SetRenderThreads(0);
        const hostsim::SmartFrameResult alone = Smart(input);
        ASSERT_EQ(alone.renderErr, PF_Err_NONE);
        for (int threads : {1, 2, 4}) {
          host_->SetRenderThreads(threads);
          const hostsim::SmartFrameResult banded = Smart(input);
          ASSERT_EQ(banded.renderErr, PF_Err_NONE);
          EXPECT_EQ(banded.output.bytes, alone.output.bytes)
              << "depth " << int(depth) << ", direction " << direction << ", threads " << threads;
        }
      }
    }
  }
  EXPECT_GT(host_->Calls().Count(hostsim::Callback("utils", "iterate_generic")), 0);
}

TEST_F(HostBands, PremiereSingleCallRenderIsBitIdenticalWithThreads) {
  StartWithLook(HostProfile::Premiere());
  for (const hostsim::PixelDepth depth : kDepths) {
    hostsim::LegacyFrame frame;
    frame.input = NewLayer(70, 99, depth, 3);
    frame.depth = depth;
    host_->SetRenderThreads(0);
    const hostsim::LegacyFrameResult alone = host_->RenderLegacy(*instance_, frame);
    ASSERT_EQ(alone.err, PF_Err_NONE);
    host_->SetRenderThreads(3);
    const hostsim::LegacyFrameResult banded = host_->RenderLegacy(*instance_, frame);
    ASSERT_EQ(banded.err, PF_Err_NONE);
    EXPECT_EQ(banded.output.bytes, alone.output.bytes) << "depth " << int(depth);
  }
}

TEST_F(HostBands, CancelledRenderEndsWithInterruptAndChecksEverythingIn) {
  StartWithLook(HostProfile::AfterEffects());
  const PF_EffectWorld* input = NewLayer(64, 200, hostsim::PixelDepth::Bits8, 5);
  // {threads, questions answered "go on" before the cancel, questions expected in all}. Without
  // the host's threads the bands run in order on the calling thread, so a cancel between bands
  // is exact: the question before the render, then one per band until the cancel. With threads,
  // which thread takes which band is the host's choice; a cancel before the render is exact.
  struct Case {
    int threads;
    int answeredFirst;
    int questions;
  };
  for (const Case c : {Case{0, 0, 1}, Case{0, 1, 2}, Case{0, 3, 4}, Case{2, 0, 1}, Case{4, 0, 1}}) {
    host_->SetRenderThreads(c.threads);
    host_->Calls().Clear();
    host_->CancelRenders(c.answeredFirst);
    const hostsim::SmartFrameResult cancelled = Smart(input);
    EXPECT_EQ(cancelled.renderErr, PF_Interrupt_CANCEL) << c.threads << " threads";
    EXPECT_EQ(host_->Calls().Count(hostsim::Callback("inter", "abort")), c.questions)
        << c.threads << " threads, cancel after " << c.answeredFirst
        << ": no band and no question after the cancel";
    host_->CancelRenders(-1);
    EXPECT_EQ(Smart(input).renderErr, PF_Err_NONE);
  }
  // TearDown checks that every layer, parameter, suite and handle was given back.
}

}  // namespace
}  // namespace morvane
