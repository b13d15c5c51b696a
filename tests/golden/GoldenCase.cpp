#include "tests/golden/GoldenCase.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <type_traits>

#include "render/DispatchStretch.h"
#include "tests/support/RecordText.h"

namespace morvane::golden {
namespace {

int32_t ChannelBytes(PixelDepth depth) {
  return depth == PixelDepth::Depth8 ? 1 : depth == PixelDepth::Depth16 ? 2 : 4;
}

// Channel values as footage and hosts deliver them: half the alphas opaque, black and white
// often, 16-bit values beyond white, float values out of range and NaN now and then.
template <typename T>
T RandomChannel(Random& rng, bool alpha) {
  if constexpr (std::is_same_v<T, uint8_t>) {
    if (alpha && rng.Chance(0.5)) return 255;
    if (rng.Chance(0.08)) return rng.Chance(0.5) ? 0 : 255;
    return static_cast<uint8_t>(rng.Int(0, 255));
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    if (alpha && rng.Chance(0.5)) return 32768;
    if (rng.Chance(0.04)) return static_cast<uint16_t>(rng.Int(32769, 65535));
    if (rng.Chance(0.08)) return rng.Chance(0.5) ? 0 : 32768;
    return static_cast<uint16_t>(rng.Int(0, 32768));
  } else {
    if (alpha && rng.Chance(0.5)) return 1.0f;
    if (rng.Chance(0.01)) return std::nanf("");
    if (rng.Chance(0.05)) return static_cast<float>(rng.Real(-0.5, 2.5));
    return static_cast<float>(rng.Real(0.0, 1.0));
  }
}

// Mostly the ends of the range and what lies beyond them, a normal channel now and then.
template <typename T>
T ExtremeChannel(Random& rng, bool alpha) {
  if (rng.Chance(0.25)) return RandomChannel<T>(rng, alpha);
  if constexpr (std::is_floating_point_v<T>) {
    using Limits = std::numeric_limits<T>;
    const T extremes[] = {Limits::quiet_NaN(),
                          Limits::infinity(),
                          -Limits::infinity(),
                          T(-0.0),
                          Limits::denorm_min(),
                          -Limits::denorm_min(),
                          Limits::min() / 2,
                          Limits::max(),
                          -Limits::max(),
                          Limits::min(),
                          T(1),
                          T(0)};
    return extremes[rng.Int(0, static_cast<int32_t>(std::size(extremes)) - 1)];
  } else {
    const T white = std::is_same_v<T, uint8_t> ? 255 : 32768;
    const T extremes[] = {0, 1, T(white - 1), white, std::numeric_limits<T>::max()};
    return extremes[rng.Int(0, static_cast<int32_t>(std::size(extremes)) - 1)];
  }
}

template <typename T>
std::vector<unsigned char> Paint(Random& rng, std::size_t elements, Painter painter) {
  std::vector<unsigned char> bytes(elements * sizeof(T));
  for (std::size_t i = 0; i < elements; ++i) {
    const T value = painter == Painter::Extremes ? ExtremeChannel<T>(rng, i % 4 == 0)
                                                 : RandomChannel<T>(rng, i % 4 == 0);
    std::memcpy(bytes.data() + i * sizeof(T), &value, sizeof(T));
  }
  return bytes;
}

std::vector<unsigned char> PaintBuffer(const GoldenCase& c, Random& rng, int32_t width,
                                       int32_t height, int32_t padding) {
  // One spare pixel past the last row, painted too, shows a write beyond the buffer's rows.
  const auto elements = static_cast<std::size_t>(width * 4 + padding) *
                            static_cast<std::size_t>(height > 1 ? height : 1) +
                        4;
  switch (c.depth) {
    case PixelDepth::Depth8:
      return Paint<uint8_t>(rng, elements, c.painter);
    case PixelDepth::Depth16:
      return Paint<uint16_t>(rng, elements, c.painter);
    case PixelDepth::Depth32f:
      return Paint<float>(rng, elements, c.painter);
  }
  throw std::logic_error("golden case with an unknown depth");
}

PF_EffectWorld World(std::vector<unsigned char>& bytes, int32_t width, int32_t height,
                     int32_t rowBytes) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(bytes.data());
  world.rowbytes = rowBytes;
  world.width = width;
  world.height = height;
  return world;
}

uint64_t Fnv1a(const std::vector<unsigned char>& bytes, PixelDepth depth) {
  uint64_t hash = 14695981039346656037ull;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    unsigned char word[4] = {};
    std::memcpy(word, bytes.data() + i, bytes.size() - i < 4 ? bytes.size() - i : 4);
    if (depth == PixelDepth::Depth32f) {
      float value = 0;
      std::memcpy(&value, word, 4);
      if (std::isnan(value)) std::memcpy(word, "\x00\x00\xc0\x7f", 4);
    }
    for (unsigned char b : word)
      hash = (hash ^ b) * 1099511628211ull;
  }
  return hash;
}

}  // namespace

