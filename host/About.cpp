#include "host/About.h"

#include <cstdio>

#include "host/EffectIdentity.h"

namespace morvane {

namespace {

constexpr char kAboutFormat[] =
    "%s, version %d.%d.%d\r"
    "Stretches every line of the layer into streaks whose length follows the "
    "intensity of its pixels.";

constexpr int kMajor = static_cast<int>(kEffectVersionWord >> 19 & 0x7);
constexpr int kMinor = static_cast<int>(kEffectVersionWord >> 15 & 0xF);
constexpr int kFix = static_cast<int>(kEffectVersionWord >> 11 & 0xF);

}  // namespace

PF_Err ShowAbout(const PF_InData* in_data, PF_OutData* out_data) {
  const PF_UtilCallbacks* utils = in_data->utils;
  if (utils != nullptr && utils->ansi.sprintf != nullptr) {
    utils->ansi.sprintf(out_data->return_msg, kAboutFormat, kEffectName, kMajor, kMinor, kFix);
  } else {
    std::snprintf(out_data->return_msg, sizeof out_data->return_msg, kAboutFormat, kEffectName,
                  kMajor, kMinor, kFix);
  }
  return PF_Err_NONE;
}

}  // namespace morvane
