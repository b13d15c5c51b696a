// The pixel depth that a host's pixel format stands for.
#pragma once

#include <optional>

#include "sdk/HostInterface.h"
#include "stretch/KernelVariant.h"

namespace morvane {

// After Effects' world formats: the three ARGB layouts; anything else has none.
std::optional<PixelDepth> DepthOfWorldFormat(PF_PixelFormat format);

// Premiere's formats: the three ARGB layouts it was asked for at global set-up.
std::optional<PixelDepth> DepthOfPremiereFormat(PrPixelFormat format);

}  // namespace morvane
