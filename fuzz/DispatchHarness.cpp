#include "fuzz/DispatchHarness.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <sstream>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORVANE_HARNESS_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define MORVANE_HARNESS_ASAN 1
#endif
#if !defined(MORVANE_HARNESS_ASAN) && defined(__unix__)
#include <sys/mman.h>
#include <unistd.h>
#define MORVANE_HARNESS_GUARD_PAGES 1
#endif

#include "render/DispatchStretch.h"
#include "tests/support/RecordText.h"

namespace morvane::fuzz {
namespace {

// A small deterministic generator: the same case always paints the same pixels.
class Rng {
 public:
  explicit Rng(uint32_t seed) : state_(seed * 2654435761u + 1u) {}
  uint32_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }
  double Unit() { return static_cast<double>(Next()) / 4294967296.0; }

 private:
  uint32_t state_;
};

int32_t ChannelBytes(PixelDepth depth) {
  switch (depth) {
    case PixelDepth::Depth8:
      return 1;
    case PixelDepth::Depth16:
      return 2;
    case PixelDepth::Depth32f:
      break;
  }
  return 4;
}

#if defined(MORVANE_HARNESS_GUARD_PAGES)
// Without AddressSanitizer the block ends right before an inaccessible page, so that reading
// past the last row faults in any build.
class ExactBlock {
 public:
  explicit ExactBlock(size_t size) {
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t usable = (size + page - 1) / page * page;
    length_ = usable + page;
    void* map = mmap(nullptr, length_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    map_ = static_cast<uint8_t*>(map);
    mprotect(map_ + usable, page, PROT_NONE);
    data_ = map_ + (usable - size);
  }
  ~ExactBlock() { munmap(map_, length_); }
  ExactBlock(const ExactBlock&) = delete;
  ExactBlock& operator=(const ExactBlock&) = delete;
  uint8_t* get() const { return data_; }

 private:
  uint8_t* map_ = nullptr;
  size_t length_ = 0;
  uint8_t* data_ = nullptr;
};
#else
// Under AddressSanitizer a heap block of exactly the image's size: any access outside it is
// reported.
class ExactBlock {
 public:
  explicit ExactBlock(size_t size) : bytes_(new uint8_t[size]) {}
  uint8_t* get() const { return bytes_.get(); }

 private:
  std::unique_ptr<uint8_t[]> bytes_;
};
#endif

// One image in a block of exactly rowbytes * height bytes. The padding after every row is
// filled with a canary.
class ExactWorld {
 public:
  static constexpr uint8_t kCanary = 0x5A;

  ExactWorld(const WorldSpec& shape, PixelDepth depth)
      : depth_(depth),
        rowbytes_(static_cast<size_t>(shape.width * 4 + shape.paddingChannels) *
                  static_cast<size_t>(ChannelBytes(depth))),
        size_(rowbytes_ * static_cast<size_t>(shape.height)),
        bytes_(size_) {
    std::memset(bytes_.get(), kCanary, size_);
    world_ = PF_EffectWorld{};
    world_.data = reinterpret_cast<PF_PixelPtr>(bytes_.get());
    world_.rowbytes = static_cast<A_long>(rowbytes_);
    world_.width = shape.width;
    world_.height = shape.height;
    world_.origin_x = shape.originX;
    world_.origin_y = shape.originY;
  }

  PF_EffectWorld& World() { return world_; }
  const uint8_t* Bytes() const { return bytes_.get(); }
  size_t Size() const { return size_; }
  std::vector<uint8_t> Copy() const { return {bytes_.get(), bytes_.get() + size_}; }

  void Paint(PixelFill fill, Rng& rng) {
    for (int32_t y = 0; y < world_.height; ++y) {
      for (int32_t c = 0; c < world_.width * 4; ++c)
        Store(y, c, Value(fill, rng));
    }
  }

  // Channel `c` of row `y`, widened to double.
  double Load(int32_t y, int32_t c) const {
    const uint8_t* at = At(y, c);
    switch (depth_) {
      case PixelDepth::Depth8:
        return *at;
      case PixelDepth::Depth16: {
        uint16_t v;
        std::memcpy(&v, at, sizeof v);
        return v;
      }
      case PixelDepth::Depth32f:
        break;
    }
    float v;
    std::memcpy(&v, at, sizeof v);
    return v;
  }

  // Bytes between the end of the pixels of a row and the next row that differ from the canary.
  size_t PaddingWritten() const {
    const size_t pixels = static_cast<size_t>(world_.width) * 4 * ChannelBytes(depth_);
    size_t written = 0;
    for (int32_t y = 0; y < world_.height; ++y) {
      const uint8_t* row = bytes_.get() + static_cast<size_t>(y) * rowbytes_;
      for (size_t i = pixels; i < rowbytes_; ++i)
        written += row[i] != kCanary ? 1 : 0;
    }
    return written;
  }

 private:
  const uint8_t* At(int32_t y, int32_t c) const {
    return bytes_.get() + static_cast<size_t>(y) * rowbytes_ +
           static_cast<size_t>(c) * ChannelBytes(depth_);
  }

