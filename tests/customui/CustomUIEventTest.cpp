#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "params/CurveGraph.h"
#include "params/CustomUIEvent.h"
#include "params/DrawbotSuites.h"
#include "params/HeaderBanner.h"
#include "params/ParamPositionTable.h"
#include "params/ParamsSetup.h"
#include "params/tools/HeaderBannerArt.h"
#include "tests/customui/FakeDrawbot.h"
#include "tests/params/FakeHost.h"

namespace morvane {
namespace {

using testing::FakeDrawbot;
using testing::FakeHost;

constexpr A_long kAfterEffects = 0x46585443;  // 'FXTC'
constexpr A_long kPremiere = 0x50724D72;      // 'PrMr'
constexpr char kAboutText[] = "About the effect";

int aboutCalls = 0;

PF_Err FakeShowAbout(const PF_InData* /*in_data*/, PF_OutData* out_data) {
  ++aboutCalls;
  std::strcpy(out_data->return_msg, kAboutText);
  return PF_Err_NONE;
}

class CustomUIEventTest : public ::testing::Test {
 protected:
  void SetUp() override { Declare(kAfterEffects, 13, 27); }

  // Runs parameter set-up for a host, so that positions are those the host would use.
  void Declare(A_long applId, A_short major, A_short minor) {
    host.SetHost(applId, major, minor);
    host.added.clear();
    ASSERT_EQ(ParamsSetup(&host.in_data, &host.out_data, nullptr), PF_Err_NONE);
    host.BuildListFromAdded();
    params = host.ParamArray();
    aboutCalls = 0;
    HeaderClickDetector() = DoubleClickDetector{};
  }

  PF_EventExtra Event(PF_EventType type, ParamId control, PF_EffectArea area) {
    PF_EventExtra extra;
    std::memset(&extra, 0, sizeof extra);
    extra.contextH = reinterpret_cast<PF_ContextH>(0xC0);
    extra.e_type = type;
    extra.effect_win.index = ParamPosition(control);
    extra.effect_win.area = area;
    extra.effect_win.current_frame = {12, 40, 62, 90};
    extra.effect_win.param_title_frame = {3, 21, 323, 38};
    return extra;
  }

  PF_Err Send(PF_EventExtra& extra) {
    host.out_data = PF_OutData{};
    return HandleCustomUIEvent(&host.in_data, &host.out_data, params.data(), &extra, FakeShowAbout);
  }

  PF_Err Click(uint32_t when) {
    PF_EventExtra extra = Event(PF_Event_DO_CLICK, ParamId::Header, PF_EA_PARAM_TITLE);
    extra.u.do_click.when = when;
    return Send(extra);
  }

  void SetCurve(A_long popup, PF_Fixed phase, double smoothness) {
    host.At(ParamPosition(ParamId::StretchCurve)).u.pd.value = popup;
    host.At(ParamPosition(ParamId::CurvePhase)).u.ad.value = phase;
    host.At(ParamPosition(ParamId::CurveSmoothness)).u.fs_d.value = smoothness;
  }

  void ExpectNothingHappened(const PF_EventExtra& extra) {
    EXPECT_TRUE(drawbot.images.empty());
    EXPECT_TRUE(drawbot.draws.empty());
    EXPECT_TRUE(host.acquired.empty());
    EXPECT_EQ(extra.evt_out_flags, PF_EO_NONE);
    EXPECT_EQ(host.out_data.out_flags, 0);
  }

