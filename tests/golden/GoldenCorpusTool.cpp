// Makes golden cases and shows them.
//   golden_corpus_tool generate DEPTH COUNT SEED   random cases of depth 0 (8-bit), 1 (16-bit) or
//                                                  2 (float), one "digest case" line each
//   golden_corpus_tool lines DEPTH SEED            128 cases of a depth: every direction and edge
//                                                  mode with lines of 1-33 pixels, odd line counts,
//                                                  lengths at the edges of the resampler's choices
//   golden_corpus_tool picture LINE OUT.ppm        the case's input beside its output, enlarged,
//                                                  over a checkerboard where alpha is below 1
//   golden_corpus_tool check CASES.txt             renders every case; exit 1 when any output
//                                                  differs from its accepted digest
// A new case joins tests/golden/cases.txt once its picture has been looked at and is right.
#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/golden/GoldenCase.h"
#include "tests/support/RecordText.h"

namespace morvane::golden {
namespace {

constexpr int32_t kTurn = 23592960;  // 360 degrees in 16.16

// Every control of the table drawn over its range, often at its default or an end, now and then
// past it (values a host cannot send but a broken project file might): popups one item beyond
// either end, sliders up to a tenth of their range beyond, angles over two turns either way, the
// checkbox 2. The kernels bound every stretch length below, so any such record renders quickly.
StretchRenderRecord RandomRecord(Random& rng) {
  return test::RecordFrom([&rng](const Control& control) -> double {
    switch (control.kind) {
      case ControlKind::Popup: {
        const int32_t items = PopupItemCount(control);
        return rng.Chance(0.06) ? (rng.Chance(0.5) ? items : -1) : rng.Int(0, items - 1);
      }
      case ControlKind::Angle:
        return rng.Chance(0.4) ? 0 : rng.Int(-2 * kTurn, 2 * kTurn);
      case ControlKind::Checkbox:
        return rng.Chance(0.05) ? 2 : rng.Int(0, 1);
      default: {
        const double lo = control.slider.minimum, hi = control.slider.maximum;
        const double pick = rng.Real(0.0, 1.0), beyond = (hi - lo) / 10.0;
        return pick < 0.3    ? DefaultValue(control)
               : pick < 0.4  ? (rng.Chance(0.5) ? lo : hi)
               : pick < 0.5  ? std::round(rng.Real(lo, hi))
               : pick < 0.95 ? rng.Real(lo, hi)
                             : rng.Real(lo - beyond, hi + beyond);
      }
    }
  });
}

// Frames of every shape a host hands over: empty ones, one-pixel lines, padded rows, reduced
// scales, and an intensity layer of another size, at an origin, without pixels or absent.
GoldenCase RandomCase(PixelDepth depth, uint32_t seed) {
  Random rng(seed);
  GoldenCase c;
  c.depth = depth;
  c.pixelSeed = seed;
  const bool empty = rng.Chance(0.02);
  const auto side = [&rng] {
    return rng.Chance(0.1) ? rng.Int(1, 2) : rng.Int(1, rng.Chance(0.7) ? 16 : 40);
  };
  c.width = empty ? rng.Int(0, 1) * rng.Int(1, 5) : side();
  c.height = empty ? (c.width == 0 ? rng.Int(0, 5) : 0) : side();
  c.inPadding = rng.Chance(0.5) ? 0 : rng.Int(1, 12);
  c.outPadding = rng.Chance(0.5) ? 0 : rng.Int(1, 12);
  c.record = RandomRecord(rng);
  const double scale = rng.Real(0.0, 1.0);
  c.scale = scale < 0.6    ? 1.0f
            : scale < 0.75 ? 0.5f
            : scale < 0.8  ? 0.25f
            : scale < 0.97 ? static_cast<float>(rng.Real(0.1, 1.0))
                           : (rng.Chance(0.5) ? 2.0f : 4.0f);
  const double layer = rng.Real(0.0, 1.0);
  c.layer = layer < 0.45 ? LayerKind::Pixels : layer < 0.5 ? LayerKind::NoData : LayerKind::None;
  c.layerWidth = rng.Int(1, 48);
  c.layerHeight = rng.Int(1, 48);
  const double origin = rng.Real(0.0, 1.0);
  if (origin < 0.3) {  // the output inside a larger layer
    c.layerWidth = c.width + rng.Int(0, 12);
    c.layerHeight = c.height + rng.Int(0, 12);
    c.originX = rng.Int(0, c.layerWidth - c.width);
    c.originY = rng.Int(0, c.layerHeight - c.height);
  } else if (origin < 0.5) {
    c.originX = rng.Int(-6, 20);
    c.originY = rng.Int(-6, 20);
  } else if (origin < 0.7 && c.width > 0 && c.height > 0) {  // a multiple or a divisor
    const int32_t k = rng.Int(1, 3);
    const bool larger = rng.Chance(0.5);
    c.layerWidth = larger ? c.width * k : std::max(1, c.width / k);
    c.layerHeight = larger ? c.height * k : std::max(1, c.height / k);
  }
  if (c.layer == LayerKind::NoData && rng.Chance(0.5)) {  // a layer of no width
    c.layer = LayerKind::Pixels;
    c.layerWidth = 0;
  }
  c.layerPadding = rng.Chance(0.5) ? 0 : rng.Int(1, 8);
  return c;
}

// Every direction and edge mode with lines of each length in kLineLengths, in groups of lines that
// are seldom whole multiples of 8, a third painted with extreme values, and stretch lengths where
// the resampler changes its mind (about 0.01, steps of 1 - 1e-5 and near it, their multiples).
std::vector<GoldenCase> LineCases(PixelDepth depth, uint32_t seed) {
  constexpr int32_t kLineLengths[] = {1, 2, 3, 7, 8, 9, 31, 33};
  constexpr double kPixelSizes[] = {0.01,     0.99999,   0.999985, 0.9999949, 1.99999,
                                    0.499995, 0.3333333, 1.00001,  2.99999,   0.0100001};
  std::vector<GoldenCase> cases;
  for (int32_t direction = 0; direction < 4; ++direction) {
    for (int32_t edge = 0; edge < 4; ++edge) {
      for (const int32_t along : kLineLengths) {
        const auto caseSeed = seed + static_cast<uint32_t>(cases.size());
        GoldenCase c = RandomCase(depth, caseSeed);
        Random rng(~caseSeed);
        const int32_t lines = rng.Chance(0.2) ? 8 * rng.Int(1, 2) : rng.Int(1, 19);
        const bool rows = direction < 2;
        c.width = rows ? along : lines;
        c.height = rows ? lines : along;
        c.record.direction = direction;
        c.record.edgeMode = edge;
        if (rng.Chance(0.3)) c.painter = Painter::Extremes;
        if (rng.Chance(0.5)) {  // the stretch length is the pixel size
          c.record.intensity = 100.0;
          c.record.stretchAmount = 0.0;
          c.record.pixelSize =
              kPixelSizes[rng.Int(0, static_cast<int32_t>(std::size(kPixelSizes)) - 1)];
        }
        if (rng.Chance(0.5))
          c.record.startOffset = rng.Chance(0.5) ? rng.Int(1, 99) : rng.Real(0, 100);
        cases.push_back(c);
      }
    }
  }
  return cases;
}

double Unit(const std::vector<unsigned char>& bytes, PixelDepth depth, std::size_t element) {
  if (depth == PixelDepth::Depth8) return bytes[element] / 255.0;
  if (depth == PixelDepth::Depth16) {
    uint16_t v = 0;
    std::memcpy(&v, bytes.data() + element * 2, 2);
    return v / 32768.0;
  }
  float v = 0;
  std::memcpy(&v, bytes.data() + element * 4, 4);
  return std::isnan(v) ? 0.0 : v;
}

void WritePicture(const GoldenCase& c, const std::string& line, const char* path) {
  Frame frame = PaintFrame(c);
  const Frame before = frame;
  RenderDigest(c, frame);
  constexpr int32_t kZoom = 8;
  const int32_t w = std::max(c.width, 1) * kZoom;
  const int32_t h = std::max(c.height, 1) * kZoom;
  std::ofstream out(path, std::ios::binary);
  out << "P6\n# " << line << "\n" << (2 * w + kZoom) << " " << h << "\n255\n";
  const int32_t stride[2] = {c.width * 4 + c.inPadding, c.width * 4 + c.outPadding};
  const std::vector<unsigned char>* images[2] = {&before.input, &frame.output};
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < 2 * w + kZoom; ++x) {
      const int32_t side = x < w ? 0 : x >= w + kZoom ? 1 : -1;
      const int32_t px = (side == 1 ? x - w - kZoom : x) / kZoom;
      const double checker = ((x / 4 + y / 4) % 2) != 0 ? 0.8 : 0.5;
      for (int32_t channel = 1; channel < 4; ++channel) {
        double v = 1.0;
        if (side >= 0 && c.width > 0 && c.height > 0) {
          const auto at = static_cast<std::size_t>((y / kZoom) * stride[side] + px * 4);
          const double alpha = std::clamp(Unit(*images[side], c.depth, at), 0.0, 1.0);
          const double colour = std::clamp(Unit(*images[side], c.depth, at + channel), 0.0, 1.0);
          v = colour * alpha + checker * (1.0 - alpha);
        }
        out.put(static_cast<char>(std::lround(v * 255.0)));
      }
    }
  }
}

