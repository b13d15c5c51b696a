// Kernel selection: one frame's record turned into calls of the StretchKernel family.
#pragma once

#include "render/StretchRenderRecord.h"
#include "sdk/HostInterface.h"
#include "stretch/KernelVariant.h"

namespace morvane {

// Renders `output` from `input` at one pixel depth: copies the input where the "Channels" mode
// leaves channels untouched (everything when "Morvane Intensity" is 0), picks SelfIntensity or
// LayerIntensity from the record's intensity layer, and runs the mode's kernels in order, each
// prepared from a fresh copy of `record`. DispatchStretchInBands on the calling thread, with no
// host to cancel it. Reports nothing. Instantiated for the three depths.
template <PixelDepth Depth>
void DispatchStretch(const PF_EffectWorld& input, PF_EffectWorld& output,
                     StretchRenderRecord record, float scale);

// DispatchStretch chosen by depth at run time; throws std::logic_error for a depth outside
// PixelDepth.
void DispatchStretchForDepth(PixelDepth depth, const PF_EffectWorld& input, PF_EffectWorld& output,
                             const StretchRenderRecord& record, float scale);

// The host's way of running work on its own threads, and of asking whether the render is still
// wanted: its utility callback iterate_generic (null when the host offers none) and its abort
// callback with the effect reference both are called with.
struct HostBandRunner {
  using BandFn = PF_Err (*)(void* refcon, A_long threadIndex, A_long i, A_long iterations);
  PF_Err (*iterateGeneric)(A_long iterations, void* refcon, BandFn fn) = nullptr;
  PF_Err (*abort)(PF_ProgPtr effectRef) = nullptr;
  PF_ProgPtr effectRef = nullptr;
};

// The runner of a render command: the host's iterate_generic from the utility callbacks, when
// it offers one, and its abort callback. (The same function is also offered as "PF Iterate8
// Suite" version 2; its record layout is not confirmed here, so the utility callback is used.)
inline HostBandRunner HostBandRunnerOf(const PF_InData* in_data) {
  HostBandRunner host;
  if (in_data == nullptr) return host;
  if (in_data->utils != nullptr) host.iterateGeneric = in_data->utils->iterate_generic;
  host.abort = in_data->inter.abort;
  host.effectRef = in_data->effect_ref;
  return host;
}

// Lines of a frame per band: small enough that a cancelled render stops soon and the host's
// threads share the work evenly, large enough that a band costs far more than its hand-over.
inline constexpr int32_t kLinesPerBand = 32;

// DispatchStretch with the kernels' lines split into bands of kLinesPerBand lines, rendered
// through the host's iterate_generic on its worker threads (on the calling thread, band after
// band, when the host has no iterate_generic). Every kernel is prepared once from the whole image
// before the first band and its tables are shared by all bands, so the output is bit-identical to
// DispatchStretch. The copies of the input (where the mode needs them) are made first, on the
// calling thread. The calling thread asks the host's abort callback once before the first band,
// and the call on thread 0 asks it again before each of its bands; once it
// reports a non-zero code no further band is rendered and that code (PF_Interrupt_CANCEL when
// the user cancelled) is returned, with the output only partly rendered. An error from
// iterate_generic itself is returned likewise. Otherwise PF_Err_NONE. Starts no threads, takes no
// locks, allocates nothing.
template <PixelDepth Depth>
PF_Err DispatchStretchInBands(const PF_EffectWorld& input, PF_EffectWorld& output,
                              StretchRenderRecord record, float scale, const HostBandRunner& host);

// The one run-time switch on depth, for DispatchStretchInBands; throws std::logic_error for a
// depth outside PixelDepth.
PF_Err DispatchStretchInBandsForDepth(PixelDepth depth, const PF_EffectWorld& input,
                                      PF_EffectWorld& output, const StretchRenderRecord& record,
                                      float scale, const HostBandRunner& host);

}  // namespace morvane
