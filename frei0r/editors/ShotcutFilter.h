// Shotcut's filter folder for the frei0r filter: meta.qml (what Shotcut lists, and which
// parameters take keyframes) and ui.qml (the panel).
#pragma once

#include <string>
#include <string_view>

#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {

// `id` names the filter in projects (their "shotcut:filter" property).
std::string ShotcutMeta(const ModuleDescription& module, const char* service, const char* id);

// The panel: `panel` (a QML file) with its marker @CONTROLS@ replaced by the list of controls.
std::string ShotcutUi(std::string_view panel);

}  // namespace morvane::frei0r
