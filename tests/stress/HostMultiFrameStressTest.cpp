// A multi-frame render as After Effects runs one with threaded rendering: batches of 8 frames in
// flight on 4 threads through the built module, 256 frames in all, with keyframed controls (so
// every frame has its own values), popups changed between batches, all three depths and an
// "Intensity Source" layer of another size. Every frame must equal the same frame rendered
// alone, and the session must end with every suite released and every checkout checked in.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "hostsim/Host.h"
#include "params/ParamId.h"
#include "tests/support/PaintWorld.h"

namespace {

using hostsim::Host;
using hostsim::PixelDepth;
using hostsim::SmartFrame;
using hostsim::SmartFrameResult;
using morvane::ParamId;
using morvane::ToInt;

constexpr int kFrames = 256;
constexpr int kFramesInFlight = 8;
constexpr int kThreads = 4;

class StressMultiFrameRender : public testing::Test {
 protected:
  void SetUp() override {
    host_.Load(MORVANE_MODULE_PATH);
    ASSERT_EQ(host_.Register(), A_Err_NONE);
    ASSERT_EQ(host_.GlobalSetup().err, PF_Err_NONE);
    ASSERT_EQ(host_.ParamsSetup().err, PF_Err_NONE);
    instance_ = &host_.NewInstance();
    ASSERT_EQ(host_.SequenceSetup(*instance_).err, PF_Err_NONE);

    // Values that move over the whole render.
    const double last = kFrames - 1;
    host_.SetKeyframes(*instance_, "Morvane Intensity", {{0, 35}, {last, 100}});
    host_.SetKeyframes(*instance_, "Morvane", {{0, 0.5}, {last, 6}});
    host_.SetKeyframes(*instance_, "Pixel Size", {{0, 0.6}, {last, 2.5}});
    host_.SetKeyframes(*instance_, "Curve Phase", {{0, 0}, {last, 720}});
    host_.SetKeyframes(*instance_, "Curve Smoothness", {{0, 0}, {last, 3}});
    host_.SetKeyframes(*instance_, "Image Shift Phase", {{0, 0}, {last, -540}});
    host_.SetKeyframes(*instance_, "Stretch Start Offset", {{0, 0}, {last, 40}});
    host_.SetKeyframes(*instance_, "Shading Opacity", {{0, 20}, {last, 90}});
    host_.SetKeyframes(*instance_, "Shading Interval Phase", {{0, 0}, {last, 360}});
    host_.SetKeyframes(*instance_, "Transparency Feather", {{0, 0}, {last, 60}});
    host_.SetKeyframes(*instance_, "Distribution Range", {{0, 0.2}, {last, 2}});
  }

  void TearDown() override {
    ASSERT_EQ(host_.SequenceSetdown(*instance_).err, PF_Err_NONE);
    for (PF_EffectWorld* world : worlds_)
      host_.Worlds().Dispose(world);
    const hostsim::SessionReport report = host_.Report();
    EXPECT_TRUE(report.Clean()) << report.Describe();
  }

  // Popups of batch `b`: every batch renders with another combination.
  void ChangePopups(int b) {
    host_.SetValue(*instance_, ToInt(ParamId::Channels), 1 + b % 8);
    host_.SetValue(*instance_, ToInt(ParamId::Direction), 1 + (b / 2) % 4);
    host_.SetValue(*instance_, ToInt(ParamId::EdgeMode), 1 + (b / 3) % 4);
    host_.SetValue(*instance_, ToInt(ParamId::Shading), 1 + (b * 5) % 6);
    host_.SetValue(*instance_, ToInt(ParamId::ShadingChannels), 1 + b % 2);
    host_.SetValue(*instance_, ToInt(ParamId::StretchCurve), 1 + (b * 7) % 6);
    host_.SetValue(*instance_, ToInt(ParamId::DistributionMode), 1 + (b / 4) % 3);
    host_.SetValue(*instance_, ToInt(ParamId::ImageShiftPhaseSync), b % 2);
  }

  PF_EffectWorld* NewWorld(int32_t width, int32_t height, PixelDepth depth, uint32_t seed) {
    PF_EffectWorld* world = host_.Worlds().Create(width, height, depth, 16);
    morvane::testing::PaintWorld(*world, depth, seed);
    worlds_.push_back(world);
    return world;
  }

  Host host_{hostsim::HostProfile::AfterEffects()};
  hostsim::EffectInstance* instance_ = nullptr;
  std::vector<PF_EffectWorld*> worlds_;
};

TEST_F(StressMultiFrameRender, FramesInFlightOnFourThreadsEqualTheSerialRender) {
  constexpr PixelDepth kDepths[] = {PixelDepth::Bits8, PixelDepth::Bits16, PixelDepth::Float32};
  for (int b = 0; b < kFrames / kFramesInFlight; ++b) {
    const PixelDepth depth = kDepths[b % 3];
    ChangePopups(b);
    // The intensity layer is larger than the frames; every third batch has none.
    const PF_EffectWorld* layer = b % 3 == 2 ? nullptr : NewWorld(211, 101, depth, 1000 + b);
    std::vector<SmartFrame> batch;
    for (int i = 0; i < kFramesInFlight; ++i) {
      const int frame = b * kFramesInFlight + i;
      SmartFrame f;
      f.frame = frame;
      f.input = NewWorld(160, 90, depth, static_cast<uint32_t>(frame));
      f.downsampleX = b % 4 == 3 ? PF_RationalScale{1, 2} : PF_RationalScale{1, 1};
      f.layers = {{ToInt(ParamId::IntensitySource), layer}};
      batch.push_back(f);
    }

    std::vector<SmartFrameResult> serial;
    for (const SmartFrame& f : batch)
      serial.push_back(host_.RenderSmart(*instance_, f));
    const std::vector<SmartFrameResult> concurrent =
        host_.RenderSmartConcurrently(*instance_, batch, kThreads);

    ASSERT_EQ(concurrent.size(), batch.size());
    for (size_t i = 0; i < batch.size(); ++i) {
      SCOPED_TRACE("frame " + std::to_string(batch[i].frame));
      ASSERT_EQ(serial[i].preRenderErr, PF_Err_NONE);
      ASSERT_EQ(serial[i].renderErr, PF_Err_NONE);
      ASSERT_TRUE(serial[i].rendered);
      EXPECT_EQ(concurrent[i].preRenderErr, PF_Err_NONE);
      EXPECT_EQ(concurrent[i].renderErr, PF_Err_NONE);
      EXPECT_EQ(concurrent[i].output.bytes, serial[i].output.bytes);
    }
    // Frames must differ from each other, or the comparison proves nothing.
    if (b == 0) {
      EXPECT_NE(serial[1].output.bytes, serial[2].output.bytes);
    }
  }
}

}  // namespace
