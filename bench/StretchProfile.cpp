// Renders one benchmark case a given number of times, for profilers that want a plain program
// (valgrind --tool=callgrind counts instructions repeatably even on a loaded machine):
//
//   morvane_profile <depth 8|16|32> <width> <height> <mode> <settings 0-3> [frames] [noise 0|1]
//                   [instruction set: fastest|baseline|avx2]
//
// Settings: 0 default, 1 heavy, 2 Direction Down, 3 Pixel Size 0.4 (as the benchmark's cases).
// Prints the thread's CPU time per frame and a checksum of the last output. Naming an
// instruction set runs the kernels of that build directly (mode 0, "Luma", only: one kernel, no
// copies, so the same work as the render).
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/BenchFrames.h"
#include "render/DispatchStretch.h"
#include "stretch/StretchKernel.h"

namespace morvane::bench {
namespace {

// One frame of the "Luma" kernel with the line routines of one build; false when that build is
// not available here.
template <PixelDepth Depth>
bool RenderLuma(Frame<Depth>& input, Frame<Depth>& output, const StretchRenderRecord& record,
                KernelInstructionSet instructionSet) {
  const auto* layer = record.intensityLayer;
  const auto* layerPixels =
      layer != nullptr ? reinterpret_cast<const ChannelType<Depth>*>(layer->data) : nullptr;
  const int32_t elementBytes = static_cast<int32_t>(sizeof(ChannelType<Depth>));
  PreparedStretchKernel<Depth> prepared;
  PrepareStretchKernel<Depth>(
      prepared,
      layerPixels != nullptr ? IntensityOrigin::LayerIntensity : IntensityOrigin::SelfIntensity,
      ChannelVariant::Luma,
      {output.pixels.data(), output.width * 4, input.pixels.data(), input.width * 4, input.width,
       input.height, record, 1.0f, layerPixels, layer != nullptr ? layer->width : 0,
       layer != nullptr ? layer->height : 0, layer != nullptr ? layer->rowbytes / elementBytes : 0,
       0, 0});
  if (!prepared.UseInstructionSet(instructionSet)) return false;
  prepared.RenderLines(0, prepared.lineCount());
  return true;
}

template <PixelDepth Depth>
int Run(int32_t width, int32_t height, ChannelMode mode, Settings settings, int frames,
        Content content, const char* instructionSet) {
  Frame<Depth>& input = CachedFrame<Depth>(width, height, content, 1);
  Frame<Depth>& layerFrame = CachedFrame<Depth>(width * 2 / 3, height * 2 / 3, content, 2);
  Frame<Depth> output(width, height);
  PF_EffectWorld in = input.World();
  PF_EffectWorld out = output.World();
  PF_EffectWorld layer = layerFrame.World();
  const StretchRenderRecord record = SettingsRecord(settings, mode, &layer);

  const bool direct = std::strcmp(instructionSet, "fastest") != 0;
  const auto isa = std::strcmp(instructionSet, "avx2") == 0 ? KernelInstructionSet::Avx2
                                                            : KernelInstructionSet::Baseline;
  if (direct && (mode != ChannelMode::Luma || (std::strcmp(instructionSet, "baseline") != 0 &&
                                               isa != KernelInstructionSet::Avx2))) {
    std::fprintf(stderr,
                 "an instruction set can be named for mode 0 only: fastest, baseline or avx2\n");
    return 2;
  }
  const double start = ThreadSeconds();
  for (int i = 0; i < frames; ++i) {
    if (!direct) {
      DispatchStretch<Depth>(in, out, record, 1.0f);
    } else if (!RenderLuma(input, output, record, isa)) {
      std::fprintf(stderr, "this library or processor has no %s build\n", instructionSet);
      return 2;
    }
  }
  const double perFrame = (ThreadSeconds() - start) / frames;

  uint64_t hash = 1469598103934665603ull;
  const auto* bytes = reinterpret_cast<const unsigned char*>(output.pixels.data());
  for (size_t i = 0; i < output.pixels.size() * sizeof(output.pixels[0]); ++i)
    hash = (hash ^ bytes[i]) * 1099511628211ull;
  std::printf("%.2f ms/frame, %.1f MPix/s, checksum %016llx\n", perFrame * 1e3,
              double(width) * height * 1e-6 / perFrame, static_cast<unsigned long long>(hash));
  return 0;
}

}  // namespace
}  // namespace morvane::bench

int main(int argc, char** argv) {
  using namespace morvane;
  if (argc < 6) {
    std::fprintf(stderr,
                 "usage: %s <8|16|32> <width> <height> <mode> <settings 0-3> [frames] [noise] "
                 "[fastest|baseline|avx2]\n",
                 argv[0]);
    return 2;
  }
  const int depth = std::atoi(argv[1]);
  const auto width = static_cast<int32_t>(std::atoi(argv[2]));
  const auto height = static_cast<int32_t>(std::atoi(argv[3]));
  const auto mode = static_cast<ChannelMode>(std::atoi(argv[4]));
  const int settingsArg = std::atoi(argv[5]);
  const auto settings = static_cast<bench::Settings>(settingsArg);
  const int frames = argc > 6 ? std::max(1, std::atoi(argv[6])) : 1;
  const auto content =
      argc > 7 && std::atoi(argv[7]) != 0 ? bench::Content::Noise : bench::Content::Footage;
  const char* instructionSet = argc > 8 ? argv[8] : "fastest";
  if (width <= 0 || height <= 0 || settingsArg < 0 || settingsArg > 3) return 2;
  switch (depth) {
    case 8:
      return bench::Run<PixelDepth::Depth8>(width, height, mode, settings, frames, content,
                                            instructionSet);
    case 16:
      return bench::Run<PixelDepth::Depth16>(width, height, mode, settings, frames, content,
                                             instructionSet);
    case 32:
      return bench::Run<PixelDepth::Depth32f>(width, height, mode, settings, frames, content,
                                              instructionSet);
    default:
      return 2;
  }
}
