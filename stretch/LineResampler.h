// Turns a sequence of (source pixel, stretch length) pairs into output pixels along one line:
// interpolation inside long spans, box filtering across short ones.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "stretch/ChannelQuad.h"
#include "stretch/LinePositionMath.h"
#include "stretch/PixelTraits.h"
#include "stretch/StreamedStores.h"

namespace morvane {
inline namespace MORVANE_ISA {

// The decisions of one stretch step depend only on its length S and on the part f of the
// current output pixel already filled (cut to 7 decimals): whether the source pixel ends inside
// that output pixel, and otherwise u0 = 1 - f (the part of the span the first output pixel
// takes) and rest = S - u0. The position pass decides; the value pass below follows its plan
// (StepPlans), and for the longer spans it leaves undecided, it counts with the same
// expressions, so the two always agree.

// A remainder of at least this much (and below 1) is written out as a whole output pixel.
inline constexpr double kWrittenAtOnce = 0.99999;

// These decisions take numbers, or vectors of them one line per lane (the lockstep pass): the
// masks are then lane by lane.

// Whether the source pixel ends inside the current output pixel: S + f < 1.
template <typename Number>
[[gnu::always_inline]] inline auto EndsInside(Number length, Number f) {
  return length + f < 1.0;
}

// A step of length at most 2 whose remainder is not written out at once (below 0.99999 or at
// least 1): after its first output pixel it reaches at most one more whole output pixel, since
// u0 + 1 <= S can hold but u0 + 2 <= S cannot (u0 = 1 - f is at least about 1e-7). A mask:
// branches on its parts would be unpredictable.
template <typename Number>
[[gnu::always_inline]] inline auto ShortSpanMask(Number length, Number rest) {
  const auto r = AsLanes(rest);
  return (AsLanes(length) <= 2.0) & ~((r >= kWrittenAtOnce) & (1.0 > r));
}

// Whether a short span writes the interpolated pixel at u0 as a whole output pixel: rest >= 1
// and u1 = u0 + 1 <= S.
template <typename Number>
[[gnu::always_inline]] inline auto ShortSpanReaches(Number rest, Number u1, Number length) {
  return (AsLanes(rest) >= 1.0) & (AsLanes(u1) <= AsLanes(length));
}

// What a step does, as the position pass found it.
enum class StepKind : MaskWord {
  Inside = 0,     // the source pixel ends inside the current output pixel
  ShortSpan = 1,  // ShortSpanMask
  Longer = 2,     // every other step
};

// The resampler's line position alone: `linePosition` from the line's starting edge. Each step
// counts the output pixels it writes. The
// position of one step depends on the previous one through a chain of about a dozen dependent
// operations; keeping this pass apart from the values keeps that chain short and lets the chains
// of several lines run side by side (the lockstep pass runs the same step in vector lanes and
// takes a line's filling step through this one).
class LinePosition {
 public:
  LinePosition() = default;
  // A line at `linePosition`.
  explicit LinePosition(double linePosition) : linePosition_(linePosition) {}

  // One pixel of the start-offset copy was written.
  void AdvanceCopied() { linePosition_ += 1.0; }
  double linePosition() const { return linePosition_; }

  // One step of length `length` (> 0). Takes the output pixels the step writes from `room`;
  // returns true when that fills the line (the rest of the step is dropped).
  [[gnu::always_inline]] bool Step(double length, int32_t& room) {
    // The line position is never negative, so its truncation is its whole part.
    const double whole = TruncateNonNegative(linePosition_);
    const double f = CutToSevenDecimals(linePosition_ - whole);
    if (EndsInside(length, f)) {
      linePosition_ += length;
      return false;
    }
    if (--room == 0) return true;
    const double u0 = 1.0 - f;
    const double rest = length - u0;
    if (MaskCount(ShortSpanMask(length, rest)) != 0) {
      // With or without the interpolated pixel, then the part of the span carried on:
      // position = whole + 1 (+ 1) (+ S - u), u being u0 or u0 + 1, a part not above 0 adding
      // nothing; chosen by masks, so nothing here waits on a branch. Both candidate parts are
      // computed side by side, which keeps the chain to the next step short.
      const double u1 = u0 + 1.0;
      const LaneMask reach = ShortSpanReaches(rest, u1, length);
      room -= MaskCount(reach);
      if (room == 0) return true;
      const double tail = Choose(reach, NotBelowZero(length - u1), NotBelowZero(rest));
      linePosition_ = ((whole + 1.0) + Keep(reach, 1.0)) + tail;
      return false;
    }
    double consumed = u0;
    linePosition_ = whole + 1.0;
    if (rest >= 1.0) {
      while (consumed + 1.0 <= length) {
        if (--room == 0) return true;
        consumed += 1.0;
        linePosition_ += 1.0;
      }
      if (length > consumed) linePosition_ += length - consumed;
    } else if (rest > 0.0) {
      if (rest >= kWrittenAtOnce) {
        if (--room == 0) return true;
        linePosition_ += 1.0;
      } else {
        linePosition_ += rest;
      }
    }
    return false;
  }

 private:
  // x when x > 0, else +0.0 (x is never NaN here): maxsd, not a branch on the position.
  [[gnu::always_inline]] static double NotBelowZero(double x) {
#if defined(__SSE2__)
    return _mm_cvtsd_f64(_mm_max_sd(_mm_set_sd(x), _mm_setzero_pd()));
#else
    return x > 0.0 ? x : 0.0;
#endif
  }

  double linePosition_ = 0.0;
};

// The values of the line resampler: what each step writes, given its length and the plan its
// position pass made. All written channels share the decisions. `Value` holds the
// written channels: a double for one channel, a ChannelQuad for several (lanes that a variant
// does not write are carried along and never stored). The sink receives every emitted pixel
// (`bool Emit(const Value&)`) and returns true once the line is full, which ends the step at
// once (any carry is dropped).
template <typename Value>
class LineResampler {
 public:
  // Start of a line, before the start-offset copy.
  void ResetLine() { carry_ = Value{}; }

  // The value pass of one step as its position pass planned it (see PlannedStep).
  template <typename Plan, typename Sink>
  [[gnu::always_inline]] bool StepValues(double length, const Plan& plan, const Value& current,
                                         const Value& next, Sink& sink) {
    return ValuesImpl<false>(length, plan, current, next, current, current, sink);
  }
  // The same with the step's two pixels weighted: `currentScaled` is current * currentMul and
  // `nextScaled` next * nextMul (each step's next pixel and multipliers are the current ones of
  // the step after it, so the caller forms each product once).
  template <typename Plan, typename Sink>
  [[gnu::always_inline]] bool StepValues(double length, const Plan& plan, const Value& current,
                                         const Value& currentMul, const Value& currentScaled,
                                         const Value& nextScaled, Sink& sink) {
    return ValuesImpl<true>(length, plan, current, nextScaled, currentMul, currentScaled, sink);
  }

 private:
  // `from` and `next` are the step's two pixels: as they are without kMultiply (`from` is
  // `current`), already weighted with it.
  template <bool kMultiply, typename Plan, typename Sink>
  [[gnu::always_inline]] bool ValuesImpl(double length, const Plan& plan, const Value& current,
                                         const Value& next, const Value& currentMul,
                                         const Value& from, Sink& sink) {
    if (plan.Kind() == StepKind::Inside) {
      if constexpr (kMultiply) {
        carry_ = carry_ + (current * length) * currentMul;
      } else {
        carry_ = carry_ + current * length;
      }
      return false;
    }

    const double u0 = plan.U0();
    if constexpr (kMultiply) {
      if (sink.Emit((current * u0) * currentMul + carry_)) return true;
    } else {
      if (sink.Emit(current * u0 + carry_)) return true;
    }
    const Value delta = next - from;

    if (plan.Kind() == StepKind::ShortSpan) {
      // The carry is V(u) * (S - u) for the u the span ends at, when that part is above 0. Where
      // the span reaches u0 + 1, V(u0) is a whole output pixel and V(u0 + 1) is worked out: the
      // divisions and stores bound this pass, and fewer than half of the short spans reach (at
      // Pixel Size 0.4 almost none), so a jump the processor sometimes mispredicts costs less
      // than dividing and storing for every span.
      const Value first = Interpolate(delta, from, u0, length);
      Value last = first;
      if (plan.Reach() != MaskWord{}) {
        if (sink.Emit(first)) return true;
        last = Interpolate(delta, from, plan.U1(), length);
      }
      carry_ = Keep(plan.Carried(), last * plan.Piece());
      return false;
    }

    const double rest = length - u0;
    double consumed = u0;
    carry_ = Value{};
    if (rest >= 1.0) {
      while (consumed + 1.0 <= length) {
        if (sink.Emit(Interpolate(delta, from, consumed, length))) return true;
        consumed += 1.0;
      }
      if (length > consumed) {
        carry_ = Interpolate(delta, from, consumed, length) * (length - consumed);
      }
    } else if (rest > 0.0) {
      const Value v = Interpolate(delta, from, consumed, length) * rest;
      if (rest >= kWrittenAtOnce) {
        if (sink.Emit(v)) return true;
      } else {
        carry_ = v;
      }
    }
    return false;
  }

  // V(u) = ((Nm - Cm) * u) / S + Cm.
  [[gnu::always_inline]] static Value Interpolate(const Value& delta, const Value& from,
                                                  double consumed, double length) {
    return (delta * consumed) / length + from;
  }

  Value carry_{};
};

// The resampler's value type for a variant: one double, or all four channels together.
template <ChannelVariant Variant>
using ResampledValue = std::conditional_t<kChannelCount<Variant> == 1, double, ChannelQuad>;

// A pixel's channels as the resampler carries them for a variant.
template <PixelDepth Depth, ChannelVariant Variant>
[[gnu::always_inline]] inline ResampledValue<Variant> LoadChannels(
    const ChannelType<Depth>* pixel) {
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

  // `streamed`: the pixels are stored past the caches where the variant allows it.
  OutputCursor(Channel* first, std::ptrdiff_t step, int32_t length, bool streamed = false)
      : pixel_(first),
        last_(first + std::ptrdiff_t{std::max(length, 1) - 1} * step),
        step_(step),
        streamed_(streamed) {}

  [[gnu::always_inline]] bool Emit(const Value& value) {
    Put(value);
    return Advance();
  }

  // Stores `value` at the cursor without moving on (the cursor is inside the line).
  [[gnu::always_inline]] void Put(const Value& value) {
    if constexpr (kStreamable) {
      if (streamed_ != 0) return detail::StreamQuad<Depth, Variant>(pixel_, value);
    }
    if constexpr (kChannelCount<Variant> == 1) {
      pixel_[VariantTraits<Variant>::kChannels[0]] = DepthTraits<Depth>::Store(value);
    } else {
      StoreQuad<Depth, kWritesAlpha<Variant>>(pixel_, value);
    }
  }

  // The start-offset copy: the variant's channels of `source`, alpha times `alphaFactor`
  // (truncated at 8 and 16 bits), colour unchanged.
  bool Copy(const Channel* source, double alphaFactor) {
    for (const int c : VariantTraits<Variant>::kChannels) {
      pixel_[c] = c == kAlpha ? DepthTraits<Depth>::ScaleAlpha(source[c], alphaFactor) : source[c];
    }
    return Advance();
  }

  // The cursor for steps known not to fill the line: the same stores and moves, without a look
  // at the line's end.
  class Unbounded {
   public:
    explicit Unbounded(OutputCursor& cursor) : cursor_(cursor) {}
    [[gnu::always_inline]] bool Emit(const Value& value) {
      cursor_.Put(value);
      cursor_.pixel_ += cursor_.step_;
      return false;
    }

   private:
    OutputCursor& cursor_;
  };

 private:
  [[gnu::always_inline]] bool Advance() {
    if (pixel_ == last_) return true;
    pixel_ += step_;
    return false;
  }

  static constexpr bool kStreamable = detail::kStreamablePixels<Depth, Variant>;
  // The choice to store past the caches, kept only where the variant can make it, and as a whole
  // word: the value pass copies the cursor in and out around every chunk, and a copy of an odd
  // size is made of overlapping moves that wait on the stores just before them.
  struct NoChoice {
    explicit NoChoice(bool) {}
  };
  using StreamChoice = std::conditional_t<kStreamable, std::ptrdiff_t, NoChoice>;

  Channel* pixel_;
  Channel* last_;
  std::ptrdiff_t step_;
  [[no_unique_address]] StreamChoice streamed_;
};

}  // namespace MORVANE_ISA
}  // namespace morvane
