#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "tests/params/FakeHost.h"

namespace morvane {
namespace {

using testing::FakeHost;

constexpr A_long kAfterEffects = 0x46585443;  // 'FXTC'
constexpr A_long kPremiere = 0x50724D72;      // 'PrMr'

// The full declaration order of a recent After Effects host.
const std::vector<ParamId> kFullOrder{ParamId::Header,
                                      ParamId::Direction,
                                      ParamId::IntensitySource,
                                      ParamId::Channels,
                                      ParamId::MorvaneIntensity,
                                      ParamId::Morvane,
                                      ParamId::PixelSize,
                                      ParamId::StretchCurve,
                                      ParamId::CurvePhase,
                                      ParamId::CurveSmoothness,
                                      ParamId::CurveGraph,
                                      ParamId::StretchStartOffset,
                                      ParamId::DistributionMode,
                                      ParamId::DistributionRange,
                                      ParamId::ImageShiftPhase,
                                      ParamId::ImageShiftPhaseSync,
                                      ParamId::Shading,
                                      ParamId::ShadingIntervalSize,
                                      ParamId::ShadingIntervalPhase,
                                      ParamId::ShadingChannels,
                                      ParamId::ShadingOpacity,
                                      ParamId::EdgeMode,
                                      ParamId::TransparencyFeather};

std::vector<ParamId> OrderWithout(std::set<ParamId> missing) {
  std::vector<ParamId> order;
  for (ParamId id : kFullOrder) {
    if (!missing.contains(id)) order.push_back(id);
  }
  return order;
}

struct Profile {
  const char* label;
  A_long applId;
  A_short major;
  A_short minor;
  A_long numParams;
  bool header;
  bool curveGraph;
  const char* headerName;
  PF_ParamUIFlags headerUIFlags;
};

class ParamsSetupProfiles : public ::testing::TestWithParam<Profile> {};

TEST_P(ParamsSetupProfiles, DeclaresTheHostsListAndMatchingPositions) {
  const Profile& profile = GetParam();
  FakeHost host;
  host.SetHost(profile.applId, profile.major, profile.minor);
  ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);

  EXPECT_EQ(host.out_data.num_params, profile.numParams);
  ASSERT_EQ(static_cast<A_long>(host.added.size()), profile.numParams - 1);
  EXPECT_EQ(static_cast<A_long>(ModuleParamPositionTable().Size()), profile.numParams - 1);

  std::set<ParamId> missing;
  if (!profile.header) missing.insert(ParamId::Header);
  if (!profile.curveGraph) missing.insert(ParamId::CurveGraph);
  const std::vector<ParamId> order = OrderWithout(missing);
  std::set<A_long> diskIds;
  for (std::size_t i = 0; i < order.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(host.added[i].uu.id, ToInt(order[i]));
    EXPECT_EQ(ParamPosition(order[i]), static_cast<int32_t>(i + 1));
    diskIds.insert(host.added[i].uu.id);
  }
  EXPECT_EQ(diskIds.size(), host.added.size()) << "disk IDs must be unique";
  for (ParamId id : missing)
    EXPECT_EQ(ParamPosition(id), 0);

