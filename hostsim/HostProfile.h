// What kind of host the simulated host pretends to be.
#pragma once

#include <cstdint>
#include <string>

namespace hostsim {

inline constexpr int32_t kAfterEffectsApplId = 0x46585443;  // 'FXTC'
inline constexpr int32_t kPremiereApplId = 0x50724D72;      // 'PrMr'

struct HostProfile {
  std::string label;  // for messages: "After Effects 13.27"
  int32_t applId;     // PF_InData::appl_id
  int16_t specMajor;  // PF_InData::version
  int16_t specMinor;
  std::string hostName;     // handed to PluginDataEntryFunction
  std::string hostVersion;  // likewise
  // Frame handed to the effect with each command.
  int32_t width = 1920;
  int32_t height = 1080;
  uint32_t timeScale = 24;
  int32_t timeStep = 1;

  bool IsPremiere() const { return applId == kPremiereApplId; }

  // After Effects at effect-interface version 13.27.
  static HostProfile AfterEffects();
  // After Effects at 13.23 (the release that names the header control).
  static HostProfile AfterEffects13_23();
  // An older After Effects-compatible host at 13.8.
  static HostProfile OlderHost();
  // Premiere Pro through its After Effects compatibility layer.
  static HostProfile Premiere();
};

}  // namespace hostsim
