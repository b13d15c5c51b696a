#include "render/PixelFormatDepth.h"

namespace morvane {

std::optional<PixelDepth> DepthOfWorldFormat(PF_PixelFormat format) {
  switch (format) {
    case PF_PixelFormat_ARGB32:
      return PixelDepth::Depth8;
    case PF_PixelFormat_ARGB64:
      return PixelDepth::Depth16;
    case PF_PixelFormat_ARGB128:
      return PixelDepth::Depth32f;
    default:
      return std::nullopt;
  }
}

std::optional<PixelDepth> DepthOfPremiereFormat(PrPixelFormat format) {
  switch (format) {
    case PrPixelFormat_ARGB_4444_8u:
      return PixelDepth::Depth8;
    case PrPixelFormat_ARGB_4444_16u:
      return PixelDepth::Depth16;
    case PrPixelFormat_ARGB_4444_32f:
      return PixelDepth::Depth32f;
    default:
      return std::nullopt;
  }
}

}  // namespace morvane
