#include "cli/FramePattern.h"

#include <gtest/gtest.h>

#include "cli/Errors.h"

namespace morvane::cli {
namespace {

struct ExpandCase {
  const char* pattern;
  int32_t frame;
  const char* expected;
  bool placeholder;
};

class FramePatternExpand : public testing::TestWithParam<ExpandCase> {};

TEST_P(FramePatternExpand, SubstitutesThePaddedFrame) {
  const FramePattern pattern(GetParam().pattern);
  EXPECT_EQ(pattern.HasPlaceholder(), GetParam().placeholder);
  EXPECT_EQ(pattern.Expand(GetParam().frame), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, FramePatternExpand,
                         testing::Values(ExpandCase{"shot.####.exr", 7, "shot.0007.exr", true},
                                         ExpandCase{"shot.#.exr", 7, "shot.7.exr", true},
                                         ExpandCase{"shot.##.exr", 1234, "shot.1234.exr", true},
                                         ExpandCase{"shot.%04d.png", 42, "shot.0042.png", true},
                                         ExpandCase{"shot.%d.png", 42, "shot.42.png", true},
                                         ExpandCase{"dir/f%06d", 3, "dir/f000003", true},
                                         ExpandCase{"still.png", 9, "still.png", false},
                                         ExpandCase{"100%.png", 9, "100%.png", false},
                                         ExpandCase{"a%4d.png", 9, "a%4d.png", false}));

TEST(FramePattern, RefusesTwoPlaceholders) {
  EXPECT_THROW(FramePattern("a.##.%04d.png"), UsageError);
  EXPECT_THROW(FramePattern("a.#.b.#.png"), UsageError);
}

TEST(FrameRange, ParsesRangesAndSingleFrames) {
  const FrameRange range = ParseFrameRange("10-24");
  EXPECT_EQ(range.first, 10);
  EXPECT_EQ(range.last, 24);
  EXPECT_EQ(range.count(), 15);
  EXPECT_EQ(ParseFrameRange("5").count(), 1);
  EXPECT_EQ(ParseFrameRange("5").first, 5);
}

TEST(FrameRange, RefusesMalformedRanges) {
  for (const char* text : {"", "a-b", "10-5", "1-", "-3", "1-2-3", "1 - 2", "1.5-2"}) {
    EXPECT_THROW(ParseFrameRange(text), UsageError) << text;
  }
}

}  // namespace
}  // namespace morvane::cli
