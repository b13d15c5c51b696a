// Turns a sequence of (source pixel, stretch length) pairs into output pixels along one line:
// interpolation inside long spans, box filtering across short ones.
#pragma once

#include <cstddef>
#include <cstdint>

#include "stretch/ChannelQuad.h"
#include "stretch/PixelTraits.h"

namespace morvane {

// One resampler per line; all written channels share the position and the decisions. `Value`
// holds the written channels: a double for one channel, a ChannelQuad for several (lanes that
// a variant does not write are carried along and never stored). The sink receives every emitted
// pixel (`bool Emit(const Value&)`) and returns true once the line is full, which ends the step
// at once (any carry is dropped).
template <typename Value>
class LineResampler {
 public:
  // Start of a line, before the start-offset copy.
  void ResetLine() {
    linePosition_ = 0.0;
    carry_ = Value{};
  }

  // One pixel of the start-offset copy was written.
  void AdvanceCopied() { linePosition_ += 1.0; }

  // One stretch step of length `length` (> 0) with the current and next source values and their
  // multipliers. Returns true when the line is full.
  template <typename Sink>
  bool Step(double length, const Value& current, const Value& next, const Value& currentMul,
            const Value& nextMul, Sink& sink) {
    return StepImpl<true>(length, current, next, currentMul, nextMul, sink);
  }

  // The same step with every multiplier 1.0: multiplying by 1.0 is exact, so leaving the
  // products out gives the same values.
  template <typename Sink>
  bool Step(double length, const Value& current, const Value& next, Sink& sink) {
    return StepImpl<false>(length, current, next, current, next, sink);
  }

  double linePosition() const { return linePosition_; }
  const Value& carry() const { return carry_; }

 private:
  template <bool kMultiply, typename Sink>
  bool StepImpl(double length, const Value& current, const Value& next, const Value& currentMul,
                const Value& nextMul, Sink& sink) {
    const double whole = static_cast<double>(static_cast<int32_t>(linePosition_));
    // The filled part cut to 7 decimals: floor of a non-negative value below 2^63 is its
    // truncation, which needs no rounding-mode change or library call.
    const double filled =
        static_cast<double>(static_cast<int64_t>((linePosition_ - whole) * 10000000.0)) /
        10000000.0;

    if (length + filled < 1.0) {
      if constexpr (kMultiply) {
        carry_ = carry_ + (current * length) * currentMul;
      } else {
        carry_ = carry_ + current * length;
      }
      linePosition_ += length;
      return false;
    }

    const double consumedFirst = 1.0 - filled;
    Value from = current;
    Value delta;
    if constexpr (kMultiply) {
      if (sink.Emit((current * consumedFirst) * currentMul + carry_)) return true;
      from = current * currentMul;
      delta = next * nextMul - from;
    } else {
      if (sink.Emit(current * consumedFirst + carry_)) return true;
      delta = next - from;
    }
    double consumed = consumedFirst;
    carry_ = Value{};
    linePosition_ = whole + 1.0;
    const double rest = length - consumed;

    if (rest >= 1.0) {
      while (consumed + 1.0 <= length) {
        if (sink.Emit(Interpolate(delta, from, consumed, length))) return true;
        consumed += 1.0;
        linePosition_ += 1.0;
      }
      if (length > consumed) {
        const double piece = length - consumed;
        carry_ = Interpolate(delta, from, consumed, length) * piece;
        linePosition_ += piece;
      }
    } else if (rest > 0.0) {
      const Value v = Interpolate(delta, from, consumed, length) * rest;
      if (rest >= 0.99999) {
        if (sink.Emit(v)) return true;
        linePosition_ += 1.0;
      } else {
        carry_ = v;
        linePosition_ += rest;
      }
    }
    return false;
  }

  // V(u) = ((Nm - Cm) * u) / S + Cm.
  static Value Interpolate(const Value& delta, const Value& from, double consumed, double length) {
    return (delta * consumed) / length + from;
  }

  double linePosition_ = 0.0;
  Value carry_{};
};

// The resampler's value type for a variant: one double, or all four channels together.
template <ChannelVariant Variant>
using ResampledValue = std::conditional_t<kChannelCount<Variant> == 1, double, ChannelQuad>;

// A pixel's channels as the resampler carries them for a variant.
template <PixelDepth Depth, ChannelVariant Variant>
inline ResampledValue<Variant> LoadChannels(const ChannelType<Depth>* pixel) {
  if constexpr (kChannelCount<Variant> == 1) {
    return static_cast<double>(pixel[VariantTraits<Variant>::kChannels[0]]);
  } else {
    return LoadQuad<Depth>(pixel);
  }
}

// Writes emitted pixels along an output line: the variant's channels of each pixel, converted
// for the depth, then one step along the line. Reports full after the line's last pixel.
template <PixelDepth Depth, ChannelVariant Variant>
class OutputCursor {
 public:
  using Channel = ChannelType<Depth>;
  using Value = ResampledValue<Variant>;

  OutputCursor(Channel* first, std::ptrdiff_t step, int32_t length)
      : pixel_(first), step_(step), remaining_(length) {}

  bool Emit(const Value& value) {
    if constexpr (kChannelCount<Variant> == 1) {
      pixel_[VariantTraits<Variant>::kChannels[0]] = DepthTraits<Depth>::Store(value);
    } else {
      StoreQuad<Depth, kWritesAlpha<Variant>>(pixel_, value);
    }
    return Advance();
  }

  // The start-offset copy: the variant's channels of `source`, alpha times `alphaFactor`
  // (truncated at 8 and 16 bits), colour unchanged.
  bool Copy(const Channel* source, double alphaFactor) {
    for (const int c : VariantTraits<Variant>::kChannels) {
      pixel_[c] = c == kAlpha ? DepthTraits<Depth>::ScaleAlpha(source[c], alphaFactor) : source[c];
    }
    return Advance();
  }

  int32_t remaining() const { return remaining_; }

 private:
  bool Advance() {
    if (--remaining_ == 0) return true;
    pixel_ += step_;
    return false;
  }

  Channel* pixel_;
  std::ptrdiff_t step_;
  int32_t remaining_;
};

}  // namespace morvane
