// The twelve kernels of Depth32f.
#include "stretch/StretchKernelImpl.h"

namespace morvane {

MORVANE_INSTANTIATE_STRETCH_KERNELS(PixelDepth::Depth32f)

}  // namespace morvane
