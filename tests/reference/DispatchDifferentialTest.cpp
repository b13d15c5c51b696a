// Renders many seeded random frames through the effect's dispatcher and through
// the reference model, and requires every output element to agree bit for bit
// (padding included). A failing case prints its seed and everything needed to
// rerun it; MORVANE_DIFF_SEED=<depth>:<seed> runs a single case.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "render/DispatchStretch.h"
#include "render/StretchRenderRecord.h"
#include "tests/reference/ReferenceStretch.h"

namespace morvane {
namespace {

constexpr int32_t kTurn = 23592960;
constexpr int kCasesPerDepth = 400;

// ---- Random helpers (own arithmetic, so a seed means the same case anywhere) ----

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

template <typename T>
T RandomChannel(Random& rng, bool alpha) {
  if constexpr (std::is_same_v<T, uint8_t>) {
    if (alpha && rng.Chance(0.5)) {
      return 255;
    }
    if (rng.Chance(0.08)) {
      return rng.Chance(0.5) ? 0 : 255;
    }
    return static_cast<uint8_t>(rng.Int(0, 255));
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    if (alpha && rng.Chance(0.5)) {
      return 32768;
    }
    if (rng.Chance(0.04)) {
      return static_cast<uint16_t>(rng.Int(32769, 65535));  // beyond white
    }
    if (rng.Chance(0.08)) {
      return rng.Chance(0.5) ? 0 : 32768;
    }
    return static_cast<uint16_t>(rng.Int(0, 32768));
  } else {
    if (alpha && rng.Chance(0.5)) {
      return 1.0f;
    }
    if (rng.Chance(0.01)) {
      return std::nanf("");
    }
    if (rng.Chance(0.05)) {
      return static_cast<float>(rng.Real(-0.5, 2.5));
    }
    return static_cast<float>(rng.Real(0.0, 1.0));
  }
}

// A buffer with `padding` extra channel elements per row, filled at random
// (padding too, so that writes outside the image show).
template <typename T>
struct Buffer {
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;
  std::vector<T> elements;

  Buffer(Random& rng, int32_t w, int32_t h, int32_t padding)
      : width(w),
        height(h),
        stride(w * 4 + padding),
        elements(static_cast<std::size_t>(stride) * static_cast<std::size_t>(std::max(h, 1)) + 4) {
    for (std::size_t i = 0; i < elements.size(); ++i) {
      elements[i] = RandomChannel<T>(rng, i % 4 == 0);
    }
  }

