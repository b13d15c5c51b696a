// Renders one frei0r frame through the 8-bit kernel dispatcher.
#pragma once

#include <cstdint>

#include "render/StretchRenderRecord.h"

namespace morvane::frei0r {

// Renders frames of one size. Every call works on its own ARGB images: MLT's sliced rendering
// can call one instance from several threads at once, contrary to frei0r's rule, so nothing
// mutable is kept between calls.
class FrameRenderer {
 public:
  FrameRenderer(unsigned width, unsigned height) : width_(width), height_(height) {}

  // `input`, `layer` and `output` are width x height RGBA frames without row padding. A non-null
  // `layer` is the "Intensity Source". `record` comes from the instance's settings.
  void Render(const StretchRenderRecord& record, const uint8_t* input, const uint8_t* layer,
              uint8_t* output) const;

  unsigned Width() const { return width_; }
  unsigned Height() const { return height_; }

 private:
  unsigned width_;
  unsigned height_;
};

}  // namespace morvane::frei0r
