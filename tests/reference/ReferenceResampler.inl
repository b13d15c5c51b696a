// The line resampler's stretch step, written out literally. Included by
// ReferenceStretch.h.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace morvane::reference {

template <typename Emit>
void LineResampler::Step(double length, const std::vector<double>& current,
                         const std::vector<double>& next,
                         const std::vector<double>& currentMultiplier,
                         const std::vector<double>& nextMultiplier, Emit&& emit) {
  if (Full()) {
    return;
  }
  const double S = length;
  const auto n = static_cast<std::size_t>(channels_);
  std::vector<double> out(n);

  // Emits one output pixel; returns true when the line is now full.
  auto emitPixel = [&]() {
    emit(emitted_, out);
    emitted_ += 1;
    return Full();
  };
  auto interpolate = [&](std::size_t c, double u) {
    const double cm = current[c] * currentMultiplier[c];
    const double nm = next[c] * nextMultiplier[c];
    return ((nm - cm) * u) / S + cm;
  };

  const double truncated = static_cast<double>(static_cast<int32_t>(linePosition_));
  const double f = std::floor((linePosition_ - truncated) * 10000000.0) / 10000000.0;

  if (S + f < 1.0) {
    for (std::size_t c = 0; c < n; ++c) {
      carry_[c] += (current[c] * S) * currentMultiplier[c];
    }
    linePosition_ += S;
    return;
  }

  for (std::size_t c = 0; c < n; ++c) {
    out[c] = (current[c] * (1.0 - f)) * currentMultiplier[c] + carry_[c];
  }
  if (emitPixel()) {
    return;
  }
  double u = 1.0 - f;
  for (std::size_t c = 0; c < n; ++c) {
    carry_[c] = 0.0;
  }
  linePosition_ = static_cast<double>(static_cast<int32_t>(linePosition_) + 1);
  const double rem = S - u;

  if (rem >= 1.0) {
    while (u + 1.0 <= S) {
      for (std::size_t c = 0; c < n; ++c) {
        out[c] = interpolate(c, u);
      }
      if (emitPixel()) {
        return;
      }
      u += 1.0;
      linePosition_ += 1.0;
    }
    if (S > u) {
      for (std::size_t c = 0; c < n; ++c) {
        carry_[c] = interpolate(c, u) * (S - u);
      }
      linePosition_ += S - u;
    }
  } else if (rem > 0.0) {
    for (std::size_t c = 0; c < n; ++c) {
      out[c] = interpolate(c, u) * rem;
    }
    if (rem >= 0.99999) {
      if (emitPixel()) {
        return;
      }
      linePosition_ += 1.0;
    } else {
      for (std::size_t c = 0; c < n; ++c) {
        carry_[c] = out[c];
      }
      linePosition_ += rem;
    }
  }
}

}  // namespace morvane::reference
