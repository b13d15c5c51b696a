// Values for record fields drawn from fuzzer bytes: mostly what the controls produce, often the
// edges of their ranges, and regularly what no control can produce (negative, huge, NaN,
// infinities, any integer).
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <iterator>
#include <limits>

namespace morvane::fuzz {

inline double PickDouble(FuzzedDataProvider& data, double low, double high) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  static constexpr double kSpecial[] = {0.0,
                                        -0.0,
                                        1.0,
                                        -1.0,
                                        0.5,
                                        0.01,
                                        0.0099,
                                        1e-7,
                                        5e-8,
                                        1e-300,
                                        4.9e-324,
                                        2.0,
                                        16.0,
                                        64.0,
                                        100.0,
                                        101.0,
                                        1e6,
                                        1e300,
                                        -1e300,
                                        std::numeric_limits<double>::max(),
                                        -std::numeric_limits<double>::max(),
                                        kInf,
                                        -kInf,
                                        std::numeric_limits<double>::quiet_NaN()};
  switch (data.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
      return data.ConsumeFloatingPointInRange(low, high);
    case 1:
      return kSpecial[data.ConsumeIntegralInRange<size_t>(0, std::size(kSpecial) - 1)];
    case 2:
      return data.ConsumeFloatingPoint<double>();
    default:
      break;
  }
  // Whole values at and around the control's range.
  return static_cast<double>(data.ConsumeIntegralInRange<int32_t>(static_cast<int32_t>(low) - 2,
                                                                  static_cast<int32_t>(high) + 2));
}

inline int32_t PickInt(FuzzedDataProvider& data, int32_t low, int32_t high) {
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  static constexpr int32_t kSpecial[] = {0,         1,        -1,   2,     7,        8,
                                         255,       256,      257,  65536, 5898240,  23592960,
                                         -23592960, 47185920, kMax, kMin,  kMax - 1, kMin + 1};
  switch (data.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
    case 1:
      return data.ConsumeIntegralInRange(low, high);
    case 2:
      return kSpecial[data.ConsumeIntegralInRange<size_t>(0, std::size(kSpecial) - 1)];
    default:
      break;
  }
  return data.ConsumeIntegral<int32_t>();
}

inline float PickScale(FuzzedDataProvider& data) {
  static constexpr float kSpecial[] = {1.0f,
                                       0.5f,
                                       0.25f,
                                       2.0f,
                                       0.0f,
                                       -1.0f,
                                       1e-30f,
                                       1e30f,
                                       std::numeric_limits<float>::infinity(),
                                       std::numeric_limits<float>::quiet_NaN()};
  switch (data.ConsumeIntegralInRange<int>(0, 2)) {
    case 0:
      return kSpecial[data.ConsumeIntegralInRange<size_t>(0, std::size(kSpecial) - 1)];
    case 1:
      return data.ConsumeFloatingPointInRange(0.0f, 4.0f);
    default:
      break;
  }
  return data.ConsumeFloatingPoint<float>();
}

}  // namespace morvane::fuzz
