// The expected frei0r output: DispatchStretch called directly on the same pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "render/StretchRenderRecord.h"

namespace morvane::frei0r::testing {

// Renders one width x height RGBA frame (straight alpha, no row padding) with `record`, the
// optional `layer` frame (same size) as the "Intensity Source", at full resolution.
std::vector<uint8_t> ReferenceRender(int width, int height, const StretchRenderRecord& record,
                                     const std::vector<uint8_t>& rgba,
                                     const std::vector<uint8_t>* layer);

}  // namespace morvane::frei0r::testing