  PF_EffectWorld World(int32_t originX = 0, int32_t originY = 0) {
    PF_EffectWorld world{};
    world.data = reinterpret_cast<PF_PixelPtr>(elements.data());
    world.rowbytes = stride * static_cast<int32_t>(sizeof(T));
    world.width = width;
    world.height = height;
    world.origin_x = originX;
    world.origin_y = originY;
    return world;
  }
  reference::ConstImage<T> In() const { return {elements.data(), stride, width, height}; }
  reference::Image<T> Out() { return {elements.data(), stride, width, height}; }
};

// ---- Random frame settings --------------------------------------------------------

StretchRenderRecord RandomRecord(Random& rng) {
  StretchRenderRecord r{};
  r.channelMode = rng.Chance(0.06) ? (rng.Chance(0.5) ? 8 : -1) : rng.Int(0, 7);

  const double pick = rng.Real(0.0, 1.0);
  bool negativeIntensity = false;
  if (pick < 0.05) {
    r.intensity = 0.0;
  } else if (pick < 0.35) {
    r.intensity = 100.0;
  } else if (pick < 0.92) {
    r.intensity = rng.Real(0.0, 100.0);
  } else if (pick < 0.97) {
    r.intensity = rng.Real(100.0, 110.0);
  } else {
    r.intensity = rng.Real(-5.0, 0.0);
    negativeIntensity = true;
  }

  r.direction = rng.Chance(0.06) ? (rng.Chance(0.5) ? 4 : -1) : rng.Int(0, 3);

  // Lengths stay above a small positive bound unless they are meant to be
  // zero or negative (then constant), so that every line ends in reasonable time.
  const double lengthKind = rng.Real(0.0, 1.0);
  if (lengthKind < 0.05 && !negativeIntensity) {
    r.pixelSize = rng.Chance(0.5) ? 0.0 : rng.Real(-0.6, 0.0);
    r.stretchAmount = 0.0;
  } else {
    const double sizePick = rng.Real(0.0, 1.0);
    if (sizePick < 0.6) {
      r.pixelSize = rng.Real(0.3, 3.0);
    } else if (sizePick < 0.9) {
      r.pixelSize = rng.Real(0.01, 16.0);
    } else if (sizePick < 0.95) {
      r.pixelSize = rng.Real(16.0, 17.0);
    } else {
      r.pixelSize = 0.005;
    }
    const double amountPick = rng.Real(0.0, 1.0);
    if (negativeIntensity) {
      r.stretchAmount = 0.0;
    } else if (amountPick < 0.5) {
      r.stretchAmount = rng.Real(0.0, 4.0);
    } else if (amountPick < 0.9) {
      r.stretchAmount = rng.Real(0.0, 64.0);
    } else if (amountPick < 0.95 || r.pixelSize < 1.0) {
      r.stretchAmount = rng.Real(64.0, 70.0);
    } else {
      r.stretchAmount = rng.Real(-0.5, 0.0);
    }
  }

  const double offsetPick = rng.Real(0.0, 1.0);
  r.startOffset = offsetPick < 0.45   ? 0.0
                  : offsetPick < 0.85 ? rng.Real(0.0, 100.0)
                  : offsetPick < 0.9  ? 100.0
                                      : rng.Real(-30.0, 130.0);
  r.curveShape = rng.Chance(0.06) ? (rng.Chance(0.5) ? 6 : -1) : rng.Int(0, 5);
  r.curvePhase = rng.Chance(0.4) ? 0 : rng.Int(-2 * kTurn, 2 * kTurn);
  const double smoothPick = rng.Real(0.0, 1.0);
  r.curveSmoothness = smoothPick < 0.4    ? 0.0
                      : smoothPick < 0.6  ? static_cast<double>(rng.Int(0, 16))
                      : smoothPick < 0.97 ? rng.Real(0.0, 16.0)
                                          : rng.Real(-1.0, 17.0);
  r.distributionMode = rng.Chance(0.06) ? 3 : rng.Int(0, 2);
  const double rangePick = rng.Real(0.0, 1.0);
  r.distributionRange = rangePick < 0.35   ? 2.0
                        : rangePick < 0.45 ? 0.0
                        : rangePick < 0.9  ? rng.Real(0.0, 2.0)
                                           : rng.Real(-0.2, 2.2);
  r.imageShiftPhase = rng.Chance(0.4) ? 0 : rng.Int(-3 * kTurn, 3 * kTurn);
  r.imageShiftPhaseSync = rng.Chance(0.05) ? 2 : rng.Int(0, 1);
  r.shadingMode = rng.Chance(0.06) ? 6 : rng.Int(0, 5);
  const double sizePick = rng.Real(0.0, 1.0);
  r.shadingIntervalSize = sizePick < 0.7    ? rng.Int(2, 20)
                          : sizePick < 0.97 ? rng.Int(2, 256)
                                            : (rng.Chance(0.5) ? rng.Int(0, 1) : 300);
  r.shadingIntervalPhase = rng.Chance(0.4) ? 0 : rng.Int(-2 * kTurn, 2 * kTurn);
  r.shadingOpacity = rng.Chance(0.95) ? rng.Real(0.0, 100.0) : rng.Real(-5.0, 105.0);
  r.shadingChannels = rng.Chance(0.06) ? 2 : rng.Int(0, 1);
  r.edgeMode = rng.Chance(0.06) ? 4 : rng.Int(0, 3);
  const double featherPick = rng.Real(0.0, 1.0);
  r.transparencyFeather = featherPick < 0.4    ? 0.0
                          : featherPick < 0.95 ? rng.Real(0.0, 100.0)
                                               : rng.Real(-5.0, 110.0);
  return r;
}

reference::Settings ToSettings(const StretchRenderRecord& r) {
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
  return s;
}

std::string Describe(const StretchRenderRecord& r) {
  std::ostringstream o;
  o.precision(17);
  o << "channelMode=" << r.channelMode << " intensity=" << r.intensity
    << " direction=" << r.direction << " stretchAmount=" << r.stretchAmount
    << " pixelSize=" << r.pixelSize << " startOffset=" << r.startOffset
    << " curveShape=" << r.curveShape << " curvePhase=" << r.curvePhase
    << " curveSmoothness=" << r.curveSmoothness << " distributionMode=" << r.distributionMode
    << " distributionRange=" << r.distributionRange << " imageShiftPhase=" << r.imageShiftPhase
    << " imageShiftPhaseSync=" << r.imageShiftPhaseSync << " shadingMode=" << r.shadingMode
    << " shadingIntervalSize=" << r.shadingIntervalSize
    << " shadingIntervalPhase=" << r.shadingIntervalPhase << " shadingOpacity=" << r.shadingOpacity
    << " shadingChannels=" << r.shadingChannels << " edgeMode=" << r.edgeMode
    << " transparencyFeather=" << r.transparencyFeather;
  return o.str();
}

template <typename T>
bool SameElement(T a, T b) {
  if constexpr (std::is_same_v<T, float>) {
    if (std::isnan(a) && std::isnan(b)) {
      return true;
    }
    uint32_t ua = 0;
    uint32_t ub = 0;
    std::memcpy(&ua, &a, 4);
    std::memcpy(&ub, &b, 4);
    return ua == ub;
  } else {
    return a == b;
  }
}

template <typename T>
double Printable(T v) {
  return static_cast<double>(v);
}

template <typename T>
void CallDispatch(const PF_EffectWorld& input, PF_EffectWorld& output,
                  const StretchRenderRecord& record, float scale) {
  if constexpr (std::is_same_v<T, uint8_t>) {
    DispatchStretch<PixelDepth::Depth8>(input, output, record, scale);
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    DispatchStretch<PixelDepth::Depth16>(input, output, record, scale);
  } else {
    DispatchStretch<PixelDepth::Depth32f>(input, output, record, scale);
  }
}

// ---- One case ------------------------------------------------------------------

// Runs one random case; returns an empty string when both sides agree.
template <typename T>
std::string RunCase(uint32_t seed) {
  Random rng(seed);
  const bool empty = rng.Chance(0.02);
  auto side = [&rng]() {
    return rng.Chance(0.1) ? rng.Int(1, 2) : rng.Int(1, rng.Chance(0.7) ? 16 : 40);
  };
  const int32_t width = empty ? rng.Int(0, 1) * rng.Int(1, 5) : side();
  const int32_t height = empty ? (width == 0 ? rng.Int(0, 5) : 0) : side();
  const int32_t inPadding = rng.Chance(0.5) ? 0 : rng.Int(1, 12);
  const int32_t outPadding = rng.Chance(0.5) ? 0 : rng.Int(1, 12);
  Buffer<T> input(rng, width, height, inPadding);
  Buffer<T> output(rng, width, height, outPadding);

  StretchRenderRecord record = RandomRecord(rng);
  const double scalePick = rng.Real(0.0, 1.0);
  const float scale = scalePick < 0.6    ? 1.0f
                      : scalePick < 0.75 ? 0.5f
                      : scalePick < 0.8  ? 0.25f
                      : scalePick < 0.97 ? static_cast<float>(rng.Real(0.1, 1.0))
                                         : (rng.Chance(0.5) ? 2.0f : 4.0f);

  // Intensity Source layer: none, a proper one, or one without pixels.
  const double layerPick = rng.Real(0.0, 1.0);
  const bool hasLayer = layerPick < 0.45;
  const bool emptyLayer = layerPick >= 0.45 && layerPick < 0.5;
  int32_t layerWidth = rng.Int(1, 48);
  int32_t layerHeight = rng.Int(1, 48);
  int32_t originX = 0;
  int32_t originY = 0;
  const double originPick = rng.Real(0.0, 1.0);
  if (originPick < 0.3) {
    // The output inside a larger layer at a positive origin.
    layerWidth = width + rng.Int(0, 12);
    layerHeight = height + rng.Int(0, 12);
    originX = rng.Int(0, layerWidth - width);
    originY = rng.Int(0, layerHeight - height);
  } else if (originPick < 0.5) {
    originX = rng.Int(-6, 20);
    originY = rng.Int(-6, 20);
  } else if (originPick < 0.7 && width > 0 && height > 0) {
    // Whole-number steps: the layer a multiple or a divisor of the output.
    const int32_t k = rng.Int(1, 3);
    const bool larger = rng.Chance(0.5);
    layerWidth = larger ? width * k : std::max(1, width / k);
    layerHeight = larger ? height * k : std::max(1, height / k);
  }
  Buffer<T> layer(rng, emptyLayer && rng.Chance(0.5) ? 0 : layerWidth, layerHeight,
                  rng.Chance(0.5) ? 0 : rng.Int(1, 8));
  PF_EffectWorld layerWorld = layer.World();
  if (emptyLayer && layer.width != 0) {
    layerWorld.data = nullptr;
  }
  record.intensityLayer = (hasLayer || emptyLayer) ? &layerWorld : nullptr;

  // The reference.
  Buffer<T> expected = output;
  const reference::ConstImage<T> layerImage{reinterpret_cast<const T*>(layerWorld.data),
                                            layer.stride, layer.width, layer.height};
  reference::Dispatch<T>(input.In(), expected.Out(), ToSettings(record), scale,
                         record.intensityLayer != nullptr ? &layerImage : nullptr, originX,
                         originY);

  // The effect.
  const std::vector<T> inputBefore = input.elements;
  PF_EffectWorld inWorld = input.World();
  PF_EffectWorld outWorld = output.World(originX, originY);
  CallDispatch<T>(inWorld, outWorld, record, scale);

  std::ostringstream report;
  if (std::memcmp(input.elements.data(), inputBefore.data(), inputBefore.size() * sizeof(T)) != 0) {
    report << "input modified; ";
  }
  std::size_t differing = 0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < expected.elements.size(); ++i) {
    if (!SameElement(expected.elements[i], output.elements[i])) {
      if (differing == 0) {
        first = i;
      }
      ++differing;
    }
  }
  if (differing == 0 && report.str().empty()) {
    return {};
  }
  const auto stride = static_cast<std::size_t>(output.stride);
  report.precision(17);
  report << "seed " << seed << " depth " << sizeof(T) * 8 << (std::is_same_v<T, float> ? "f" : "")
         << ": " << width << "x" << height << " in stride " << input.stride << " out stride "
         << output.stride << " scale " << scale << " layer "
         << (record.intensityLayer == nullptr
                 ? std::string("none")
                 : std::to_string(layer.width) + "x" + std::to_string(layer.height) + " stride " +
                       std::to_string(layer.stride) +
                       (layerWorld.data == nullptr ? " (no data)" : ""))
         << " origin " << originX << "," << originY << "\n  " << Describe(record) << "\n  ";
  if (differing > 0) {
    report << differing << " differing elements; first at x=" << (first % stride) / 4
           << " y=" << first / stride << " channel " << first % 4
           << ((first % stride) >= static_cast<std::size_t>(width) * 4 ? " (padding)" : "")
           << ": effect " << Printable(output.elements[first]) << ", reference "
           << Printable(expected.elements[first]);
  }
  return report.str();
}

// MORVANE_DIFF_CASES=<n> runs n cases per depth instead (a longer soak).
int CasesPerDepth() {
  const char* cases = std::getenv("MORVANE_DIFF_CASES");
  return cases != nullptr ? std::max(1, std::atoi(cases)) : kCasesPerDepth;
}

template <typename T>
void RunDepth(uint32_t base) {
  int failures = 0;
  const int count = CasesPerDepth();
  for (int i = 0; i < count; ++i) {
    const std::string failure = RunCase<T>(base + static_cast<uint32_t>(i));
    if (!failure.empty()) {
      ++failures;
      ADD_FAILURE() << failure;
    }
  }
  EXPECT_EQ(failures, 0) << "of " << count << " cases";
}

TEST(DispatchDifferential, EightBit) {
  RunDepth<uint8_t>(1000);
}
TEST(DispatchDifferential, SixteenBit) {
  RunDepth<uint16_t>(2000);
}
TEST(DispatchDifferential, FloatingPoint) {
  RunDepth<float>(3000);
}

// MORVANE_DIFF_SEED=8:1234 (or 16:..., 32:...) reruns one case.
TEST(DispatchDifferential, SingleCaseFromEnvironment) {
  const char* choice = std::getenv("MORVANE_DIFF_SEED");
  if (choice == nullptr) {
    GTEST_SKIP() << "MORVANE_DIFF_SEED not set";
  }
  const std::string s(choice);
  const auto colon = s.find(':');
  ASSERT_NE(colon, std::string::npos);
  const int depth = std::stoi(s.substr(0, colon));
  const auto seed = static_cast<uint32_t>(std::stoul(s.substr(colon + 1)));
  const std::string failure = depth == 8    ? RunCase<uint8_t>(seed)
                              : depth == 16 ? RunCase<uint16_t>(seed)
                                            : RunCase<float>(seed);
  EXPECT_TRUE(failure.empty()) << failure;
}

}  // namespace
}  // namespace morvane
