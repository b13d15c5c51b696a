#include "render/UnionRect.h"

#include <algorithm>

namespace morvane {
namespace {

bool IsEmpty(const PF_LRect& rect) {
  return rect.left >= rect.right || rect.top >= rect.bottom;
}

}  // namespace

void UnionRect(const PF_LRect& source, PF_LRect& destination) {
  if (IsEmpty(destination)) {
    destination = source;
  } else if (!IsEmpty(source)) {
    destination.left = std::min(destination.left, source.left);
    destination.top = std::min(destination.top, source.top);
    destination.right = std::max(destination.right, source.right);
    destination.bottom = std::max(destination.bottom, source.bottom);
  }
}

}  // namespace morvane
