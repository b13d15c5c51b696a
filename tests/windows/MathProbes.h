// The C run-time's sin, cos and pow evaluated over the arguments the kernels
// give them, so that a difference between two run-times' functions can be
// named even where it leaves every rendered pixel unchanged.
#pragma once

#include <filesystem>

namespace morvane::wincheck {

// Writes math-sin.bin, math-cos.bin and math-pow.bin (little-endian doubles)
// into `folder`. The argument sets and their order are fixed here and repeated
// by render_cases.py, which reports the differences.
void WriteMathProbes(const std::filesystem::path& folder);

}  // namespace morvane::wincheck
