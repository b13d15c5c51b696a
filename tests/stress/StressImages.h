// Images for the stress tests: owned pixel blocks at any depth with padded rows, painted with
// values inside the depth's range, and compared byte for byte.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "sdk/HostInterface.h"
#include "stretch/KernelVariant.h"

namespace morvane::stress {

inline int32_t ChannelBytes(PixelDepth depth) {
  return depth == PixelDepth::Depth8 ? 1 : depth == PixelDepth::Depth16 ? 2 : 4;
}

class OwnedImage {
 public:
  OwnedImage(PixelDepth depth, int32_t width, int32_t height, int32_t paddingBytes)
      : rowbytes_(width * 4 * ChannelBytes(depth) + paddingBytes),
        bytes_(static_cast<size_t>(rowbytes_) * static_cast<size_t>(height), 0xA5) {
    world_.data = reinterpret_cast<PF_PixelPtr>(bytes_.data());
    world_.rowbytes = rowbytes_;
    world_.width = width;
    world_.height = height;
  }
  OwnedImage(const OwnedImage& other) : rowbytes_(other.rowbytes_), bytes_(other.bytes_) {
    world_ = other.world_;
    world_.data = reinterpret_cast<PF_PixelPtr>(bytes_.data());
  }
  OwnedImage& operator=(const OwnedImage&) = delete;

  // Fills every channel from a seed, inside the range of `depth`.
  void Paint(PixelDepth depth, uint32_t seed) {
    uint32_t state = seed * 2654435761u + 12345u;
    for (int32_t y = 0; y < world_.height; ++y) {
      uint8_t* row = bytes_.data() + static_cast<size_t>(y) * rowbytes_;
      for (int32_t c = 0; c < world_.width * 4; ++c) {
        state = state * 1664525u + 1013904223u;
        if (depth == PixelDepth::Depth8) {
          row[c] = static_cast<uint8_t>(state >> 24);
        } else if (depth == PixelDepth::Depth16) {
          const auto v = static_cast<uint16_t>((state >> 12) % 32769u);
          std::memcpy(row + 2 * c, &v, sizeof v);
        } else {
          const float v = static_cast<float>(state >> 8) / 16777216.0f * 1.2f - 0.1f;
          std::memcpy(row + 4 * c, &v, sizeof v);
        }
      }
    }
  }

  PF_EffectWorld& World() { return world_; }
  const std::vector<uint8_t>& Bytes() const { return bytes_; }

 private:
  int32_t rowbytes_;
  std::vector<uint8_t> bytes_;
  PF_EffectWorld world_{};
};

}  // namespace morvane::stress
