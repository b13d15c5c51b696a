// The line routines are built twice on x86-64: once for the baseline instruction set and once,
// in files of their own, with AVX2, where the four channels of a pixel fit one register. Code
// whose machine code differs between the two builds lives in an inline namespace named after
// its build, so that the builds never share a symbol or a type; callers name it without the
// inner namespace.
#pragma once

#if defined(__AVX2__)
#define MORVANE_ISA isa_avx2
#else
#define MORVANE_ISA isa_baseline
#endif

#include <cstdint>
#include <utility>

namespace morvane {
inline namespace MORVANE_ISA {

// Doubles one vector register holds: four with AVX2, two with SSE2, one elsewhere.
#if defined(__AVX2__)
inline constexpr int32_t kRegisterDoubles = 4;
#elif defined(__SSE2__)
inline constexpr int32_t kRegisterDoubles = 2;
#else
inline constexpr int32_t kRegisterDoubles = 1;
#endif

// Stretch steps of one line the lengths pass measures side by side, one per lane: a register's
// four with AVX2. With two lanes to a register (SSE2) putting the lanes together costs more than
// they save, and the steps are measured one at a time.
inline constexpr int32_t kLengthLanes = kRegisterDoubles >= 4 ? kRegisterDoubles : 1;

// The vector {lane(0), lane(1), ...} of type Lanes (a plain number: lane(0)), put together in
// registers.
template <typename Lanes, typename Lane>
[[gnu::always_inline]] inline Lanes LanesOf(Lane lane) {
  constexpr int32_t kCount = static_cast<int32_t>(sizeof(Lanes) / sizeof(lane(0)));
  return [&]<int32_t... J>(std::integer_sequence<int32_t, J...>) {
    return Lanes{lane(J)...};
  }
  (std::make_integer_sequence<int32_t, kCount>());
}

}  // namespace MORVANE_ISA
}  // namespace morvane
