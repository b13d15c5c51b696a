// Box filter for rendering at reduced resolution, as a host does.
#pragma once

#include "cli/Pixels.h"

namespace morvane::cli {

// Reduces an image by `factor` (1..8) to ceil(W / factor) x ceil(H / factor).
// Each output pixel is, per channel, the mean of the pixels of its
// factor x factor box that lie inside the image, summed in double precision and
// rounded half away from zero at 8 and 16 bits. Factor 1 returns a copy.
ArgbImage Downsample(const ArgbImage& image, int factor);

}  // namespace morvane::cli
