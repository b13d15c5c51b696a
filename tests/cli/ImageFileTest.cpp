#include "cli/ImageFile.h"

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "cli/Errors.h"

namespace morvane::cli {
namespace {

namespace fs = std::filesystem;

class ImageFileTest : public testing::Test {
 protected:
  void SetUp() override {
    dir_ =
        fs::temp_directory_path() /
        ("morvane-imagefile-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
         "-" + testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  // Writes raw values of `type` with `channels` channels through OpenImageIO.
  template <typename T>
  fs::path WriteRaw(const std::string& name, int width, int channels, OIIO::TypeDesc type,
                    const std::vector<T>& values) {
    const fs::path path = dir_ / name;
    auto out = OIIO::ImageOutput::create(path.string());
    OIIO::ImageSpec header(width, int(values.size()) / (width * channels), channels, type);
    header.attribute("oiio:UnassociatedAlpha", 1);
    EXPECT_TRUE(out->open(path.string(), header)) << out->geterror();
    EXPECT_TRUE(out->write_image(type, values.data()));
    EXPECT_TRUE(out->close());
    return path;
  }

  std::size_t FilesInDir() const {
    return std::size_t(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()));
  }

  fs::path dir_;
};

TEST_F(ImageFileTest, ChannelCountsMapToRgba) {
  const auto grey = ReadImageFile(WriteRaw<uint8_t>("g.png", 1, 1, OIIO::TypeDesc::UINT8, {77}));
  EXPECT_EQ(std::get<Pixels<uint8_t>>(grey.pixels).values, (std::vector<uint8_t>{77, 77, 77, 255}));
  const auto greyAlpha =
      ReadImageFile(WriteRaw<uint16_t>("ga.png", 1, 2, OIIO::TypeDesc::UINT16, {1000, 3}));
  EXPECT_EQ(std::get<Pixels<uint16_t>>(greyAlpha.pixels).values,
            (std::vector<uint16_t>{1000, 1000, 1000, 3}));
  const auto rgb =
      ReadImageFile(WriteRaw<float>("rgb.exr", 1, 3, OIIO::TypeDesc::FLOAT, {0.5f, -1.0f, 2.0f}));
  EXPECT_EQ(std::get<Pixels<float>>(rgb.pixels).values,
            (std::vector<float>{0.5f, -1.0f, 2.0f, 1.0f}));
  const auto five =
      ReadImageFile(WriteRaw<uint8_t>("five.tif", 1, 5, OIIO::TypeDesc::UINT8, {1, 2, 3, 4, 5}));
  EXPECT_EQ(std::get<Pixels<uint8_t>>(five.pixels).values, (std::vector<uint8_t>{1, 2, 3, 4}));
}

TEST_F(ImageFileTest, StraightAlphaSurvivesReadingAndWriting) {
  // Colour under zero or partial alpha must come back exactly, not premultiplied.
  const fs::path in =
      WriteRaw<uint8_t>("a.png", 2, 4, OIIO::TypeDesc::UINT8, {200, 100, 50, 0, 200, 100, 50, 128});
  const FileImage file = ReadImageFile(in);
  EXPECT_EQ(std::get<Pixels<uint8_t>>(file.pixels).values,
            (std::vector<uint8_t>{200, 100, 50, 0, 200, 100, 50, 128}));
  const fs::path out = dir_ / "b.png";
  EXPECT_EQ(WriteImageFile(out, FileToEffect(file, Depth::Depth8), Depth::Depth8), Depth::Depth8);
  EXPECT_EQ(std::get<Pixels<uint8_t>>(ReadImageFile(out).pixels).values,
            std::get<Pixels<uint8_t>>(file.pixels).values);
}

TEST_F(ImageFileTest, TypesOtherThanEightAndSixteenBitsAreReadAsFloat) {
  const FileImage half = ReadImageFile(
      WriteRaw<float>("h.exr", 1, 4, OIIO::TypeDesc::FLOAT, {0.25f, 0.5f, 0.75f, 1.0f}));
  EXPECT_EQ(NaturalDepth(half), Depth::Depth32f);
  const FileImage sixteen =
      ReadImageFile(WriteRaw<uint16_t>("s.tif", 1, 3, OIIO::TypeDesc::UINT16, {1, 2, 3}));
  EXPECT_EQ(NaturalDepth(sixteen), Depth::Depth16);
}

struct StoredCase {
  const char* name;
  Depth requested;
  Depth stored;
};

class StoredDepth : public ImageFileTest, public testing::WithParamInterface<StoredCase> {};

TEST_P(StoredDepth, FormatsNarrowWhatTheyCannotHold) {
  Pixels<float> pixels(2, 1);
  pixels.values = {1.0f, 0.5f, 0.25f, 0.0f, 0.5f, 1.0f, 1.0f, 1.0f};
  const fs::path out = dir_ / GetParam().name;
  EXPECT_EQ(WriteImageFile(out, ArgbImage{pixels}, GetParam().requested), GetParam().stored);
  EXPECT_EQ(NaturalDepth(ReadImageFile(out)), GetParam().stored);
  EXPECT_EQ(FilesInDir(), 1u);  // no temporary file left behind
}

INSTANTIATE_TEST_SUITE_P(Cases, StoredDepth,
                         testing::Values(StoredCase{"a.png", Depth::Depth32f, Depth::Depth16},
                                         StoredCase{"a.png", Depth::Depth16, Depth::Depth16},
                                         StoredCase{"a.jpg", Depth::Depth16, Depth::Depth8},
                                         StoredCase{"a.tif", Depth::Depth32f, Depth::Depth32f},
                                         StoredCase{"a.exr", Depth::Depth8, Depth::Depth32f}));

TEST_F(ImageFileTest, SixteenBitValuesAreWrittenOnTheFileScale) {
  Pixels<uint16_t> pixels(1, 1);
  pixels.values = {16384, 32768, 1, 0};  // A R G B
  const fs::path out = dir_ / "s.png";
  WriteImageFile(out, ArgbImage{pixels}, Depth::Depth16);
  EXPECT_EQ(std::get<Pixels<uint16_t>>(ReadImageFile(out).pixels).values,
            (std::vector<uint16_t>{65535, 2, 0, 32768}));
}

TEST_F(ImageFileTest, FormatsWithoutAlphaGetRgb) {
  Pixels<uint8_t> pixels(1, 1);
  pixels.values = {0, 255, 255, 255};
  const fs::path out = dir_ / "a.jpg";
  WriteImageFile(out, ArgbImage{pixels}, Depth::Depth8);
  auto in = OIIO::ImageInput::open(out.string());
  ASSERT_TRUE(in);
  EXPECT_EQ(in->spec_dimensions(0).nchannels, 3);
}

TEST_F(ImageFileTest, FailuresNameTheFileAndLeaveNothing) {
  auto expectFailure = [](auto&& action, const std::string& path, const std::string& reason) {
    try {
      action();
      ADD_FAILURE() << "no failure for " << path;
    } catch (const Failure& e) {
      const std::string message = e.what();
      EXPECT_NE(message.find("'" + path + "'"), std::string::npos) << message;
      EXPECT_NE(message.find(reason), std::string::npos) << message;
    }
  };
  const std::string missing = (dir_ / "missing.png").string();
  expectFailure([&] { ReadImageFile(missing); }, missing, "no such file");
  const fs::path junk = dir_ / "junk.png";
  std::ofstream(junk) << "not an image";
  expectFailure([&] { ReadImageFile(junk); }, junk.string(), "cannot read");

  Pixels<uint8_t> pixels(1, 1);
  const std::string unknown = (dir_ / "out.unknownformat").string();
  expectFailure([&] { WriteImageFile(unknown, ArgbImage{pixels}, Depth::Depth8); }, unknown,
                "no writer");
  const std::string noDir = (dir_ / "no" / "such" / "dir" / "out.png").string();
  expectFailure([&] { WriteImageFile(noDir, ArgbImage{pixels}, Depth::Depth8); }, noDir,
                "cannot write");
  EXPECT_EQ(FilesInDir(), 1u);  // only junk.png
}

}  // namespace
}  // namespace morvane::cli
