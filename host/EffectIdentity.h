// The effect's identity as the host sees it: names, kind, interface version,
// version word and capability flag words. Shared by the property list and by
// registration and global set-up, so both always say the same thing. This
// header has no host-interface dependency: the property-list generator, a
// build-time tool, includes it too.
#pragma once

#include <cstdint>

namespace morvane {

inline constexpr char kEffectName[] = "Morvane";
inline constexpr char kEffectMatchName[] = "morvane";
inline constexpr char kEffectCategory[] = "Orbrenn";
inline constexpr char kEntryPointName[] = "EffectMain";

// 'eFKT': an After Effects effect.
inline constexpr uint32_t kEffectKind = 0x65464B54;

// The effect-interface version the module is built for: 13.27.
inline constexpr int32_t kInterfaceVersion = 13;
inline constexpr int32_t kInterfaceSubversion = 27;

// Reserved-info value handed to the registration callback.
inline constexpr int32_t kReservedInfo = 8;

// The host's version packing: major << 19 | minor << 15 | fix << 11 | stage << 9 | build.
constexpr uint32_t PackEffectVersion(uint32_t major, uint32_t minor, uint32_t fix, uint32_t stage,
                                     uint32_t build) {
  return (major << 19) | (minor << 15) | (fix << 11) | (stage << 9) | build;
}

// 1.6.0, release stage (3), build 1.
inline constexpr uint32_t kEffectVersionWord = PackEffectVersion(1, 6, 0, 3, 1);
static_assert(kEffectVersionWord == 0x000B0601);

// Custom UI | deep colour aware | send update-params-UI.
inline constexpr uint32_t kGlobalOutFlags = 0x06008000;
// Thread-safe | smart render | float colour aware | flattened sequence data copies |
// threaded rendering.
inline constexpr uint32_t kGlobalOutFlags2 = 0x08801410;

// Every effect instance owns a sequence-data handle of exactly this many zero bytes.
inline constexpr uint32_t kSequenceDataSize = 296;

}  // namespace morvane
