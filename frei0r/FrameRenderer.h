// Renders one frei0r frame through the 8-bit kernel dispatcher.
#pragma once

#include <cstdint>
#include <vector>

#include "frei0r/FreiSettings.h"

namespace morvane::frei0r {

// Owns the ARGB working images of one instance, so frames need no allocation after the first.
// One thread at a time per renderer, as frei0r guarantees per instance.
class FrameRenderer {
 public:
  FrameRenderer(unsigned width, unsigned height);

  // `input`, `layer` and `output` are width x height RGBA frames without row padding. A non-null
  // `layer` is the "Intensity Source"; `output` may not alias the others.
  void Render(const FreiSettings& settings, const uint8_t* input, const uint8_t* layer,
              uint8_t* output);

  unsigned Width() const { return width_; }
  unsigned Height() const { return height_; }

 private:
  unsigned width_;
  unsigned height_;
  std::vector<uint8_t> source_;
  std::vector<uint8_t> intensity_;
  std::vector<uint8_t> target_;
};

}  // namespace morvane::frei0r
