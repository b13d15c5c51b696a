// `morvane curve-graph OUT [options]`: the "Curve Graph" control's picture as a file, for the
// controls given with the same options as `morvane render`.
#pragma once

#include <memory>
#include <string>

#include "cli/Command.h"
#include "cli/ControlOptionSet.h"

namespace morvane::cli {

class CurveGraphCommand final : public Command {
 public:
  // `backend` supplies the control options; when it is null (the module could not be loaded)
  // `loadError` is reported on running.
  CurveGraphCommand(CLI::App& app, std::unique_ptr<RenderBackend> backend, std::string loadError);
  CLI::App& Subcommand() override { return *command_; }
  int Run(const CommandStreams& streams) override;

 private:
  CLI::App* command_;
  std::unique_ptr<RenderBackend> backend_;
  std::string loadError_;
  ModuleOptions module_;
  ControlOptionSet controls_;
  std::string output_;
  int zoom_ = 1;
};

}  // namespace morvane::cli
