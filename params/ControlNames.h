// How a control or popup item is spelled on a command line or in a frei0r host: its name in
// kebab-case ("Luma (no Alpha)" is "luma-no-alpha", "Edge Mode" is "edge-mode"); and how a
// control is named for scripts in an OpenFX host: the same words in lowerCamelCase ("edgeMode").
#pragma once

#include <string>
#include <string_view>

namespace morvane {

// Lower case; parentheses dropped; every run of other characters but ASCII letters and digits
// becomes one dash, none at either end.
inline std::string KebabCase(std::string_view text) {
  std::string out;
  bool pendingDash = false;
  for (const char c : text) {
    if (c == '(' || c == ')') continue;
    const bool lower = c >= 'a' && c <= 'z', upper = c >= 'A' && c <= 'Z',
               digit = c >= '0' && c <= '9';
    if (lower || upper || digit) {
      if (pendingDash && !out.empty()) out += '-';
      pendingDash = false;
      out += upper ? static_cast<char>(c - 'A' + 'a') : c;
    } else {
      pendingDash = true;
    }
  }
  return out;
}

// The kebab-case words joined in lowerCamelCase: letters and digits only.
inline std::string LowerCamelCase(std::string_view text) {
  std::string out;
  bool upperNext = false;
  for (const char c : KebabCase(text)) {
    if (c == '-') {
      upperNext = true;
    } else {
      out += upperNext && c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
      upperNext = false;
    }
  }
  return out;
}

}  // namespace morvane
