#include "stretch/Distribution.h"

#include <cmath>

#include "stretch/StretchMath.h"

namespace morvane {

int64_t DistributionPixels(double range, int32_t length) {
  const double l = static_cast<double>(length);
  const int64_t direct = TruncTo<int64_t>(range * l);
  if (!(range > 1.0)) return direct;
  const int64_t square = int64_t{length} * int64_t{length};
  const int64_t grown = TruncTo<int64_t>(std::pow(static_cast<double>(square), range - 1.0) + l);
  return TruncTo<int64_t>(static_cast<double>(grown - direct) * (range - 1.0) +
                          static_cast<double>(direct));
}

}  // namespace morvane
