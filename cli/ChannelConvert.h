// Channel value conversions between file values and the effect's pixel depths.
//
// The effect works in unsigned 8-bit (white 255), unsigned 16-bit (white 32768)
// and 32-bit float (white 1.0). Files store 16-bit values with white at 65535.
// Every conversion is fixed so that a render is reproducible bit for bit; each
// rounding is half away from zero and is done on a double product.
#pragma once

#include <cmath>
#include <cstdint>
#include <type_traits>

namespace morvane::cli {

// Rounds half away from zero and clamps to [lo, hi]; NaN becomes lo.
inline double RoundClamped(double v, double lo, double hi) {
  if (!(v >= lo)) return lo;  // also catches NaN
  const double r = std::round(v);
  return r > hi ? hi : r;
}

inline float EightToFloat(uint8_t v) {
  return static_cast<float>(v) / 255.0f;
}

inline uint8_t FloatToEight(float f) {
  return static_cast<uint8_t>(RoundClamped(static_cast<double>(f) * 255.0, 0.0, 255.0));
}

inline float SixteenToFloat(uint16_t x) {
  return static_cast<float>(x) / 32768.0f;
}

inline uint16_t FloatToSixteen(float f) {
  return static_cast<uint16_t>(RoundClamped(static_cast<double>(f) * 32768.0, 0.0, 32768.0));
}

// 16-bit file value (0..65535) to the effect's 16-bit value (0..32768).
inline uint16_t FileSixteenToInternal(uint16_t v) {
  return static_cast<uint16_t>(
      RoundClamped(static_cast<double>(v) * 32768.0 / 65535.0, 0.0, 32768.0));
}

// The effect's 16-bit value to a 16-bit file value; values above white are clamped.
inline uint16_t InternalSixteenToFile(uint16_t x) {
  return static_cast<uint16_t>(
      RoundClamped(static_cast<double>(x) * 65535.0 / 32768.0, 0.0, 65535.0));
}

// A 16-bit file value straight to float (white 1.0) and back: each of the 65536 levels has a
// float of its own, so a render at 32f loses none of them.
inline float FileSixteenToFloat(uint16_t v) {
  return static_cast<float>(v) / 65535.0f;
}

inline uint16_t FloatToFileSixteen(float f) {
  return static_cast<uint16_t>(RoundClamped(static_cast<double>(f) * 65535.0, 0.0, 65535.0));
}

// Converts one effect channel value between depths, named by their channel types.
// 8 <-> 16 bit goes through float.
template <typename To, typename From>
To ConvertChannel(From v) {
  if constexpr (std::is_same_v<To, From>) {
    return v;
  } else if constexpr (std::is_same_v<From, float>) {
    if constexpr (std::is_same_v<To, uint8_t>)
      return FloatToEight(v);
    else
      return FloatToSixteen(v);
  } else if constexpr (std::is_same_v<From, uint8_t>) {
    return ConvertChannel<To>(EightToFloat(v));
  } else {
    static_assert(std::is_same_v<From, uint16_t>);
    return ConvertChannel<To>(SixteenToFloat(v));
  }
}

}  // namespace morvane::cli
