// The position passes of several lines in lockstep: step k of every line at once, one line per
// vector lane. A step's position depends on the one before through a chain of dependent
// arithmetic; independent lines side by side in the lanes of a register hide its latency, and
// the common steps take no branch at all.
#pragma once

#include <array>
#include <cstdint>

#if defined(__AVX2__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "stretch/KernelIsa.h"
#include "stretch/LinePositionMath.h"
#include "stretch/LineResampler.h"
#include "stretch/StepPlans.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Lines per vector register.
inline constexpr int32_t kLineLanes = kRegisterDoubles;
inline constexpr int32_t kLineVectors = kLockstepLines / kLineLanes;

using LineLanes = double __attribute__((vector_size(8 * kLineLanes)));
using LineMask = decltype(LineLanes{} < LineLanes{});

// TruncateNonNegative in every lane (0 <= x < 2^31).
[[gnu::always_inline]] inline LineLanes TruncateLanes(LineLanes x) {
#if defined(__AVX2__)
  return LineLanes(_mm256_round_pd(__m256d(x), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
#elif defined(__SSE2__)
  return LineLanes(_mm_cvtepi32_pd(_mm_cvttpd_epi32(__m128d(x))));
#else
  return LineLanes{TruncateNonNegative(x[0])};
#endif
}

// x where x > 0, else +0.0, in every lane (as LinePosition's NotBelowZero).
[[gnu::always_inline]] inline LineLanes NotBelowZeroLanes(LineLanes x) {
#if defined(__AVX2__)
  return LineLanes(_mm256_max_pd(__m256d(x), _mm256_setzero_pd()));
#elif defined(__SSE2__)
  return LineLanes(_mm_max_pd(__m128d(x), _mm_setzero_pd()));
#else
  return LineLanes{x[0] > 0.0 ? x[0] : 0.0};
#endif
}

// Bit i set where lane i of the mask is.
[[gnu::always_inline]] inline int32_t LaneBits(LineMask m) {
#if defined(__AVX2__)
  return _mm256_movemask_pd(__m256d(m));
#elif defined(__SSE2__)
  return _mm_movemask_pd(__m128d(m));
#else
  return static_cast<int32_t>(m[0] & 1);
#endif
}

// a where the mask is set, else b, in every lane.
[[gnu::always_inline]] inline LineLanes ChooseLanes(LineMask m, LineLanes a, LineLanes b) {
#if defined(__AVX2__)
  return LineLanes(_mm256_blendv_pd(__m256d(b), __m256d(a), __m256d(m)));
#else
  return m ? a : b;
#endif
}

// x where the mask is set, else +0.0, in every lane.
[[gnu::always_inline]] inline LineLanes KeepLanes(LineMask m, LineLanes x) {
  return LineLanes(m & LineMask(x));
}

// A step kind as the word a plan holds.
constexpr MaskWord KindWord(StepKind kind) {
  return static_cast<MaskWord>(kind);
}

// The position state of one lane's line between chunks of steps: its position, the output pixels
// left (a whole number), whether the lane has a line, and the steps the line took in the last
// chunk (fewer than the chunk when its output line filled, that step included; 0 for a lane
// without a line).
struct LockstepLine {
  double position = 0.0;
  double room = 0.0;
  bool active = false;
  int32_t steps = 0;
};
using LockstepLines = std::array<LockstepLine, kLockstepLines>;

// The start of a step in every lane: the line position's whole part, the part f of the current
// output pixel already filled (cut to 7 decimals), u0 = 1 - f and rest = S - u0.
struct LaneStepStart {
  LineLanes whole, f, u0, rest;
};
[[gnu::always_inline]] inline LaneStepStart StartLaneSteps(LineLanes position, LineLanes length) {
  const LineLanes whole = TruncateLanes(position);
  const LineLanes f = TenMillionths(TruncateLanes((position - whole) * 10000000.0));
  const LineLanes u0 = 1.0 - f;
  return {whole, f, u0, length - u0};
}

// Where the steps of a register of lines end, and the output pixels they write.
struct LaneStepEnd {
  LineLanes next;
  LineLanes written;
};

// The steps of `spanning` lanes, longer spans, which begin at `start`: they write whole output
// pixels while one more fits (the same additions as LinePosition::Step), then carry the rest; a
// remainder written at once adds one pixel. A lane stops counting once its line would fill: that
// step is taken alone. Other lanes keep `others`. Rare at the default controls, common with long
// stretches.
[[gnu::always_inline]] inline LaneStepEnd LongerSpanSteps(LineMask spanning,
                                                          const LaneStepStart& start,
                                                          LineLanes length, LineLanes roomBefore,
                                                          LaneStepEnd others) {
  const LineLanes one = LineLanes{} + 1.0;
  const LineMask wholePixels = spanning & (start.rest >= 1.0);
  // `next` is u + 1 for the u of the lanes still counting, added on in every lane so that the
  // chain from one pixel to the next is that one addition; `taken` counts the pixels so far.
  LineLanes consumed = start.u0;
  LineLanes next = consumed + 1.0;
  LineLanes taken = LineLanes{};
  LineLanes more = LineLanes{};
  for (LineMask counting = wholePixels & (next <= length) & (one < roomBefore);
       LaneBits(counting) != 0;
       counting = counting & (next <= length) & (one + taken < roomBefore)) {
    consumed = ChooseLanes(counting, next, consumed);
    taken = taken + 1.0;
    more = ChooseLanes(counting, taken, more);
    next = next + 1.0;
  }
  LineLanes end = (start.whole + 1.0) + more;
  end = (wholePixels & (length > consumed)) ? end + (length - consumed) : end;
  const LineMask atOnce = spanning & ~wholePixels;
  return {spanning ? (atOnce ? end + 1.0 : end) : others.next,
          spanning ? one + (atOnce ? one : more) : others.written};
}

// The position state of a register of lines.
struct LaneLines {
  LineLanes position;
  LineLanes room;
  LineMask running;
};

// The steps of the lanes in `lanes` (bit i for lane i) of `after`, each of which fills its line
// or comes close: taken again one at a time through LinePosition::Step from `before`. A lane
// whose line fills stops running, keeps its position and records its step count, k + 1, in
// `lines` (the register's first line). Rare, and kept out of line.
[[gnu::cold, gnu::noinline]] inline LaneLines FillingSteps(int32_t lanes, LaneLines before,
                                                           LineLanes length, LaneLines after,
                                                           int32_t k, LockstepLine* lines) {
  for (int32_t bits = lanes; bits != 0; bits &= bits - 1) {
    const int32_t l = __builtin_ctz(static_cast<unsigned>(bits));
    LinePosition scalar(before.position[l]);
    auto left = static_cast<int32_t>(before.room[l]);
    if (scalar.Step(length[l], left)) {
      after.running[l] = 0;
      lines[l].steps = k + 1;
      after.position[l] = before.position[l];
    } else {
      after.position[l] = scalar.linePosition();
      after.room[l] = left;
    }
  }
  return after;
}

// Runs `steps` position steps of every active line: step k of line i takes its length from
// plans.length and writes its plan (as LinePosition::Step decides it) to the other fields of
// `plans`, both at [k * kLockstepLines + i], and lines[i].steps becomes the steps it took. Every
// step runs in the lanes; only the step that fills a line is taken alone, through
// LinePosition::Step. A lane whose line filled is left as it was.
[[gnu::always_inline]] inline void LockstepPositionSteps(LockstepLines& lines, StepPlans& plans,
                                                         int32_t steps) {
  LaneLines lanes[kLineVectors];
  for (int32_t v = 0; v < kLineVectors; ++v) {
    const LockstepLine* first = &lines[v * kLineLanes];
    lanes[v] = {LanesOf<LineLanes>([&](int32_t l) { return first[l].position; }),
                LanesOf<LineLanes>([&](int32_t l) { return first[l].room; }),
                LanesOf<LineMask>([&](int32_t l) { return MaskWord{first[l].active ? -1 : 0}; })};
  }
  for (LockstepLine& line : lines)
    line.steps = line.active ? steps : 0;
  const LineLanes one = LineLanes{} + 1.0;
  for (int32_t k = 0; k < steps; ++k) {
#pragma GCC unroll 4
    for (int32_t v = 0; v < kLineVectors; ++v) {
      const int32_t at = k * kLockstepLines + v * kLineLanes;
      LineLanes length;
      __builtin_memcpy(&length, plans.length + at, sizeof length);
      LaneLines& lane = lanes[v];
      const LineLanes before = lane.position;
      const LineLanes roomBefore = lane.room;
      const LaneStepStart start = StartLaneSteps(before, length);
      const auto [whole, f, u0, rest] = start;
      const LineMask inside = EndsInside(length, f);
      const LineMask shortSpan = ShortSpanMask(length, rest);
      const LineLanes u1 = u0 + 1.0;
      const LineMask reach = ShortSpanReaches(rest, u1, length);
      const LineLanes tail = reach ? NotBelowZeroLanes(length - u1) : NotBelowZeroLanes(rest);
      const LineLanes piece = length - (reach ? u1 : u0);
      const LineMask carried = piece > 0.0;
      const LineMask kind = ~inside & (shortSpan ? LineMask{} + KindWord(StepKind::ShortSpan)
                                                 : LineMask{} + KindWord(StepKind::Longer));
      __builtin_memcpy(plans.kind + at, &kind, sizeof kind);
      __builtin_memcpy(plans.u0 + at, &u0, sizeof u0);
      __builtin_memcpy(plans.piece + at, &piece, sizeof piece);
      __builtin_memcpy(plans.reach + at, &reach, sizeof reach);
      __builtin_memcpy(plans.carried + at, &carried, sizeof carried);
      const LineLanes spanEnd = ((whole + 1.0) + KeepLanes(reach, one)) + tail;
      LaneStepEnd end{inside ? before + length : spanEnd,
                      KeepLanes(~inside, one + KeepLanes(reach, one))};
      const LineMask spanning = lane.running & ~inside & ~shortSpan;
      if (LaneBits(spanning) != 0) end = LongerSpanSteps(spanning, start, length, roomBefore, end);
      const LineLanes roomAfter = roomBefore - end.written;
      const LaneLines stepped{lane.running ? end.next : before,
                              lane.running ? roomAfter : roomBefore, lane.running};
      const int32_t alone = LaneBits(lane.running & ~inside & (roomAfter <= 0.0));
      lane = alone == 0 ? stepped
                        : FillingSteps(alone, lane, length, stepped, k, &lines[v * kLineLanes]);
    }
  }
  for (int32_t v = 0; v < kLineVectors; ++v) {
    for (int32_t l = 0; l < kLineLanes; ++l) {
      lines[v * kLineLanes + l].position = lanes[v].position[l];
      lines[v * kLineLanes + l].room = lanes[v].room[l];
    }
  }
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
