// The effect module driven through the simulated hosts: parameters, UI state,
// smart render and single-call render, checked against the dispatcher run
// directly on the same data.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "hostsim/Host.h"
#include "params/ControlTable.h"
#include "render/DispatchStretch.h"
#include "tests/support/HostedSession.h"

namespace morvane {
namespace {

using hostsim::Host;
using hostsim::HostProfile;
using hostsim::Image;

// --- Images and the reference render ------------------------------------------------

morvane::PixelDepth KernelDepth(hostsim::PixelDepth depth) {
  switch (depth) {
    case hostsim::PixelDepth::Bits8:
      return morvane::PixelDepth::Depth8;
    case hostsim::PixelDepth::Bits16:
      return morvane::PixelDepth::Depth16;
    default:
      return morvane::PixelDepth::Depth32f;
  }
}

// A packed copy of `area` of `source`, its origin at the area's corner: the input
// a host hands over for a request of that area.
struct OwnedWorld {
  std::vector<uint8_t> bytes;
  PF_EffectWorld world{};
};

OwnedWorld Crop(const PF_EffectWorld& source, hostsim::PixelDepth depth, PF_LRect area) {
  OwnedWorld crop;
  const int32_t pixelBytes = hostsim::PixelBytes(depth);
  crop.world.width = area.right - area.left;
  crop.world.height = area.bottom - area.top;
  crop.world.rowbytes = crop.world.width * pixelBytes;
  crop.world.origin_x = area.left;
  crop.world.origin_y = area.top;
  crop.bytes.resize(static_cast<size_t>(crop.world.rowbytes) * crop.world.height);
  for (int32_t y = 0; y < crop.world.height; ++y) {
    std::memcpy(crop.bytes.data() + static_cast<size_t>(y) * crop.world.rowbytes,
                reinterpret_cast<const uint8_t*>(source.data) +
                    static_cast<ptrdiff_t>(y + area.top) * source.rowbytes +
                    static_cast<ptrdiff_t>(area.left) * pixelBytes,
                static_cast<size_t>(crop.world.rowbytes));
  }
  crop.world.data = reinterpret_cast<PF_PixelPtr>(crop.bytes.data());
  return crop;
}

// What DispatchStretch makes of `input` in an output of the rendered image's geometry.
std::vector<uint8_t> Reference(const PF_EffectWorld& input, const Image& like,
                               const StretchRenderRecord& record, float scale) {
  std::vector<uint8_t> bytes(like.bytes.size(), hostsim::kUnwrittenByte);
  PF_EffectWorld output{};
  output.data = reinterpret_cast<PF_PixelPtr>(bytes.data());
  output.width = like.width;
  output.height = like.height;
  output.rowbytes = like.rowbytes;
  output.origin_x = like.originX;
  output.origin_y = like.originY;
  DispatchStretchForDepth(KernelDepth(like.depth), input, output, record, scale);
  return bytes;
}

hostsim::SmartFrame SmartFrameOf(const PF_EffectWorld* input, int32_t frame = 0) {
  hostsim::SmartFrame smart;
  smart.input = input;
  smart.frame = frame;
  return smart;
}

hostsim::SmartFrame Request(const PF_EffectWorld* input, PF_LRect rect) {
  hostsim::SmartFrame smart = SmartFrameOf(input);
  smart.request = rect;
  return smart;
}

hostsim::SmartFrame Downsampled(const PF_EffectWorld* input, PF_RationalScale x,
                                PF_RationalScale y) {
  hostsim::SmartFrame smart = SmartFrameOf(input);
  smart.downsampleX = x;
  smart.downsampleY = y;
  return smart;
}

hostsim::LegacyFrame LegacyFrameOf(const PF_EffectWorld* input, hostsim::PixelDepth depth) {
  hostsim::LegacyFrame legacy;
  legacy.input = input;
  legacy.depth = depth;
  return legacy;
}

// The host's frame twice as wide as the images: scale 0.5.
hostsim::LegacyFrame HalfScale(hostsim::LegacyFrame legacy) {
  legacy.layerWidth = 2 * legacy.input->width;
  return legacy;
}

hostsim::LegacyFrame ReportingFormat(hostsim::LegacyFrame legacy, PrPixelFormat format) {
  legacy.reportedFormat = format;
  return legacy;
}

// --- The session ----------------------------------------------------------------------

class EndToEnd : public testing::HostedSession {
 protected:
  void TearDown() override {
    if (host_) Finish();
  }

