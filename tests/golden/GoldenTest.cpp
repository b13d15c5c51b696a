// Every golden case rendered through DispatchStretch writes the output it was accepted with, bit
// for bit: padding, untouched channels and the spare pixel past the rows included.
#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/golden/GoldenCase.h"

namespace morvane::golden {
namespace {

class Golden : public ::testing::TestWithParam<PixelDepth> {};

TEST_P(Golden, EveryCaseWritesItsAcceptedOutput) {
  std::ifstream corpus(MORVANE_GOLDEN_CASES);
  ASSERT_TRUE(corpus) << "cannot read " << MORVANE_GOLDEN_CASES;
  int cases = 0;
  int failures = 0;
  std::string line;
  while (std::getline(corpus, line)) {
    if (line.empty() || line[0] == '#') continue;
    const uint64_t accepted = std::stoull(line.substr(0, 16), nullptr, 16);
    const GoldenCase c = ParseCase(line.substr(17));
    if (c.depth != GetParam()) continue;
    ++cases;
    Frame frame = PaintFrame(c);
    const uint64_t digest = RenderDigest(c, frame);
    if (digest != accepted && ++failures <= 10) {
      char written[17];
      std::snprintf(written, sizeof written, "%016" PRIx64, digest);
      ADD_FAILURE() << "case " << line.substr(17) << "\n  writes " << written
                    << "; see it with: golden_corpus_tool picture '" << line << "' case.ppm";
    }
  }
  EXPECT_GE(cases, 300) << "too few cases of this depth in " << MORVANE_GOLDEN_CASES;
  EXPECT_EQ(failures, 0) << "of " << cases << " cases";
}

INSTANTIATE_TEST_SUITE_P(Depths, Golden,
                         ::testing::Values(PixelDepth::Depth8, PixelDepth::Depth16,
                                           PixelDepth::Depth32f));

}  // namespace
}  // namespace morvane::golden
