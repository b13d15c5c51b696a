// Output pixels of a group of columns, held back and written to the image a row at a time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "stretch/KernelIsa.h"
#include "stretch/PixelTraits.h"
#include "stretch/StepPlans.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// Along columns each output pixel of a line lies a row below (or above) the last. Where rows are
// a multiple of a large power of two apart, the pixels a line writes in one chunk all fall into
// the same few sets of the first-level cache and push each other out long before the group's
// other lines write the pixels beside them, so every cache line of the output is fetched once
// for every line that writes to it. The lines of a group, which all begin at the same edge,
// write into a window of output rows here instead, pixel t of line i at row t, place i; whole
// rows of the window then go to the image, so the pixels that share a cache line are written
// together. A line that runs so far ahead of the slowest one that the window cannot hold it
// writes to the image directly. The copy moves the stored channel values unchanged.
template <PixelDepth Depth, ChannelVariant Variant>
class ColumnStaging {
 public:
  using Channel = ChannelType<Depth>;

  // Where a line writes a chunk's pixels: its first one, and the distance from one to the next
  // in channel elements.
  struct Place {
    Channel* first;
    std::ptrdiff_t step;
  };

  // Starts a group of lines whose pixels lie `step` channel elements apart in the image and of
  // which no pixel before `start` is written through the window.
  void BeginGroup(int32_t start, std::ptrdiff_t step) {
    base_ = start;
    step_ = step;
    lines_ = {};
  }

  // Place i of the group holds the line whose pixel 0 is at `target` in the image and which has
  // its pixels before `end` written.
  void Track(int32_t i, Channel* target, int32_t end) { lines_[i] = {target, end, end}; }

  // Where line i writes its next `count` pixels: in the window when it holds them (after the
  // rows every line has passed are written out, where that makes room), else in the image (after
  // the line's pixels the window holds are written out).
  Place Reserve(int32_t i, int32_t count) {
    const int32_t end = lines_[i].end + count;
    if (end - base_ > kRows) MakeRoom();
    Line& line = lines_[i];
    if (end - base_ <= kRows) {
      return {rows_ + kPad - kFirst + std::ptrdiff_t{line.end - base_} * kRowElements + i * kSlot,
              kRowElements};
    }
    WriteOut(base_, line.end, i, i + 1);
    line.from = line.end;
    line.direct = true;
    return {line.target + std::ptrdiff_t{line.end} * step_, step_};
  }

  // Line i has its pixels before `end` written (where Reserve placed them).
  void Written(int32_t i, int32_t end) {
    Line& line = lines_[i];
    line.end = end;
    if (line.direct) line.from = end, line.direct = false;
  }

  // Writes every pixel the window holds to the image.
  void Flush() {
    int32_t last = base_;
    for (const Line& line : lines_)
      last = std::max(last, line.end);
    WriteOut(base_, last, 0, kLockstepLines);
    for (Line& line : lines_)
      line.from = line.end;
  }

 private:
  // The channels a variant writes are neighbours in a pixel, from kFirst on. A one-channel
  // variant holds just that channel, one element per pixel; the others a whole pixel.
  static constexpr int kFirst = *std::min_element(VariantTraits<Variant>::kChannels.begin(),
                                                  VariantTraits<Variant>::kChannels.end());
  static constexpr std::ptrdiff_t kSlot = kChannelCount<Variant> == 1 ? 1 : 4;
  static constexpr std::ptrdiff_t kRowElements = kLockstepLines * kSlot;
  static constexpr std::ptrdiff_t kBytes = 64 * 1024;
  static constexpr int32_t kRows = static_cast<int32_t>(kBytes / sizeof(Channel) / kRowElements);
  // Room before the rows for a cursor's pixel, which sits kFirst elements before the channel.
  static constexpr std::ptrdiff_t kPad = 3;

  // A line's pixels [from, end) are in the window; `direct` while its chunk goes to the image.
  struct Line {
    Channel* target = nullptr;
    int32_t from = 0;
    int32_t end = 0;
    bool direct = false;
  };

  // Writes out the rows every line has passed, then moves the rows still held to the window's
  // start.
  void MakeRoom() {
    int32_t passed = INT32_MAX;
    int32_t last = base_;
    for (const Line& line : lines_) {
      if (line.target == nullptr) continue;
      passed = std::min(passed, line.end);
      if (line.from < line.end) last = std::max(last, line.end);
    }
    if (passed == INT32_MAX || passed <= base_) return;
    WriteOut(base_, passed, 0, kLockstepLines);
    for (Line& line : lines_)
      line.from = std::max(line.from, passed);
    if (last > passed) {
      std::memmove(rows_ + kPad, rows_ + kPad + std::ptrdiff_t{passed - base_} * kRowElements,
                   std::size_t(last - passed) * kRowElements * sizeof(Channel));
    }
    base_ = passed;
  }

  // Writes the held pixels of rows [first, last) of the lines in places [lo, hi) to the image,
  // row by row.
  void WriteOut(int32_t first, int32_t last, int32_t lo, int32_t hi) const {
    for (int32_t t = first; t < last; ++t) {
      const Channel* row = rows_ + kPad + std::ptrdiff_t{t - base_} * kRowElements;
      for (int32_t i = lo; i < hi; ++i) {
        const Line& line = lines_[i];
        if (line.from <= t && t < line.end) {
          std::memcpy(line.target + std::ptrdiff_t{t} * step_ + kFirst, row + i * kSlot,
                      kChannelCount<Variant> * sizeof(Channel));
        }
      }
    }
  }

  int32_t base_ = 0;  // the window's first row is the lines' pixel base_
  std::ptrdiff_t step_ = 0;
  std::array<Line, kLockstepLines> lines_{};
  Channel rows_[kPad + kRows * kRowElements];
};

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
