// Records the DispatchStretch fuzzer found crashing or hanging, replayed on exactly allocated
// images (the harness faults on a read past an image even without AddressSanitizer). A render
// that never ends shows as the test's time-out in CTest.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fuzz/DispatchHarness.h"
#include "params/ControlTable.h"

namespace morvane::fuzz {
namespace {

struct Regression {
  const char* finding;
  WorldSpec input;
  WorldSpec output;
  int32_t channelMode;
  int32_t direction;
  double pixelSize;
  double intensity;
  int32_t distributionMode;
};

// Input smaller than the output (fuzzer: input 1x1, output 3x3): every kernel read the input over
// the output's area, past its last row. Stretch lengths just above 0 (Pixel Size 1e-7; the
// controls stop at 0.01) passed the guard for lengths not above 0 and took 1 / length steps for
// each output pixel: every line must end after a bounded number of steps whatever the record.
constexpr Regression kRegressions[] = {
    {"input smaller", {1, 1, 16}, {3, 3, 0}, 7, 0, 1.0, 100.0, 0},
    {"input shorter", {5, 2, 0}, {5, 7, 0}, 0, 2, 1.0, 100.0, 0},
    {"input narrower", {2, 6, 3}, {9, 6, 0}, 1, 1, 1.0, 100.0, 0},
    {"input smaller, output padded", {4, 4, 0}, {6, 5, 4}, 6, 3, 1.0, 100.0, 0},
    {"pixel size 1e-7, ramp at range 0", {64, 4, 0}, {64, 4, 0}, 0, 0, 1e-7, 100.0, 1},
    {"pixel size 5e-8, unknown distribution", {64, 4, 0}, {64, 4, 0}, 0, 0, 5e-8, 100.0, 7},
    {"intensity above 100", {64, 4, 0}, {64, 4, 0}, 0, 0, 0.01, 101.0, 1},
};

class DispatchRegression : public testing::TestWithParam<PixelDepth> {};

TEST_P(DispatchRegression, EveryFindingRendersWithinItsImages) {
  for (const Regression& k : kRegressions) {
    DispatchCase c;
    c.depth = GetParam();
    c.input = k.input;
    c.output = k.output;
    c.fill = k.pixelSize < 1.0 ? PixelFill::Black : PixelFill::Noise;
    c.record = DefaultRecord();
    c.record.channelMode = k.channelMode;
    c.record.direction = k.direction;
    c.record.pixelSize = k.pixelSize;
    c.record.intensity = k.intensity;
    c.record.distributionMode = k.distributionMode;
    if (k.pixelSize < 1.0) c.record.distributionRange = 0.0;
    SCOPED_TRACE(std::string(k.finding) + ": " + DescribeDispatchCase(c));
    EXPECT_EQ(RunDispatchCase(c), std::vector<std::string>{});
  }
}

INSTANTIATE_TEST_SUITE_P(AllDepths, DispatchRegression,
                         testing::Values(PixelDepth::Depth8, PixelDepth::Depth16,
                                         PixelDepth::Depth32f));

}  // namespace
}  // namespace morvane::fuzz
