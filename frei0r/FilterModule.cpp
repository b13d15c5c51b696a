#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

const ModuleDescription& ThisModule() {
  return FilterDescription();
}

}  // namespace morvane::frei0r
