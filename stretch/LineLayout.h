// Where the lines of an image lie in memory, for each direction of travel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "stretch/KernelIsa.h"
#include "stretch/StretchCall.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// One line's placement in memory, in channel elements: its first pixel in the direction of
// travel, the distance between consecutive lines, and between consecutive pixels of a line.
struct LineLayout {
  std::ptrdiff_t first;
  std::ptrdiff_t lineStep;
  std::ptrdiff_t pixelStep;
};

inline LineLayout ImageLineLayout(Direction direction, std::ptrdiff_t stride, int32_t width,
                                  int32_t height) {
  switch (direction) {
    case Direction::Left:
      return {std::ptrdiff_t{width - 1} * 4, stride, -4};
    case Direction::Down:
      return {0, 4, stride};
    case Direction::Up:
      return {std::ptrdiff_t{height - 1} * stride, 4, -stride};
    case Direction::Right:
      break;
  }
  return {0, stride, 4};
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
