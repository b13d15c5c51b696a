#include "frei0r/PixelOrder.h"

#include "sdk/ChannelOrder.h"

namespace morvane::frei0r {

void RgbaToArgb(const uint8_t* rgba, uint8_t* argb, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, rgba += 4, argb += 4)
    for (int c = 0; c < 4; ++c)
      argb[kArgbOfRgba[c]] = rgba[c];
}

void ArgbToRgba(const uint8_t* argb, uint8_t* rgba, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, argb += 4, rgba += 4)
    for (int c = 0; c < 4; ++c)
      rgba[c] = argb[kArgbOfRgba[c]];
}

}  // namespace morvane::frei0r
