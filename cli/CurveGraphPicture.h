// The "Curve Graph" control's picture, drawn by the effect module through the simulated host
// exactly as the Effect Controls panel shows it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "hostsim/HostProfile.h"

namespace morvane::cli {

struct CurveGraphSettings {
  std::string curve = "Linear Ramp Up";  // a "Stretch Curve" item
  double phaseDegrees = 0.0;             // "Curve Phase"
  double smoothness = 0.0;               // "Curve Smoothness"
};

// The image the effect handed to the host's drawing suites: straight BGRA, rows
// `width` * 4 bytes apart.
struct CurveGraphPicture {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> bgra;
};

// Loads the module into a simulated host of `profile`, sets the three controls and sends the
// draw event of the curve graph's control area. Throws Failure when the module cannot be
// loaded, the host does not show the graph, a value is refused or the effect draws nothing.
CurveGraphPicture DrawCurveGraph(const std::filesystem::path& modulePath,
                                 const hostsim::HostProfile& profile,
                                 const CurveGraphSettings& settings);

// Writes the picture as an 8-bit image with straight alpha, every pixel repeated `zoom` times
// in both directions (zoom >= 1). The format follows the file name. Throws Failure.
void WriteCurveGraph(const std::filesystem::path& path, const CurveGraphPicture& picture, int zoom);

}  // namespace morvane::cli
