// The twelve kernels of Depth16.
#include "stretch/StretchKernelImpl.h"

namespace morvane {

MORVANE_INSTANTIATE_STRETCH_KERNELS(PixelDepth::Depth16)

}  // namespace morvane
