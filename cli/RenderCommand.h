// `morvane render IN OUT [options]`.
#pragma once

#include <memory>
#include <string>

#include "cli/Command.h"
#include "cli/ControlOptionSet.h"
#include "cli/FrameRenderer.h"

namespace morvane::cli {

class RenderCommand final : public Command {
 public:
  // `backend` supplies the control options; when it is null (the module could
  // not be loaded) the help still lists the other options and `loadError` is
  // reported on running.
  RenderCommand(CLI::App& app, std::unique_ptr<RenderBackend> backend, std::string loadError);

  CLI::App& Subcommand() override { return *command_; }
  int Run(const CommandStreams& streams) override;

 private:
  void AddControlOptions();
  RenderOptions BuildOptions() const;

  CLI::App* command_;
  std::unique_ptr<RenderBackend> backend_;
  std::string loadError_;
  ModuleOptions module_;
  std::string input_;
  std::string output_;
  std::string depth_;
  std::string outDepth_;
  std::string region_;
  std::string frames_;
  int downsample_ = 1;
  int jobs_ = 0;
  bool overwrite_ = false;
  ControlOptionSet controls_;
};

}  // namespace morvane::cli
