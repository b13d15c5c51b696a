#include "render/DispatchStretch.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <stdexcept>

#include "stretch/StretchKernel.h"

namespace morvane {
namespace {

template <PixelDepth Depth>
struct DepthLayout;
template <>
struct DepthLayout<PixelDepth::Depth8> {
  static constexpr int kStrideShift = 0;
};
template <>
struct DepthLayout<PixelDepth::Depth16> {
  static constexpr int kStrideShift = 1;
};
template <>
struct DepthLayout<PixelDepth::Depth32f> {
  static constexpr int kStrideShift = 2;
};

// An image seen as channel elements of one depth.
template <PixelDepth Depth>
struct ImageView {
  using Channel = ChannelType<Depth>;

  explicit ImageView(const PF_EffectWorld& world)
      : data(reinterpret_cast<Channel*>(reinterpret_cast<char*>(world.data))),
        stride(world.rowbytes >> DepthLayout<Depth>::kStrideShift),
        width(world.width),
        height(world.height) {}

  Channel* Row(int32_t row) const { return data + std::ptrdiff_t{row} * stride; }

  Channel* data;
  int32_t stride;  // channel elements
  int32_t width;
  int32_t height;
};

// Copies the rows and columns present in both images: all four channels, or alpha only.
template <PixelDepth Depth>
void CopyImage(const ImageView<Depth>& from, const ImageView<Depth>& to, bool alphaOnly) {
  const int32_t rows = std::min(from.height, to.height);
  const int32_t columns = std::min(from.width, to.width);
  if (rows <= 0 || columns <= 0) return;
  for (int32_t row = 0; row < rows; ++row) {
    const auto* in = from.Row(row);
    auto* out = to.Row(row);
    if (alphaOnly) {
      for (int32_t x = 0; x < columns; ++x)
        out[4 * x] = in[4 * x];
    } else if (in != out) {
      std::memcpy(out, in, std::size_t(columns) * 4 * sizeof(*in));
    }
  }
}

// What a frame runs after its copies: the kernels of the "Channels" mode in order, all of one
// depth and intensity origin, with the layer values they share.
template <PixelDepth Depth>
struct FramePlan {
  using Channel = ChannelType<Depth>;
  ImageView<Depth> in;
  ImageView<Depth> out;
  // The kernels' area: the rows and columns present in both images (the render commands give
  // both the same size; a smaller input must not be read past its end).
  int32_t width = 0;
  int32_t height = 0;
  IntensityOrigin origin = IntensityOrigin::SelfIntensity;
  const Channel* layerPixels = nullptr;
  int32_t layerWidth = 0;
  int32_t layerHeight = 0;
  int32_t layerStride = 0;
  int32_t originX = 0;
  int32_t originY = 0;
  ChannelVariant variants[4] = {};
  int32_t kernelCount = 0;
};

// Makes the copies the mode needs and returns the kernels to run (none when "Morvane Intensity"
// is 0 or the mode is unknown).
template <PixelDepth Depth>
FramePlan<Depth> PlanFrame(const PF_EffectWorld& input, PF_EffectWorld& output,
                           const StretchRenderRecord& record) {
  FramePlan<Depth> plan{ImageView<Depth>(input), ImageView<Depth>(output)};
  plan.width = std::min(plan.in.width, plan.out.width);
  plan.height = std::min(plan.in.height, plan.out.height);
  const auto mode = static_cast<ChannelMode>(record.channelMode);

  const bool wholeCopy = mode == ChannelMode::Red || mode == ChannelMode::Green ||
                         mode == ChannelMode::Blue || mode == ChannelMode::Alpha;
  if (wholeCopy || record.intensity == 0.0) CopyImage(plan.in, plan.out, false);
  if (record.intensity == 0.0) return plan;
  if (mode == ChannelMode::LumaNoAlpha || mode == ChannelMode::RgbNoAlpha) {
    CopyImage(plan.in, plan.out, true);
  }

  // A layer with no pixels counts as no layer.
  const PF_EffectWorld* layer = record.intensityLayer;
  const bool useLayer =
      layer != nullptr && layer->data != nullptr && layer->width > 0 && layer->height > 0;
  if (useLayer) {
    const ImageView<Depth> view(*layer);
    plan.origin = IntensityOrigin::LayerIntensity;
    plan.layerPixels = view.data;
    plan.layerWidth = view.width;
    plan.layerHeight = view.height;
    plan.layerStride = view.stride;
    plan.originX = output.origin_x;
    plan.originY = output.origin_y;
  }

  using V = ChannelVariant;
  const auto use = [&](std::initializer_list<V> variants) {
    for (const V v : variants)
      plan.variants[plan.kernelCount++] = v;
  };
  switch (mode) {
    case ChannelMode::Luma:
      use({V::Luma});
      break;
    case ChannelMode::Rgba:
      use({V::Alpha, V::Red, V::Green, V::Blue});
      break;
    case ChannelMode::Red:
      use({V::Red});
      break;
    case ChannelMode::Green:
      use({V::Green});
      break;
    case ChannelMode::Blue:
      use({V::Blue});
      break;
    case ChannelMode::Alpha:
      use({V::Alpha});
      break;
    case ChannelMode::LumaNoAlpha:
      use({V::LumaNoAlpha});
      break;
    case ChannelMode::RgbNoAlpha:
      use({V::Red, V::Green, V::Blue});
      break;
  }
  return plan;
}

// The kernels of one frame prepared for bands, and how the bands stop.
template <PixelDepth Depth>
struct BandJob {
  const PreparedStretchKernel<Depth>* kernels;
  int32_t kernelCount;
  int32_t lineCount;
  const HostBandRunner* host;
  // The first non-zero code the abort callback gave; once set, the remaining bands are skipped.
  std::atomic<PF_Err> stop{PF_Err_NONE};
};

// One band: lines [i * kLinesPerBand, (i + 1) * kLinesPerBand) of every kernel, in the mode's
// order. The call on thread 0 first asks the host whether the render is still wanted.
template <PixelDepth Depth>
PF_Err RenderBand(void* refcon, A_long threadIndex, A_long i, A_long /*iterations*/) {
  auto& job = *static_cast<BandJob<Depth>*>(refcon);
  if (const PF_Err stopped = job.stop.load(std::memory_order_relaxed)) return stopped;
  if (threadIndex == 0 && job.host->abort != nullptr) {
    if (const PF_Err err = job.host->abort(job.host->effectRef)) {
      job.stop.store(err, std::memory_order_relaxed);
      return err;
    }
  }
  const int64_t first = int64_t{i} * kLinesPerBand;
  if (first < 0 || first >= job.lineCount) return PF_Err_NONE;
  const auto last = static_cast<int32_t>(std::min<int64_t>(first + kLinesPerBand, job.lineCount));
  for (int32_t k = 0; k < job.kernelCount; ++k)
    job.kernels[k].RenderLines(static_cast<int32_t>(first), last);
  return PF_Err_NONE;
}

}  // namespace

template <PixelDepth Depth>
PF_Err DispatchStretchInBands(const PF_EffectWorld& input, PF_EffectWorld& output,
                              StretchRenderRecord record, float scale, const HostBandRunner& host) {
  if (input.data == nullptr || output.data == nullptr) return PF_Err_NONE;
  const FramePlan<Depth> plan = PlanFrame<Depth>(input, output, record);
  if (plan.kernelCount == 0) return PF_Err_NONE;

  // Each kernel prepared from its own fresh copy of the record, before any band (about 10 KB
  // each, in this call's frame).
  PreparedStretchKernel<Depth> kernels[4];
  for (int32_t k = 0; k < plan.kernelCount; ++k) {
    PrepareStretchKernel<Depth>(
        kernels[k], plan.origin, plan.variants[k],
        {plan.out.data, plan.out.stride, plan.in.data, plan.in.stride, plan.width, plan.height,
         record, scale, plan.layerPixels, plan.layerWidth, plan.layerHeight, plan.layerStride,
         plan.originX, plan.originY});
  }
  // Every kernel of a frame walks the same lines (same image, same direction).
  const int32_t lineCount = kernels[0].lineCount();
  if (lineCount <= 0) return PF_Err_NONE;
  const auto bands = static_cast<A_long>((int64_t{lineCount} + kLinesPerBand - 1) / kLinesPerBand);

  // Asked once on the calling thread before any band: a render cancelled before it starts
  // renders nothing, whichever thread the host then hands thread 0's bands to.
  if (host.abort != nullptr) {
    if (const PF_Err err = host.abort(host.effectRef)) return err;
  }

  BandJob<Depth> job{kernels, plan.kernelCount, lineCount, &host};
  PF_Err result = PF_Err_NONE;
  if (host.iterateGeneric != nullptr) {
    result = host.iterateGeneric(bands, &job, &RenderBand<Depth>);
  } else {
    for (A_long i = 0; i < bands && result == PF_Err_NONE; ++i)
      result = RenderBand<Depth>(&job, 0, i, bands);
  }
  if (const PF_Err stopped = job.stop.load(std::memory_order_relaxed)) return stopped;
  return result;
}

template PF_Err DispatchStretchInBands<PixelDepth::Depth8>(const PF_EffectWorld&, PF_EffectWorld&,
                                                           StretchRenderRecord, float,
                                                           const HostBandRunner&);
template PF_Err DispatchStretchInBands<PixelDepth::Depth16>(const PF_EffectWorld&, PF_EffectWorld&,
                                                            StretchRenderRecord, float,
                                                            const HostBandRunner&);
template PF_Err DispatchStretchInBands<PixelDepth::Depth32f>(const PF_EffectWorld&, PF_EffectWorld&,
                                                             StretchRenderRecord, float,
                                                             const HostBandRunner&);

PF_Err DispatchStretchInBandsForDepth(PixelDepth depth, const PF_EffectWorld& input,
                                      PF_EffectWorld& output, const StretchRenderRecord& record,
                                      float scale, const HostBandRunner& host) {
  switch (depth) {
    case PixelDepth::Depth8:
      return DispatchStretchInBands<PixelDepth::Depth8>(input, output, record, scale, host);
    case PixelDepth::Depth16:
      return DispatchStretchInBands<PixelDepth::Depth16>(input, output, record, scale, host);
    case PixelDepth::Depth32f:
      return DispatchStretchInBands<PixelDepth::Depth32f>(input, output, record, scale, host);
  }
  throw std::logic_error("DispatchStretchInBandsForDepth: unknown pixel depth");
}

// The single call is the banded render with a host that has no threads and never cancels: every
// band in place, in order.
template <PixelDepth Depth>
void DispatchStretch(const PF_EffectWorld& input, PF_EffectWorld& output,
                     StretchRenderRecord record, float scale) {
  DispatchStretchInBands<Depth>(input, output, record, scale, HostBandRunner{});
}

template void DispatchStretch<PixelDepth::Depth8>(const PF_EffectWorld&, PF_EffectWorld&,
                                                  StretchRenderRecord, float);
template void DispatchStretch<PixelDepth::Depth16>(const PF_EffectWorld&, PF_EffectWorld&,
                                                   StretchRenderRecord, float);
template void DispatchStretch<PixelDepth::Depth32f>(const PF_EffectWorld&, PF_EffectWorld&,
                                                    StretchRenderRecord, float);

void DispatchStretchForDepth(PixelDepth depth, const PF_EffectWorld& input, PF_EffectWorld& output,
                             const StretchRenderRecord& record, float scale) {
  DispatchStretchInBandsForDepth(depth, input, output, record, scale, HostBandRunner{});
}

}  // namespace morvane
