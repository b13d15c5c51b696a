// Images as an OpenFX host hands them over (RGBA or RGB, rows bottom-up from the bounds' lower
// edge, any row stride, byte, short or float channels) and as the kernels take them (ARGB, top row
// first, no padding; an RGB image is opaque). Short images (0..65535) are rendered at float depth:
// every one of their 65536 levels has its own float value v / 65535, which comes back as v, so an
// image rendered at "Morvane Intensity" 0 is returned unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <ofxCore.h>
#include <ofxImageEffect.h>

#include "sdk/HostInterface.h"

namespace morvane::ofx {

enum class HostDepth { Byte, Short, Float };

// The depth an OpenFX depth name names; throws OfxFailure(kOfxStatErrImageFormat) for others.
HostDepth DepthFromName(const std::string& name);

struct HostImage {
  void* data = nullptr;
  int rowBytes = 0;  // may be negative
  OfxRectI bounds{};
  HostDepth depth = HostDepth::Byte;
  int components = 4;  // 4 RGBA, 3 RGB
};

// An image of a clip at a time, fetched from the host and released when this goes.
class ClipImage {
 public:
  // Throws OfxFailure when the host has no image, or one that is neither RGBA nor RGB.
  ClipImage(OfxImageClipHandle clip, OfxTime time, const char* clipName);
  ~ClipImage();
  ClipImage(const ClipImage&) = delete;
  ClipImage& operator=(const ClipImage&) = delete;

  const HostImage& Image() const { return image_; }

 private:
  OfxPropertySetHandle handle_ = nullptr;
  HostImage image_;
};

// Kernel pixels of one channel type: ARGB, top row first, no padding.
template <typename Channel>
struct KernelImage {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<Channel> values;

  KernelImage(int32_t w, int32_t h) : width(w), height(h), values(std::size_t(w) * h * 4) {}
  PF_EffectWorld World();
};

OfxRectI Intersection(const OfxRectI& a, const OfxRectI& b);
bool IsEmpty(const OfxRectI& rect);

// The pixels of `rect` (inside the image's bounds) of a host image of channel type `Host`, in
// the kernel's layout and channel type `Kernel`.
template <typename Host, typename Kernel>
KernelImage<Kernel> ReadHostImage(const HostImage& image, const OfxRectI& rect);

// Writes the pixels of `window` (inside the image's bounds) into a host image: those inside
// `rect`, the area `pixels` covers, from it, the others transparent black (an RGB image takes no
// alpha).
template <typename Host, typename Kernel>
void WriteHostImage(const KernelImage<Kernel>& pixels, const OfxRectI& rect, const HostImage& image,
                    const OfxRectI& window);

}  // namespace morvane::ofx
