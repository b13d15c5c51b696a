// The `morvane` command: its subcommands and its exit codes.
#pragma once

#include <iosfwd>

namespace morvane::cli {

// Parses the arguments, runs the chosen subcommand and returns the exit code
// (0 success, 1 failure, 2 usage error). Messages go to `err`, results to `out`.
int RunMorvane(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
               bool errIsTerminal);

}  // namespace morvane::cli
