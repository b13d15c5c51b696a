// The control options as the module declares them, parsed and refused.
#include <gtest/gtest.h>

#include "CliTestSupport.h"
#include "cli/ControlOptions.h"
#include "cli/Errors.h"

namespace morvane::cli::test {
namespace {

// The simulated host runs one session per process at a time, so each
// profile's controls are read once and kept.
ModuleInfo ReadInfo(HostProfile profile) {
  return OpenRenderBackend(ModulePath(), profile)->Info();
}

const ModuleInfo& Info(HostProfile profile) {
  static const ModuleInfo ae = ReadInfo(HostProfile::Ae);
  static const ModuleInfo premiere = ReadInfo(HostProfile::Premiere);
  return profile == HostProfile::Premiere ? premiere : ae;
}

const ControlDescription* Find(const ModuleInfo& info, const std::string& option) {
  for (const ControlDescription& control : info.controls) {
    if (IsValueControl(control) && "--" + KebabCase(control.name) == option) return &control;
  }
  return nullptr;
}

struct OptionCase {
  const char* option;
  const char* defaultText;
  const char* accepted;
  double hostValue;
  const char* refused;
  const char* messagePart;
};

class ModuleOption : public testing::TestWithParam<OptionCase> {};

TEST_P(ModuleOption, ParsesValidValuesAndRefusesOthersByName) {
  const OptionCase& c = GetParam();
  for (const HostProfile profile : {HostProfile::Ae, HostProfile::Premiere}) {
    const ControlDescription* control = Find(Info(profile), c.option);
    ASSERT_NE(control, nullptr) << c.option;
    EXPECT_EQ(FormatDefault(*control), c.defaultText);
    const ControlSetting setting = ParseControlSetting(*control, c.accepted);
    ASSERT_EQ(setting.keys.size(), 1u);
    EXPECT_EQ(setting.keys[0].value, c.hostValue);
    try {
      ParseControlSetting(*control, c.refused);
      ADD_FAILURE() << c.option << " accepted " << c.refused;
    } catch (const UsageError& e) {
      const std::string message = e.what();
      EXPECT_NE(message.find(std::string(c.option) + ": \"" + control->name + "\""),
                std::string::npos)
          << message;
      EXPECT_NE(message.find(c.messagePart), std::string::npos) << message;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Controls, ModuleOption,
    testing::Values(
        OptionCase{"--direction", "right", "up", 4, "sideways", "right, left, down, up"},
        OptionCase{"--channels", "luma", "rgb-no-alpha", 8, "cmyk",
                   "luma, rgba, red, green, blue, alpha, luma-no-alpha, rgb-no-alpha"},
        OptionCase{"--morvane-intensity", "100", "0", 0, "100.5", "from 0 to 100 %"},
        OptionCase{"--morvane", "1", "64", 64, "-1", "from 0 to 64,"},
        OptionCase{"--pixel-size", "1", "0.01", 0.01, "0.005", "from 0.01 to 16,"},
        OptionCase{"--stretch-curve", "linear-ramp-up", "exp-down", 6, "cubic",
                   "linear-ramp-up, linear-ramp-down, triangle-wave, sine-wave, exp-up, exp-down"},
        OptionCase{"--curve-phase", "0", "-360", -23592960, "40000", "degrees"},
        OptionCase{"--curve-smoothness", "0", "16", 16, "16.5", "from 0 to 16,"},
        OptionCase{"--stretch-start-offset", "0", "100", 100, "-0.1", "from 0 to 100 %"},
        OptionCase{"--distribution-mode", "constant", "linear-ramp-down", 3, "exp-up",
                   "constant, linear-ramp-up, linear-ramp-down"},
        OptionCase{"--distribution-range", "2", "0", 0, "2.01", "from 0 to 2,"},
        OptionCase{"--image-shift-phase", "0", "90", 5898240, "ninety", "degrees"},
        OptionCase{"--image-shift-phase-sync", "on", "off", 0, "maybe", "on or off"},
        OptionCase{"--shading", "none", "line", 6, "stripes",
                   "none, sine-wave, triangle-wave, linear-ramp-up, linear-ramp-down, line"},
        OptionCase{"--shading-interval-size", "10", "2", 2, "1.99", "from 2 to 256,"},
        OptionCase{"--shading-interval-phase", "0", "0.5", 32768, "-32769", "degrees"},
        OptionCase{"--shading-channels", "alpha", "rgb", 2, "alpha-only", "alpha, rgb"},
        OptionCase{"--shading-opacity", "0", "50%", 50, "150", "from 0 to 100 %"},
        OptionCase{"--edge-mode", "wrap", "repeat-last", 3, "clamp",
                   "wrap, mirror, repeat-last, transparent"},
        OptionCase{"--transparency-feather", "0", "100", 100, "100.01", "from 0 to 100 %"}),
    [](const testing::TestParamInfo<OptionCase>& info) {
      std::string name = info.param.option + 2;
      std::erase(name, '-');
      return name;
    });

TEST(ModuleControls, EveryDeclaredValueControlHasAnOptionAndTheLayerIsAFile) {
  const ModuleInfo& info = Info(HostProfile::Ae);
  int values = 0;
  int layers = 0;
  for (const ControlDescription& control : info.controls) {
    values += IsValueControl(control) ? 1 : 0;
    if (control.type == ControlType::Layer) {
      ++layers;
      EXPECT_EQ(KebabCase(control.name), "intensity-source");
    }
  }
  EXPECT_EQ(values, 20);
  EXPECT_EQ(layers, 1);
  EXPECT_EQ(info.name, "Morvane");
  EXPECT_EQ(info.matchName, "morvane");
  EXPECT_EQ(info.category, "Orbrenn");
}

}  // namespace
}  // namespace morvane::cli::test
