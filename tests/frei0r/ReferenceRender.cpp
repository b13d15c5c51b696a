#include "tests/frei0r/ReferenceRender.h"

#include <cstddef>

#include "render/DispatchStretch.h"

namespace morvane::frei0r::testing {
namespace {

// RGBA channel c lands in ARGB position (c + 1) % 4.
std::vector<uint8_t> ToArgb(const std::vector<uint8_t>& rgba) {
  std::vector<uint8_t> argb(rgba.size());
  for (std::size_t i = 0; i < rgba.size(); ++i)
    argb[i - i % 4 + (i % 4 + 1) % 4] = rgba[i];
  return argb;
}

std::vector<uint8_t> ToRgba(const std::vector<uint8_t>& argb) {
  std::vector<uint8_t> rgba(argb.size());
  for (std::size_t i = 0; i < argb.size(); ++i)
    rgba[i - i % 4 + (i % 4 + 3) % 4] = argb[i];
  return rgba;
}

PF_EffectWorld World(std::vector<uint8_t>& pixels, int width, int height) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(pixels.data());
  world.rowbytes = width * 4;
  world.width = width;
  world.height = height;
  return world;
}

}  // namespace

std::vector<uint8_t> ReferenceRender(int width, int height, const StretchRenderRecord& record,
                                     const std::vector<uint8_t>& rgba,
                                     const std::vector<uint8_t>* layer) {
  std::vector<uint8_t> source = ToArgb(rgba);
  std::vector<uint8_t> target(source.size());
  std::vector<uint8_t> intensity = layer ? ToArgb(*layer) : std::vector<uint8_t>{};
  PF_EffectWorld in = World(source, width, height);
  PF_EffectWorld out = World(target, width, height);
  PF_EffectWorld intensityWorld = World(intensity, width, height);
  StretchRenderRecord withLayer = record;
  withLayer.intensityLayer = layer ? &intensityWorld : nullptr;
  DispatchStretchForDepth(PixelDepth::Depth8, in, out, withLayer, 1.0f);
  return ToRgba(target);
}

}  // namespace morvane::frei0r::testing
