// One golden case: a frame's size, strides, content seed, scale, intensity layer and render record,
// written as one line of text, and the digest of what DispatchStretch writes for it.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "render/StretchRenderRecord.h"
#include "stretch/KernelVariant.h"

namespace morvane::golden {

// Seeded choices with arithmetic of its own on top of mt19937, so that a seed means the same
// pixels and cases with every standard library.
class Random {
 public:
  explicit Random(uint32_t seed) : engine_(seed) {}
  uint32_t Next() { return static_cast<uint32_t>(engine_()); }
  int32_t Int(int32_t lo, int32_t hi) {  // inclusive
    const auto span = static_cast<uint64_t>(static_cast<int64_t>(hi) - lo + 1);
    return static_cast<int32_t>(lo + static_cast<int64_t>(Next() % span));
  }
  double Real(double lo, double hi) { return lo + (hi - lo) * (Next() / 4294967296.0); }
  bool Chance(double p) { return Real(0.0, 1.0) < p; }

 private:
  std::mt19937 engine_;
};

enum class LayerKind : int32_t { None = 0, Pixels = 1, NoData = 2 };

// How the seed paints the buffers: channels as footage has them, or mostly the values at and past
// the ends of the depth's range (float: NaN, infinities, -0, denormals, the largest finite values).
enum class Painter : int32_t { Footage = 0, Extremes = 1 };

struct GoldenCase {
  PixelDepth depth = PixelDepth::Depth8;
  int32_t width = 0;
  int32_t height = 0;
  int32_t inPadding = 0;  // extra channel elements per row
  int32_t outPadding = 0;
  uint32_t pixelSeed = 0;  // input, output (its padding too) and layer content
  float scale = 1.0f;
  LayerKind layer = LayerKind::None;
  int32_t layerWidth = 0;
  int32_t layerHeight = 0;
  int32_t layerPadding = 0;
  int32_t originX = 0;  // the output's origin inside the layer
  int32_t originY = 0;
  Painter painter = Painter::Footage;
  StretchRenderRecord record{};
};

// "depth w h inPad outPad seed scale layerKind lw lh lpad ox oy", "paint=extremes" for that
// painter, then the record's "control=value" words; numbers written so that they read back exactly.
std::string FormatCase(const GoldenCase& c);
// Throws std::invalid_argument for a line that is not a case.
GoldenCase ParseCase(const std::string& line);

// The frame's buffers, painted from the case's seed; the output buffer holds what the host left
// in it before the render.
struct Frame {
  std::vector<unsigned char> input;
  std::vector<unsigned char> output;
  std::vector<unsigned char> layer;
};
Frame PaintFrame(const GoldenCase& c);

// Renders `frame` through DispatchStretchForDepth and returns the FNV-1a digest of the whole
// output buffer, padding included, every float NaN counted as one pattern. Throws
// std::logic_error when the render changed the input.
uint64_t RenderDigest(const GoldenCase& c, Frame& frame);

// Renders every case of `depth` in the corpus file at `path` ("digest case" lines; # comments)
// on `threads` threads at once and returns one message per case whose digest differs from the
// accepted one. Counts the cases in `cases`. Throws std::runtime_error when the file cannot be
// read.
std::vector<std::string> CheckCorpus(const std::string& path, PixelDepth depth, int& cases,
                                     int threads = 1);

// Row stride of a buffer in bytes.
int32_t RowBytes(const GoldenCase& c, int32_t width, int32_t padding);

}  // namespace morvane::golden
