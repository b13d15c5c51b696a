#include "hostsim/WorldStore.h"

#include <cstring>
#include <stdexcept>

namespace hostsim {

int32_t PixelBytes(PixelDepth depth) {
  switch (depth) {
    case PixelDepth::Bits8:
      return 4;
    case PixelDepth::Bits16:
      return 8;
    case PixelDepth::Float32:
      return 16;
  }
  return 4;
}

PF_PixelFormat AeFormatOf(PixelDepth depth) {
  switch (depth) {
    case PixelDepth::Bits8:
      return PF_PixelFormat_ARGB32;
    case PixelDepth::Bits16:
      return PF_PixelFormat_ARGB64;
    case PixelDepth::Float32:
      return PF_PixelFormat_ARGB128;
  }
  return PF_PixelFormat_INVALID;
}

PrPixelFormat PremiereFormatOf(PixelDepth depth) {
  switch (depth) {
    case PixelDepth::Bits8:
      return PrPixelFormat_ARGB_4444_8u;
    case PixelDepth::Bits16:
      return PrPixelFormat_ARGB_4444_16u;
    case PixelDepth::Float32:
      return PrPixelFormat_ARGB_4444_32f;
  }
  return PrPixelFormat_Invalid;
}

void WorldStore::Allocate(PF_EffectWorld* world, int32_t width, int32_t height, PixelDepth depth,
                          int32_t rowPadding) {
  if (width < 0 || height < 0 || rowPadding < 0) throw std::invalid_argument("world size");
  const int32_t rowbytes = width * PixelBytes(depth) + rowPadding;
  const size_t size = static_cast<size_t>(rowbytes) * static_cast<size_t>(height);
  auto bytes = std::make_unique<uint8_t[]>(size > 0 ? size : 1);
  std::memset(bytes.get(), 0, size);

  std::memset(world, 0, sizeof *world);
  world->data = reinterpret_cast<decltype(world->data)>(bytes.get());
  world->rowbytes = rowbytes;
  world->width = width;
  world->height = height;
  world->extent_hint = {0, 0, width, height};
  world->pix_aspect_ratio = {1, 1};

  const void* key = bytes.get();
  const std::lock_guard lock(mutex_);
  pixels_[key] =
      Pixels{std::move(bytes), nullptr, AeFormatOf(depth), PremiereFormatOf(depth), depth};
}

PF_EffectWorld* WorldStore::Create(int32_t width, int32_t height, PixelDepth depth,
                                   int32_t rowPadding) {
  auto record = std::make_unique<PF_EffectWorld>();
  Allocate(record.get(), width, height, depth, rowPadding);
  PF_EffectWorld* world = record.get();
  const std::lock_guard lock(mutex_);
  pixels_.at(world->data).ownedRecord = std::move(record);
  return world;
}

bool WorldStore::Dispose(const PF_EffectWorld* world) {
  if (world == nullptr) return false;
  std::unique_ptr<PF_EffectWorld> record;  // freed after the lock is released
  const std::lock_guard lock(mutex_);
  const auto it = pixels_.find(world->data);
  if (it == pixels_.end()) return false;
  record = std::move(it->second.ownedRecord);
  pixels_.erase(it);
  return true;
}

void WorldStore::OverrideFormats(const PF_EffectWorld* world, PF_PixelFormat ae,
                                 PrPixelFormat premiere) {
  const std::lock_guard lock(mutex_);
  Pixels& p = pixels_.at(world->data);
  p.aeFormat = ae;
  p.premiereFormat = premiere;
}

const WorldStore::Pixels* WorldStore::Find(const PF_EffectWorld* world) const {
  if (world == nullptr) return nullptr;
  const auto it = pixels_.find(world->data);
  return it == pixels_.end() ? nullptr : &it->second;
}

std::optional<PF_PixelFormat> WorldStore::AeFormat(const PF_EffectWorld* world) const {
  const std::lock_guard lock(mutex_);
  const Pixels* p = Find(world);
  return p != nullptr ? std::optional(p->aeFormat) : std::nullopt;
}

std::optional<PrPixelFormat> WorldStore::PremiereFormat(const PF_EffectWorld* world) const {
  const std::lock_guard lock(mutex_);
  const Pixels* p = Find(world);
  return p != nullptr ? std::optional(p->premiereFormat) : std::nullopt;
}

std::optional<PixelDepth> WorldStore::Depth(const PF_EffectWorld* world) const {
  const std::lock_guard lock(mutex_);
  const Pixels* p = Find(world);
  return p != nullptr ? std::optional(p->depth) : std::nullopt;
}

size_t WorldStore::LiveCount() const {
  const std::lock_guard lock(mutex_);
  return pixels_.size();
}

}  // namespace hostsim
