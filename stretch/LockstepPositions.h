// The position passes of several lines in lockstep: step k of every line at once, one line per
// vector lane. A step's position depends on the one before through a chain of dependent
// arithmetic; independent lines side by side in the lanes of a register hide its latency, and
// the common steps take no branch at all.
#pragma once

#include <cstdint>

#if defined(__AVX2__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "stretch/LinePositionMath.h"
#include "stretch/LineResampler.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Lines whose position passes run in lockstep.
inline constexpr int32_t kLockstepLines = 8;

// Lines per vector register: four with AVX2, two with SSE2, one elsewhere.
#if defined(__AVX2__)
inline constexpr int32_t kLineLanes = 4;
#elif defined(__SSE2__)
inline constexpr int32_t kLineLanes = 2;
#else
inline constexpr int32_t kLineLanes = 1;
#endif
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

[[gnu::always_inline]] inline LineLanes KeepLanes(LineMask m, LineLanes x) {
  return LineLanes(m & LineMask(x));
}

// The position state of kLockstepLines lines between chunks of steps: the position, the output
// pixels left (a whole number) and whether the lane has a line.
struct LockstepLines {
  double position[kLockstepLines] = {};
  double room[kLockstepLines] = {};
  bool active[kLockstepLines] = {};
};

// Runs `steps` position steps of every active line: step k of line i reads its length from
// lengths[k * kLockstepLines + i] and writes the part of the output pixel it starts with (as
// LinePosition::Step) to filled[k * kLockstepLines + i]. counts[i] becomes the steps the line
// took, fewer than `steps` when its output line filled (that step included); 0 for an inactive
// lane. The steps every lane takes alike (a step inside one output pixel, or one reaching at most
// two) run in the lanes; a lane with a longer step, or whose line fills, takes that step alone
// through LinePosition::Step. A lane whose line filled is left as it was.
[[gnu::always_inline]] inline void LockstepPositionSteps(LockstepLines& lines,
                                                         const double* lengths, double* filled,
                                                         int32_t steps, int32_t* counts) {
  LineLanes position[kLineVectors];
  LineLanes room[kLineVectors];
  LineMask running[kLineVectors];
  for (int32_t v = 0; v < kLineVectors; ++v) {
    for (int32_t l = 0; l < kLineLanes; ++l) {
      const int32_t line = v * kLineLanes + l;
      position[v][l] = lines.position[line];
      room[v][l] = lines.room[line];
      running[v][l] = lines.active[line] ? -1 : 0;
      counts[line] = lines.active[line] ? steps : 0;
    }
  }
  const LineLanes one = LineLanes{} + 1.0;
  for (int32_t k = 0; k < steps; ++k) {
    const double* stepLengths = lengths + k * kLockstepLines;
    double* stepFilled = filled + k * kLockstepLines;
#pragma GCC unroll 4
    for (int32_t v = 0; v < kLineVectors; ++v) {
      LineLanes length;
      __builtin_memcpy(&length, stepLengths + v * kLineLanes, sizeof length);
      const LineLanes before = position[v];
      const LineLanes roomBefore = room[v];
      const LineLanes whole = TruncateLanes(before);
      const LineLanes f = TenMillionths(TruncateLanes((before - whole) * 10000000.0));
      __builtin_memcpy(stepFilled + v * kLineLanes, &f, sizeof f);
      const LineMask inside = (length + f) < 1.0;
      const LineLanes u0 = 1.0 - f;
      const LineLanes rest = length - u0;
      const LineMask shortSpan = (length <= 2.0) & ~((rest >= kWrittenAtOnce) & (1.0 > rest));
      const LineLanes u1 = u0 + 1.0;
      const LineMask reach = (rest >= 1.0) & (u1 <= length);
      const LineLanes tail = reach ? NotBelowZeroLanes(length - u1) : NotBelowZeroLanes(rest);
      const LineLanes spanEnd = ((whole + 1.0) + KeepLanes(reach, one)) + tail;
      const LineLanes roomAfter = roomBefore - KeepLanes(~inside, one + KeepLanes(reach, one));
      position[v] = running[v] ? (inside ? before + length : spanEnd) : before;
      room[v] = running[v] ? roomAfter : roomBefore;
      const LineMask alone = running[v] & ~inside & (~shortSpan | (roomAfter <= 0.0));
      if (__builtin_expect(LaneBits(alone) != 0, 0)) {
        for (int32_t l = 0; l < kLineLanes; ++l) {
          if (alone[l] == 0) continue;
          LinePosition scalar(before[l]);
          auto left = static_cast<int32_t>(roomBefore[l]);
          double unused;
          if (scalar.Step(length[l], unused, left)) {
            running[v][l] = 0;
            counts[v * kLineLanes + l] = k + 1;
            position[v][l] = before[l];
          } else {
            position[v][l] = scalar.linePosition();
            room[v][l] = left;
          }
        }
      }
    }
  }
  for (int32_t v = 0; v < kLineVectors; ++v) {
    for (int32_t l = 0; l < kLineLanes; ++l) {
      lines.position[v * kLineLanes + l] = position[v][l];
      lines.room[v * kLineLanes + l] = room[v][l];
    }
  }
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
