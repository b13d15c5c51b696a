// A chunk of stretch steps of several lines as the three passes hand it on: the lengths pass
// fills in the lengths, the position pass its decisions, the value pass reads both.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "stretch/KernelIsa.h"
#include "stretch/LineResampler.h"
#include "stretch/StretchCall.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Lines worked through side by side: four registers of them in the position pass, whose chain
// of dependent arithmetic from one step to the next the other registers' steps hide.
inline constexpr int32_t kLockstepLines = kRegisterDoubles >= 4 ? 16 : 8;

// Stretch steps are taken in chunks of at most this many per line: the lengths of a chunk, then
// its positions, then its values.
inline constexpr int32_t kStepChunk = 32;

// Along columns a chunk's pixels lie a row apart, and the value pass reads again the pixels the
// lengths pass has just read. Rows whose length is a multiple of a large power of two fall into
// few sets of the first-level cache (64 sets of 64-byte lines, 8 or more ways on the processors
// this runs on), so the chunk is cut to the rows those sets hold, but not below 8 steps.
inline constexpr int32_t kShortestColumnChunk = 8;

// How many rows of a group's pixels (kLockstepLines neighbours of `pixelBytes` each in a row) the
// first-level cache holds at once, when rows are `rowBytes` apart.
constexpr std::ptrdiff_t GroupRowsHeld(std::ptrdiff_t rowBytes, int32_t pixelBytes) {
  constexpr std::ptrdiff_t kLine = 64;
  constexpr std::ptrdiff_t kWay = 64 * kLine;
  constexpr std::ptrdiff_t kWays = 8;
  // Rows start in `sets` sets, kSets / sets apart, and a row of the group takes linesPerRow
  // neighbouring sets from there.
  constexpr std::ptrdiff_t kSets = kWay / kLine;
  const std::ptrdiff_t sets = kWay / std::gcd(rowBytes < 0 ? -rowBytes : rowBytes, kWay);
  const std::ptrdiff_t linesPerRow =
      std::max<std::ptrdiff_t>(1, kLockstepLines * std::ptrdiff_t{pixelBytes} / kLine);
  return std::min(kSets, sets * linesPerRow) * kWays / linesPerRow;
}

// The chunk for lines in `direction` of an image whose rows are `rowBytes` apart, for pixels of
// `pixelBytes`.
constexpr int32_t StepChunk(Direction direction, std::ptrdiff_t rowBytes, int32_t pixelBytes) {
  if (!AlongColumns(direction)) return kStepChunk;
  const std::ptrdiff_t rowsHeld = GroupRowsHeld(rowBytes, pixelBytes);
  int32_t chunk = kStepChunk;
  while (chunk > kShortestColumnChunk && chunk > rowsHeld)
    chunk /= 2;
  return chunk;
}

// Whether lines in `direction` go in groups whose output is held back and written a row at a
// time (ColumnStaging), for an output image whose rows are `rowBytes` apart: along columns, where
// the first-level cache holds no more of the group's rows than the shortest chunk writes.
constexpr bool StagedColumns(Direction direction, std::ptrdiff_t rowBytes, int32_t pixelBytes) {
  return AlongColumns(direction) && GroupRowsHeld(rowBytes, pixelBytes) <= kShortestColumnChunk;
}

// What the position pass decided for each step, all the value pass needs besides the lengths,
// so that it decides nothing again. Step k of line i at [k * kLockstepLines + i], so that the
// position pass reads and writes the same step of neighbouring lines with one vector access. A
// lane without a line keeps harmless numbers; a step after the one that fills its line is never
// read. The fields after u0 hold for a short span only; masks are all ones where they hold.
struct StepPlans {
  static constexpr int32_t kSize = kStepChunk * kLockstepLines;

  alignas(32) double length[kSize];
  alignas(32) MaskWord kind[kSize];     // a StepKind
  alignas(32) double u0[kSize];         // 1 - filled: the part of the span the first pixel takes
  alignas(32) double piece[kSize];      // the part carried on: S - u1 where it reaches, else S - u0
  alignas(32) MaskWord reach[kSize];    // ShortSpanReaches
  alignas(32) MaskWord carried[kSize];  // piece > 0
};

// One step of one line of the plans, each field read where the value pass uses it.
class PlannedStep {
 public:
  PlannedStep(const StepPlans& plans, int32_t step, int32_t line)
      : plans_(plans), i_(step * kLockstepLines + line) {}

  [[gnu::always_inline]] StepKind Kind() const { return static_cast<StepKind>(plans_.kind[i_]); }
  [[gnu::always_inline]] double U0() const { return plans_.u0[i_]; }
  // u0 + 1, the sum the position pass forms, formed again here rather than kept: a chunk's plans
  // share the first-level cache with the rows the passes read and write.
  [[gnu::always_inline]] double U1() const { return U0() + 1.0; }
  [[gnu::always_inline]] double Piece() const { return plans_.piece[i_]; }
  [[gnu::always_inline]] MaskWord Reach() const { return plans_.reach[i_]; }
  [[gnu::always_inline]] MaskWord Carried() const { return plans_.carried[i_]; }

 private:
  const StepPlans& plans_;
  int32_t i_;
};

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
