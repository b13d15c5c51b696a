// The custom-drawn controls of the built module in the simulated hosts, as tables: (host, event,
// controls, host fault) -> the command's answer and the picture drawn where; (clicks on the
// banner) -> the about box. The host's report at the end checks that every suite and image
// taken was given back.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "hostsim/CustomUI.h"
#include "hostsim/Host.h"
#include "params/ParamId.h"
#include "tests/customui/Pictures.h"
#include "tests/support/HostedSession.h"

namespace morvane {
namespace {

using hostsim::EffectWindow;
using hostsim::EventAnswer;
using hostsim::HostProfile;
using testing::kCurveGraphs;

enum Drawn { kNothing, kBanner, kGraph };
constexpr int kAtGraph = -1, kAtHeader = -2;  // event positions: where the host put the control
constexpr PF_EffectArea kControl = PF_EA_CONTROL, kTitle = PF_EA_PARAM_TITLE;
constexpr PF_Err kNoSuite = PF_Err_BAD_CALLBACK_PARAM;
constexpr auto AE = HostProfile::AfterEffects, AE13_23 = HostProfile::AfterEffects13_23,
               PR = HostProfile::Premiere, OLD = HostProfile::OlderHost;

// A suite the host does not hand out (no member), or one of its functions answering error 7.
struct Fault {
  const char* suite = nullptr;
  int32_t version = 0;
  const char* member = nullptr;
};

struct DrawCase {
  const char* label;
  HostProfile (*profile)();
  int16_t minor;  // the interface's minor version; 0: the profile's own
  int index;      // the event's control position, or kAtGraph / kAtHeader
  PF_EffectArea area;
  Drawn drawn;       // expected in the frame of `area`, unless the drawing fails
  int look = 0;      // row of kCurveGraphs set on the curve controls first
  Fault fault = {};  // and then the answer:
  PF_Err err = PF_Err_NONE;
  int images = 0;  // made before a failure, all released
};

class HostedControls : public morvane::testing::HostedSession {
 protected:
  void TearDown() override {
    if (host_) Finish();
  }
  EffectWindow Window(int index, PF_EffectArea area) {
    if (index < 0) {
      const ParamId id = index == kAtGraph ? ParamId::CurveGraph : ParamId::Header;
      index = host_->PositionOf(*instance_, ToInt(id));
    }
    const PF_ParamDef def = host_->Params().params.at(static_cast<std::size_t>(index));
    return hostsim::PanelWindow(index, area, def.ui_width, def.ui_height);
  }
};

class CustomUIDraw : public HostedControls, public ::testing::WithParamInterface<DrawCase> {};

TEST_P(CustomUIDraw, AnswersAndDrawsThePictureInTheEventsFrame) {
  const DrawCase& c = GetParam();
  HostProfile profile = c.profile();
  profile.specMinor = c.minor != 0 ? c.minor : profile.specMinor;
  Start(profile);
  const testing::CurveGraphLook& look = kCurveGraphs[c.look];
  if (c.drawn == kGraph) {
    host_->SetPopup(*instance_, "Stretch Curve", look.item);
    host_->SetValue(*instance_, "Curve Phase", look.degrees);
    host_->SetValue(*instance_, "Curve Smoothness", look.smoothness);
  }
  const Fault& f = c.fault;
  if (f.suite != nullptr && f.member == nullptr) host_->Faults().WithholdSuite(f.suite, f.version);
  if (f.member != nullptr)
    host_->Faults().Fail(hostsim::SuiteFunction(f.suite, f.version, f.member), 7);
  const EffectWindow window = Window(c.index, c.area);
  const EventAnswer answer = hostsim::SendDrawEvent(*host_, *instance_, window);

  EXPECT_EQ(answer.result.err, c.err);
  EXPECT_EQ(answer.ShownMessage().value_or(""),
            c.err == kNoSuite ? "Not able to acquire AEFX Suite." : "");
  const bool drawn = c.drawn != kNothing && c.err == PF_Err_NONE;
  EXPECT_EQ(answer.Handled(), drawn);
  const hostsim::DrawbotRecord record = hostsim::Drawbot(*host_);
  EXPECT_EQ(record.images.size(), std::size_t(drawn ? 1 : c.images));
  EXPECT_EQ(record.LiveImages(), 0);
  ASSERT_EQ(record.draws.size(), std::size_t(drawn ? 1 : 0));
  if (!drawn) return;
  const hostsim::DrawnImage& image = record.images[record.draws[0].image];
  EXPECT_EQ(image.width, c.drawn == kBanner ? 320 : 50);
  EXPECT_EQ(image.rowBytes, image.width * 4);
  EXPECT_EQ(image.layout, kDRAWBOT_PixelLayout_32BGRA_Straight);
  EXPECT_EQ(testing::Digest(image.pixels),
            c.drawn == kBanner ? testing::kHeaderBanner : look.digest);
  const PF_LRect& frame = c.area == kControl ? window.currentFrame : window.paramTitleFrame;
  EXPECT_EQ(record.draws[0].x, float(frame.left));
  EXPECT_EQ(record.draws[0].y, float(frame.top));
  EXPECT_EQ(record.draws[0].opacity, 1.0f);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Events, CustomUIDraw, ::testing::Values(
    DrawCase{"GraphFollowsTheControls", AE, 0, kAtGraph, kControl, kGraph, 7},
    DrawCase{"GraphNotInTitleRow", AE, 0, kAtGraph, kTitle, kNothing},
    DrawCase{"BannerInTitleRow", AE, 0, kAtHeader, kTitle, kBanner},
    DrawCase{"BannerNotInControlArea", AE, 0, kAtHeader, kControl, kNothing},
    DrawCase{"At13_23BannerInControlArea", AE13_23, 0, kAtHeader, kControl, kBanner},
    DrawCase{"At13_23BannerNotInTitleRow", AE13_23, 0, kAtHeader, kTitle, kNothing},
    DrawCase{"At13_23Graph", AE13_23, 0, kAtGraph, kControl, kGraph, 3},
    DrawCase{"At13_22BannerInTitleRow", AE, 22, kAtHeader, kTitle, kBanner},
    DrawCase{"At13_24BannerInTitleRow", AE, 24, kAtHeader, kTitle, kBanner},
    DrawCase{"At13_24BannerNotInControlArea", AE, 24, kAtHeader, kControl, kNothing},
    DrawCase{"PremiereGraph", PR, 0, kAtGraph, kControl, kGraph, 8},
    DrawCase{"PremiereNoBannerAtTheLayer", PR, 0, 0, kTitle, kNothing},
    DrawCase{"PremiereNoBannerAtDirection", PR, 0, 1, kTitle, kNothing},
    DrawCase{"OlderHostNoBanner", OLD, 0, 1, kTitle, kNothing},
    DrawCase{"OlderHostNoGraph", OLD, 0, 10, kControl, kNothing},
    DrawCase{"NoDrawSuite", AE, 0, kAtGraph, kControl, kGraph, 0, {kDRAWBOT_DrawSuite, 1},
             kNoSuite},
    DrawCase{"NoSupplierSuite", AE, 0, kAtGraph, kControl, kGraph, 0, {kDRAWBOT_SupplierSuite, 1},
             kNoSuite},
    DrawCase{"NoSurfaceSuite", AE, 0, kAtGraph, kControl, kGraph, 0, {kDRAWBOT_SurfaceSuite, 2},
             kNoSuite},
    DrawCase{"NoPathSuite", AE, 0, kAtGraph, kControl, kGraph, 0, {kDRAWBOT_PathSuite, 1},
             kNoSuite},
    DrawCase{"NoCustomUISuite", AE, 0, kAtGraph, kControl, kGraph, 0, {kPFEffectCustomUISuite, 1},
             kNoSuite},
    DrawCase{"BannerNoPathSuite", AE, 0, kAtHeader, kTitle, kBanner, 0, {kDRAWBOT_PathSuite, 1},
             kNoSuite},
    DrawCase{"FailedReference", AE, 0, kAtGraph, kControl, kGraph, 0,
             {kPFEffectCustomUISuite, 1, "PF_GetDrawingReference"}, 7},
    DrawCase{"FailedSurface", AE, 0, kAtHeader, kTitle, kBanner, 0,
             {kDRAWBOT_DrawSuite, 1, "GetSurface"}, 7},
    DrawCase{"FailedNewImage", AE, 0, kAtGraph, kControl, kGraph, 0,
             {kDRAWBOT_SupplierSuite, 1, "NewImageFromBuffer"}, 7},
    DrawCase{"FailedDrawImage", AE, 0, kAtGraph, kControl, kGraph, 0,
             {kDRAWBOT_SurfaceSuite, 2, "DrawImage"}, 7, 1}),
    [](const ::testing::TestParamInfo<DrawCase>& info) { return info.param.label; });
// clang-format on

// Clicks at ticks after a settled history: (on the curve graph's control area rather than the
// banner's title row, tick) -> the about box shown. Graph clicks neither pair nor break a pair.
TEST_F(HostedControls, ADoubleClickOnTheBannerShowsTheAboutBox) {
  Start(AE());
  const auto click = [&](bool graph, A_u_long when) {
    const EffectWindow window = graph ? Window(kAtGraph, kControl) : Window(kAtHeader, kTitle);
    return hostsim::SendClickEvent(*host_, *instance_, window, when);
  };
  // Whatever the module saw before, this leaves its last click at 11000 and no pair open.
  for (const A_u_long when : {10000u, 10000u, 11000u})
    click(false, when);
  const std::tuple<bool, A_u_long, bool> kClicks[] = {
      {false, 12000, false}, {false, 12031, true},  {true, 12040, false}, {false, 12050, false},
      {true, 12060, false},  {false, 12082, false}, {false, 12100, true}, {false, 12110, false}};
  for (const auto& [graph, when, about] : kClicks) {
    const EventAnswer answer = click(graph, when);
    EXPECT_EQ(answer.result.err, PF_Err_NONE);
    EXPECT_FALSE(answer.Handled());
    EXPECT_EQ(answer.ShownMessage().has_value(), about) << when;
    EXPECT_NE(answer.ShownMessage().value_or("Morvane").find("Morvane"), std::string::npos);
  }
  EXPECT_TRUE(hostsim::Drawbot(*host_).images.empty());
  for (const hostsim::SuiteBalance& balance : host_->Suites().Balances())
    EXPECT_NE(balance.key.name.rfind("DRAWBOT", 0), 0u) << balance.key.name;
}

}  // namespace
}  // namespace morvane
