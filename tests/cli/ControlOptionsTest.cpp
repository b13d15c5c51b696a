#include "cli/ControlOptions.h"

#include <gtest/gtest.h>

#include "cli/Errors.h"

namespace morvane::cli {
namespace {

struct KebabCaseCase {
  const char* name;
  const char* expected;
};

class Kebab : public testing::TestWithParam<KebabCaseCase> {};

TEST_P(Kebab, DerivesOptionAndItemNames) {
  EXPECT_EQ(KebabCase(GetParam().name), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Kebab,
                         testing::Values(KebabCaseCase{"Morvane Intensity", "morvane-intensity"},
                                         KebabCaseCase{"Shading Channel(s)", "shading-channels"},
                                         KebabCaseCase{"Luma (no Alpha)", "luma-no-alpha"},
                                         KebabCaseCase{"RGB (no Alpha)", "rgb-no-alpha"},
                                         KebabCaseCase{"RGBA", "rgba"},
                                         KebabCaseCase{"Repeat Last", "repeat-last"},
                                         KebabCaseCase{"  Exp  Up ", "exp-up"},
                                         KebabCaseCase{"", ""}));

struct FixedCase {
  double degrees;
  int64_t expected;  // outside int32 means refused
};

class Fixed : public testing::TestWithParam<FixedCase> {};

TEST_P(Fixed, RoundsHalfAwayFromZero) {
  const auto fixed = DegreesToFixed(GetParam().degrees);
  if (GetParam().expected > INT32_MAX || GetParam().expected < INT32_MIN) {
    EXPECT_FALSE(fixed.has_value());
  } else {
    ASSERT_TRUE(fixed.has_value());
    EXPECT_EQ(*fixed, GetParam().expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, Fixed,
                         testing::Values(FixedCase{90.0, 5898240}, FixedCase{-360.0, -23592960},
                                         FixedCase{0.5 / 65536.0, 1},    // exactly half
                                         FixedCase{-0.5 / 65536.0, -1},  // exactly half
                                         FixedCase{1.5 / 65536.0, 2}, FixedCase{2.5 / 65536.0, 3},
                                         FixedCase{0.49 / 65536.0, 0},
                                         FixedCase{-32768.0, INT32_MIN},
                                         FixedCase{32768.0, int64_t{INT32_MAX} + 1}));

ControlDescription Slider() {
  ControlDescription c;
  c.id = 3;
  c.name = "Pixel Size";
  c.type = ControlType::Slider;
  c.validMin = double(0.01f);
  c.validMax = 16.0;
  c.defaultValue = 1.0;
  return c;
}

ControlDescription Percent() {
  ControlDescription c = Slider();
  c.name = "Shading Opacity";
  c.validMin = 0.0;
  c.validMax = 100.0;
  c.percent = true;
  return c;
}

ControlDescription Popup() {
  ControlDescription c;
  c.id = 22;
  c.name = "Channels";
  c.type = ControlType::Popup;
  c.items = {"Luma", "RGBA", "Luma (no Alpha)"};
  c.defaultValue = 1.0;
  return c;
}

ControlDescription Angle() {
  ControlDescription c;
  c.id = 5;
  c.name = "Curve Phase";
  c.type = ControlType::Angle;
  return c;
}

ControlDescription Checkbox() {
  ControlDescription c;
  c.id = 10;
  c.name = "Image Shift Phase Sync";
  c.type = ControlType::Checkbox;
  c.defaultValue = 1.0;
  return c;
}

struct ParseCase {
  ControlDescription (*control)();
  const char* text;
  std::vector<Keyframe> keys;  // empty: refused
  const char* messagePart = "";
};

class Parse : public testing::TestWithParam<ParseCase> {};

TEST_P(Parse, AcceptsValidValuesAndNamesTheControlWhenRefusing) {
  const ControlDescription control = GetParam().control();
  if (GetParam().keys.empty()) {
    try {
      ParseControlSetting(control, GetParam().text);
      FAIL() << "accepted " << GetParam().text;
    } catch (const UsageError& e) {
      const std::string message = e.what();
      EXPECT_NE(message.find("--" + KebabCase(control.name)), std::string::npos) << message;
      EXPECT_NE(message.find("\"" + control.name + "\""), std::string::npos) << message;
      EXPECT_NE(message.find(GetParam().messagePart), std::string::npos) << message;
    }
    return;
  }
  const ControlSetting setting = ParseControlSetting(control, GetParam().text);
  EXPECT_EQ(setting.id, control.id);
  EXPECT_EQ(setting.keys, GetParam().keys);
  EXPECT_EQ(setting.animated, std::string_view(GetParam().text).find(':') != std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Parse,
    testing::Values(
        ParseCase{Slider, "0.01", {{0, 0.01}}}, ParseCase{Slider, "16", {{0, 16.0}}},
        ParseCase{Slider, "+2.5", {{0, 2.5}}},
        ParseCase{Slider, "0.0099", {}, "from 0.01 to 16, got 0.0099"},
        ParseCase{Slider, "16.001", {}, "from 0.01 to 16"},
        ParseCase{Slider, "abc", {}, "needs a number"}, ParseCase{Slider, "1e999", {}, "number"},
        ParseCase{Slider, "nan", {}, "number"}, ParseCase{Slider, "5%", {}, "number"},
        ParseCase{Percent, "50%", {{0, 50.0}}}, ParseCase{Percent, "100", {{0, 100.0}}},
        ParseCase{Percent, "101", {}, "from 0 to 100 %"},
        ParseCase{Popup, "luma-no-alpha", {{0, 3.0}}}, ParseCase{Popup, "RGBA", {{0, 2.0}}},
        ParseCase{Popup, "red", {}, "valid items: luma, rgba, luma-no-alpha"},
        ParseCase{Popup, "", {}, "valid items"}, ParseCase{Angle, "90", {{0, 5898240.0}}},
        ParseCase{Angle, "-3.75", {{0, -245760.0}}}, ParseCase{Angle, "40000", {}, "degrees"},
        ParseCase{Angle, "east", {}, "degrees"}, ParseCase{Checkbox, "on", {{0, 1.0}}},
        ParseCase{Checkbox, "off", {{0, 0.0}}}, ParseCase{Checkbox, "yes", {}, "on or off"},
        ParseCase{Slider, "0:1,10:4.5, 20:16", {{0, 1.0}, {10, 4.5}, {20, 16.0}}},
        ParseCase{Angle, "-5:0,5:360", {{-5, 0.0}, {5, 23592960.0}}},
        ParseCase{Popup, "0:luma,12:rgba", {{0, 1.0}, {12, 2.0}}},
        ParseCase{Slider, "0:1,10:17", {}, "from 0.01 to 16, got 17"},
        ParseCase{Slider, "10:1,10:2", {}, "must increase"},
        ParseCase{Slider, "10:1,5:2", {}, "must increase"},
        ParseCase{Slider, "0:1,x:2", {}, "not FRAME:VALUE"},
        ParseCase{Slider, "0:1,", {}, "not FRAME:VALUE"}));

}  // namespace
}  // namespace morvane::cli
