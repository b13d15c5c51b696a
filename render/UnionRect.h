// Growing a result rectangle to cover another.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// An empty destination (left >= right or top >= bottom) becomes a copy of the
// source, empty or not; otherwise a non-empty source widens it to the bounding
// box of both, and an empty source leaves it unchanged.
void UnionRect(const PF_LRect& source, PF_LRect& destination);

}  // namespace morvane
