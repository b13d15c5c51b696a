// The four channels of a pixel as doubles in vector registers (four to a register with AVX2, two
// with SSE2), so that the variants that write several channels carry them through the resampler
// together. Every operation is the
// per-channel double operation itself (lane by lane, no fused or reordered arithmetic), so the
// results are exactly those of four scalar computations.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#if defined(__AVX2__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "stretch/KernelIsa.h"
#include "stretch/PixelTraits.h"

namespace morvane {
inline namespace MORVANE_ISA {

using DoublePair = double __attribute__((vector_size(16)));

// A quad is held in parts of one vector register each: one part of four lanes with AVX2, two of
// two lanes with SSE2.
#if defined(__AVX2__)
inline constexpr int kQuadParts = 1;
#else
inline constexpr int kQuadParts = 2;
#endif
inline constexpr int kPartLanes = 4 / kQuadParts;
using QuadPart = double __attribute__((vector_size(8 * kPartLanes)));
using PartMask = decltype(QuadPart{} < QuadPart{});

// Channels in memory order: alpha, red, green, blue.
struct ChannelQuad {
  QuadPart part[kQuadParts];

  [[gnu::always_inline]] double operator[](int i) const {
    return part[i / kPartLanes][i % kPartLanes];
  }
};

// `op` applied part by part.
template <typename Op>
[[gnu::always_inline]] inline ChannelQuad PartWise(Op op) {
  ChannelQuad result;
  for (int i = 0; i < kQuadParts; ++i)
    result.part[i] = op(i);
  return result;
}

[[gnu::always_inline]] inline ChannelQuad operator+(const ChannelQuad& a, const ChannelQuad& b) {
  return PartWise([&](int i) { return a.part[i] + b.part[i]; });
}
[[gnu::always_inline]] inline ChannelQuad operator-(const ChannelQuad& a, const ChannelQuad& b) {
  return PartWise([&](int i) { return a.part[i] - b.part[i]; });
}
[[gnu::always_inline]] inline ChannelQuad operator*(const ChannelQuad& a, const ChannelQuad& b) {
  return PartWise([&](int i) { return a.part[i] * b.part[i]; });
}
[[gnu::always_inline]] inline ChannelQuad operator*(const ChannelQuad& a, double s) {
  return PartWise([&](int i) { return a.part[i] * s; });
}
[[gnu::always_inline]] inline ChannelQuad operator/(const ChannelQuad& a, double s) {
  return PartWise([&](int i) { return a.part[i] / s; });
}

// A quad from its four channels.
[[gnu::always_inline]] inline ChannelQuad MakeQuad(double alpha, double red, double green,
                                                   double blue) {
#if defined(__AVX2__)
  return {{QuadPart{alpha, red, green, blue}}};
#else
  return {{QuadPart{alpha, red}, QuadPart{green, blue}}};
#endif
}

// The multipliers of one pixel: alpha on the alpha channel, colour on the other three.
[[gnu::always_inline]] inline ChannelQuad QuadMultipliers(double alpha, double colour) {
  return MakeQuad(alpha, colour, colour, colour);
}

// Lane masks: all ones in a lane where a comparison holds (both lanes of a mask made from
// scalars agree). Choosing between two values by a mask takes no branch, so a choice that
// depends on a value still being computed does not stall the processor on a mispredicted jump.
using LaneMask = decltype(DoublePair{} < DoublePair{});

// One lane of a mask as a word in memory.
using MaskWord = std::remove_cvref_t<decltype(LaneMask{}[0])>;

// The mask whose lanes all hold `word` (all ones or zero).
[[gnu::always_inline]] inline LaneMask SplatMask(MaskWord word) {
  return LaneMask{word, word};
}

[[gnu::always_inline]] inline DoublePair Broadcast(double x) {
  return DoublePair{x, x};
}
// A number as lanes to compare (a comparison of two then yields a LaneMask), or a vector of
// numbers as it is (compared lane by lane).
[[gnu::always_inline]] inline DoublePair AsLanes(double x) {
  return Broadcast(x);
}
template <typename Lanes>
[[gnu::always_inline]] inline Lanes AsLanes(Lanes x) {
  return x;
}
// 1 where the mask is set, else 0, as a number rather than a condition to branch on.
[[gnu::always_inline]] inline int32_t MaskCount(LaneMask m) {
  return static_cast<int32_t>(-m[0]);
}

// `a` where the mask is set, else `b`.
[[gnu::always_inline]] inline double Choose(LaneMask m, double a, double b) {
  return (m ? Broadcast(a) : Broadcast(b))[0];
}
// `a` where the mask is set, else +0.0.
[[gnu::always_inline]] inline double Keep(LaneMask m, double a) {
  return DoublePair(m & LaneMask(Broadcast(a)))[0];
}
[[gnu::always_inline]] inline double Keep(MaskWord w, double a) {
  return Keep(SplatMask(w), a);
}
[[gnu::always_inline]] inline ChannelQuad Keep(MaskWord w, const ChannelQuad& a) {
  const PartMask mask = PartMask{} + w;
  return PartWise([&](int i) { return QuadPart(mask & PartMask(a.part[i])); });
}

// A pixel's four channels converted to double.
template <PixelDepth Depth>
[[gnu::always_inline]] inline ChannelQuad LoadQuad(const ChannelType<Depth>* pixel) {
#if defined(__AVX2__)
  if constexpr (Depth == PixelDepth::Depth8) {
    int32_t word;
    std::memcpy(&word, pixel, 4);
    return {{QuadPart(_mm256_cvtepi32_pd(_mm_cvtepu8_epi32(_mm_cvtsi32_si128(word))))}};
  } else if constexpr (Depth == PixelDepth::Depth16) {
    return {{QuadPart(_mm256_cvtepi32_pd(
        _mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel)))))}};
  } else {
    return {{QuadPart(_mm256_cvtps_pd(_mm_loadu_ps(pixel)))}};
  }
