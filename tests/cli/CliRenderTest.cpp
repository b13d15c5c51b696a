// `morvane` as one table: arguments -> exit code, what it prints, the files it writes and, for
// renders, each written file compared bit for bit with the effect's dispatcher run directly on
// the same pixels.
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Downsample.h"
#include "cli/ImageFile.h"
#include "cli/RenderBackend.h"
#include "params/ControlTable.h"
#include "render/DispatchStretch.h"
#include "tests/customui/Pictures.h"

namespace morvane::cli {
namespace {

namespace fs = std::filesystem;
using Tweak = void (*)(StretchRenderRecord&, int frame);

// Every control away from its default, and the record the host hands the kernels for it.
constexpr char kLook[] =
    "--direction down --channels rgba --morvane-intensity 80 --morvane 4 --pixel-size 1.5 "
    "--stretch-curve sine-wave --curve-phase 30 --curve-smoothness 2 --stretch-start-offset 10 "
    "--distribution-mode linear-ramp-up --distribution-range 1.5 --image-shift-phase 45 "
    "--image-shift-phase-sync off --shading sine-wave --shading-interval-size 12.7 "
    "--shading-interval-phase 20 --shading-channels rgb --shading-opacity 40 --edge-mode mirror "
    "--transparency-feather 25";
void Look(StretchRenderRecord& r, int) {
  // clang-format off
  r = {.channelMode = 1, .intensity = 80, .direction = 2, .stretchAmount = 4, .pixelSize = 1.5,
       .startOffset = 10, .curveShape = 3, .curvePhase = 30 * 65536, .curveSmoothness = 2,
       .distributionMode = 1, .distributionRange = 1.5, .imageShiftPhase = 45 * 65536,
       .imageShiftPhaseSync = 0, .shadingMode = 1, .shadingIntervalSize = 12,
       .shadingIntervalPhase = 20 * 65536, .shadingOpacity = 40, .shadingChannels = 1,
       .edgeMode = 1, .transparencyFeather = 25, .intensityLayer = nullptr,
       .intensityLayerParam = {}};
  // clang-format on
}
// Every control at an end of its range or its last item.
constexpr char kExtremes[] =
    "--direction up --channels rgb-no-alpha --morvane 64 --pixel-size 0.01 --stretch-curve "
    "exp-down --curve-phase -360 --curve-smoothness 16 --distribution-mode linear-ramp-down "
    "--shading line --shading-interval-size 2 --shading-interval-phase 0.5 --shading-opacity 50% "
    "--edge-mode transparent --transparency-feather 100";
void Extremes(StretchRenderRecord& r, int) {
  // clang-format off
  r = {.channelMode = 7, .intensity = 100, .direction = 3, .stretchAmount = 64, .pixelSize = 0.01,
       .startOffset = 0, .curveShape = 5, .curvePhase = -360 * 65536, .curveSmoothness = 16,
       .distributionMode = 2, .distributionRange = 2, .imageShiftPhase = 0,
       .imageShiftPhaseSync = 1, .shadingMode = 5, .shadingIntervalSize = 2,
       .shadingIntervalPhase = 32768, .shadingOpacity = 50, .shadingChannels = 0, .edgeMode = 3,
       .transparencyFeather = 100, .intensityLayer = nullptr, .intensityLayerParam = {}};
  // clang-format on
}
// --morvane 3:1,5:5 --curve-phase 3:0,5:90 --direction 3:right,5:down --shading-opacity 4:50
void Keyframed(StretchRenderRecord& r, int frame) {
  r.stretchAmount = std::array{1.0, 3.0, 5.0}[frame - 3];
  r.curvePhase = std::array{0, 45, 90}[frame - 3] * 65536;
  r.direction = frame == 5 ? 2 : 0;  // popups hold until the next keyframe
  r.shadingOpacity = 50.0;
  r.shadingMode = 5;
}
// --morvane 0:1,5:6 --image-shift-phase 0:0,5:720 --channels rgba --shading sine-wave ...
void Parallel(StretchRenderRecord& r, int frame) {
  r.stretchAmount = 1.0 + frame;
  r.imageShiftPhase = 144 * 65536 * frame;
  r.channelMode = 1;
  r.shadingMode = 1;
  r.shadingOpacity = 40.0;
}

// Inputs made from the sample (640 x 360, 8-bit) when a case names them as @NAME.
struct Input {
  const char* name;
  Depth depth;
  Rect crop;
};
constexpr Rect kWhole{0, 0, 640, 360};
// clang-format off
constexpr Input kInputs[] = {
    {"in16.png", Depth::Depth16, kWhole}, {"in32.exr", Depth::Depth32f, kWhole},
    {"in8.tif", Depth::Depth8, kWhole}, {"in16.tif", Depth::Depth16, kWhole},
    {"in32.tif", Depth::Depth32f, kWhole}, {"copy.png", Depth::Depth8, kWhole},
    {"small16.png", Depth::Depth16, {300, 100, 101, 51}},
    {"layer.png", Depth::Depth8, {40, 30, 300, 200}},
    {"seq.0003.png", Depth::Depth8, {200, 80, 160, 120}},
    {"seq.0004.png", Depth::Depth8, {210, 80, 160, 120}},
    {"seq.0005.png", Depth::Depth8, {220, 80, 160, 120}}};
// clang-format on

// What each written file holds: `input` read at the processing depth, downsampled, cropped to
// the region and run through the dispatcher with the record `tweak` makes of the default one.
struct Render {
  const char* input;  // {in}: the sample; #### the written file's frame
  Depth depth;
  Depth stored;  // the written files' depth
  Tweak tweak;
  std::optional<Rect> region = std::nullopt;
  int downsample = 1;
  const char* layer = nullptr;  // the "Intensity Source" file
};

struct Case {
  const char* label;
  // For the shell; @NAME: a file in the case's folder, {in}: the sample, {module}: the module
  // built with the program (given as --module=PATH when a case names none).
  std::string args;
  int exitCode;
  std::vector<std::string> said;          // fragments of what it printed
  std::vector<std::string> written = {};  // files new or replaced in the folder, sorted
  std::optional<Render> render = std::nullopt;
  std::vector<std::string> unsaid = {};
  int lines = -1;  // printed (a render prints one per frame)
  int look = -1;   // the curve graph written: the row of kCurveGraphs it shows
  friend void PrintTo(const Case& c, std::ostream* os) { *os << c.label; }
};

std::string WithFrame(std::string name, int frame) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%04d", frame);
  const std::size_t at = name.find("####");
  return at == std::string::npos ? name : name.replace(at, 4, digits);
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

ArgbImage Crop(const ArgbImage& image, const Rect& r) {
  return std::visit(
      [&](const auto& src) {
        std::remove_cvref_t<decltype(src)> dst(r.width, r.height);
        for (int32_t y = 0; y < r.height; ++y)
          std::copy_n(src.Row(r.y + y) + 4 * r.x, 4 * r.width, dst.Row(y));
        return ArgbImage{std::move(dst)};
      },
      image.pixels);
}

// The dispatcher on `input`, the worlds' origin at the region's corner, `layer` handed whole.
ArgbImage Dispatched(ArgbImage input, StretchRenderRecord record, float scale, const Rect& area,
                     std::optional<ArgbImage> layer) {
  ArgbImage out = input;
  std::visit(
      [&](auto& src) {
        using Image = std::remove_cvref_t<decltype(src)>;
        auto& dst = std::get<Image>(out.pixels);
        std::fill(dst.values.begin(), dst.values.end(), 0);
        PF_EffectWorld outWorld = WorldOf(dst, area.x, area.y);
        PF_EffectWorld layerWorld{};
        if (layer) layerWorld = WorldOf(std::get<Image>(layer->pixels), 0, 0);
        if (layer) record.intensityLayer = &layerWorld;
        DispatchStretchForDepth(static_cast<PixelDepth>(input.depth()),
                                WorldOf(src, area.x, area.y), outWorld, record, scale);
      },
      input.pixels);
  return out;
}

class Morvane : public ::testing::TestWithParam<Case> {
 protected:
  void SetUp() override { fs::create_directories(dir_); }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Substituted(std::string text) const {
    for (std::size_t at; (at = text.find("{in}")) != std::string::npos;)
      text.replace(at, 4, MORVANE_SAMPLE_IMAGE);
    for (std::size_t at; (at = text.find("{module}")) != std::string::npos;)
      text.replace(at, 8, MORVANE_TEST_MODULE);
    for (std::size_t at; (at = text.find('@')) != std::string::npos;)
      text.replace(at, 1, dir_.string() + "/");
    return text;
  }
  ArgbImage Read(const std::string& name, Depth depth) const {
    return FileToEffect(ReadImageFile(Substituted(name == "{in}" ? name : "@" + name)), depth);
  }
  std::map<std::string, fs::file_time_type> Files() const {
    std::map<std::string, fs::file_time_type> files;
    for (const auto& entry : fs::directory_iterator(dir_))
      files[entry.path().filename()] = entry.last_write_time();
    return files;
  }

