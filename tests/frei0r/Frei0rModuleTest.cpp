// The frei0r modules as ffmpeg and MLT load them: what they report about themselves, and the
// frames they render for given parameter values, compared bit for bit with DispatchStretch on the
// record those values stand for.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "frei0r/FreiApi.h"
#include "frei0r/FreiSettings.h"
#include "params/ControlTable.h"
#include "render/DispatchStretch.h"
#include "tests/support/Accepted.h"

namespace morvane::frei0r {
namespace {

#define MORVANE_ENTRY(name) \
  decltype(&f0r_##name) name = reinterpret_cast<decltype(name)>(dlsym(handle, "f0r_" #name))

// One module, opened and initialised as a host does.
struct Module {
  explicit Module(const char* path) : handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (init != nullptr) init();
  }
  void* handle;
  MORVANE_ENTRY(init);
  MORVANE_ENTRY(get_plugin_info);
  MORVANE_ENTRY(get_param_info);
  MORVANE_ENTRY(construct);
  MORVANE_ENTRY(destruct);
  MORVANE_ENTRY(set_param_value);
  MORVANE_ENTRY(get_param_value);
  MORVANE_ENTRY(update);
  MORVANE_ENTRY(update2);
};

// The filter module, or with `mixer` the mixer module, loaded once.
const Module& Plugin(bool mixer = false) {
  static const Module filter(MORVANE_FREI0R_FILTER), mix(MORVANE_FREI0R_MIXER);
  return mixer ? mix : filter;
}
bool Loaded() {
  return Plugin().update != nullptr && Plugin(true).update2 != nullptr;
}

constexpr int kWidth = 24;
constexpr int kHeight = 16;
using Frame = std::vector<uint8_t>;
using Instance = std::unique_ptr<void, void (*)(f0r_instance_t)>;
using Value = std::variant<double, std::string>;  // the item's text for menus, else a double

Instance Construct(const Module& module) {
  return {module.construct(kWidth, kHeight), module.destruct};
}

// An RGBA frame of pseudo-random bytes: straight alpha of every level.
Frame Painted(uint32_t seed) {
  Frame frame(std::size_t{kWidth} * kHeight * 4);
  for (uint8_t& byte : frame)
    byte = static_cast<uint8_t>((seed = seed * 1664525u + 1013904223u) >> 24);
  return frame;
}

PF_EffectWorld World(Frame& pixels) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(pixels.data());
  world.rowbytes = kWidth * 4;
  world.width = kWidth;
  world.height = kHeight;
  return world;
}

// The expected frame: DispatchStretch at full resolution on the frame turned into ARGB, with
// `layer`, when given, as the "Intensity Source".
Frame Dispatched(StretchRenderRecord record, Frame input, Frame layer = {}) {
  for (Frame* frame : {&input, &layer})
    for (auto pixel = frame->begin(); pixel != frame->end(); pixel += 4)
      std::rotate(pixel, pixel + 3, pixel + 4);
  Frame output(input.size());
  PF_EffectWorld in = World(input), out = World(output), intensity = World(layer);
  if (!layer.empty()) record.intensityLayer = &intensity;
  DispatchStretch<PixelDepth::Depth8>(in, out, record, 1.0f);
  for (auto pixel = output.begin(); pixel != output.end(); pixel += 4)
    std::rotate(pixel, pixel + 1, pixel + 4);
  return output;
}

// The module's frame: f0r_update, or f0r_update2 with a non-empty `layer` as the second input.
Frame Rendered(const Module& module, f0r_instance_t instance, const Frame& input,
               const Frame& layer = {}) {
  Frame output(input.size());
  const auto* in = reinterpret_cast<const uint32_t*>(input.data());
  auto* out = reinterpret_cast<uint32_t*>(output.data());
  const auto* second = reinterpret_cast<const uint32_t*>(layer.data());
  layer.empty() ? module.update(instance, 0.0, in, out)
                : module.update2(instance, 0.0, in, second, nullptr, out);
  return output;
}

// The parameter's index found by its name, as MLT finds it; -1 when no parameter has the name.
int IndexOf(const Module& module, const std::string& name) {
  f0r_plugin_info_t info{};
  module.get_plugin_info(&info);
  for (int i = 0; i < info.num_params; ++i) {
    f0r_param_info_t param{};
    module.get_param_info(&param, i);
    if (name == param.name) return i;
  }
  return -1;
}

void Set(const Module& module, f0r_instance_t instance, int index, Value value) {
  char* text = std::get_if<std::string>(&value) ? std::get<std::string>(value).data() : nullptr;
  module.set_param_value(instance, text ? static_cast<void*>(&text) : &std::get<double>(value),
                         index);
}

// The value the module reports as text: a menu's item, else the double (all its digits).
std::string Reported(const Module& module, f0r_instance_t instance, int index, bool menu) {
  double number = -1.0;
  char* text = nullptr;
  module.get_param_value(instance, menu ? static_cast<void*>(&text) : &number, index);
  char digits[32];
  std::snprintf(digits, sizeof digits, "%.17g", number);
  return menu ? text : digits;
}

// What a host reads of each parameter, in index order: "INDEX TYPE DEFAULT NAME", then its
// explanation, then the value read back after each of a few settings (a menu's items by their
// display names, then an unknown item; numbers below, inside and above 0..1; the bool either side
// of one half).
std::string Listing(const Module& module) {
  using Texts = std::vector<std::string>;
  f0r_plugin_info_t info{};
  module.get_plugin_info(&info);
  const Instance instance = Construct(module);
  std::string text;
  for (int i = 0; i < info.num_params; ++i) {
    f0r_param_info_t param{};
    module.get_param_info(&param, i);
    const bool menu = param.type == F0R_PARAM_STRING, flag = param.type == F0R_PARAM_BOOL;
    const std::vector<std::string_view> items = PopupItems(*ValueControls()[size_t(i)]);
    Texts settings(items.begin(), items.end());
    settings.emplace_back("sideways");
    if (!menu) settings = flag ? Texts{"0.375", "0.5"} : Texts{"-0.5", "0.25", "1.5"};
    const char* type = menu ? " string " : flag ? " bool " : " double ";
    text += std::to_string(i) + type + Reported(module, instance.get(), i, menu) + ' ' +
            param.name + "\n    " + param.explanation + "\n    set";
    for (const std::string& setting : settings) {
      Set(module, instance.get(), i, menu ? Value(setting) : Value(std::stod(setting)));
      text += (&setting == &settings.front() ? " " : "; ") + setting + " -> " +
              Reported(module, instance.get(), i, menu);
    }
    text += '\n';
  }
  return text;
}

TEST(Frei0rModules, DescribeThemselvesAndTheirParametersToTheHost) {
  ASSERT_TRUE(Loaded()) << dlerror();
  for (const auto& [module, type] : {std::pair{&Plugin(), F0R_PLUGIN_TYPE_FILTER},
                                     std::pair{&Plugin(true), F0R_PLUGIN_TYPE_MIXER2}}) {
    f0r_plugin_info_t info{};
    module->get_plugin_info(&info);
    EXPECT_EQ(info.plugin_type, type);
    EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_RGBA8888);
    EXPECT_EQ(module->construct(0, kHeight), nullptr);  // a frame with no pixels is refused
    EXPECT_EQ(module->construct(kWidth, 0), nullptr);
  }
  const std::string listing = Listing(Plugin());
  morvane::testing::ExpectAccepted(listing, MORVANE_FREI0R_PARAMETERS);
  EXPECT_EQ(Listing(Plugin(true)), listing);
}

