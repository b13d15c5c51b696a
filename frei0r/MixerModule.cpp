#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

const ModuleDescription& ThisModule() {
  return MixerDescription();
}

}  // namespace morvane::frei0r
