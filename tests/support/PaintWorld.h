// Test content for host worlds: every channel in range for its depth, varying from pixel to pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "hostsim/Host.h"

namespace morvane::testing {

// Fills every channel of `world` (a world of `depth`) from a seeded linear congruential sequence.
inline void PaintWorld(PF_EffectWorld& world, hostsim::PixelDepth depth, uint32_t seed) {
  uint32_t state = seed;
  const int32_t channelBytes = hostsim::PixelBytes(depth) / 4;
  for (int32_t y = 0; y < world.height; ++y) {
    auto* row = reinterpret_cast<uint8_t*>(world.data) + static_cast<ptrdiff_t>(y) * world.rowbytes;
    for (int32_t c = 0; c < world.width * 4; ++c) {
      state = state * 1664525u + 1013904223u;
      uint8_t* at = row + static_cast<ptrdiff_t>(c) * channelBytes;
      if (depth == hostsim::PixelDepth::Bits8) {
        *at = static_cast<uint8_t>(state >> 24);
      } else if (depth == hostsim::PixelDepth::Bits16) {
        const auto v = static_cast<uint16_t>((state >> 16) % 32769u);
        std::memcpy(at, &v, sizeof v);
      } else {
        const float v = static_cast<float>(state >> 8) / 16777216.0f;
        std::memcpy(at, &v, sizeof v);
      }
    }
  }
}

}  // namespace morvane::testing
