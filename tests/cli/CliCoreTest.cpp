// The command-line renderer's building blocks, one table of worked values per unit: channel
// conversions, control options, downsampling, frame patterns and image files.
#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "cli/ChannelConvert.h"
#include "cli/ControlOptions.h"
#include "cli/Downsample.h"
#include "cli/Errors.h"
#include "cli/FramePattern.h"
#include "cli/ImageFile.h"
#include "cli/Pixels.h"
#include "sdk/FixedDegrees.h"

namespace morvane::cli {
namespace {

namespace fs = std::filesystem;
using Values = std::vector<double>;

template <typename Channel>
AnyPixels Make(int32_t width, int32_t height, const Values& values) {
  Pixels<Channel> p(width, height);
  std::copy(values.begin(), values.end(), p.values.begin());
  return p;
}

Values ValuesOf(const AnyPixels& pixels) {
  return std::visit([](const auto& p) { return Values(p.values.begin(), p.values.end()); }, pixels);
}

TEST(ChannelConvert, RoundTripsKeepEveryValue) {
  for (uint32_t x = 0; x <= 32768; ++x) {
    ASSERT_EQ(FileSixteenToInternal(InternalSixteenToFile(uint16_t(x))), x);
    ASSERT_EQ(FloatToSixteen(SixteenToFloat(uint16_t(x))), x);
  }
  for (uint32_t v = 0; v <= 255; ++v) {
    ASSERT_EQ(FloatToEight(EightToFloat(uint8_t(v))), v);
    ASSERT_EQ(ConvertChannel<uint8_t>(ConvertChannel<uint16_t>(uint8_t(v))), v);
  }
}

TEST(ChannelConvert, ScalesRoundHalfAwayFromZeroAndClamp) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    double (*convert)(double);
    std::vector<std::array<double, 2>> pairs;  // in -> out
  } kCases[] = {
      // clang-format off
      {[](double v) -> double { return FloatToEight(float(v)); },  // 127.5 -> 128
       {{0, 0}, {1, 255}, {0.5, 128}, {1 / 65536., 0}, {65535 / 65536., 255}, {-0.25, 0}, {2, 255},
        {nan, 0}, {inf, 255}}},
      // Exact halves on the 16-bit scale (1/65536 is 0.5, 5/65536 is 2.5) tell half away from
      // zero from half to even.
      {[](double v) -> double { return FloatToSixteen(float(v)); },
       {{0, 0}, {1, 32768}, {0.5, 16384}, {1 / 65536., 1}, {5 / 65536., 3}, {65535 / 65536., 32768},
        {-0.25, 0}, {2, 32768}, {nan, 0}, {inf, 32768}}},
      {[](double v) -> double { return FileSixteenToInternal(uint16_t(v)); },
       {{0, 0}, {1, 1}, {2, 1}, {3, 2}, {32767, 16384}, {32768, 16384}, {65534, 32767},
        {65535, 32768}}},
      {[](double v) -> double { return InternalSixteenToFile(uint16_t(v)); },
       {{0, 0}, {1, 2}, {16384, 32768}, {32768, 65535}, {40000, 65535}}},
      {[](double v) -> double { return ConvertChannel<uint16_t>(uint8_t(v)); },
       {{1, 129}, {128, 16448}, {254, 32639}, {255, 32768}}},
      {[](double v) -> double { return ConvertChannel<uint8_t>(uint16_t(v)); },
       {{1, 0}, {16384, 128}, {32767, 255}, {32768, 255}}},
      // clang-format on
  };
  for (const auto& c : kCases) {
    for (const auto& [in, out] : c.pairs)
      EXPECT_EQ(c.convert(in), out) << in;
  }
}

