// A chunk of stretch steps of several lines as the three passes hand it on: the lengths pass
// fills in the lengths, the position pass its decisions, the value pass reads both.
#pragma once

#include <cstdint>

#include "stretch/LineResampler.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Lines worked through side by side.
inline constexpr int32_t kLockstepLines = 8;

// Stretch steps are taken in chunks of this many per line: the lengths of a chunk, then its
// positions, then its values.
inline constexpr int32_t kStepChunk = 32;

// Step k of line i at [k * kLockstepLines + i], so that the position pass reads and writes the
// same step of neighbouring lines with one vector access. A lane without a line keeps harmless
// numbers; a step after the one that fills its line is never read.
struct StepPlans {
  static constexpr int32_t kSize = kStepChunk * kLockstepLines;

  alignas(32) double length[kSize];
  alignas(32) MaskWord kind[kSize];
  alignas(32) double u0[kSize];
  alignas(32) double u1[kSize];
  alignas(32) double piece[kSize];
  alignas(32) MaskWord reach[kSize];
  alignas(32) MaskWord carried[kSize];

  [[gnu::always_inline]] StepPlan At(int32_t step, int32_t line) const {
    const int32_t i = step * kLockstepLines + line;
    return {static_cast<StepKind>(kind[i]), u0[i], u1[i], piece[i], reach[i], carried[i]};
  }
};

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
