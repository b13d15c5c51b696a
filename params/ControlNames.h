// How a control or popup item is spelled on a command line or in a frei0r host: its name in
// kebab-case ("Luma (no Alpha)" is "luma-no-alpha", "Edge Mode" is "edge-mode").
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

}  // namespace morvane
