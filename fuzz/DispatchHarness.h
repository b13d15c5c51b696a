// Runs DispatchStretch on images allocated to the exact byte and checks what the render may and
// may not touch. Shared by the dispatch fuzz target and the regression tests of its findings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "render/StretchRenderRecord.h"
#include "stretch/KernelVariant.h"

namespace morvane::fuzz {

// How the pixels of the input and the layer are filled.
enum class PixelFill : uint8_t {
  Noise,     // every channel random within the depth's range
  Black,     // all channels 0
  White,     // all channels at the depth's white
  Extremes,  // 0, white and (float) NaN, infinities, huge, negative and denormal values
};

struct WorldSpec {
  int32_t width = 1;
  int32_t height = 1;
  int32_t paddingChannels = 0;  // channel elements after the last pixel of every row
  int32_t originX = 0;
  int32_t originY = 0;
};

struct DispatchCase {
  PixelDepth depth = PixelDepth::Depth8;
  WorldSpec input;
  WorldSpec output;
  std::optional<WorldSpec> layer;   // none: the record carries no intensity layer
  bool layerWithoutPixels = false;  // a layer record whose data is null
  StretchRenderRecord record{};     // intensityLayer is set by the harness
  float scale = 1.0f;
  PixelFill fill = PixelFill::Noise;
  uint32_t seed = 0;
};

// Renders the case once. Returns what went wrong beyond what the sanitizers catch by
// themselves: bytes written into row padding, into the input or into the layer, and 16-bit
// channels above 32768. Empty when the render behaved.
std::vector<std::string> RunDispatchCase(const DispatchCase& c);

// The case in one line, for reports.
std::string DescribeDispatchCase(const DispatchCase& c);

}  // namespace morvane::fuzz
