#include "CliTestSupport.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "render/DispatchStretch.h"

namespace morvane::cli::test {

namespace fs = std::filesystem;

namespace {

std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string ReadAll(const fs::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

template <typename Channel>
PF_EffectWorld WorldOf(Pixels<Channel>& pixels, int32_t originX, int32_t originY) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(pixels.values.data());
  world.rowbytes = int32_t(4 * sizeof(Channel)) * pixels.width;
  world.width = pixels.width;
  world.height = pixels.height;
  world.origin_x = originX;
  world.origin_y = originY;
  return world;
}

}  // namespace

CommandResult RunMorvaneProgram(const std::vector<std::string>& args) {
  static std::atomic<int> counter{0};
  const fs::path base = fs::temp_directory_path() / ("morvane-run-" + std::to_string(::getpid()) +
                                                     "-" + std::to_string(counter++));
  std::string command = ShellQuoted(MORVANE_CLI_EXE);
  for (const std::string& arg : args)
    command += " " + ShellQuoted(arg);
  if (std::find(args.begin(), args.end(), "--module") == args.end()) {
    command += " --module " + ShellQuoted(MORVANE_TEST_MODULE);
  }
  command +=
      " >" + ShellQuoted(base.string() + ".out") + " 2>" + ShellQuoted(base.string() + ".err");
  command += " </dev/null";
  const int status = std::system(command.c_str());
  CommandResult result;
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.out = ReadAll(base.string() + ".out");
  result.err = ReadAll(base.string() + ".err");
  fs::remove(base.string() + ".out");
  fs::remove(base.string() + ".err");
  return result;
}

TempDir::TempDir() {
  static std::atomic<int> counter{0};
  path_ = fs::temp_directory_path() /
          ("morvane-cli-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
  fs::remove_all(path_);
  fs::create_directories(path_);
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::vector<std::string> TempDir::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

fs::path SampleImage() {
  return MORVANE_SAMPLE_IMAGE;
}
fs::path ModulePath() {
  return MORVANE_TEST_MODULE;
}

ArgbImage Crop(const ArgbImage& image, const Rect& rect) {
  return std::visit(
      [&](const auto& src) {
        using Channel = typename std::decay_t<decltype(src.values)>::value_type;
        Pixels<Channel> dst(rect.width, rect.height);
        for (int32_t y = 0; y < rect.height; ++y) {
          std::copy_n(src.Row(rect.y + y) + 4 * rect.x, 4 * rect.width, dst.Row(y));
        }
        return ArgbImage{std::move(dst)};
      },
      image.pixels);
}

ArgbImage ReferenceRender(const ArgbImage& input, const StretchRenderRecord& record, float scale,
                          const std::optional<Rect>& region, const ArgbImage* layer) {
  const Rect area = region.value_or(Rect{0, 0, input.width(), input.height()});
  ArgbImage in = Crop(input, area);
  ArgbImage out = in;
  std::optional<ArgbImage> layerCopy;
  if (layer != nullptr) layerCopy = *layer;
  return std::visit(
      [&](auto& src) {
        using Channel = typename std::decay_t<decltype(src.values)>::value_type;
        auto& dst = std::get<Pixels<Channel>>(out.pixels);
        std::fill(dst.values.begin(), dst.values.end(), Channel{});
        const PF_EffectWorld inWorld = WorldOf(src, area.x, area.y);
        PF_EffectWorld outWorld = WorldOf(dst, area.x, area.y);
        StretchRenderRecord copy = record;
        PF_EffectWorld layerWorld{};
        if (layerCopy) {
          layerWorld = WorldOf(std::get<Pixels<Channel>>(layerCopy->pixels), 0, 0);
          copy.intensityLayer = &layerWorld;
        }
        DispatchStretchForDepth(static_cast<PixelDepth>(DepthOf<Channel>()), inWorld, outWorld,
                                copy, scale);
        return out;
      },
      in.pixels);
}

StretchRenderRecord DefaultRecord() {
  StretchRenderRecord r{};
  r.channelMode = 0;
  r.intensity = 100.0;
  r.direction = 0;
  r.stretchAmount = 1.0;
  r.pixelSize = 1.0;
  r.startOffset = 0.0;
  r.curveShape = 0;
  r.curvePhase = 0;
  r.curveSmoothness = 0.0;
  r.distributionMode = 0;
  r.distributionRange = 2.0;
  r.imageShiftPhase = 0;
  r.imageShiftPhaseSync = 1;
  r.shadingMode = 0;
  r.shadingIntervalSize = 10;
  r.shadingIntervalPhase = 0;
  r.shadingOpacity = 0.0;
  r.shadingChannels = 0;
  r.edgeMode = 0;
  r.transparencyFeather = 0.0;
  return r;
}

}  // namespace morvane::cli::test
