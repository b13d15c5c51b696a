// `morvane info`: the module's registration and controls, as the host sees them.
#pragma once

#include <iosfwd>

#include "cli/Command.h"
#include "cli/ModuleInfo.h"

namespace morvane::cli {

class InfoCommand final : public Command {
 public:
  explicit InfoCommand(CLI::App& app);
  CLI::App& Subcommand() override { return *command_; }
  int Run(const CommandStreams& streams) override;

 private:
  CLI::App* command_;
  ModuleOptions module_;
};

// Writes the registration and the control table.
void PrintModuleInfo(std::ostream& out, const ModuleInfo& info, HostProfile profile);

}  // namespace morvane::cli