TEST(ChannelConvert, FileAndEffectReorderChannelsAndConvertEach) {
  const AnyPixels file16 = Make<uint16_t>(1, 1, {65535, 32768, 1, 0});  // R G B A
  const AnyPixels effectF = Make<float>(1, 1, {0.25, 1.5, -1.0, 0.5});  // A R G B
  const struct {
    bool toEffect;
    Depth depth;
    Values expected;
  } kCases[] = {
      {true, Depth::Depth16, {0, 32768, 16384, 1}},
      {true, Depth::Depth8, {0, 255, 128, 0}},
      {true, Depth::Depth32f, {0.0, 1.0, 32768.0f / 65535, 1.0f / 65535}},  // every level kept
      {false, Depth::Depth16, {65535, 0, 32768, 16384}},
      {false, Depth::Depth8, {255, 0, 128, 64}},
      {false, Depth::Depth32f, {1.5, -1.0, 0.5, 0.25}}};  // float is never clamped
  for (const auto& c : kCases) {
    EXPECT_EQ(ValuesOf(c.toEffect ? FileToEffect(FileImage{file16}, c.depth).pixels
                                  : EffectToFile(ArgbImage{effectF}, c.depth).pixels),
              c.expected);
  }
}

TEST(ControlOptions, KebabCaseAndFixedFromDegrees) {
  // clang-format off
  const std::array<std::array<const char*, 2>, 9> kNames = {{
      {"Morvane Intensity", "morvane-intensity"}, {"Shading Channel(s)", "shading-channels"},
      {"Luma (no Alpha)", "luma-no-alpha"}, {"RGB (no Alpha)", "rgb-no-alpha"}, {"RGBA", "rgba"},
      {"Repeat Last", "repeat-last"}, {"  Exp  Up ", "exp-up"}, {"Layer 10", "layer-10"},
      {"", ""}}};
  const std::pair<double, std::optional<int32_t>> kAngles[] = {
      {90.0, 5898240}, {-360.0, -23592960}, {0.5 / 65536, 1}, {-0.5 / 65536, -1},
      {1.5 / 65536, 2}, {2.5 / 65536, 3}, {0.49 / 65536, 0}, {-32768.0, INT32_MIN},
      {32768.0, std::nullopt}};
  // clang-format on
  for (const auto& [name, kebab] : kNames)
    EXPECT_EQ(KebabCase(name), kebab) << name;
  for (const auto& [degrees, fixed] : kAngles)
    EXPECT_EQ(FixedFromDegrees(degrees), fixed) << degrees;
}

// clang-format off
const ControlDescription kSlider{.id = 7, .name = "Pixel Size", .type = ControlType::Slider,
                                 .validMin = 0.01f, .validMax = 16, .items = {}};
const ControlDescription kPercent{.id = 7, .name = "Shading Opacity", .type = ControlType::Slider,
                                  .validMax = 100, .percent = true, .items = {}};
const ControlDescription kPopup{.id = 7, .name = "Channels", .type = ControlType::Popup,
                                .items = {"Luma", "RGBA", "Luma (no Alpha)"}};
const ControlDescription kAngle{.id = 7, .name = "Curve Phase", .type = ControlType::Angle,
                                .items = {}};
const ControlDescription kCheckbox{.id = 7, .name = "Sync", .type = ControlType::Checkbox,
                                   .items = {}};
// clang-format on

