// The effect's controls as the host sees them through the simulated host: the whole list as
// accepted once (tests/params/declarations.txt), what each kind of host gets of it, what a refused
// control leaves behind, and which controls are greyed out for the modes chosen.
#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Accepted.h"
#include "tests/support/HostedSession.h"

namespace {

using hostsim::HostProfile;
using morvane::testing::HostedSession;

constexpr int32_t kHeader = 19;
constexpr int32_t kCurveGraph = 21;

// The hosts, and controls the host refuses: the header and the curve graph are then left out and
// every later control keeps its true place; any other refusal ends the set-up with the host's
// error. The first host gets every control, as accepted.
struct HostCase {
  const char* label;
  int32_t applId;
  int16_t major, minor;    // the effect-interface version the host reports
  const char* headerName;  // null: no header
  PF_ParamUIFlags headerUI;
  int curveGraph;       // its parameter type; -1: none
  int32_t refused = 0;  // the disk ID of the control whose add_param call the host refuses
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
    {"HeaderRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, kHeader},
    {"CurveGraphRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, kCurveGraph},
    {"ShadingRefused", kAE, 13, 27, "", PF_PUI_TOPIC, PF_Param_NO_DATA, 11, PF_Err_OUT_OF_MEMORY},
};

// The set bits of `value` by name, unnamed ones in hex.
std::string Bits(uint32_t value, std::initializer_list<std::pair<uint32_t, const char*>> names) {
  std::ostringstream text;
  for (const auto& [bit, name] : names)
    if (value & bit) text << (text.tellp() > 0 ? "|" : "") << name, value &= ~bit;
  if (value != 0 || text.tellp() == 0) text << (text.tellp() > 0 ? "|" : "") << std::hex << value;
  return text.str();
}

// Everything the host keeps of the control declared at `p` of `list`, and of the drawing it
// registers right after its declaration, on one line (angles in degrees).
std::string Describe(const PF_ParamDef& def, const hostsim::ParamList& list, size_t p) {
  std::ostringstream line;
  const auto& u = def.u;
  line << "id " << def.uu.id << " \"" << def.name << "\" flags "
       << Bits(def.flags, {{PF_ParamFlag_CANNOT_TIME_VARY, "CANNOT_TIME_VARY"},
                           {PF_ParamFlag_CANNOT_INTERP, "CANNOT_INTERP"},
                           {PF_ParamFlag_COLLAPSE_TWIRLY, "COLLAPSE_TWIRLY"},
                           {PF_ParamFlag_SUPERVISE, "SUPERVISE"}})
       << " ui " << Bits(def.ui_flags, {{PF_PUI_TOPIC, "TOPIC"}, {PF_PUI_CONTROL, "CONTROL"}});
  if (def.param_type == PF_Param_POPUP)
    line << " popup " << u.pd.value << " default " << u.pd.dephault << " of " << u.pd.num_choices
         << " \"" << u.pd.u.namesptr << '"';
  else if (def.param_type == PF_Param_FLOAT_SLIDER)
    line << " slider " << u.fs_d.value << " default " << u.fs_d.dephault << " valid "
         << u.fs_d.valid_min << ".." << u.fs_d.valid_max << " slider " << u.fs_d.slider_min << ".."
         << u.fs_d.slider_max << " precision " << u.fs_d.precision << " display "
         << Bits(u.fs_d.display_flags, {{PF_ValueDisplayFlag_PERCENT, "PERCENT"}}) << " tolerance "
         << u.fs_d.curve_tolerance;
  else if (def.param_type == PF_Param_ANGLE)
    line << " angle " << u.ad.value / 65536.0 << " default " << u.ad.dephault / 65536.0;
  else if (def.param_type == PF_Param_CHECKBOX)
    line << " checkbox " << u.bd.value << " default " << int(u.bd.dephault);
  else if (def.param_type == PF_Param_LAYER)
    line << " layer default " << u.ld.dephault;
  else
    line << (def.param_type == PF_Param_NO_DATA ? " no data"
                                                : " type " + std::to_string(def.param_type));
  for (const auto& [index, ui] : list.customUIs)
    if (size_t(index) == p)
      line << ", drawn " << def.ui_width << "x" << def.ui_height << " events " << ui.events
           << " comp " << ui.comp_ui_width << "x" << ui.comp_ui_height << " layer "
           << ui.layer_ui_width << "x" << ui.layer_ui_height << " preview " << ui.preview_ui_width
           << "x" << ui.preview_ui_height;
  return line.str() + "\n";
}

// The accepted list, one declaration a line.
std::vector<std::string> AcceptedLines() {
  std::vector<std::string> lines;
  std::istringstream text(morvane::testing::AcceptedText(MORVANE_DECLARATIONS));
  for (std::string line; std::getline(text, line);)
    lines.push_back(line);
  return lines;
}

class ControlList : public testing::TestWithParam<HostCase> {};

TEST_P(ControlList, IsTheAcceptedListAsThisHostGetsIt) {
  const HostCase& c = GetParam();
  std::vector<std::string> accepted = AcceptedLines();
  const auto id = [&accepted](size_t i) { return std::stoi(accepted[i].substr(3)); };
  size_t refused = 0;  // the add_param call refused: none when past the list
  while (refused < accepted.size() && id(refused) != c.refused)
    ++refused;
  hostsim::Host host({c.label, c.applId, c.major, c.minor, "Host", "1.0"});
  host.Load(MORVANE_MODULE_PATH, MORVANE_PIPL_PATH);
  ASSERT_EQ(host.Register(), A_Err_NONE);
  ASSERT_EQ(host.GlobalSetup().err, PF_Err_NONE);
  host.Faults().Fail(hostsim::Callback("inter", "add_param"), PF_Err_OUT_OF_MEMORY,
                     static_cast<int>(refused), 1);
  EXPECT_EQ(host.ParamsSetup().err, c.err);
  const hostsim::ParamList list = host.Params();
  // Each declaration as the first host gets it: the header and the curve graph are checked here
  // for what depends on the host, then described as that host has them.
  std::string seen;
  for (size_t p = 1; p < list.params.size(); ++p) {
    PF_ParamDef def = list.params[p];
    if (def.uu.id == kHeader) {
      EXPECT_STREQ(def.name, c.headerName);
      EXPECT_EQ(def.ui_flags, c.headerUI);
      def.name[0] = '\0', def.ui_flags = kHosts[0].headerUI;
    }
    if (def.uu.id == kCurveGraph) {
      EXPECT_EQ(def.param_type, c.curveGraph);
      EXPECT_EQ(def.param_type == PF_Param_ARBITRARY_DATA ? def.u.arb_d.id : kCurveGraph,
                kCurveGraph);
      def.param_type = kHosts[0].curveGraph;
    }
    seen += Describe(def, list, p);
  }
  if (c.label == kHosts[0].label) morvane::testing::ExpectAccepted(seen, MORVANE_DECLARATIONS);
  accepted = AcceptedLines();  // as just written, when accepting
  std::string expected;
  for (size_t i = 0; i < accepted.size() && (c.err == PF_Err_NONE || i < refused); ++i)
    if ((id(i) != kHeader || c.headerName) && (id(i) != kCurveGraph || c.curveGraph >= 0) &&
        i != refused)
      expected += accepted[i] + "\n";
  EXPECT_EQ(seen, expected);
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
