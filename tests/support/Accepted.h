// Text a test makes from what a module tells its host, compared with the text accepted once by
// reading it, kept in a file of the tests. With MORVANE_ACCEPT=1 in the environment the test
// writes its text into that file instead: review the change (git diff) before committing it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace morvane::testing {

inline std::string AcceptedText(const char* path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline void ExpectAccepted(const std::string& text, const char* path) {
  if (const char* accept = std::getenv("MORVANE_ACCEPT"); accept && accept == std::string("1"))
    std::ofstream(path, std::ios::binary) << text;
  EXPECT_EQ(text, AcceptedText(path)) << path << " differs (MORVANE_ACCEPT=1 writes it)";
}

}  // namespace morvane::testing
