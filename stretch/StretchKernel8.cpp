// The twelve kernels of Depth8.
#include "stretch/StretchKernelImpl.h"

namespace morvane {

MORVANE_INSTANTIATE_STRETCH_KERNELS(PixelDepth::Depth8)

}  // namespace morvane
