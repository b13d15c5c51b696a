// The subcommands of `morvane`. Each one adds its own CLI11 subcommand with its
// options and runs when that subcommand was given. A new subcommand is one more
// class of this kind and one more line in App.cpp.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "cli/RenderBackend.h"

namespace CLI {
class App;
}

namespace morvane::cli {

struct CommandStreams {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;
};

// --module and --host, shared by every subcommand that loads the effect.
struct ModuleOptions {
  std::optional<std::string> module;
  std::string host = "ae";

  void AddTo(CLI::App& command);
  HostProfile Profile() const;  // after parsing; the option is validated
  std::unique_ptr<RenderBackend> Open() const;
};

class Command {
 public:
  virtual ~Command() = default;
  virtual CLI::App& Subcommand() = 0;
  // Runs after a successful parse; returns the exit code. May throw UsageError
  // or Failure, which the caller reports.
  virtual int Run(const CommandStreams& streams) = 0;
};

}  // namespace morvane::cli
