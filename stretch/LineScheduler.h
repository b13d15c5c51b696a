// The lines of a band, several side by side.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

#include "stretch/ColumnStaging.h"
#include "stretch/LineLayout.h"
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

  // Where the output's rows crowd the cache, lines along columns go in groups whose output is
  // held in the staging window; a lane whose line is done waits for the group's others.
  using Channel = ChannelType<Depth>;
  const bool grouped =
      StagedColumns(call.direction, images.dstStride * std::ptrdiff_t{sizeof(Channel)},
                    static_cast<int32_t>(4 * sizeof(Channel)));
  ColumnStaging<Depth, Variant> staging;
  const LineLayout out =
      ImageLineLayout(call.direction, images.dstStride, images.width, images.height);
  const int32_t length = call.length;

  // Begins the next line that needs stretch steps in lane i; false when none is left.
  const auto beginNext = [&](Stretcher& s, int32_t i) {
    while (line < end) {
      LinePosition position;
      int32_t room = 0;
      const int32_t begun = line++;
      if (!s.Begin(begun, position, room)) {
        lanes[i].position = position.linePosition();
        lanes[i].room = room;
        if (grouped) {
          staging.Track(i, images.dst + out.first + std::ptrdiff_t{begun} * out.lineStep,
                        length - room);
        }
        return true;
      }
    }
    return false;
  };
  // Begins a line in every lane that can take one; false when none is left.
  const auto beginLanes = [&](std::array<Stretcher, kLockstepLines>& s) {
    if (grouped) staging.BeginGroup(std::min(call.startCount, length), out.pixelStep);
    bool any = false;
    for (int32_t i = 0; i < kLockstepLines; ++i) {
      lanes[i].active = beginNext(s[i], i);
      any = any || lanes[i].active;
    }
    return any;
  };

  std::array<Stretcher, kLines> s = [&]<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<Stretcher, kLines>{((void)I, Stretcher(call, images))...};
  }
  (std::make_index_sequence<kLines>());
  const int32_t chunk =
      StepChunk(call.direction, images.srcStride * std::ptrdiff_t{sizeof(Channel)},
                static_cast<int32_t>(4 * sizeof(Channel)));
  StepPlans plans;
  std::fill(std::begin(plans.length), std::end(plans.length), 1.0);
  bool anyActive = beginLanes(s);
  while (anyActive) {
    for (int32_t i = 0; i < kLines; ++i) {
      if (lanes[i].active) s[i].template Lengths<kLines>(plans.length + i, chunk);
    }
    std::array<double, kLines> roomBefore;
    for (int32_t i = 0; i < kLines; ++i)
      roomBefore[i] = lanes[i].room;
    LockstepPositionSteps(lanes, plans, chunk);
    anyActive = false;
    for (int32_t i = 0; i < kLines; ++i) {
      if (!lanes[i].active) continue;
      // The output pixels written by the end of the chunk: all of them when it fills the line.
      const bool fills = lanes[i].room <= 0.0;
      const auto done = static_cast<int32_t>(length - (fills ? 0.0 : lanes[i].room));
      if (grouped) {
        const auto left = static_cast<int32_t>(roomBefore[i]);
        const auto place = staging.Reserve(i, left - (length - done));
        s[i].Redirect(place.first, place.step, left);
      }
      const bool full = s[i].Values(plans, i, lanes[i].steps);
      if (grouped) staging.Written(i, done);
      if (full) lanes[i].active = !grouped && beginNext(s[i], i);
      anyActive = anyActive || lanes[i].active;
    }
    if (grouped && !anyActive) {
      staging.Flush();
      anyActive = beginLanes(s);
    }
  }
  FinishStreamedStores();
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
