// The "Curve Graph" control's picture, drawn by the effect module through the simulated host
// exactly as the Effect Controls panel shows it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace hostsim {
class Host;
class EffectInstance;
}  // namespace hostsim

namespace morvane::cli {

// The image the effect handed to the host's drawing suites: straight BGRA, rows
// `width` * 4 bytes apart.
struct CurveGraphPicture {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> bgra;
};

// Sends the draw event of the curve graph of `instance` (with its controls as set) and returns
// what the effect drew. Throws Failure when the host does not show the control or the effect
// draws nothing.
CurveGraphPicture DrawCurveGraph(hostsim::Host& host, hostsim::EffectInstance& instance);

// Writes the picture as an 8-bit image with straight alpha, every pixel repeated `zoom` times
// in both directions (zoom >= 1). The format follows the file name. Throws Failure.
void WriteCurveGraph(const std::filesystem::path& path, const CurveGraphPicture& picture, int zoom);

}  // namespace morvane::cli
