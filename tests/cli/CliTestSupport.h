// Helpers for the end-to-end tests of `morvane`: running the built program,
// temporary folders, and the reference render through DispatchStretch.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/Pixels.h"
#include "cli/RenderBackend.h"
#include "render/StretchRenderRecord.h"

namespace morvane::cli::test {

struct CommandResult {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// Runs the built `morvane` with `args` (and the module built with it unless
// `args` name one), with no terminal.
CommandResult RunMorvaneProgram(const std::vector<std::string>& args);

// A fresh folder, removed with its contents at the end of the scope.
class TempDir {
 public:
  TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir();
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }
  std::vector<std::string> Files() const;  // names, sorted

 private:
  std::filesystem::path path_;
};

// The project's sample image, 640 x 360 RGBA 8-bit.
std::filesystem::path SampleImage();
std::filesystem::path ModulePath();

// `image` cropped to `rect`.
ArgbImage Crop(const ArgbImage& image, const Rect& rect);

// What the effect makes of `input` when its render dispatcher is called
// directly: output of `region` (whole image by default) with the output
// world's origin at the region's corner, `layer` handed over whole as the
// "Intensity Source".
ArgbImage ReferenceRender(const ArgbImage& input, const StretchRenderRecord& record, float scale,
                          const std::optional<Rect>& region = std::nullopt,
                          const ArgbImage* layer = nullptr);

// A record with every control at its default.
StretchRenderRecord DefaultRecord();

}  // namespace morvane::cli::test
