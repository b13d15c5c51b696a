#include "hostsim/HostProfile.h"

namespace hostsim {

HostProfile HostProfile::AfterEffects() {
  return {"After Effects 13.27", kAfterEffectsApplId, 13, 27, "AfterEffects", "22.0"};
}

HostProfile HostProfile::AfterEffects13_23() {
  return {"After Effects 13.23", kAfterEffectsApplId, 13, 23, "AfterEffects", "17.7"};
}

HostProfile HostProfile::OlderHost() {
  return {"After Effects 13.8", kAfterEffectsApplId, 13, 8, "AfterEffects", "13.2"};
}

HostProfile HostProfile::Premiere() {
  // Premiere reports the effect-interface version of the compatibility layer it
  // implements.
  return {"Premiere Pro", kPremiereApplId, 13, 27, "Premiere Pro", "22.0"};
}

}  // namespace hostsim
