#include "frei0r/PixelOrder.h"

namespace morvane::frei0r {

void RgbaToArgb(const uint8_t* rgba, uint8_t* argb, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, rgba += 4, argb += 4) {
    argb[0] = rgba[3];
    argb[1] = rgba[0];
    argb[2] = rgba[1];
    argb[3] = rgba[2];
  }
}

void ArgbToRgba(const uint8_t* argb, uint8_t* rgba, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, argb += 4, rgba += 4) {
    rgba[0] = argb[1];
    rgba[1] = argb[2];
    rgba[2] = argb[3];
    rgba[3] = argb[0];
  }
}

}  // namespace morvane::frei0r
