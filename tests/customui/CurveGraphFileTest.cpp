// The curve graph's picture as `morvane curve-graph` gets it: drawn by the built module in the
// simulated host, written to a file with straight alpha.
#include <gtest/gtest.h>

#include <filesystem>
#include <variant>

#include "cli/CurveGraphPicture.h"
#include "cli/Errors.h"
#include "cli/ImageFile.h"
#include "params/CurveGraph.h"

namespace morvane::cli {
namespace {

constexpr char kModule[] = MORVANE_MODULE_PATH;

TEST(CurveGraphFile, PictureIsTheOneThePanelShows) {
  const CurveGraphSettings settings{"Sine Wave", 90.0, 3.5};
  for (const hostsim::HostProfile& profile :
       {hostsim::HostProfile::AfterEffects(), hostsim::HostProfile::Premiere()}) {
    const CurveGraphPicture picture = DrawCurveGraph(kModule, profile, settings);
    ASSERT_EQ(picture.width, 50);
    ASSERT_EQ(picture.height, 50);
    std::vector<uint8_t> expected(kCurveGraphPictureBytes);
    ASSERT_EQ(RenderCurveGraphPicture(expected.data(), CurveShape::SineWave, 90 * 65536, 3.5f), 1);
    EXPECT_EQ(picture.bgra, expected) << profile.label;
  }
}

TEST(CurveGraphFile, HostsWithoutTheGraphAndBadValuesAreReported) {
  EXPECT_THROW(DrawCurveGraph(kModule, hostsim::HostProfile::OlderHost(), {}), Failure);
  EXPECT_THROW(DrawCurveGraph(kModule, hostsim::HostProfile::AfterEffects(), {"Zigzag", 0, 0}),
               UsageError);
  EXPECT_THROW(DrawCurveGraph(kModule, hostsim::HostProfile::AfterEffects(), {"Exp Up", 0.0, 17.0}),
               UsageError);
  EXPECT_THROW(DrawCurveGraph("/nonexistent/Morvane.so", hostsim::HostProfile::AfterEffects(), {}),
               Failure);
}

TEST(CurveGraphFile, ZoomRepeatsPixelsAndAlphaStaysStraight) {
  const CurveGraphPicture picture =
      DrawCurveGraph(kModule, hostsim::HostProfile::AfterEffects(), {});
  const std::filesystem::path path =
      std::filesystem::path(::testing::TempDir()) / "curve-graph-zoom.png";
  WriteCurveGraph(path, picture, 3);
  const FileImage file = ReadImageFile(path);
  ASSERT_TRUE(std::holds_alternative<Pixels<uint8_t>>(file.pixels));
  const auto& rgba = std::get<Pixels<uint8_t>>(file.pixels);
  ASSERT_EQ(rgba.width, 150);
  ASSERT_EQ(rgba.height, 150);
  for (int32_t y = 0; y < 150; ++y) {
    for (int32_t x = 0; x < 150; ++x) {
      const uint8_t* bgra = picture.bgra.data() + ((y / 3) * 50 + x / 3) * 4;
      const uint8_t* px = rgba.Row(y) + 4 * x;
      ASSERT_EQ(px[0], bgra[2]) << x << "," << y;
      ASSERT_EQ(px[1], bgra[1]) << x << "," << y;
      ASSERT_EQ(px[2], bgra[0]) << x << "," << y;
      ASSERT_EQ(px[3], bgra[3]) << x << "," << y;
    }
  }
  // The background: grey 64 at alpha 64, not multiplied by its alpha.
  const uint8_t* corner = rgba.Row(0);
  EXPECT_EQ(corner[0], 64);
  EXPECT_EQ(corner[3], 64);
  EXPECT_THROW(WriteCurveGraph(path, picture, 0), UsageError);
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace morvane::cli
