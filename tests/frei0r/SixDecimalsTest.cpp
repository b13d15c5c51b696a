// Every value a user can give a control comes back unchanged from a host that keeps frei0r's
// doubles with 6 decimals (Kdenlive saves its projects so): the value as typed, the double the
// module is given for it, printed "%.6f" and read back, set, and the render record compared with
// the one the typed value gives.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frei0r/FreiControls.h"
#include "frei0r/FreiSettings.h"
#include "sdk/FixedDegrees.h"
#include "tests/support/RecordText.h"

namespace morvane::frei0r {
namespace {

// What a user can type: every step a slider shows from one end of its range to the other, every
// tenth of a degree over a turn either way, both checkbox states, every popup item.
std::vector<std::string> Typed(const FreiControl& frei) {
  const Control& control = *frei.control;
  if (control.kind == ControlKind::Popup) return frei.items;
  const bool slider = control.kind == ControlKind::Slider;
  const int decimals = slider ? control.slider.precision : control.kind == ControlKind::Angle;
  const double scale = std::pow(10.0, decimals);
  const long first = slider ? std::lround(frei.min * scale) : decimals ? -3600 : 0;
  const long last = slider ? std::lround(frei.max * scale) : decimals ? 3600 : 1;
  std::vector<std::string> texts;
  char text[32];
  for (long k = first; k <= last; ++k)
    texts.emplace_back(text, std::snprintf(text, sizeof text, "%.*f", decimals, double(k) / scale));
  return texts;
}

class SixDecimals : public ::testing::TestWithParam<int> {};

TEST_P(SixDecimals, GiveBackEveryValueAUserCanType) {
  const FreiControl& frei = FreiControls()[std::size_t(GetParam())];
  const Control& control = *frei.control;
  const std::vector<std::string> typed = Typed(frei);
  const bool popup = control.kind == ControlKind::Popup, angle = control.kind == ControlKind::Angle;
  ASSERT_GE(typed.size(), 2u);
  int lost = 0;
  for (std::size_t i = 0; i < typed.size(); ++i) {
    const double value = std::strtod(typed[i].c_str(), nullptr);
    double host = value;  // the checkbox
    if (control.kind == ControlKind::Slider) host = (value - frei.min) / (frei.max - frei.min);
    if (angle) host = value / 360.0;
    char saved[64];
    std::snprintf(saved, sizeof saved, "%.6f", host);
    FreiSettings settings;
    popup ? (void)settings.SetItem(GetParam(), typed[i])
          : settings.SetNumber(GetParam(), std::atof(saved));
    const double own = angle ? SaturatedFixedFromDegrees(value) : popup ? double(i) : value;
    StretchRenderRecord expected{};
    StoreValue(control, own, expected);
    const double got = test::FieldValue(control, settings.Record());
    if (got != test::FieldValue(control, expected) && ++lost <= 3)
      ADD_FAILURE() << control.name << " " << typed[i] << " saved as " << saved << " comes back as "
                    << got;
  }
  EXPECT_EQ(lost, 0) << "of " << typed.size() << " values";
}

INSTANTIATE_TEST_SUITE_P(EveryControl, SixDecimals, ::testing::Range(0, int(FreiControls().size())),
                         [](const auto& info) {
                           std::string name = FreiControls()[std::size_t(info.param)].control->name;
                           std::erase_if(name, [](char c) { return !std::isalnum(c); });
                           return name;
                         });

}  // namespace
}  // namespace morvane::frei0r