#elif defined(__SSE2__)
  if constexpr (Depth == PixelDepth::Depth8) {
    int32_t word;
    std::memcpy(&word, pixel, 4);
    const __m128i zero = _mm_setzero_si128();
    const __m128i ints = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(word), zero), zero);
    return {{QuadPart(_mm_cvtepi32_pd(ints)),
             QuadPart(_mm_cvtepi32_pd(_mm_shuffle_epi32(ints, 0x0e)))}};
  } else if constexpr (Depth == PixelDepth::Depth16) {
    const __m128i ints = _mm_unpacklo_epi16(
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel)), _mm_setzero_si128());
    return {{QuadPart(_mm_cvtepi32_pd(ints)),
             QuadPart(_mm_cvtepi32_pd(_mm_shuffle_epi32(ints, 0x0e)))}};
  } else {
    const __m128 floats = _mm_loadu_ps(pixel);
    return {
        {QuadPart(_mm_cvtps_pd(floats)), QuadPart(_mm_cvtps_pd(_mm_movehl_ps(floats, floats)))}};
  }
#else
  return MakeQuad(static_cast<double>(pixel[0]), static_cast<double>(pixel[1]),
                  static_cast<double>(pixel[2]), static_cast<double>(pixel[3]));
#endif
}

}  // namespace MORVANE_ISA

