#include "frei0r/FrameRenderer.h"

#include <cstddef>
#include <vector>

#include "frei0r/PixelOrder.h"
#include "render/DispatchStretch.h"

namespace morvane::frei0r {
namespace {

PF_EffectWorld World(uint8_t* data, unsigned width, unsigned height) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(data);
  world.rowbytes = static_cast<A_long>(width * 4);
  world.width = static_cast<A_long>(width);
  world.height = static_cast<A_long>(height);
  return world;
}

}  // namespace

void FrameRenderer::Render(const StretchRenderRecord& record, const uint8_t* input,
                           const uint8_t* layer, uint8_t* output) const {
  const std::size_t pixels = std::size_t{width_} * height_;
  std::vector<uint8_t> source(pixels * 4);
  std::vector<uint8_t> target(pixels * 4);
  std::vector<uint8_t> intensity;
  RgbaToArgb(input, source.data(), pixels);

  const PF_EffectWorld in = World(source.data(), width_, height_);
  PF_EffectWorld out = World(target.data(), width_, height_);
  PF_EffectWorld intensityWorld{};
  StretchRenderRecord withLayer = record;
  if (layer != nullptr) {
    intensity.resize(pixels * 4);
    RgbaToArgb(layer, intensity.data(), pixels);
    intensityWorld = World(intensity.data(), width_, height_);
    withLayer.intensityLayer = &intensityWorld;
  }

  // frei0r has no reduced-resolution rendering: every frame is at full resolution.
  DispatchStretch<PixelDepth::Depth8>(in, out, withLayer, 1.0f);
  ArgbToRgba(target.data(), output, pixels);
}

}  // namespace morvane::frei0r
