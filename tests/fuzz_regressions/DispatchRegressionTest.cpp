// Records the DispatchStretch fuzzer found crashing or hanging, replayed on exactly allocated
// images (the harness faults on a read past an image even without AddressSanitizer).
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "fuzz/DispatchHarness.h"
#include "tests/fuzz_regressions/FinishesWithin.h"

namespace morvane::fuzz {
namespace {

StretchRenderRecord ControlDefaults() {
  StretchRenderRecord r{};
  r.intensity = 100.0;
  r.stretchAmount = 1.0;
  r.pixelSize = 1.0;
  r.distributionMode = 1;
  r.distributionRange = 2.0;
  r.shadingIntervalSize = 10;
  return r;
}

std::string Problems(const std::vector<std::string>& problems) {
  std::string text;
  for (const std::string& p : problems)
    text += p + "\n";
  return text;
}

class DispatchRegression : public testing::TestWithParam<PixelDepth> {};

// The render commands normally give input and output the same size, but nothing in
// DispatchStretch's contract says so: an input smaller than the output (fuzzer: input 1x1,
// output 3x3) made every kernel read the input over the output's area, past the input's last
// row. Only the rows and columns present in both images may be read.
TEST_P(DispatchRegression, InputSmallerThanOutputStaysInsideTheInput) {
  const struct {
    WorldSpec input;
    WorldSpec output;
    int32_t channelMode;
    int32_t direction;
  } cases[] = {
      {{1, 1, 16}, {3, 3, 0}, 7, 0},
      {{5, 2, 0}, {5, 7, 0}, 0, 2},
      {{2, 6, 3}, {9, 6, 0}, 1, 1},
      {{4, 4, 0}, {6, 5, 4}, 6, 3},
  };
  for (const auto& k : cases) {
    DispatchCase c;
    c.depth = GetParam();
    c.input = k.input;
    c.output = k.output;
    c.record = ControlDefaults();
    c.record.channelMode = k.channelMode;
    c.record.direction = k.direction;
    SCOPED_TRACE(DescribeDispatchCase(c));
    EXPECT_EQ(Problems(RunDispatchCase(c)), "");
  }
}

// Stretch lengths just above 0 (Pixel Size 1e-7 at full intensity; the controls stop at 0.01)
// passed the guard for lengths not above 0, and each output pixel took 1 / length stretch
// steps: 10^7 per pixel here. Every line must end after a bounded number of steps whatever the
// record holds.
TEST_P(DispatchRegression, TinyStretchLengthsStillEndEveryLine) {
  const struct {
    double pixelSize;
    double intensity;
    int32_t distributionMode;
  } cases[] = {
      {1e-7, 100.0, 1},  // Linear Ramp Up at range 0 keeps the curve's length
      {5e-8, 100.0, 7},  // an unknown distribution mode leaves it unchanged
      {0.01, 101.0, 1},  // an intensity above 100 pushes the offset below 0.01
  };
  for (const auto& k : cases) {
    DispatchCase c;
    c.depth = GetParam();
    c.output = c.input = WorldSpec{64, 4, 0};
    c.fill = PixelFill::Black;
    c.record = ControlDefaults();
    c.record.pixelSize = k.pixelSize;
    c.record.intensity = k.intensity;
    c.record.distributionMode = k.distributionMode;
    c.record.distributionRange = 0.0;
    SCOPED_TRACE(DescribeDispatchCase(c));
    std::vector<std::string> problems;
    FinishesWithin(std::chrono::seconds(60), "a render with stretch lengths near 0",
                   [&] { problems = RunDispatchCase(c); });
    EXPECT_EQ(Problems(problems), "");
  }
}

std::string DepthName(const testing::TestParamInfo<PixelDepth>& info) {
  constexpr const char* kNames[] = {"Depth8", "Depth16", "Depth32f"};
  return kNames[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(AllDepths, DispatchRegression,
                         testing::Values(PixelDepth::Depth8, PixelDepth::Depth16,
                                         PixelDepth::Depth32f),
                         DepthName);

}  // namespace
}  // namespace morvane::fuzz