  FakeHost host;
  FakeDrawbot drawbot{host};
  std::vector<PF_ParamDef*> params;
};

TEST_F(CustomUIEventTest, DrawsTheCurveGraphIntoTheControlFrame) {
  SetCurve(4, 90 * 65536, 2.5);  // "Sine Wave"
  PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(ParamPosition(ParamId::CurveGraph), 11);
  ASSERT_EQ(Send(extra), PF_Err_NONE);

  std::vector<uint8_t> expected(kCurveGraphPictureBytes);
  ASSERT_EQ(RenderCurveGraphPicture(expected.data(), CurveShape::SineWave, 90 * 65536, 2.5f), 1);
  ASSERT_EQ(drawbot.images.size(), 1u);
  const FakeDrawbot::Image& image = drawbot.images[0];
  EXPECT_EQ(image.width, 50);
  EXPECT_EQ(image.height, 50);
  EXPECT_EQ(image.rowBytes, 200);
  EXPECT_EQ(image.layout, kDRAWBOT_PixelLayout_32BGRA_Straight);
  EXPECT_EQ(image.pixels, expected);
  ASSERT_EQ(drawbot.draws.size(), 1u);
  EXPECT_EQ(drawbot.draws[0].x, 12.0f);
  EXPECT_EQ(drawbot.draws[0].y, 40.0f);
  EXPECT_EQ(drawbot.draws[0].alpha, 1.0f);
  EXPECT_EQ(drawbot.referenceRequests, std::vector<PF_ContextH>{extra.contextH});

  EXPECT_EQ(extra.evt_out_flags, PF_EO_HANDLED_EVENT);
  EXPECT_EQ(host.out_data.out_flags, 0);
  EXPECT_EQ(drawbot.LiveImages(), 0);
  EXPECT_EQ(drawbot.unknownReleases, 0);
  EXPECT_EQ(host.acquired.size(), 5u);  // four Drawbot suites and the custom UI suite
  EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
}

TEST_F(CustomUIEventTest, CurveGraphDrawsInPremiereWhereThereIsNoHeader) {
  Declare(kPremiere, 13, 27);
  EXPECT_EQ(ParamPosition(ParamId::Header), 0);
  PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(extra.effect_win.index, 10);
  ASSERT_EQ(Send(extra), PF_Err_NONE);
  EXPECT_EQ(drawbot.draws.size(), 1u);
  EXPECT_EQ(extra.evt_out_flags, PF_EO_HANDLED_EVENT);

  // The input layer's index is not the (undeclared) header's.
  PF_EventExtra layer = Event(PF_Event_DRAW, ParamId::Header, PF_EA_PARAM_TITLE);
  ASSERT_EQ(layer.effect_win.index, 0);
  EXPECT_EQ(Send(layer), PF_Err_NONE);
  EXPECT_EQ(drawbot.draws.size(), 1u);
}

TEST_F(CustomUIEventTest, OlderHostsAreNotServed) {
  host.SetHost(kAfterEffects, 13, 8);
  PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::CurveGraph, PF_EA_CONTROL);
  EXPECT_EQ(Send(extra), PF_Err_NONE);
  ExpectNothingHappened(extra);
}

TEST_F(CustomUIEventTest, CurveGraphIgnoresOtherAreasClicksAndDrags) {
  for (const auto& [type, area] :
       {std::pair{PF_Event_DRAW, PF_EA_PARAM_TITLE}, std::pair{PF_Event_DO_CLICK, PF_EA_CONTROL},
        std::pair{PF_Event_DRAG, PF_EA_CONTROL},
        std::pair{PF_Event_ADJUST_CURSOR, PF_EA_CONTROL}}) {
    PF_EventExtra extra = Event(type, ParamId::CurveGraph, area);
    extra.u.do_click.when = 5;
    EXPECT_EQ(Send(extra), PF_Err_NONE);
    ExpectNothingHappened(extra);
  }
  EXPECT_EQ(aboutCalls, 0);
}

// host interface version, area of the draw event, whether the banner is drawn
class HeaderDrawTest
    : public CustomUIEventTest,
      public ::testing::WithParamInterface<std::tuple<A_short, PF_EffectArea, bool>> {};

TEST_P(HeaderDrawTest, DrawsOnlyInTheAreaTheHostShowsItIn) {
  const auto [minor, area, drawn] = GetParam();
  Declare(kAfterEffects, 13, minor);
  PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::Header, area);
  ASSERT_EQ(extra.effect_win.index, 1);
  ASSERT_EQ(Send(extra), PF_Err_NONE);
  if (!drawn) {
    ExpectNothingHappened(extra);
    return;
  }
  const BgraPicture banner = HeaderBannerPicture();
  ASSERT_EQ(drawbot.images.size(), 1u);
  const FakeDrawbot::Image& image = drawbot.images[0];
  EXPECT_EQ(image.width, 320);
  EXPECT_EQ(image.height, 17);
  EXPECT_EQ(image.rowBytes, 1280);
  EXPECT_EQ(image.layout, kDRAWBOT_PixelLayout_32BGRA_Straight);
  EXPECT_TRUE(std::equal(image.pixels.begin(), image.pixels.end(), banner.pixels));
  ASSERT_EQ(drawbot.draws.size(), 1u);
  const PF_LRect& frame =
      area == PF_EA_CONTROL ? extra.effect_win.current_frame : extra.effect_win.param_title_frame;
  EXPECT_EQ(drawbot.draws[0].x, static_cast<float>(frame.left));
  EXPECT_EQ(drawbot.draws[0].y, static_cast<float>(frame.top));
  EXPECT_EQ(drawbot.draws[0].alpha, 1.0f);
  EXPECT_EQ(extra.evt_out_flags, PF_EO_HANDLED_EVENT);
  EXPECT_EQ(drawbot.LiveImages(), 0);
  EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
}

