// Images owned by the simulated host, at the three depths the effect renders,
// and the pixel format the host reports for each.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "sdk/HostInterface.h"

namespace hostsim {

enum class PixelDepth { Bits8, Bits16, Float32 };

// Bytes of one ARGB pixel at `depth`.
int32_t PixelBytes(PixelDepth depth);
// The format After Effects reports (PF_PixelFormat_ARGB32/64/128) and the one
// Premiere reports (PrPixelFormat_ARGB_4444_8u/16u/32f).
PF_PixelFormat AeFormatOf(PixelDepth depth);
PrPixelFormat PremiereFormatOf(PixelDepth depth);

class WorldStore {
 public:
  // A zero-filled world owned by the store; each row is padded by `rowPadding` bytes.
  PF_EffectWorld* Create(int32_t width, int32_t height, PixelDepth depth, int32_t rowPadding = 0);
  // Fills a caller-owned record with newly allocated pixels (PF_NewWorld).
  void Allocate(PF_EffectWorld* world, int32_t width, int32_t height, PixelDepth depth,
                int32_t rowPadding = 0);
  // Frees the pixels of a world made by Create or Allocate; false if unknown.
  bool Dispose(const PF_EffectWorld* world);

  // Makes the host report other formats for this world (e.g. one the effect
  // does not know).
  void OverrideFormats(const PF_EffectWorld* world, PF_PixelFormat ae, PrPixelFormat premiere);
  std::optional<PF_PixelFormat> AeFormat(const PF_EffectWorld* world) const;
  // The depth the world was made with, whatever formats it reports.
  std::optional<PixelDepth> Depth(const PF_EffectWorld* world) const;
  std::optional<PrPixelFormat> PremiereFormat(const PF_EffectWorld* world) const;
  size_t LiveCount() const;

 private:
  struct Pixels {
    std::unique_ptr<uint8_t[]> bytes;
    std::unique_ptr<PF_EffectWorld> ownedRecord;  // set for worlds made by Create
    PF_PixelFormat aeFormat;
    PrPixelFormat premiereFormat;
    PixelDepth depth;
  };
  const Pixels* Find(const PF_EffectWorld* world) const;  // caller holds mutex_

  mutable std::mutex mutex_;
  std::map<const void*, Pixels> pixels_;  // keyed by the world's data pointer
};

}  // namespace hostsim
