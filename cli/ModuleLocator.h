// Where the effect module is found.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace morvane::cli {

// In order: the --module option, the MORVANE_MODULE environment variable,
// Morvane.so next to the `morvane` executable, then in ../lib/morvane from it (as
// installed), the module built alongside this executable. The last candidate is
// returned even when missing, so the caller reports which file it tried.
std::filesystem::path LocateModule(const std::optional<std::string>& option);

}  // namespace morvane::cli
