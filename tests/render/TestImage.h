// Small images with padded rows for render tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "sdk/HostInterface.h"
#include "stretch/KernelVariant.h"

namespace morvane::testing {

inline int32_t ChannelBytes(PixelDepth depth) {
  return depth == PixelDepth::Depth8 ? 1 : depth == PixelDepth::Depth16 ? 2 : 4;
}

struct TestImage {
  TestImage(PixelDepth depth, int32_t width, int32_t height, int32_t padBytes, uint32_t seed)
      : bytes(static_cast<std::size_t>((width * 4 * ChannelBytes(depth) + padBytes) * height)) {
    std::memset(&world, 0, sizeof world);
    world.width = width;
    world.height = height;
    world.rowbytes = width * 4 * ChannelBytes(depth) + padBytes;
    // A deterministic pattern of in-range values for every channel.
    uint32_t state = seed;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width * 4; ++x) {
        state = state * 1664525u + 1013904223u;
        uint8_t* at = bytes.data() + y * world.rowbytes + x * ChannelBytes(depth);
        if (depth == PixelDepth::Depth8) {
          *at = static_cast<uint8_t>(state >> 24);
        } else if (depth == PixelDepth::Depth16) {
          const uint16_t value = static_cast<uint16_t>((state >> 16) % 32769u);
          std::memcpy(at, &value, sizeof value);
        } else {
          const float value = static_cast<float>(state >> 8) / 16777216.0f;
          std::memcpy(at, &value, sizeof value);
        }
      }
    }
    world.data = reinterpret_cast<PF_PixelPtr>(bytes.data());
  }
  TestImage(const TestImage& other) : bytes(other.bytes), world(other.world) {
    world.data = reinterpret_cast<PF_PixelPtr>(bytes.data());
  }
  TestImage& operator=(const TestImage&) = delete;

  std::vector<uint8_t> bytes;
  PF_EffectWorld world;
};

}  // namespace morvane::testing
