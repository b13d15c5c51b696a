// Paints the header banner's picture. The effect does not run this: the generator writes its
// output into params/HeaderBanner.inc, which the module stores.
#pragma once

#include <cstdint>
#include <vector>

namespace morvane {

inline constexpr int32_t kHeaderBannerWidth = 320;
inline constexpr int32_t kHeaderBannerHeight = 17;

// 320 x 17 pixels, straight BGRA, rows following each other directly (21760 bytes).
std::vector<uint8_t> PaintHeaderBanner();

}  // namespace morvane
