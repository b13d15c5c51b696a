// Which build of the line routines a call runs: AVX2 where this library has it and the
// processor (and its operating system) can run it, the baseline build otherwise.
#include "stretch/StretchKernel.h"

namespace morvane {

template <PixelDepth Depth>
const LineRoutines<Depth>* LineRoutinesFor(KernelInstructionSet instructionSet) {
  switch (instructionSet) {
    case KernelInstructionSet::Baseline:
      return &BaselineLineRoutines<Depth>();
    case KernelInstructionSet::Avx2:
#if defined(MORVANE_AVX2_KERNELS)
      // The processor check includes the operating system's support for the AVX registers.
      if (__builtin_cpu_supports("avx2")) return &Avx2LineRoutines<Depth>();
#endif
      return nullptr;
  }
  return nullptr;
}

template <PixelDepth Depth>
const LineRoutines<Depth>* FastestLineRoutines() {
  const LineRoutines<Depth>* avx2 = LineRoutinesFor<Depth>(KernelInstructionSet::Avx2);
  return avx2 != nullptr ? avx2 : &BaselineLineRoutines<Depth>();
}

#define MORVANE_INSTANTIATE_ROUTINE_CHOICE(DEPTH)                                   \
  template const LineRoutines<DEPTH>* LineRoutinesFor<DEPTH>(KernelInstructionSet); \
  template const LineRoutines<DEPTH>* FastestLineRoutines<DEPTH>();

MORVANE_INSTANTIATE_ROUTINE_CHOICE(PixelDepth::Depth8)
MORVANE_INSTANTIATE_ROUTINE_CHOICE(PixelDepth::Depth16)
MORVANE_INSTANTIATE_ROUTINE_CHOICE(PixelDepth::Depth32f)

}  // namespace morvane
