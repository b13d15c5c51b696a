// What distinguishes the two frei0r modules built from the same entry points.
#pragma once

namespace morvane::frei0r {

struct ModuleDescription {
  const char* name;
  int pluginType;  // F0R_PLUGIN_TYPE_FILTER or F0R_PLUGIN_TYPE_MIXER2
  const char* explanation;
};

// The filter (morvane.so) and the mixer (morvane_mix.so), as the editors' descriptions name
// them too.
const ModuleDescription& FilterDescription();
const ModuleDescription& MixerDescription();

// Defined once per module (FilterModule.cpp, MixerModule.cpp): one of the two.
const ModuleDescription& ThisModule();

}  // namespace morvane::frei0r
