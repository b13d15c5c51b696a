// The arithmetic on the resampler's line position, written for a short dependency chain: every
// stretch step starts from the position the previous step left, so the latency of these few
// operations bounds the speed of a whole line. Each function returns exactly the value of the
// plain formula named in its comment.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace morvane {

// static_cast<double>(static_cast<int32_t>(x)) for 0 <= x < 2^31. The conversions are done
// inside the vector registers, which is much faster than a round trip through an integer
// register.
[[gnu::always_inline]] inline double TruncateNonNegative(double x) {
#if defined(__SSE2__)
  return _mm_cvtsd_f64(_mm_cvtepi32_pd(_mm_cvttpd_epi32(_mm_set_sd(x))));
#else
  return static_cast<double>(static_cast<int32_t>(x));
#endif
}

// 1e-7 split into a head of 29 significant bits and the double nearest to the rest.
inline constexpr double kTenMillionthHead = 0x1.ad7f29ap-24;
inline constexpr double kTenMillionthTail = 0x1.795e90af0f4cap-53;

// n / 10000000.0 for every whole n in 0 ... 9999999, without a division. n * head is exact (24
// and 29 significant bits), and head + tail matches 1e-7 to about 2^-104, so the sum is within
// 2^-80 of n / 10^7. A quotient n / 10^7 that is not itself a double lies at least
// ulp / (2 * 10^7) away from every rounding boundary, far more than that error, so the sum
// rounds to the correctly rounded quotient (the tests check all ten million values).
// (The same holds lane by lane for a vector of such numbers.)
template <typename Number>
[[gnu::always_inline]] inline Number TenMillionths(Number n) {
  return n * kTenMillionthHead + n * kTenMillionthTail;
}

// floor(fraction * 10000000.0) / 10000000.0 for 0 <= fraction < 1: the part of an output pixel
// already filled, cut (not rounded) to 7 decimals. The product is below 10^7, so the floor is
// its truncation.
[[gnu::always_inline]] inline double CutToSevenDecimals(double fraction) {
  return TenMillionths(TruncateNonNegative(fraction * 10000000.0));
}

}  // namespace morvane