namespace detail {
inline namespace MORVANE_ISA {

// The four channels as floats, in memory order.
#if defined(__AVX2__)
[[gnu::always_inline]] inline __m128 NarrowQuad(const ChannelQuad& v) {
  return _mm256_cvtpd_ps(__m256d(v.part[0]));
}
#elif defined(__SSE2__)
[[gnu::always_inline]] inline __m128 NarrowQuad(const ChannelQuad& v) {
  return _mm_movelh_ps(_mm_cvtpd_ps(__m128d(v.part[0])), _mm_cvtpd_ps(__m128d(v.part[1])));
}
#endif

// DepthTraits<Depth>::Store on the four channels, as 32-bit integers in memory order. For
// x >= 0.5 rounding half away from zero is floor(x + 0.5), and x + 0.5 is then exact or rounds
// without crossing a whole number, so truncating the sum gives the rounded value. Everything
// below 0.5 (negative values and NaN included) gives 0, which also covers 0.49999999999999994,
// whose sum with 0.5 would round up to 1. Values above white saturate to white, so every lane
// ends within 0 ... kWhite.
#if defined(__AVX2__)
template <int kWhite>
[[gnu::always_inline]] inline __m128i RoundQuad(const ChannelQuad& v) {
  const __m256d half = _mm256_set1_pd(0.5);
  const __m256d x = __m256d(v.part[0]);
  const __m256d kept =
      _mm256_and_pd(_mm256_cmp_pd(half, x, _CMP_LE_OQ), _mm256_min_pd(x, _mm256_set1_pd(kWhite)));
  return _mm256_cvttpd_epi32(_mm256_add_pd(kept, half));
}
#elif defined(__SSE2__)
template <int kWhite>
[[gnu::always_inline]] inline __m128i RoundPair(QuadPart v) {
  const __m128d half = _mm_set1_pd(0.5);
  const __m128d x = __m128d(v);
  const __m128d kept = _mm_and_pd(_mm_cmple_pd(half, x), _mm_min_pd(x, _mm_set1_pd(kWhite)));
  return _mm_cvttpd_epi32(_mm_add_pd(kept, half));
}
template <int kWhite>
[[gnu::always_inline]] inline __m128i RoundQuad(const ChannelQuad& v) {
  return _mm_unpacklo_epi64(RoundPair<kWhite>(v.part[0]), RoundPair<kWhite>(v.part[1]));
}
#endif

// Four rounded channels (each 0 ... 255) as the four low bytes, or (each 0 ... 32768) as the four
// low 16-bit words.
#if defined(__AVX2__)
[[gnu::always_inline]] inline __m128i PackBytes(__m128i ints) {
  // Every lane's low byte is its channel.
  return _mm_shuffle_epi8(
      ints, _mm_setr_epi8(0, 4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
}
[[gnu::always_inline]] inline __m128i PackWords(__m128i ints) {
  // 0 ... 32768 is kept as it is by the unsigned pack.
  return _mm_packus_epi32(ints, ints);
}
#elif defined(__SSE2__)
[[gnu::always_inline]] inline __m128i PackBytes(__m128i ints) {
  return _mm_packus_epi16(_mm_packs_epi32(ints, ints), ints);
}
[[gnu::always_inline]] inline __m128i PackWords(__m128i ints) {
  // 0 ... 32768 does not fit a signed 16-bit pack: shift into the signed range and back.
  const __m128i shifted = _mm_sub_epi32(ints, _mm_set1_epi32(32768));
  return _mm_xor_si128(_mm_packs_epi32(shifted, shifted), _mm_set1_epi16(int16_t(-32768)));
}
#endif

}  // namespace MORVANE_ISA
}  // namespace detail

inline namespace MORVANE_ISA {

// Stores the channels of `value` that a variant writes (all four, or red, green and blue),
// converted for the depth exactly as DepthTraits<Depth>::Store converts one channel.
template <PixelDepth Depth, bool kWithAlpha>
[[gnu::always_inline]] inline void StoreQuad(ChannelType<Depth>* pixel, const ChannelQuad& value) {
#if defined(__SSE2__)
  if constexpr (Depth == PixelDepth::Depth32f) {
    const __m128 floats = detail::NarrowQuad(value);
    if constexpr (kWithAlpha) {
      _mm_storeu_ps(pixel, floats);
    } else {
      float lanes[4];
      _mm_storeu_ps(lanes, floats);
      std::memcpy(pixel + 1, lanes + 1, 3 * sizeof(float));
    }
  } else if constexpr (Depth == PixelDepth::Depth8) {
    const __m128i bytes = detail::PackBytes(detail::RoundQuad<255>(value));
    const auto word = static_cast<uint32_t>(_mm_cvtsi128_si32(bytes));
    if constexpr (kWithAlpha) {
      std::memcpy(pixel, &word, 4);
    } else {
      uint8_t lanes[4];
      std::memcpy(lanes, &word, 4);
      std::memcpy(pixel + 1, lanes + 1, 3);
    }
  } else {
    const __m128i words = detail::PackWords(detail::RoundQuad<32768>(value));
    uint16_t lanes[8];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes), words);
    if constexpr (kWithAlpha) {
      std::memcpy(pixel, lanes, 4 * sizeof(uint16_t));
    } else {
      std::memcpy(pixel + 1, lanes + 1, 3 * sizeof(uint16_t));
    }
  }
#else
  for (int c = kWithAlpha ? 0 : 1; c < 4; ++c)
    pixel[c] = DepthTraits<Depth>::Store(value[c]);
#endif
}

}  // namespace MORVANE_ISA
}  // namespace morvane
