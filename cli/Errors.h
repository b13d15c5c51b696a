// The two kinds of error the command reports. Every message names the file or
// control concerned and the reason.
#pragma once

#include <stdexcept>

namespace morvane::cli {

// The command line asks for something impossible (exit code 2).
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Something failed while doing what was asked (exit code 1).
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

}  // namespace morvane::cli
