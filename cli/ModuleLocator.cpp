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
    const fs::path beside = self.parent_path() / "Morvane.so";
    if (fs::exists(beside, ec)) return beside;
  }
  return MORVANE_MODULE_BUILD_PATH;
}

}  // namespace morvane::cli
