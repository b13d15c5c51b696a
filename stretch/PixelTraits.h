// Per-depth channel arithmetic and per-variant channel sets. Pixels hold four channels in the
// order alpha, red, green, blue at every depth.
#pragma once

#include <array>
#include <cstdint>

#include "stretch/KernelVariant.h"

namespace morvane {

inline constexpr int kAlpha = 0;
inline constexpr int kRed = 1;
inline constexpr int kGreen = 2;
inline constexpr int kBlue = 3;

template <PixelDepth Depth>
struct DepthTraits;

namespace detail {

// i / divisor for i = 0 ... count - 1, each the correctly rounded double quotient (the same
// value the division gives at run time). Used where the dividend is a small whole number.
template <int kCount>
struct QuotientTable {
  std::array<double, kCount> values{};
  constexpr explicit QuotientTable(double divisor) {
    for (int i = 0; i < kCount; ++i)
      values[i] = static_cast<double>(i) / divisor;
  }
};

// 8-bit channel sums: one channel over white, and the three colour channels over three whites.
inline constexpr QuotientTable<256> kChannelOver255{255.0};
inline constexpr QuotientTable<766> kSumOver765{765.0};

// Rounds half away from zero and saturates to 0 ... white; NaN gives 0. An emitted value can
// exceed the channel range only through rounding of the line position, and must never wrap.
// For x >= 0.5 rounding half away from zero is floor(x + 0.5); x + 0.5 is then exact or rounds
// without crossing a whole number, so its truncation is the rounded value. Everything below 0.5
// (NaN included) gives 0; that includes 0.49999999999999994, whose sum with 0.5 rounds to 1.
template <typename Channel, int kWhite>
inline Channel RoundAndSaturate(double value) {
  constexpr double kTop = kWhite;
  const double clamped = value < kTop ? value : kTop;
  return static_cast<Channel>(value >= 0.5 ? static_cast<int32_t>(clamped + 0.5) : 0);
}

}  // namespace detail

template <>
struct DepthTraits<PixelDepth::Depth8> {
  using Channel = uint8_t;
  // c / 255.0 and (green + red + blue) / 765.0: the sums of whole channel values are exact in
  // double, so the quotients come from tables of those divisions.
  static double Single(Channel c) { return detail::kChannelOver255.values[c]; }
  static double Luma(const Channel* p) {
    return detail::kSumOver765.values[int{p[kGreen]} + int{p[kRed]} + int{p[kBlue]}];
  }
  template <typename T>
  static T WeightByAlphaOf(T v, T a) {
    return a < 255.0 ? (a * v) / 255.0 : v;
  }
  static double WeightByAlpha(double v, Channel a) {
    return WeightByAlphaOf(v, static_cast<double>(a));
  }
  static Channel Store(double v) { return detail::RoundAndSaturate<Channel, 255>(v); }
  // Alpha times a fade multiplier, truncated toward zero.
  static Channel ScaleAlpha(Channel a, double m) {
    return static_cast<Channel>(static_cast<double>(a) * m);
  }
};

template <>
struct DepthTraits<PixelDepth::Depth16> {
  using Channel = uint16_t;
  // Formulas on channel values in double: one, or lanes of several pixels'.
  template <typename T>
  static T SingleOf(T c) {
    return c * 3.0517578125e-5;
  }
  template <typename T>
  static T LumaOf(T g, T r, T b) {
    return (g + r + b) / 98304.0;
  }
  template <typename T>
  static T WeightByAlphaOf(T v, T a) {
    return a < 32768.0 ? (a * v) * 3.0517578125e-5 : v;
  }
  static double WeightByAlpha(double v, Channel a) {
    return WeightByAlphaOf(v, static_cast<double>(a));
  }
  static Channel Store(double v) { return detail::RoundAndSaturate<Channel, 32768>(v); }
  static Channel ScaleAlpha(Channel a, double m) {
    return static_cast<Channel>(static_cast<double>(a) * m);
  }
};

template <>
struct DepthTraits<PixelDepth::Depth32f> {
  using Channel = float;
  // Formulas on channel values in double: one, or lanes of several pixels'.
  template <typename T>
  static T SingleOf(T c) {
    return c;
  }
  template <typename T>
  static T LumaOf(T g, T r, T b) {
    return (g + r + b) / 3.0;
  }
  template <typename T>
  static T WeightByAlphaOf(T v, T a) {
    return a < 1.0 ? v * a : v;
  }
  static double WeightByAlpha(double v, Channel a) {
    return WeightByAlphaOf(v, static_cast<double>(a));
  }
  static Channel Store(double v) { return static_cast<float>(v); }
  static Channel ScaleAlpha(Channel a, double m) {
    return static_cast<float>(static_cast<double>(a) * m);
  }
};

template <PixelDepth Depth>
using ChannelType = typename DepthTraits<Depth>::Channel;

// Channels a variant writes, in the order its resampler carries them, and which of them are
// alpha (weighted by the alpha multipliers) rather than colour.
template <ChannelVariant Variant>
struct VariantTraits;

template <>
struct VariantTraits<ChannelVariant::Luma> {
  static constexpr std::array<int, 4> kChannels{kAlpha, kRed, kGreen, kBlue};
};
template <>
struct VariantTraits<ChannelVariant::Red> {
  static constexpr std::array<int, 1> kChannels{kRed};
};
template <>
struct VariantTraits<ChannelVariant::Green> {
  static constexpr std::array<int, 1> kChannels{kGreen};
};
template <>
struct VariantTraits<ChannelVariant::Blue> {
  static constexpr std::array<int, 1> kChannels{kBlue};
};
template <>
struct VariantTraits<ChannelVariant::Alpha> {
  static constexpr std::array<int, 1> kChannels{kAlpha};
};
template <>
struct VariantTraits<ChannelVariant::LumaNoAlpha> {
  static constexpr std::array<int, 3> kChannels{kRed, kGreen, kBlue};
};

template <ChannelVariant Variant>
inline constexpr int kChannelCount = static_cast<int>(VariantTraits<Variant>::kChannels.size());

template <ChannelVariant Variant>
inline constexpr bool kWritesAlpha =
    Variant == ChannelVariant::Luma || Variant == ChannelVariant::Alpha;

// The intensity a variant measures through `read`: luma or one channel normalised to white = 1,
// weighted by alpha except for the Alpha variant. `read` gives, for one pixel or for lanes of
// several, a channel normalised (`Single(c)`), the luma (`Luma()`) and a channel's value in
// double (`Value(c)`).
template <PixelDepth Depth, ChannelVariant Variant, typename Reader>
[[gnu::always_inline]] inline auto MeasureIntensityWith(const Reader& read) {
  if constexpr (Variant == ChannelVariant::Alpha) {
    return read.Single(kAlpha);
  } else {
    if constexpr (Variant == ChannelVariant::Luma || Variant == ChannelVariant::LumaNoAlpha) {
      return DepthTraits<Depth>::WeightByAlphaOf(read.Luma(), read.Value(kAlpha));
    } else {
      return DepthTraits<Depth>::WeightByAlphaOf(read.Single(VariantTraits<Variant>::kChannels[0]),
                                                 read.Value(kAlpha));
    }
  }
}

// The four channels of one pixel (T = double) or of lanes of several pixels, in double, read
// through the depth's formulas (16 bits and 32-bit float).
template <PixelDepth Depth, typename T>
struct ChannelValues {
  T value[4];
  [[gnu::always_inline]] T Single(int c) const { return DepthTraits<Depth>::SingleOf(value[c]); }
  [[gnu::always_inline]] T Luma() const {
    return DepthTraits<Depth>::LumaOf(value[kGreen], value[kRed], value[kBlue]);
  }
  [[gnu::always_inline]] T Value(int c) const { return value[c]; }
};

// One 8-bit pixel read through the depth's quotient tables.
struct TabledPixel8 {
  const uint8_t* pixel;
  [[gnu::always_inline]] double Single(int c) const {
    return DepthTraits<PixelDepth::Depth8>::Single(pixel[c]);
  }
  [[gnu::always_inline]] double Luma() const {
    return DepthTraits<PixelDepth::Depth8>::Luma(pixel);
  }
  [[gnu::always_inline]] double Value(int c) const { return static_cast<double>(pixel[c]); }
};

// The intensity a variant measures from one intensity pixel, in double precision.
template <PixelDepth Depth, ChannelVariant Variant>
[[gnu::always_inline]] inline double MeasureIntensity(const ChannelType<Depth>* pixel) {
  if constexpr (Depth == PixelDepth::Depth8) {
    return MeasureIntensityWith<Depth, Variant>(TabledPixel8{pixel});
  } else {
    return MeasureIntensityWith<Depth, Variant>(ChannelValues<Depth, double>{
        {static_cast<double>(pixel[0]), static_cast<double>(pixel[1]),
         static_cast<double>(pixel[2]), static_cast<double>(pixel[3])}});
  }
}

// clamp(v, 0, 1) * 1023, NaN counting as 0, for one intensity or lanes of them; its truncation
// is the curve index. Written as selects (1.0 * 1023.0 is exactly 1023) so that it compiles
// without branches.
template <typename T>
[[gnu::always_inline]] inline T CurvePosition(T intensity) {
  const T low = intensity > 0.0 ? intensity : T{};
  const T clamped = low < 1.0 ? low : T{} + 1.0;
  return clamped * 1023.0;
}

// The curve index of an intensity: trunc(clamp(v, 0, 1) * 1023); NaN counts as 0.
[[gnu::always_inline]] inline int32_t CurveIndex(double intensity) {
  return static_cast<int32_t>(CurvePosition(intensity));
}

}  // namespace morvane
