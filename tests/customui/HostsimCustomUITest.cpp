// The curve graph and the header banner drawn by the built module in the simulated hosts, and
// the about box a double click on the banner opens.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "hostsim/CustomUI.h"
#include "hostsim/Host.h"
#include "params/CurveGraph.h"
#include "params/HeaderBanner.h"
#include "params/ParamId.h"
#include "tests/support/HostedSession.h"

namespace morvane {
namespace {

using hostsim::EffectWindow;
using hostsim::EventAnswer;
using hostsim::Host;
using hostsim::HostProfile;
using hostsim::PanelWindow;

constexpr char kAcquireFailed[] = "Not able to acquire AEFX Suite.";

class HostedControls : public morvane::testing::HostedSession {
 protected:
  void TearDown() override {
    if (host_) Finish();
  }

  // The window of the control with this disk ID as the host lays out the panel.
  EffectWindow Window(ParamId id, PF_EffectArea area) {
    const PF_ParamIndex index = host_->PositionOf(*instance_, ToInt(id));
    const PF_ParamDef def = host_->Params().params.at(static_cast<std::size_t>(index));
    return PanelWindow(index, area, def.ui_width, def.ui_height);
  }

  EventAnswer Draw(const EffectWindow& window) {
    return hostsim::SendDrawEvent(*host_, *instance_, window);
  }

  EventAnswer ClickHeader(A_u_long when) {
    return hostsim::SendClickEvent(*host_, *instance_, Window(ParamId::Header, PF_EA_PARAM_TITLE),
                                   when);
  }

  // Leaves the banner's last click at `when` + 1000, whatever came before: the second click
  // either completes a pair or follows one, and the third is far from both.
  void SettleClicks(A_u_long when) {
    ClickHeader(when);
    ClickHeader(when);
    ClickHeader(when + 1000);
  }

  hostsim::DrawbotRecord Record() const { return hostsim::Drawbot(*host_); }

  void ExpectCurveGraphDrawn(const EventAnswer& answer, const EffectWindow& window,
                             CurveShape shape, PF_Fixed phase, float smoothness) {
    ASSERT_EQ(answer.result.err, PF_Err_NONE);
    EXPECT_TRUE(answer.Handled());
    const hostsim::DrawbotRecord record = Record();
    ASSERT_EQ(record.draws.size(), 1u);
    const hostsim::DrawnImage& image = record.images.at(record.draws[0].image);
    EXPECT_EQ(image.width, 50);
    EXPECT_EQ(image.height, 50);
    EXPECT_EQ(image.rowBytes, 200);
    EXPECT_EQ(image.layout, kDRAWBOT_PixelLayout_32BGRA_Straight);
    std::vector<uint8_t> expected(kCurveGraphPictureBytes);
    ASSERT_EQ(RenderCurveGraphPicture(expected.data(), shape, phase, smoothness), 1);
    EXPECT_EQ(image.pixels, expected);
    EXPECT_EQ(record.draws[0].x, static_cast<float>(window.currentFrame.left));
    EXPECT_EQ(record.draws[0].y, static_cast<float>(window.currentFrame.top));
    EXPECT_EQ(record.draws[0].opacity, 1.0f);
    EXPECT_EQ(record.LiveImages(), 0);
  }

  void ExpectBannerDrawnAt(const EventAnswer& answer, const PF_LRect& frame) {
    ASSERT_EQ(answer.result.err, PF_Err_NONE);
    EXPECT_TRUE(answer.Handled());
    const hostsim::DrawbotRecord record = Record();
    ASSERT_EQ(record.draws.size(), 1u);
    const hostsim::DrawnImage& image = record.images.at(record.draws[0].image);
    EXPECT_EQ(image.width, 320);
    EXPECT_EQ(image.height, 17);
    EXPECT_EQ(image.rowBytes, 1280);
    EXPECT_EQ(image.layout, kDRAWBOT_PixelLayout_32BGRA_Straight);
    const BgraPicture banner = HeaderBannerPicture();
    EXPECT_TRUE(std::equal(image.pixels.begin(), image.pixels.end(), banner.pixels));
    EXPECT_EQ(record.draws[0].x, static_cast<float>(frame.left));
    EXPECT_EQ(record.draws[0].y, static_cast<float>(frame.top));
    EXPECT_EQ(record.LiveImages(), 0);
  }

