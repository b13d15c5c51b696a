// What the command needs from a host that runs the effect module.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "cli/ControlOptions.h"
#include "cli/CurveGraphPicture.h"
#include "cli/ModuleInfo.h"
#include "cli/Pixels.h"

namespace morvane::cli {

// The host the module is loaded into.
enum class HostProfile { Ae, Ae1323, Ae138, Premiere };

// "ae", "ae-13.23", "ae-13.8", "premiere"; nullopt for anything else.
std::optional<HostProfile> ParseHostProfile(std::string_view text);
std::string_view HostProfileName(HostProfile profile);

struct Rect {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
};

// One frame to render. Images are already at the processing depth and, for a
// reduced resolution, already box-filtered.
struct FrameRequest {
  const ArgbImage* input = nullptr;
  const ArgbImage* intensitySource = nullptr;  // null: "Intensity Source" is none
  std::optional<Rect> region;                  // the host's output request; none = full frame
  int downsample = 1;                          // downsample_x = downsample_y = 1 / downsample
  int32_t fullWidth = 0;                       // the input's width before downsampling
  int32_t frame = 0;                           // the time at which controls are read
};

class RenderBackend {
 public:
  virtual ~RenderBackend() = default;
  virtual const ModuleInfo& Info() const = 0;
  virtual HostProfile Profile() const = 0;
  // Sets the controls of the effect instance; controls left out keep their
  // defaults. Not while frames render. Throws Failure.
  virtual void SetControls(std::span<const ControlSetting> controls) = 0;
  // Renders one frame; the result has the request's size (the region's, when
  // given). Safe to call from several threads at once. Throws Failure.
  virtual ArgbImage Render(const FrameRequest& request) = 0;
  // The "Curve Graph" control as the effect draws it for the controls as set. Throws Failure
  // (also when the host does not show the control).
  virtual CurveGraphPicture CurveGraph() = 0;
};

// Loads the module at `modulePath` into the simulated host of `profile`.
// Throws Failure naming the module and the reason.
std::unique_ptr<RenderBackend> OpenRenderBackend(const std::filesystem::path& modulePath,
                                                 HostProfile profile);

}  // namespace morvane::cli
