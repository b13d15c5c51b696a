// Renders the comparison cases through a module the way a host does and writes
// the raw output of every frame, so that the same cases rendered by the Linux
// module and by the Windows module (under Wine) can be compared byte for byte.
//   morvane_render_cases <module> <out-folder> [<sample.argb8raw>]
// On Windows the property list is read from the module's resource, as the host
// reads it; elsewhere from the file next to the module.
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>
#include <type_traits>
#include <variant>

#include "hostsim/Host.h"
#include "tests/windows/MathProbes.h"
#include "tests/windows/RenderCases.h"
#ifdef _WIN32
#include "tests/windows/PiplResource.h"
#endif

namespace {

namespace fs = std::filesystem;
using hostsim::PixelDepth;
using morvane::wincheck::RenderCase;
using morvane::wincheck::SourceImage;

constexpr int32_t kSyntheticWidth = 97;
constexpr int32_t kSyntheticHeight = 61;

struct RenderOutcome {
  PF_Err firstErr = PF_Err_NONE;  // pre-render (smart) or render
  PF_Err secondErr = PF_Err_NONE;
  hostsim::Image output;
};

void WriteBytes(const fs::path& path, const void* data, size_t size) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

#ifndef _WIN32
std::vector<uint8_t> ReadBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
#endif

// The property list the host reads, saved into the output folder as Morvane.pipl.
fs::path SavePropertyList(const fs::path& module, const fs::path& out) {
#ifdef _WIN32
  const std::vector<uint8_t> bytes = morvane::wincheck::ReadPiplResource(module);
#else
  const std::vector<uint8_t> bytes = ReadBytes(hostsim::PiplPathFor(module));
#endif
  const fs::path saved = out / "Morvane.pipl";
  WriteBytes(saved, bytes.data(), bytes.size());
  return saved;
}

void Apply(hostsim::Host& host, hostsim::EffectInstance& instance, const RenderCase& renderCase) {
  for (const morvane::wincheck::Setting& setting : renderCase.settings) {
    std::visit(
        [&](auto value) {
          if constexpr (std::is_same_v<decltype(value), double>) {
            host.SetValue(instance, setting.control, value);
          } else {
            host.SetPopup(instance, setting.control, value);
          }
        },
        setting.value);
  }
}

RenderOutcome Render(hostsim::Host& host, const RenderCase& renderCase, const SourceImage& image,
                     PixelDepth depth) {
  hostsim::EffectInstance& instance = host.NewInstance();
  const hostsim::CommandResult setup = host.SequenceSetup(instance);
  if (setup.err != PF_Err_NONE) {
    throw std::runtime_error("sequence set-up failed: " + std::to_string(setup.err));
  }
  Apply(host, instance, renderCase);
  PF_EffectWorld* input = host.Worlds().Create(image.width, image.height, depth, 8);
  morvane::wincheck::FillWorld(image, *input, depth);
  if (renderCase.intensityFromLayer) host.SetLayer(instance, "Intensity Source", input);

  RenderOutcome outcome;
  if (host.Profile().IsPremiere()) {
    hostsim::LegacyFrame frame;
    frame.input = input;
    frame.depth = depth;
    hostsim::LegacyFrameResult result = host.RenderLegacy(instance, frame);
    outcome.firstErr = result.err;
    outcome.output = std::move(result.output);
  } else {
    hostsim::SmartFrame frame;
    frame.input = input;
    hostsim::SmartFrameResult result = host.RenderSmart(instance, frame);
    outcome.firstErr = result.preRenderErr;
    outcome.secondErr = result.renderErr;
    outcome.output = std::move(result.output);
  }
  host.SetLayer(instance, "Intensity Source", nullptr);
  host.SequenceSetdown(instance);
  host.Worlds().Dispose(input);
  return outcome;
}

// The output's pixels without row padding.
std::vector<uint8_t> PackedPixels(const hostsim::Image& image) {
  const size_t row =
      static_cast<size_t>(image.width) * static_cast<size_t>(hostsim::PixelBytes(image.depth));
  std::vector<uint8_t> packed;
  packed.reserve(row * static_cast<size_t>(image.height));
  for (int32_t y = 0; y < image.height; ++y) {
    const auto begin =
        image.bytes.begin() + static_cast<ptrdiff_t>(y) * static_cast<ptrdiff_t>(image.rowbytes);
    packed.insert(packed.end(), begin, begin + static_cast<ptrdiff_t>(row));
  }
  return packed;
}

struct Input {
  const char* label;
  const SourceImage* image;
  const std::vector<RenderCase>* cases;
};

// Renders every case at every depth in one host session; returns the number of failures.
int RenderSession(const hostsim::HostProfile& profile, const char* tag, const fs::path& module,
                  const fs::path& pipl, const std::vector<Input>& inputs, const fs::path& out,
                  std::ofstream& manifest) {
  hostsim::Host host(profile);
  host.Load(module, pipl);
  if (const A_Err err = host.Register(); err != A_Err_NONE) {
    throw std::runtime_error("registration failed: " + std::to_string(err));
  }
  if (host.GlobalSetup().err != PF_Err_NONE || host.ParamsSetup().err != PF_Err_NONE) {
    throw std::runtime_error("global or parameter set-up failed");
  }
  int failures = 0;
  for (const Input& input : inputs) {
    for (const RenderCase& renderCase : *input.cases) {
      for (const PixelDepth depth : morvane::wincheck::AllDepths()) {
        const std::string name =
            std::string(tag) + "-" + renderCase.name + "-" + morvane::wincheck::DepthName(depth);
        const RenderOutcome outcome = Render(host, renderCase, *input.image, depth);
        const std::vector<uint8_t> pixels = PackedPixels(outcome.output);
        WriteBytes(out / (name + ".raw"), pixels.data(), pixels.size());
        manifest << name << ".raw " << tag << ' ' << input.label << ' ' << renderCase.name << ' '
                 << morvane::wincheck::DepthName(depth) << ' ' << outcome.output.width << ' '
                 << outcome.output.height << ' ' << outcome.firstErr << ' ' << outcome.secondErr
                 << '\n';
        if (outcome.firstErr != PF_Err_NONE || outcome.secondErr != PF_Err_NONE || pixels.empty()) {
          std::fprintf(stderr, "%s: render failed (%d, %d)\n", name.c_str(),
                       static_cast<int>(outcome.firstErr), static_cast<int>(outcome.secondErr));
          ++failures;
        }
      }
    }
  }
  host.GlobalSetdown();
  if (const hostsim::SessionReport report = host.Report(); !report.Clean()) {
    std::fprintf(stderr, "%s session:\n%s", tag, report.Describe().c_str());
    ++failures;
  }
  return failures;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc > 4) {
    std::fprintf(stderr, "usage: %s <module> <out-folder> [<sample.argb8raw>]\n", argv[0]);
    return 2;
  }
  try {
    const fs::path module = argv[1];
    const fs::path out = argv[2];
    fs::create_directories(out);
    const fs::path pipl = SavePropertyList(module, out);

    const SourceImage synthetic =
        morvane::wincheck::SyntheticImage(kSyntheticWidth, kSyntheticHeight);
    SourceImage sample;
    std::vector<Input> inputs{{"synthetic", &synthetic, &morvane::wincheck::SyntheticCases()}};
    if (argc == 4) {
      sample = morvane::wincheck::ReadSourceImage(argv[3]);
      inputs.push_back({"sample", &sample, &morvane::wincheck::SampleCases()});
    }

    std::ofstream manifest(out / "manifest.txt", std::ios::trunc);
    int failures = 0;
    failures += RenderSession(hostsim::HostProfile::AfterEffects(), "ae", module, pipl, inputs, out,
                              manifest);
    failures +=
        RenderSession(hostsim::HostProfile::Premiere(), "pr", module, pipl, inputs, out, manifest);
    morvane::wincheck::WriteMathProbes(out);
    if (failures != 0) {
      std::fprintf(stderr, "%d failure(s)\n", failures);
      return 1;
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
    return 1;
  }
  return 0;
}
