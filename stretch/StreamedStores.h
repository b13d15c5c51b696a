// Output stores that go past the caches. A large frame's output is written once and not read
// again by the kernel, so keeping it in the caches only pushes out the source rows still to be
// read, and every cache line written is first fetched from memory. Stores that bypass the caches
// write whole lines straight to memory instead. The stored bits are the same.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "stretch/ChannelQuad.h"
#include "stretch/KernelIsa.h"
#include "stretch/PixelTraits.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Output images from this size on are written past the caches (a 4K frame at 32-bit float is
// 127 MiB; the last-level caches of the processors this runs on hold 8 to 32 MiB).
inline constexpr std::ptrdiff_t kStreamedOutputBytes = std::ptrdiff_t{64} << 20;

#if defined(__SSE2__)
inline constexpr bool kHasStreamedStores = true;
#else
inline constexpr bool kHasStreamedStores = false;
#endif

// Whether a variant's output pixels can be stored past the caches: whole 16-byte pixels.
template <PixelDepth Depth, ChannelVariant Variant>
inline constexpr bool kStreamablePixels = kHasStreamedStores && (Depth == PixelDepth::Depth32f) &&
                                          (kChannelCount<Variant> == 4);

// Whether the output of an image `height` rows of `rowBytes` bytes is stored past the caches:
// along rows only, where a line's pixels fill each cache line in turn (along columns each store
// would write part of a line), and for images that the caches cannot hold.
inline bool StreamsOutput(bool alongColumns, std::ptrdiff_t rowBytes, int32_t height) {
  const std::ptrdiff_t bytes = (rowBytes < 0 ? -rowBytes : rowBytes) * std::ptrdiff_t{height};
  return !alongColumns && bytes >= kStreamedOutputBytes;
}

// Stores `value` at `pixel` past the caches when the pixel is 16-byte aligned, else as StoreQuad.
template <PixelDepth Depth, ChannelVariant Variant>
[[gnu::always_inline]] inline void StreamQuad(ChannelType<Depth>* pixel, const ChannelQuad& value) {
  static_assert(kStreamablePixels<Depth, Variant>);
#if defined(__SSE2__)
  if ((reinterpret_cast<std::uintptr_t>(pixel) & 15) == 0) {
    _mm_stream_ps(pixel, NarrowQuad(value));
    return;
  }
#endif
  StoreQuad<Depth, true>(pixel, value);
}

// Orders the stores past the caches before any later store, so that the thread that learns the
// render is done (through a later store) sees every pixel.
inline void FinishStreamedStores() {
#if defined(__SSE2__)
  _mm_sfence();
#endif
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