TEST(ControlOptions, ParseAcceptsValidValuesAndNamesTheControlWhenRefusing) {
  const struct {
    const ControlDescription& control;
    const char* text;
    std::vector<Keyframe> keys;  // empty: refused with a message holding `message`
    const char* message = "";
  } kCases[] = {
      // clang-format off
      {kSlider, "0.01", {{0, 0.01}}}, {kSlider, "16", {{0, 16.0}}}, {kSlider, " +2.5 ", {{0, 2.5}}},
      {kSlider, "0.0099", {}, "from 0.01 to 16, got 0.0099"}, {kSlider, "16.001", {}, "to 16"},
      {kSlider, "abc", {}, "needs a number"}, {kSlider, "1e999", {}, "number"},
      {kSlider, "nan", {}, "number"}, {kSlider, "5%", {}, "number"},
      {kPercent, "50%", {{0, 50.0}}}, {kPercent, "100", {{0, 100.0}}},
      {kPercent, "101", {}, "from 0 to 100 %"},
      {kPopup, "luma-no-alpha", {{0, 3.0}}}, {kPopup, "RGBA", {{0, 2.0}}},
      {kPopup, "red", {}, "valid items: luma, rgba, luma-no-alpha"}, {kPopup, "", {}, "valid"},
      {kAngle, "90", {{0, 5898240.0}}}, {kAngle, "-3.75", {{0, -245760.0}}},
      {kAngle, "40000", {}, "degrees"}, {kAngle, "east", {}, "degrees"},
      {kCheckbox, "on", {{0, 1.0}}}, {kCheckbox, "off", {{0, 0.0}}},
      {kCheckbox, "1", {}, "on or off"},
      {kSlider, "0:1,10:4.5, 20:16", {{0, 1.0}, {10, 4.5}, {20, 16.0}}},
      {kAngle, "-5:0,5:360", {{-5, 0.0}, {5, 23592960.0}}},
      {kPopup, "0:luma,12:rgba", {{0, 1.0}, {12, 2.0}}},
      {kSlider, "0:1,10:17", {}, "from 0.01 to 16, got 17"},
      {kSlider, "10:1,10:2", {}, "must increase"}, {kSlider, "10:1,5:2", {}, "must increase"},
      {kSlider, "0:1,x:2", {}, "not FRAME:VALUE"}, {kSlider, "0:1,", {}, "not FRAME:VALUE"},
      // clang-format on
  };
  for (const auto& c : kCases) {
    try {
      const ControlSetting setting = ParseControlSetting(c.control, c.text);
      EXPECT_EQ(setting.id, 7);
      EXPECT_EQ(setting.keys, c.keys) << c.text;
      EXPECT_EQ(setting.animated, std::string_view(c.text).find(':') != std::string::npos);
    } catch (const UsageError& e) {
      const std::string name = "--" + KebabCase(c.control.name) + ": \"" + c.control.name + "\"";
      EXPECT_TRUE(c.keys.empty()) << c.text << ": " << e.what();
      EXPECT_EQ(std::string(e.what()).rfind(name, 0), 0u) << e.what();
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
  }
}

TEST(Downsample, AveragesTheInsidePixelsOfEachBoxRoundingHalvesUp) {
  Values ramp;  // 5 x 3, channel c of (x, y) = 10 x + 50 y + c
  for (int i = 0; i < 60; ++i)
    ramp.push_back(10 * (i / 4 % 5) + 50 * (i / 20) + i % 4);
  const struct {
    AnyPixels in;
    int factor;
    AnyPixels out;
  } kCases[] = {
      // clang-format off
      {Make<uint8_t>(5, 3, ramp), 2, Make<uint8_t>(3, 2, {30, 31, 32, 33, 50, 51, 52, 53, 65, 66,
          67, 68, 105, 106, 107, 108, 125, 126, 127, 128, 140, 141, 142, 143})},  // partial boxes
      {Make<uint8_t>(5, 3, ramp), 8, Make<uint8_t>(1, 1, {70, 71, 72, 73})},
      {Make<uint8_t>(2, 1, {2, 2, 2, 2, 3, 3, 3, 3}), 2, Make<uint8_t>(1, 1, {3, 3, 3, 3})},
      {Make<uint16_t>(2, 1, {32766, 0, 1, 2, 32767, 0, 2, 2}), 2,
       Make<uint16_t>(1, 1, {32767, 0, 2, 2})},
      {Make<float>(3, 1, {1, 0, 0, 0, 5e-8f, 0, 0, 0, 5e-8f, 0, 0, 0}), 3,  // a mean in double:
       Make<float>(1, 1, {0x1.555558p-2, 0, 0, 0})},                          // not 0x1.555556p-2
      {Make<uint16_t>(2, 1, {1, 2, 3, 4, 5, 6, 7, 8}), 1,
       Make<uint16_t>(2, 1, {1, 2, 3, 4, 5, 6, 7, 8})},
      // clang-format on
  };
  for (const auto& c : kCases)
    EXPECT_TRUE(Downsample(ArgbImage{c.in}, c.factor) == ArgbImage{c.out}) << &c - kCases;
}

TEST(FramePattern, ExpandsOnePaddedPlaceholderAndParsesRanges) {
  // clang-format off
  const std::array<std::array<const char*, 2>, 11> kPatterns = {{  // name of frame 7; null: refused
      {"shot.####.exr", "shot.0007.exr"}, {"shot.#.exr", "shot.7.exr"}, {"a.%d", "a.7"},
      {"shot.%04d.png", "shot.0007.png"}, {"dir/f%012d", "dir/f000000000007"}, {"a.png", "a.png"},
      {"100%.png", "100%.png"}, {"a%4d.png", "a%4d.png"}, {"a%0d.png", "a%0d.png"},
      {"a.##.%04d.png", nullptr}, {"a.#.b.#.png", nullptr}}};
  const std::pair<const char*, std::optional<std::array<int, 2>>> kRanges[] = {
      {"10-24", {{10, 24}}}, {"5", {{5, 5}}}, {"0-0", {{0, 0}}}, {"", {}}, {"a-b", {}},
      {"10-5", {}}, {"1-", {}}, {"-3", {}}, {"1-2-3", {}}, {"1 - 2", {}}, {"1.5-2", {}}};
  // clang-format on
  for (const auto& [text, frame7] : kPatterns) {
    if (frame7 == nullptr) {
      EXPECT_THROW(FramePattern{text}, UsageError) << text;
    } else {
      EXPECT_EQ(FramePattern(text).Expand(7), frame7);
      EXPECT_EQ(FramePattern(text).HasPlaceholder(), std::string(text) != frame7) << text;
    }
  }
  EXPECT_EQ(FramePattern("a.##.exr").Expand(1234), "a.1234.exr");
  EXPECT_EQ(FramePattern("a.%03d.exr").Expand(-5), "a.-005.exr");
  for (const auto& [text, range] : kRanges) {
    if (!range) {
      EXPECT_THROW(ParseFrameRange(text), UsageError) << text;
    } else {
      EXPECT_EQ(ParseFrameRange(text).first, (*range)[0]) << text;
      EXPECT_EQ(ParseFrameRange(text).count(), (*range)[1] - (*range)[0] + 1) << text;
    }
  }
}

class ImageFile : public testing::Test {
 protected:
  void SetUp() override { fs::create_directories(dir_); }
  void TearDown() override { fs::remove_all(dir_); }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir_))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  const fs::path dir_ = fs::temp_directory_path() / ("morvane-file-" + std::to_string(::getpid()));
};

