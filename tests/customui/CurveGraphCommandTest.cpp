// `morvane curve-graph` as a subcommand: options, the file it writes and its errors.
#include <gtest/gtest.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "cli/CurveGraphCommand.h"
#include "cli/Errors.h"
#include "cli/ImageFile.h"

namespace morvane::cli {
namespace {

class CurveGraphCommandTest : public ::testing::Test {
 protected:
  // Parses `args` after "morvane curve-graph" and runs the command.
  int Run(std::vector<std::string> args) {
    CLI::App app("test", "morvane");
    CurveGraphCommand command(app);
    args.insert(args.begin(), "curve-graph");
    args.push_back("--module");
    args.push_back(MORVANE_MODULE_PATH);
    std::reverse(args.begin(), args.end());  // CLI11 takes a reversed vector
    app.parse(args);
    return command.Run({out_, err_});
  }

  std::filesystem::path Temp(const char* name) const {
    return std::filesystem::path(::testing::TempDir()) / name;
  }

  std::ostringstream out_;
  std::ostringstream err_;
};

TEST_F(CurveGraphCommandTest, WritesTheZoomedPicture) {
  const std::filesystem::path path = Temp("curve-graph-command.png");
  ASSERT_EQ(Run({path.string(), "--stretch-curve", "Exp Down", "--curve-phase", "-3.75",
                 "--curve-smoothness", "4", "--zoom", "2"}),
            kExitSuccess);
  const FileImage file = ReadImageFile(path);
  EXPECT_EQ(file.width(), 100);
  EXPECT_EQ(file.height(), 100);
  EXPECT_NE(out_.str().find("100 x 100"), std::string::npos) << out_.str();
  std::filesystem::remove(path);
}

TEST_F(CurveGraphCommandTest, RefusesWhatCannotBeDrawn) {
  EXPECT_THROW(Run({Temp("a.png").string(), "--zoom", "0"}), CLI::ValidationError);
  EXPECT_THROW(Run({Temp("b.png").string(), "--stretch-curve", "Zigzag"}), UsageError);
  EXPECT_THROW(Run({Temp("c.png").string(), "--host", "ae-13.8"}), Failure);
  EXPECT_THROW(Run({Temp("d.unknownformat").string()}), Failure);
  for (const char* name : {"a.png", "b.png", "c.png", "d.unknownformat"}) {
    EXPECT_FALSE(std::filesystem::exists(Temp(name))) << name;
  }
}

}  // namespace
}  // namespace morvane::cli
