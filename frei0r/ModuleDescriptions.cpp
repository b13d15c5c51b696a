#include "frei0r/FreiApi.h"
#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

const ModuleDescription& FilterDescription() {
  static constexpr ModuleDescription kFilter{
      "Morvane", F0R_PLUGIN_TYPE_FILTER,
      "Stretches pixels along a direction by a curve of their intensity"};
  return kFilter;
}

const ModuleDescription& MixerDescription() {
  static constexpr ModuleDescription kMixer{
      "Morvane Intensity Source", F0R_PLUGIN_TYPE_MIXER2,
      "Stretches the first input's pixels along a direction by a curve of the second input's "
      "intensity (the Intensity Source)"};
  return kMixer;
}

}  // namespace morvane::frei0r
