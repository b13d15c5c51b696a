// What a line position beyond the end of a line reads, and the alpha fade of "Transparent".
//
// Positions are counted from the line's starting edge in the direction of travel and only ever
// increase. The walkers below advance an unresolved position one step at a time and keep its
// resolved value incrementally; the result is exactly the resolution of the position itself,
// without a division per step.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "stretch/StretchMath.h"

namespace morvane {

// "Edge Mode" popup value minus one.
enum class EdgeMode : int32_t {
  Wrap = 0,
  Mirror = 1,
  RepeatLast = 2,
  Transparent = 3,
};

// Values the popup cannot produce act as Wrap.
constexpr EdgeMode EdgeModeFromRecord(int32_t value) {
  return value >= 0 && value <= 3 ? static_cast<EdgeMode>(value) : EdgeMode::Wrap;
}

// The period after which positions repeat: L, 2L - 2 (Mirror) or L - 1 (RepeatLast). A line of
// one pixel gets 2 for Mirror and 1 for RepeatLast so that the period is never zero.
constexpr int64_t EdgePeriod(EdgeMode mode, int32_t length) {
  const int64_t l = length;
  switch (mode) {
    case EdgeMode::Mirror:
      return 2 * l - 2 == 0 ? 2 : 2 * l - 2;
    case EdgeMode::RepeatLast:
      return l - 1 == 0 ? 1 : l - 1;
    case EdgeMode::Wrap:
    case EdgeMode::Transparent:
      break;
  }
  return l;
}

// Resolves a whole line position (>= 0) into a pixel index 0 ... length - 1. A line of one pixel
// resolves every position to that pixel (the Mirror formula alone would give 1 there).
constexpr int32_t ResolveLinePosition(EdgeMode mode, int32_t length, int64_t position) {
  if (length == 1) return 0;
  switch (mode) {
    case EdgeMode::Mirror: {
      const int64_t period = EdgePeriod(mode, length);
      const int64_t r = position % period;
      return static_cast<int32_t>(r <= length - 1 ? r : period - r);
    }
    case EdgeMode::RepeatLast:
      return static_cast<int32_t>(std::min<int64_t>(position, length - 1));
    case EdgeMode::Wrap:
    case EdgeMode::Transparent:
      break;
  }
  return static_cast<int32_t>(position % length);
}

// Resolves a fixed-point intensity position (12 fraction bits, >= 0) on an intensity line whose
// period is `period` pixels. The result is fixed point too; its whole part is the pixel sampled
// (which may still need clamping into the line, see LayerPixelOnLine).
constexpr int64_t ResolveIntensityPosition(EdgeMode mode, int64_t period, int64_t position) {
  const int64_t fixedPeriod = period * kLayerOne;
  switch (mode) {
    case EdgeMode::Mirror: {
      const int64_t r = position % fixedPeriod;
      return r < fixedPeriod / 2 ? r : fixedPeriod - r;
    }
    case EdgeMode::RepeatLast:
      return std::min(position, fixedPeriod);
    case EdgeMode::Wrap:
    case EdgeMode::Transparent:
      break;
  }
  return position % fixedPeriod;
}

// The sampled pixel of a resolved fixed-point position, kept inside a line of `length` pixels
// (the one-pixel substitute periods alone could reach pixel 1). Always inlined: the AVX2 line
// routines call it, and an out-of-line copy there could be linked into baseline callers.
[[gnu::always_inline]] constexpr int32_t LayerPixelOnLine(int64_t resolved, int32_t length) {
  return static_cast<int32_t>(std::clamp<int64_t>(resolved >> kLayerFractionBits, 0, length - 1));
}

// Feather length in whole pixels: truncate(feather / 100 * L).
constexpr int32_t FeatherLength(double featherPercent, int32_t length) {
  return TruncTo<int32_t>(featherPercent / 100.0 * static_cast<double>(length));
}

// The "Transparent" fade of an unresolved position: 0 beyond the line's end, (L - k) / F (divided
// in single precision) within F pixels of it, else 1.
inline double EdgeFade(int32_t length, int32_t feather, int64_t position) {
  const int64_t remaining = length - position;
  if (remaining <= 0) return 0.0;
  if (remaining < feather) {
    return static_cast<double>(static_cast<float>(remaining) / static_cast<float>(feather));
  }
  return 1.0;
}

// How a walker's resolved index moved on one step.
enum class IndexMove { Stay, Forward, Back, ToFirst };

// A whole line position walking forward one pixel per step, for one edge mode.
template <EdgeMode Mode>
class LinePositionWalker {
 public:
  LinePositionWalker() = default;
  LinePositionWalker(int32_t length, int64_t start) : length_(length) {
    if constexpr (Mode == EdgeMode::RepeatLast) {
      state_ = std::min<int64_t>(start, length - 1);
    } else if constexpr (Mode == EdgeMode::Mirror) {
      // On a one-pixel line every position reads pixel 0: a period of 1 keeps the state there.
      period_ = length == 1 ? 1 : EdgePeriod(Mode, length);
      state_ = start % period_;
    } else {
      state_ = start % length;
      if constexpr (Mode == EdgeMode::Transparent) clamped_ = std::min<int64_t>(start, length);
    }
  }

