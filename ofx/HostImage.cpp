#include "ofx/HostImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <type_traits>

#include "ofx/HostSuites.h"

namespace morvane::ofx {
namespace {

// Host RGBA channel c is kernel channel kKernelOfHost[c] (ARGB).
constexpr int kKernelOfHost[4] = {1, 2, 3, 0};

template <typename Host, typename Kernel>
Kernel ToKernel(Host v) {
  if constexpr (std::is_same_v<Host, uint16_t>)
    return static_cast<float>(v) / 65535.0f;
  else
    return v;
}

template <typename Host, typename Kernel>
Host ToHost(Kernel v) {
  if constexpr (std::is_same_v<Host, uint16_t>) {
    const double scaled = static_cast<double>(v) * 65535.0;
    if (!(scaled >= 0.0)) return 0;  // also NaN
    return scaled >= 65535.0 ? 65535 : static_cast<uint16_t>(std::round(scaled));
  } else {
    return v;
  }
}

template <typename Host>
Host* HostPixel(const HostImage& image, int x, int y) {
  auto* row = static_cast<char*>(image.data) +
              std::ptrdiff_t{y - image.bounds.y1} * std::ptrdiff_t{image.rowBytes};
  return reinterpret_cast<Host*>(row) + std::ptrdiff_t{x - image.bounds.x1} * image.components;
}

// An opaque alpha in the kernel's units.
template <typename Kernel>
constexpr Kernel kOpaque = std::is_same_v<Kernel, uint8_t> ? Kernel{255} : Kernel{1};

}  // namespace

HostDepth DepthFromName(const std::string& name) {
  if (name == kOfxBitDepthByte) return HostDepth::Byte;
  if (name == kOfxBitDepthShort) return HostDepth::Short;
  if (name == kOfxBitDepthFloat) return HostDepth::Float;
  throw OfxFailure(kOfxStatErrImageFormat, "unsupported pixel depth \"" + name + "\"");
}

ClipImage::ClipImage(OfxImageClipHandle clip, OfxTime time, const char* clipName) {
  if (clip == nullptr ||
      Suites().effects->clipGetImage(clip, time, nullptr, &handle_) != kOfxStatOK ||
      handle_ == nullptr) {
    handle_ = nullptr;
    throw OfxFailure(kOfxStatFailed,
                     std::string("the host gave no image of clip \"") + clipName + "\"");
  }
  const PropertySet props(handle_);
  const std::string components = props.String(kOfxImageEffectPropComponents);
  if (components != kOfxImageComponentRGBA && components != kOfxImageComponentRGB) {
    Suites().effects->clipReleaseImage(handle_);
    throw OfxFailure(kOfxStatErrImageFormat,
                     std::string("clip \"") + clipName + "\" is neither RGBA nor RGB");
  }
  image_.components = components == kOfxImageComponentRGB ? 3 : 4;
  try {
    image_.depth = DepthFromName(props.String(kOfxImageEffectPropPixelDepth));
    image_.data = props.Pointer(kOfxImagePropData);
    image_.rowBytes = props.Int(kOfxImagePropRowBytes);
    const auto bounds = props.Ints<4>(kOfxImagePropBounds);
    image_.bounds = {bounds[0], bounds[1], bounds[2], bounds[3]};
  } catch (...) {
    Suites().effects->clipReleaseImage(handle_);
    throw;
  }
}

ClipImage::~ClipImage() {
  if (handle_ != nullptr) Suites().effects->clipReleaseImage(handle_);
}

template <typename Channel>
PF_EffectWorld KernelImage<Channel>::World() {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(values.data());
  world.rowbytes = static_cast<A_long>(std::size_t(width) * 4 * sizeof(Channel));
  world.width = width;
  world.height = height;
  return world;
}

template struct KernelImage<uint8_t>;
template struct KernelImage<float>;

OfxRectI Intersection(const OfxRectI& a, const OfxRectI& b) {
  return {std::max(a.x1, b.x1), std::max(a.y1, b.y1), std::min(a.x2, b.x2), std::min(a.y2, b.y2)};
}

bool IsEmpty(const OfxRectI& rect) {
  return rect.x2 <= rect.x1 || rect.y2 <= rect.y1;
}

template <typename Host, typename Kernel>
KernelImage<Kernel> ReadHostImage(const HostImage& image, const OfxRectI& rect) {
  KernelImage<Kernel> pixels(rect.x2 - rect.x1, rect.y2 - rect.y1);
  for (int32_t row = 0; row < pixels.height; ++row) {
    const Host* in = HostPixel<Host>(image, rect.x1, rect.y2 - 1 - row);
    Kernel* out = pixels.values.data() + std::size_t(row) * pixels.width * 4;
    const int n = image.components;
    for (int32_t x = 0; x < pixels.width; ++x) {
      out[4 * x] = kOpaque<Kernel>;
      for (int c = 0; c < n; ++c)
        out[4 * x + kKernelOfHost[c]] = ToKernel<Host, Kernel>(in[n * x + c]);
    }
  }
  return pixels;
}

template <typename Host, typename Kernel>
void WriteHostImage(const KernelImage<Kernel>& pixels, const OfxRectI& rect, const HostImage& image,
                    const OfxRectI& window) {
  const OfxRectI covered = Intersection(rect, window);
  for (int y = window.y1; y < window.y2; ++y) {
    const int n = image.components;
    Host* out = HostPixel<Host>(image, window.x1, y);
    std::fill(out, out + std::ptrdiff_t{window.x2 - window.x1} * n, Host{});
    if (y < covered.y1 || y >= covered.y2) continue;
    const Kernel* in = pixels.values.data() +
                       (std::size_t(rect.y2 - 1 - y) * pixels.width + (covered.x1 - rect.x1)) * 4;
    Host* to = out + std::ptrdiff_t{covered.x1 - window.x1} * n;
    for (int x = 0; x < covered.x2 - covered.x1; ++x)
      for (int c = 0; c < n; ++c)
        to[n * x + c] = ToHost<Host, Kernel>(in[4 * x + kKernelOfHost[c]]);
  }
}

template KernelImage<uint8_t> ReadHostImage<uint8_t, uint8_t>(const HostImage&, const OfxRectI&);
template KernelImage<float> ReadHostImage<uint16_t, float>(const HostImage&, const OfxRectI&);
template KernelImage<float> ReadHostImage<float, float>(const HostImage&, const OfxRectI&);
template void WriteHostImage<uint8_t, uint8_t>(const KernelImage<uint8_t>&, const OfxRectI&,
                                               const HostImage&, const OfxRectI&);
template void WriteHostImage<uint16_t, float>(const KernelImage<float>&, const OfxRectI&,
                                              const HostImage&, const OfxRectI&);
template void WriteHostImage<float, float>(const KernelImage<float>&, const OfxRectI&,
                                           const HostImage&, const OfxRectI&);

}  // namespace morvane::ofx