  // The record the busy look stands for, as the kernels get it (angles in 16.16 degrees).
  static StretchRenderRecord BusyRecord() {
    StretchRenderRecord r = DefaultRecord();
    r.stretchAmount = 2.5;
    r.curveShape = 3;
    r.curvePhase = 30 * 65536;
    r.curveSmoothness = 1.5;
    r.startOffset = 10;
    r.distributionMode = 2;
    r.imageShiftPhase = -45 * 65536;
    r.shadingMode = 2;
    r.shadingIntervalSize = 6;
    r.shadingOpacity = 70;
    r.shadingChannels = 1;
    r.edgeMode = 1;
    return r;
  }

  // A look that exercises most of the stretch: curve, phase, shading, edges.
  void SetBusyLook() {
    Host& h = *host_;
    h.SetValue(*instance_, "Morvane", 2.5);
    h.SetPopup(*instance_, "Stretch Curve", "Sine Wave");
    h.SetValue(*instance_, "Curve Phase", 30.0);
    h.SetValue(*instance_, "Curve Smoothness", 1.5);
    h.SetValue(*instance_, "Stretch Start Offset", 10.0);
    h.SetPopup(*instance_, "Distribution Mode", "Linear Ramp Down");
    h.SetValue(*instance_, "Image Shift Phase", -45.0);
    h.SetPopup(*instance_, "Shading", "Triangle Wave");
    h.SetValue(*instance_, "Shading Interval Size", 6.0);
    h.SetValue(*instance_, "Shading Opacity", 70.0);
    h.SetPopup(*instance_, "Shading Channel(s)", "RGB");
    h.SetPopup(*instance_, "Edge Mode", "Mirror");
  }
};

// --- Smart render ---------------------------------------------------------------------

TEST_F(EndToEnd, SubRectangleSeesOnlyItsOwnPixelsAndTheWholeIntensityLayer) {
  Start(HostProfile::AfterEffects());
  const hostsim::PixelDepth depth = hostsim::PixelDepth::Bits16;
  SetBusyLook();
  host_->SetPopup(*instance_, "Edge Mode", "Wrap");
  PF_EffectWorld* input = NewLayer(30, 20, depth, 9);
  PF_EffectWorld* otherOutside = NewLayer(30, 20, depth, 77);
  const PF_LRect rect{6, 4, 21, 15};
  // The same pixels inside the request, different ones outside.
  for (int32_t y = rect.top; y < rect.bottom; ++y) {
    const int32_t pixelBytes = hostsim::PixelBytes(depth);
    std::memcpy(reinterpret_cast<uint8_t*>(otherOutside->data) + y * otherOutside->rowbytes +
                    rect.left * pixelBytes,
                reinterpret_cast<const uint8_t*>(input->data) + y * input->rowbytes +
                    rect.left * pixelBytes,
                static_cast<size_t>((rect.right - rect.left) * pixelBytes));
  }
  PF_EffectWorld* source = NewLayer(40, 25, depth, 3);
  host_->SetLayer(*instance_, "Intensity Source", source);

  const auto first = host_->RenderSmart(*instance_, Request(input, rect));
  const auto second = host_->RenderSmart(*instance_, Request(otherOutside, rect));
  ASSERT_EQ(first.renderErr, PF_Err_NONE);
  EXPECT_EQ(first.output.width, 15);
  EXPECT_EQ(first.output.height, 11);
  EXPECT_EQ(first.output.originX, 6);
  EXPECT_EQ(first.output.originY, 4);
  EXPECT_EQ(first.output.bytes, second.output.bytes);

  StretchRenderRecord record = BusyRecord();
  record.edgeMode = 0;
  record.intensityLayer = source;
  const OwnedWorld crop = Crop(*input, depth, rect);
  EXPECT_EQ(first.output.bytes, Reference(crop.world, first.output, record, 1.0f));
}

TEST_F(EndToEnd, ResultRectanglesStartFromEmpty) {
  Start(HostProfile::AfterEffects());
  PF_EffectWorld* input = NewLayer(16, 9, hostsim::PixelDepth::Bits8, 1);
  const auto full = host_->RenderSmart(*instance_, SmartFrameOf(input));
  const auto part = host_->RenderSmart(*instance_, Request(input, PF_LRect{2, 3, 7, 8}));
  auto same = [](const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
  };
  EXPECT_TRUE(same(full.resultRect, {0, 0, 16, 9}));
  EXPECT_TRUE(same(full.maxResultRect, {0, 0, 16, 9}));
  EXPECT_TRUE(same(part.resultRect, {2, 3, 7, 8}));
  EXPECT_TRUE(same(part.maxResultRect, {0, 0, 16, 9}));
}

TEST_F(EndToEnd, HorizontalDownsamplingScalesTheRender) {
  Start(HostProfile::AfterEffects());
  SetBusyLook();
  PF_EffectWorld* input = NewLayer(24, 10, hostsim::PixelDepth::Float32, 4);
  const auto half = host_->RenderSmart(*instance_, Downsampled(input, {1, 2}, {1, 1}));
  const auto halfOtherY = host_->RenderSmart(*instance_, Downsampled(input, {1, 2}, {1, 3}));
  ASSERT_EQ(half.renderErr, PF_Err_NONE);
  const std::vector<uint8_t> expected = Reference(*input, half.output, BusyRecord(), 0.5f);
  ASSERT_NE(expected, Reference(*input, half.output, BusyRecord(), 1.0f));
  EXPECT_EQ(half.output.bytes, expected);
  EXPECT_EQ(halfOtherY.output.bytes, expected);
}

TEST_F(EndToEnd, UnknownPixelFormatFailsWithTheOutputUntouched) {
  Start(HostProfile::AfterEffects());
  PF_EffectWorld* input = NewLayer(8, 8, hostsim::PixelDepth::Bits8, 2);
  host_->SetLayer(*instance_, "Intensity Source", NewLayer(8, 8, hostsim::PixelDepth::Bits8, 6));
  host_->Worlds().OverrideFormats(input, PF_PixelFormat_BGRA32, PrPixelFormat_BGRA_4444_8u);
  const auto result = host_->RenderSmart(*instance_, SmartFrameOf(input));
  EXPECT_EQ(result.preRenderErr, PF_Err_NONE);
  EXPECT_EQ(result.renderErr, PF_Err_UNRECOGNIZED_PARAM_TYPE);
  EXPECT_EQ(result.output.bytes,
            std::vector<uint8_t>(result.output.bytes.size(), hostsim::kUnwrittenByte));
}

// A host failure at one point of a frame: the frame fails with the expected
// error, the output stays as the host made it, and everything is given back
// (checked when the session ends).
struct SmartFault {
  const char* label;
  std::string function;  // empty: the world suite is withheld instead
  PF_Err injected;
  int skip;
  PF_Err preRender;
  PF_Err render;
  const char* message;
};

class SmartRenderFaults : public EndToEnd, public ::testing::WithParamInterface<SmartFault> {};

TEST_P(SmartRenderFaults, FrameFailsCleanly) {
  const SmartFault& fault = GetParam();
  Start(HostProfile::AfterEffects());
  PF_EffectWorld* input = NewLayer(8, 6, hostsim::PixelDepth::Bits8, 2);
  host_->SetLayer(*instance_, "Intensity Source", NewLayer(8, 6, hostsim::PixelDepth::Bits8, 3));
  if (fault.function.empty()) {
    host_->Faults().WithholdSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
  } else {
    host_->Faults().Fail(fault.function, fault.injected, fault.skip, 1);
  }
  const auto result = host_->RenderSmart(*instance_, SmartFrameOf(input));
  EXPECT_EQ(result.preRenderErr, fault.preRender);
  EXPECT_EQ(result.renderErr, fault.render);
  EXPECT_EQ(result.message, fault.message);
  EXPECT_EQ(result.output.bytes,
            std::vector<uint8_t>(result.output.bytes.size(), hostsim::kUnwrittenByte));
  EXPECT_EQ(host_->Handles().LiveCount(), 1u) << "only the sequence data";
}

std::string HandleFn(const char* member) {
  return hostsim::SuiteFunction(kPFHandleSuite, kPFHandleSuiteVersion1, member);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, SmartRenderFaults,
    ::testing::Values(
        SmartFault{"NoMemoryForTheRecord", HandleFn("host_new_handle"), 0, 0, PF_Err_OUT_OF_MEMORY,
                   PF_Err_NONE, ""},
        SmartFault{"ReadOutInterrupted", hostsim::Callback("inter", "checkout_param"),
                   PF_Interrupt_CANCEL, 9, PF_Interrupt_CANCEL, PF_Err_NONE, ""},
        SmartFault{"IntensityLayerRequestRefused", hostsim::Callback("prerender", "checkout_layer"),
                   PF_Err_OUT_OF_MEMORY, 0, PF_Err_OUT_OF_MEMORY, PF_Err_NONE, ""},
        SmartFault{"InputRequestRefused", hostsim::Callback("prerender", "checkout_layer"),
                   PF_Err_INVALID_INDEX, 1, PF_Err_INVALID_INDEX, PF_Err_NONE, ""},
        SmartFault{"RecordCannotBeLocked", HandleFn("host_lock_handle"), 0, 1, PF_Err_NONE,
                   PF_Err_INTERNAL_STRUCT_DAMAGED, ""},
        SmartFault{"InputPixelsRefused", hostsim::Callback("smartrender", "checkout_layer_pixels"),
                   PF_Err_OUT_OF_MEMORY, 0, PF_Err_NONE, PF_Err_OUT_OF_MEMORY, ""},
        SmartFault{"OutputRefused", hostsim::Callback("smartrender", "checkout_output"),
                   PF_Interrupt_CANCEL, 0, PF_Err_NONE, PF_Interrupt_CANCEL, ""},
        SmartFault{"IntensityPixelsRefused",
                   hostsim::Callback("smartrender", "checkout_layer_pixels"), PF_Err_OUT_OF_MEMORY,
                   1, PF_Err_NONE, PF_Err_OUT_OF_MEMORY, ""},
        SmartFault{"NoWorldSuite", "", 0, 0, PF_Err_NONE, A_Err_MISSING_SUITE,
                   "Not able to acquire AEFX Suite."}),
    [](const ::testing::TestParamInfo<SmartFault>& info) { return std::string(info.param.label); });

TEST_F(EndToEnd, HundredFramesLeaveNothingBehind) {
  Start(HostProfile::AfterEffects());
  SetBusyLook();
  PF_EffectWorld* input = NewLayer(12, 7, hostsim::PixelDepth::Bits8, 8);
  for (int32_t frame = 0; frame < 100; ++frame) {
    const auto result = host_->RenderSmart(*instance_, SmartFrameOf(input, frame));
    ASSERT_EQ(result.renderErr, PF_Err_NONE) << frame;
  }
  EXPECT_EQ(host_->Handles().LiveCount(), 1u) << "only the sequence data";
}

// --- Single-call render -------------------------------------------------------------------

class PremiereRender : public EndToEnd,
                       public ::testing::WithParamInterface<hostsim::PixelDepth> {};

TEST_P(PremiereRender, OutputEqualsTheDispatcherAtTheWidthScale) {
  Start(HostProfile::Premiere());
  SetBusyLook();
  host_->SetPopup(*instance_, "Channels", "RGB (no Alpha)");
  PF_EffectWorld* input = NewLayer(17, 11, GetParam(), 21);
  const auto result = host_->RenderLegacy(*instance_, HalfScale(LegacyFrameOf(input, GetParam())));
  ASSERT_EQ(result.err, PF_Err_NONE);
  StretchRenderRecord record = BusyRecord();
  record.channelMode = 7;
  const std::vector<uint8_t> expected = Reference(*input, result.output, record, 0.5f);
  ASSERT_NE(expected, Reference(*input, result.output, record, 1.0f));
  EXPECT_EQ(result.output.bytes, expected);
}

INSTANTIATE_TEST_SUITE_P(Depths, PremiereRender,
                         ::testing::Values(hostsim::PixelDepth::Bits8, hostsim::PixelDepth::Bits16,
                                           hostsim::PixelDepth::Float32));

TEST_F(EndToEnd, SingleCallRenderInAfterEffectsLeavesTheOutputAsGiven) {
  Start(HostProfile::AfterEffects());
  PF_EffectWorld* input = NewLayer(9, 5, hostsim::PixelDepth::Bits8, 1);
  const auto result =
      host_->RenderLegacy(*instance_, LegacyFrameOf(input, hostsim::PixelDepth::Bits8));
  EXPECT_EQ(result.err, PF_Err_NONE);
  EXPECT_EQ(result.output.bytes,
            std::vector<uint8_t>(result.output.bytes.size(), hostsim::kUnwrittenByte));
}

TEST_F(EndToEnd, PremiereUnknownFormatChecksTheLayersIn) {
  Start(HostProfile::Premiere());
  PF_EffectWorld* input = NewLayer(9, 5, hostsim::PixelDepth::Bits8, 1);
  const auto result = host_->RenderLegacy(
      *instance_, ReportingFormat(LegacyFrameOf(input, hostsim::PixelDepth::Bits8),
                                  PrPixelFormat_BGRA_4444_8u));
  EXPECT_EQ(result.err, PF_Err_UNRECOGNIZED_PARAM_TYPE);
  EXPECT_EQ(result.output.bytes,
            std::vector<uint8_t>(result.output.bytes.size(), hostsim::kUnwrittenByte));
}

TEST_F(EndToEnd, PremiereLayerFailuresAreReturnedWithEverythingCheckedIn) {
  Start(HostProfile::Premiere());
  PF_EffectWorld* input = NewLayer(9, 5, hostsim::PixelDepth::Bits8, 1);
  const int formatSuites = host_->Suites().Acquisitions(kPFPixelFormatSuite, 1);
  const std::string checkout = hostsim::Callback("inter", "checkout_param");

  // The intensity layer is read first: its failure ends the command before any suite.
  host_->Faults().Fail(checkout, PF_Err_INVALID_INDEX, 0, 1);
  const auto layer =
      host_->RenderLegacy(*instance_, LegacyFrameOf(input, hostsim::PixelDepth::Bits8));
  EXPECT_EQ(layer.err, PF_Err_INVALID_INDEX);
  EXPECT_EQ(host_->Suites().Acquisitions(kPFPixelFormatSuite, 1), formatSuites);

  // Then the effect's own layer.
  host_->Faults().Fail(checkout, PF_Err_OUT_OF_MEMORY, 1, 1);
  const auto own =
      host_->RenderLegacy(*instance_, LegacyFrameOf(input, hostsim::PixelDepth::Bits8));
  EXPECT_EQ(own.err, PF_Err_OUT_OF_MEMORY);
  for (const auto& result : {layer, own}) {
    EXPECT_EQ(result.output.bytes,
              std::vector<uint8_t>(result.output.bytes.size(), hostsim::kUnwrittenByte));
  }
}

}  // namespace
}  // namespace morvane
