// Turns a sequence of (source pixel, stretch length) pairs into output pixels along one line:
// interpolation inside long spans, box filtering across short ones.
#pragma once

#include <cstddef>
#include <cstdint>

#include "stretch/ChannelQuad.h"
#include "stretch/LinePositionMath.h"
#include "stretch/PixelTraits.h"

namespace morvane {

// One resampler per line; all written channels share the position and the decisions. `Value`
// holds the written channels: a double for one channel, a ChannelQuad for several (lanes that
// a variant does not write are carried along and never stored). The sink receives every emitted
// pixel (`bool Emit(const Value&)`) and returns true once the line is full, which ends the step
// at once (any carry is dropped). It can also take a value without moving on (`Put`), move on
// by zero or one pixel (`Skip(bool)`) and tell whether the line is full (`Full`).
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
  [[gnu::always_inline]] bool Step(double length, const Value& current, const Value& next,
                                   const Value& currentMul,
            const Value& nextMul, Sink& sink) {
    return StepImpl<true>(length, current, next, currentMul, nextMul, sink);
  }

  // The same step with every multiplier 1.0: multiplying by 1.0 is exact, so leaving the
  // products out gives the same values.
  template <typename Sink>
  [[gnu::always_inline]] bool Step(double length, const Value& current, const Value& next,
                                   Sink& sink) {
    return StepImpl<false>(length, current, next, current, next, sink);
  }

  double linePosition() const { return linePosition_; }
  const Value& carry() const { return carry_; }

 private:
  template <bool kMultiply, typename Sink>
  [[gnu::always_inline]] bool StepImpl(double length, const Value& current, const Value& next, const Value& currentMul,
                const Value& nextMul, Sink& sink) {
    // The line position is never negative, so its truncation is its whole part.
    const double whole = TruncateNonNegative(linePosition_);
    const double filled = CutToSevenDecimals(linePosition_ - whole);

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
    const double rest = length - consumedFirst;
    if (length <= 2.0 && !(rest >= 0.99999 && rest < 1.0)) {
      ShortTail(length, consumedFirst, rest, whole, from, delta, sink);
      return sink.Full();
    }

    double consumed = consumedFirst;
    carry_ = Value{};
    linePosition_ = whole + 1.0;
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

  // The rest of a step of length at most 2 after its first output pixel, with a remainder that
  // is not written out at once (below 0.99999 or at least 1). Such a span reaches at most one
  // more whole output pixel: u0 + 1 <= S can hold, u0 + 2 <= S cannot, since u0 = 1 - filled is
  // at least about 1e-7. The general code then does, in order:
  //   rest >= 1 and u0 + 1 <= S: emit V(u0); u = u0 + 1; position + 1;   (else u = u0)
  //   S > u: carry = V(u) * (S - u); position + (S - u);                  (else carry = 0)
  // which is what the masks below choose, with no branch on the position. The interpolated
  // pixel is stored in any case and the cursor moves on only when it counts: an unused value is
  // overwritten by the next pixel written there.
  template <typename Sink>
  [[gnu::always_inline]] void ShortTail(double length, double u0, double rest, double whole,
                                        const Value& from, const Value& delta, Sink& sink) {
    const double u1 = u0 + 1.0;
    const LaneMask reach = MaskGreaterEqual(rest, 1.0) & MaskLessEqual(u1, length);
    const Value first = Interpolate(delta, from, u0, length);
    const Value second = Interpolate(delta, from, u1, length);
    sink.Put(first);
    sink.Skip(MaskIsSet(reach));
    const double piece = length - Choose(reach, u1, u0);
    const LaneMask tail = MaskGreater(piece, 0.0);
    carry_ = Choose(tail, Choose(reach, second, first) * piece, Value{});
    linePosition_ = ((whole + 1.0) + Choose(reach, 1.0, 0.0)) + Choose(tail, piece, 0.0);
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
    Put(value);
    return Advance();
  }

  // Stores `value` at the cursor without moving on (the cursor is inside the line).
  void Put(const Value& value) {
    if constexpr (kChannelCount<Variant> == 1) {
      pixel_[VariantTraits<Variant>::kChannels[0]] = DepthTraits<Depth>::Store(value);
    } else {
      StoreQuad<Depth, kWritesAlpha<Variant>>(pixel_, value);
    }
  }

  // Moves on by one pixel when `move` is set; the move onto the line's end leaves the pointer
  // on the last pixel, as Emit does.
  void Skip(bool move) {
    remaining_ -= move ? 1 : 0;
    const bool moves = move && remaining_ != 0;
    pixel_ += step_ & -std::ptrdiff_t{moves};
  }

  bool Full() const { return remaining_ == 0; }

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
