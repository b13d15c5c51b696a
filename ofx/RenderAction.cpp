// The render action: the source's lines the host handed over, rendered whole through
// DispatchStretchInBands at the kernel depth that keeps every level of the host's depth, in bands
// on the host's threads, and written into the output image's render window.
#include <algorithm>
#include <atomic>
#include <optional>

#include "ofx/Actions.h"
#include "ofx/HostImage.h"
#include "ofx/HostSuites.h"
#include "ofx/Instance.h"
#include "render/DispatchStretch.h"

namespace morvane::ofx {
namespace {

// The bands of one render, handed out to the host's threads as they ask for work.
struct BandWork {
  void* refcon;
  HostBandRunner::BandFn render;
  A_long bands;
  std::atomic<A_long> next{0};
  std::atomic<PF_Err> error{PF_Err_NONE};
};

void RenderBands(unsigned int threadIndex, unsigned int /*threadMax*/, void* argument) {
  auto& work = *static_cast<BandWork*>(argument);
  for (A_long band = work.next++; band < work.bands; band = work.next++) {
    if (const PF_Err error =
            work.render(work.refcon, static_cast<A_long>(threadIndex), band, work.bands)) {
      work.error = error;
    }
  }
}

// iterate_generic on the host's multithread suite: as many threads as it has CPUs, at most one
// per band.
PF_Err IterateOnHostThreads(A_long bands, void* refcon, HostBandRunner::BandFn render) {
  const OfxMultiThreadSuiteV1& threads = *Suites().threads;
  unsigned int cpus = 1;
  if (threads.multiThreadNumCPUs(&cpus) != kOfxStatOK || cpus == 0) cpus = 1;
  BandWork work{refcon, render, bands};
  const auto count = static_cast<unsigned int>(std::min<A_long>(cpus, std::max<A_long>(bands, 1)));
  Check(threads.multiThread(RenderBands, count, &work), "multiThread");
  return work.error;
}

// The host's abort flag as the bands ask for it.
PF_Err HostAborted(PF_ProgPtr effect) {
  return Suites().effects->abort(reinterpret_cast<OfxImageEffectHandle>(effect)) != 0
             ? PF_Interrupt_CANCEL
             : PF_Err_NONE;
}

struct RenderImages {
  OfxImageEffectHandle effect;
  const HostImage& source;
  const HostImage* intensity;  // null: the source's own intensity
  const HostImage& output;
  OfxRectI window;  // inside the output's bounds
};

template <typename Host, typename Kernel, PixelDepth Depth>
void RenderAtDepth(const RenderImages& images, StretchRenderRecord record, float scale) {
  const OfxRectI lines = images.source.bounds;
  KernelImage<Kernel> input = ReadHostImage<Host, Kernel>(images.source, lines);
  KernelImage<Kernel> output(input.width, input.height);
  std::optional<KernelImage<Kernel>> intensity;
  PF_EffectWorld intensityWorld{};
  if (images.intensity != nullptr && !IsEmpty(images.intensity->bounds)) {
    intensity.emplace(ReadHostImage<Host, Kernel>(*images.intensity, images.intensity->bounds));
    intensityWorld = intensity->World();
    record.intensityLayer = &intensityWorld;
  }
  const PF_EffectWorld in = input.World();
  PF_EffectWorld out = output.World();
  HostBandRunner host;
  if (Suites().threads != nullptr) host.iterateGeneric = IterateOnHostThreads;
  if (Suites().effects->abort != nullptr) host.abort = HostAborted;
  host.effectRef = reinterpret_cast<PF_ProgPtr>(images.effect);
  // A render the host abandons leaves its output as it was.
  if (DispatchStretchInBands<Depth>(in, out, record, scale, host) != PF_Err_NONE) return;
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
  const RenderImages images{effect, source.Image(), intensity ? &intensity->Image() : nullptr,
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
