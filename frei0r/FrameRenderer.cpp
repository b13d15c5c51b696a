#include "frei0r/FrameRenderer.h"

#include <cstddef>

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

FrameRenderer::FrameRenderer(unsigned width, unsigned height)
    : width_(width),
      height_(height),
      source_(std::size_t{width} * height * 4),
      target_(std::size_t{width} * height * 4) {}

void FrameRenderer::Render(const FreiSettings& settings, const uint8_t* input, const uint8_t* layer,
                           uint8_t* output) {
  const std::size_t pixels = std::size_t{width_} * height_;
  RgbaToArgb(input, source_.data(), pixels);

  const PF_EffectWorld in = World(source_.data(), width_, height_);
  PF_EffectWorld out = World(target_.data(), width_, height_);
  PF_EffectWorld intensityWorld{};
  StretchRenderRecord record = settings.Record();
  if (layer != nullptr) {
    intensity_.resize(pixels * 4);
    RgbaToArgb(layer, intensity_.data(), pixels);
    intensityWorld = World(intensity_.data(), width_, height_);
    record.intensityLayer = &intensityWorld;
  }

  // frei0r has no reduced-resolution rendering: every frame is at full resolution.
  DispatchStretch<PixelDepth::Depth8>(in, out, record, 1.0f);
  ArgbToRgba(target_.data(), output, pixels);
}

}  // namespace morvane::frei0r
