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
#include "tests/support/RecordText.h"

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

  // Every control over its range, in the table's order.
  c.record = test::RecordFrom([&data](const Control& control) -> double {
    switch (control.kind) {
      case ControlKind::Popup:
        return PickInt(data, 0, PopupItemCount(control) - 1);
      case ControlKind::Angle:
        return PickInt(data, -23592960, 23592960);
      case ControlKind::Checkbox:
        return PickInt(data, 0, 1);
      default: {  // a whole-number field takes any int, a real one any double
        const double low = WrittenDecimal(control.slider.minimum);
        const double high = WrittenDecimal(control.slider.maximum);
        if (control.field.whole != nullptr)
          return PickInt(data, static_cast<int32_t>(low), static_cast<int32_t>(high));
        return PickDouble(data, low, high);
      }
    }
  });
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
