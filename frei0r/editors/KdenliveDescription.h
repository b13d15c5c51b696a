// Kdenlive's description of a frei0r module (an effect, or a composition for the mixer): the
// panel Kdenlive shows instead of the one it would make from the bare frei0r metadata.
#pragma once

#include <string>

#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

// The XML file for `module`, whose MLT service is `service` ("frei0r.morvane"); `element` is
// "effect" for a filter, "transition" for a composition.
std::string KdenliveDescription(const ModuleDescription& module, const char* service,
                                const char* element);

}  // namespace morvane::frei0r
