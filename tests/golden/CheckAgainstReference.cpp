// Temporary: every corpus case rendered by the reference model equals DispatchStretch's output.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "tests/golden/GoldenCase.h"
#include "tests/reference/ReferenceStretch.h"

using namespace morvane;
using namespace morvane::golden;

template <typename T>
bool Same(const GoldenCase& c) {
  Frame frame = PaintFrame(c);
  Frame ref = frame;
  RenderDigest(c, frame);
  const StretchRenderRecord& r = c.record;
  reference::Settings s;
  s.channelMode = r.channelMode;
  s.intensity = r.intensity;
  s.direction = r.direction;
  s.stretchAmount = r.stretchAmount;
  s.pixelSize = r.pixelSize;
  s.startOffset = r.startOffset;
  s.curveShape = r.curveShape;
  s.curvePhase = r.curvePhase;
  s.curveSmoothness = r.curveSmoothness;
  s.distributionMode = r.distributionMode;
  s.distributionRange = r.distributionRange;
  s.imageShiftPhase = r.imageShiftPhase;
  s.imageShiftPhaseSync = r.imageShiftPhaseSync;
  s.shadingMode = r.shadingMode;
  s.shadingIntervalSize = r.shadingIntervalSize;
  s.shadingIntervalPhase = r.shadingIntervalPhase;
  s.shadingOpacity = r.shadingOpacity;
  s.shadingChannels = r.shadingChannels;
  s.edgeMode = r.edgeMode;
  s.transparencyFeather = r.transparencyFeather;
  const int32_t inStride = c.width * 4 + c.inPadding, outStride = c.width * 4 + c.outPadding;
  const reference::ConstImage<T> in{reinterpret_cast<const T*>(ref.input.data()), inStride, c.width,
                                    c.height};
  reference::Image<T> out{reinterpret_cast<T*>(ref.output.data()), outStride, c.width, c.height};
  const reference::ConstImage<T> layer{
      c.layer == LayerKind::NoData ? nullptr : reinterpret_cast<const T*>(ref.layer.data()),
      c.layerWidth * 4 + c.layerPadding, c.layerWidth, c.layerHeight};
  reference::Dispatch<T>(in, out, s, c.scale, c.layer == LayerKind::None ? nullptr : &layer,
                         c.originX, c.originY);
  const std::size_t n = frame.output.size() / sizeof(T);
  for (std::size_t i = 0; i < n; ++i) {
    T a, b;
    std::memcpy(&a, frame.output.data() + i * sizeof(T), sizeof(T));
    std::memcpy(&b, ref.output.data() + i * sizeof(T), sizeof(T));
    if (std::memcmp(&a, &b, sizeof(T)) != 0 && !(a != a && b != b)) return false;
  }
  return true;
}

int main(int, char** argv) {
  std::ifstream corpus(argv[1]);
  std::string line;
  int n = 0, bad = 0;
  while (std::getline(corpus, line)) {
    if (line.empty() || line[0] == '#') continue;
    const GoldenCase c = ParseCase(line.substr(17));
    const bool same = c.depth == PixelDepth::Depth8    ? Same<uint8_t>(c)
                      : c.depth == PixelDepth::Depth16 ? Same<uint16_t>(c)
                                                       : Same<float>(c);
    ++n;
    if (!same) {
      ++bad;
      std::printf("DIFFERS: %s\n", line.c_str());
    }
  }
  std::printf("%d cases, %d differ from the reference\n", n, bad);
  return bad != 0;
}
