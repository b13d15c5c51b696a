#include <CLI/CLI.hpp>

#include "cli/Command.h"
#include "cli/ModuleLocator.h"

namespace morvane::cli {

void ModuleOptions::AddTo(CLI::App& command) {
  command
      .add_option("--module", module,
                  "The effect module to load (default: $MORVANE_MODULE, else Morvane.so next "
                  "to this program or in ../lib/morvane from it, else the module built with it)")
      ->option_text("PATH")
      ->group("Host");
  command
      .add_option("--host", host,
                  "The simulated host: ae (After Effects, interface 13.27, smart render), "
                  "ae-13.23, ae-13.8 (older After Effects) or premiere (single-call render); "
                  "default ae")
      ->check(CLI::IsMember({"ae", "ae-13.23", "ae-13.8", "premiere"}))
      ->option_text("HOST")
      ->group("Host");
}

HostProfile ModuleOptions::Profile() const {
  return ParseHostProfile(host).value_or(HostProfile::Ae);
}

std::unique_ptr<RenderBackend> ModuleOptions::Open() const {
  return OpenRenderBackend(LocateModule(module), Profile());
}

}  // namespace morvane::cli