INSTANTIATE_TEST_SUITE_P(Versions, HeaderDrawTest,
                         ::testing::Values(std::make_tuple(A_short{27}, PF_EA_PARAM_TITLE, true),
                                           std::make_tuple(A_short{27}, PF_EA_CONTROL, false),
                                           std::make_tuple(A_short{22}, PF_EA_PARAM_TITLE, true),
                                           std::make_tuple(A_short{24}, PF_EA_PARAM_TITLE, true),
                                           std::make_tuple(A_short{24}, PF_EA_CONTROL, false),
                                           std::make_tuple(A_short{23}, PF_EA_CONTROL, true),
                                           std::make_tuple(A_short{23}, PF_EA_PARAM_TITLE, false)));

TEST_F(CustomUIEventTest, ClicksLessThan32ApartOpenTheAboutBox) {
  EXPECT_EQ(Click(1000), PF_Err_NONE);
  EXPECT_EQ(aboutCalls, 0);
  EXPECT_FALSE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);

  EXPECT_EQ(Click(1031), PF_Err_NONE);
  EXPECT_EQ(aboutCalls, 1);
  EXPECT_STREQ(host.out_data.return_msg, kAboutText);
  EXPECT_TRUE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
  EXPECT_TRUE(host.acquired.empty());
}

TEST_F(CustomUIEventTest, ClicksTimedApartAreSingleClicks) {
  EXPECT_EQ(Click(2000), PF_Err_NONE);
  EXPECT_EQ(Click(2032), PF_Err_NONE);
  EXPECT_EQ(Click(2064), PF_Err_NONE);
  EXPECT_EQ(aboutCalls, 0);
  EXPECT_EQ(host.out_data.out_flags, 0);
  // The last of them starts a pair.
  EXPECT_EQ(Click(2070), PF_Err_NONE);
  EXPECT_EQ(aboutCalls, 1);
}

TEST_F(CustomUIEventTest, ClickAfterADoubleClickStartsANewPair) {
  Click(5000);
  Click(5010);
  ASSERT_EQ(aboutCalls, 1);
  Click(5020);  // third click, right after the pair: a first click again
  EXPECT_EQ(aboutCalls, 1);
  Click(5030);
  EXPECT_EQ(aboutCalls, 2);
}

TEST_F(CustomUIEventTest, ClicksElsewhereDoNotCountTowardsADoubleClick) {
  PF_EventExtra graph = Event(PF_Event_DO_CLICK, ParamId::CurveGraph, PF_EA_CONTROL);
  graph.u.do_click.when = 700;
  Send(graph);
  Click(710);
  EXPECT_EQ(aboutCalls, 0);
}

// The detector on its own: the interval is measured in unsigned 32-bit ticks.
TEST(DoubleClickDetector, MeasuresTheIntervalModulo32Bits) {
  struct Case {
    uint32_t first, second;
    bool doubleClick;
  };
  for (const Case& c : {Case{100, 131, true}, Case{100, 132, false}, Case{100, 100, true},
                        Case{0xFFFFFFF0u, 0x0000000Eu, true},   // 30 ticks across the wrap
                        Case{0xFFFFFFF0u, 0x00000010u, false},  // 32 ticks across the wrap
                        Case{200, 150, false}}) {               // earlier: a huge difference
    DoubleClickDetector detector;
    detector.Click(c.first);
    EXPECT_EQ(detector.Click(c.second), c.doubleClick) << c.first << " then " << c.second;
  }
  // Freshly loaded, the last click counts as 0xFFFFFFFF: a first click at tick 30 pairs with it.
  DoubleClickDetector fresh;
  EXPECT_TRUE(fresh.Click(30));
  DoubleClickDetector fresh2;
  EXPECT_FALSE(fresh2.Click(31));
}

// The suite that goes missing, by name and version; an empty name removes the basic suite.
class MissingSuiteTest : public CustomUIEventTest,
                         public ::testing::WithParamInterface<std::tuple<std::string, int32_t>> {};