  std::size_t expectedUI = 0;
  if (profile.header) {
    const PF_ParamDef& header = host.added.front();
    EXPECT_EQ(host.addedNames.front(), profile.headerName);
    EXPECT_EQ(header.ui_flags, profile.headerUIFlags);
    EXPECT_EQ(header.param_type, PF_Param_NO_DATA);
    EXPECT_EQ(header.ui_width, 320);
    EXPECT_EQ(header.ui_height, 17);
    EXPECT_EQ(header.flags, PF_ParamFlag_SUPERVISE | PF_ParamFlag_CANNOT_TIME_VARY);
    ASSERT_GE(host.registeredUI.size(), 1u);
    const PF_CustomUIInfo& ui = host.registeredUI[0];
    EXPECT_EQ(ui.events, 0xFF);
    EXPECT_EQ(ui.comp_ui_width + ui.comp_ui_height + ui.layer_ui_width + ui.layer_ui_height +
                  ui.preview_ui_width + ui.preview_ui_height,
              0);
    EXPECT_EQ(ui.comp_ui_alignment | ui.layer_ui_alignment | ui.preview_ui_alignment, 0);
    ++expectedUI;
  }
  if (profile.curveGraph) {
    const std::size_t at = static_cast<std::size_t>(ParamPosition(ParamId::CurveGraph) - 1);
    const PF_ParamDef& graph = host.added.at(at);
    EXPECT_EQ(host.addedNames.at(at), "Curve Graph");
    EXPECT_EQ(graph.ui_flags, PF_PUI_CONTROL);
    EXPECT_EQ(graph.ui_width, 50);
    EXPECT_EQ(graph.ui_height, 50);
    EXPECT_EQ(graph.flags, PF_ParamFlag_CANNOT_TIME_VARY);
    if (profile.applId == kPremiere) {
      EXPECT_EQ(graph.param_type, PF_Param_ARBITRARY_DATA);
      EXPECT_EQ(graph.u.arb_d.id, 21);
      EXPECT_EQ(graph.u.arb_d.dephault, nullptr);
      EXPECT_EQ(graph.u.arb_d.value, nullptr);
      EXPECT_EQ(graph.u.arb_d.refconPV, nullptr);
    } else {
      EXPECT_EQ(graph.param_type, PF_Param_NO_DATA);
    }
    ASSERT_GE(host.registeredUI.size(), expectedUI + 1);
    const PF_CustomUIInfo& ui = host.registeredUI[expectedUI];
    EXPECT_EQ(ui.events, PF_CustomEFlag_EFFECT | PF_CustomEFlag_PREVIEW);
    for (A_long size : {ui.comp_ui_width, ui.comp_ui_height, ui.layer_ui_width, ui.layer_ui_height,
                        ui.preview_ui_width, ui.preview_ui_height}) {
      EXPECT_EQ(size, 50);
    }
    EXPECT_EQ(ui.comp_ui_alignment, PF_UIAlignment_TOP);
    EXPECT_EQ(ui.layer_ui_alignment, PF_UIAlignment_TOP);
    EXPECT_EQ(ui.preview_ui_alignment, PF_UIAlignment_NONE);
    ++expectedUI;
  }
  EXPECT_EQ(host.registeredUI.size(), expectedUI);
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, ParamsSetupProfiles,
    ::testing::Values(Profile{"AE_13_27", kAfterEffects, 13, 27, 24, true, true, "", PF_PUI_TOPIC},
                      Profile{"Premiere_13_27", kPremiere, 13, 27, 23, false, true, "", 0},
                      Profile{"Premiere_13_8", kPremiere, 13, 8, 23, false, true, "", 0},
                      Profile{"AE_13_8", kAfterEffects, 13, 8, 22, false, false, "", 0},
                      Profile{"AE_13_9", kAfterEffects, 13, 9, 24, true, true, "", PF_PUI_TOPIC},
                      Profile{"AE_14_0", kAfterEffects, 14, 0, 24, true, true, "", PF_PUI_TOPIC},
                      Profile{"AE_13_22", kAfterEffects, 13, 22, 24, true, true, "", PF_PUI_TOPIC},
                      Profile{"AE_13_23", kAfterEffects, 13, 23, 24, true, true, "About",
                              PF_PUI_CONTROL},
                      Profile{"AE_13_24", kAfterEffects, 13, 24, 24, true, true, "", PF_PUI_TOPIC}),
    [](const ::testing::TestParamInfo<Profile>& info) { return std::string(info.param.label); });

// What the host must receive for each ordinary control.
struct SliderExpectation {
  ParamId id;
  const char* name;
  float minimum;
  float maximum;
  float dephault;
  A_short precision;
  PF_ValueDisplayFlags display;
  PF_ParamFlags flags;
};

TEST(ParamsSetup, FloatSlidersAsDeclared) {
  const SliderExpectation expectations[] = {
      {ParamId::MorvaneIntensity, "Morvane Intensity", 0, 100, 100, 1, 1, 32},
      {ParamId::Morvane, "Morvane", 0, 64, 1, 3, 0, 32},
      {ParamId::PixelSize, "Pixel Size", 0.01f, 16, 1, 3, 0, 32},
      {ParamId::CurveSmoothness, "Curve Smoothness", 0, 16, 0, 3, 0, 0},
      {ParamId::StretchStartOffset, "Stretch Start Offset", 0, 100, 0, 1, 1, 32},
      {ParamId::DistributionRange, "Distribution Range", 0, 2, 2, 3, 0, 32},
      {ParamId::ShadingIntervalSize, "Shading Interval Size", 2, 256, 10, 0, 0, 32},
      {ParamId::ShadingOpacity, "Shading Opacity", 0, 100, 0, 1, 1, 32},
      {ParamId::TransparencyFeather, "Transparency Feather", 0, 100, 0, 1, 1, 32},
  };
  FakeHost host;
  ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
  for (const SliderExpectation& e : expectations) {
    SCOPED_TRACE(e.name);
    const std::size_t at = static_cast<std::size_t>(ParamPosition(e.id) - 1);
    const PF_ParamDef& def = host.added.at(at);
    const PF_FloatSliderDef& s = def.u.fs_d;
    EXPECT_EQ(host.addedNames.at(at), e.name);
    EXPECT_EQ(def.param_type, PF_Param_FLOAT_SLIDER);
    EXPECT_EQ(def.flags, e.flags);
    EXPECT_EQ(def.ui_flags, 0);
    EXPECT_EQ(s.valid_min, e.minimum);
    EXPECT_EQ(s.slider_min, e.minimum);
    EXPECT_EQ(s.valid_max, e.maximum);
    EXPECT_EQ(s.slider_max, e.maximum);
    EXPECT_EQ(s.dephault, e.dephault);
    EXPECT_EQ(s.value, static_cast<double>(e.dephault));
    EXPECT_EQ(s.precision, e.precision);
    EXPECT_EQ(s.display_flags, e.display);
    EXPECT_EQ(s.fs_flags, 0u);
    EXPECT_EQ(s.curve_tolerance, 0.05f);
  }
}

TEST(ParamsSetup, PopupsAnglesCheckboxAndLayerAsDeclared) {
  struct PopupExpectation {
    ParamId id;
    const char* name;
    const char* items;
    A_short choices;
  };
  const PopupExpectation popups[] = {
      {ParamId::Direction, "Direction", "Right|Left|Down|Up", 4},
      {ParamId::Channels, "Channels",
       "Luma|RGBA|Red|Green|Blue|Alpha|Luma (no Alpha)|RGB (no Alpha)", 8},
      {ParamId::StretchCurve, "Stretch Curve",
       "Linear Ramp Up|Linear Ramp Down|Triangle Wave|Sine Wave|Exp Up|Exp Down", 6},
      {ParamId::DistributionMode, "Distribution Mode", "Constant|Linear Ramp Up|Linear Ramp Down",
       3},
      {ParamId::Shading, "Shading",
       "None|Sine Wave|Triangle Wave|Linear Ramp Up|Linear Ramp Down|Line", 6},
      {ParamId::ShadingChannels, "Shading Channel(s)", "Alpha|RGB", 2},
      {ParamId::EdgeMode, "Edge Mode", "Wrap|Mirror|Repeat Last|Transparent", 4},
  };
  FakeHost host;
  ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
  auto definition = [&](ParamId id) -> const PF_ParamDef& {
    return host.added.at(static_cast<std::size_t>(ParamPosition(id) - 1));
  };
  for (const PopupExpectation& e : popups) {
    SCOPED_TRACE(e.name);
    const PF_ParamDef& def = definition(e.id);
    EXPECT_EQ(std::string(def.name), e.name);
    EXPECT_EQ(def.param_type, PF_Param_POPUP);
    EXPECT_EQ(def.u.pd.num_choices, e.choices);
    EXPECT_EQ(def.u.pd.value, 1);
    EXPECT_EQ(def.u.pd.dephault, 1);
    EXPECT_STREQ(def.u.pd.u.namesptr, e.items);
    EXPECT_EQ(def.flags, 0);
  }
  for (ParamId id :
       {ParamId::CurvePhase, ParamId::ImageShiftPhase, ParamId::ShadingIntervalPhase}) {
    const PF_ParamDef& def = definition(id);
    EXPECT_EQ(def.param_type, PF_Param_ANGLE);
    EXPECT_EQ(def.u.ad.value, 0);
    EXPECT_EQ(def.u.ad.dephault, 0);
    EXPECT_EQ(def.flags, PF_ParamFlag_COLLAPSE_TWIRLY);
  }
  const PF_ParamDef& sync = definition(ParamId::ImageShiftPhaseSync);
  EXPECT_EQ(sync.param_type, PF_Param_CHECKBOX);
  EXPECT_EQ(sync.u.bd.value, 1);
  EXPECT_EQ(sync.u.bd.dephault, 1);
  EXPECT_STREQ(sync.u.bd.u.nameptr, "");
  EXPECT_EQ(sync.flags, PF_ParamFlag_CANNOT_INTERP);
  const PF_ParamDef& layer = definition(ParamId::IntensitySource);
  EXPECT_EQ(layer.param_type, PF_Param_LAYER);
  EXPECT_STREQ(layer.name, "Intensity Source");
  EXPECT_EQ(layer.u.ld.dephault, PF_LayerDefault_NONE);
  EXPECT_EQ(layer.flags, 0);
}

TEST(ParamsSetup, RefusedOrdinaryControlEndsTheSetUp) {
  FakeHost host;
  host.refuseAdd[ToInt(ParamId::Shading)] = PF_Err_OUT_OF_MEMORY;
  host.out_data.num_params = -1;
  EXPECT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.out_data.num_params, -1);
  ASSERT_FALSE(host.added.empty());
  EXPECT_EQ(host.added.back().uu.id, ToInt(ParamId::ImageShiftPhaseSync));
  EXPECT_EQ(ParamPosition(ParamId::Shading), 0);
}

