#include "cli/ModuleLocator.h"

#include <cstdlib>
#include <system_error>

namespace morvane::cli {

namespace fs = std::filesystem;

#ifndef MORVANE_MODULE_BUILD_PATH
#define MORVANE_MODULE_BUILD_PATH "Morvane.so"
#endif

fs::path LocateModule(const std::optional<std::string>& option) {
  if (option && !option->empty()) return *option;
  if (const char* env = std::getenv("MORVANE_MODULE"); env != nullptr && *env != '\0') return env;
  std::error_code ec;
  const fs::path self = fs::read_symlink("/proc/self/exe", ec);
  if (!ec) {
    // Beside the program, or where the package installs it (<prefix>/lib/morvane).
    for (const fs::path& candidate :
         {self.parent_path() / "Morvane.so",
          self.parent_path().parent_path() / "lib/morvane/Morvane.so"}) {
      if (fs::exists(candidate, ec)) return candidate;
    }
  }
  return MORVANE_MODULE_BUILD_PATH;
}

}  // namespace morvane::cli
