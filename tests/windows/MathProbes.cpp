#include "tests/windows/MathProbes.h"

#include <cmath>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace morvane::wincheck {

namespace {

// The kernels' value of pi, written as they write it.
constexpr double kPi = 3.14159265359;

void WriteDoubles(const std::filesystem::path& path, const std::vector<double>& values) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(values.data()),
            static_cast<std::streamsize>(values.size() * sizeof(double)));
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

// The stretch curve's sine: sin(2 (u pi)) for u = i / n, i < n, for every table
// or graph size n up to 1024 (the curve table itself has n = 1024), then the
// single-precision curve's inclusive form u = float(i / float(n - 1)).
std::vector<double> SineProbes() {
  std::vector<double> values;
  for (int32_t n = 2; n <= 1024; ++n) {
    for (int32_t i = 0; i < n; ++i) {
      const double u = static_cast<double>(i) / static_cast<double>(n);
      values.push_back(std::sin(2.0 * (u * kPi)));
    }
  }
  for (int32_t n = 2; n <= 1024; ++n) {
    for (int32_t i = 0; i < n; ++i) {
      const auto x = static_cast<float>(static_cast<double>(i) /
                                        static_cast<double>(static_cast<float>(n - 1)));
      values.push_back(std::sin(2.0 * (static_cast<double>(x) * kPi)));
    }
  }
  return values;
}

// The shading pattern's cosine: cos((t + t) pi) for t = i / size, i < size, for
// every table size 2 to 1024 (the kernels use sizes up to 256).
std::vector<double> CosineProbes() {
  std::vector<double> values;
  for (int32_t size = 2; size <= 1024; ++size) {
    for (int32_t i = 0; i < size; ++i) {
      const double t = static_cast<double>(i) / static_cast<double>(size);
      values.push_back(std::cos((t + t) * kPi));
    }
  }
  return values;
}

// The distribution's power: pow(length^2, range - 1) for line lengths 1 to 2048
// and ranges 1.001 to 2.000 in steps of 0.001 (the control's precision).
std::vector<double> PowerProbes() {
  std::vector<double> values;
  for (int32_t k = 1001; k <= 2000; ++k) {
    const double range = k / 1000.0;
    for (int64_t length = 1; length <= 2048; ++length) {
      values.push_back(std::pow(static_cast<double>(length * length), range - 1.0));
    }
  }
  return values;
}

}  // namespace

void WriteMathProbes(const std::filesystem::path& folder) {
  WriteDoubles(folder / "math-sin.bin", SineProbes());
  WriteDoubles(folder / "math-cos.bin", CosineProbes());
  WriteDoubles(folder / "math-pow.bin", PowerProbes());
}

}  // namespace morvane::wincheck