struct RefusedGatedControl {
  const char* label;
  ParamId refused;
  std::size_t uiRegistrations;
};

class GatedControlRefusal : public ::testing::TestWithParam<RefusedGatedControl> {};

TEST_P(GatedControlRefusal, TakesNoPositionAndLaterControlsKeepTheirTruePlaces) {
  FakeHost host;
  host.refuseAdd[ToInt(GetParam().refused)] = PF_Err_INTERNAL_STRUCT_DAMAGED;
  ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
  EXPECT_EQ(host.out_data.num_params, 23);
  EXPECT_EQ(ParamPosition(GetParam().refused), 0);
  EXPECT_EQ(host.registeredUI.size(), GetParam().uiRegistrations);
  for (std::size_t i = 0; i < host.added.size(); ++i) {
    EXPECT_EQ(ParamPosition(static_cast<ParamId>(host.added[i].uu.id)),
              static_cast<int32_t>(i + 1));
  }
}

INSTANTIATE_TEST_SUITE_P(AfterEffects, GatedControlRefusal,
                         ::testing::Values(RefusedGatedControl{"Header", ParamId::Header, 1},
                                           RefusedGatedControl{"CurveGraph", ParamId::CurveGraph,
                                                               1}),
                         [](const ::testing::TestParamInfo<RefusedGatedControl>& info) {
                           return std::string(info.param.label);
                         });

TEST(ParamPositionTable, LookupOfAnUndeclaredIdInsertsNothing) {
  ParamPositionTable table;
  table.Register(ParamId::Direction);
  table.Register(ParamId::Channels);
  EXPECT_EQ(table.Position(ParamId::Channels), 2);
  EXPECT_EQ(table.Position(ParamId::CurveGraph), 0);
  EXPECT_EQ(table.Size(), 2u);
  table.Clear();
  table.Register(ParamId::Channels);
  EXPECT_EQ(table.Position(ParamId::Channels), 1);
}

TEST(VerifyParamCount, RaisesTheLogicErrorOnAMismatch) {
  FakeHost host;
  ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
  EXPECT_NO_THROW(VerifyParamCount(24));
  try {
    VerifyParamCount(25);
    FAIL() << "no exception";
  } catch (const std::logic_error& e) {
    EXPECT_STREQ(e.what(),
                 "Reported parameter count does not match actual parameter count. This would "
                 "lead to incorrect values.");
  }
  EXPECT_THROW(VerifyParamCount(23), std::logic_error);
}

}  // namespace
}  // namespace morvane
