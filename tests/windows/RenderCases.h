// The render cases the Windows module is compared on: control settings, the
// synthetic input image and its conversion to the three pixel depths.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "hostsim/WorldStore.h"

namespace morvane::wincheck {

// A control value in the units a user sees, or a popup item by its name.
struct Setting {
  const char* control;
  std::variant<double, const char*> value;
};

struct RenderCase {
  const char* name;
  std::vector<Setting> settings;
  bool intensityFromLayer = false;  // "Intensity Source" is the input layer itself
};

// Cases on the synthetic image: every sine, cosine and power the kernels take
// (sine-wave curve, sine shading, distribution ranges above 1) and the other
// stages around them.
const std::vector<RenderCase>& SyntheticCases();
// Cases on the sample image.
const std::vector<RenderCase>& SampleCases();

// An 8-bit image, four channels per pixel in the order alpha, red, green, blue.
struct SourceImage {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> argb;
};

// A deterministic test picture: gradients, hashed noise and partly
// transparent areas, so that intensities and alpha cover their whole range.
SourceImage SyntheticImage(int32_t width, int32_t height);

// Reads the raw form written by tests/windows/render_cases.py: the magic
// "ARGB8RAW", width and height as 32-bit little-endian numbers, then the pixels.
SourceImage ReadSourceImage(const std::filesystem::path& path);

// Copies `image` into `world` (same size) at the world's depth: 16-bit white is
// 32768, 32-bit float white is 1.0.
void FillWorld(const SourceImage& image, const PF_EffectWorld& world, hostsim::PixelDepth depth);

std::span<const hostsim::PixelDepth> AllDepths();
const char* DepthName(hostsim::PixelDepth depth);

}  // namespace morvane::wincheck