  void Store(int32_t y, int32_t c, double value) {
    uint8_t* at = bytes_.get() + static_cast<size_t>(y) * rowbytes_ +
                  static_cast<size_t>(c) * ChannelBytes(depth_);
    switch (depth_) {
      case PixelDepth::Depth8:
        *at = static_cast<uint8_t>(value);
        return;
      case PixelDepth::Depth16: {
        const auto v = static_cast<uint16_t>(value);
        std::memcpy(at, &v, sizeof v);
        return;
      }
      case PixelDepth::Depth32f:
        break;
    }
    const auto v = static_cast<float>(value);
    std::memcpy(at, &v, sizeof v);
  }

  double Value(PixelFill fill, Rng& rng) const {
    const double white = depth_ == PixelDepth::Depth8    ? 255.0
                         : depth_ == PixelDepth::Depth16 ? 32768.0
                                                         : 1.0;
    switch (fill) {
      case PixelFill::Black:
        return 0.0;
      case PixelFill::White:
        return white;
      case PixelFill::Extremes:
        if (depth_ == PixelDepth::Depth32f) {
          constexpr double kFloats[] = {0.0,
                                        1.0,
                                        -0.0,
                                        2.0,
                                        -1.0,
                                        1e30,
                                        -1e30,
                                        1e-40,
                                        std::numeric_limits<float>::max(),
                                        std::numeric_limits<double>::infinity(),
                                        -std::numeric_limits<double>::infinity(),
                                        std::numeric_limits<double>::quiet_NaN()};
          return kFloats[rng.Next() % std::size(kFloats)];
        } else {
          const double kValues[] = {0.0, white, 1.0, white - 1.0, std::floor(white / 2.0)};
          return kValues[rng.Next() % std::size(kValues)];
        }
      case PixelFill::Noise:
        break;
    }
    if (depth_ == PixelDepth::Depth32f) return rng.Unit() * 1.5 - 0.25;
    return static_cast<double>(rng.Next() % (static_cast<uint32_t>(white) + 1u));
  }

  PixelDepth depth_;
  size_t rowbytes_;
  size_t size_;
  ExactBlock bytes_;
  PF_EffectWorld world_;
};

}  // namespace

std::vector<std::string> RunDispatchCase(const DispatchCase& c) {
  Rng rng(c.seed);
  ExactWorld input(c.input, c.depth);
  ExactWorld output(c.output, c.depth);
  input.Paint(c.fill, rng);
  // The output starts in range, so channels that no kernel writes stay in range.
  output.Paint(PixelFill::Noise, rng);

  std::unique_ptr<ExactWorld> layer;
  StretchRenderRecord record = c.record;
  record.intensityLayer = nullptr;
  if (c.layer) {
    layer = std::make_unique<ExactWorld>(*c.layer, c.depth);
    layer->Paint(c.fill, rng);
    if (c.layerWithoutPixels) layer->World().data = nullptr;
    record.intensityLayer = &layer->World();
  }

  const std::vector<uint8_t> inputBefore = input.Copy();
  const std::vector<uint8_t> layerBefore = layer ? layer->Copy() : std::vector<uint8_t>{};

  DispatchStretchForDepth(c.depth, input.World(), output.World(), record, c.scale);

  std::vector<std::string> problems;
  if (input.Copy() != inputBefore) problems.push_back("the input was written");
  if (layer && layer->Copy() != layerBefore) problems.push_back("the intensity layer was written");
  if (const size_t n = output.PaddingWritten(); n != 0) {
    problems.push_back(std::to_string(n) + " bytes of output row padding were written");
  }
  if (c.depth == PixelDepth::Depth16) {
    for (int32_t y = 0; y < c.output.height; ++y) {
      for (int32_t ch = 0; ch < c.output.width * 4; ++ch) {
        if (output.Load(y, ch) > 32768.0) {
          problems.push_back("16-bit channel " + std::to_string(ch) + " of row " +
                             std::to_string(y) + " holds " + std::to_string(output.Load(y, ch)));
          return problems;
        }
      }
    }
  }
  return problems;
}

std::string DescribeDispatchCase(const DispatchCase& c) {
  const std::string record = test::RecordText(c.record);
  std::ostringstream out;
  out.precision(17);
  out << "depth " << static_cast<int>(c.depth) << ", input " << c.input.width << "x"
      << c.input.height << "+" << c.input.paddingChannels << ", output " << c.output.width << "x"
      << c.output.height << "+" << c.output.paddingChannels << " at (" << c.output.originX << ", "
      << c.output.originY << ")";
  if (c.layer) {
    out << ", layer " << c.layer->width << "x" << c.layer->height << "+" << c.layer->paddingChannels
        << (c.layerWithoutPixels ? " without pixels" : "");
  }
  out << ", scale " << c.scale << ", fill " << static_cast<int>(c.fill) << ", seed " << c.seed
      << "; record: " << (record.empty() ? "the default" : record);
  return out.str();
}

}  // namespace morvane::fuzz
