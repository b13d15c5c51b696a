// Writes the effect's descriptions for the video editors from the table of controls:
//   OUT/kdenlive/effects/frei0r_morvane.xml          the filter as a Kdenlive effect
//   OUT/kdenlive/transitions/frei0r_morvane_mix.xml  the mixer as a Kdenlive composition
//   OUT/shotcut/morvane/meta.qml, ui.qml             the filter as a Shotcut filter
// Usage: morvane_editor_files OUT PANEL.qml
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "frei0r/editors/KdenliveDescription.h"
#include "frei0r/editors/ShotcutFilter.h"

namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  out << text;
  if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
}

std::string Read(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: morvane_editor_files OUT PANEL.qml\n");
    return 2;
  }
  using namespace morvane::frei0r;
  try {
    const std::filesystem::path out = argv[1];
    Write(out / "kdenlive/effects/frei0r_morvane.xml",
          KdenliveDescription(FilterDescription(), "frei0r.morvane", "effect"));
    Write(out / "kdenlive/transitions/frei0r_morvane_mix.xml",
          KdenliveDescription(MixerDescription(), "frei0r.morvane_mix", "transition"));
    Write(out / "shotcut/morvane/meta.qml",
          ShotcutMeta(FilterDescription(), "frei0r.morvane", "morvane"));
    Write(out / "shotcut/morvane/ui.qml", ShotcutUi(Read(argv[2])));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "morvane_editor_files: %s\n", error.what());
    return 1;
  }
  return 0;
}
