// Exit codes, messages and the absence of output files when `morvane` fails.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "CliTestSupport.h"

namespace morvane::cli::test {
namespace {

namespace fs = std::filesystem;

struct ErrorCase {
  const char* label;
  std::vector<std::string> args;  // {in}, {out}, {dir} are replaced
  int exitCode;
  std::vector<std::string> messageParts;
};

std::string Substitute(std::string arg, const TempDir& dir) {
  const auto replace = [&](const std::string& key, const std::string& value) {
    for (std::size_t at; (at = arg.find(key)) != std::string::npos;)
      arg.replace(at, key.size(), value);
  };
  replace("{in}", SampleImage().string());
  replace("{dir}", dir.path().string());
  return arg;
}

class CommandErrors : public testing::TestWithParam<ErrorCase> {};

TEST_P(CommandErrors, ExitWithTheCodeAMessageAndNoOutput) {
  TempDir dir;
  std::ofstream(dir / "junk.png") << "this is not an image";
  std::ofstream(dir / "junk.xyz") << "nor is this";
  const std::vector<std::string> before = dir.Files();
  std::vector<std::string> args;
  for (const std::string& arg : GetParam().args)
    args.push_back(Substitute(arg, dir));
  const CommandResult result = RunMorvaneProgram(args);
  EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.err;
  for (const std::string& part : GetParam().messageParts) {
    EXPECT_NE(result.err.find(Substitute(part, dir)), std::string::npos)
        << "missing '" << part << "' in: " << result.err;
  }
  EXPECT_EQ(dir.Files(), before);  // no output, no temporary file
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CommandErrors,
    testing::Values(ErrorCase{"MissingInput",
                              {"render", "{dir}/none.png", "{dir}/out.png"},
                              1,
                              {"'{dir}/none.png'", "no such file"}},
                    ErrorCase{"UnreadableInput",
                              {"render", "{dir}/junk.png", "{dir}/out.png"},
                              1,
                              {"'{dir}/junk.png'"}},
                    ErrorCase{"UnsupportedInputFormat",
                              {"render", "{dir}/junk.xyz", "{dir}/out.png"},
                              1,
                              {"'{dir}/junk.xyz'"}},
                    ErrorCase{"UnsupportedOutputFormat",
                              {"render", "{in}", "{dir}/out.xyz"},
                              1,
                              {"'{dir}/out.xyz'", "no writer"}},
                    ErrorCase{
                        "MissingIntensitySource",
                        {"render", "{in}", "{dir}/out.png", "--intensity-source", "{dir}/none.png"},
                        1,
                        {"'{dir}/none.png'", "no such file"}},
                    ErrorCase{"FailedWrite",
                              {"render", "{in}", "{dir}/missing/out.png"},
                              1,
                              {"'{dir}/missing/out.png'", "cannot write"}},
                    ErrorCase{"SliderOutOfRange",
                              {"render", "{in}", "{dir}/out.png", "--pixel-size", "0"},
                              2,
                              {"--pixel-size", "\"Pixel Size\"", "0.01 to 16"}},
                    ErrorCase{"UnknownItem",
                              {"render", "{in}", "{dir}/out.png", "--edge-mode", "clamp"},
                              2,
                              {"\"Edge Mode\"", "wrap, mirror, repeat-last, transparent"}},
                    ErrorCase{"BadKeyframes",
                              {"render", "{in}", "{dir}/out.png", "--morvane", "5:1,2:3"},
                              2,
                              {"\"Morvane\"", "must increase"}},
                    ErrorCase{"DownsampleTooLarge",
                              {"render", "{in}", "{dir}/out.png", "--downsample", "9"},
                              2,
                              {"--downsample"}},
                    ErrorCase{"RegionOutside",
                              {"render", "{in}", "{dir}/out.png", "--region", "600,0,100,10"},
                              2,
                              {"--region", "640x360"}},
                    ErrorCase{"RegionInPremiere",
                              {"render", "{in}", "{dir}/out.png", "--region", "0,0,10,10", "--host",
                               "premiere"},
                              2,
                              {"--region"}},
                    ErrorCase{"PatternWithoutFrames",
                              {"render", "{dir}/in.#.png", "{dir}/out.#.png"},
                              2,
                              {"--frames"}},
                    ErrorCase{"RangeWithoutOutputPattern",
                              {"render", "{in}", "{dir}/out.png", "--frames", "1-3"},
                              2,
                              {"'{dir}/out.png'", "placeholder"}},
                    ErrorCase{"OverwritingTheInput",
                              {"render", "{dir}/junk.png", "{dir}/junk.png"},
                              2,
                              {"'{dir}/junk.png'", "--overwrite"}},
                    ErrorCase{"UnknownHost",
                              {"render", "{in}", "{dir}/out.png", "--host", "imaginary"},
                              2,
                              {"--host"}},
                    ErrorCase{"UnknownOption",
                              {"render", "{in}", "{dir}/out.png", "--sharpen", "3"},
                              2,
                              {"--sharpen"}},
                    ErrorCase{"MissingModule",
                              {"render", "{in}", "{dir}/out.png", "--module", "{dir}/none.so"},
                              1,
                              {"'{dir}/none.so'"}}),
    [](const testing::TestParamInfo<ErrorCase>& info) { return info.param.label; });

TEST(Command, OverwriteAllowsReplacingTheInput) {
  TempDir dir;
  fs::copy_file(SampleImage(), dir / "in.png");
  const CommandResult result =
      RunMorvaneProgram({"render", (dir / "in.png").string(), (dir / "in.png").string(),
                         "--overwrite", "--morvane", "8"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  std::ifstream a(dir / "in.png", std::ios::binary), b(SampleImage(), std::ios::binary);
  const std::string changed((std::istreambuf_iterator<char>(a)), {});
  const std::string original((std::istreambuf_iterator<char>(b)), {});
  EXPECT_NE(changed, original);
  EXPECT_EQ(dir.Files(), std::vector<std::string>{"in.png"});
}

TEST(Command, HelpDocumentsEveryControlOption) {
  const CommandResult result = RunMorvaneProgram({"render", "--help"});
  EXPECT_EQ(result.exitCode, 0);
  for (const char* option :
       {"--direction",
        "--channels",
        "--morvane-intensity",
        "--morvane ",
        "--pixel-size",
        "--stretch-curve",
        "--curve-phase",
        "--curve-smoothness",
        "--stretch-start-offset",
        "--distribution-mode",
        "--distribution-range",
        "--image-shift-phase ",
        "--image-shift-phase-sync",
        "--shading ",
        "--shading-interval-size",
        "--shading-interval-phase",
        "--shading-channels",
        "--shading-opacity",
        "--edge-mode",
        "--transparency-feather",
        "--intensity-source",
        "--region",
        "--downsample",
        "--frames",
        "--jobs",
        "--overwrite",
        "--depth",
        "--out-depth",
        "--host",
        "--module",
        "right|left|down|up",
        "luma|rgba|red|green|blue|alpha|luma-no-alpha|rgb-no-alpha",
        "linear-ramp-up|linear-ramp-down|triangle-wave|sine-wave|exp-up|exp-down",
        "none|sine-wave|triangle-wave|linear-ramp-up|linear-ramp-down|line",
        "Exit codes"}) {
    EXPECT_NE(result.out.find(option), std::string::npos) << option;
  }
}

TEST(Command, ProgressWritesOneLinePerFrameWithoutATerminal) {
  TempDir dir;
  const CommandResult result =
      RunMorvaneProgram({"render", SampleImage().string(), (dir / "o.#.png").string(), "--frames",
                         "1-3", "--downsample", "4"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 3) << result.err;
  EXPECT_NE(result.err.find("o.2.png"), std::string::npos);
  EXPECT_EQ(dir.Files(), (std::vector<std::string>{"o.1.png", "o.2.png", "o.3.png"}));
}

TEST(Command, InfoReadsTheRegistrationAndControlsFromTheModule) {
  const CommandResult ae = RunMorvaneProgram({"info"});
  ASSERT_EQ(ae.exitCode, 0) << ae.err;
  for (const char* part : {"Morvane", "Orbrenn", "match name   morvane", "1.6", "--direction",
                           "\"Pixel Size\": 0.01 to 16 (default 1)", "\"Curve Graph\""}) {
    EXPECT_NE(ae.out.find(part), std::string::npos) << part << "\n" << ae.out;
  }
  const CommandResult old = RunMorvaneProgram({"info", "--host", "ae-13.8"});
  ASSERT_EQ(old.exitCode, 0) << old.err;
  EXPECT_EQ(old.out.find("\"Curve Graph\""), std::string::npos) << old.out;
}

}  // namespace
}  // namespace morvane::cli::test
