// The simulated host's controls: its check of a declared list, keyframes, and the definitions it
// hands out at a frame in the units the host uses.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "hostsim/ParamStore.h"

namespace hostsim {
namespace {

// The input layer, "Mode" (popup One|Two|Three), "Amount" (slider 0.01-16, default 1), "Phase"
// (angle), "Sync" (checkbox, on) and "Source" (layer), with disk IDs 1 to 5.
std::vector<PF_ParamDef> List() {
  const PF_ParamType types[] = {PF_Param_LAYER, PF_Param_POPUP,    PF_Param_FLOAT_SLIDER,
                                PF_Param_ANGLE, PF_Param_CHECKBOX, PF_Param_LAYER};
  const char* names[] = {"", "Mode", "Amount", "Phase", "Sync", "Source"};
  std::vector<PF_ParamDef> list(6);
  for (size_t i = 0; i < list.size(); ++i) {
    std::memset(&list[i], 0, sizeof list[i]);
    list[i].param_type = types[i];
    list[i].uu.id = static_cast<A_long>(i);
    std::strcpy(list[i].name, names[i]);
  }
  list[1].u.pd = {.value = 1, .num_choices = 3, .dephault = 1, .u = {.namesptr = "One|Two|Three"}};
  PF_FloatSliderDef& s = list[2].u.fs_d;
  s.valid_min = s.slider_min = 0.01f;
  s.valid_max = s.slider_max = 16;
  s.value = s.dephault = 1;
  list[4].u.bd.dephault = 1;
  return list;
}

TEST(ValidateParamList, AcceptsASoundListAndNamesEachFault) {
  EXPECT_TRUE(ValidateParamList(List()).empty());
  const std::pair<void (*)(std::vector<PF_ParamDef>&), const char*> faults[] = {
      {[](auto& l) { l[2].uu.id = 1; }, "used twice"},
      {[](auto& l) { l[3].uu.id = 0; }, "no disk ID"},
      {[](auto& l) { l[1].u.pd.num_choices = 4; }, "4 choices but 3 items"},
      {[](auto& l) { l[1].u.pd.dephault = 0; }, "default item"},
      {[](auto& l) { l[2].u.fs_d.slider_max = 20; }, "slider range"},
      {[](auto& l) { l[2].u.fs_d.dephault = 0; }, "default outside"},
      {[](auto& l) { l[3].param_type = 99; }, "unsupported type"},
  };
  for (const auto& [spoil, expected] : faults) {
    std::vector<PF_ParamDef> list = List();
    spoil(list);
    const std::vector<std::string> problems = ValidateParamList(list);
    ASSERT_EQ(problems.size(), 1u) << expected;
    EXPECT_NE(problems[0].find(expected), std::string::npos) << problems[0];
  }
}

TEST(ParamTrack, SlidersInterpolateAndPopupsHold) {
  const ParamTrack track({{10, 4.0}, {0, 2.0}, {20, 0.0}});
  // frame, interpolated, held
  for (const auto& [frame, linear, held] : {std::tuple{-5.0, 2.0, 2.0},
                                            {0.0, 2.0, 2.0},
                                            {5.0, 3.0, 2.0},
                                            {10.0, 4.0, 4.0},
                                            {15.0, 2.0, 4.0},
                                            {25.0, 0.0, 0.0}}) {
    EXPECT_EQ(track.At(frame, true), linear) << frame;
    EXPECT_EQ(track.At(frame, false), held) << frame;
  }
}

TEST(InstanceParams, HandsOutTheValueAtTheFrameAndRefusesWhatTheHostWould) {
  InstanceParams params;
  params.Reset(List());
  EXPECT_EQ(params.FindByName("Amount"), 2);
  EXPECT_EQ(params.DefinitionAt(4, 3).u.bd.value, 1);
  params.Set(1, ParamTrack({{0, 1}, {4, params.PopupItem(1, "Three")}}));
  params.Set(2, ParamTrack({{0, 1.0}, {4, 3.0}}));
  params.Set(3, ParamTrack({{0, 0.0}, {4, -360.0}}));
  params.Set(4, ParamTrack({{0, 1}, {2, 0}}));
  EXPECT_EQ(params.DefinitionAt(1, 3).u.pd.value, 1);
  EXPECT_EQ(params.DefinitionAt(1, 4).u.pd.value, 3);
  EXPECT_EQ(params.DefinitionAt(2, 1).u.fs_d.value, 1.5);
  EXPECT_EQ(params.DefinitionAt(3, 1).u.ad.value, -90 * 65536);
  EXPECT_EQ(params.DefinitionAt(4, 2.5).u.bd.value, 0);
  PF_EffectWorld world{};
  world.width = 7;
  EXPECT_EQ(params.DefinitionAt(5, 0).u.ld.data, nullptr);
  params.SetLayer(5, &world);
  EXPECT_EQ(params.DefinitionAt(5, 0).u.ld.width, 7);

  for (const auto& [index, value] : {std::pair{2, 0.001}, {2, 16.5}, {1, 4.0}, {4, 0.5}, {5, 1.0}})
    EXPECT_THROW(params.Set(index, ParamTrack(value)), std::invalid_argument) << index << value;
  EXPECT_THROW(params.SetLayer(2, nullptr), std::invalid_argument);
  EXPECT_THROW(params.PopupItem(1, "Four"), std::out_of_range);
  EXPECT_THROW(params.FindByName("Nothing"), std::out_of_range);
  EXPECT_NO_THROW(params.Set(3, ParamTrack(1e6)));  // angles are unbounded
}

}  // namespace
}  // namespace hostsim