// Parameter values as MLT passes them ("Name=value|...", set in order; a value that reads as a
// number is a double, any other the item's text), and the record they stand for: the default
// record with `expect` applied. With `layer` the mixer renders, the second input a different frame.
struct Row {
  const char* label;
  std::string settings;
  std::function<void(StretchRenderRecord&)> expect;
  bool layer = false;
  friend void PrintTo(const Row& row, std::ostream* os) { *os << row.label; }
};

// Every value the controls store in the record, in declaration order, and the intensity layer.
std::vector<double> Fields(const StretchRenderRecord& r) {
  std::vector<double> fields{double(r.intensityLayer != nullptr)};
  for (const Control* c : ValueControls())
    fields.push_back(c->field.whole ? r.*c->field.whole : r.*c->field.real);
  return fields;
}

class Settings : public ::testing::TestWithParam<Row> {};

TEST_P(Settings, GiveTheRecordAndTheModuleRendersIt) {
  ASSERT_TRUE(Loaded()) << dlerror();
  const Row& row = GetParam();
  const Module& module = row.layer ? Plugin(true) : Plugin();
  StretchRenderRecord expected = morvane::DefaultRecord();
  row.expect(expected);

  FreiSettings settings;
  const Instance instance = Construct(module);
  std::istringstream list(row.settings);
  for (std::string item; std::getline(list, item, '|');) {
    const std::string text = item.substr(item.find('=') + 1);
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    const int index = IndexOf(module, item.substr(0, item.find('=')));
    ASSERT_GE(index, 0) << item;
    const bool isNumber = !text.empty() && *end == '\0';
    Set(module, instance.get(), index, isNumber ? Value(number) : Value(text));
    if (isNumber) settings.SetNumber(index, number);
    if (!isNumber) settings.SetItem(index, text);
  }
  EXPECT_EQ(Fields(settings.Record()), Fields(expected));
  const Frame input = Painted(7);
  const Frame layer = row.layer ? Painted(9) : Frame{};
  const Frame output = Rendered(module, instance.get(), input, layer);
  EXPECT_EQ(output, Dispatched(expected, input, layer));
  EXPECT_TRUE(!row.layer || output != Dispatched(expected, input)) << "the layer changes nothing";
}

