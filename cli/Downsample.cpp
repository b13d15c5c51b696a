#include "cli/Downsample.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace morvane::cli {

namespace {

template <typename Channel>
Pixels<Channel> BoxFilter(const Pixels<Channel>& src, int factor) {
  Pixels<Channel> dst((src.width + factor - 1) / factor, (src.height + factor - 1) / factor);
  for (int32_t y = 0; y < dst.height; ++y) {
    const int32_t y0 = y * factor;
    const int32_t y1 = std::min(y0 + factor, src.height);
    Channel* out = dst.Row(y);
    for (int32_t x = 0; x < dst.width; ++x) {
      const int32_t x0 = x * factor;
      const int32_t x1 = std::min(x0 + factor, src.width);
      double sum[4] = {0.0, 0.0, 0.0, 0.0};
      for (int32_t sy = y0; sy < y1; ++sy) {
        const Channel* in = src.Row(sy);
        for (int32_t sx = x0; sx < x1; ++sx) {
          for (int c = 0; c < 4; ++c)
            sum[c] += static_cast<double>(in[4 * sx + c]);
        }
      }
      const double count = static_cast<double>((y1 - y0) * (x1 - x0));
      for (int c = 0; c < 4; ++c) {
        const double mean = sum[c] / count;
        if constexpr (std::is_same_v<Channel, float>) {
          out[4 * x + c] = static_cast<float>(mean);
        } else {
          out[4 * x + c] = static_cast<Channel>(std::round(mean));
        }
      }
    }
  }
  return dst;
}

}  // namespace

ArgbImage Downsample(const ArgbImage& image, int factor) {
  if (factor <= 1) return image;
  return std::visit([factor](const auto& p) { return ArgbImage{BoxFilter(p, factor)}; },
                    image.pixels);
}

}  // namespace morvane::cli