  // Makes the inputs named in `args` (a sequence by its name up to the first dot).
  void MakeInputs(const std::string& args) const {
    const ArgbImage sample = Read("{in}", Depth::Depth8);
    for (const Input& input : kInputs) {
      const std::string name = input.name;
      const std::string stem = name.substr(0, name.find('.') + 1);
      if (args.find('@' + stem) == std::string::npos) continue;
      WriteImageFile(dir_ / name, Crop(sample, input.crop), input.depth);
    }
    for (const char* junk : {"junk.png", "junk.xyz"}) {
      if (args.find(junk) != std::string::npos) std::ofstream(dir_ / junk) << "not an image";
    }
  }

  // Runs the built program with no terminal, with the module built with it unless one is named;
  // its exit code, and what it printed on stdout and stderr.
  int Run(const std::string& args, std::string& printed) const {
    std::string command = MORVANE_CLI_EXE " " + Substituted(args);
    if (args.find("--module") == std::string::npos) command += " --module=" MORVANE_TEST_MODULE;
    FILE* pipe = popen((command + " 2>&1 </dev/null").c_str(), "r");
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
      printed.append(buffer, n);
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  void ExpectRendered(const Render& r, const std::string& name) const {
    const std::string frameText = fs::path(fs::path(name).stem()).extension().string();
    const int frame = frameText.empty() ? 0 : std::stoi(frameText.substr(1));
    StretchRenderRecord record = morvane::DefaultRecord();
    r.tweak(record, frame);
    ArgbImage input = Downsample(Read(WithFrame(r.input, frame), r.depth), r.downsample);
    const Rect area = r.region.value_or(Rect{0, 0, input.width(), input.height()});
    input = Crop(input, area);
    std::optional<ArgbImage> layer;
    if (r.layer != nullptr) layer = Read(r.layer, r.depth);
    const ArgbImage expected = Dispatched(input, record, 1.0f / float(r.downsample), area, layer);
    EXPECT_FALSE(expected == input) << name;  // the look changes the picture
    const FileImage written = ReadImageFile(dir_ / name);
    EXPECT_EQ(NaturalDepth(written), r.stored) << name;
    EXPECT_TRUE(FileToEffect(written, r.depth) == expected) << name;
  }

  // The curve graph as written: every pixel repeated `zoom` times each way, RGBA with straight
  // alpha, back to the module's BGRA picture.
  void ExpectCurveGraph(int look, const std::string& name) const {
    const FileImage file = ReadImageFile(dir_ / name);
    const auto& rgba = std::get<Pixels<uint8_t>>(file.pixels);
    const int zoom = rgba.width / 50;
    std::vector<uint8_t> bgra;
    for (int32_t y = 0; y < rgba.height; ++y) {
      for (int32_t x = 0; x < rgba.width; ++x) {
        const uint8_t* px = rgba.Row(y) + 4 * x;
        ASSERT_TRUE(std::equal(px, px + 4, rgba.Row(y / zoom * zoom) + 4 * (x / zoom * zoom)));
        if (x % zoom == 0 && y % zoom == 0) bgra.insert(bgra.end(), {px[2], px[1], px[0], px[3]});
      }
    }
    EXPECT_EQ(morvane::testing::Digest(bgra), morvane::testing::kCurveGraphs[look].digest);
  }

  const fs::path dir_ = fs::temp_directory_path() / ("morvane-cli-" + std::to_string(::getpid()));
};

TEST_P(Morvane, ExitsPrintsWritesAndRendersAsTheDispatcher) {
  const Case& c = GetParam();
  MakeInputs(c.args);
  const auto before = Files();
  std::string printed;
  EXPECT_EQ(Run(c.args, printed), c.exitCode) << printed;
  for (const std::string& part : c.said)
    EXPECT_NE(printed.find(Substituted(part)), std::string::npos) << part << "\n" << printed;
  for (const std::string& part : c.unsaid)
    EXPECT_EQ(printed.find(part), std::string::npos) << part;
  EXPECT_EQ(c.lines < 0 ? c.lines : std::count(printed.begin(), printed.end(), '\n'), c.lines);
  std::vector<std::string> written;  // no partial output, no temporary file
  for (const auto& [name, time] : Files()) {
    if (!before.contains(name) || before.at(name) != time) written.push_back(name);
  }
  EXPECT_EQ(written, c.written);
  for (const std::string& name : written) {
    if (c.render) ExpectRendered(*c.render, name);
    if (c.look >= 0) ExpectCurveGraph(c.look, name);
  }
}

constexpr Depth k8 = Depth::Depth8, k16 = Depth::Depth16, k32 = Depth::Depth32f;
const std::string kOut = "render {in} @out.png ";
const std::string kLookArgs = std::string(" ") + kLook, kExtremesArgs = kExtremes;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, Morvane, ::testing::Values(
    Case{"MissingInput", "render @none.png @out.png", 1, {"'@none.png'", "no such file"}},
    Case{"UnreadableInput", "render @junk.png @out.png", 1, {"'@junk.png'"}},
    Case{"UnsupportedInputFormat", "render @junk.xyz @out.png", 1, {"'@junk.xyz'"}},
    Case{"UnsupportedOutputFormat", "render {in} @out.xyz", 1, {"'@out.xyz'", "no writer"}},
    Case{"MissingIntensitySource", kOut + "--intensity-source @none.png", 1, {"'@none.png'"}},
    Case{"FailedWrite", "render {in} @no/out.png", 1, {"'@no/out.png'", "cannot write"}},
    Case{"MissingModule", kOut + "--module @none.so", 1, {"'@none.so'"}},
    Case{"SliderOutOfRange", kOut + "--pixel-size 0.005", 2,
         {"--pixel-size: \"Pixel Size\"", "from 0.01 to 16, got 0.005"}},
    Case{"PercentOutOfRange", kOut + "--shading-opacity 100.5", 2,
         {"--shading-opacity: \"Shading Opacity\"", "from 0 to 100 %"}},
    Case{"UnknownItem", kOut + "--edge-mode clamp", 2,
         {"--edge-mode: \"Edge Mode\"", "wrap, mirror, repeat-last, transparent"}},
    Case{"UnknownItemInPremiere", kOut + "--host premiere --channels cmyk", 2,
         {"\"Channels\"", "luma, rgba, red, green, blue, alpha, luma-no-alpha, rgb-no-alpha"}},
    Case{"AngleOutOfRange", kOut + "--curve-phase 40000", 2, {"\"Curve Phase\"", "degrees"}},
    Case{"NotOnOrOff", kOut + "--image-shift-phase-sync 1", 2,
         {"\"Image Shift Phase Sync\"", "on or off"}},
    Case{"BadKeyframes", kOut + "--morvane 5:1,2:3", 2, {"\"Morvane\"", "must increase"}},
    Case{"DownsampleTooLarge", kOut + "--downsample 9", 2, {"--downsample"}},
    Case{"RegionOutside", kOut + "--region 600,0,100,10", 2, {"--region", "640x360"}},
    Case{"RegionInPremiere", kOut + "--region 0,0,10,10 --host premiere", 2, {"--region"}},
    Case{"PatternWithoutFrames", "render @in.#.png @out.#.png", 2, {"--frames"}},
    Case{"RangeWithoutPattern", kOut + "--frames 1-3", 2, {"'@out.png'", "placeholder"}},
    Case{"OverwritingTheInput", "render @junk.png @junk.png", 2, {"'@junk.png'", "--overwrite"}},
    Case{"UnknownHost", kOut + "--host imaginary", 2, {"--host"}},
    Case{"UnknownOption", kOut + "--sharpen 3", 2, {"--sharpen"}},
    Case{"Help", "render --help", 0, {"\"Pixel Size\": 0.01 to 16 (default 1)",
         "\"Shading Opacity\": 0 to 100 % (default 0)", "\"Curve Phase\": angle in degrees",
         "\"Channels\": luma|rgba|red|green|blue|alpha|luma-no-alpha|rgb-no-alpha (default luma)",
         "\"Image Shift Phase Sync\": on|off (default on)", "--shading-channels ITEM",
         "--intensity-source FILE", "--out-depth", "--jobs", "--overwrite", "Exit codes"}},
    Case{"Info", "info", 0, {"Morvane", "category     Orbrenn", "match name   morvane",
         "version      1.6", "\"Curve Graph\" drawn by the effect", "--transparency-feather",
         "0x06008000  CUSTOM_UI | DEEP_COLOR_AWARE | SEND_UPDATE_PARAMS_UI\n"}},
    Case{"InfoInAnOlderHost", "info --host=ae-13.8", 0, {"--direction"}, {}, {}, {"Curve Graph"}},
    Case{"CurveGraphZoomed", "curve-graph @g.png --stretch-curve 'Exp Down' --curve-phase -3.75 "
         "--curve-smoothness 4 --zoom 2", 0, {"(100 x 100)"}, {"g.png"}, {}, {}, -1, 12},
    Case{"CurveGraphTiff", "curve-graph @g.tif --zoom 3", 0, {"(150 x 150)"}, {"g.tif"}, {}, {},
         -1, 0},
    Case{"CurveGraphInPremiere", "curve-graph @g.png --host premiere --stretch-curve 'Sine Wave' "
         "--curve-phase 450 --curve-smoothness 3.5", 0, {"(50 x 50)"}, {"g.png"}, {}, {}, -1, 9},
    Case{"CurveGraphInRendersWords", "curve-graph @graph.png --stretch-curve sine-wave "
         "--curve-phase 45 --curve-smoothness 2 --zoom 4", 0, {"(200 x 200)"}, {"graph.png"}},
    Case{"CurveGraphZoomZero", "curve-graph @g.png --zoom 0", 2, {"--zoom"}},
    Case{"CurveGraphUnknownCurve", "curve-graph @g.png --stretch-curve Zigzag", 2,
         {"--stretch-curve: \"Stretch Curve\"", "'Zigzag'", "exp-up, exp-down"}},
    Case{"CurveGraphOutOfRange", "curve-graph @g.png --curve-smoothness 17", 2,
         {"\"Curve Smoothness\""}},
    Case{"CurveGraphInAnOlderHost", "curve-graph @g.png --host ae-13.8", 1, {"curve graph"}},
    Case{"CurveGraphUnknownFormat", "curve-graph @g.xyz", 1, {"'@g.xyz'", "no writer"}},
    Case{"CurveGraphMissingModule", "curve-graph @g.png --module @none.so", 1, {"module '@none.so'"}},
    Case{"AeAt8", kOut + "--host ae --jobs 1 --module {module}" + kLookArgs, 0, {}, {"out.png"},
         Render{"{in}", k8, k8, Look}},
    Case{"AeAt16", "render @in16.png @out.png" + kLookArgs, 0, {}, {"out.png"},
         Render{"in16.png", k16, k16, Look}},
    Case{"AeAt32f", "render @in32.exr @out.exr" + kLookArgs, 0, {}, {"out.exr"},
         Render{"in32.exr", k32, k32, Look}},
    Case{"PremiereAt8Extremes", "render @in8.tif @out.tif --host=premiere " + kExtremesArgs, 0,
         {}, {"out.tif"}, Render{"in8.tif", k8, k8, Extremes}},
    Case{"PremiereAt16", "render @in16.tif @out.tif --host premiere" + kLookArgs, 0, {},
         {"out.tif"}, Render{"in16.tif", k16, k16, Look}},
    Case{"PremiereAt32f", "render @in32.tif @out.tif --host premiere" + kLookArgs, 0, {},
         {"out.tif"}, Render{"in32.tif", k32, k32, Look}},
    Case{"OlderHostAt8", "render {in} @out.tif --host ae-13.8" + kLookArgs, 0, {}, {"out.tif"},
         Render{"{in}", k8, k8, Look}},
    Case{"Ae13_23At16", "render @in16.png @out.tif --host ae-13.23" + kLookArgs, 0, {},
         {"out.tif"}, Render{"in16.png", k16, k16, Look}},
    Case{"OlderHostAt32f", "render @in32.exr @out.tif --host ae-13.8" + kLookArgs, 0, {},
         {"out.tif"}, Render{"in32.exr", k32, k32, Look}},
    Case{"DepthOptions", "render {in} @out.exr --depth 16 --out-depth 32f" + kLookArgs, 0, {},
         {"out.exr"}, Render{"{in}", k16, k32, Look}},
    Case{"Region", kOut + "--region 100,50,200,120" + kLookArgs, 0, {}, {"out.png"},
         Render{"{in}", k8, k8, Look, Rect{100, 50, 200, 120}}},
    Case{"DownsampleOddSize", "render @small16.png @out.png --downsample 2" + kLookArgs, 0, {},
         {"out.png"}, Render{"small16.png", k16, k16, Look, {}, 2}},
    Case{"IntensitySource", "render @in32.tif @out.tif --intensity-source @layer.png" + kLookArgs,
         0, {}, {"out.tif"}, Render{"in32.tif", k32, k32, Look, {}, 1, "layer.png"}},
    Case{"Overwrite", "render @copy.png @copy.png --overwrite" + kLookArgs, 0, {}, {"copy.png"},
         Render{"{in}", k8, k8, Look}},
    Case{"KeyframedSequence", "render @seq.####.png @out.%04d.png --frames 3-5 --morvane 3:1,5:5 "
         "--curve-phase 3:0,5:90 --direction 3:right,5:down --shading-opacity 4:50 --shading line",
         0, {}, {"out.0003.png", "out.0004.png", "out.0005.png"},
         Render{"seq.####.png", k8, k8, Keyframed}},
    Case{"ParallelFrames", "render @small16.png @out.#.png --frames 0-5 --jobs 2 "
         "--morvane 0:1,5:6 --image-shift-phase 0:0,5:720 --channels rgba --shading sine-wave "
         "--shading-opacity 40", 0, {"out.2.png"},
         {"out.0.png", "out.1.png", "out.2.png", "out.3.png", "out.4.png", "out.5.png"},
         Render{"small16.png", k16, k16, Parallel}, {}, 6}),
    [](const ::testing::TestParamInfo<Case>& info) { return info.param.label; });
// clang-format on

}  // namespace
}  // namespace morvane::cli
