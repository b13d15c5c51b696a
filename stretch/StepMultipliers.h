// The multipliers shading and the transparent fade put on each stretch step.
#pragma once

#include <cstdint>

#include "stretch/KernelIsa.h"
#include "stretch/LineResampler.h"
#include "stretch/PixelTraits.h"
#include "stretch/Shading.h"
#include "stretch/StretchCall.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Whether the step multipliers can differ from 1.0 for a variant: a shading table with an entry
// other than 1.0 routed to channels the variant writes, or the Transparent fade on alpha. When
// they cannot, the kernel leaves the multiplications by 1.0 out, which changes no value.
template <ChannelVariant Variant>
bool MultipliersAct(const StretchCall& call) {
  if (call.edgeMode == EdgeMode::Transparent && kWritesAlpha<Variant>) return true;
  bool unit = true;
  for (int32_t i = 0; i < call.shading.size; ++i)
    unit = unit && call.shading.entries[i] == 1.0;
  if (unit) return false;
  return call.shadingChannel == ShadingChannel::RGB ? Variant != ChannelVariant::Alpha
                                                    : kWritesAlpha<Variant>;
}

// The multipliers of one channel set: alpha on alpha, colour on red, green and blue.
template <ChannelVariant Variant>
[[gnu::always_inline]] inline ResampledValue<Variant> ChannelMultipliers(double alpha,
                                                                         double colour) {
  if constexpr (kChannelCount<Variant> == 1) {
    return VariantTraits<Variant>::kChannels[0] == kAlpha ? alpha : colour;
  } else {
    return QuadMultipliers(alpha, colour);
  }
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