TEST_F(ImageFile, ReadsChannelsAsRgbaInTheirTypeWithStraightAlpha) {
  const struct {
    const char* name;
    int width, channels;
    OIIO::TypeDesc type;
    Values stored, rgba;
    Depth depth;
  } kCases[] = {
      // clang-format off
      {"g.png", 1, 1, OIIO::TypeDesc::UINT8, {77}, {77, 77, 77, 255}, Depth::Depth8},
      {"ga.png", 1, 2, OIIO::TypeDesc::UINT16, {1000, 3}, {1000, 1000, 1000, 3}, Depth::Depth16},
      {"rgb.exr", 1, 3, OIIO::TypeDesc::FLOAT, {0.5, -1, 2}, {0.5, -1, 2, 1}, Depth::Depth32f},
      {"rgb.tif", 1, 3, OIIO::TypeDesc::UINT16, {1, 2, 3}, {1, 2, 3, 65535}, Depth::Depth16},
      {"five.tif", 1, 5, OIIO::TypeDesc::UINT8, {1, 2, 3, 4, 5}, {1, 2, 3, 4}, Depth::Depth8},
      {"a.png", 2, 4, OIIO::TypeDesc::UINT8, {200, 100, 50, 0, 200, 100, 50, 128},
       {200, 100, 50, 0, 200, 100, 50, 128}, Depth::Depth8},
      // clang-format on
  };
  for (const auto& c : kCases) {
    const fs::path path = dir_ / c.name;
    const double scale = c.type == OIIO::TypeDesc::UINT8    ? 255.0
                         : c.type == OIIO::TypeDesc::UINT16 ? 65535.0
                                                            : 1.0;
    std::vector<float> normalized;  // OpenImageIO scales floats to the file's integer type
    for (const double v : c.stored)
      normalized.push_back(float(v / scale));
    OIIO::ImageSpec header(c.width, int(c.stored.size()) / (c.width * c.channels), c.channels,
                           c.type);
    header.attribute("oiio:UnassociatedAlpha", 1);
    auto out = OIIO::ImageOutput::create(path.string());
    ASSERT_TRUE(out->open(path.string(), header) &&
                out->write_image(OIIO::TypeDesc::FLOAT, normalized.data()) && out->close());
    const FileImage file = ReadImageFile(path);
    EXPECT_EQ(ValuesOf(file.pixels), c.rgba) << c.name;
    EXPECT_EQ(file.width(), c.width) << c.name;
    EXPECT_EQ(NaturalDepth(file), c.depth) << c.name;
  }
}