  [[gnu::always_inline]] int32_t Index() const {
    if constexpr (Mode == EdgeMode::Mirror) {
      return static_cast<int32_t>(state_ <= length_ - 1 ? state_ : period_ - state_);
    } else {
      return static_cast<int32_t>(state_);
    }
  }

  // One step on; returns how Index() moved.
  [[gnu::always_inline]] IndexMove Advance() {
    if constexpr (Mode == EdgeMode::RepeatLast) {
      if (state_ < length_ - 1) {
        ++state_;
        return IndexMove::Forward;
      }
      return IndexMove::Stay;
    } else if constexpr (Mode == EdgeMode::Mirror) {
      if (++state_ == period_) {
        state_ = 0;
        return IndexMove::ToFirst;
      }
      return state_ <= length_ - 1 ? IndexMove::Forward : IndexMove::Back;
    } else {
      if constexpr (Mode == EdgeMode::Transparent) {
        if (clamped_ < length_) ++clamped_;
      }
      if (++state_ == length_) {
        state_ = 0;
        return IndexMove::ToFirst;
      }
      return IndexMove::Forward;
    }
  }

  // Whether each of the next n steps moves Index() forward by one: no edge is met on the way.
  // (Not for Transparent, whose fade also moves.)
  [[gnu::always_inline]] bool ForwardFor(int32_t n) const {
    static_assert(Mode != EdgeMode::Transparent);
    return state_ + n < length_;
  }
  // n steps on, each known to move forward (ForwardFor(n)).
  [[gnu::always_inline]] void SkipForward(int32_t n) { state_ += n; }

  // The fade of the unresolved position; 1 for every mode but Transparent.
  [[gnu::always_inline]] double Fade(int32_t feather) const {
    if constexpr (Mode == EdgeMode::Transparent) {
      return EdgeFade(length_, feather, clamped_);
    } else {
      (void)feather;
      return 1.0;
    }
  }

 private:
  int64_t length_ = 1;
  int64_t period_ = 1;
  int64_t state_ = 0;    // position mod period, or the position held at L - 1 (RepeatLast)
  int64_t clamped_ = 0;  // min(position, L): all the fade needs (Transparent)
};

// The pixel a LinePositionWalker reads on a line whose pixels are `step` apart, kept as a pointer
// that moves with the index, so that no step multiplies an index by the pixel step.
template <EdgeMode Mode, typename Channel>
class LinePixelWalker {
 public:
  LinePixelWalker() = default;
  [[gnu::always_inline]] LinePixelWalker(const Channel* line, std::ptrdiff_t step,
                                         LinePositionWalker<Mode> position)
      : position_(position), line_(line), pixel_(line + position.Index() * step), step_(step) {}

  [[gnu::always_inline]] const Channel* Pixel() const { return pixel_; }
  [[gnu::always_inline]] double Fade(int32_t feather) const { return position_.Fade(feather); }

  // The next n pixels when they lie one after another (ForwardFor(n)): the first of them, then
  // the walker past them (SkipForward(n)), their distance being Step().
  [[gnu::always_inline]] bool ForwardFor(int32_t n) const { return position_.ForwardFor(n); }
  [[gnu::always_inline]] std::ptrdiff_t Step() const { return step_; }
  [[gnu::always_inline]] void SkipForward(int32_t n) {
    position_.SkipForward(n);
    pixel_ += n * step_;
  }

  [[gnu::always_inline]] void Advance() {
    switch (position_.Advance()) {
      case IndexMove::Stay:
        break;
      case IndexMove::Forward:
        pixel_ += step_;
        break;
      case IndexMove::Back:
        pixel_ -= step_;
        break;
      case IndexMove::ToFirst:
        pixel_ = line_;
        break;
    }
  }

 private:
  LinePositionWalker<Mode> position_;
  const Channel* line_ = nullptr;
  const Channel* pixel_ = nullptr;
  std::ptrdiff_t step_ = 0;
};

// A fixed-point intensity-layer position walking forward by a fixed step, for one edge mode.
template <EdgeMode Mode>
class LayerPositionWalker {
 public:
  LayerPositionWalker() = default;
  LayerPositionWalker(int32_t length, int64_t step, int64_t start)
      : length_(length), step_(step), fixedPeriod_(EdgePeriod(Mode, length) * kLayerOne) {
    state_ = Mode == EdgeMode::RepeatLast ? std::min(start, fixedPeriod_) : start % fixedPeriod_;
  }

  [[gnu::always_inline]] int32_t Pixel() const {
    int64_t resolved = state_;
    if constexpr (Mode == EdgeMode::Mirror) {
      resolved = state_ < fixedPeriod_ / 2 ? state_ : fixedPeriod_ - state_;
    }
    return LayerPixelOnLine(resolved, length_);
  }

  [[gnu::always_inline]] void Advance() {
    if constexpr (Mode == EdgeMode::RepeatLast) {
      state_ = std::min(state_ + step_, fixedPeriod_);
    } else {
      state_ += step_;
      while (state_ >= fixedPeriod_)
        state_ -= fixedPeriod_;
    }
  }

 private:
  int32_t length_ = 1;
  int64_t step_ = 0;
  int64_t fixedPeriod_ = kLayerOne;
  int64_t state_ = 0;
};

}  // namespace morvane