TEST_P(MissingSuiteTest, ReportsAndLeavesTheEventUnhandled) {
  const auto [name, version] = GetParam();
  if (name.empty()) {
    host.in_data.pica_basicP = nullptr;
  } else {
    drawbot.Withdraw(name.c_str(), version);
  }
  for (ParamId control : {ParamId::CurveGraph, ParamId::Header}) {
    const PF_EffectArea area = control == ParamId::Header ? PF_EA_PARAM_TITLE : PF_EA_CONTROL;
    PF_EventExtra extra = Event(PF_Event_DRAW, control, area);
    EXPECT_EQ(Send(extra), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_STREQ(host.out_data.return_msg, "Not able to acquire AEFX Suite.");
    EXPECT_TRUE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
    EXPECT_EQ(extra.evt_out_flags, PF_EO_NONE);
    EXPECT_TRUE(drawbot.images.empty());
    EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
  }
}

INSTANTIATE_TEST_SUITE_P(Suites, MissingSuiteTest,
                         ::testing::Values(std::make_tuple(std::string(), 0),
                                           std::make_tuple(std::string(kDRAWBOT_DrawSuite), 1),
                                           std::make_tuple(std::string(kDRAWBOT_SupplierSuite), 1),
                                           std::make_tuple(std::string(kDRAWBOT_SurfaceSuite), 2),
                                           std::make_tuple(std::string(kDRAWBOT_PathSuite), 1),
                                           std::make_tuple(std::string(kPFEffectCustomUISuite),
                                                           1)));

TEST_F(CustomUIEventTest, HostDrawingErrorsEndTheDrawingAndAreReturned) {
  struct Case {
    PF_Err FakeDrawbot::*error;
    std::size_t images;  // made
    std::size_t draws;
  };
  for (const Case& c :
       {Case{&FakeDrawbot::drawingReferenceErr, 0, 0}, Case{&FakeDrawbot::newImageErr, 0, 0},
        Case{&FakeDrawbot::drawImageErr, 1, 0}, Case{&FakeDrawbot::releaseObjectErr, 1, 1}}) {
    drawbot.images.clear();
    drawbot.draws.clear();
    drawbot.*c.error = 77;
    PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::CurveGraph, PF_EA_CONTROL);
    EXPECT_EQ(Send(extra), 77);
    EXPECT_EQ(extra.evt_out_flags, PF_EO_NONE);
    EXPECT_EQ(drawbot.images.size(), c.images);
    EXPECT_EQ(drawbot.draws.size(), c.draws);
    for (const FakeDrawbot::Image& image : drawbot.images)
      EXPECT_TRUE(image.released);
    EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
    drawbot.*c.error = PF_Err_NONE;
  }
}

TEST_F(CustomUIEventTest, FailedParameterCheckoutStillReleasesEverything) {
  // Without a parameter array the graph checks its controls out from the host.
  host.checkoutErrors[ParamPosition(ParamId::CurvePhase)] = 9;
  PF_EventExtra extra = Event(PF_Event_DRAW, ParamId::CurveGraph, PF_EA_CONTROL);
  host.out_data = PF_OutData{};
  EXPECT_THROW(HandleCustomUIEvent(&host.in_data, &host.out_data, nullptr, &extra, FakeShowAbout),
               PF_Err);
  EXPECT_EQ(host.OpenCheckouts(), 0);
  EXPECT_TRUE(drawbot.images.empty());
  EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
}

TEST(DrawbotSuites, NullSuiteSetIsRefused) {
  FakeHost host;
  EXPECT_EQ(AEFX_AcquireDrawbotSuites(&host.in_data, &host.out_data, nullptr),
            PF_Err_UNRECOGNIZED_PARAM_TYPE);
  EXPECT_STREQ(host.out_data.return_msg, "NULL suite pointer passed to AEFX_AcquireDrawbotSuites");
  EXPECT_TRUE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
  EXPECT_TRUE(host.acquired.empty());
}

TEST(DrawbotSuites, AcquiresAllFourInOrderAndReleasesThemByVersion) {
  FakeHost host;
  FakeDrawbot drawbot(host);
  DRAWBOT_Suites suites{};
  ASSERT_EQ(AEFX_AcquireDrawbotSuites(&host.in_data, &host.out_data, &suites), PF_Err_NONE);
  EXPECT_NE(suites.drawbot_suiteP, nullptr);
  EXPECT_NE(suites.supplier_suiteP, nullptr);
  EXPECT_NE(suites.surface_suiteP, nullptr);
  EXPECT_NE(suites.path_suiteP, nullptr);
  EXPECT_EQ(host.acquired.size(), 4u);
  EXPECT_EQ(AEFX_ReleaseDrawbotSuites(&host.in_data, &host.out_data), PF_Err_NONE);
  EXPECT_TRUE(FakeDrawbot::SuitesBalanced(host));
  EXPECT_EQ(host.out_data.out_flags, 0);
}

TEST(DrawbotSuites, ReleaseWithoutBasicSuiteReportsButSucceeds) {
  FakeHost host;
  host.in_data.pica_basicP = nullptr;
  EXPECT_EQ(AEFX_ReleaseDrawbotSuites(&host.in_data, &host.out_data), PF_Err_NONE);
  EXPECT_STREQ(host.out_data.return_msg, "Not able to release AEFX Suite.");
  EXPECT_TRUE(host.out_data.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

TEST(HeaderBanner, StoredPictureIsTheGeneratorsOutput) {
  const BgraPicture stored = HeaderBannerPicture();
  ASSERT_EQ(stored.width, kHeaderBannerWidth);
  ASSERT_EQ(stored.height, kHeaderBannerHeight);
  const std::vector<uint8_t> painted = PaintHeaderBanner();
  ASSERT_EQ(painted.size(), 21760u);
  EXPECT_TRUE(std::equal(painted.begin(), painted.end(), stored.pixels))
      << "params/HeaderBanner.inc is stale: build morvane_regenerate_header_banner";
}

}  // namespace
}  // namespace morvane
