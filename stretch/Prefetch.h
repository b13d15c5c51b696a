// Requests that the processor fetch pixels before the kernel reads or writes them. They change
// no result, only when memory is waited on. Addresses are formed as integers: a request may
// point past a line's end, where it fetches nothing the kernel uses and cannot fault.
#pragma once

#include <cstddef>
#include <cstdint>

namespace morvane::detail {

inline constexpr std::ptrdiff_t kCacheLineBytes = 64;

// How far ahead of a chunk's first pixel a row is requested. Eight rows read side by side are
// more streams than the processor's own prefetcher keeps far enough ahead at 32-bit float;
// distances from 512 to 4096 bytes measured the same.
inline constexpr std::ptrdiff_t kRowAheadBytes = 2048;

// Requests `bytes` bytes of a row read in direction `sign` (+1 or -1), starting kRowAheadBytes
// beyond `from`.
inline void RequestRowAhead(const void* from, int sign, std::ptrdiff_t bytes) {
  const auto start = reinterpret_cast<std::uintptr_t>(from);
  for (std::ptrdiff_t d = 0; d < bytes; d += kCacheLineBytes)
    __builtin_prefetch(
        reinterpret_cast<const void*>(start + std::uintptr_t(sign * (kRowAheadBytes + d))));
}

}  // namespace morvane::detail
