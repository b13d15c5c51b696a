// What distinguishes the two frei0r modules built from the same entry points.
#pragma once

namespace morvane::frei0r {

struct ModuleDescription {
  const char* name;
  int pluginType;  // F0R_PLUGIN_TYPE_FILTER or F0R_PLUGIN_TYPE_MIXER2
  const char* explanation;
};

// Defined once per module (FilterModule.cpp, MixerModule.cpp).
const ModuleDescription& ThisModule();

}  // namespace morvane::frei0r
