#include "cli/RenderBackend.h"

namespace morvane::cli {

std::optional<HostProfile> ParseHostProfile(std::string_view text) {
  if (text == "ae") return HostProfile::Ae;
  if (text == "ae-13.23") return HostProfile::Ae1323;
  if (text == "ae-13.8") return HostProfile::Ae138;
  if (text == "premiere") return HostProfile::Premiere;
  return std::nullopt;
}

std::string_view HostProfileName(HostProfile profile) {
  switch (profile) {
    case HostProfile::Ae:
      return "ae";
    case HostProfile::Ae1323:
      return "ae-13.23";
    case HostProfile::Ae138:
      return "ae-13.8";
    case HostProfile::Premiere:
      return "premiere";
  }
  return "?";
}

}  // namespace morvane::cli