// The case's corpus line: its digest as rendered now, then the case.
void PrintCase(const GoldenCase& c) {
  Frame frame = PaintFrame(c);
  std::printf("%016" PRIx64 " %s\n", RenderDigest(c, frame), FormatCase(c).c_str());
}

int Run(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "generate" && argc == 5) {
    const auto depth = static_cast<PixelDepth>(std::stoi(argv[2]));
    const int count = std::stoi(argv[3]);
    const auto seed = static_cast<uint32_t>(std::stoul(argv[4]));
    for (int i = 0; i < count; ++i) {
      PrintCase(RandomCase(depth, seed + static_cast<uint32_t>(i)));
    }
    return 0;
  }
  if (command == "lines" && argc == 4) {
    const auto depth = static_cast<PixelDepth>(std::stoi(argv[2]));
    for (const GoldenCase& c : LineCases(depth, static_cast<uint32_t>(std::stoul(argv[3]))))
      PrintCase(c);
    return 0;
  }
  if (command == "picture" && argc == 4) {
    std::string line = argv[2];
    if (line.size() > 17 && line[16] == ' ') line = line.substr(17);  // a corpus line
    WritePicture(ParseCase(line), line, argv[3]);
    return 0;
  }
  if (command == "check" && argc == 3) {
    int failed = 0;
    for (const PixelDepth depth : {PixelDepth::Depth8, PixelDepth::Depth16, PixelDepth::Depth32f}) {
      int cases = 0;
      const std::vector<std::string> failures = CheckCorpus(argv[2], depth, cases);
      for (const std::string& failure : failures)
        std::printf("%s\n", failure.c_str());
      std::printf("depth %d: %d cases, %zu differ\n", static_cast<int>(depth), cases,
                  failures.size());
      failed += static_cast<int>(failures.size()) + (cases == 0 ? 1 : 0);
    }
    return failed == 0 ? 0 : 1;
  }
  std::fprintf(stderr,
               "usage: golden_corpus_tool generate DEPTH COUNT SEED\n"
               "       golden_corpus_tool lines DEPTH SEED\n"
               "       golden_corpus_tool picture LINE OUT.ppm\n"
               "       golden_corpus_tool check CASES.txt\n");
  return 2;
}

}  // namespace
}  // namespace morvane::golden

int main(int argc, char** argv) {
  try {
    return morvane::golden::Run(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "golden_corpus_tool: %s\n", e.what());
    return 1;
  }
}
