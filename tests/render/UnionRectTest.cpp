#include <gtest/gtest.h>

#include "render/UnionRect.h"

namespace morvane {
namespace {

struct UnionCase {
  PF_LRect source;
  PF_LRect destination;
  PF_LRect expected;
};

TEST(UnionRect, Cases) {
  const UnionCase cases[] = {
      {{0, 0, 10, 10}, {0, 0, 0, 0}, {0, 0, 10, 10}},      // empty destination takes the source
      {{5, 5, 5, 9}, {3, 3, 3, 3}, {5, 5, 5, 9}},          // ... even an empty one
      {{0, 0, 10, 10}, {5, -2, 20, 8}, {0, -2, 20, 10}},   // bounding box
      {{0, 0, 0, 10}, {5, -2, 20, 8}, {5, -2, 20, 8}},     // empty source changes nothing
      {{0, 4, 10, 4}, {1, 1, 2, 2}, {1, 1, 2, 2}},         // empty by height
      {{-4, -4, -1, -1}, {2, 2, 1, 5}, {-4, -4, -1, -1}},  // destination empty by width
  };
  for (const UnionCase& c : cases) {
    PF_LRect d = c.destination;
    UnionRect(c.source, d);
    EXPECT_TRUE(d.left == c.expected.left && d.top == c.expected.top &&
                d.right == c.expected.right && d.bottom == c.expected.bottom)
        << d.left << "," << d.top << "," << d.right << "," << d.bottom;
  }
}

}  // namespace
}  // namespace morvane