  // Sends `send` and checks that it made no image and drew nothing.
  template <typename Send>
  void ExpectNothingDrawn(Send send) {
    const std::size_t images = Record().images.size();
    const EventAnswer answer = send();
    EXPECT_EQ(answer.result.err, PF_Err_NONE);
    EXPECT_FALSE(answer.Handled());
    EXPECT_FALSE(answer.ShownMessage());
    EXPECT_EQ(Record().images.size(), images);
  }
  void ExpectNothingDrawn(const EffectWindow& window) {
    ExpectNothingDrawn([&] { return Draw(window); });
  }
};

TEST_F(HostedControls, CurveGraphInAfterEffectsFollowsTheControls) {
  Start(HostProfile::AfterEffects());
  host_->SetPopup(*instance_, "Stretch Curve", "Triangle Wave");
  host_->SetValue(*instance_, "Curve Phase", -3.75);
  host_->SetValue(*instance_, "Curve Smoothness", 1.5);
  const EffectWindow window = Window(ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(window.index, 11);
  ExpectCurveGraphDrawn(Draw(window), window, CurveShape::TriangleWave, -245760, 1.5f);
}

TEST_F(HostedControls, CurveGraphInPremiere) {
  Start(HostProfile::Premiere());
  const EffectWindow window = Window(ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(window.index, 10);
  ExpectCurveGraphDrawn(Draw(window), window, CurveShape::LinearRampUp, 0, 0.0f);
  // No banner here: the input layer and "Direction" draw nothing.
  ExpectNothingDrawn(PanelWindow(0, PF_EA_PARAM_TITLE, 320, 17));
  ExpectNothingDrawn(PanelWindow(1, PF_EA_PARAM_TITLE, 320, 17));
}

TEST_F(HostedControls, OlderHostsDrawNothing) {
  Start(HostProfile::OlderHost());
  for (PF_ParamIndex index = 0; index < 22; ++index) {
    ExpectNothingDrawn(PanelWindow(index, PF_EA_CONTROL, 50, 50));
    ExpectNothingDrawn(PanelWindow(index, PF_EA_PARAM_TITLE, 50, 50));
  }
}

TEST_F(HostedControls, BannerDrawsInTheTitleRowAt13_27) {
  Start(HostProfile::AfterEffects());
  ExpectNothingDrawn(Window(ParamId::Header, PF_EA_CONTROL));
  const EffectWindow title = Window(ParamId::Header, PF_EA_PARAM_TITLE);
  EXPECT_EQ(title.index, 1);
  ExpectBannerDrawnAt(Draw(title), title.paramTitleFrame);
}

TEST_F(HostedControls, BannerDrawsInTheControlAreaAt13_23) {
  Start(HostProfile::AfterEffects13_23());
  ExpectNothingDrawn(Window(ParamId::Header, PF_EA_PARAM_TITLE));
  const EffectWindow control = Window(ParamId::Header, PF_EA_CONTROL);
  ExpectBannerDrawnAt(Draw(control), control.currentFrame);
  // The curve graph draws at 13.23 as well.
  const EffectWindow graph = Window(ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(hostsim::SendDrawEvent(*host_, *instance_, graph).result.err, PF_Err_NONE);
  EXPECT_EQ(Record().draws.size(), 2u);
}

TEST_F(HostedControls, DoubleClickOnTheBannerShowsTheAboutBox) {
  Start(HostProfile::AfterEffects());
  SettleClicks(10000);  // last click at 11000

  const EventAnswer first = ClickHeader(11040);
  EXPECT_FALSE(first.ShownMessage());
  const EventAnswer second = ClickHeader(11071);  // 31 ticks later
  ASSERT_TRUE(second.ShownMessage());
  EXPECT_NE(second.ShownMessage()->find("Morvane"), std::string::npos) << *second.ShownMessage();
  EXPECT_EQ(second.result.err, PF_Err_NONE);

  // A third click right after the pair starts a new one.
  EXPECT_FALSE(ClickHeader(11080).ShownMessage());
  EXPECT_TRUE(ClickHeader(11090).ShownMessage());
  // Clicks 32 ticks apart stay single.
  EXPECT_FALSE(ClickHeader(12000).ShownMessage());
  EXPECT_FALSE(ClickHeader(12032).ShownMessage());
  EXPECT_FALSE(ClickHeader(12064).ShownMessage());
  EXPECT_TRUE(Record().images.empty());
}

TEST_F(HostedControls, ClickOnTheCurveGraphDoesNothing) {
  Start(HostProfile::AfterEffects());
  const EffectWindow graph = Window(ParamId::CurveGraph, PF_EA_CONTROL);
  for (A_u_long when : {500u, 510u, 520u}) {
    ExpectNothingDrawn([&] { return hostsim::SendClickEvent(*host_, *instance_, graph, when); });
  }
  // Not even the drawing suites were taken.
  for (const hostsim::SuiteBalance& balance : host_->Suites().Balances()) {
    EXPECT_NE(balance.key.name.rfind("DRAWBOT", 0), 0u) << balance.key.name;
  }
}

// A suite the host does not hand out: the drawing fails with 516 and the message, the event
// stays unhandled, and everything acquired before the failure is given back (TearDown checks).
class MissingDrawingSuite : public HostedControls,
                            public ::testing::WithParamInterface<std::pair<const char*, int32_t>> {
};

TEST_P(MissingDrawingSuite, ReportsAndDrawsNothing) {
  Start(HostProfile::AfterEffects());
  host_->Faults().WithholdSuite(GetParam().first, GetParam().second);
  for (const EffectWindow& window :
       {Window(ParamId::CurveGraph, PF_EA_CONTROL), Window(ParamId::Header, PF_EA_PARAM_TITLE)}) {
    const EventAnswer answer = Draw(window);
    EXPECT_EQ(answer.result.err, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(answer.ShownMessage(), std::optional<std::string>(kAcquireFailed));
    EXPECT_FALSE(answer.Handled());
  }
  EXPECT_TRUE(Record().images.empty());
}

INSTANTIATE_TEST_SUITE_P(Suites, MissingDrawingSuite,
                         ::testing::Values(std::pair{kDRAWBOT_DrawSuite, 1},
                                           std::pair{kDRAWBOT_SupplierSuite, 1},
                                           std::pair{kDRAWBOT_SurfaceSuite, 2},
                                           std::pair{kDRAWBOT_PathSuite, 1},
                                           std::pair{kPFEffectCustomUISuite, 1}));

TEST_F(HostedControls, HostDrawingErrorIsReturnedAndTheImageReleased) {
  Start(HostProfile::AfterEffects());
  host_->Faults().Fail(
      hostsim::SuiteFunction(kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2, "DrawImage"),
      7);
  const EventAnswer answer = Draw(Window(ParamId::CurveGraph, PF_EA_CONTROL));
  EXPECT_EQ(answer.result.err, 7);
  EXPECT_FALSE(answer.Handled());
  const hostsim::DrawbotRecord record = Record();
  ASSERT_EQ(record.images.size(), 1u);
  EXPECT_TRUE(record.images[0].released);
  EXPECT_TRUE(record.draws.empty());
}

// The simulated host's own checks, driven without the effect.
TEST(SimulatedDrawing, DrawingOutsideAnEventIsReported) {
  Host host(HostProfile::AfterEffects());
  const PF_InData in = host.MakeInData();
  const void* suite = nullptr;
  ASSERT_EQ(in.pica_basicP->AcquireSuite(kDRAWBOT_DrawSuite, 1, &suite), 0);
  const auto* draw = static_cast<const DRAWBOT_DrawbotSuite1*>(suite);
  DRAWBOT_SupplierRef supplier = nullptr;
  EXPECT_NE(draw->GetSupplier(nullptr, &supplier), 0);
  EXPECT_EQ(supplier, nullptr);
  in.pica_basicP->ReleaseSuite(kDRAWBOT_DrawSuite, 1);
  const hostsim::SessionReport report = host.Report();
  ASSERT_EQ(report.problems.size(), 1u);
  EXPECT_NE(report.problems[0].find("not live"), std::string::npos);
}

}  // namespace
}  // namespace morvane
