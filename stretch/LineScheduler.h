// The lines of a band, several side by side.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

#include "stretch/LineStretcher.h"
#include "stretch/LockstepPositions.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Renders lines [first, last) of a prepared call, kLockstepLines at a time: per chunk of steps,
// the lengths of each line, then the position passes of all of them in lockstep, then the values
// of each line. Lines never influence each other, so the order changes nothing.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode,
          bool kMultiply>
void StretchLines(const StretchCall& call, const KernelImages<ChannelType<Depth>>& images,
                  int32_t first, int32_t last) {
  using Stretcher = LineStretcher<Depth, Origin, Variant, Mode, kMultiply>;
  constexpr int32_t kLines = kLockstepLines;
  int32_t line = std::max(first, 0);
  const int32_t end = std::min(last, call.lineCount);
  LockstepLines lanes{};

  // Begins the next line that needs stretch steps in lane i; false when none is left.
  const auto beginNext = [&](Stretcher& s, int32_t i) {
    while (line < end) {
      LinePosition position;
      int32_t room = 0;
      if (!s.Begin(line++, position, room)) {
        lanes[i].position = position.linePosition();
        lanes[i].room = room;
        return true;
      }
    }
    return false;
  };

  std::array<Stretcher, kLines> s = [&]<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<Stretcher, kLines>{((void)I, Stretcher(call, images))...};
  }
  (std::make_index_sequence<kLines>());
  using Channel = ChannelType<Depth>;
  const int32_t chunk =
      StepChunk(call.direction, images.srcStride * std::ptrdiff_t{sizeof(Channel)},
                static_cast<int32_t>(4 * sizeof(Channel)));
  StepPlans plans;
  std::fill(std::begin(plans.length), std::end(plans.length), 1.0);
  bool anyActive = false;
  for (int32_t i = 0; i < kLines; ++i) {
    lanes[i].active = beginNext(s[i], i);
    anyActive = anyActive || lanes[i].active;
  }
  while (anyActive) {
    for (int32_t i = 0; i < kLines; ++i) {
      if (lanes[i].active) s[i].template Lengths<kLines>(plans.length + i, chunk);
    }
    LockstepPositionSteps(lanes, plans, chunk);
    anyActive = false;
    for (int32_t i = 0; i < kLines; ++i) {
      if (lanes[i].active && s[i].Values(plans, i, lanes[i].steps)) {
        lanes[i].active = beginNext(s[i], i);
      }
      anyActive = anyActive || lanes[i].active;
    }
  }
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
