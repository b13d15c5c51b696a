// Renders a still or a frame range from files to files.
#pragma once

#include <optional>
#include <vector>

#include "cli/ControlOptions.h"
#include "cli/FramePattern.h"
#include "cli/Pixels.h"
#include "cli/Progress.h"
#include "cli/RenderBackend.h"

namespace morvane::cli {

struct RenderOptions {
  FramePattern input{""};
  FramePattern output{""};
  std::optional<FramePattern> intensitySource;
  std::optional<Depth> depth;     // none: the input file's
  std::optional<Depth> outDepth;  // none: the processing depth
  std::optional<Rect> region;
  int downsample = 1;
  std::optional<FrameRange> frames;  // none: frame 0 of a still
  int jobs = 1;
  bool overwrite = false;
  std::vector<ControlSetting> controls;
};

// Checks what can be known before any frame is read: frame placeholders
// against the range, region against the host. Throws UsageError. Returns the
// frames to render.
FrameRange PlanFrames(const RenderOptions& options, HostProfile profile);

// Sets the controls and renders every frame of the plan, `options.jobs` frames
// at a time. Each output
// file appears complete or not at all. After the first failing frame no new
// frame starts; the first error is rethrown (UsageError or Failure).
void RenderFrames(RenderBackend& backend, const RenderOptions& options, Progress& progress);

// Parses "X,Y,W,H" (X, Y >= 0; W, H >= 1). Throws UsageError.
Rect ParseRegion(std::string_view text);

}  // namespace morvane::cli
