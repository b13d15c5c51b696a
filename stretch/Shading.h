// The periodic shading pattern laid along the direction of travel.
#pragma once

#include <array>
#include <cstdint>

namespace morvane {

// "Shading" popup value minus one.
enum class ShadingMode : int32_t {
  None = 0,
  SineWave = 1,
  TriangleWave = 2,
  LinearRampUp = 3,
  LinearRampDown = 4,
  Line = 5,
};

// "Shading Channel(s)" popup value minus one.
enum class ShadingChannel : int32_t {
  Alpha = 0,
  RGB = 1,
};

// Values the popups cannot produce: an unknown mode shades nothing, an unknown channel is Alpha.
constexpr ShadingMode ShadingModeFromRecord(int32_t value) {
  return value >= 0 && value <= 5 ? static_cast<ShadingMode>(value) : ShadingMode::None;
}
constexpr ShadingChannel ShadingChannelFromRecord(int32_t value) {
  return value == 1 ? ShadingChannel::RGB : ShadingChannel::Alpha;
}

inline constexpr int32_t kMaxShadingTableSize = 256;

struct ShadingTable {
  int32_t size = 2;   // N, 2 ... 256
  int32_t phase = 0;  // r: the entry holding the pattern's first value
  std::array<double, kMaxShadingTableSize> entries{};
};

// N = max(2, trunc(S * scale)) with S = 0 counting as 8, limited to the table's 256 entries.
int32_t ShadingTableSize(int32_t intervalSize, float scale);

// The table rotation for "Shading Interval Phase" (16.16 degrees) on a table of `size` entries.
int32_t ShadingTablePhase(int32_t intervalPhase, int32_t size);

// Builds the table for one kernel call; `intensityFraction` is "Morvane Intensity" / 100.
ShadingTable BuildShadingTable(ShadingMode mode, int32_t intervalSize, int32_t intervalPhase,
                               double opacityPercent, double intensityFraction, float scale);

// Walks the table along a line: stretch step j reads entries (offset + j) mod N and
// (offset + j + 1) mod N, where the offset is the whole-pixel image shift.
class ShadeWalker {
 public:
  ShadeWalker(const ShadingTable& table, int32_t imageShiftOffset)
      : entries_(table.entries.data()), size_(table.size), index_(imageShiftOffset % table.size) {
    next_ = index_ + 1 == size_ ? 0 : index_ + 1;
  }
  ShadeWalker(const ShadingTable&&, int32_t) = delete;  // reads the table in place
  [[gnu::always_inline]] double Current() const { return entries_[index_]; }
  [[gnu::always_inline]] double Next() const { return entries_[next_]; }
  [[gnu::always_inline]] void Advance() {
    index_ = next_;
    next_ = next_ + 1 == size_ ? 0 : next_ + 1;
  }

 private:
  const double* entries_;
  int32_t size_;
  int32_t index_;
  int32_t next_ = 0;
};

// The multipliers of one stretch step: colour for red, green and blue, alpha bases for alpha
// (the edge fade completes them).
struct StepMultipliers {
  double colourCurrent = 1.0;
  double colourNext = 1.0;
  double alphaCurrent = 1.0;
  double alphaNext = 1.0;
};

// Routes the step's two shades to the colour or the alpha multipliers.
constexpr StepMultipliers RouteShades(ShadingChannel channel, double current, double next) {
  StepMultipliers m;
  if (channel == ShadingChannel::RGB) {
    m.colourCurrent = current;
    m.colourNext = next;
  } else {
    m.alphaCurrent = current;
    m.alphaNext = next;
  }
  return m;
}

}  // namespace morvane
