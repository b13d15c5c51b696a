// Every golden case rendered through DispatchStretch writes the output it was accepted with, bit
// for bit: padding, untouched channels and the spare pixel past the rows included. The cases
// render on four threads at once: renders share no state (under ThreadSanitizer, the run also
// shows that none touches another's memory).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/golden/GoldenCase.h"

namespace morvane::golden {
namespace {

class Golden : public ::testing::TestWithParam<PixelDepth> {};

TEST_P(Golden, EveryCaseWritesItsAcceptedOutput) {
  int cases = 0;
  const std::vector<std::string> failures = CheckCorpus(MORVANE_GOLDEN_CASES, GetParam(), cases, 4);
  for (size_t i = 0; i < failures.size() && i < 10; ++i)
    ADD_FAILURE() << failures[i];
  EXPECT_GE(cases, 300) << "too few cases of this depth in " << MORVANE_GOLDEN_CASES;
  EXPECT_EQ(failures.size(), 0u) << "of " << cases << " cases";
}

INSTANTIATE_TEST_SUITE_P(Depths, Golden,
                         ::testing::Values(PixelDepth::Depth8, PixelDepth::Depth16,
                                           PixelDepth::Depth32f));

}  // namespace
}  // namespace morvane::golden
