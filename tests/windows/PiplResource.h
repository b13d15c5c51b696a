// The property list as a host on Windows finds it before running any of the
// module's code: resource type "PIPL", id 16000, language 1033 (English, US).
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace morvane::wincheck {

// The resource's bytes; throws std::runtime_error when the module has none.
std::vector<uint8_t> ReadPiplResource(const std::filesystem::path& module);

}  // namespace morvane::wincheck
