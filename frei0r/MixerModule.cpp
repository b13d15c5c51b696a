#include "frei0r/FreiApi.h"

#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

const ModuleDescription& ThisModule() {
  static constexpr ModuleDescription kMixer{
      "Morvane Intensity Source", F0R_PLUGIN_TYPE_MIXER2,
      "Stretches the first input's pixels along a direction by a curve of the second input's "
      "intensity (the Intensity Source)"};
  return kMixer;
}

}  // namespace morvane::frei0r