int32_t RowBytes(const GoldenCase& c, int32_t width, int32_t padding) {
  return (width * 4 + padding) * ChannelBytes(c.depth);
}

std::string FormatCase(const GoldenCase& c) {
  char line[256];
  std::snprintf(line, sizeof line, "%d %d %d %d %d %u %.9g %d %d %d %d %d %d",
                static_cast<int>(c.depth), c.width, c.height, c.inPadding, c.outPadding,
                c.pixelSeed, static_cast<double>(c.scale), static_cast<int>(c.layer), c.layerWidth,
                c.layerHeight, c.layerPadding, c.originX, c.originY);
  std::string text = line;
  if (c.painter == Painter::Extremes) text += " paint=extremes";
  const std::string record = test::RecordText(c.record);
  return record.empty() ? text : text + " " + record;
}

GoldenCase ParseCase(const std::string& line) {
  std::istringstream in(line);
  GoldenCase c;
  int32_t depth = 0;
  int32_t layer = 0;
  in >> depth >> c.width >> c.height >> c.inPadding >> c.outPadding >> c.pixelSeed >> c.scale >>
      layer >> c.layerWidth >> c.layerHeight >> c.layerPadding >> c.originX >> c.originY;
  if (!in || depth < 0 || depth > 2 || layer < 0 || layer > 2 || c.width < 0 || c.height < 0)
    throw std::invalid_argument("not a golden case: " + line);
  c.depth = static_cast<PixelDepth>(depth);
  c.layer = static_cast<LayerKind>(layer);
  c.record = DefaultRecord();
  for (std::string word; in >> word;) {
    if (word == "paint=extremes")
      c.painter = Painter::Extremes;
    else
      test::ApplyRecordWord(c.record, word);
  }
  return c;
}

Frame PaintFrame(const GoldenCase& c) {
  Random rng(c.pixelSeed);
  Frame frame;
  frame.input = PaintBuffer(c, rng, c.width, c.height, c.inPadding);
  frame.output = PaintBuffer(c, rng, c.width, c.height, c.outPadding);
  frame.layer = PaintBuffer(c, rng, c.layerWidth, c.layerHeight, c.layerPadding);
  return frame;
}

uint64_t RenderDigest(const GoldenCase& c, Frame& frame) {
  const std::vector<unsigned char> inputBefore = frame.input;
  PF_EffectWorld input = World(frame.input, c.width, c.height, RowBytes(c, c.width, c.inPadding));
  PF_EffectWorld output =
      World(frame.output, c.width, c.height, RowBytes(c, c.width, c.outPadding));
  output.origin_x = c.originX;
  output.origin_y = c.originY;
  PF_EffectWorld layer =
      World(frame.layer, c.layerWidth, c.layerHeight, RowBytes(c, c.layerWidth, c.layerPadding));
  if (c.layer == LayerKind::NoData) layer.data = nullptr;
  StretchRenderRecord record = c.record;
  record.intensityLayer = c.layer == LayerKind::None ? nullptr : &layer;
  DispatchStretchForDepth(c.depth, input, output, record, c.scale);
  if (frame.input != inputBefore) throw std::logic_error("the render changed its input");
  return Fnv1a(frame.output, c.depth);
}

std::vector<std::string> CheckCorpus(const std::string& path, PixelDepth depth, int& cases,
                                     int threads) {
  std::ifstream corpus(path);
  if (!corpus) throw std::runtime_error("cannot read " + path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(corpus, line);) {
    if (!line.empty() && line[0] != '#' && ParseCase(line.substr(17)).depth == depth)
      lines.push_back(line);
  }
  cases = static_cast<int>(lines.size());
  // Thread t renders cases t, t + threads, ...: neighbouring cases run at the same time.
  std::vector<std::string> verdicts(lines.size());
  const auto renderShare = [&](std::size_t first) {
    for (std::size_t i = first; i < lines.size(); i += static_cast<std::size_t>(threads)) {
      const GoldenCase c = ParseCase(lines[i].substr(17));
      Frame frame = PaintFrame(c);
      char written[17];
      std::snprintf(written, sizeof written, "%016" PRIx64, RenderDigest(c, frame));
      if (lines[i].compare(0, 16, written) == 0) continue;
      verdicts[i] = "case " + lines[i].substr(17) + "\n  writes " + written +
                    "; see it with: golden_corpus_tool picture '" + lines[i] + "' case.ppm";
    }
  };
  std::vector<std::thread> workers;
  for (int t = 1; t < threads; ++t)
    workers.emplace_back(renderShare, static_cast<std::size_t>(t));
  renderShare(0);
  for (std::thread& worker : workers)
    worker.join();
  std::vector<std::string> failures;
  for (std::string& verdict : verdicts)
    if (!verdict.empty()) failures.push_back(std::move(verdict));
  return failures;
}

}  // namespace morvane::golden
