// frei0r's RGBA byte order and the kernels' ARGB order, converted without loss.
#pragma once

#include <cstddef>
#include <cstdint>

namespace morvane::frei0r {

// `pixels` pixels of 4 bytes each; straight alpha both ways, values copied unchanged.
void RgbaToArgb(const uint8_t* rgba, uint8_t* argb, std::size_t pixels);
void ArgbToRgba(const uint8_t* argb, uint8_t* rgba, std::size_t pixels);

}  // namespace morvane::frei0r
