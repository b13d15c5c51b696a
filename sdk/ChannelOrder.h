// The host's pixels hold their channels as alpha, red, green, blue (PF_Pixel); image files and
// frei0r hosts hold red, green, blue, alpha.
#pragma once

namespace morvane {

// Channel c of an RGBA pixel is channel kArgbOfRgba[c] of the host's pixel.
inline constexpr int kArgbOfRgba[4] = {1, 2, 3, 0};

}  // namespace morvane
