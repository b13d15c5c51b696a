// Renders a few control settings on a seeded image at every depth through a module, as After
// Effects and as Premiere do, and writes one line per frame with the digest of the output world.
// The cross build's copy loads Morvane.aex under Wine, the native copy Morvane.so; their lines
// must be identical.
//   morvane_render_cases <module> <property list> <out.txt>
#include <cinttypes>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "hostsim/Host.h"
#include "tests/support/PaintWorld.h"

namespace {

using hostsim::PixelDepth;
using Value = std::variant<double, const char*>;  // a slider or angle, or a popup item

struct RenderCase {
  const char* name;
  bool layerIsInput;  // "Intensity Source" is the input itself
  std::vector<std::pair<const char*, Value>> settings;
};

const std::vector<RenderCase> kCases{
    {"defaults", false, {{"Morvane", 10.0}}},
    {"sine-all",
     false,
     {{"Stretch Curve", "Sine Wave"},
      {"Curve Phase", -75.0},
      {"Shading", "Sine Wave"},
      {"Shading Opacity", 50.0},
      {"Shading Interval Size", 26.0},
      {"Distribution Mode", "Linear Ramp Up"},
      {"Distribution Range", 1.7},
      {"Morvane", 8.0}}},
    {"layer-red-up", true, {{"Channels", "Red"}, {"Direction", "Up"}, {"Morvane", 9.0}}},
    {"exp-transparent-feather",
     false,
     {{"Stretch Curve", "Exp Up"},
      {"Edge Mode", "Transparent"},
      {"Transparency Feather", 30.0},
      {"Image Shift Phase", 100.0},
      {"Stretch Start Offset", 20.0}}},
    {"triangle-luma-left",
     false,
     {{"Stretch Curve", "Triangle Wave"},
      {"Channels", "Luma (no Alpha)"},
      {"Direction", "Left"},
      {"Edge Mode", "Repeat Last"},
      {"Pixel Size", 1.5},
      {"Image Shift Phase Sync", 0.0}}},
};

void Require(bool ok, const std::string& what) {
  if (!ok) throw std::runtime_error(what + " failed");
}

uint64_t Digest(const hostsim::Image& image) {
  uint64_t hash = 14695981039346656037ull;
  for (const int32_t v : {image.width, image.height, image.rowbytes, image.originX, image.originY})
    hash = (hash ^ static_cast<uint32_t>(v)) * 1099511628211ull;
  for (const uint8_t b : image.bytes)
    hash = (hash ^ b) * 1099511628211ull;
  return hash;
}

// One session of `profile`: every case at every depth, one line each; returns the failed renders.
int RenderAll(const hostsim::HostProfile& profile, const char* moduleFile, const char* piplFile,
              FILE* out) {
  hostsim::Host host(profile);
  host.Load(moduleFile, piplFile);
  Require(host.Register() == A_Err_NONE && host.GlobalSetup().err == PF_Err_NONE &&
              host.ParamsSetup().err == PF_Err_NONE,
          "registration or set-up");
  int failed = 0;
  for (const RenderCase& c : kCases) {
    for (const PixelDepth depth : {PixelDepth::Bits8, PixelDepth::Bits16, PixelDepth::Float32}) {
      hostsim::EffectInstance& fx = host.NewInstance();
      Require(host.SequenceSetup(fx).err == PF_Err_NONE, "sequence set-up");
      for (const auto& [control, value] : c.settings) {
        if (const auto* item = std::get_if<const char*>(&value)) {
          host.SetPopup(fx, control, *item);
        } else {
          host.SetValue(fx, control, std::get<double>(value));
        }
      }
      PF_EffectWorld* input = host.Worlds().Create(97, 61, depth, 8);
      morvane::testing::PaintWorld(*input, depth, 7);
      if (c.layerIsInput) host.SetLayer(fx, "Intensity Source", input);
      PF_Err err = PF_Err_NONE;
      hostsim::Image output;
      if (profile.IsPremiere()) {
        hostsim::LegacyFrame frame;
        frame.input = input;
        frame.depth = depth;
        hostsim::LegacyFrameResult r = host.RenderLegacy(fx, frame);
        err = r.err;
        output = std::move(r.output);
      } else {
        hostsim::SmartFrame frame;
        frame.input = input;
        hostsim::SmartFrameResult r = host.RenderSmart(fx, frame);
        err = r.preRenderErr != PF_Err_NONE ? r.preRenderErr : r.renderErr;
        output = std::move(r.output);
      }
      std::fprintf(out, "%s %s %d: err %d, %dx%d, %016" PRIx64 "\n",
                   profile.IsPremiere() ? "premiere" : "ae", c.name, hostsim::PixelBytes(depth) * 2,
                   static_cast<int>(err), output.width, output.height, Digest(output));
      failed += err != PF_Err_NONE || output.bytes.empty() ? 1 : 0;
      host.SetLayer(fx, "Intensity Source", nullptr);
      Require(host.SequenceSetdown(fx).err == PF_Err_NONE, "sequence set-down");
      host.Worlds().Dispose(input);
    }
  }
  Require(host.GlobalSetdown().err == PF_Err_NONE, "global set-down");
  const hostsim::SessionReport report = host.Report();
  Require(report.Clean(), "the session's account (" + report.Describe() + ")");
  return failed;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s <module> <property list> <out.txt>\n", argv[0]);
    return 2;
  }
  FILE* out = std::fopen(argv[3], "wb");
  if (out == nullptr) {
    std::fprintf(stderr, "cannot write %s\n", argv[3]);
    return 1;
  }
  int failed = 0;
  try {
    failed += RenderAll(hostsim::HostProfile::AfterEffects(), argv[1], argv[2], out);
    failed += RenderAll(hostsim::HostProfile::Premiere(), argv[1], argv[2], out);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    failed = -1;
  }
  std::fclose(out);
  if (failed != 0) std::fprintf(stderr, "%d render(s) failed\n", failed);
  return failed == 0 ? 0 : 1;
}
