// The render action: the source's lines the host handed over, rendered whole through
// DispatchStretch at the kernel depth that keeps every level of the host's depth, and written
// into the output image's render window.
#include <optional>

#include "ofx/Actions.h"
#include "ofx/HostImage.h"
#include "ofx/HostSuites.h"
#include "ofx/Instance.h"
#include "render/DispatchStretch.h"

namespace morvane::ofx {
namespace {

struct RenderImages {
  const HostImage& source;
  const HostImage* intensity;  // null: the source's own intensity
  const HostImage& output;
  OfxRectI window;  // inside the output's bounds
};

template <typename Host, typename Kernel, PixelDepth Depth>
void RenderAtDepth(const RenderImages& images, StretchRenderRecord record, float scale) {
  const OfxRectI lines = images.source.bounds;
  const KernelImage<Kernel> input = ReadHostImage<Host, Kernel>(images.source, lines);
  KernelImage<Kernel> output(input.width, input.height);
  std::optional<KernelImage<Kernel>> intensity;
  PF_EffectWorld intensityWorld{};
  if (images.intensity != nullptr && !IsEmpty(images.intensity->bounds)) {
    intensity.emplace(ReadHostImage<Host, Kernel>(*images.intensity, images.intensity->bounds));
    intensityWorld = intensity->World();
    record.intensityLayer = &intensityWorld;
  }
  PF_EffectWorld in = const_cast<KernelImage<Kernel>&>(input).World();
  PF_EffectWorld out = output.World();
  DispatchStretch<Depth>(in, out, record, scale);
  WriteHostImage<Host, Kernel>(output, lines, images.output, images.window);
}

}  // namespace

OfxStatus Render(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs) {
  const Instance& instance = InstanceOf(effect);
  const PropertySet in(inArgs);
  const OfxTime time = in.Double(kOfxPropTime);
  const auto scale = in.Doubles<2>(kOfxImageEffectPropRenderScale);
  const auto window = in.Ints<4>(kOfxImageEffectPropRenderWindow);
  const StretchRenderRecord record = instance.RecordAt(time);

  const ClipImage output(instance.output, time, kOfxImageEffectOutputClipName);
  const OfxRectI area =
      Intersection({window[0], window[1], window[2], window[3]}, output.Image().bounds);
  if (IsEmpty(area)) return kOfxStatOK;
  const ClipImage source(instance.source, time, kOfxImageEffectSimpleSourceClipName);
  std::optional<ClipImage> intensity;
  if (instance.HasIntensity()) intensity.emplace(instance.intensity, time, kIntensityClipName);

  const HostDepth depth = output.Image().depth;
  if (source.Image().depth != depth || (intensity && intensity->Image().depth != depth))
    throw OfxFailure(kOfxStatErrImageFormat, "the clips' pixel depths differ");
  const RenderImages images{source.Image(), intensity ? &intensity->Image() : nullptr,
                            output.Image(), area};
  // Only the horizontal factor scales the render, as with the other hosts' downsampling.
  const auto factor = static_cast<float>(scale[0]);
  switch (depth) {
    case HostDepth::Byte:
      RenderAtDepth<uint8_t, uint8_t, PixelDepth::Depth8>(images, record, factor);
      break;
    case HostDepth::Short:
      RenderAtDepth<uint16_t, float, PixelDepth::Depth32f>(images, record, factor);
      break;
    case HostDepth::Float:
      RenderAtDepth<float, float, PixelDepth::Depth32f>(images, record, factor);
      break;
  }
  return kOfxStatOK;
}

}  // namespace morvane::ofx