TEST_F(ImageFile, WritesWhatTheFormatHoldsOrFailsNamingTheFileAndLeavesNoTemporary) {
  std::ofstream(dir_ / "junk.png") << "not an image";
  const AnyPixels argbF = Make<float>(2, 1, {1, 0.5, 0.25, 0, 0.5, 1, 1, 1});
  const struct {
    const char* name;
    AnyPixels argb;
    Depth requested, stored;
    int channels;
    Values rgba;  // read back; empty: not compared (lossy)
  } kCases[] = {
      // clang-format off
      {"a.png", argbF, Depth::Depth32f, Depth::Depth16, 4,
       {32768, 16384, 0, 65535, 65535, 65535, 65535, 32768}},
      {"b.png", Make<uint16_t>(1, 1, {16384, 32768, 1, 0}), Depth::Depth16, Depth::Depth16, 4,
       {65535, 2, 0, 32768}},
      {"c.png", Make<uint8_t>(1, 1, {0, 200, 100, 50}), Depth::Depth8, Depth::Depth8, 4,
       {200, 100, 50, 0}},
      {"d.jpg", argbF, Depth::Depth16, Depth::Depth8, 3, {}},
      {"e.tif", argbF, Depth::Depth32f, Depth::Depth32f, 4, {0.5, 0.25, 0, 1, 1, 1, 1, 0.5}},
      {"f.exr", argbF, Depth::Depth8, Depth::Depth32f, 4, {}},
      // clang-format on
  };
  for (const auto& c : kCases) {
    const fs::path path = dir_ / c.name;
    EXPECT_EQ(WriteImageFile(path, ArgbImage{c.argb}, c.requested), c.stored) << c.name;
    const FileImage file = ReadImageFile(path);
    EXPECT_EQ(NaturalDepth(file), c.stored) << c.name;
    EXPECT_EQ(c.rgba.empty() ? c.rgba : ValuesOf(file.pixels), c.rgba) << c.name;
    EXPECT_EQ(OIIO::ImageInput::open(path.string())->spec_dimensions(0).nchannels, c.channels);
  }
  const std::tuple<bool, fs::path, const char*> kFailures[] = {
      // (write, file, reason)
      {false, dir_ / "missing.png", "no such file"},
      {false, dir_ / "junk.png", "cannot read"},
      {true, dir_ / "out.unknown", "no writer"},
      {true, dir_ / "no" / "out.png", "cannot write"}};
  for (const auto& [write, path, reason] : kFailures) {
    try {
      if (write) WriteImageFile(path, ArgbImage{argbF}, Depth::Depth8);
      if (!write) ReadImageFile(path);
      ADD_FAILURE() << "no failure for " << path;
    } catch (const Failure& e) {
      EXPECT_NE(std::string(e.what()).find("'" + path.string() + "'"), std::string::npos);
      EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
    }
  }
  EXPECT_EQ(Files(), (std::vector<std::string>{"a.png", "b.png", "c.png", "d.jpg", "e.tif", "f.exr",
                                               "junk.png"}));
}

}  // namespace
}  // namespace morvane::cli
