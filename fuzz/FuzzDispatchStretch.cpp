// libFuzzer target: DispatchStretch at every depth on exactly allocated images of random size
// and row padding, with any record the bytes describe, an intensity layer of random size and
// origin or none, and any render scale. The sanitizers catch accesses outside the images; the
// harness catches writes into padding, input or layer and 16-bit values above white; the
// fuzzer's -timeout catches lines that never end.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

#include "fuzz/DispatchHarness.h"
#include "fuzz/FuzzValues.h"

namespace morvane::fuzz {
namespace {

WorldSpec PickWorld(FuzzedDataProvider& data, int32_t minSize, int32_t maxSize) {
  WorldSpec shape;
  shape.width = data.ConsumeIntegralInRange(minSize, maxSize);
  shape.height = data.ConsumeIntegralInRange(minSize, maxSize);
  shape.paddingChannels = data.ConsumeBool() ? 0 : data.ConsumeIntegralInRange(1, 19);
  return shape;
}

DispatchCase DecodeCase(FuzzedDataProvider& data) {
  DispatchCase c;
  c.depth = static_cast<PixelDepth>(data.ConsumeIntegralInRange(0, 2));
  // Most inputs stay small so that many run per second; some reach a few hundred pixels.
  constexpr int32_t kSizeLimits[] = {4, 16, 64, 320};
  const int32_t maxSize = kSizeLimits[data.ConsumeIntegralInRange(0, 3)];
  c.output = PickWorld(data, 1, maxSize);
  c.output.originX = PickInt(data, -8, 64);
  c.output.originY = PickInt(data, -8, 64);
  // The render commands give input and output the same size; now and then they differ.
  c.input = c.output;
  c.input.originX = c.input.originY = 0;
  if (data.ConsumeIntegralInRange(0, 7) == 0) c.input = PickWorld(data, 1, maxSize);
  c.input.paddingChannels = data.ConsumeBool() ? 0 : data.ConsumeIntegralInRange(1, 19);

  if (data.ConsumeBool()) {
    c.layer = PickWorld(data, 0, maxSize);
    c.layerWithoutPixels = data.ConsumeIntegralInRange(0, 7) == 0;
  }

  StretchRenderRecord& r = c.record;
  r.channelMode = PickInt(data, 0, 7);
  r.intensity = PickDouble(data, 0.0, 100.0);
  r.direction = PickInt(data, 0, 3);
  r.stretchAmount = PickDouble(data, 0.0, 64.0);
  r.pixelSize = PickDouble(data, 0.01, 16.0);
  r.startOffset = PickDouble(data, 0.0, 100.0);
  r.curveShape = PickInt(data, 0, 5);
  r.curvePhase = PickInt(data, -23592960, 23592960);
  r.curveSmoothness = PickDouble(data, 0.0, 16.0);
  r.distributionMode = PickInt(data, 0, 2);
  r.distributionRange = PickDouble(data, 0.0, 2.0);
  r.imageShiftPhase = PickInt(data, -23592960, 23592960);
  r.imageShiftPhaseSync = PickInt(data, 0, 1);
  r.shadingMode = PickInt(data, 0, 5);
  r.shadingIntervalSize = PickInt(data, 2, 256);
  r.shadingIntervalPhase = PickInt(data, -23592960, 23592960);
  r.shadingOpacity = PickDouble(data, 0.0, 100.0);
  r.shadingChannels = PickInt(data, 0, 1);
  r.edgeMode = PickInt(data, 0, 3);
  r.transparencyFeather = PickDouble(data, 0.0, 100.0);
  c.scale = PickScale(data);

  c.fill = static_cast<PixelFill>(data.ConsumeIntegralInRange(0, 3));
  c.seed = data.ConsumeIntegral<uint32_t>();
  return c;
}

}  // namespace
}  // namespace morvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  FuzzedDataProvider data(bytes, size);
  const morvane::fuzz::DispatchCase c = morvane::fuzz::DecodeCase(data);
  // MORVANE_FUZZ_VERBOSE=1 prints each case before it runs: how a crash file is read back.
  static const bool verbose = std::getenv("MORVANE_FUZZ_VERBOSE") != nullptr;
  if (verbose) std::fprintf(stderr, "case: %s\n", morvane::fuzz::DescribeDispatchCase(c).c_str());
  const auto problems = morvane::fuzz::RunDispatchCase(c);
  if (!problems.empty()) {
    std::fprintf(stderr, "DispatchStretch misbehaved: %s\n  case: %s\n", problems.front().c_str(),
                 morvane::fuzz::DescribeDispatchCase(c).c_str());
    std::abort();
  }
  return 0;
}
