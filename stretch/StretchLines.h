// The line routines behind every StretchKernel. Included only by the files that build the
// family (once per instruction set); depth, intensity origin, channel variant, edge mode and
// whether multipliers act are template parameters, so the per-step loop has no branch on any of
// them.
#pragma once

#include "stretch/LineScheduler.h"
#include "stretch/StretchKernel.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode>
LineRangeFn<Depth> SelectLines(bool multiply) {
  return multiply ? &StretchLines<Depth, Origin, Variant, Mode, true>
                  : &StretchLines<Depth, Origin, Variant, Mode, false>;
}

// The line routine for a prepared call: specialised by edge mode and by whether multipliers act.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
LineRangeFn<Depth> SelectLines(const StretchCall& call) {
  const bool multiply = MultipliersAct<Variant>(call);
  switch (call.edgeMode) {
    case EdgeMode::Mirror:
      return SelectLines<Depth, Origin, Variant, EdgeMode::Mirror>(multiply);
    case EdgeMode::RepeatLast:
      return SelectLines<Depth, Origin, Variant, EdgeMode::RepeatLast>(multiply);
    case EdgeMode::Transparent:
      return SelectLines<Depth, Origin, Variant, EdgeMode::Transparent>(multiply);
    case EdgeMode::Wrap:
      break;
  }
  return SelectLines<Depth, Origin, Variant, EdgeMode::Wrap>(multiply);
}

// The line routines of this build for every intensity origin and channel variant.
template <PixelDepth Depth>
constexpr LineRoutines<Depth> MakeLineRoutines() {
  using O = IntensityOrigin;
  using V = ChannelVariant;
  return {{&SelectLines<Depth, O::SelfIntensity, V::Luma>,
           &SelectLines<Depth, O::SelfIntensity, V::Red>,
           &SelectLines<Depth, O::SelfIntensity, V::Green>,
           &SelectLines<Depth, O::SelfIntensity, V::Blue>,
           &SelectLines<Depth, O::SelfIntensity, V::Alpha>,
           &SelectLines<Depth, O::SelfIntensity, V::LumaNoAlpha>},
          {&SelectLines<Depth, O::LayerIntensity, V::Luma>,
           &SelectLines<Depth, O::LayerIntensity, V::Red>,
           &SelectLines<Depth, O::LayerIntensity, V::Green>,
           &SelectLines<Depth, O::LayerIntensity, V::Blue>,
           &SelectLines<Depth, O::LayerIntensity, V::Alpha>,
           &SelectLines<Depth, O::LayerIntensity, V::LumaNoAlpha>}};
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail

// Defines the getter GETTER<DEPTH>() of this build's line routines.
#define MORVANE_DEFINE_LINE_ROUTINES(GETTER, DEPTH)                                     \
  template <>                                                                           \
  const LineRoutines<DEPTH>& GETTER<DEPTH>() {                                          \
    static constexpr LineRoutines<DEPTH> kRoutines = detail::MakeLineRoutines<DEPTH>(); \
    return kRoutines;                                                                   \
  }
