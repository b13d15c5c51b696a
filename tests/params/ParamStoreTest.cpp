// The simulated host's parameter values: validation of a declared list,
// keyframes and the definitions handed out at a time.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "hostsim/ParamStore.h"

namespace hostsim {
namespace {

PF_ParamDef Named(PF_ParamType type, A_long id, const char* name) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  def.param_type = type;
  def.uu.id = id;
  std::strcpy(def.name, name);
  return def;
}

PF_ParamDef Popup(A_long id, const char* name, const char* items, A_short choices) {
  PF_ParamDef def = Named(PF_Param_POPUP, id, name);
  def.u.pd.num_choices = choices;
  def.u.pd.dephault = 1;
  def.u.pd.value = 1;
  def.u.pd.u.namesptr = items;
  return def;
}

PF_ParamDef Slider(A_long id, const char* name, float min, float max, float dephault) {
  PF_ParamDef def = Named(PF_Param_FLOAT_SLIDER, id, name);
  def.u.fs_d.valid_min = def.u.fs_d.slider_min = min;
  def.u.fs_d.valid_max = def.u.fs_d.slider_max = max;
  def.u.fs_d.dephault = dephault;
  def.u.fs_d.value = dephault;
  return def;
}

std::vector<PF_ParamDef> List() {
  std::vector<PF_ParamDef> list{Named(PF_Param_LAYER, 0, "")};
  list.push_back(Popup(1, "Mode", "One|Two|Three", 3));
  list.push_back(Slider(2, "Amount", 0.01f, 16, 1));
  list.push_back(Named(PF_Param_ANGLE, 3, "Phase"));
  PF_ParamDef box = Named(PF_Param_CHECKBOX, 4, "Sync");
  box.u.bd.dephault = 1;
  list.push_back(box);
  list.push_back(Named(PF_Param_LAYER, 5, "Source"));
  return list;
}

TEST(ValidateParamList, AcceptsASoundListAndNamesEachFault) {
  EXPECT_TRUE(ValidateParamList(List()).empty());

  struct Fault {
    const char* label;
    void (*spoil)(std::vector<PF_ParamDef>&);
    const char* expected;
  };
  const Fault faults[] = {
      {"repeated id", [](auto& l) { l[2].uu.id = 1; }, "used twice"},
      {"no id", [](auto& l) { l[3].uu.id = 0; }, "no disk ID"},
      {"item count", [](auto& l) { l[1].u.pd.num_choices = 4; }, "4 choices but 3 items"},
      {"popup default", [](auto& l) { l[1].u.pd.dephault = 0; }, "default item"},
      {"slider range", [](auto& l) { l[2].u.fs_d.slider_max = 20; }, "slider range"},
      {"slider default", [](auto& l) { l[2].u.fs_d.dephault = 0; }, "default outside"},
      {"type", [](auto& l) { l[3].param_type = 99; }, "unsupported type"},
  };
  for (const Fault& fault : faults) {
    std::vector<PF_ParamDef> list = List();
    fault.spoil(list);
    const std::vector<std::string> problems = ValidateParamList(list);
    ASSERT_EQ(problems.size(), 1u) << fault.label;
    EXPECT_NE(problems[0].find(fault.expected), std::string::npos) << problems[0];
  }
}

TEST(ParamTrack, SlidersInterpolateAndPopupsHold) {
  const ParamTrack track({{10, 4.0}, {0, 2.0}, {20, 0.0}});
  struct Case {
    double frame;
    double interpolated;
    double held;
  };
  for (const Case& c : {Case{-5, 2.0, 2.0}, Case{0, 2.0, 2.0}, Case{5, 3.0, 2.0},
                        Case{10, 4.0, 4.0}, Case{15, 2.0, 4.0}, Case{25, 0.0, 0.0}}) {
    EXPECT_EQ(track.At(c.frame, true), c.interpolated) << c.frame;
    EXPECT_EQ(track.At(c.frame, false), c.held) << c.frame;
  }
}

TEST(InstanceParams, DefinitionsCarryTheValueAtTheFrame) {
  InstanceParams params;
  params.Reset(List());
  EXPECT_EQ(params.FindByName("Amount"), 2);
  EXPECT_EQ(params.FindById(4), 4);
  EXPECT_EQ(params.DefinitionAt(2, 3).u.fs_d.value, 1.0);
  EXPECT_EQ(params.DefinitionAt(4, 3).u.bd.value, 1);

  params.Set(1, ParamTrack({{0, 1}, {4, params.PopupItem(1, "Three")}}));
  params.Set(2, ParamTrack({{0, 1.0}, {4, 3.0}}));
  params.Set(3, ParamTrack({{0, 0.0}, {4, -360.0}}));
  params.Set(4, ParamTrack({{0, 1}, {2, 0}}));
  EXPECT_EQ(params.DefinitionAt(1, 3).u.pd.value, 1);
  EXPECT_EQ(params.DefinitionAt(1, 4).u.pd.value, 3);
  EXPECT_EQ(params.DefinitionAt(2, 1).u.fs_d.value, 1.5);
  EXPECT_EQ(params.DefinitionAt(3, 1).u.ad.value, -90 * 65536);
  EXPECT_EQ(params.DefinitionAt(3, 4).u.ad.value, -23592960);
  EXPECT_EQ(params.DefinitionAt(4, 2.5).u.bd.value, 0);

  PF_EffectWorld world{};
  world.width = 7;
  EXPECT_EQ(params.DefinitionAt(5, 0).u.ld.data, nullptr);
  params.SetLayer(5, &world);
  EXPECT_EQ(params.DefinitionAt(5, 0).u.ld.width, 7);
}

TEST(InstanceParams, RefusesWhatTheHostWouldRefuse) {
  InstanceParams params;
  params.Reset(List());
  EXPECT_THROW(params.Set(2, ParamTrack(0.001)), std::invalid_argument);
  EXPECT_THROW(params.Set(2, ParamTrack(16.5)), std::invalid_argument);
  EXPECT_THROW(params.Set(1, ParamTrack(4)), std::invalid_argument);
  EXPECT_THROW(params.Set(4, ParamTrack(0.5)), std::invalid_argument);
  EXPECT_THROW(params.Set(5, ParamTrack(1)), std::invalid_argument);
  EXPECT_THROW(params.PopupItem(1, "Four"), std::out_of_range);
  EXPECT_THROW(params.FindByName("Nothing"), std::out_of_range);
  EXPECT_THROW(params.SetLayer(2, nullptr), std::invalid_argument);
  EXPECT_NO_THROW(params.Set(3, ParamTrack(1e6)));  // angles are unbounded
}

}  // namespace
}  // namespace hostsim