constexpr int32_t kMaxFixed = std::numeric_limits<int32_t>::max();
constexpr int32_t kMinFixed = std::numeric_limits<int32_t>::min();

INSTANTIATE_TEST_SUITE_P(
    Frei0rValues, Settings,
    ::testing::Values(
        Row{"Defaults", "", [](StretchRenderRecord&) {}},
        Row{"MenuItemsByKebabAndDisplayName",
            "Direction=up|Channels=Luma (no Alpha)|Stretch Curve=exp-down|"
            "Distribution Mode=Linear Ramp Down|Shading=line|Shading Channel(s)=RGB|"
            "Shading Opacity=0.5|Edge Mode=repeat_last",
            [](StretchRenderRecord& r) {
              r.direction = 3, r.channelMode = 6, r.curveShape = 5, r.distributionMode = 2;
              r.shadingMode = 5, r.shadingChannels = 1, r.shadingOpacity = 50, r.edgeMode = 2;
            }},
        Row{"UnknownItemsKeepTheValue",
            "Direction=down|Direction=sideways|Direction=|Channels=rgba",
            [](StretchRenderRecord& r) { r.direction = 2, r.channelMode = 1; }},
        Row{"SlidersAcrossTheirRanges",
            "Morvane Intensity=0.5|Morvane=0.25|Pixel Size=1|Curve Smoothness=0.25|"
            "Stretch Start Offset=0.1|Distribution Range=0.75|Shading=sine-wave|"
            "Shading Interval Size=0.5|Shading Opacity=0.8|Transparency Feather=0.3",
            [](StretchRenderRecord& r) {
              r.intensity = 50, r.stretchAmount = 16, r.pixelSize = 16, r.curveSmoothness = 4;
              r.startOffset = 10, r.distributionRange = 1.5, r.shadingMode = 1;
              r.shadingIntervalSize = 129, r.shadingOpacity = 80, r.transparencyFeather = 30;
            }},
        // Shading Interval Size 0.01 is 4.54 pixels, rounded.
        Row{"SlidersClampAndRound",
            "Morvane Intensity=1.5|Morvane=-0.2|Pixel Size=-3|Distribution Range=nan|"
            "Shading Interval Size=0.01|Shading=triangle-wave|Shading Opacity=2",
            [](StretchRenderRecord& r) {
              r.intensity = 100, r.stretchAmount = 0, r.pixelSize = 0.01, r.distributionRange = 0;
              r.shadingIntervalSize = 5, r.shadingMode = 2, r.shadingOpacity = 100;
            }},
        Row{"AnglesInTurnsAndTheCheckbox",
            "Curve Phase=0.25|Image Shift Phase=-1|Image Shift Phase Sync=0.49|Shading=sine-wave|"
            "Shading Interval Phase=2.5|Shading Opacity=1",
            [](StretchRenderRecord& r) {
              r.curvePhase = 5898240, r.imageShiftPhase = -23592960, r.imageShiftPhaseSync = 0;
              r.shadingMode = 1, r.shadingIntervalPhase = 58982400, r.shadingOpacity = 100;
            }},
        // 2^-20 turns are 22.5 units of 16.16 degrees; 9 is far past the last interval size.
        Row{"RoundingHalfAwayFromZeroAndSaturation",
            "Curve Phase=0x1p-20|Image Shift Phase=-0x1p-20|Image Shift Phase Sync=0.5|"
            "Shading=linear-ramp-up|Shading Interval Size=9|Shading Interval Phase=1000|"
            "Shading Opacity=1",
            [](StretchRenderRecord& r) {
              r.curvePhase = 23, r.imageShiftPhase = -23, r.shadingMode = 3;
              r.shadingIntervalSize = 256, r.shadingIntervalPhase = kMaxFixed;
              r.shadingOpacity = 100;
            }},
        Row{"NegativeSaturationAndNaNAngles",
            "Direction=left|Channels=rgb-no-alpha|Curve Phase=-1000|Image Shift Phase=nan",
            [](StretchRenderRecord& r) {
              r.direction = 1, r.channelMode = 7, r.curvePhase = kMinFixed;
            }},
        Row{"ZeroIntensityHandsTheFrameThrough", "Morvane Intensity=0|Morvane=0.25",
            [](StretchRenderRecord& r) { r.intensity = 0, r.stretchAmount = 16; }},
        Row{"MixerTakesTheSecondInputAsIntensity", "Morvane=0.1",
            [](StretchRenderRecord& r) { r.stretchAmount = 6.4; }, true}),
    [](const auto& info) { return std::string(info.param.label); });

// MLT's sliced rendering calls one instance from several threads at once, setting the same
// parameter values from each: every call must still render its own frame.
TEST(Frei0rModules, OneInstanceServesSeveralThreadsAtOnce) {
  ASSERT_TRUE(Loaded()) << dlerror();
  const Instance instance = Construct(Plugin());
  StretchRenderRecord record = morvane::DefaultRecord();
  record.direction = 1, record.stretchAmount = 3.2;
  std::array<bool, 4> same{};
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < same.size(); ++i)
    threads.emplace_back([&, i] {
      const Frame input = Painted(uint32_t(10 + i));
      const Frame expected = Dispatched(record, input);
      same[i] = true;
      for (int frame = 0; frame < 2000 && same[i]; ++frame) {
        Set(Plugin(), instance.get(), IndexOf(Plugin(), "Direction"), "left");
        Set(Plugin(), instance.get(), IndexOf(Plugin(), "Morvane"), 0.05);
        same[i] = Rendered(Plugin(), instance.get(), input) == expected;
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(same, (std::array<bool, 4>{true, true, true, true}));
}

}  // namespace
}  // namespace morvane::frei0r
