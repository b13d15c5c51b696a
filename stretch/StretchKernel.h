// The stretch kernel of one pixel depth: a call prepared once, then its lines in any ranges.
#pragma once

#include <cstddef>
#include <cstdint>

#include "render/StretchRenderRecord.h"
#include "stretch/KernelVariant.h"
#include "stretch/PixelTraits.h"
#include "stretch/StretchCall.h"

namespace morvane {

// Where a kernel reads and writes: the images with their strides in channel elements, and the
// intensity layer when there is one.
template <typename Channel>
struct KernelImages {
  Channel* dst;
  std::ptrdiff_t dstStride;
  const Channel* src;
  std::ptrdiff_t srcStride;
  int32_t width;
  int32_t height;
  const Channel* layer;
  std::ptrdiff_t layerStride;
  int32_t layerWidth;
  int32_t layerHeight;
};

// Renders lines [first, last) of a prepared call.
template <PixelDepth Depth>
using LineRangeFn = void (*)(const StretchCall& call,
                             const KernelImages<ChannelType<Depth>>& images, int32_t first,
                             int32_t last);

// The line routines of one build, per channel variant (in ChannelVariant order) for each
// intensity origin: each picks the routine for a prepared call (by edge mode and multipliers).
template <PixelDepth Depth>
struct LineRoutines {
  using Select = LineRangeFn<Depth> (*)(const StretchCall& call);
  Select self[6];
  Select layer[6];
};

// The instruction sets the line routines are built for. Both builds write the same bits: every
// operation is the same double operation, only more of them run in one instruction.
enum class KernelInstructionSet : int32_t { Baseline = 0, Avx2 = 1 };

// Each build's routines (the AVX2 build exists in optimised x86-64 builds other than Windows).
template <PixelDepth Depth>
const LineRoutines<Depth>& BaselineLineRoutines();
template <PixelDepth Depth>
const LineRoutines<Depth>& Avx2LineRoutines();

// The routines built for `instructionSet`, or null when this library has no such build or the
// processor cannot run it.
template <PixelDepth Depth>
const LineRoutines<Depth>* LineRoutinesFor(KernelInstructionSet instructionSet);

// The routines of the fastest build this processor runs.
template <PixelDepth Depth>
const LineRoutines<Depth>* FastestLineRoutines();

// The fourteen arguments of a kernel call. Strides are in channel elements; `record` is the
// kernel's own copy; the layer values are zero (null pixels) for SelfIntensity.
template <PixelDepth Depth>
struct KernelArguments {
  ChannelType<Depth>* dst;
  int32_t dstStride;
  const ChannelType<Depth>* src;
  int32_t srcStride;
  int32_t width;
  int32_t height;
  StretchRenderRecord record;
  float scale;
  const ChannelType<Depth>* layerPixels;
  int32_t layerWidth;
  int32_t layerHeight;
  int32_t layerStride;
  int32_t originX;
  int32_t originY;
};

// One kernel call split into its set-up and its lines. PrepareStretchKernel does everything
// before the first line (tables, shift, layer geometry, all from the whole image); RenderLines
// then renders any range of lines. Lines never influence each other, so rendering
// [0, lineCount()) in any partition into ranges, in any order or on several threads at once,
// writes exactly what one range over all lines writes. RenderLines only reads the prepared state,
// which stays valid while the object lives and the images are not moved. Nothing is allocated.
template <PixelDepth Depth>
class PreparedStretchKernel {
 public:
  using Channel = ChannelType<Depth>;
  // Lines of the call: rows for Right and Left, columns for Down and Up; 0 when there is
  // nothing to render.
  int32_t lineCount() const { return lines_ == nullptr ? 0 : call_.lineCount; }

  // Renders lines [first, last) (clipped to the call's lines).
  void RenderLines(int32_t first, int32_t last) const;

  // The call's prepared quantities (valid when lineCount() > 0).
  const StretchCall& call() const { return call_; }

  // Renders with the routines built for `instructionSet` instead of the fastest ones (to compare
  // the builds). False, changing nothing, when nothing is prepared or that build is absent.
  bool UseInstructionSet(KernelInstructionSet instructionSet);

 private:
  LineRangeFn<Depth> PickLines(const LineRoutines<Depth>& routines) const;

  template <PixelDepth D>
  friend void PrepareStretchKernel(PreparedStretchKernel<D>&, IntensityOrigin, ChannelVariant,
                                   const KernelArguments<D>&);

  StretchCall call_;
  KernelImages<Channel> images_{};
  LineRangeFn<Depth> lines_ = nullptr;
  int32_t variantIndex_ = 0;  // the ChannelVariant as an index
  bool useLayer_ = false;
};

// Prepares the kernel (origin, variant) of this depth with the fourteen kernel arguments.
// Unknown origins or variants, an empty image or null pixels prepare nothing (lineCount() 0).
template <PixelDepth Depth>
void PrepareStretchKernel(PreparedStretchKernel<Depth>& prepared, IntensityOrigin origin,
                          ChannelVariant variant, const KernelArguments<Depth>& arguments);

}  // namespace morvane
