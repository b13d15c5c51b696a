// The lines of a band, several side by side.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "stretch/LineStretcher.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Lines a kernel works on side by side: four independent position chains hide most of the
// latency of one (two left the processor idle; eight spill the line state to memory).
inline constexpr int32_t kLinesInFlight = 4;

// Renders lines [first, last) of a prepared call. kLinesInFlight lines are worked on at a time,
// and their position passes run one step of each in turn: the steps of one line form a chain
// of dependent arithmetic, and independent chains side by side keep the processor busy. Lines
// never influence each other, so the order changes nothing.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode,
          bool kMultiply>
void StretchLines(const StretchCall& call, const KernelImages<ChannelType<Depth>>& images,
                  int32_t first, int32_t last) {
  using Stretcher = LineStretcher<Depth, Origin, Variant, Mode, kMultiply>;
  constexpr int32_t kLanes = kLinesInFlight;
  int32_t line = std::max(first, 0);
  const int32_t end = std::min(last, call.lineCount);

  // Begins the next line that needs stretch steps; false when none is left.
  const auto beginNext = [&](Stretcher& s, LinePosition& position, int32_t& room) {
    while (line < end) {
      position.Reset();
      if (!s.Begin(line++, position, room)) return true;
    }
    return false;
  };

  std::array<Stretcher, kLanes> s = [&]<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<Stretcher, kLanes>{((void)I, Stretcher(call, images))...};
  }
  (std::make_index_sequence<kLanes>());
  LinePosition position[kLanes];
  int32_t room[kLanes] = {};
  double lengths[kLanes][kStepChunk];
  double filled[kLanes][kStepChunk];
  bool active[kLanes];
  bool anyActive = false;
  for (int32_t i = 0; i < kLanes; ++i) {
    active[i] = beginNext(s[i], position[i], room[i]);
    anyActive = anyActive || active[i];
  }
  while (anyActive) {
#pragma GCC unroll 8
    for (int32_t i = 0; i < kLanes; ++i) {
      if (active[i]) s[i].Lengths(lengths[i]);
    }
    // Position steps of all lines in turn, until each has a chunk or reaches its line's end.
    int32_t count[kLanes] = {};
    bool more[kLanes];
    bool anyMore = false;
#pragma GCC unroll 8
    for (int32_t i = 0; i < kLanes; ++i) {
      more[i] = active[i];
      anyMore = anyMore || more[i];
    }
    while (anyMore) {
      anyMore = false;
#pragma GCC unroll 8
      for (int32_t i = 0; i < kLanes; ++i) {
        if (more[i]) {
          const bool full = position[i].Step(lengths[i][count[i]], filled[i][count[i]], room[i]);
          ++count[i];
          more[i] = !full && count[i] < kStepChunk;
          anyMore = anyMore || more[i];
        }
      }
    }
    anyActive = false;
    for (int32_t i = 0; i < kLanes; ++i) {
      if (active[i] && s[i].Values(lengths[i], filled[i], count[i])) {
        active[i] = beginNext(s[i], position[i], room[i]);
      }
      anyActive = anyActive || active[i];
    }
  }
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
