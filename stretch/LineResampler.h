// Turns a sequence of (source pixel, stretch length) pairs into output pixels along one line:
// interpolation inside long spans, box filtering across short ones.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "stretch/PixelTraits.h"

namespace morvane {

template <int kChannels>
using ChannelValues = std::array<double, kChannels>;

// One resampler per line; all written channels share the position and the decisions. The sink
// receives every emitted pixel (`bool Emit(const ChannelValues<k>&)`) and returns true once the
// line is full, which ends the step at once (any carry is dropped).
template <int kChannels>
class LineResampler {
 public:
  using Values = ChannelValues<kChannels>;

  // Start of a line, before the start-offset copy.
  void ResetLine() {
    linePosition_ = 0.0;
    carry_.fill(0.0);
  }

  // One pixel of the start-offset copy was written.
  void AdvanceCopied() { linePosition_ += 1.0; }

  // One stretch step of length `length` (> 0) with the current and next source values and their
  // multipliers. Returns true when the line is full.
  template <typename Sink>
  bool Step(double length, const Values& current, const Values& next, const Values& currentMul,
            const Values& nextMul, Sink& sink) {
    const double whole = static_cast<double>(static_cast<int32_t>(linePosition_));
    const double filled = std::floor((linePosition_ - whole) * 10000000.0) / 10000000.0;

    if (length + filled < 1.0) {
      for (int k = 0; k < kChannels; ++k)
        carry_[k] += (current[k] * length) * currentMul[k];
      linePosition_ += length;
      return false;
    }

    Values out;
    for (int k = 0; k < kChannels; ++k) {
      out[k] = (current[k] * (1.0 - filled)) * currentMul[k] + carry_[k];
    }
    if (sink.Emit(out)) return true;

    Values from;
    Values delta;
    for (int k = 0; k < kChannels; ++k) {
      from[k] = current[k] * currentMul[k];
      delta[k] = next[k] * nextMul[k] - from[k];
    }
    double consumed = 1.0 - filled;
    carry_.fill(0.0);
    linePosition_ = whole + 1.0;
    const double rest = length - consumed;

    if (rest >= 1.0) {
      while (consumed + 1.0 <= length) {
        Interpolate(delta, from, consumed, length, out);
        if (sink.Emit(out)) return true;
        consumed += 1.0;
        linePosition_ += 1.0;
      }
      if (length > consumed) {
        Interpolate(delta, from, consumed, length, out);
        const double piece = length - consumed;
        for (int k = 0; k < kChannels; ++k)
          carry_[k] = out[k] * piece;
        linePosition_ += piece;
      }
    } else if (rest > 0.0) {
      Interpolate(delta, from, consumed, length, out);
      for (int k = 0; k < kChannels; ++k)
        out[k] *= rest;
      if (rest >= 0.99999) {
        if (sink.Emit(out)) return true;
        linePosition_ += 1.0;
      } else {
        carry_ = out;
        linePosition_ += rest;
      }
    }
    return false;
  }

  double linePosition() const { return linePosition_; }
  const Values& carry() const { return carry_; }

 private:
  // V(u) = ((Nm - Cm) * u) / S + Cm.
  static void Interpolate(const Values& delta, const Values& from, double consumed, double length,
                          Values& out) {
    for (int k = 0; k < kChannels; ++k)
      out[k] = (delta[k] * consumed) / length + from[k];
  }

  double linePosition_ = 0.0;
  Values carry_{};
};

// Writes emitted pixels along an output line: the variant's channels of each pixel, converted
// for the depth, then one step along the line. Reports full after the line's last pixel.
template <PixelDepth Depth, ChannelVariant Variant>
class OutputCursor {
 public:
  using Channel = ChannelType<Depth>;
  static constexpr int kCount = kChannelCount<Variant>;

  OutputCursor(Channel* first, std::ptrdiff_t step, int32_t length)
      : pixel_(first), step_(step), remaining_(length) {}

  bool Emit(const ChannelValues<kCount>& values) {
    for (int k = 0; k < kCount; ++k) {
      pixel_[VariantTraits<Variant>::kChannels[k]] = DepthTraits<Depth>::Store(values[k]);
    }
    return Advance();
  }

  // The start-offset copy: the variant's channels of `source`, alpha times `alphaFactor`
  // (truncated at 8 and 16 bits), colour unchanged.
  bool Copy(const Channel* source, double alphaFactor) {
    for (int k = 0; k < kCount; ++k) {
      const int c = VariantTraits<Variant>::kChannels[k];
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
