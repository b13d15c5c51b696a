// `morvane render` through files, compared with the effect's dispatcher run
// directly on the same pixels.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "CliTestSupport.h"
#include "cli/Downsample.h"
#include "cli/ImageFile.h"

namespace morvane::cli::test {
namespace {

namespace fs = std::filesystem;

struct Look {
  std::vector<std::string> args;
  StretchRenderRecord record;
};

// Every control away from its default.
Look Striking() {
  Look look;
  look.args = {"--direction",
               "down",
               "--channels",
               "rgba",
               "--morvane-intensity",
               "80",
               "--morvane",
               "4",
               "--pixel-size",
               "1.5",
               "--stretch-curve",
               "sine-wave",
               "--curve-phase",
               "30",
               "--curve-smoothness",
               "2",
               "--stretch-start-offset",
               "10",
               "--distribution-mode",
               "linear-ramp-up",
               "--distribution-range",
               "1.5",
               "--image-shift-phase",
               "45",
               "--image-shift-phase-sync",
               "off",
               "--shading",
               "sine-wave",
               "--shading-interval-size",
               "12.7",
               "--shading-interval-phase",
               "20",
               "--shading-channels",
               "rgb",
               "--shading-opacity",
               "40",
               "--edge-mode",
               "mirror",
               "--transparency-feather",
               "25"};
  StretchRenderRecord& r = look.record = DefaultRecord();
  r.channelMode = 1;
  r.intensity = 80.0;
  r.direction = 2;
  r.stretchAmount = 4.0;
  r.pixelSize = 1.5;
  r.curveShape = 3;
  r.curvePhase = 30 * 65536;
  r.curveSmoothness = 2.0;
  r.startOffset = 10.0;
  r.distributionMode = 1;
  r.distributionRange = 1.5;
  r.imageShiftPhase = 45 * 65536;
  r.imageShiftPhaseSync = 0;
  r.shadingMode = 1;
  r.shadingIntervalSize = 12;
  r.shadingIntervalPhase = 20 * 65536;
  r.shadingChannels = 1;
  r.shadingOpacity = 40.0;
  r.edgeMode = 1;
  r.transparencyFeather = 25.0;
  return look;
}

std::vector<std::string> Concat(std::vector<std::string> a, const std::vector<std::string>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

ArgbImage ReadAt(const fs::path& path, Depth depth) {
  return FileToEffect(ReadImageFile(path), depth);
}

// Writes the sample at a file depth, so that a render starts from that type.
fs::path SampleAs(const TempDir& dir, const std::string& name, Depth fileDepth) {
  const fs::path path = dir / name;
  WriteImageFile(path, ReadAt(SampleImage(), Depth::Depth8), fileDepth);
  return path;
}

void ExpectRendered(const CommandResult& result) {
  ASSERT_EQ(result.exitCode, 0) << result.err;
}

struct DepthCase {
  Depth depth;
  const char* inName;   // the file type sets the processing depth
  const char* outName;  // a format that holds that depth
  const char* host;
};

class RenderAtDepth : public testing::TestWithParam<DepthCase> {};

TEST_P(RenderAtDepth, EqualsTheDispatcherOnTheSamePixels) {
  const DepthCase& c = GetParam();
  TempDir dir;
  const fs::path in = SampleAs(dir, c.inName, c.depth);
  const fs::path out = dir / c.outName;
  const Look look = Striking();
  ExpectRendered(RunMorvaneProgram(
      Concat({"render", in.string(), out.string(), "--host", c.host, "--jobs", "1"}, look.args)));
  const ArgbImage input = ReadAt(in, c.depth);
  EXPECT_EQ(NaturalDepth(ReadImageFile(out)), c.depth);
  const ArgbImage expected = ReferenceRender(input, look.record, 1.0f);
  EXPECT_FALSE(expected == input);
  EXPECT_TRUE(ReadAt(out, c.depth) == expected);
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, RenderAtDepth,
    testing::Values(DepthCase{Depth::Depth8, "in.png", "out.png", "ae"},
                    DepthCase{Depth::Depth16, "in.png", "out.png", "ae"},
                    DepthCase{Depth::Depth32f, "in.exr", "out.exr", "ae"},
                    DepthCase{Depth::Depth8, "in.tif", "out.tif", "premiere"},
                    DepthCase{Depth::Depth16, "in.tif", "out.tif", "premiere"},
                    DepthCase{Depth::Depth32f, "in.tif", "out.tif", "premiere"},
                    DepthCase{Depth::Depth8, "in.png", "out.tif", "ae-13.8"},
                    DepthCase{Depth::Depth16, "in.png", "out.tif", "ae-13.23"},
                    DepthCase{Depth::Depth32f, "in.exr", "out.tif", "ae-13.8"}));

TEST(Render, DepthOptionsConvertOnTheWayInAndOut) {
  // An 8-bit file processed at 16 bits and written as float.
  TempDir dir;
  const fs::path out = dir / "out.exr";
  const Look look = Striking();
  ExpectRendered(RunMorvaneProgram(Concat(
      {"render", SampleImage().string(), out.string(), "--depth", "16", "--out-depth", "32f"},
      look.args)));
  const ArgbImage expected =
      ReferenceRender(ReadAt(SampleImage(), Depth::Depth16), look.record, 1.0f);
  const FileImage written = ReadImageFile(out);
  ASSERT_EQ(NaturalDepth(written), Depth::Depth32f);
  EXPECT_TRUE(FileToEffect(written, Depth::Depth16) == expected);
}

TEST(Render, RegionRendersOnlyTheRequestAndIgnoresPixelsOutside) {
  TempDir dir;
  const Rect region{100, 50, 200, 120};
  const Look look = Striking();
  const auto args = [&](const fs::path& in, const fs::path& out) {
    return Concat({"render", in.string(), out.string(), "--region", "100,50,200,120"}, look.args);
  };
  ExpectRendered(RunMorvaneProgram(args(SampleImage(), dir / "a.png")));
  const ArgbImage input = ReadAt(SampleImage(), Depth::Depth8);
  const ArgbImage got = ReadAt(dir / "a.png", Depth::Depth8);
  EXPECT_EQ(got.width(), region.width);
  EXPECT_EQ(got.height(), region.height);
  EXPECT_TRUE(got == ReferenceRender(input, look.record, 1.0f, region));

  // Scribble over everything outside the region: the result stays the same.
  ArgbImage changed = input;
  auto& p = std::get<Pixels<uint8_t>>(changed.pixels);
  for (int32_t y = 0; y < p.height; ++y) {
    for (int32_t x = 0; x < p.width; ++x) {
      const bool inside = x >= region.x && x < region.x + region.width && y >= region.y &&
                          y < region.y + region.height;
      if (!inside) {
        for (int c = 0; c < 4; ++c)
          p.Row(y)[4 * x + c] = uint8_t(x * 7 + y * 13 + c * 50);
      }
    }
  }
  WriteImageFile(dir / "changed.png", changed, Depth::Depth8);
  ExpectRendered(RunMorvaneProgram(args(dir / "changed.png", dir / "b.png")));
  EXPECT_TRUE(ReadAt(dir / "b.png", Depth::Depth8) == got);
}

TEST(Render, DownsampleBoxFiltersAndHalvesTheShadingScale) {
  TempDir dir;
  // An odd-sized input: 101 x 51 at factor 2 gives 51 x 26.
  const ArgbImage input = Crop(ReadAt(SampleImage(), Depth::Depth16), Rect{300, 100, 101, 51});
  WriteImageFile(dir / "in.png", input, Depth::Depth16);
  const Look look = Striking();
  ExpectRendered(RunMorvaneProgram(
      Concat({"render", (dir / "in.png").string(), (dir / "out.png").string(), "--downsample", "2"},
             look.args)));
  const ArgbImage got = ReadAt(dir / "out.png", Depth::Depth16);
  EXPECT_EQ(got.width(), 51);
  EXPECT_EQ(got.height(), 26);
  EXPECT_TRUE(got == ReferenceRender(Downsample(input, 2), look.record, 0.5f));
  EXPECT_FALSE(got == ReferenceRender(Downsample(input, 2), look.record, 1.0f));
}

TEST(Render, IntensitySourceOfAnotherSizeAndDepthDrivesTheStretch) {
  TempDir dir;
  const ArgbImage layer8 = Crop(ReadAt(SampleImage(), Depth::Depth8), Rect{40, 30, 300, 200});
  WriteImageFile(dir / "layer.png", layer8, Depth::Depth8);
  const fs::path in = SampleAs(dir, "in.tif", Depth::Depth32f);
  Look look = Striking();
  ExpectRendered(RunMorvaneProgram(Concat({"render", in.string(), (dir / "out.tif").string(),
                                           "--intensity-source", (dir / "layer.png").string()},
                                          look.args)));
  const ArgbImage layer = ReadAt(dir / "layer.png", Depth::Depth32f);
  const ArgbImage expected =
      ReferenceRender(ReadAt(in, Depth::Depth32f), look.record, 1.0f, std::nullopt, &layer);
  EXPECT_TRUE(ReadAt(dir / "out.tif", Depth::Depth32f) == expected);
  EXPECT_FALSE(expected == ReferenceRender(ReadAt(in, Depth::Depth32f), look.record, 1.0f));
}

TEST(Render, KeyframedSequenceRendersEachFrameWithItsInterpolatedValues) {
  TempDir dir;
  const ArgbImage input = Crop(ReadAt(SampleImage(), Depth::Depth8), Rect{200, 80, 160, 120});
  WriteImageFile(dir / "in.0003.png", input, Depth::Depth8);
  WriteImageFile(dir / "in.0004.png", input, Depth::Depth8);
  WriteImageFile(dir / "in.0005.png", input, Depth::Depth8);
  ExpectRendered(RunMorvaneProgram(
      {"render", (dir / "in.####.png").string(), (dir / "out.%04d.png").string(), "--frames", "3-5",
       "--morvane", "3:1,5:5", "--curve-phase", "3:0,5:90", "--direction", "3:right,5:down",
       "--shading-opacity", "4:50", "--shading", "line"}));
  for (int frame = 3; frame <= 5; ++frame) {
    StretchRenderRecord r = DefaultRecord();
    r.stretchAmount = 1.0 + 2.0 * (frame - 3);
    r.curvePhase = (frame - 3) * 45 * 65536;
    r.direction = frame == 5 ? 2 : 0;  // popups hold until the next keyframe
    r.shadingOpacity = 50.0;
    r.shadingMode = 5;
    const std::string name = "out.000" + std::to_string(frame) + ".png";
    EXPECT_TRUE(ReadAt(dir / name, Depth::Depth8) == ReferenceRender(input, r, 1.0f)) << name;
  }
}

TEST(Render, ParallelFramesEqualSerialFrames) {
  TempDir dir;
  const ArgbImage input = Crop(ReadAt(SampleImage(), Depth::Depth16), Rect{0, 0, 320, 180});
  WriteImageFile(dir / "in.png", input, Depth::Depth16);
  const auto render = [&](const std::string& jobs, const std::string& prefix) {
    ExpectRendered(RunMorvaneProgram(
        {"render", (dir / "in.png").string(), (dir / (prefix + ".#.png")).string(), "--frames",
         "0-5", "--jobs", jobs, "--morvane", "0:0.5,5:8", "--image-shift-phase", "0:0,5:720",
         "--channels", "rgba", "--shading", "sine-wave", "--shading-opacity", "40"}));
  };
  render("1", "serial");
  render("2", "parallel");
  for (int frame = 0; frame <= 5; ++frame) {
    const std::string n = "." + std::to_string(frame) + ".png";
    const ArgbImage serial = ReadAt(dir / ("serial" + n), Depth::Depth16);
    EXPECT_TRUE(serial == ReadAt(dir / ("parallel" + n), Depth::Depth16)) << frame;
  }
  EXPECT_FALSE(ReadAt(dir / "serial.0.png", Depth::Depth16) ==
               ReadAt(dir / "serial.5.png", Depth::Depth16));
}

}  // namespace
}  // namespace morvane::cli::test
