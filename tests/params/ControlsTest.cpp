// The effect's controls as the host sees them through the simulated host: one table of the whole
// list, what each kind of host gets of it, what a refused control leaves behind, and which
// controls are greyed out for the modes chosen.
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "params/CustomControl.h"
#include "params/HeaderBanner.h"
#include "tests/support/HostedSession.h"

namespace {

using hostsim::HostProfile;
using morvane::testing::HostedSession;

constexpr PF_ParamFlags kTwirl = PF_ParamFlag_COLLAPSE_TWIRLY;
constexpr PF_ValueDisplayFlags kPercent = PF_ValueDisplayFlag_PERCENT;
constexpr int32_t kHeader = 19;
constexpr int32_t kCurveGraph = 21;

// Every control in the order of a host that gets them all; the header's name and UI flags and the
// curve graph's type depend on the host (kHosts). Popups default to their first item; sliders give
// valid and slider range alike.
struct Control {
  int32_t id;  // disk ID: saved projects store values under it
  const char* name;
  PF_ParamType type;
  PF_ParamFlags flags;
  double dephault;  // angles in degrees
  const char* items = nullptr;
  float min = 0, max = 0;
  A_short precision = 0;
  PF_ValueDisplayFlags display = 0;
};

const Control kControls[] = {
    {kHeader, "", PF_Param_NO_DATA, PF_ParamFlag_SUPERVISE | PF_ParamFlag_CANNOT_TIME_VARY, 0},
    {1, "Direction", PF_Param_POPUP, 0, 1, "Right|Left|Down|Up"},
    {18, "Intensity Source", PF_Param_LAYER, 0, PF_LayerDefault_NONE},
    {22, "Channels", PF_Param_POPUP, 0, 1,
     "Luma|RGBA|Red|Green|Blue|Alpha|Luma (no Alpha)|RGB (no Alpha)"},
    {23, "Morvane Intensity", PF_Param_FLOAT_SLIDER, kTwirl, 100, nullptr, 0, 100, 1, kPercent},
    {2, "Morvane", PF_Param_FLOAT_SLIDER, kTwirl, 1, nullptr, 0, 64, 3},
    {3, "Pixel Size", PF_Param_FLOAT_SLIDER, kTwirl, 1, nullptr, 0.01f, 16, 3},
    {4, "Stretch Curve", PF_Param_POPUP, 0, 1,
     "Linear Ramp Up|Linear Ramp Down|Triangle Wave|Sine Wave|Exp Up|Exp Down"},
    {5, "Curve Phase", PF_Param_ANGLE, kTwirl, 0},
    {20, "Curve Smoothness", PF_Param_FLOAT_SLIDER, 0, 0, nullptr, 0, 16, 3},
    {kCurveGraph, "Curve Graph", PF_Param_NO_DATA, PF_ParamFlag_CANNOT_TIME_VARY, 0},
    {6, "Stretch Start Offset", PF_Param_FLOAT_SLIDER, kTwirl, 0, nullptr, 0, 100, 1, kPercent},
    {7, "Distribution Mode", PF_Param_POPUP, 0, 1, "Constant|Linear Ramp Up|Linear Ramp Down"},
    {8, "Distribution Range", PF_Param_FLOAT_SLIDER, kTwirl, 2, nullptr, 0, 2, 3},
    {9, "Image Shift Phase", PF_Param_ANGLE, kTwirl, 0},
    {10, "Image Shift Phase Sync", PF_Param_CHECKBOX, PF_ParamFlag_CANNOT_INTERP, 1},
    {11, "Shading", PF_Param_POPUP, 0, 1,
     "None|Sine Wave|Triangle Wave|Linear Ramp Up|Linear Ramp Down|Line"},
    {12, "Shading Interval Size", PF_Param_FLOAT_SLIDER, kTwirl, 10, nullptr, 2, 256, 0},
    {13, "Shading Interval Phase", PF_Param_ANGLE, kTwirl, 0},
    {14, "Shading Channel(s)", PF_Param_POPUP, 0, 1, "Alpha|RGB"},
    {15, "Shading Opacity", PF_Param_FLOAT_SLIDER, kTwirl, 0, nullptr, 0, 100, 1, kPercent},
    {16, "Edge Mode", PF_Param_POPUP, 0, 1, "Wrap|Mirror|Repeat Last|Transparent"},
    {17, "Transparency Feather", PF_Param_FLOAT_SLIDER, kTwirl, 0, nullptr, 0, 100, 1, kPercent},
};

// The hosts, and controls the host refuses: the header and the curve graph are then left out and
// every later control keeps its true place; any other refusal ends the set-up with the host's
// error.
struct HostCase {
  const char* label;
  int32_t applId;
  int16_t major, minor;    // the effect-interface version the host reports
  const char* headerName;  // null: no header
  PF_ParamUIFlags headerUI;
  int curveGraph;       // its parameter type; -1: none
  size_t refused = 99;  // the add_param call the host refuses (an index into kControls)
  PF_Err err = PF_Err_NONE;
  friend void PrintTo(const HostCase& c, std::ostream* os) { *os << c.label; }
};

constexpr int32_t kAE = hostsim::kAfterEffectsApplId;
constexpr int32_t kPr = hostsim::kPremiereApplId;
const HostCase kHosts[] = {
    {"AfterEffects13_27", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA},
    {"AfterEffects13_24", kAE, 13, 24, "", PF_PUI_TOPIC, PF_Param_NO_DATA},
    {"AfterEffects13_23", kAE, 13, 23, "About", PF_PUI_CONTROL, PF_Param_NO_DATA},
    {"AfterEffects13_22", kAE, 13, 22, "", PF_PUI_TOPIC, PF_Param_NO_DATA},
    {"AfterEffects13_9", kAE, 13, 9, "", PF_PUI_TOPIC, PF_Param_NO_DATA},
    {"AfterEffects14_0", kAE, 14, 0, "", PF_PUI_TOPIC, PF_Param_NO_DATA},
    {"AfterEffects13_8", kAE, 13, 8, nullptr, 0, -1},
    {"Premiere13_27", kPr, 13, 27, nullptr, 0, PF_Param_ARBITRARY_DATA},
    {"Premiere13_8", kPr, 13, 8, nullptr, 0, PF_Param_ARBITRARY_DATA},
    {"HeaderRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, 0},
    {"CurveGraphRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, 10},
    {"ShadingRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, 16, PF_Err_OUT_OF_MEMORY},
};

// The value a new instance starts with and the default a reset returns to (angles in degrees).
std::pair<double, double> ValueAndDefault(const PF_ParamDef& def) {
  const auto& u = def.u;
  using P = std::pair<double, double>;
  return def.param_type == PF_Param_POPUP          ? P{u.pd.value, u.pd.dephault}
         : def.param_type == PF_Param_FLOAT_SLIDER ? P{u.fs_d.value, u.fs_d.dephault}
         : def.param_type == PF_Param_ANGLE    ? P{u.ad.value / 65536.0, u.ad.dephault / 65536.0}
         : def.param_type == PF_Param_CHECKBOX ? P{u.bd.value, u.bd.dephault}
                                               : P{u.ld.dephault, u.ld.dephault};
}

// The drawn controls register their events right after their declaration, sized as they draw:
// the curve graph in every panel, the header in its title row only.
void ExpectCustomUIs(const hostsim::ParamList& list) {
  std::vector<int32_t> drawn, registered;
  for (const PF_ParamDef& def : list.params) {
    if (def.uu.id == kHeader || def.uu.id == kCurveGraph) drawn.push_back(def.uu.id);
  }
  const morvane::BgraPicture banner = morvane::HeaderBannerPicture();
  const morvane::CustomControl graph = morvane::CurveGraphControl();
  for (const auto& [index, i] : list.customUIs) {
    const PF_ParamDef& def = list.params.at(static_cast<size_t>(index));
    const bool isGraph = def.uu.id == kCurveGraph;
    const A_long w = isGraph ? graph.width : banner.width,
                 h = isGraph ? graph.height : banner.height;
    const A_long pw = isGraph ? w : 0, ph = isGraph ? h : 0;
    registered.push_back(def.uu.id);
    EXPECT_TRUE(i.events & PF_CustomEFlag_EFFECT) << def.uu.id;
    EXPECT_EQ(std::vector<A_long>({def.ui_width, def.ui_height, i.comp_ui_width, i.comp_ui_height,
                                   i.layer_ui_width, i.layer_ui_height, i.preview_ui_width,
                                   i.preview_ui_height}),
              std::vector<A_long>({w, h, pw, ph, pw, ph, pw, ph}));
  }
  EXPECT_EQ(registered, drawn);
}

class ControlList : public testing::TestWithParam<HostCase> {};

TEST_P(ControlList, IsTheTableAsThisHostGetsIt) {
  const HostCase& c = GetParam();
  hostsim::Host host({c.label, c.applId, c.major, c.minor, "Host", "1.0"});
  host.Load(MORVANE_MODULE_PATH, MORVANE_PIPL_PATH);
  ASSERT_EQ(host.Register(), A_Err_NONE);
  ASSERT_EQ(host.GlobalSetup().err, PF_Err_NONE);
  host.Faults().Fail(hostsim::Callback("inter", "add_param"), PF_Err_OUT_OF_MEMORY,
                     static_cast<int>(c.refused), 1);
  EXPECT_EQ(host.ParamsSetup().err, c.err);
  const hostsim::ParamList list = host.Params();
  std::vector<const Control*> expected;
  for (size_t i = 0; i < std::size(kControls) && (c.err == PF_Err_NONE || i < c.refused); ++i) {
    const int32_t id = kControls[i].id;
    if ((id != kHeader || c.headerName) && (id != kCurveGraph || c.curveGraph >= 0) &&
        i != c.refused)
      expected.push_back(&kControls[i]);
  }
  ASSERT_EQ(list.params.size(), expected.size() + 1);
  for (size_t i = 0; i < expected.size(); ++i) {
    const Control& e = *expected[i];
    const PF_ParamDef& def = list.params[i + 1];
    SCOPED_TRACE(e.name);
    EXPECT_EQ(def.uu.id, e.id);
    EXPECT_STREQ(def.name, e.id == kHeader ? c.headerName : e.name);
    EXPECT_EQ(def.param_type, e.id == kCurveGraph ? c.curveGraph : e.type);
    EXPECT_EQ(def.flags, e.flags);
    EXPECT_EQ(def.ui_flags, e.id == kHeader       ? c.headerUI
                            : e.id == kCurveGraph ? PF_PUI_CONTROL
                                                  : 0);
    EXPECT_EQ(ValueAndDefault(def), std::make_pair(e.dephault, e.dephault));
    EXPECT_STREQ(def.param_type == PF_Param_POPUP ? def.u.pd.u.namesptr : nullptr, e.items);
    EXPECT_EQ(def.param_type == PF_Param_ARBITRARY_DATA ? def.u.arb_d.id : e.id, e.id);
    if (def.param_type != PF_Param_FLOAT_SLIDER) continue;
    const PF_FloatSliderDef& s = def.u.fs_d;
    EXPECT_EQ(std::make_pair(s.valid_min, s.valid_max), std::make_pair(e.min, e.max));
    EXPECT_EQ(std::make_pair(s.slider_min, s.slider_max), std::make_pair(e.min, e.max));
    EXPECT_EQ(std::make_pair(s.precision, s.display_flags), std::make_pair(e.precision, e.display));
    EXPECT_EQ(s.curve_tolerance, 0.05f);  // the same for every slider
  }
  ExpectCustomUIs(list);
  if (c.err != PF_Err_NONE) return;
  // Later commands find every control where this host has it (the host checks each update).
  hostsim::EffectInstance& fx = host.NewInstance();
  ASSERT_EQ(host.SequenceSetup(fx).err, PF_Err_NONE);
  EXPECT_EQ(host.UpdateParamsUI(fx).err, PF_Err_NONE);
  EXPECT_EQ(host.Params().uiUpdates.size(), 5u);
  EXPECT_EQ(host.SequenceSetdown(fx).err, PF_Err_NONE);
  // Also: the count reported equals the list, and the host accepts the list.
  EXPECT_TRUE(host.Report().Clean()) << host.Report().Describe();
}

INSTANTIATE_TEST_SUITE_P(Hosts, ControlList, testing::ValuesIn(kHosts),
                         [](const auto& info) { return std::string(info.param.label); });

// Greying out: the four shading settings while "Shading" is "None", "Transparency Feather" while
// "Edge Mode" is not "Transparent". The host is called only for controls whose shown state is not
// the wanted one (the shading group goes by its first control); the first failing call ends the
// command with its error. Each step runs on the state the steps before it left.
const std::map<char, const char*> kGreyed{{'i', "Shading Interval Size"},
                                          {'p', "Shading Interval Phase"},
                                          {'c', "Shading Channel(s)"},
                                          {'o', "Shading Opacity"},
                                          {'f', "Transparency Feather"}};

class GreyingOut : public HostedSession {
 protected:
  void SetUp() override {
    Start(HostProfile::AfterEffects());
    // A host may build its list again; positions then start afresh.
    ASSERT_EQ(host_->ParamsSetup().err, PF_Err_NONE);
  }
  void TearDown() override { Finish(); }
};

TEST_F(GreyingOut, UpdatesOnlyWhatChangesAndStopsAtTheFirstFailure) {
  struct Step {
    const char *shading, *edgeMode;
    const char* updates;  // the updates the host took, by kGreyed: '-' greyed out, '+' enabled
    int failing = -1;     // the update call that fails with `err`; -2: no parameter utility suite
    PF_Err err = PF_Err_NONE;
    PF_ParamUIFlags shownToo = 0;  // other UI flags the host shows: only "disabled" alone counts
  };
  const Step steps[] = {{"None", "Wrap", "i-p-c-o-f-"},
                        {"None", "Wrap", ""},
                        {"Sine Wave", "Wrap", "i+p+c+o+"},
                        {"Triangle Wave", "Transparent", "f+"},
                        {"Triangle Wave", "Mirror", "f-"},
                        {"Triangle Wave", "Repeat Last", ""},
                        {"None", "Wrap", "i-p-c-o-"},
                        {"Sine Wave", "Transparent", "i+", 1, PF_Err_OUT_OF_MEMORY},
                        {"Sine Wave", "Transparent", "", 0, PF_Err_INVALID_INDEX},
                        {"None", "Wrap", "", -2, PF_Err_BAD_CALLBACK_PARAM},
                        {"None", "Wrap", "i-p-c-o-"},
                        {"None", "Wrap", "i-p-c-o-f-", -1, PF_Err_NONE, PF_PUI_ECW_SEPARATOR}};
  const std::string update = hostsim::SuiteFunction(kPFParamUtilsSuite, 3, "PF_UpdateParamUI");
  for (size_t i = 0; i < std::size(steps); ++i) {
    const Step& step = steps[i];
    SCOPED_TRACE(i);
    host_->SetPopup(*instance_, "Shading", step.shading);
    host_->SetPopup(*instance_, "Edge Mode", step.edgeMode);
    host_->Faults().Clear();
    if (step.failing >= 0) host_->Faults().Fail(update, step.err, step.failing, 1);
    if (step.failing == -2) host_->Faults().WithholdSuite(kPFParamUtilsSuite, 3);
    host_->Suites().ResetCounts();
    host_->Calls().Clear();
    const size_t before = host_->Params().uiUpdates.size();
    hostsim::CommandResult result;
    if (step.shownToo == 0) {  // both commands are answered alike
      result = i % 2 == 0 ? host_->UpdateParamsUI(*instance_)
                          : host_->UserChangedParam(*instance_, "Shading");
    } else {  // the parameter array as the host shows it, with the other flags added
      const std::vector<PF_ParamDef> declared = host_->Params().params;
      std::vector<PF_ParamDef> defs{declared[0]};
      std::vector<PF_ParamDef*> array;
      for (size_t p = 1; p < declared.size(); ++p) {
        defs.push_back(host_->ParamAt(*instance_, declared[p].uu.id, 0));
        defs.back().ui_flags |= step.shownToo;
      }
      for (PF_ParamDef& def : defs)
        array.push_back(&def);
      result = host_->Command(PF_Cmd_UPDATE_PARAMS_UI, instance_, array.data());
    }
    EXPECT_EQ(result.err, step.err);
    EXPECT_FALSE(result.ShowsMessage());
    std::string seen;
    const std::vector<hostsim::ParamList::UiUpdate> updates = host_->Params().uiUpdates;
    for (size_t u = before; u < updates.size(); ++u) {
      const PF_ParamDef& def = updates[u].def;
      for (const auto& [letter, name] : kGreyed) {
        if (std::string(def.name) == name) seen += letter;
      }
      EXPECT_EQ(updates[u].index, host_->PositionOf(*instance_, def.name));
      seen += def.ui_flags == PF_PUI_DISABLED ? '-' : def.ui_flags == 0 ? '+' : '?';
    }
    EXPECT_EQ(seen, step.updates);
    const int calls = host_->Calls().Count(update);
    EXPECT_EQ(calls, static_cast<int>(seen.size() / 2) + (step.failing >= 0 ? 1 : 0));
    EXPECT_EQ(host_->Suites().Acquisitions(kPFParamUtilsSuite, 3), calls > 0 ? 1 : 0);
    EXPECT_EQ(host_->Calls().Count(hostsim::Callback("inter", "checkout_param")), 0);  // the array
  }
  host_->Faults().Clear();
}

}  // namespace
