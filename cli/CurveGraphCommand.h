// `morvane curve-graph OUT [options]`: the "Curve Graph" control's picture as a file.
#pragma once

#include <string>

#include "cli/Command.h"
#include "cli/CurveGraphPicture.h"

namespace morvane::cli {

class CurveGraphCommand final : public Command {
 public:
  explicit CurveGraphCommand(CLI::App& app);
  CLI::App& Subcommand() override { return *command_; }
  int Run(const CommandStreams& streams) override;

 private:
  CLI::App* command_;
  ModuleOptions module_;
  std::string output_;
  CurveGraphSettings settings_;
  int zoom_ = 1;
};

}  // namespace morvane::cli
