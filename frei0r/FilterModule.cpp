#include "frei0r/FreiApi.h"

#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

const ModuleDescription& ThisModule() {
  static constexpr ModuleDescription kFilter{
      "Morvane", F0R_PLUGIN_TYPE_FILTER,
      "Stretches pixels along a direction by a curve of their intensity"};
  return kFilter;
}

}  // namespace morvane::frei0r
